#include "tests/recording/matrixstack.h"

#include <cmath>
#include <numbers>

namespace {

using Point = std::array<double, 3>;

Point Minus(const Point& a, const Point& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Point Cross(const Point& a, const Point& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Point Unit(const Point& a) {
    const double length = std::hypot(a[0], a[1], a[2]);
    return length == 0.0 ? a : Point{a[0] / length, a[1] / length, a[2] / length};
}

MatrixStacks::Matrix Product(const MatrixStacks::Matrix& a, const MatrixStacks::Matrix& b) {
    MatrixStacks::Matrix product{};
    for (std::size_t column = 0; column < 4; ++column)
        for (std::size_t row = 0; row < 4; ++row)
            for (std::size_t k = 0; k < 4; ++k)
                product[4 * column + row] += a[4 * k + row] * b[4 * column + k];
    return product;
}

} // namespace

MatrixStacks::Matrix MatrixStacks::Identity() {
    return Scaling(1, 1, 1);
}

MatrixStacks::Matrix MatrixStacks::Translation(double x, double y, double z) {
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1};
}

MatrixStacks::Matrix MatrixStacks::Scaling(double x, double y, double z) {
    return {x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 0, 0, 0, 1};
}

MatrixStacks::Matrix MatrixStacks::Orthographic(double left, double right, double bottom,
                                                double top, double near, double far) {
    const double w = right - left;
    const double h = top - bottom;
    const double d = far - near;
    return {2 / w,
            0,
            0,
            0,
            0,
            2 / h,
            0,
            0,
            0,
            0,
            -2 / d,
            0,
            -(right + left) / w,
            -(top + bottom) / h,
            -(far + near) / d,
            1};
}

MatrixStacks::Matrix MatrixStacks::Perspective(double fovy, double aspect, double near,
                                               double far) {
    const double f = 1.0 / std::tan(fovy * std::numbers::pi / 360.0);
    const double d = near - far;
    return {f / aspect,         0, 0, 0, 0, f, 0, 0, 0, 0, (far + near) / d, -1, 0, 0,
            2 * far * near / d, 0};
}

MatrixStacks::Matrix MatrixStacks::LookAt(const Point& eye, const Point& target, const Point& up) {
    const Point forward = Unit(Minus(target, eye));
    const Point side = Unit(Cross(forward, up));
    const Point top = Cross(side, forward);
    const Matrix turn = {side[0], top[0], -forward[0], 0, side[1], top[1], -forward[1], 0,
                         side[2], top[2], -forward[2], 0, 0,       0,      0,           1};
    return Product(turn, Translation(-eye[0], -eye[1], -eye[2]));
}

void MatrixStacks::Multiply(const Matrix& right) {
    Top(mode) = Product(Top(mode), right);
}

void MatrixStacks::Push() {
    Stack(mode).push_back(Top(mode));
}

bool MatrixStacks::Pop() {
    if (Depth(mode) == 1)
        return false;
    Stack(mode).pop_back();
    return true;
}

std::vector<MatrixStacks::Matrix>& MatrixStacks::Stack(GLenum ofMode) {
    std::vector<Matrix>& stack = stacks[ofMode];
    if (stack.empty())
        stack.push_back(Identity());
    return stack;
}
