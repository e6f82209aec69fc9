#include "tests/demo/free_flight.h"
#include "tests/scene/layout.h"

#include <gmock/gmock.h>

#include <array>
#include <type_traits>
#include <utility>
#include <vector>

#include <GL/glu.h>

using ::testing::ElementsAre;
using Vell::vec3;

namespace {

std::vector<std::array<double, 9>> views;

} // namespace

// In the place of GLU's own: the linker finds this one first.
extern "C" void gluLookAt(double eyeX, double eyeY, double eyeZ, double targetX, double targetY,
                          double targetZ, double upX, double upY, double upZ) {
    views.push_back({eyeX, eyeY, eyeZ, targetX, targetY, targetZ, upX, upY, upZ});
}

// --------------------------------------------------------------------------- What it is made of

TEST(FreeFlyCamera, Starts_with_its_target_10_up_and_its_eye_not_yet_placed) {
    FreeFlyCamera camera;
    EXPECT_EQ(camera.GetTarget(), vec3(0, 10, 0));
    EXPECT_EQ(camera.GetPosition(), vec3(0, 0, 0));
    EXPECT_EQ(FreeFlyCameraProbe::Azimuth(camera), 50.0f);
    EXPECT_EQ(FreeFlyCameraProbe::Polar(camera), 20.0f);
    EXPECT_EQ(FreeFlyCameraProbe::Speed(camera), 10.0f);
    EXPECT_EQ(FreeFlyCameraProbe::Sensitivity(camera), 0.5f);
    EXPECT_EQ(FreeFlyCameraProbe::Unused(camera), vec3(0, 0, 0));
}

TEST(FreeFlyCamera, Keeps_its_fields_behind_the_base_s_in_this_order) {
    const FreeFlyCamera camera;
    const std::vector<const void*> fields = FreeFlyCameraProbe::Fields(camera);
    EXPECT_TRUE(InOrder(fields));
    EXPECT_EQ(fields.front(), reinterpret_cast<const char*>(&camera) + sizeof(void*))
        << "behind the virtual table";
}

TEST(FreeFlyCamera, Has_the_virtual_operations_of_the_base_and_no_other) {
    EXPECT_EQ(Slot(&FreeFlyCamera::Draw), Slot(&Vell::Camera::Draw));
    EXPECT_TRUE((std::is_same_v<decltype(&FreeFlyCamera::Draw), void (Vell::Camera::*)()>));
    EXPECT_TRUE(std::has_virtual_destructor_v<FreeFlyCamera>);
    // What is not virtual has an address there, which is no small place in a table.
    EXPECT_GT(Slot(&FreeFlyCamera::Update), 100u);
}

TEST_F(FreeFlight, Draws_as_the_base_does_from_eye_to_target_with_y_up) {
    camera.SetTarget(vec3(1, 2, 3));
    Update(Event(SDL_NOEVENT));
    static_cast<Vell::Camera&>(camera).Draw();
    ASSERT_EQ(views.size(), 1u);
    const vec3 eye = camera.GetPosition();
    ExpectVector(eye, 1 + root3 / 4, 2.5f, 3.75f);
    EXPECT_THAT(views.front(), ElementsAre(static_cast<double>(eye.x), static_cast<double>(eye.y),
                                           static_cast<double>(eye.z), 1, 2, 3, 0, 1, 0));
}

// ---------------------------------------------------------------------------- Where it is placed

TEST(FreeFlyCamera, Stands_where_it_is_placed_and_looks_at_the_point) {
    FreeFlyCamera camera;
    camera.Place(vec3(3, 4, 5), vec3(3, 10, -3)); // a way of (0, 6, -8), 10 long
    EXPECT_EQ(camera.GetPosition(), vec3(3, 4, 5));
    ExpectVector(camera.GetTarget(), 3, 4.6f, 4.2f);
}

TEST(FreeFlyCamera, Stays_where_it_was_placed_when_nothing_happens) {
    for (const vec3& way : {vec3(1, 0, 0), vec3(-2, 1, 0.5f), vec3(0.3f, -4, 5), vec3(0, 0, -1)}) {
        FreeFlyCamera camera;
        camera.Place(vec3(3, 4, 5), vec3(3, 4, 5) + way);
        SDL_Event nothing = Event(SDL_NOEVENT);
        camera.Update(&nothing, 0.02f, noFloor);
        ExpectVector(camera.GetPosition(), 3, 4, 5);
    }
}

TEST(FreeFlyCamera, First_key_after_it_was_placed_moves_by_its_speed) {
    FreeFlyCamera camera;
    camera.Place(vec3(0, 10, 0), vec3(20, 10, 0));
    SDL_Event key = Event(SDL_KEYDOWN);
    key.key.keysym.sym = SDLK_UP;
    camera.Update(&key, 0.05f, noFloor); // 10 units a second
    ExpectVector(camera.GetPosition(), 0.5f, 10, 0);
}

