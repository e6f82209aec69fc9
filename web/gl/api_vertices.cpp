// The functions of OpenGL that hand over vertices, and draw.

#include "web/gl/context.h"
#include "web/gl/drawing.h"

#include <array>
#include <memory>

using namespace WebGL;

namespace {

/// Between glBegin() and glEnd() for the vertices to come, otherwise for what no array gives.
void SetValue(std::size_t slot, const Vector4& value) {
    Context& context = Current();
    if (context.immediate.Begun())
        context.immediate.Set(slot, value);
    else
        context.lists.Do([=] { Current().current.values[slot] = value; });
}

void AddVertex(const Vector4& position) {
    if (Current().immediate.Begun())
        Current().immediate.AddVertex(position);
}

float FromByte(GLubyte value) {
    return static_cast<float>(value) / 255.0f;
}

VertexArray* ArrayNamed(GLenum name) {
    Context& context = Current();
    switch (name) {
    case GL_VERTEX_ARRAY:
        return &context.arrays[Slot::vertex];
    case GL_NORMAL_ARRAY:
        return &context.arrays[Slot::normal];
    case GL_COLOR_ARRAY:
        return &context.arrays[Slot::color];
    case GL_SECONDARY_COLOR_ARRAY:
        return &context.arrays[Slot::secondaryColor];
    case GL_FOG_COORD_ARRAY:
        return &context.arrays[Slot::fogCoord];
    case GL_TEXTURE_COORD_ARRAY:
        return &context.arrays[Slot::texCoord + context.clientUnit];
    default:
        return nullptr;
    }
}

void SetEnabled(GLenum name, bool on) {
    if (VertexArray* const array = ArrayNamed(name))
        array->enabled = on;
    else if (name != GL_INDEX_ARRAY && name != GL_EDGE_FLAG_ARRAY)
        Current().errors.Raise(GL_INVALID_ENUM);
}

bool IsNormalized(GLenum array, GLenum type) {
    return (array == GL_COLOR_ARRAY || array == GL_NORMAL_ARRAY) && type != GL_FLOAT &&
           type != GL_DOUBLE;
}

void Point(GLenum name, GLint size, GLenum type, GLsizei stride, const void* pointer) {
    if (stride < 0) {
        Current().errors.Raise(GL_INVALID_VALUE);
        return;
    }
    VertexArray& array = *ArrayNamed(name);
    array.size = size;
    array.type = type;
    array.stride = stride;
    array.pointer = pointer;
    array.normalized = IsNormalized(name, type);
    array.buffer = Current().buffers.array;
}

/// What one vertex consists of in each layout of glInterleavedArrays(): numbers of components, 0
/// for what is not there; four bytes of colour count as one.
struct Layout {
    GLenum name;
    GLint texCoord;
    GLint color;
    bool byteColor;
    GLint normal;
    GLint vertex;
};

constexpr Layout layouts[] = {
    {GL_V2F, 0, 0, false, 0, 2},
    {GL_V3F, 0, 0, false, 0, 3},
    {GL_C4UB_V2F, 0, 4, true, 0, 2},
    {GL_C4UB_V3F, 0, 4, true, 0, 3},
    {GL_C3F_V3F, 0, 3, false, 0, 3},
    {GL_N3F_V3F, 0, 0, false, 3, 3},
    {GL_C4F_N3F_V3F, 0, 4, false, 3, 3},
    {GL_T2F_V3F, 2, 0, false, 0, 3},
    {GL_T4F_V4F, 4, 0, false, 0, 4},
    {GL_T2F_C4UB_V3F, 2, 4, true, 0, 3},
    {GL_T2F_C3F_V3F, 2, 3, false, 0, 3},
    {GL_T2F_N3F_V3F, 2, 0, false, 3, 3},
    {GL_T2F_C4F_N3F_V3F, 2, 4, false, 3, 3},
    {GL_T4F_C4F_N3F_V4F, 4, 4, false, 3, 4},
};

/// Switches an array of a layout on or off, and steps over its part of the vertex.
void PointPart(GLenum name, GLint size, GLenum type, GLsizei stride, const char*& pointer) {
    SetEnabled(name, size > 0);
    if (size == 0)
        return;
    Point(name, size, type, stride, pointer);
    pointer += type == GL_UNSIGNED_BYTE ? 4 : size * 4;
}

void PointAll(const Layout& layout, GLsizei stride, const void* pointer) {
    const GLsizei color = layout.byteColor ? 1 : layout.color;
    const GLsizei whole = 4 * (layout.texCoord + color + layout.normal + layout.vertex);
    const GLsizei step = stride != 0 ? stride : whole;
    const char* place = static_cast<const char*>(pointer);
    PointPart(GL_TEXTURE_COORD_ARRAY, layout.texCoord, GL_FLOAT, step, place);
    PointPart(GL_COLOR_ARRAY, layout.color, layout.byteColor ? GL_UNSIGNED_BYTE : GL_FLOAT, step,
              place);
    PointPart(GL_NORMAL_ARRAY, layout.normal, GL_FLOAT, step, place);
    PointPart(GL_VERTEX_ARRAY, layout.vertex, GL_FLOAT, step, place);
}

} // namespace

