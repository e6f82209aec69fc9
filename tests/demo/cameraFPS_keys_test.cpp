// How the free-fly camera is moved: keys, events of other kinds, and the floor.

#include "tests/demo/free_flight.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

using ::testing::IsEmpty;
using Vell::vec3;

namespace {

struct Step {
    SDLKey key;
    int symbol;
    vec3 target; // after 0.4 s, from (0, 10, 0)
};

// The step forward is 10 * 0.4 times the way from eye to target: (-sqrt(3), -2, -3).
const Step steps[] = {
    {SDLK_z, 122, vec3(-root3, 8, -3)},    {SDLK_s, 115, vec3(root3, 12, 3)},
    {SDLK_q, 113, vec3(-3, 10, root3)},    {SDLK_d, 100, vec3(3, 10, -root3)},
    {SDLK_LEFT, 276, vec3(-3, 10, root3)}, {SDLK_RIGHT, 275, vec3(3, 10, -root3)},
    {SDLK_UP, 273, vec3(-root3, 8, -3)},   {SDLK_DOWN, 274, vec3(root3, 12, 3)},
};

} // namespace

TEST_F(FreeFlight, Eight_keys_move_the_target_and_the_eye_with_it) {
    for (const Step& step : steps) {
        SCOPED_TRACE(step.symbol);
        EXPECT_EQ(step.key, step.symbol);
        camera.SetTarget(vec3(0, 10, 0));
        PlaceAt(30.0f, 60.0f);
        Update(KeyDown(step.key), 0.4f);
        ExpectVector(camera.GetTarget(), step.target.x, step.target.y, step.target.z);
        ExpectVector(EyeFromTarget(), root3 / 4, 0.5f, 0.75f);
        ExpectAngles(30, 60);
    }
    EXPECT_THAT(warps, IsEmpty());
}

TEST_F(FreeFlight, Sideways_leaves_the_height_exactly) {
    camera.SetTarget(vec3(0, 0.1f, 0));
    for (const SDLKey key : {SDLK_q, SDLK_d, SDLK_LEFT, SDLK_RIGHT}) {
        Update(KeyDown(key), 0.4f);
        EXPECT_EQ(camera.GetTarget().y, 0.1f) << key;
    }
}

TEST_F(FreeFlight, Sideways_and_a_floor_at_the_same_height_leave_a_negative_zero) {
    camera.SetTarget(vec3(0, -0.0f, 0));
    for (const SDLKey key : {SDLK_q, SDLK_d}) {
        Update(KeyDown(key), 0.4f, 0.0f); // no greater than -0
        EXPECT_TRUE(std::signbit(camera.GetTarget().y)) << key;
    }
}

TEST_F(FreeFlight, Shift_and_the_like_make_no_difference) {
    SDL_Event forward = KeyDown(SDLK_z);
    forward.key.keysym.mod = static_cast<SDLMod>(KMOD_SHIFT | KMOD_CAPS);
    Update(forward, 0.4f);
    ExpectVector(camera.GetTarget(), -root3, 8, -3);
}

TEST_F(FreeFlight, Every_other_key_moves_nothing) {
    for (int key = SDLK_FIRST; key < SDLK_LAST; ++key) {
        const auto isKey = [&](const Step& step) { return step.key == key; };
        if (std::any_of(std::begin(steps), std::end(steps), isKey))
            continue;
        Update(KeyDown(static_cast<SDLKey>(key)), 0.4f);
        ASSERT_EQ(camera.GetTarget(), vec3(0, 10, 0)) << key;
    }
}

TEST_F(FreeFlight, A_step_is_as_long_as_the_frame) {
    Update(KeyDown(SDLK_z), 0.0f);
    EXPECT_EQ(camera.GetTarget(), vec3(0, 10, 0));
    Update(KeyDown(SDLK_z), 0.1f); // a quarter of the steps above
    ExpectVector(camera.GetTarget(), -root3 / 4, 9.5f, -0.75f);
}

TEST(FreeFlyCamera, First_step_is_made_from_the_eye_that_still_stands_at_the_origin) {
    FreeFlyCamera camera;
    SDL_Event forward = KeyDown(SDLK_z);
    camera.Update(&forward, 0.5f, noFloor); // (0, 10, 0) * 10 * 0.5 on top of it
    EXPECT_EQ(camera.GetTarget(), vec3(0, 60, 0));
}

TEST_F(FreeFlight, A_step_goes_the_way_that_the_last_update_looked) {
    PlaceAt(0.0f, 90.0f);
    Azimuth() = 90.0f; // where this update will look
    Update(KeyDown(SDLK_z), 0.4f);
    ExpectVector(camera.GetTarget(), 0, 10, -4);
    Update(KeyDown(SDLK_z), 0.4f);
    ExpectVector(camera.GetTarget(), -4, 10, -4);
}

TEST_F(FreeFlight, An_event_that_is_handed_over_again_moves_and_turns_again) {
    SDL_Event forward = KeyDown(SDLK_z);
    camera.Update(&forward, 0.4f, noFloor);
    camera.Update(&forward, 0.4f, noFloor);
    ExpectVector(camera.GetTarget(), -2 * root3, 6, -6);
    EXPECT_EQ(forward.type, SDL_KEYDOWN) << "it is only read";
    EXPECT_EQ(forward.key.keysym.sym, SDLK_z);
    SDL_Event motion = PointerAt(210, 200);
    camera.Update(&motion, 0.4f, noFloor);
    camera.Update(&motion, 0.4f, noFloor);
    ExpectAngles(30 - 2 * 5, 60);
}

TEST_F(FreeFlight, Every_other_kind_of_event_only_places_the_eye) {
    for (int type = 0; type < SDL_NUMEVENTS; ++type) {
        if (type == SDL_KEYDOWN || type == SDL_MOUSEMOTION)
            continue;
        SCOPED_TRACE(type);
        camera.SetPosition(vec3(7, 8, 9));
        for (SDL_Event event : {KeyDown(SDLK_z), PointerAt(300, 100)}) {
            event.type = static_cast<Uint8>(type); // all but its kind
            Update(event, 0.4f);
            EXPECT_EQ(camera.GetTarget(), vec3(0, 10, 0));
            ExpectAngles(30, 60);
            ExpectVector(EyeFromTarget(), root3 / 4, 0.5f, 0.75f);
        }
    }
    EXPECT_THAT(warps, IsEmpty());
}

// ------------------------------------------------------------------------------------ The floor

TEST_F(FreeFlight, Floor_lifts_the_target_after_the_step_and_before_the_eye_is_placed) {
    Update(KeyDown(SDLK_z), 0.4f, 9.0f); // down to 8, up to 9
    ExpectVector(camera.GetTarget(), -root3, 9, -3);
    ExpectVector(camera.GetPosition(), -root3 + root3 / 4, 9.5f, -3 + 0.75f);
}

TEST_F(FreeFlight, Floor_lifts_a_target_that_does_not_move) {
    Update(Event(SDL_NOEVENT), 0.4f, 10.5f);
    EXPECT_EQ(camera.GetTarget(), vec3(0, 10.5f, 0));
    ExpectVector(camera.GetPosition(), root3 / 4, 11, 0.75f);
}

TEST_F(FreeFlight, Floor_is_a_limit_from_below_only) {
    Update(Event(SDL_NOEVENT), 0.4f, 10.0f);
    EXPECT_EQ(camera.GetTarget(), vec3(0, 10, 0));
    Update(KeyDown(SDLK_s), 0.4f, 10.0f);
    ExpectVector(camera.GetTarget(), root3, 12, 3);
}