// ----------------------------------------------------------------------------------- Its angles

TEST(FreeFlyCamera, First_update_places_the_eye_one_unit_from_the_target) {
    FreeFlyCamera camera;
    SDL_Event nothing = Event(SDL_NOEVENT);
    camera.Update(&nothing, 0.02f, noFloor);
    EXPECT_EQ(camera.GetTarget(), vec3(0, 10, 0));
    // sin 50 sin 20 = 0.7660444 0.3420201, cos 20 = 0.9396926, cos 50 sin 20 = 0.6427876 0.3420201
    ExpectVector(camera.GetPosition(), 0.2620026f, 10.9396926f, 0.2198463f);
}

TEST_F(FreeFlight, Eye_stands_on_a_unit_sphere_round_the_target) {
    ExpectVector(EyeFromTarget(), root3 / 4, 0.5f, 0.75f);
    PlaceAt(90.0f, 90.0f);
    ExpectVector(EyeFromTarget(), 1, 0, 0);
    PlaceAt(0.0f, 90.0f);
    ExpectVector(EyeFromTarget(), 0, 0, 1);
    PlaceAt(-150.0f, 120.0f); // sin = -1/2, cos = -sqrt(3) / 2; sin = sqrt(3) / 2, cos = -1/2
    ExpectVector(EyeFromTarget(), -root3 / 4, -0.5f, -0.75f);
}

// To radians an angle is multiplied by the double pi / 180 and rounded to a float, back by the
// float 57.2957763671875 and rounded again. Their product is 1 - 5.49e-8: were nothing rounded,
// 50 degrees would lose 10,000 * 2.75e-6 = 0.0275. But a float step is 3.81e-6 there, and rounding
// gives the loss back as soon as it is less than half a step. In steps of degrees and of radians:
//   50, steps of 2^-18 and 2^-24, factors 64 pi / 180 = 1.11701072 and 57.2957763671875 / 64 =
//   0.89524651:
//     13107200 -> 14640882.93 = 14640883 -> 13107199.35 = 13107199
//     13107199 -> 14640881.81 = 14640882 -> 13107198.45 = 13107198
//     13107198 -> 14640880.69 = 14640881 -> 13107197.56 = 13107198, and so on for ever
//   20, steps of 2^-19 and 2^-25, the same factors:
//     10485760 -> 11712706.34 = 11712706 -> 10485759.12 = 10485759
//     10485759 -> 11712705.22 = 11712705 -> 10485758.22 = 10485758
//     10485758 -> 11712704.11 = 11712704 -> 10485757.33 = 10485757
//     10485757 -> 11712702.99 = 11712703 -> 10485756.43 = 10485756
//     10485756 -> 11712701.87 = 11712702 -> 10485755.54 = 10485756, and so on for ever
TEST(FreeFlyCamera, Angles_lose_a_few_float_steps_and_then_none_in_10000_updates) {
    FreeFlyCamera camera;
    SDL_Event nothing = Event(SDL_NOEVENT);
    camera.Update(&nothing, 0.02f, noFloor);
    EXPECT_EQ(FreeFlyCameraProbe::Azimuth(camera), 13107199 * 0x1p-18f);
    EXPECT_EQ(FreeFlyCameraProbe::Polar(camera), 10485759 * 0x1p-19f);
    for (int update = 1; update < 10000; ++update)
        camera.Update(&nothing, 0.02f, noFloor);
    EXPECT_EQ(FreeFlyCameraProbe::Azimuth(camera), 13107198 * 0x1p-18f);
    EXPECT_EQ(FreeFlyCameraProbe::Polar(camera), 10485756 * 0x1p-19f);
}

// 64 degrees, steps of 2^-17 and 2^-23; below 64 degrees a step is 2^-18:
//     8388608 -> 9370165.07 = 9370165 -> 8388607.474 = 16777214.95 halves = 16777215 halves
//     8388607.5 -> 9370164.51 = 9370165 -> the same again
// The float nearest to pi / 180 is 7.8e-9 of it smaller: 8388607.5 would become 9370164.44 =
// 9370164 steps, and the angle would go on falling.
TEST_F(FreeFlight, Degrees_become_radians_by_a_double) {
    Azimuth() = 64.0f;
    for (int update = 0; update < 10000; ++update)
        Update(Event(SDL_NOEVENT));
    EXPECT_EQ(Azimuth(), 16777215 * 0x1p-18f);
}

// ------------------------------------------------------------------------------------ The mouse

TEST_F(FreeFlight, Mouse_turns_half_a_degree_a_pixel_away_from_200_200) {
    Update(PointerAt(210, 200));
    ExpectAngles(30 - 5, 60);
    Update(PointerAt(200, 193));
    ExpectAngles(25, 60 + 3.5f);
    Update(PointerAt(0, 241)); // left of it and above it the difference is negative
    ExpectAngles(25 + 100, 63.5f - 20.5f);
}

