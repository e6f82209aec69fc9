#include "demo/scene1.h"

#include "demo/post_rgb.h"
#include "demo/post_water.h"
#include "engine/post/post_bloom.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenenode.h"
#include "tests/support/demo_data.h"
#include "tests/support/fake_time.h"
#include "tests/support/gl_state.h"
#include "tests/support/pixels.h"
#include "tests/support/scene_stage.h"

#include <cmath>

using Vell::vec3;

namespace {

// Demo time is a float in microseconds here; a millisecond keeps clear of the rounding of a cut.
constexpr double moment = 0.001;

class SceneTimeline : public SceneStage {
protected:
    float CityHeight() { return PositionOf(*Scene1Probe::City(TheScene())).y; }
    float& Pulse() { return Scene1Probe::Pulse(TheScene()); }
    float Split() { return Scene1Probe::Rgb(TheScene()).GetOffset(); }
    float Glow() { return Scene1Probe::Bloom(TheScene()).GetIntensity(); }
    bool Ripples() { return IsOn(Scene1Probe::Ripple(TheScene())); }
    vec3 FishAt(int i) { return PositionOf(*Scene1Probe::Fish(TheScene())[i]); }
    vec3 Red() { return PositionOf(*Scene1Probe::RedWisp(TheScene())); }
    vec3 Green() { return PositionOf(*Scene1Probe::GreenWisp(TheScene())); }
    vec3 Blue() { return PositionOf(*Scene1Probe::BlueWisp(TheScene())); }
    vec3 Light(const char* name) { return Uniform(*Scene1Probe::CityShader(TheScene()), name); }
    int FlightNumber() {
        return static_cast<int>(CameraProbe::Current(Scene1Probe::Path(TheScene()))) + 1;
    }

    /// Puts the wisps away and the lights with them, as they are before their segment.
    void ParkWisps() {
        for (Vell::SceneNode* wisp :
             {Scene1Probe::RedWisp(TheScene()), Scene1Probe::GreenWisp(TheScene()),
              Scene1Probe::BlueWisp(TheScene())})
            wisp->SetPosition(vec3(0, 1000, 0));
    }
};

} // namespace

// --- Up to 13.912 s -------------------------------------------------------------------------

TEST_F(SceneTimeline, First_flight_looks_ahead_and_changes_nothing) {
    ParkWisps();
    for (double t : {0.0, 6.0, 13.912 - moment}) {
        SCOPED_TRACE(t);
        DrawAt(t);
        ExpectView(t, TargetAt(t));
        EXPECT_EQ(CityHeight(), -20.0f);
        EXPECT_EQ(Red(), vec3(0, 1000, 0));
        EXPECT_FALSE(Ripples());
        EXPECT_EQ(Split(), 0.0f);
        EXPECT_EQ(Glow(), 0.25f);
        EXPECT_EQ(Pulse(), 0.0f);
    }
}

TEST_F(SceneTimeline, Target_of_the_old_flight_and_eye_of_the_new_one_meet_at_a_cut) {
    // One millisecond beyond the end of flight 1, at a demo time that aims the camera nowhere else.
    SetFakeTime(13.912 + moment);
    Scene1Probe::SceneClock(TheScene()).Reset();
    TheScene().Draw(0.02f);
    Vell::Camera& view = Scene1Probe::ViewCamera(TheScene());
    ExpectPoint(view.GetPosition(), vec3(50, 1, -50));
    // v = 13.913 / 13.912 + 0.1 = 1.100072: 10 units times that along -z
    ExpectPoint(view.GetTarget(), vec3(0, 1, -11.00072f));
    EXPECT_EQ(FlightNumber(), 2);
}

// --- A: 13.912 to 27.824 s ------------------------------------------------------------------

TEST_F(SceneTimeline, City_rises_while_the_camera_looks_at_the_origin) {
    const double middle = 13.912 * 1.5; // half way up
    DrawAt(middle);
    ExpectView(middle, vec3(0, 0, 0));
    EXPECT_NEAR(CityHeight(), -10.0f, 1e-4f);
    EXPECT_FALSE(Ripples());
    EXPECT_EQ(PositionOf(*Scene1Probe::City(TheScene())).x, 0.0f);
    EXPECT_EQ(PositionOf(*Scene1Probe::City(TheScene())).z, 0.0f);
}

