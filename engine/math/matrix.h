#pragma once

#include "engine/math/vec3.h"

namespace Vell {

/// 4 x 4 float matrix for column vectors: a * b applies b first.
///
/// Stored row by row, element (row i, column j) at index 4i + j, so the translation is at 3, 7 and
/// 11. OpenGL stores column by column: call Transpose() before handing Get() to glMultMatrixf.
class Matrix {
public:
    /// The identity.
    Matrix();
    Matrix(const Matrix&) = default;
    Matrix& operator=(const Matrix&) = default;
    ~Matrix() = default;

    /// Becomes the identity again.
    void Identity();

    /// Overwrites the translation column, index 3, 7 and 11; it does not multiply.
    void Translate(const vec3& t);
    /// Overwrites the diagonal, index 0, 5 and 10; it does not multiply, so after a rotation it
    /// replaces the cosines there and leaves the sines.
    void Scale(const vec3& s);

    /// this = this * rotation about x; radians, counter-clockwise looking down the axis from +x.
    void RotateX(float angle);
    /// this = this * rotation about y; radians. Its sines have the opposite sign to those of the
    /// other two axes, which is intended: +90 degrees turn the x axis toward +z.
    void RotateY(float angle);
    /// this = this * rotation about z; radians, counter-clockwise looking down the axis from +z.
    void RotateZ(float angle);

    /// Exchanges rows and columns in place; twice is as before.
    void Transpose();

    /// A copy of element `i`, 0..15. There is no range check.
    float operator[](int i) const { return m[i]; }
    float operator()(int i) const { return m[i]; }

    /// The sixteen floats, for OpenGL; valid as long as the matrix.
    float* Get() { return m; }
    const float* Get() const { return m; }

    /// The ordinary product, summed in double.
    Matrix operator*(const Matrix& b) const;
    /// this = this * b.
    void operator*=(const Matrix& b);
    /// Transforms a point. The bottom row is not read and nothing is divided by w, so this is right
    /// for affine matrices only.
    vec3 operator*(const vec3& v) const;

private:
    float m[16];
};

} // namespace Vell
