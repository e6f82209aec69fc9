#include "engine/math/matrix.h"

#include <cmath>
#include <utility>

namespace Vell {

namespace {

struct SineAndCosine {
    float sine, cosine;
};

/// Computed in double, stored as float.
SineAndCosine Turn(float angle) {
    const double radians = angle;
    return {static_cast<float>(std::sin(radians)), static_cast<float>(std::cos(radians))};
}

} // namespace

Matrix::Matrix() {
    Identity();
}

void Matrix::Identity() {
    for (int i = 0; i < 16; ++i)
        m[i] = i % 5 == 0 ? 1.0f : 0.0f; // the diagonal is 0, 5, 10, 15
}

void Matrix::Translate(const vec3& t) {
    m[3] = t.x;
    m[7] = t.y;
    m[11] = t.z;
}

void Matrix::Scale(const vec3& s) {
    m[0] = s.x;
    m[5] = s.y;
    m[10] = s.z;
}

void Matrix::RotateX(float angle) {
    const auto [sn, cs] = Turn(angle);
    Matrix rotation;
    rotation.m[5] = cs;
    rotation.m[6] = -sn;
    rotation.m[9] = sn;
    rotation.m[10] = cs;
    *this *= rotation;
}

void Matrix::RotateY(float angle) {
    const auto [sn, cs] = Turn(angle);
    Matrix rotation;
    rotation.m[0] = cs;
    rotation.m[2] = -sn; // on purpose unlike x and z: +90 degrees turn x to +z
    rotation.m[8] = sn;
    rotation.m[10] = cs;
    *this *= rotation;
}

void Matrix::RotateZ(float angle) {
    const auto [sn, cs] = Turn(angle);
    Matrix rotation;
    rotation.m[0] = cs;
    rotation.m[1] = -sn;
    rotation.m[4] = sn;
    rotation.m[5] = cs;
    *this *= rotation;
}

void Matrix::Transpose() {
    for (int row = 0; row < 4; ++row)
        for (int column = row + 1; column < 4; ++column)
            std::swap(m[4 * row + column], m[4 * column + row]);
}

Matrix Matrix::operator*(const Matrix& b) const {
    Matrix product;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k)
                sum += static_cast<double>(m[4 * row + k]) * b.m[4 * k + column];
            product.m[4 * row + column] = static_cast<float>(sum);
        }
    }
    return product;
}

void Matrix::operator*=(const Matrix& b) {
    *this = *this * b;
}

vec3 Matrix::operator*(const vec3& v) const {
    const double x = v.x;
    const double y = v.y;
    const double z = v.z;
    const auto component = [&](const float* row) {
        return static_cast<float>(row[0] * x + row[1] * y + row[2] * z + row[3]);
    };
    return vec3(component(m), component(m + 4), component(m + 8));
}

} // namespace Vell