TEST_F(FreeFlight, Mouse_turns_as_far_as_a_pointer_can_go) {
    Update(PointerAt(65535, 200));
    EXPECT_NEAR(Azimuth(), 30 - 65335 * 0.5f, 0.01f); // a few float steps at 32,000
}

TEST_F(FreeFlight, Mouse_turns_while_a_button_is_held) {
    SDL_Event motion = PointerAt(210, 200);
    motion.motion.state = SDL_BUTTON(1);
    Update(motion);
    ExpectAngles(30 - 5, 60);
}

TEST_F(FreeFlight, Mouse_moves_the_eye_in_the_same_update_and_not_the_target) {
    Update(PointerAt(260, 140), 0.4f); // to 0 and 90 degrees
    EXPECT_EQ(camera.GetTarget(), vec3(0, 10, 0));
    ExpectVector(EyeFromTarget(), 0, 0, 1);
}

TEST_F(FreeFlight, Mouse_turns_by_where_the_pointer_is_not_by_how_far_it_came) {
    SDL_Event motion = PointerAt(220, 180);
    motion.motion.xrel = -500;
    motion.motion.yrel = 500;
    Update(motion);
    ExpectAngles(30 - 10, 60 + 10);
}

TEST_F(FreeFlight, Every_mouse_motion_puts_the_pointer_back_once) {
    Update(PointerAt(210, 190));
    EXPECT_THAT(warps, ElementsAre(std::pair(200, 200)));
    Update(PointerAt(0, 0));
    EXPECT_EQ(warps.size(), 2u);
    EXPECT_EQ(warps.back(), std::pair(200, 200));
}

TEST_F(FreeFlight, Pointer_exactly_at_200_200_changes_nothing_and_is_put_back_all_the_same) {
    FreeFlyCamera idle = camera;
    SDL_Event nothing = Event(SDL_NOEVENT);
    idle.Update(&nothing, 0.4f, noFloor);
    SDL_Event motion = PointerAt(200, 200);
    motion.motion.xrel = SDLK_z; // where a key event has its symbol
    Update(motion, 0.4f);
    EXPECT_EQ(Azimuth(), FreeFlyCameraProbe::Azimuth(idle));
    EXPECT_EQ(Polar(), FreeFlyCameraProbe::Polar(idle));
    EXPECT_EQ(camera.GetTarget(), idle.GetTarget());
    EXPECT_EQ(camera.GetPosition(), idle.GetPosition());
    EXPECT_THAT(warps, ElementsAre(std::pair(200, 200)));
}

TEST_F(FreeFlight, Azimuth_is_never_wrapped) {
    Update(PointerAt(1000, 200));
    ExpectAngles(30 - 400, 60);
    ExpectVector(EyeFromTarget(), -0.1736482f * root3 / 2, 0.5f, 0.9848078f * root3 / 2); // at -10
}

// ------------------------------------------------------------------------------------ The poles

TEST_F(FreeFlight, Polar_angle_of_180_or_more_becomes_179) {
    for (const Uint16 y : {20, 19, 0}) { // 90 + 90, + 90.5, + 100
        SCOPED_TRACE(y);
        Polar() = 90.0f;
        Update(PointerAt(200, y));
        ExpectAngles(30, 179);
    }
}

TEST_F(FreeFlight, Polar_angle_below_180_stays) {
    Polar() = 90.0f;
    Update(PointerAt(200, 21)); // 90 + 89.5
    ExpectAngles(30, 179.5f);
}

TEST_F(FreeFlight, Polar_angle_of_1_or_less_becomes_1) {
    for (const Uint16 y : {202, 203, 204, 1000}) { // 2 - 1, - 1.5, - 2, - 400
        SCOPED_TRACE(y);
        Polar() = 2.0f;
        Update(PointerAt(200, y));
        ExpectAngles(30, 1);
    }
    Polar() = 1.875f;
    Update(PointerAt(200, 202)); // 1.875 - 1
    ExpectAngles(30, 1);
}

TEST_F(FreeFlight, Polar_angle_above_1_stays) {
    Polar() = 2.0f;
    Update(PointerAt(200, 201));
    ExpectAngles(30, 1.5f);
}

TEST_F(FreeFlight, Eye_is_placed_by_the_angle_off_the_pole) {
    PlaceAt(90.0f, 90.0f);
    Update(PointerAt(200, 0));
    ExpectVector(EyeFromTarget(), 0.0174524f, -0.9998477f, 0); // sin 179, cos 179
    Update(PointerAt(200, 1000));
    ExpectVector(EyeFromTarget(), 0.0174524f, 0.9998477f, 0); // sin 1, cos 1
}
