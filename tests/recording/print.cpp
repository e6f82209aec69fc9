#include "tests/recording/print.h"

#include "tests/recording/recorder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <span>

namespace {

struct Entry {
    GLenum value;
    const char* name;
};

#define ENTRY(name)                                                                                \
    { name, #name }

constexpr Entry enums[] = {
    // Switches
    ENTRY(GL_ALPHA_TEST), ENTRY(GL_BLEND), ENTRY(GL_CLIP_PLANE0), ENTRY(GL_DEPTH_TEST),
    ENTRY(GL_POLYGON_OFFSET_LINE), ENTRY(GL_TEXTURE_2D),
    // Matrices
    ENTRY(GL_MODELVIEW), ENTRY(GL_PROJECTION), ENTRY(GL_TEXTURE), ENTRY(GL_MODELVIEW_MATRIX),
    ENTRY(GL_PROJECTION_MATRIX),
    // Texture units
    ENTRY(GL_TEXTURE0), ENTRY(GL_TEXTURE1), ENTRY(GL_TEXTURE2), ENTRY(GL_TEXTURE6),
    // Texture parameters and their values
    ENTRY(GL_TEXTURE_MIN_FILTER), ENTRY(GL_TEXTURE_MAG_FILTER), ENTRY(GL_TEXTURE_WRAP_S),
    ENTRY(GL_TEXTURE_WRAP_T), ENTRY(GL_GENERATE_MIPMAP), ENTRY(GL_DEPTH_TEXTURE_MODE),
    ENTRY(GL_NEAREST), ENTRY(GL_LINEAR), ENTRY(GL_NEAREST_MIPMAP_NEAREST),
    ENTRY(GL_LINEAR_MIPMAP_LINEAR), ENTRY(GL_CLAMP_TO_EDGE), ENTRY(GL_LUMINANCE),
    // Pixels
    ENTRY(GL_RGB), ENTRY(GL_RGBA), ENTRY(GL_DEPTH_COMPONENT), ENTRY(GL_DEPTH_COMPONENT24),
    ENTRY(GL_UNSIGNED_BYTE), ENTRY(GL_FLOAT), ENTRY(GL_UNPACK_ALIGNMENT),
    // Arrays and buffers
    ENTRY(GL_T2F_V3F), ENTRY(GL_V3F), ENTRY(GL_VERTEX_ARRAY), ENTRY(GL_NORMAL_ARRAY),
    ENTRY(GL_TEXTURE_COORD_ARRAY), ENTRY(GL_UNSIGNED_INT), ENTRY(GL_ARRAY_BUFFER),
    ENTRY(GL_ELEMENT_ARRAY_BUFFER), ENTRY(GL_STATIC_DRAW),
    // Drawing
    ENTRY(GL_GREATER), ENTRY(GL_FRONT_AND_BACK), ENTRY(GL_LINE), ENTRY(GL_FILL), ENTRY(GL_COMPILE),
    ENTRY(GL_FOG_DENSITY), ENTRY(GL_FOG_COLOR),
    // Targets
    ENTRY(GL_FRAMEBUFFER), ENTRY(GL_RENDERBUFFER), ENTRY(GL_COLOR_ATTACHMENT0),
    ENTRY(GL_DEPTH_ATTACHMENT),
    // Shaders
    ENTRY(GL_VERTEX_SHADER), ENTRY(GL_FRAGMENT_SHADER), ENTRY(GL_COMPILE_STATUS),
    ENTRY(GL_INFO_LOG_LENGTH),
    // Questions
    ENTRY(GL_EXTENSIONS), ENTRY(GL_MAX_TEXTURE_SIZE)};

// These share their small values with others and are known by the parameter they stand in.
constexpr Entry primitives[] = {ENTRY(GL_TRIANGLES), ENTRY(GL_TRIANGLE_STRIP), ENTRY(GL_QUADS)};
constexpr Entry factors[] = {ENTRY(GL_ONE), ENTRY(GL_SRC_ALPHA), ENTRY(GL_ONE_MINUS_SRC_ALPHA)};
constexpr Entry bits[] = {ENTRY(GL_COLOR_BUFFER_BIT), ENTRY(GL_DEPTH_BUFFER_BIT)};
#undef ENTRY

std::string Find(std::span<const Entry> entries, GLenum value) {
    for (const Entry& entry : entries)
        if (entry.value == value)
            return entry.name;
    ADD_FAILURE() << "OpenGL was given the value 0x" << std::hex << value << ", which no call uses";
    return "unknown";
}

template <class T>
std::string Numbers(const T* values, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += i == 0 ? "" : " ";
        text += Print::Number(values[i]);
    }
    return text;
}

std::size_t listLength = 0; // set by Count() for the list that follows

template <class Names>
std::string ListOf(const Names* names, std::string (*print)(Names)) {
    std::string text;
    for (std::size_t i = 0; i < listLength; ++i) {
        text += i == 0 ? "" : " ";
        text += print(names[i]);
    }
    return text;
}

} // namespace

namespace Print {

std::string Enum(GLenum value) {
    return Find(enums, value);
}

std::string EnumOrNumber(GLenum value) {
    return value <= 1 ? Number(value) : Enum(value);
}

std::string Primitive(GLenum value) {
    return Find(primitives, value);
}

std::string Factor(GLenum value) {
    return Find(factors, value);
}

std::string Bits(GLbitfield value) {
    std::string text;
    for (const Entry& entry : bits)
        if ((value & entry.value) != 0) {
            text += (text.empty() ? "" : " | ") + std::string(entry.name);
            value &= ~entry.value;
        }
    return value == 0 ? text : Find(bits, value);
}

std::string Flag(GLboolean value) {
    return value == GL_TRUE ? "GL_TRUE" : "GL_FALSE";
}

std::string FourNumbers(const GLfloat* values) {
    return Numbers(values, 4);
}

std::string FourNumbers(const GLdouble* values) {
    return Numbers(values, 4);
}

std::string SixteenNumbers(const GLfloat* values) {
    return Numbers(values, 16);
}

std::string Address(const void* address) {
    return address == nullptr ? "0" : "memory";
}

std::string Text(const char* text) {
    return std::string("\"") + text + "\"";
}

std::string Texture(GLuint name) {
    return gl.LabelOf("texture", name);
}

std::string Framebuffer(GLuint name) {
    return gl.LabelOf("framebuffer", name);
}

std::string Renderbuffer(GLuint name) {
    return gl.LabelOf("renderbuffer", name);
}

std::string Buffer(GLuint name) {
    return gl.LabelOf("buffer", name);
}

std::string List(GLuint name) {
    return gl.LabelOf("list", name);
}

std::string Object(GLhandleARB name) {
    return gl.LabelOf("object", name);
}

std::string Location(GLint location) {
    return gl.UniformAt(location);
}

std::string Count(GLsizei count) {
    listLength = static_cast<std::size_t>(count);
    return Number(count);
}

std::string Textures(const GLuint* names) {
    return ListOf(names, Texture);
}

std::string Framebuffers(const GLuint* names) {
    return ListOf(names, Framebuffer);
}

std::string Renderbuffers(const GLuint* names) {
    return ListOf(names, Renderbuffer);
}

std::string Buffers(const GLuint* names) {
    return ListOf(names, Buffer);
}

std::string Objects(const GLuint* names) {
    return ListOf(names, Object);
}

std::string Texts(const GLcharARB* const* texts) {
    constexpr std::size_t longest = 40;
    return ListOf<const GLcharARB*>(texts, [](const GLcharARB* text) {
        return std::strlen(text) <= longest ? Text(text) : std::string("text");
    });
}

} // namespace Print
