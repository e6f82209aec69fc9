#pragma once

#include "web/gl/glsl/names.h"

#include <set>
#include <string>

namespace WebGL::Glsl {

/// The declarations that names of OpenGL's own need in GLSL ES, one a line, each once: of the names
/// in `used`, as GLSL 1.10 spells them, that have one in this stage.
std::string Declarations(const std::set<std::string>& used, Stage stage);

} // namespace WebGL::Glsl
