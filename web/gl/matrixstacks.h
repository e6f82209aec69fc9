#pragma once

#include "web/gl/matrix.h"

#include <cstddef>
#include <vector>

#include <GL/gl.h>

namespace WebGL {

/// Matrices on top of each other; the top one counts. Never empty.
class MatrixStack {
public:
    explicit MatrixStack(std::size_t most);

    const Matrix4& Top() const { return matrices.back(); }
    std::size_t Depth() const { return matrices.size(); }

    /// Differs whenever the top may have changed; never 0.
    unsigned Version() const { return version; }

    void Set(const Matrix4& matrix);

    /// False, with nothing changed, where the stack is full, or holds one matrix only.
    bool Push();
    bool Pop();

private:
    std::vector<Matrix4> matrices;
    std::size_t mostMatrices;
    unsigned version = 1;
};

/// The stacks of OpenGL: one each for model-view and projection, and one for each set of texture
/// coordinates.
class MatrixStacks {
public:
    static constexpr std::size_t textureStacks = 8;
    static constexpr std::size_t modelviewDepth = 32;
    static constexpr std::size_t projectionDepth = 32;
    static constexpr std::size_t textureDepth = 10;

    GLenum mode = GL_MODELVIEW; ///< which of them calls are about, as glMatrixMode() has it

    MatrixStack modelview{modelviewDepth};
    MatrixStack projection{projectionDepth};
    std::vector<MatrixStack> textures{textureStacks, MatrixStack(textureDepth)};

    /// The one that calls are about while texture unit `unit` is active. Units without coordinates
    /// of their own share the last stack.
    MatrixStack& Selected(std::size_t unit);
};

} // namespace WebGL
