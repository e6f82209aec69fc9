#include "demo/camera.h"

#include "tests/support/fake_time.h"
#include "tests/support/private_member.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

using Vell::vec3;

OPEN_PRIVATE(cameraCurrent, &Camera::current);
OPEN_PRIVATE(cameraPaths, &Camera::paths);

struct CameraProbe {
    static unsigned int Current(const Camera& camera) { return camera.*cameraCurrent; }
    static const std::vector<CameraPath>& Paths(const Camera& camera) {
        return camera.*cameraPaths;
    }
};

namespace {

// Private fields in their order. An explicit instantiation may name them, and defines the function
// declared before it.
std::vector<const void*> FieldsOf(const Camera& camera);

template <auto... fields>
struct Open {
    friend std::vector<const void*> FieldsOf(const Camera& camera) {
        return {&(camera.*fields)...};
    }
};
template struct Open<&Camera::paths, &Camera::current, &Camera::clock>;

void ExpectPoint(const vec3& actual, float x, float y, float z) {
    constexpr float rounding = 1e-5f; // a few float steps at values up to 30
    EXPECT_NEAR(actual.x, x, rounding);
    EXPECT_NEAR(actual.y, y, rounding);
    EXPECT_NEAR(actual.z, z, rounding);
}

/// Two flights: 4 s along +x from the origin, then 2 s upwards at x = 20. Time starts at 0.
class CameraPaths : public ::testing::Test {
protected:
    void SetUp() override {
        SetFakeTime(0.0);
        camera = std::make_unique<Camera>();
        camera->AddPath(vec3(0, 0, 0), vec3(8, 4, -16), 4.0f);
        camera->AddPath(vec3(20, 0, 0), vec3(20, 10, 0), 2.0f);
        camera->Reset();
    }
    void TearDown() override { ClearFakeTime(); }

    unsigned int Current() const { return CameraProbe::Current(*camera); }

    /// Plays both flights to their ends: at 6.25 s no flight is left.
    void RunOut() {
        SetFakeTime(4.125);
        camera->GetPos();
        SetFakeTime(6.25); // 2.125 s after the second flight began: u = 1.0625
        camera->GetPos();
    }

    std::unique_ptr<Camera> camera;
};

} // namespace

TEST_F(CameraPaths, Start_at_the_first_flight) {
    EXPECT_EQ(Current(), 0u);
    ExpectPoint(camera->GetPos(), 0, 0, 0);
}

TEST_F(CameraPaths, Eye_moves_along_the_straight_line_at_constant_speed) {
    SetFakeTime(1.0); // u = 1 / 4
    ExpectPoint(camera->GetPos(), 2, 1, -4);
    SetFakeTime(3.0); // u = 3 / 4
    ExpectPoint(camera->GetPos(), 6, 3, -12);
}

TEST_F(CameraPaths, Target_leads_the_eye_by_a_tenth_of_the_flight) {
    SetFakeTime(1.0); // v = 0.25 + 0.1
    ExpectPoint(camera->GetTarget(), 8 * 0.35f, 4 * 0.35f, -16 * 0.35f);
}

TEST_F(CameraPaths, Target_adds_its_lead_in_double) {
    Camera line;
    line.AddPath(vec3(0), vec3(1), 1.0f);
    SetFakeTime(0.0);
    line.Reset();
    SetFakeTime(0.005);
    // The float 0.005 is 0.004999999888. With 0.1 that is 0.104999999888, between the floats
    // 0.104999996722 (nearer) and 0.105000004172; with the float 0.1 it would be the other one.
    EXPECT_EQ(line.GetTarget().x, 0.104999996722f);
}

TEST_F(CameraPaths, Eye_is_the_way_times_the_part_flown_plus_the_start_in_floats) {
    Camera line;
    line.AddPath(vec3(1.0f, 0, 0), vec3(1e-8f, 0, 0), 1.0f);
    line.Reset(); // at 0 s
    SetFakeTime(1.0);
    // 1e-8 - 1 is -1 as a float, and -1 * 1 + 1 is 0. In double, or as a blend of both ends, 1e-8.
    EXPECT_EQ(line.GetPos().x, 0.0f);
}

