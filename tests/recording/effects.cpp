#include "tests/recording/effects.h"

#include "tests/recording/recorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace {

std::vector<unsigned char> Bytes(const void* data, std::size_t size) {
    if (data == nullptr)
        return {};
    const auto* first = static_cast<const unsigned char*>(data);
    return {first, first + size};
}

} // namespace

namespace Effect {

const GLubyte* glGetString(GLenum) {
    return reinterpret_cast<const GLubyte*>(gl.extensions.c_str());
}

void glGetFloatv(GLenum name, GLfloat* values) {
    const GLenum mode = name == GL_PROJECTION_MATRIX ? GL_PROJECTION : GL_MODELVIEW;
    const MatrixStacks::Matrix& matrix = gl.matrices.Top(mode);
    std::transform(matrix.begin(), matrix.end(), values,
                   [](double v) { return static_cast<GLfloat>(v); });
}

void glGetIntegerv(GLenum, GLint* values) {
    *values = gl.largestTexture;
}

GLenum glGetError() {
    if (gl.errors.empty())
        return GL_NO_ERROR;
    const GLenum first = gl.errors.front();
    gl.errors.erase(gl.errors.begin());
    return first;
}

GLuint glGenLists(GLsizei) {
    return gl.NewObject("list", "list");
}

void glGenTextures(GLsizei count, GLuint* names) {
    gl.NewObjects("texture", count, names);
}

void glGenBuffersARB(GLsizei count, GLuint* names) {
    gl.NewObjects("buffer", count, names);
}

void glGenRenderbuffersEXT(GLsizei count, GLuint* names) {
    gl.NewObjects("renderbuffer", count, names);
}

void glGenFramebuffersEXT(GLsizei count, GLuint* names) {
    gl.NewObjects("framebuffer", count, names);
}

void glMatrixMode(GLenum mode) {
    gl.matrices.Choose(mode);
}

void glLoadIdentity() {
    gl.matrices.Load(MatrixStacks::Identity());
}

void glPushMatrix() {
    gl.matrices.Push();
}

void glPopMatrix() {
    EXPECT_TRUE(gl.matrices.Pop()) << "glPopMatrix without a glPushMatrix";
}

void glMultMatrixf(const GLfloat* matrix) {
    MatrixStacks::Matrix factor;
    std::copy(matrix, matrix + factor.size(), factor.begin());
    gl.matrices.Multiply(factor);
}

void glTranslatef(GLfloat x, GLfloat y, GLfloat z) {
    gl.matrices.Multiply(MatrixStacks::Translation(x, y, z));
}

void glTranslated(GLdouble x, GLdouble y, GLdouble z) {
    gl.matrices.Multiply(MatrixStacks::Translation(x, y, z));
}

void glScalef(GLfloat x, GLfloat y, GLfloat z) {
    gl.matrices.Multiply(MatrixStacks::Scaling(x, y, z));
}

void glScaled(GLdouble x, GLdouble y, GLdouble z) {
    gl.matrices.Multiply(MatrixStacks::Scaling(x, y, z));
}

void glOrtho(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble near,
             GLdouble far) {
    gl.matrices.Multiply(MatrixStacks::Orthographic(left, right, bottom, top, near, far));
}

void gluPerspective(GLdouble fovy, GLdouble aspect, GLdouble near, GLdouble far) {
    gl.matrices.Multiply(MatrixStacks::Perspective(fovy, aspect, near, far));
}

void gluLookAt(GLdouble eyeX, GLdouble eyeY, GLdouble eyeZ, GLdouble targetX, GLdouble targetY,
               GLdouble targetZ, GLdouble upX, GLdouble upY, GLdouble upZ) {
    gl.matrices.Multiply(
        MatrixStacks::LookAt({eyeX, eyeY, eyeZ}, {targetX, targetY, targetZ}, {upX, upY, upZ}));
}

void glInterleavedArrays(GLenum format, GLsizei, const GLvoid* array) {
    EXPECT_EQ(gl.bound[GL_ARRAY_BUFFER], 0u) << "arrays in memory while a buffer is bound";
    gl.interleaved = static_cast<const float*>(array);
    gl.interleavedFloats = format == GL_V3F ? 3 : 5;
}

void glVertexPointer(GLint, GLenum, GLsizei, const GLvoid*) {
    gl.interleaved = nullptr;
}

void glDrawArrays(GLenum, GLint, GLsizei count) {
    if (gl.interleaved != nullptr)
        gl.drawn.assign(gl.interleaved, gl.interleaved + count * gl.interleavedFloats);
}

void glBindBufferARB(GLenum target, GLuint buffer) {
    gl.bound[target] = buffer;
}

void glBufferDataARB(GLenum target, GLsizeiptrARB size, const GLvoid* data, GLenum) {
    gl.contents[gl.LabelOf("buffer", gl.bound[target])] =
        Bytes(data, static_cast<std::size_t>(size));
}

void glTexImage2D(GLenum, GLint, GLint, GLsizei width, GLsizei height, GLint, GLenum format, GLenum,
                  const GLvoid* data) {
    // Any other format is refused: nothing is read.
    const std::size_t pixelBytes = format == GL_RGB ? 3 : format == GL_RGBA ? 4 : 0;
    gl.pixels = Bytes(data, static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                                pixelBytes);
}

GLhandleARB glCreateShaderObjectARB(GLenum kind) {
    const GLuint object = gl.NewObject(kind == GL_VERTEX_SHADER ? "vertex" : "fragment", "object");
    gl.kinds[object] = kind;
    return object;
}

GLhandleARB glCreateProgramObjectARB() {
    return gl.NewObject("program", "object");
}

void glShaderSourceARB(GLhandleARB object, GLsizei, const GLcharARB** texts, const GLint*) {
    gl.sources[gl.LabelOf("object", object)] = texts[0];
}

void glUseProgramObjectARB(GLhandleARB program) {
    gl.program = program;
}

void glGetObjectParameterivARB(GLhandleARB object, GLenum, GLint* value) {
    *value = gl.refused.count(gl.KindOf(object)) != 0 ? GL_FALSE : GL_TRUE;
}

void glGetShaderiv(GLuint object, GLenum, GLint* value) {
    const std::string& text = gl.infoLogs[gl.KindOf(object)];
    *value = text.empty() ? 0 : static_cast<GLint>(text.size()) + 1; // with the terminator
}

void glGetShaderInfoLog(GLuint object, GLsizei most, GLsizei*, GLchar* text) {
    const std::string whole = gl.infoLogs[gl.KindOf(object)];
    const std::string fitting = whole.substr(0, static_cast<std::size_t>(std::max(most - 1, 0)));
    if (most > 0)
        std::memcpy(text, fitting.c_str(), fitting.size() + 1);
}

GLint glGetUniformLocationARB(GLhandleARB program, const GLcharARB* name) {
    return gl.LocationOf(program, name);
}

} // namespace Effect
