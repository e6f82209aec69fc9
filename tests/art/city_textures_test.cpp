#include "art/textures/textures.h"

#include <algorithm>
#include <vector>

#include <gmock/gmock.h>

namespace {

using namespace Art;

struct Painted {
    const char* name;
    Picture (*paint)();
    bool glows;
};

const Painted paintings[] = {
    {"tower", PaintTower, true},
    {"palace", PaintPalace, true},
    {"house",
     [] {
         return PaintHouse({0.6f, 0.6f, 0.6f, 1}, 5);
     },
     true},
    {"stone", PaintStone, false},
    {"trim", PaintTrim, false},
    {"roof", PaintRoof, false},
    {"seabed", PaintSeaBed, false},
};

class Painting : public ::testing::TestWithParam<Painted> {};

float Difference(const Rgba& a, const Rgba& b) {
    return std::abs(a.r - b.r) + std::abs(a.g - b.g) + std::abs(a.b - b.b);
}

/// Mean difference between column x and its right neighbour of the tiled picture.
float ColumnStep(const Picture& p, int x) {
    float sum = 0;
    for (int y = 0; y < p.Height(); ++y)
        sum += Difference(p.At(x, y), p.Wrapped(x + 1, y));
    return sum / static_cast<float>(p.Height());
}

float RowStep(const Picture& p, int y) {
    float sum = 0;
    for (int x = 0; x < p.Width(); ++x)
        sum += Difference(p.At(x, y), p.Wrapped(x, y + 1));
    return sum / static_cast<float>(p.Width());
}

TEST_P(Painting, Repeats_without_a_seam) {
    const Picture picture = GetParam().paint();
    // The step over the edge must be no greater than the greatest step inside.
    std::vector<float> columns;
    std::vector<float> rows;
    for (int x = 0; x + 1 < picture.Width(); ++x)
        columns.push_back(ColumnStep(picture, x));
    for (int y = 0; y + 1 < picture.Height(); ++y)
        rows.push_back(RowStep(picture, y));
    EXPECT_LE(ColumnStep(picture, picture.Width() - 1),
              *std::max_element(columns.begin(), columns.end()));
    EXPECT_LE(RowStep(picture, picture.Height() - 1), *std::max_element(rows.begin(), rows.end()));
}

TEST_P(Painting, Glows_only_where_it_should) {
    const Picture picture = GetParam().paint();
    int lit = 0;
    for (int y = 0; y < picture.Height(); ++y)
        for (int x = 0; x < picture.Width(); ++x)
            lit += picture.At(x, y).a < 0.75f ? 1 : 0;
    const float share =
        static_cast<float>(lit) / static_cast<float>(picture.Width() * picture.Height());
    if (GetParam().glows) {
        EXPECT_GT(share, 0.02f);
        EXPECT_LT(share, 0.25f);
    } else {
        EXPECT_EQ(share, 0.0f);
    }
}

TEST_P(Painting, Has_sides_that_are_powers_of_two) {
    const Picture picture = GetParam().paint();
    EXPECT_EQ(picture.Width() & (picture.Width() - 1), 0);
    EXPECT_EQ(picture.Height() & (picture.Height() - 1), 0);
}

INSTANTIATE_TEST_SUITE_P(Textures, Painting, ::testing::ValuesIn(paintings),
                         [](const auto& row) { return row.param.name; });

TEST(Textures, A_seam_would_be_found) {
    Picture broken(64, 64);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            broken.At(x, y).r = static_cast<float>(x) / 64;
    EXPECT_GT(ColumnStep(broken, 63), 10 * ColumnStep(broken, 20));
}

TEST(Textures, A_lamp_shines_in_its_middle) {
    const Picture lamp = PaintLamp();
    EXPECT_LT(lamp.At(16, 16).a, 0.2f);
    EXPECT_EQ(lamp.At(0, 0).a, 1.0f);
}

} // namespace
