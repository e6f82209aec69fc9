#include "art/city/flights.h"

namespace Art {

const std::vector<Flight>& Flights() {
    constexpr Vec3 kNone{};
    static const std::vector<Flight> flights = {
        {{0, 1, 0}, {0, 1, -10}, 13.912f, false, kNone, -20, -20},
        {{50, 1, -50}, {50, 10, -100}, 13.912f, true, {0, 0, 0}, -20, 0},
        {{30, -4, -100}, {30, -2, -50}, 13.912f, false, kNone, 0, 0},
        {{40, 8, 5}, {40, 10, 15}, 13.912f, true, {50, 11, 11}, 0, 0},
        {{25, 0.5f, 34}, {10, 3, 58}, 20.868f, false, kNone, 0, 0},
        {{7, 2, -5}, {17, 2, 4}, 13.912f, true, {30, 2, 14}, 0, 0},
        {{5, 8, 12}, {25, 5, 12}, 13.912f, false, kNone, 0, 0},
        {{20, 6, 5}, {30, 6, 4}, 13.912f, true, {25, 3, 13}, 0, 0},
    };
    return flights;
}

Eye EyeAt(const Flight& f, float t) {
    const float eased = (1 - std::cos(t * kPi)) / 2;
    const float city = Mix(f.cityFrom, f.cityTo, eased);
    const Vec3 eye = Mix(f.from, f.to, t);
    const Vec3 aim = f.aimed ? f.aim : eye + (f.to - f.from);
    return {eye - Vec3{0, city, 0}, Normalize(aim - eye), -city};
}

Vec3 RayThrough(const Eye& eye, float x, float y) {
    const Vec3 right = Normalize(Cross(eye.forward, {0, 1, 0}));
    const Vec3 up = Cross(right, eye.forward);
    return Normalize(eye.forward + right * (x * kHalfWidth) + up * (y * kHalfHeight));
}

} // namespace Art
