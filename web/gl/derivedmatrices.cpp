#include "web/gl/derivedmatrices.h"

namespace WebGL {

std::uint64_t DerivedMatrices::Version(unsigned base) const {
    switch (base) {
    case Modelview:
        return stacks.modelview.Version();
    case Projection:
        return stacks.projection.Version();
    case ModelviewProjection:
        return static_cast<std::uint64_t>(stacks.modelview.Version()) << 32U |
               stacks.projection.Version();
    default:
        return stacks.textures[base - Texture].Version();
    }
}

Matrix4 DerivedMatrices::Plainly(unsigned base) const {
    switch (base) {
    case Modelview:
        return stacks.modelview.Top();
    case Projection:
        return stacks.projection.Top();
    case ModelviewProjection:
        return Product(stacks.projection.Top(), stacks.modelview.Top());
    default:
        return stacks.textures[base - Texture].Top();
    }
}

const Matrix4& DerivedMatrices::Get(unsigned base, Form form) {
    Made& made = all[base << 2U | form];
    const std::uint64_t version = Version(base);
    if (made.version == version)
        return made.matrix;
    made.version = version;
    const Matrix4 plain = Plainly(base);
    const Matrix4 turned = form == Inverted || form == InvertedFlipped ? Inverse(plain) : plain;
    made.matrix = form == Flipped || form == InvertedFlipped ? Transposed(turned) : turned;
    return made.matrix;
}

const Matrix3& DerivedMatrices::Normal() {
    if (normalVersion != stacks.modelview.Version())
        normal = NormalMatrix(stacks.modelview.Top());
    normalVersion = stacks.modelview.Version();
    return normal;
}

} // namespace WebGL
