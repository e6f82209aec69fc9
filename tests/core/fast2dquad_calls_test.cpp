// The full-screen quad, call by call.

#include "tests/recording/calls.h"

#include "engine/core/fast2dquad.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using Vell::vec2;

namespace {

class QuadCalls : public Calls {};

} // namespace

TEST_F(QuadCalls, Draws_a_strip_from_the_origin_to_the_corner) {
    for (const float height : {600.0f, 300.0f}) {
        Vell::Fast2DQuad::GetInstance().Draw(vec2(800, height));
        EXPECT_TRUE(Made(R"(
            glInterleavedArrays(GL_T2F_V3F, 0, memory)
            glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)
            )"));
        EXPECT_THAT(gl.Drawn(), ElementsAre(1, 1, 800, height, 0, // s, t, x, y, z
                                            0, 1, 0, height, 0,   //
                                            1, 0, 800, 0, 0,      //
                                            0, 0, 0, 0, 0));
    }
}
