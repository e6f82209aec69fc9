#pragma once

#include <string>
#include <string_view>

/// Which name in GLSL 1.10 is which in GLSL ES 3.00.
namespace WebGL::Glsl {

enum class Stage { Vertex, Fragment };

/// In front of names that the translation makes.
inline constexpr std::string_view ownPrefix = "vell_";

/// In front of the shader's own names that GLSL ES keeps for itself.
inline constexpr std::string_view userPrefix = "vell_user_";

/// What stands for an identifier of the shader. Keywords, the texture functions and the names that
/// begin with "gl_" become those of GLSL ES or of the translation; a name of the shader's own that
/// GLSL ES takes otherwise, like `texture`, is set apart; all others stay.
std::string Translated(std::string_view identifier, Stage stage);

/// A uniform's or an attribute's name as the translation has it, "lights[2].sample" say, and back.
std::string TranslatedPath(std::string_view path);
std::string OriginalPath(std::string_view path);

} // namespace WebGL::Glsl
