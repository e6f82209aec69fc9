#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <vector>

#include <GL/gl.h>

/// OpenGL's matrix stacks: small, in double precision, column-major as OpenGL keeps them.
class MatrixStacks {
public:
    using Matrix = std::array<double, 16>;

    static Matrix Identity();
    static Matrix Translation(double x, double y, double z);
    static Matrix Scaling(double x, double y, double z);
    static Matrix Orthographic(double left, double right, double bottom, double top, double near,
                               double far);
    /// As gluPerspective: field of view in degrees.
    static Matrix Perspective(double fovy, double aspect, double near, double far);
    /// As gluLookAt: eye, then target, then the direction that is up.
    static Matrix LookAt(const std::array<double, 3>& eye, const std::array<double, 3>& target,
                         const std::array<double, 3>& up);

    void Choose(GLenum newMode) { mode = newMode; }
    void Load(const Matrix& matrix) { Top(mode) = matrix; }
    void Multiply(const Matrix& right);
    void Push();
    /// False when there is nothing to pop; the stack is then left as it is.
    bool Pop();

    GLenum Mode() const { return mode; }
    Matrix& Top(GLenum ofMode) { return Stack(ofMode).back(); }
    std::size_t Depth(GLenum ofMode) { return Stack(ofMode).size(); }

private:
    std::vector<Matrix>& Stack(GLenum ofMode);

    GLenum mode = GL_MODELVIEW;
    std::map<GLenum, std::vector<Matrix>> stacks;
};