TEST_F(SceneTimeline, City_starts_to_rise_only_after_the_cut) {
    DrawAt(13.912 - moment);
    EXPECT_EQ(CityHeight(), -20.0f);
    ExpectView(13.912 - moment, TargetAt(13.912 - moment));
    DrawAt(13.912 + moment);
    ExpectView(13.912 + moment, vec3(0, 0, 0));
    EXPECT_GE(CityHeight(), -20.0f);
}

TEST_F(SceneTimeline, City_keeps_its_last_height_after_the_rise) {
    DrawAt(13.912 * 1.5);
    const float height = CityHeight();
    for (double t : {27.824 + moment, 30.0, 45.0, 60.0, 80.0, 95.0, 110.0}) {
        DrawAt(t);
        EXPECT_EQ(CityHeight(), height) << t;
    }
}

TEST_F(SceneTimeline, City_ends_the_rise_at_its_final_height) {
    DrawAt(27.824 - moment);
    EXPECT_NEAR(CityHeight(), 0.0f, 1e-4f);
}

// --- B: 27.824 to 41.736 s ------------------------------------------------------------------

TEST_F(SceneTimeline, Picture_ripples_only_with_the_fish) {
    DrawAt(27.824 - moment);
    EXPECT_FALSE(Ripples());
    DrawAt(27.824 + moment);
    EXPECT_TRUE(Ripples());
    DrawAt(41.736 - moment);
    EXPECT_TRUE(Ripples());
    DrawAt(41.736 + moment);
    EXPECT_FALSE(Ripples());
}

TEST_F(SceneTimeline, School_stands_around_the_eye_and_drifts) {
    const double t = 30.0;
    DrawAt(t);
    ExpectView(t, TargetAt(t));
    const vec3 eye = EyeAt(t);
    for (int column = 0; column < 4; ++column)
        for (int row = 0; row < 3; ++row)
            for (int number = 0; number < 5; ++number) {
                SCOPED_TRACE(20 * row + 5 * column + number);
                // x: the eye's plus 2 a column minus 2 * 30; y: the eye's plus 2 a row
                ExpectPoint(FishAt(20 * row + 5 * column + number),
                            vec3(eye.x + 2.0f * static_cast<float>(column) - 60.0f,
                                 eye.y + 2.0f * static_cast<float>(row), -50.0f));
            }
}

TEST_F(SceneTimeline, Five_fish_of_a_cell_share_one_spot) {
    DrawAt(33.0);
    for (int number = 1; number < 5; ++number)
        EXPECT_EQ(FishAt(45 + number), FishAt(45)); // column 1, row 2
    EXPECT_NE(FishAt(45), FishAt(40));
}

TEST_F(SceneTimeline, School_asks_for_the_eye_anew_for_each_fish) {
    // Time that moves 0.1 s at each reading lifts the eye by 0.1 * 2 / 13.912 from fish to fish.
    GoTo(30.0);
    SetTickingTime(30.0, 0.1);
    TheScene().Draw(0.02f);
    EXPECT_NEAR(FishAt(1).y - FishAt(0).y, 0.0143761, 1e-5);
    EXPECT_NEAR(FishAt(2).y - FishAt(1).y, 0.0143761, 1e-5);
    // Column 3, row 2, number 4 is the sixtieth asked for, two rows of 2 units up.
    EXPECT_NEAR(FishAt(59).y - FishAt(0).y, 59 * 0.0143761 + 4.0, 1e-4);
}

TEST_F(SceneTimeline, Fish_stay_where_they_were_last_placed) {
    DrawAt(41.736 - moment);
    const vec3 last = FishAt(17);
    for (double t : {41.736 + moment, 50.0, 60.0, 100.0}) {
        DrawAt(t);
        EXPECT_EQ(FishAt(17), last) << t;
    }
}

// --- C: 41.736 to 55.648 s ------------------------------------------------------------------

TEST_F(SceneTimeline, Colour_split_looks_at_the_towers) {
    const double t = 48.0;
    DrawAt(t);
    ExpectView(t, vec3(50, 11, 11));
}

TEST_F(SceneTimeline, Colour_split_jumps_on_a_quiet_bass_and_decays_to_nothing) {
    spectrum[0] = quiet;
    DrawAt(48.0, 0.1f);
    EXPECT_FLOAT_EQ(Split(), 0.7f);
    spectrum[0] = loud;
    DrawAt(48.1, 0.1f); // 0.7 - 3 * 0.1
    EXPECT_FLOAT_EQ(Split(), 0.4f);
    DrawAt(48.2, 0.1f);
    EXPECT_NEAR(Split(), 0.1f, 1e-6f);
    DrawAt(48.3, 0.1f);
    EXPECT_EQ(Split(), 0.0f);
    EXPECT_EQ(Glow(), 0.25f) << "the glow is not this segment's";
}