TEST_F(CameraPaths, Asking_twice_within_a_flight_gives_the_same_point) {
    SetFakeTime(1.0);
    ExpectPoint(camera->GetPos(), 2, 1, -4);
    ExpectPoint(camera->GetPos(), 2, 1, -4);
    EXPECT_EQ(Current(), 0u);
}

TEST_F(CameraPaths, Do_not_advance_when_exactly_the_whole_flight_has_passed) {
    SetFakeTime(4.0); // u = 1
    ExpectPoint(camera->GetPos(), 8, 4, -16);
    ExpectPoint(camera->GetTarget(), 8.8f, 4.4f, -17.6f);
    EXPECT_EQ(Current(), 0u);
    SetFakeTime(4.0625);
    camera->GetPos();
    EXPECT_EQ(Current(), 1u);
}

TEST_F(CameraPaths, Eye_goes_beyond_the_end_in_the_frame_that_crosses_it) {
    SetFakeTime(4.5); // u = 1.125
    ExpectPoint(camera->GetPos(), 9, 4.5f, -18);
    EXPECT_EQ(Current(), 1u);
}

TEST_F(CameraPaths, Target_goes_beyond_the_end_in_the_frame_that_crosses_it) {
    SetFakeTime(4.5); // v = 1.125 + 0.1
    ExpectPoint(camera->GetTarget(), 8 * 1.225f, 4 * 1.225f, -16 * 1.225f);
    EXPECT_EQ(Current(), 1u);
}

TEST_F(CameraPaths, Only_the_first_of_two_queries_across_an_end_advances) {
    SetFakeTime(4.5);
    camera->GetTarget();
    EXPECT_EQ(Current(), 1u);
    ExpectPoint(camera->GetPos(), 20, 0, 0);
    EXPECT_EQ(Current(), 1u);
}

TEST_F(CameraPaths, Target_of_the_old_flight_meets_the_eye_of_the_new_one_at_a_cut) {
    SetFakeTime(4.5);
    ExpectPoint(camera->GetTarget(), 9.8f, 4.9f, -19.6f);
    ExpectPoint(camera->GetPos(), 20, 0, 0);
    ExpectPoint(camera->GetTarget(), 20, 1, 0);
}

TEST_F(CameraPaths, Overshoot_at_an_end_is_dropped) {
    SetFakeTime(4.5);
    camera->GetPos();
    SetFakeTime(5.5); // 1 s after the frame that crossed, of 2 s
    ExpectPoint(camera->GetPos(), 20, 5, 0);
}

TEST_F(CameraPaths, Advance_past_the_last_flight_and_hold_its_end) {
    RunOut();
    EXPECT_EQ(Current(), 2u);
    ExpectPoint(camera->GetPos(), 20, 10, 0);
    ExpectPoint(camera->GetTarget(), 20, 10, 0);
    SetFakeTime(8.25); // held for exactly the last flight's 2 s: not over yet
    ExpectPoint(camera->GetTarget(), 20, 10, 0);
    EXPECT_EQ(Current(), 2u);
}

TEST_F(CameraPaths, Target_alone_holds_the_last_end_before_it_wraps) {
    SetFakeTime(4.125);
    camera->GetTarget();
    SetFakeTime(6.25); // 2.125 s after the second flight began
    camera->GetTarget();
    EXPECT_EQ(Current(), 2u);
    ExpectPoint(camera->GetTarget(), 20, 10, 0);
    SetFakeTime(8.5);
    camera->GetTarget();
    EXPECT_EQ(Current(), 0u);
}

TEST_F(CameraPaths, Eye_starts_the_hold_again_each_time_it_is_over) {
    RunOut(); // at 6.25 s
    SetFakeTime(8.5);
    camera->GetPos(); // 2.25 s later: the hold of 2 s is over
    SetFakeTime(9.0);
    ExpectPoint(camera->GetTarget(), 20, 10, 0); // 0.5 s into the next one, no end to wrap at
    EXPECT_EQ(Current(), 2u);
}

TEST_F(CameraPaths, Eye_never_wraps_to_the_first_flight) {
    RunOut();
    SetFakeTime(8.5);
    camera->GetPos();
    SetFakeTime(20.0);
    ExpectPoint(camera->GetPos(), 20, 10, 0);
    EXPECT_EQ(Current(), 2u);
}

