#include "web/gl/matrix.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace WebGL {

namespace {

using Wide = std::array<double, 16>;

std::size_t At(std::size_t row, std::size_t column) {
    return 4 * column + row;
}

void SwapRows(Wide& m, std::size_t a, std::size_t b) {
    for (std::size_t column = 0; column < 4; ++column)
        std::swap(m[At(a, column)], m[At(b, column)]);
}

void AddRow(Wide& m, std::size_t to, std::size_t from, double factor) {
    for (std::size_t column = 0; column < 4; ++column)
        m[At(to, column)] += factor * m[At(from, column)];
}

void ScaleRow(Wide& m, std::size_t row, double factor) {
    for (std::size_t column = 0; column < 4; ++column)
        m[At(row, column)] *= factor;
}

/// The row from `step` on with the largest element in that column.
std::size_t Pivot(const Wide& m, std::size_t step) {
    std::size_t best = step;
    for (std::size_t row = step + 1; row < 4; ++row)
        if (std::fabs(m[At(row, step)]) > std::fabs(m[At(best, step)]))
            best = row;
    return best;
}

/// Clears the column of all rows but its own, in `m` and alike in `inverse`. False when it cannot.
bool Eliminate(Wide& m, Wide& inverse, std::size_t step) {
    const std::size_t pivot = Pivot(m, step);
    if (m[At(pivot, step)] == 0.0)
        return false;
    SwapRows(m, step, pivot);
    SwapRows(inverse, step, pivot);
    const double factor = 1.0 / m[At(step, step)];
    ScaleRow(m, step, factor);
    ScaleRow(inverse, step, factor);
    for (std::size_t row = 0; row < 4; ++row) {
        if (row == step)
            continue;
        const double share = -m[At(row, step)];
        AddRow(m, row, step, share);
        AddRow(inverse, row, step, share);
    }
    return true;
}

template <class To, class From>
To Converted(const From& from) {
    To to{};
    for (std::size_t i = 0; i < from.size(); ++i)
        to[i] = static_cast<typename To::value_type>(from[i]);
    return to;
}

} // namespace

Matrix4 Product(const Matrix4& a, const Matrix4& b) {
    Matrix4 product{};
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column)
            product[At(row, column)] =
                a[At(row, 0)] * b[At(0, column)] + a[At(row, 1)] * b[At(1, column)] +
                a[At(row, 2)] * b[At(2, column)] + a[At(row, 3)] * b[At(3, column)];
    return product;
}

Vector4 Product(const Matrix4& m, const Vector4& v) {
    Vector4 product{};
    for (std::size_t row = 0; row < 4; ++row)
        product[row] = m[At(row, 0)] * v[0] + m[At(row, 1)] * v[1] + m[At(row, 2)] * v[2] +
                       m[At(row, 3)] * v[3];
    return product;
}

Vector4 RowProduct(const Vector4& v, const Matrix4& m) {
    return Product(Transposed(m), v);
}

Matrix4 Transposed(const Matrix4& m) {
    Matrix4 transposed{};
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 4; ++column)
            transposed[At(column, row)] = m[At(row, column)];
    return transposed;
}

// In double: the eye's place in the world is read from it, far from the origin.
Matrix4 Inverse(const Matrix4& m) {
    Wide left = Converted<Wide>(m);
    Wide right = Converted<Wide>(identity);
    for (std::size_t step = 0; step < 4; ++step)
        if (!Eliminate(left, right, step))
            return identity;
    return Converted<Matrix4>(right);
}

Matrix3 NormalMatrix(const Matrix4& modelview) {
    const Matrix4 inverse = Inverse(modelview);
    Matrix3 normal{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            normal[3 * column + row] = inverse[At(column, row)];
    return normal;
}

Matrix4 Translation(float x, float y, float z) {
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1};
}

Matrix4 Scaling(float x, float y, float z) {
    return {x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 0, 0, 0, 1};
}

Matrix4 Rotation(float degrees, float x, float y, float z) {
    const float length = std::sqrt(x * x + y * y + z * z);
    if (length == 0.0f)
        return identity;
    x /= length;
    y /= length;
    z /= length;
    const float angle = degrees * std::numbers::pi_v<float> / 180.0f;
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    const float rest = 1.0f - c;
    return {x * x * rest + c,
            y * x * rest + z * s,
            x * z * rest - y * s,
            0,
            x * y * rest - z * s,
            y * y * rest + c,
            y * z * rest + x * s,
            0,
            x * z * rest + y * s,
            y * z * rest - x * s,
            z * z * rest + c,
            0,
            0,
            0,
            0,
            1};
}

Matrix4 Orthographic(double left, double right, double bottom, double top, double nearest,
                     double farthest) {
    const double width = right - left;
    const double height = top - bottom;
    const double depth = farthest - nearest;
    return Converted<Matrix4>(Wide{2.0 / width, 0, 0, 0, 0, 2.0 / height, 0, 0, 0, 0, -2.0 / depth,
                                   0, -(right + left) / width, -(top + bottom) / height,
                                   -(farthest + nearest) / depth, 1});
}

Matrix4 Perspective(double left, double right, double bottom, double top, double nearest,
                    double farthest) {
    const double width = right - left;
    const double height = top - bottom;
    const double depth = farthest - nearest;
    return Converted<Matrix4>(Wide{2.0 * nearest / width, 0, 0, 0, 0, 2.0 * nearest / height, 0, 0,
                                   (right + left) / width, (top + bottom) / height,
                                   -(farthest + nearest) / depth, -1, 0, 0,
                                   -2.0 * farthest * nearest / depth, 0});
}

} // namespace WebGL
