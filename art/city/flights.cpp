#include "art/city/flights.h"

namespace Art {

namespace {

Vec3 ToArt(const Vell::vec3& p) {
    return {p.x, p.y, p.z};
}

/// Height of the city's origin at t of a flight; it eases from one height to the other.
float CityHeight(Show::City city, float t) {
    const float eased = (1 - std::cos(std::min(t, 1.0f) * pi)) / 2;
    return Mix(city == Show::City::Risen ? Show::risenHeight : Show::sunkenHeight,
               city == Show::City::Sunken ? Show::sunkenHeight : Show::risenHeight, eased);
}

} // namespace

Eye EyeAt(const Show::Flight& flight, float t) {
    const float city = CityHeight(flight.city, t);
    const Vec3 from = ToArt(flight.start);
    const Vec3 to = ToArt(flight.end);
    const Vec3 eye = Mix(from, to, t);
    const Vec3 aim = flight.aim ? ToArt(*flight.aim) : eye + (to - from);
    return {eye - Vec3{0, city, 0}, Normalize(aim - eye), -city};
}

Vec3 RayThrough(const Eye& eye, float x, float y) {
    const Vec3 right = Normalize(Cross(eye.forward, {0, 1, 0}));
    const Vec3 up = Cross(right, eye.forward);
    return Normalize(eye.forward + right * (x * pictureHalfWidth) + up * (y * pictureHalfHeight));
}

} // namespace Art
