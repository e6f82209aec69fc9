// The logo that the demo draws over the first ten seconds of its frames.

#include "demo/scene1.h"

#include "tests/support/demo_data.h"
#include "tests/support/fake_time.h"
#include "tests/support/gl_state.h"
#include "tests/support/pixels.h"
#include "tests/support/scene_stage.h"

namespace {

class SceneLogo : public SceneStage {};

} // namespace

TEST_F(SceneLogo, Logo_covers_the_first_frame_and_fades_with_time) {
    if (DemoDataIsReal())
        GTEST_SKIP() << "needs the logo and the sky whose colours are known";
    DrawAt(11.0);
    const Rgba bare = ReadScreen(screenSize, screenSize).At(64, 100); // nothing but sky
    constexpr Rgba white = {255, 255, 255, 255};
    constexpr int rounding = 3; // two roundings of the blend and one of the picture's compression
    DrawAt(0.0);
    EXPECT_TRUE(Near(ReadScreen(screenSize, screenSize).At(64, 100), white, rounding));
    DrawAt(7.5); // one quarter of white, three of sky
    const Rgba faded = {(255 + 3 * bare.r) / 4, (255 + 3 * bare.g) / 4, (255 + 3 * bare.b) / 4,
                        ReadScreen(screenSize, screenSize).At(64, 100).a};
    EXPECT_TRUE(Near(ReadScreen(screenSize, screenSize).At(64, 100), faded, rounding));
}

TEST_F(SceneLogo, Logo_is_no_longer_drawn_from_ten_seconds_on) {
    // The logo is the only thing that blends this way at the end of a frame; the glow adds.
    GLint destination = 0;
    DrawAt(9.9);
    glGetIntegerv(GL_BLEND_DST, &destination);
    EXPECT_EQ(destination, GL_ONE_MINUS_SRC_ALPHA);
    DrawAt(10.0);
    glGetIntegerv(GL_BLEND_DST, &destination);
    EXPECT_EQ(destination, GL_ONE);
}

TEST_F(SceneLogo, Logo_is_drawn_when_the_frame_began_before_ten_seconds) {
    GoTo(9.95);
    SetTickingTime(9.95, 0.1); // a second reading of the clock would be too late
    TheScene().Draw(0.02f);
    GLint destination = 0;
    glGetIntegerv(GL_BLEND_DST, &destination);
    EXPECT_EQ(destination, GL_ONE_MINUS_SRC_ALPHA);
}

TEST_F(SceneLogo, Logo_leaves_only_the_documented_state_behind) {
    DrawAt(12.0); // whatever a frame without the logo settles
    const GlState without = CaptureGlState();
    DrawAt(5.0);
    GlState with = CaptureGlState();
    // Left behind on purpose: the model-view is the identity, with which the next frame starts
    // anyway, and the sprite's texture stays bound and enabled, blended over.
    for (const char* name :
         {"modelview matrix", "blend destination", "unit 0 binding", "unit 0 texture 2D"})
        with.values[name] = without.values.at(name);
    EXPECT_EQ(Differences(without, with), "");
}

TEST_F(SceneLogo, Logo_leaves_the_model_view_as_the_identity) {
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(1, 2, 3);
    DrawAt(5.0);
    float m[16] = {};
    glGetFloatv(GL_MODELVIEW_MATRIX, m);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(m[i], i % 5 == 0 ? 1.0f : 0.0f) << i;
}

TEST_F(SceneLogo, Projection_stack_is_untouched_from_ten_seconds_on) {
    GLint before = 0;
    GLint after = 0;
    float projectionBefore[16] = {};
    float projectionAfter[16] = {};
    glGetIntegerv(GL_PROJECTION_STACK_DEPTH, &before);
    glGetFloatv(GL_PROJECTION_MATRIX, projectionBefore);
    DrawAt(10.0);
    glGetIntegerv(GL_PROJECTION_STACK_DEPTH, &after);
    glGetFloatv(GL_PROJECTION_MATRIX, projectionAfter);
    EXPECT_EQ(before, after);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(projectionBefore[i], projectionAfter[i]) << i;
}
