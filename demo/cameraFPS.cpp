#include "demo/cameraFPS.h"

#include <cmath>

using Vell::vec3;

namespace {

// Where the pointer is put back to, in pixels.
constexpr int pivotX = 200;
constexpr int pivotY = 200;

// Not each other's inverse to the last digit, on purpose: there is a double, back is a
// float, so both angles lose a few float steps over the first calls.
constexpr double radiansPerDegree = 0.017453292519943295;
constexpr float degreesPerRadian = 57.295776f;

/// Angles in radians: about the vertical from +z towards +x, and from straight up.
vec3 OnUnitSphere(double azimuth, double polar) {
    return vec3(static_cast<float>(std::sin(azimuth) * std::sin(polar)),
                static_cast<float>(std::cos(polar)),
                static_cast<float>(std::cos(azimuth) * std::sin(polar)));
}

} // namespace

FreeFlyCamera::FreeFlyCamera() {
    target = vec3(0.0f, 10.0f, 0.0f);
}

void FreeFlyCamera::Place(const vec3& eye, const vec3& point) {
    const vec3 back = Vell::Normalized(eye - point);
    azimuth = static_cast<float>(std::atan2(back.x, back.z) / radiansPerDegree);
    polar = static_cast<float>(std::acos(back.y) / radiansPerDegree);
    position = eye;
    target = eye - back;
}

void FreeFlyCamera::Update(SDL_Event* event, float dt, float floorY) {
    // Eye and target are one unit apart, so this is as long as the way that `dt` takes.
    const vec3 step = (target - position) * (speed * dt);
    if (event->type == SDL_MOUSEMOTION)
        Turn(event->motion);
    if (event->type == SDL_KEYDOWN)
        Move(event->key.keysym.sym, step);
    PlaceEye(floorY);
}

void FreeFlyCamera::Turn(const SDL_MouseMotionEvent& motion) {
    azimuth -= (motion.x - pivotX) * sensitivity;
    polar -= (motion.y - pivotY) * sensitivity;
    SDL_WarpMouse(pivotX, pivotY);
}

void FreeFlyCamera::Move(SDLKey key, const vec3& step) {
    switch (key) {
    case SDLK_z:
    case SDLK_UP:
        target += step;
        break;
    case SDLK_s:
    case SDLK_DOWN:
        target -= step;
        break;
    case SDLK_q: // sideways: the step, turned by a quarter about the vertical
    case SDLK_LEFT:
        target.x += step.z;
        target.z -= step.x;
        break;
    case SDLK_d:
    case SDLK_RIGHT:
        target.x -= step.z;
        target.z += step.x;
        break;
    default:
        break;
    }
}

void FreeFlyCamera::PlaceEye(float floorY) {
    if (polar >= 180.0f)
        polar = 179.0f;
    if (polar <= 1.0f)
        polar = 1.0f;
    azimuth = static_cast<float>(azimuth * radiansPerDegree);
    polar = static_cast<float>(polar * radiansPerDegree);
    if (floorY > target.y)
        target.y = floorY;
    position = target + OnUnitSphere(azimuth, polar);
    azimuth *= degreesPerRadian;
    polar *= degreesPerRadian;
}
