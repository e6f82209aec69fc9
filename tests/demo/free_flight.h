#pragma once

// What every test of the free-fly camera needs. SDL's way to move the pointer is replaced by one
// that notes it, so no window is needed; include this in one file of an executable only.

#include "demo/cameraFPS.h"
#include "tests/support/private_member.h"

#include <cmath>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

OPEN_PRIVATE(freeFlyCameraPosition, &FreeFlyCamera::position);
OPEN_PRIVATE(freeFlyCameraTarget, &FreeFlyCamera::target);
OPEN_PRIVATE(freeFlyCameraAzimuth, &FreeFlyCamera::azimuth);
OPEN_PRIVATE(freeFlyCameraPolar, &FreeFlyCamera::polar);
OPEN_PRIVATE(freeFlyCameraSpeed, &FreeFlyCamera::speed);
OPEN_PRIVATE(freeFlyCameraSensitivity, &FreeFlyCamera::sensitivity);
OPEN_PRIVATE(freeFlyCameraUnused, &FreeFlyCamera::unused);

struct FreeFlyCameraProbe {
    static std::vector<const void*> Fields(const FreeFlyCamera& c) {
        return {&(c.*freeFlyCameraPosition), &(c.*freeFlyCameraTarget),
                &(c.*freeFlyCameraAzimuth),  &(c.*freeFlyCameraPolar),
                &(c.*freeFlyCameraSpeed),    &(c.*freeFlyCameraSensitivity),
                &(c.*freeFlyCameraUnused)};
    }
    static float& Azimuth(FreeFlyCamera& c) { return c.*freeFlyCameraAzimuth; }
    static float& Polar(FreeFlyCamera& c) { return c.*freeFlyCameraPolar; }
    static float Speed(const FreeFlyCamera& c) { return c.*freeFlyCameraSpeed; }
    static float Sensitivity(const FreeFlyCamera& c) { return c.*freeFlyCameraSensitivity; }
    static const Vell::vec3& Unused(const FreeFlyCamera& c) { return c.*freeFlyCameraUnused; }
};

/// Where the pointer was put, in order.
inline std::vector<std::pair<int, int>> warps;

// The linker finds this one before the library's.
// NOLINTNEXTLINE(misc-definitions-in-headers): one file of an executable includes it
extern "C" void SDL_WarpMouse(Uint16 x, Uint16 y) {
    warps.emplace_back(x, y);
}

inline constexpr float noFloor = -1000.0f;
inline const float root3 = std::sqrt(3.0f);

inline void ExpectVector(const Vell::vec3& actual, float x, float y, float z) {
    constexpr float rounding = 1e-5f; // a few float steps at values up to 30
    EXPECT_NEAR(actual.x, x, rounding);
    EXPECT_NEAR(actual.y, y, rounding);
    EXPECT_NEAR(actual.z, z, rounding);
}

inline SDL_Event Event(Uint8 type) {
    SDL_Event event = SDL_Event();
    event.type = type;
    return event;
}

inline SDL_Event KeyDown(SDLKey key) {
    SDL_Event event = Event(SDL_KEYDOWN);
    event.key.keysym.sym = key;
    return event;
}

inline SDL_Event PointerAt(Uint16 x, Uint16 y) {
    SDL_Event event = Event(SDL_MOUSEMOTION);
    event.motion.x = x;
    event.motion.y = y;
    return event;
}

/// A camera 30 degrees about the vertical and 60 from straight up, its eye already placed: with
/// sin 30 = cos 60 = 1/2 and sin 60 = cos 30 = sqrt(3) / 2 it stands (sqrt(3) / 4, 1/2, 3/4) away
/// from its target.
class FreeFlight : public ::testing::Test {
protected:
    void SetUp() override {
        PlaceAt(30.0f, 60.0f);
        warps.clear();
    }

    float& Azimuth() { return FreeFlyCameraProbe::Azimuth(camera); }
    float& Polar() { return FreeFlyCameraProbe::Polar(camera); }

    void PlaceAt(float azimuth, float polar) {
        Azimuth() = azimuth;
        Polar() = polar;
        Update(Event(SDL_NOEVENT));
    }

    void Update(SDL_Event event, float dt = 0.0f, float floorY = noFloor) {
        camera.Update(&event, dt, floorY);
    }

    void ExpectAngles(float azimuth, float polar) {
        constexpr float loss = 1e-4f; // a few float steps, see the test of the conversions
        EXPECT_NEAR(Azimuth(), azimuth, loss);
        EXPECT_NEAR(Polar(), polar, loss);
    }

    /// The eye, seen from the target.
    Vell::vec3 EyeFromTarget() const { return camera.GetPosition() - camera.GetTarget(); }

    FreeFlyCamera camera;
};