extern "C" {

void glBegin(GLenum mode) {
    Context& context = Current();
    if (mode > GL_POLYGON || context.immediate.Begun())
        context.errors.Raise(mode > GL_POLYGON ? GL_INVALID_ENUM : GL_INVALID_OPERATION);
    else
        context.immediate.Begin(mode);
}

void glEnd(void) {
    Context& context = Current();
    if (!context.immediate.Begun()) {
        context.errors.Raise(GL_INVALID_OPERATION);
        return;
    }
    const std::shared_ptr<const Primitive> primitive = context.immediate.End();
    context.lists.Do([=] { DrawPrimitive(*primitive); });
}

void glVertex2f(GLfloat x, GLfloat y) {
    AddVertex({x, y, 0, 1});
}

void glVertex2i(GLint x, GLint y) {
    AddVertex({static_cast<float>(x), static_cast<float>(y), 0, 1});
}

void glVertex3f(GLfloat x, GLfloat y, GLfloat z) {
    AddVertex({x, y, z, 1});
}

void glVertex3fv(const GLfloat* v) {
    AddVertex({v[0], v[1], v[2], 1});
}

void glVertex4f(GLfloat x, GLfloat y, GLfloat z, GLfloat w) {
    AddVertex({x, y, z, w});
}

void glNormal3f(GLfloat nx, GLfloat ny, GLfloat nz) {
    SetValue(Slot::normal, {nx, ny, nz, 1});
}

void glColor3f(GLfloat red, GLfloat green, GLfloat blue) {
    SetValue(Slot::color, {red, green, blue, 1});
}

void glColor4f(GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha) {
    SetValue(Slot::color, {red, green, blue, alpha});
}

void glColor4fv(const GLfloat* v) {
    SetValue(Slot::color, {v[0], v[1], v[2], v[3]});
}

void glColor3ub(GLubyte red, GLubyte green, GLubyte blue) {
    glColor4ub(red, green, blue, 255);
}

void glColor4ub(GLubyte red, GLubyte green, GLubyte blue, GLubyte alpha) {
    SetValue(Slot::color, {FromByte(red), FromByte(green), FromByte(blue), FromByte(alpha)});
}

void glTexCoord2f(GLfloat s, GLfloat t) {
    SetValue(Slot::texCoord, {s, t, 0, 1});
}

void glMultiTexCoord2f(GLenum target, GLfloat s, GLfloat t) {
    const std::size_t unit = target - GL_TEXTURE0;
    if (unit < Slot::texCoords)
        SetValue(Slot::texCoord + unit, {s, t, 0, 1});
    else
        Current().errors.Raise(GL_INVALID_ENUM);
}

void glRectf(GLfloat x1, GLfloat y1, GLfloat x2, GLfloat y2) {
    glBegin(GL_QUADS);
    glVertex2f(x1, y1);
    glVertex2f(x2, y1);
    glVertex2f(x2, y2);
    glVertex2f(x1, y2);
    glEnd();
}

void glEnableClientState(GLenum cap) {
    SetEnabled(cap, true);
}

void glDisableClientState(GLenum cap) {
    SetEnabled(cap, false);
}

void glClientActiveTexture(GLenum texture) {
    const std::size_t unit = texture - GL_TEXTURE0;
    if (unit < Slot::texCoords)
        Current().clientUnit = unit;
    else
        Current().errors.Raise(GL_INVALID_ENUM);
}

void glVertexPointer(GLint size, GLenum type, GLsizei stride, const GLvoid* ptr) {
    Point(GL_VERTEX_ARRAY, size, type, stride, ptr);
}

void glNormalPointer(GLenum type, GLsizei stride, const GLvoid* ptr) {
    Point(GL_NORMAL_ARRAY, 3, type, stride, ptr);
}

void glColorPointer(GLint size, GLenum type, GLsizei stride, const GLvoid* ptr) {
    Point(GL_COLOR_ARRAY, size, type, stride, ptr);
}

void glTexCoordPointer(GLint size, GLenum type, GLsizei stride, const GLvoid* ptr) {
    Point(GL_TEXTURE_COORD_ARRAY, size, type, stride, ptr);
}

// There is no colour by index here, so that only what OpenGL would say to the type is left.
void glIndexPointer(GLenum type, GLsizei stride, const GLvoid*) {
    const bool known = type == GL_UNSIGNED_BYTE || type == GL_SHORT || type == GL_INT ||
                       type == GL_FLOAT || type == GL_DOUBLE;
    if (!known || stride < 0)
        Current().errors.Raise(known ? GL_INVALID_VALUE : GL_INVALID_ENUM);
}

void glInterleavedArrays(GLenum format, GLsizei stride, const GLvoid* pointer) {
    if (stride < 0) {
        Current().errors.Raise(GL_INVALID_VALUE);
        return;
    }
    for (const Layout& layout : layouts)
        if (layout.name == format) {
            PointAll(layout, stride, pointer);
            return;
        }
    Current().errors.Raise(GL_INVALID_ENUM);
}

void glDrawArrays(GLenum mode, GLint first, GLsizei count) {
    DrawArrays(mode, first, count);
}

void glDrawElements(GLenum mode, GLsizei count, GLenum type, const GLvoid* indices) {
    DrawElements(mode, count, type, indices);
}

void glClear(GLbitfield mask) {
    Current().lists.Do([=] { Clear(mask); });
}

// There is no way back from a shader's vertices to the program: only drawing is known.
GLint glRenderMode(GLenum mode) {
    if (mode != GL_RENDER)
        Current().errors.Raise(GL_INVALID_OPERATION);
    return 0;
}

void glFeedbackBuffer(GLsizei, GLenum, GLfloat*) {}

GLuint glGenLists(GLsizei range) {
    return Current().lists.Generate(range);
}

void glDeleteLists(GLuint list, GLsizei range) {
    Current().lists.Delete(list, range);
}

GLboolean glIsList(GLuint list) {
    return static_cast<GLboolean>(Current().lists.Exists(list) ? GL_TRUE : GL_FALSE);
}

void glNewList(GLuint list, GLenum mode) {
    if (!Current().lists.Begin(list, mode))
        Current().errors.Raise(list == 0 ? GL_INVALID_VALUE : GL_INVALID_OPERATION);
}

void glEndList(void) {
    if (!Current().lists.End())
        Current().errors.Raise(GL_INVALID_OPERATION);
}

void glCallList(GLuint list) {
    Current().lists.Do([=] { Current().lists.Call(list); });
}

} // extern "C"
