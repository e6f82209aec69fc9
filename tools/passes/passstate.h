#pragma once

#include "engine/core/GLExtensions.h"

#include <string>
#include <utility>
#include <vector>

namespace Passes {

/// What OpenGL would draw with now.
struct DrawState {
    GLuint program = 0;
    bool depthTest = false;
    bool depthWritten = false; ///< only together with the test
    bool blend = false;
};
DrawState ReadDrawState();

/// What of the state is not as the demo has it at rest: one phrase for each difference.
std::vector<std::string> UnusualState(int targetWidth, int targetHeight);

/// A texture that a drawing could read now, and by what: "noiseMap, unit 0".
using BoundTexture = std::pair<GLuint, std::string>;

/// With a program: what its samplers look up. Without one: what the units that are on have bound.
std::vector<BoundTexture> ReadBoundTextures(GLuint program);

/// Near and far plane of the projection; both 0 when it is no perspective.
std::pair<double, double> ReadClipPlanes();

/// A uniform of a program as it stands now.
struct UniformNow {
    GLint location;
    std::string name;
    std::string type; ///< as GLSL writes it
    std::vector<float> value;
};

/// All of a program's own; of an array the first element.
std::vector<UniformNow> ReadUniforms(GLuint program);

/// Where drawing goes.
struct TargetNow {
    GLuint framebuffer = 0; ///< 0 for the screen
    GLuint colour = 0;      ///< texture; 0 for the screen
    GLuint depth = 0;       ///< texture; 0 for none
    int width = 0;          ///< pixels
    int height = 0;
};
/// The screen's size is its viewport's, which is to be all of the window.
TargetNow ReadTarget();

} // namespace Passes
