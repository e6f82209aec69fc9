#include "engine/math/vec3.h"

namespace Vell {

float vec3::Distance(const vec3& other) const {
    return (*this - other).Length();
}

double vec3::DotProduct(const vec3& other) const {
    return SumOfProducts(*this, other);
}

vec3& vec3::CrossProduct(const vec3& v) {
    CrossInPlace(v);
    return *this;
}

vec3& vec3::CrossProduct(const vec3& a, const vec3& b) {
    return *this = vec3(DifferenceOfProducts(a.y, b.z, a.z, b.y),
                        DifferenceOfProducts(a.z, b.x, a.x, b.z),
                        DifferenceOfProducts(a.x, b.y, a.y, b.x));
}

float ivec3::Distance(const ivec3& other) const {
    return (*this - other).Length();
}

std::int32_t ivec3::DotProduct(const ivec3& other) const {
    return SumOfProducts(*this, other);
}

ivec3& ivec3::CrossProduct(const ivec3& v) {
    CrossInPlace(v);
    return *this;
}

ivec3& ivec3::CrossProduct(const ivec3& a, const ivec3& b) {
    return *this = ivec3(DifferenceOfProducts(a.y, b.z, a.z, b.y),
                         DifferenceOfProducts(a.z, b.x, a.x, b.z),
                         DifferenceOfProducts(a.x, b.y, a.y, b.x));
}

} // namespace Vell
