#pragma once

#include "engine/render/shader.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/pixels.h"
#include "tests/support/private_member.h"

#include <string>
#include <vector>

// What the tests of the shader programs share.

OPEN_PRIVATE(shaderVertexName, &Vell::Shader::vertexName);
OPEN_PRIVATE(shaderFragmentName, &Vell::Shader::fragmentName);
OPEN_PRIVATE(shaderVertexObject, &Vell::Shader::vertexObject);
OPEN_PRIVATE(shaderFragmentObject, &Vell::Shader::fragmentObject);
OPEN_PRIVATE(shaderProgram, &Vell::Shader::program);

namespace Vell {

struct ShaderProbe {
    static std::string Names(const Shader& s) {
        return (s.*shaderVertexName) + "|" + (s.*shaderFragmentName);
    }
    static GLuint Vertex(const Shader& s) { return s.*shaderVertexObject; }
    static GLuint Fragment(const Shader& s) { return s.*shaderFragmentObject; }
    static GLuint Program(const Shader& s) { return s.*shaderProgram; }
    static std::vector<const void*> Fields(const Shader& s) {
        return {&(s.*shaderVertexName), &(s.*shaderFragmentName), &(s.*shaderVertexObject),
                &(s.*shaderFragmentObject), &(s.*shaderProgram)};
    }
};

} // namespace Vell

using Rows = std::vector<LogRow>;

inline constexpr Rgba white{255, 255, 255, 255};
inline constexpr Rgba red{255, 0, 0, 255};
inline constexpr Rgba green{0, 255, 0, 255};

inline const char* const plainVertex = "void main() { gl_Position = ftransform(); }";
inline const char* const redFragment = "void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); }";
inline const char* const greenFragment = "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }";

/// Writes a file under a name of its own: the registry remembers paths longer than shaders live.
inline std::string NewFile(const std::string& ending, const std::string& text) {
    static int count = 0;
    const std::string name = "shader" + std::to_string(++count) + ending;
    WriteFile(name, text);
    return name;
}

inline std::string VertexFile(const std::string& text = plainVertex) {
    return NewFile(".vert", text);
}

inline std::string FragmentFile(const std::string& text = redFragment) {
    return NewFile(".frag", text);
}

/// How the log names a pair.
inline std::string Both(const std::string& vert, const std::string& frag) {
    return vert + " " + frag;
}

inline GLuint CurrentProgram() {
    GLint program = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &program);
    return static_cast<GLuint>(program);
}

/// What a rectangle over the whole screen looks like under the current program.
inline Rgba DrawnColour() {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glRectf(-1.0f, -1.0f, 1.0f, 1.0f);
    return ReadScreen(1, 1).At(0, 0);
}

/// The same while the shader is enabled.
inline Rgba DrawnColour(Vell::Shader& shader) {
    shader.Enable();
    const Rgba colour = DrawnColour();
    shader.Disable();
    return colour;
}
