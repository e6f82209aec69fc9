#pragma once

#include "tests/support/pixels.h"

#include <algorithm>
#include <cmath>

// OpenGL's texture filters, worked out on the CPU.

/// A colour between the steps of 8 bits, for filters worked out by the test.
struct Colour {
    double c[4] = {0.0, 0.0, 0.0, 0.0};

    Colour() = default;
    explicit Colour(Rgba p)
        : c{static_cast<double>(p.r), static_cast<double>(p.g), static_cast<double>(p.b),
            static_cast<double>(p.a)} {}

    Colour& Add(const Colour& other, double weight) {
        for (int i = 0; i < 4; ++i)
            c[i] += other.c[i] * weight;
        return *this;
    }

    Rgba Rounded() const {
        const auto channel = [this](int i) {
            return static_cast<int>(std::lround(std::clamp(c[i], 0.0, 255.0)));
        };
        return {channel(0), channel(1), channel(2), channel(3)};
    }
};

/// What a linear filter with clamped edges reads at (s, t), 0..1 over the picture.
inline Colour Sampled(const Picture& picture, double s, double t) {
    const double x = s * picture.Width() - 0.5;
    const double y = t * picture.Height() - 0.5;
    const double fx = x - std::floor(x);
    const double fy = y - std::floor(y);
    Colour sum;
    for (int j = 0; j < 2; ++j)
        for (int i = 0; i < 2; ++i) {
            const int column =
                std::clamp(static_cast<int>(std::floor(x)) + i, 0, picture.Width() - 1);
            const int row =
                std::clamp(static_cast<int>(std::floor(y)) + j, 0, picture.Height() - 1);
            sum.Add(Colour(picture.At(column, row)), (i ? fx : 1 - fx) * (j ? fy : 1 - fy));
        }
    return sum;
}

/// What the nearest filter with repeating edges reads at (s, t), 1 being one repeat.
inline Rgba NearestRepeated(const Picture& picture, double s, double t) {
    const auto texel = [](double c, int texels) {
        return std::min(static_cast<int>((c - std::floor(c)) * texels), texels - 1);
    };
    return picture.At(texel(s, picture.Width()), texel(t, picture.Height()));
}

/// The picture stretched to another size by the linear filter.
inline Picture Resized(const Picture& picture, int width, int height) {
    return MakePicture(width, height, [&](int x, int y) {
        return Sampled(picture, (x + 0.5) / width, (y + 0.5) / height).Rounded();
    });
}

/// The mean of a pixel and its eight neighbours at `offset`, in texture coordinates, away.
inline Picture BoxFiltered(const Picture& picture, double offset) {
    return MakePicture(picture.Width(), picture.Height(), [&](int x, int y) {
        Colour sum;
        for (int j = -1; j <= 1; ++j)
            for (int i = -1; i <= 1; ++i)
                sum.Add(Sampled(picture, (x + 0.5) / picture.Width() + i * offset,
                                (y + 0.5) / picture.Height() + j * offset),
                        1.0 / 9.0);
        return sum.Rounded();
    });
}

/// 0..255, without a pattern: what belongs to a place, the same in every run.
inline int Scattered(int x, int y, int seed) {
    unsigned h = static_cast<unsigned>(x) * 374761393u + static_cast<unsigned>(y) * 668265263u +
                 static_cast<unsigned>(seed) * 2246822519u;
    h = (h ^ (h >> 13)) * 1274126177u;
    return static_cast<int>((h ^ (h >> 16)) & 255u);
}
