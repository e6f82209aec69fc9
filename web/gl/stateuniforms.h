#pragma once

#include "web/gl/programs.h"

#include <string>

namespace WebGL {

/// A built-in attribute and the location that it has in every program, which is its slot as well.
struct AttributeName {
    GLuint place;
    const char* name; ///< in OpenGL ES
};

inline constexpr AttributeName ownAttributes[] = {
    {0, "vell_Vertex"},         {1, "vell_Normal"},          {2, "vell_Color"},
    {3, "vell_SecondaryColor"}, {4, "vell_MultiTexCoord0"},  {5, "vell_MultiTexCoord1"},
    {6, "vell_MultiTexCoord2"}, {7, "vell_MultiTexCoord3"},  {8, "vell_MultiTexCoord4"},
    {9, "vell_MultiTexCoord5"}, {10, "vell_MultiTexCoord6"}, {11, "vell_MultiTexCoord7"},
    {12, "vell_FogCoord"},
};

/// How many numbers one element of this type of uniform has.
GLint ComponentsOf(GLenum type);
bool IsSampler(GLenum type);

/// Whether glUniform*() with so many floats or integers may set it.
bool Takes(GLenum type, GLint components, bool floats);

/// Whether the name is one that the translation made for OpenGL's own state.
bool IsStateUniform(const std::string& name);

/// Those that a linked program uses.
std::vector<StateUniform> StateUniformsOf(GLuint program);

/// Sends what differs from what was sent last; the program is in use.
void SendStateUniforms(Linked& program);

/// The same for the shader's own.
void SendUniforms(const Program& program, Linked& variant);

} // namespace WebGL
