#pragma once

#include "web/gl/matrixstacks.h"

#include <array>
#include <cstdint>
#include <map>

namespace WebGL {

/// The matrices that shaders ask for, made of those on the stacks when these have changed.
class DerivedMatrices {
public:
    enum Base { Modelview, Projection, ModelviewProjection, Texture }; ///< Texture + n: of unit n
    enum Form { Plain, Inverted, Flipped, InvertedFlipped };           ///< flipped: transposed

    explicit DerivedMatrices(const MatrixStacks& from) : stacks(from) {}

    /// `base` is one of Base, Texture + the unit for texture matrices. The reference is good until
    /// the next call for the same one.
    const Matrix4& Get(unsigned base, Form form);
    const Matrix3& Normal();

private:
    struct Made {
        std::uint64_t version = 0;
        Matrix4 matrix{};
    };
    const MatrixStacks& stacks;
    std::map<unsigned, Made> all;
    unsigned normalVersion = 0;
    Matrix3 normal{};

    std::uint64_t Version(unsigned base) const;
    Matrix4 Plainly(unsigned base) const;
};

} // namespace WebGL
