#pragma once

#include <algorithm>
#include <cmath>

/// Small value types of the programs that make the data.
///
/// The engine's own vectors are shaped by its interface (mutating cross product, sums in
/// double); these are plain, constant-friendly and cheap enough for billions of rays.
namespace Art {

inline constexpr float pi = 3.14159265358979f;

/// A pair of floats: texture coordinates or a place on the ground plan (x, z).
struct Vec2 {
    float x = 0;
    float y = 0;
};

constexpr Vec2 operator+(Vec2 a, Vec2 b) {
    return {a.x + b.x, a.y + b.y};
}
constexpr Vec2 operator-(Vec2 a, Vec2 b) {
    return {a.x - b.x, a.y - b.y};
}
constexpr Vec2 operator*(Vec2 a, float s) {
    return {a.x * s, a.y * s};
}
constexpr bool operator==(Vec2 a, Vec2 b) {
    return a.x == b.x && a.y == b.y;
}
constexpr float Dot(Vec2 a, Vec2 b) {
    return a.x * b.x + a.y * b.y;
}
/// Twice the signed area of the triangle (0, a, b).
constexpr float Cross(Vec2 a, Vec2 b) {
    return a.x * b.y - a.y * b.x;
}
inline float Length(Vec2 a) {
    return std::sqrt(Dot(a, a));
}

/// Three floats: a position or direction (+y up), or a linear RGB colour.
struct Vec3 {
    float x = 0;
    float y = 0;
    float z = 0;
};

constexpr Vec3 operator+(Vec3 a, Vec3 b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr Vec3 operator-(Vec3 a, Vec3 b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr Vec3 operator-(Vec3 a) {
    return {-a.x, -a.y, -a.z};
}
constexpr Vec3 operator*(Vec3 a, float s) {
    return {a.x * s, a.y * s, a.z * s};
}
constexpr Vec3 operator*(float s, Vec3 a) {
    return a * s;
}
/// Component-wise product, for colours.
constexpr Vec3 operator*(Vec3 a, Vec3 b) {
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
constexpr Vec3 operator/(Vec3 a, float s) {
    return {a.x / s, a.y / s, a.z / s};
}
constexpr bool operator==(Vec3 a, Vec3 b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}
constexpr Vec3& operator+=(Vec3& a, Vec3 b) {
    return a = a + b;
}
constexpr Vec3& operator*=(Vec3& a, float s) {
    return a = a * s;
}
constexpr float Dot(Vec3 a, Vec3 b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr Vec3 Cross(Vec3 a, Vec3 b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float Length(Vec3 a) {
    return std::sqrt(Dot(a, a));
}
/// The zero vector stays zero.
inline Vec3 Normalize(Vec3 a) {
    const float length = Length(a);
    return length > 0 ? a / length : a;
}

template <typename T>
constexpr T Mix(T a, T b, float t) {
    return a + (b - a) * t;
}
constexpr float Clamp01(float x) {
    return std::clamp(x, 0.0f, 1.0f);
}
/// 0 below `from`, 1 above `to`, with zero slope at both.
constexpr float SmoothStep(float from, float to, float x) {
    const float t = Clamp01((x - from) / (to - from));
    return t * t * (3 - 2 * t);
}

} // namespace Art
