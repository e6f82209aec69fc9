#pragma once

#include <array>

/// 4 x 4 matrices as OpenGL keeps them: sixteen floats, column after column; element (row i, column
/// j) is at 4 j + i.
namespace WebGL {

using Matrix4 = std::array<float, 16>;
using Matrix3 = std::array<float, 9>;
using Vector4 = std::array<float, 4>;

inline constexpr Matrix4 identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

/// a · b: what b does to a vector, then what a does.
Matrix4 Product(const Matrix4& a, const Matrix4& b);

/// m · v.
Vector4 Product(const Matrix4& m, const Vector4& v);

/// The row vector v · m, which is how planes go the way back.
Vector4 RowProduct(const Vector4& v, const Matrix4& m);

Matrix4 Transposed(const Matrix4& m);

/// The identity for a matrix without inverse, as OpenGL leaves it open.
Matrix4 Inverse(const Matrix4& m);

/// The upper left 3 x 3 of the inverse, transposed: what turns normals.
Matrix3 NormalMatrix(const Matrix4& modelview);

Matrix4 Translation(float x, float y, float z);
Matrix4 Scaling(float x, float y, float z);

/// By `degrees` about the axis (x, y, z), of any length but 0, counter-clockwise seen against it.
Matrix4 Rotation(float degrees, float x, float y, float z);

/// What glOrtho() and glFrustum() multiply with.
Matrix4 Orthographic(double left, double right, double bottom, double top, double nearest,
                     double farthest);
Matrix4 Perspective(double left, double right, double bottom, double top, double nearest,
                    double farthest);

} // namespace WebGL
