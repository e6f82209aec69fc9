#include "web/gl/matrixstacks.h"

#include <algorithm>

namespace WebGL {

MatrixStack::MatrixStack(std::size_t most) : matrices{identity}, mostMatrices(most) {}

void MatrixStack::Set(const Matrix4& matrix) {
    if (matrix == matrices.back())
        return;
    matrices.back() = matrix;
    ++version;
}

bool MatrixStack::Push() {
    if (matrices.size() >= mostMatrices)
        return false;
    matrices.push_back(matrices.back());
    return true;
}

bool MatrixStack::Pop() {
    if (matrices.size() == 1)
        return false;
    const bool changed = matrices[matrices.size() - 2] != matrices.back();
    matrices.pop_back();
    version += changed ? 1 : 0;
    return true;
}

MatrixStack& MatrixStacks::Selected(std::size_t unit) {
    if (mode == GL_PROJECTION)
        return projection;
    if (mode == GL_TEXTURE)
        return textures[std::min(unit, textureStacks - 1)];
    return modelview;
}

} // namespace WebGL
