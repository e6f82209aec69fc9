#pragma once

#include "web/gl/programs.h"

#include <map>
#include <memory>
#include <string>

namespace WebGL {

/// The stages that OpenGL has without any shader, written as shaders of GLSL 1.10 for the state in
/// use: colour, textures with their matrices and environments, fog. Lighting is not among it.
class FixedFunction {
public:
    /// The program for the state as it is now. A colour that is the same at all corners is none
    /// that goes from one to the other, for that would round it.
    Program& Now(bool colorVaries);

private:
    std::map<std::string, std::unique_ptr<Program>> programs; ///< by a text that tells the state
};

} // namespace WebGL
