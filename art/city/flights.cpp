#include "art/city/flights.h"

namespace Art {

namespace {

/// Height of the city's origin at t of a flight; it eases from one height to the other.
float CityHeight(Show::City city, float t) {
    const float eased = (1 - std::cos(std::min(t, 1.0f) * pi)) / 2;
    return Lerp(city == Show::City::Risen ? Show::risenHeight : Show::sunkenHeight,
                city == Show::City::Sunken ? Show::sunkenHeight : Show::risenHeight, eased);
}

} // namespace

Eye EyeAt(const Show::Flight& flight, float t) {
    const float city = CityHeight(flight.city, t);
    const vec3 eye = Lerp(flight.start, flight.end, t);
    const vec3 aim = flight.aim ? *flight.aim : eye + (flight.end - flight.start);
    return {eye - vec3{0, city, 0}, Normalized(aim - eye), -city};
}

vec3 RayThrough(const Eye& eye, float x, float y) {
    const vec3 right = Normalized(Cross(eye.forward, {0, 1, 0}));
    const vec3 up = Cross(right, eye.forward);
    return Normalized(eye.forward + right * (x * pictureHalfWidth) + up * (y * pictureHalfHeight));
}

} // namespace Art
