// When a frame reads the time, and when what it does is seen.

#include "demo/scene1.h"

#include "demo/post_rgb.h"
#include "tests/support/bound_program.h"
#include "tests/support/fake_time.h"
#include "tests/support/private_member.h"
#include "tests/support/scene_stage.h"

#include <cmath>

using Vell::vec3;

OPEN_PRIVATE(postRgbShader, &PostRGB::shader);

struct PostRGBProbe {
    static Vell::Shader& Program(PostRGB& rgb) { return rgb.*postRgbShader; }
};

namespace {

/// Frames during which time goes on: 0.1 s at every reading of a clock.
class SceneFrame : public SceneStage {
protected:
    void DrawFrom(double t) {
        GoTo(t);
        SetTickingTime(t, 0.1);
        TheScene().Draw(0.02f);
    }

    float FishHeight(int i) { return PositionOf(*Scene1Probe::Fish(TheScene())[i]).y; }
};

} // namespace

TEST_F(SceneFrame, What_a_segment_does_is_seen_in_its_own_frame) {
    PostRGB& rgb = Scene1Probe::Rgb(TheScene());
    spectrum[0] = quiet;
    DrawAt(48.0, 0.1f);
    PostRGBProbe::Program(rgb).Enable();
    EXPECT_EQ(BoundUniform("offset")[0], 0.7f) << "the picture was drawn with it";
    PostRGBProbe::Program(rgb).Disable();
}

TEST_F(SceneFrame, Demo_time_is_read_once_before_everything) {
    DrawFrom(80.0);
    const vec3 blue = PositionOf(*Scene1Probe::BlueWisp(TheScene()));
    ExpectPoint(blue, vec3(22.0f, 3.0f, static_cast<float>(std::sin(80.0) * 2.5 + 15.0)));
}

TEST_F(SceneFrame, School_is_placed_column_by_column) {
    DrawFrom(30.0);
    // The eye rises by 2 units * 0.1 s / 13.912 s from fish to fish. The first fish of row 1 is the
    // sixth that is asked for, two units up; that of column 1 the sixteenth.
    EXPECT_NEAR(FishHeight(20) - FishHeight(0), 5 * 0.0143761 + 2.0, 1e-4);
    EXPECT_NEAR(FishHeight(5) - FishHeight(0), 15 * 0.0143761, 1e-4);
}