TEST_F(SceneTimeline, Colour_split_takes_a_bass_of_exactly_three_hundredths_for_loud) {
    Pulse() = 0.7f;
    spectrum[0] = 0.03f;
    DrawAt(48.0, 0.1f);
    EXPECT_FLOAT_EQ(Split(), 0.4f);
}

TEST_F(SceneTimeline, Colour_split_is_nothing_after_a_very_long_frame) {
    Pulse() = 0.7f;
    DrawAt(48.0, 100.0f);
    EXPECT_EQ(Split(), 0.0f);
    EXPECT_EQ(Pulse(), 0.0f);
}

TEST_F(SceneTimeline, Only_the_lowest_band_counts) {
    for (float& band : spectrum)
        band = quiet;
    spectrum[0] = loud;
    DrawAt(48.0, 0.1f);
    EXPECT_EQ(Split(), 0.0f);
    for (float& band : spectrum)
        band = loud;
    spectrum[0] = quiet;
    DrawAt(48.1, 0.1f);
    EXPECT_FLOAT_EQ(Split(), 0.7f);
}

TEST_F(SceneTimeline, Music_moves_nothing_before_the_colour_split) {
    spectrum[0] = quiet;
    for (double t : {5.0, 20.0, 41.736 - moment}) {
        DrawAt(t);
        EXPECT_EQ(Pulse(), 0.0f) << t;
    }
}

// --- D: 55.648 to 76.516 s ------------------------------------------------------------------

TEST_F(SceneTimeline, Glow_looks_along_the_flight_and_ends_the_split) {
    spectrum[0] = quiet;
    DrawAt(55.648 - moment);
    EXPECT_FLOAT_EQ(Split(), 0.7f);
    const double t = 66.0;
    DrawAt(t);
    ExpectView(t, TargetAt(t));
    EXPECT_EQ(Split(), 0.0f);
}

TEST_F(SceneTimeline, Glow_jumps_on_a_quiet_bass_and_decays_to_its_rest) {
    spectrum[0] = quiet;
    DrawAt(60.0, 0.1f);
    EXPECT_FLOAT_EQ(Glow(), 1.0f);
    spectrum[0] = loud;
    DrawAt(60.1, 0.1f);
    EXPECT_FLOAT_EQ(Glow(), 0.7f);
    DrawAt(60.2, 0.2f); // 0.7 - 0.6 = 0.1 is below the rest
    EXPECT_EQ(Glow(), 0.25f);
    DrawAt(60.4, 100.0f);
    EXPECT_EQ(Glow(), 0.25f);
}

TEST_F(SceneTimeline, Glow_takes_a_bass_of_exactly_three_hundredths_for_loud) {
    Pulse() = 1.0f;
    spectrum[0] = 0.03f;
    DrawAt(60.0, 0.1f);
    EXPECT_FLOAT_EQ(Glow(), 0.7f);
}

TEST_F(SceneTimeline, Glow_starts_from_what_the_split_left) {
    spectrum[0] = quiet;
    DrawAt(55.648 - moment);
    spectrum[0] = loud;
    DrawAt(55.648 + moment, 0.1f); // 0.7 - 3 * 0.1
    EXPECT_FLOAT_EQ(Glow(), 0.4f);
}

// --- E: after 76.516 s ----------------------------------------------------------------------

TEST_F(SceneTimeline, Wisps_come_in_only_after_their_cut) {
    ParkWisps();
    DrawAt(76.516 - moment);
    EXPECT_EQ(Red(), vec3(0, 1000, 0));
    DrawAt(76.516 + moment);
    EXPECT_NEAR(Red().y, 3.0f, 1e-5f);
}

