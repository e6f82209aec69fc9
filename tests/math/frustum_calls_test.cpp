// The view frustum, call by call.

#include "tests/recording/calls.h"

#include "engine/math/frustum.h"

namespace {

class FrustumCalls : public Calls {};

} // namespace

TEST_F(FrustumCalls, Reads_model_view_and_then_projection) {
    Vell::Frustum::GetInstance().MakePlane();
    EXPECT_TRUE(Made("glGetFloatv(GL_MODELVIEW_MATRIX); glGetFloatv(GL_PROJECTION_MATRIX)"));
}
