#pragma once

#include "web/gl/matrix.h"

#include <array>
#include <cstdint>
#include <map>

#include <GL/gl.h>

namespace WebGL {

struct Fog {
    bool enabled = false;
    GLenum mode = GL_EXP;
    float density = 1;
    float start = 0;
    float end = 1;
    Vector4 color{};
};

/// State that OpenGL ES knows nothing of: shaders do it, or primitives are drawn as others.
struct FixedState {
    static constexpr std::size_t planes = 6;

    bool alphaTest = false;
    GLenum alphaFunction = GL_ALWAYS;
    float alphaReference = 0;
    unsigned clipEnabled = 0; ///< one bit for each plane
    std::array<Vector4, planes> clipPlanes{};
    Fog fog;
    float pointSize = 1;
    std::array<GLenum, 2> polygonMode = {GL_FILL, GL_FILL};
    bool offsetLine = false;
    std::map<GLenum, bool> others; ///< switches that are remembered and change nothing
};

} // namespace WebGL