TEST_F(CameraPaths, Target_wraps_only_at_the_next_end_after_the_last_flight) {
    RunOut();
    SetFakeTime(8.5); // 2.25 s into the hold
    ExpectPoint(camera->GetTarget(), 20, 10, 0);
    EXPECT_EQ(Current(), 0u);
    ExpectPoint(camera->GetPos(), 0, 0, 0);
    SetFakeTime(9.5); // 1 s into the first flight, which restarted at 8.5
    ExpectPoint(camera->GetPos(), 2, 1, -4);
}

TEST_F(CameraPaths, Reset_starts_the_first_flight_again) {
    SetFakeTime(4.5);
    camera->GetPos();
    SetFakeTime(5.0);
    camera->Reset();
    EXPECT_EQ(Current(), 0u);
    SetFakeTime(6.0);
    ExpectPoint(camera->GetPos(), 2, 1, -4);
}

TEST_F(CameraPaths, Adding_a_flight_touches_neither_the_current_one_nor_its_clock) {
    SetFakeTime(4.5);
    camera->GetPos();
    SetFakeTime(5.5);
    camera->AddPath(vec3(0), vec3(1), 1.0f);
    EXPECT_EQ(Current(), 1u);
    ExpectPoint(camera->GetPos(), 20, 5, 0);
}

TEST_F(CameraPaths, A_flight_added_while_the_last_end_is_held_is_flown_at_once) {
    RunOut(); // at 6.25 s
    SetFakeTime(6.75);
    camera->AddPath(vec3(0, 0, 0), vec3(8, 4, 2), 2.0f);
    EXPECT_EQ(Current(), 2u);
    ExpectPoint(camera->GetPos(), 2, 1, 0.5f); // 0.5 s of its 2 s
}

TEST_F(CameraPaths, Any_number_of_flights_is_played) {
    Camera many;
    for (int i = 0; i < 300; ++i)
        many.AddPath(vec3(static_cast<float>(i), 0, 0), vec3(static_cast<float>(i), 0, 0), 1.0f);
    many.Reset();
    for (int i = 0; i < 299; ++i) {
        SetFakeTime(2.0 * (i + 1));
        EXPECT_EQ(many.GetPos().x, static_cast<float>(i));
    }
    EXPECT_EQ(CameraProbe::Current(many), 299u);
    EXPECT_EQ(many.GetPos().x, 299.0f);
}

TEST_F(CameraPaths, Flights_are_kept_in_the_order_they_were_added) {
    const std::vector<CameraPath>& paths = CameraProbe::Paths(*camera);
    ASSERT_EQ(paths.size(), 2u);
    EXPECT_EQ(paths[0].end, vec3(8, 4, -16));
    EXPECT_EQ(paths[1].end, vec3(20, 10, 0));
}

TEST_F(CameraPaths, An_empty_list_answers_with_the_zero_vector) {
    Camera empty;
    SetFakeTime(5.0);
    ExpectPoint(empty.GetPos(), 0, 0, 0);
    ExpectPoint(empty.GetTarget(), 0, 0, 0);
    EXPECT_EQ(CameraProbe::Current(empty), 0u);
}

TEST(Camera, Is_its_flights_then_the_current_one_then_its_clock) {
    const Camera camera;
    const std::vector<const void*> fields = FieldsOf(camera);
    EXPECT_EQ(fields.front(), &camera) << "nothing stands before them, no virtual table either";
    EXPECT_TRUE(std::is_sorted(fields.begin(), fields.end()));
}

TEST(CameraPath, Is_copied_by_value) {
    const CameraPath original{vec3(1, 2, 3), vec3(4, 5, 6), 7.0f};
    CameraPath copy(original);
    CameraPath assigned{};
    assigned = original;
    copy.start.x = 100;
    EXPECT_EQ(original.start, vec3(1, 2, 3));
    EXPECT_EQ(assigned.start, vec3(1, 2, 3));
    EXPECT_EQ(assigned.end, vec3(4, 5, 6));
    EXPECT_EQ(assigned.duration, 7.0f);
}
