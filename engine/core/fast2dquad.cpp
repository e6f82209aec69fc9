#include "engine/core/fast2dquad.h"

#include "engine/core/GLExtensions.h"

namespace Vell {

Fast2DQuad& Fast2DQuad::GetInstance() {
    static Fast2DQuad instance;
    return instance;
}

void Fast2DQuad::Draw(const vec2& size) {
    float* const x = vertices + 2; // after s and t
    float* const y = vertices + 3;
    x[0 * stride] = x[2 * stride] = size.x;
    y[0 * stride] = y[1 * stride] = size.y;
    glInterleavedArrays(GL_T2F_V3F, 0, vertices);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

} // namespace Vell
