#pragma once

#include "web/gl/glsl/names.h"
#include "web/gl/glsl/tokens.h"

#include <array>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// GLSL 1.10 becomes GLSL ES 3.00, token by token. What OpenGL does behind a shader's back, and
/// OpenGL ES does not, is written into the shader: alpha test, clip planes, colours from 0 to 1,
/// depth textures that are read as grey.
namespace WebGL::Glsl {

/// What goes from the vertex stage to the fragment stage under names of OpenGL's own.
struct Interface {
    int texCoords = 0; ///< gl_TexCoord[0] up to, and without, this
    bool frontColor = false;
    bool frontSecondaryColor = false;
    bool fogFragCoord = false;

    bool operator==(const Interface&) const = default;
};

/// What either of the two needs.
Interface Together(const Interface& a, const Interface& b);

/// State that a shader is written for.
struct Variant {
    unsigned alphaFunction = 0; ///< GL_NEVER to GL_GEQUAL; 0 without alpha test
    unsigned clipPlanes = 0;    ///< one bit for each plane that is switched on
    bool lineOffset = false;    ///< lines are drawn a little nearer, by vell_LineOffset
    std::set<std::string> grey; ///< samplers, by their names in the shader, of depth textures

    auto operator<=>(const Variant&) const = default;
};

/// A shader's text taken apart.
struct Source {
    Stage stage;
    std::vector<Token> tokens;
    Interface interface; ///< what of it this stage names
};

Source Parse(Stage stage, std::string_view text);

/// The text in GLSL ES 3.00, complete. `interface` is what both stages need.
std::string Translate(const Source& source, const Interface& interface, const Variant& variant);

} // namespace WebGL::Glsl
