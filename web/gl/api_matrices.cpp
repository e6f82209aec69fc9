// The functions of OpenGL and GLU that are about matrices.

#include "web/gl/context.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <GL/glu.h>

using namespace WebGL;

namespace {

MatrixStack& Selected() {
    Context& context = Current();
    return context.matrices.Selected(context.textures.active);
}

void Multiply(const Matrix4& matrix) {
    Current().lists.Do([=] { Selected().Set(Product(Selected().Top(), matrix)); });
}

void Load(const Matrix4& matrix) {
    Current().lists.Do([=] { Selected().Set(matrix); });
}

template <class Number>
Matrix4 FromMemory(const Number* numbers) {
    Matrix4 matrix{};
    std::transform(numbers, numbers + 16, matrix.begin(),
                   [](Number number) { return static_cast<float>(number); });
    return matrix;
}

struct Vector3 {
    float x, y, z;
};

Vector3 Cross(const Vector3& a, const Vector3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Vector3 Normalized(const Vector3& v) {
    const float length = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
    return length != 0.0f ? Vector3{v.x / length, v.y / length, v.z / length} : v;
}

Vector3 Narrow(GLdouble x, GLdouble y, GLdouble z) {
    return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
}

} // namespace

extern "C" {

void glMatrixMode(GLenum mode) {
    Current().lists.Do([=] {
        if (mode == GL_MODELVIEW || mode == GL_PROJECTION || mode == GL_TEXTURE)
            Current().matrices.mode = mode;
        else
            Current().errors.Raise(GL_INVALID_ENUM);
    });
}

void glPushMatrix(void) {
    Current().lists.Do([] {
        if (!Selected().Push())
            Current().errors.Raise(GL_STACK_OVERFLOW);
    });
}

void glPopMatrix(void) {
    Current().lists.Do([] {
        if (!Selected().Pop())
            Current().errors.Raise(GL_STACK_UNDERFLOW);
    });
}

void glLoadIdentity(void) {
    Load(identity);
}

void glLoadMatrixf(const GLfloat* m) {
    Load(FromMemory(m));
}

void glLoadMatrixd(const GLdouble* m) {
    Load(FromMemory(m));
}

void glMultMatrixf(const GLfloat* m) {
    Multiply(FromMemory(m));
}

void glMultMatrixd(const GLdouble* m) {
    Multiply(FromMemory(m));
}

void glTranslatef(GLfloat x, GLfloat y, GLfloat z) {
    Multiply(Translation(x, y, z));
}

void glTranslated(GLdouble x, GLdouble y, GLdouble z) {
    glTranslatef(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
}

void glScalef(GLfloat x, GLfloat y, GLfloat z) {
    Multiply(Scaling(x, y, z));
}

void glScaled(GLdouble x, GLdouble y, GLdouble z) {
    glScalef(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
}

void glRotatef(GLfloat angle, GLfloat x, GLfloat y, GLfloat z) {
    Multiply(Rotation(angle, x, y, z));
}

void glRotated(GLdouble angle, GLdouble x, GLdouble y, GLdouble z) {
    glRotatef(static_cast<float>(angle), static_cast<float>(x), static_cast<float>(y),
              static_cast<float>(z));
}

void glOrtho(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble near_val,
             GLdouble far_val) {
    if (left == right || bottom == top || near_val == far_val) {
        Current().errors.Raise(GL_INVALID_VALUE);
        return;
    }
    Multiply(Orthographic(left, right, bottom, top, near_val, far_val));
}

void glFrustum(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble near_val,
               GLdouble far_val) {
    if (left == right || bottom == top || near_val <= 0 || far_val <= 0 || near_val == far_val) {
        Current().errors.Raise(GL_INVALID_VALUE);
        return;
    }
    Multiply(Perspective(left, right, bottom, top, near_val, far_val));
}

// GLU does nothing where there is no such view: no width, no depth, no angle.
void gluPerspective(GLdouble fovy, GLdouble aspect, GLdouble zNear, GLdouble zFar) {
    const double half = fovy / 2.0 * std::numbers::pi / 180.0;
    const double depth = zFar - zNear;
    const double sine = std::sin(half);
    if (depth == 0 || sine == 0 || aspect == 0)
        return;
    const double cotangent = std::cos(half) / sine;
    Matrix4 matrix{};
    matrix[0] = static_cast<float>(cotangent / aspect);
    matrix[5] = static_cast<float>(cotangent);
    matrix[10] = static_cast<float>(-(zFar + zNear) / depth);
    matrix[11] = -1;
    matrix[14] = static_cast<float>(-2.0 * zNear * zFar / depth);
    Multiply(matrix);
}

void gluLookAt(GLdouble eyeX, GLdouble eyeY, GLdouble eyeZ, GLdouble centerX, GLdouble centerY,
               GLdouble centerZ, GLdouble upX, GLdouble upY, GLdouble upZ) {
    const Vector3 forward = Normalized(Narrow(centerX - eyeX, centerY - eyeY, centerZ - eyeZ));
    const Vector3 side = Normalized(Cross(forward, Narrow(upX, upY, upZ)));
    const Vector3 up = Cross(side, forward);
    Multiply({side.x, up.x, -forward.x, 0, side.y, up.y, -forward.y, 0, side.z, up.z, -forward.z, 0,
              0, 0, 0, 1});
    glTranslated(-eyeX, -eyeY, -eyeZ);
}

void gluOrtho2D(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top) {
    glOrtho(left, right, bottom, top, -1, 1);
}

const GLubyte* gluErrorString(GLenum error) {
    const char* const text = error == GL_NO_ERROR ? "no error" : "OpenGL error";
    return reinterpret_cast<const GLubyte*>(text);
}

} // extern "C"
