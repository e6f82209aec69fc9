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
    x[0 * kStride] = x[2 * kStride] = size.x;
    y[0 * kStride] = y[1 * kStride] = size.y;
    glInterleavedArrays(GL_T2F_V3F, 0, vertices);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

} // namespace Vell
