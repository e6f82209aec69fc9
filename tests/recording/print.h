#pragma once

#include <charconv>
#include <string>

#include <GL/gl.h>
#include <GL/glext.h>

/// How the arguments of recorded calls are written. A value that the tables of print.cpp do not
/// know fails the running test and is written as "unknown".
namespace Print {

/// Shortest decimal text that reads back as the same value: 0.1f is "0.1".
template <class T>
std::string Number(T value) {
    char text[64];
    return {text, std::to_chars(text, text + sizeof(text), value + T(0)).ptr}; // -0 becomes 0
}

std::string Enum(GLenum value);
/// An enum, or a number up to 1: what a parameter takes that may be switched on and off.
std::string EnumOrNumber(GLenum value);
std::string Primitive(GLenum value);
std::string Factor(GLenum value);
std::string Bits(GLbitfield value);
std::string Flag(GLboolean value);

std::string FourNumbers(const GLfloat* values);
std::string FourNumbers(const GLdouble* values);
/// In the order in memory.
std::string SixteenNumbers(const GLfloat* values);

/// "0" for null, "memory" otherwise.
std::string Address(const void* address);
/// In double quotes.
std::string Text(const char* text);

template <class T>
std::string Skip(T) {
    return {};
}

/// Objects, by the label that the recorder knows; 0 is "0".
std::string Texture(GLuint name);
std::string Framebuffer(GLuint name);
std::string Renderbuffer(GLuint name);
std::string Buffer(GLuint name);
std::string List(GLuint name);
std::string Object(GLhandleARB name);
/// The uniform's name; fails the test when the location is of another program than the current one.
std::string Location(GLint location);

/// A number that says how long the list is which the next printer writes.
std::string Count(GLsizei count);
std::string Textures(const GLuint* names);
std::string Framebuffers(const GLuint* names);
std::string Renderbuffers(const GLuint* names);
std::string Buffers(const GLuint* names);
std::string Objects(const GLuint* names);
/// In double quotes when short, else "text".
std::string Texts(const GLcharARB* const* texts);

} // namespace Print