TEST_F(SceneTimeline, Wisps_circle_and_their_lights_go_with_them) {
    for (double t : {80.0, 97.0, 110.0}) {
        SCOPED_TRACE(t);
        DrawAt(t);
        const float s = static_cast<float>(std::sin(t) * 2.5);
        const float c = static_cast<float>(std::cos(t) * 2.5);
        const float half = static_cast<float>(std::sin(t * 0.5) * 2.5);
        ExpectPoint(Red(), vec3(half + 30.0f, 3.0f, 15.0f));
        ExpectPoint(Green(), vec3(25.0f, s + 2.5f, c + 15.0f));
        ExpectPoint(Blue(), vec3(22.0f, 3.0f, s + 15.0f));
        EXPECT_EQ(Light("posred"), Red());
        EXPECT_EQ(Light("posgreen"), Green());
        EXPECT_EQ(Light("posblue"), Blue());
    }
}

TEST_F(SceneTimeline, Approach_aims_at_the_basin_without_glow) {
    Scene1Probe::Bloom(TheScene()).SetIntensity(1.0f);
    DrawAt(80.0);
    ExpectView(80.0, vec3(30, 2, 14));
    EXPECT_EQ(Glow(), 0.0f);
    DrawAt(90.428 - moment);
    ExpectView(90.428 - moment, vec3(30, 2, 14));
}

TEST_F(SceneTimeline, Seventh_flight_looks_ahead_while_the_wisps_move_on) {
    DrawAt(80.0);
    for (double t : {90.428 + moment, 97.0, 104.34 - moment}) {
        SCOPED_TRACE(t);
        const vec3 before = Red();
        DrawAt(t);
        ExpectView(t, TargetAt(t));
        EXPECT_NE(Red(), before);
        EXPECT_EQ(Glow(), 0.0f) << "the glow stays out";
    }
}

TEST_F(SceneTimeline, Glow_is_put_out_by_the_approach_alone) {
    for (double t : {90.428 + moment, 97.0, 104.34 + moment, 118.0}) {
        SCOPED_TRACE(t);
        Scene1Probe::Bloom(TheScene()).SetIntensity(0.5f);
        DrawAt(t);
        EXPECT_EQ(Glow(), 0.5f);
    }
}

TEST_F(SceneTimeline, Finale_aims_at_the_middle_of_the_basin) {
    for (double t : {104.34 + moment, 118.0}) {
        SCOPED_TRACE(t);
        DrawAt(t);
        ExpectView(t, vec3(25, 3, 13));
    }
}

TEST_F(SceneTimeline, No_shader_stays_in_use_after_a_frame) {
    DrawAt(80.0);
    GLint program = -1;
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    EXPECT_EQ(program, 0);
}

// --- What is not its own --------------------------------------------------------------------

TEST_F(SceneTimeline, Every_segment_leaves_the_levels_of_the_others_alone) {
    for (const double t : {5.0, 13.912, 20.0, 34.0, 48.0, 80.0, 97.0, 110.0}) {
        SCOPED_TRACE(t);
        Scene1Probe::Rgb(TheScene()).SetOffset(0.375f);
        Scene1Probe::Bloom(TheScene()).SetIntensity(0.625f);
        DrawAt(t, 1.0f);
        EXPECT_EQ(Split(), t == 48.0 ? 0.0f : 0.375f); // its own: to rest in a loud frame of 1 s
        EXPECT_EQ(Glow(), t == 80.0 ? 0.0f : 0.625f);  // put out by the approach
    }
}

// --- Every turn of the camera ---------------------------------------------------------------

TEST_F(SceneTimeline, Turned_camera_stands_where_the_flight_is_when_it_turns) {
    // Time moves 0.1 s at each reading: demo time, target, position, and the position again.
    struct Case {
        double t;
        vec3 target;
    };
    const Case cases[] = {{20.0, vec3(0, 0, 0)},
                          {48.0, vec3(50, 11, 11)},
                          {80.0, vec3(30, 2, 14)},
                          {110.0, vec3(25, 3, 13)}};
    for (const Case& turn : cases) {
        SCOPED_TRACE(turn.t);
        GoTo(turn.t);
        SetTickingTime(turn.t, 0.1);
        TheScene().Draw(0.02f);
        ExpectView(turn.t + 0.3, turn.target);
    }
}

TEST_F(SceneTimeline, Camera_that_is_not_turned_asks_for_its_target_before_its_place) {
    GoTo(5.0);
    SetTickingTime(5.0, 0.1);
    TheScene().Draw(0.02f);
    Vell::Camera& view = Scene1Probe::ViewCamera(TheScene());
    ExpectPoint(view.GetTarget(), TargetAt(5.1));
    ExpectPoint(view.GetPosition(), EyeAt(5.2));
}
