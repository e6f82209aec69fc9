#include "art/textures/fittings.h"
#include "art/textures/textures.h"

#include <algorithm>
#include <map>
#include <vector>

#include <gmock/gmock.h>

namespace {

using namespace Art;

struct Painted {
    const char* name;
    Picture (*paint)();
    bool glows;
};

/// What this paints; each is painted once, since that takes seconds.
const Picture& Paint(Picture (*paint)()) {
    static std::map<Picture (*)(), Picture> painted;
    const auto [place, first] = painted.try_emplace(paint);
    if (first)
        place->second = paint();
    return place->second;
}

const Painted paintings[] = {
    {"tower", PaintTower, true},
    {"town", PaintTown, true},
    {"palace", PaintPalace, true},
    {"house", [] {
         return PaintHouse({0.6f, 0.6f, 0.6f, 1}, 5); }, true},
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
    const Picture& picture = Paint(GetParam().paint);
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
    const Picture& picture = Paint(GetParam().paint);
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
    const Picture& picture = Paint(GetParam().paint);
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

/// What is lit in a part of a facade seen from far.
struct Lights {
    Vell::vec3 colour{};          ///< of all together
    std::vector<float> storeys{}; ///< share of each that is lit
};

Lights LightsOf(const Picture& facade, int column, int row) {
    const int cell = facade.Width() / facadeCells;
    const int side = cell * facadePart;
    Lights lights;
    int all = 0;
    for (int storey = 0; storey < facadePart; ++storey) {
        int lit = 0;
        for (int y = 0; y < cell; ++y)
            for (int x = 0; x < side; ++x) {
                const int above = (row * facadePart + storey) * cell + y;
                const Rgba texel = facade.At(column * side + x, facade.Height() - 1 - above);
                if (texel.a > 0.5f)
                    continue;
                lights.colour += {texel.r, texel.g, texel.b};
                ++lit;
            }
        all += lit;
        lights.storeys.push_back(static_cast<float>(lit) / static_cast<float>(cell * side));
    }
    lights.colour *= 1 / static_cast<float>(all);
    return lights;
}

/// A part's place in the picture, in parts from the lower left.
struct PartPlace {
    int column, row;
};
constexpr PartPlace parts[] = {{0, 0}, {1, 0}, {0, 1}, {1, 1}};

TEST(Textures, The_parts_of_a_far_facade_have_lights_of_their_own) {
    for (const auto painter : {PaintTown, PaintTower}) {
        const Picture& facade = Paint(painter);
        for (const PartPlace& one : parts)
            for (const PartPlace& other : parts) {
                if (one.column == other.column && one.row == other.row)
                    continue;
                const Vell::vec3 a = LightsOf(facade, one.column, one.row).colour;
                const Vell::vec3 b = LightsOf(facade, other.column, other.row).colour;
                // Of the hue: red is the strongest everywhere. 0.03 of it is 8 of 255.
                EXPECT_GT(std::abs(a.y / a.x - b.y / b.x) + std::abs(a.z / a.x - b.z / b.x), 0.03f)
                    << one.column << one.row << " and " << other.column << other.row;
            }
    }
}

TEST(Textures, The_parts_of_a_far_facade_have_dark_storeys_and_lit_ones) {
    // A window of the town is 0.5 x 0.6 of a bay, so a storey lit all over has 0.3; a stairwell's
    // light alone, 0.24 x 0.76 in one bay of eight, 0.023.
    for (const auto painter : {PaintTown, PaintTower}) {
        const Picture& facade = Paint(painter);
        for (const PartPlace& part : parts) {
            const std::vector<float> lit = LightsOf(facade, part.column, part.row).storeys;
            EXPECT_LT(*std::min_element(lit.begin(), lit.end()), 0.07f) << part.column << part.row;
            EXPECT_GT(*std::max_element(lit.begin(), lit.end()), 0.10f) << part.column << part.row;
        }
    }
}

TEST(Textures, Bands_of_plaster_repeat_along_a_wall) {
    const Picture& picture = Paint(PaintPlaster);
    std::vector<float> columns;
    for (int x = 0; x + 1 < picture.Width(); ++x)
        columns.push_back(ColumnStep(picture, x));
    EXPECT_LE(ColumnStep(picture, picture.Width() - 1),
              *std::max_element(columns.begin(), columns.end()));
}

TEST(Textures, Patches_of_fittings_lie_apart_on_their_texture) {
    std::vector<std::vector<int>> owner(fittingsSide, std::vector<int>(fittingsSide, -1));
    for (int f = 0; f < static_cast<int>(Fitting::Count); ++f) {
        const FittingPatch& patch = PatchOf(static_cast<Fitting>(f));
        ASSERT_LE(patch.x + patch.width * patch.variants, fittingsSide) << f;
        ASSERT_LE(patch.y + patch.height, fittingsSide) << f;
        for (int y = patch.y; y < patch.y + patch.height; ++y)
            for (int x = patch.x; x < patch.x + patch.width * patch.variants; ++x) {
                ASSERT_EQ(owner[y][x], -1) << f << " at " << x << " " << y;
                owner[y][x] = f;
            }
    }
}

TEST(Textures, A_room_that_is_lit_is_brighter_than_one_that_is_not) {
    const auto mean = [](Fitting fitting, int variant) {
        float sum = 0;
        for (float y = 0.5f; y < 20; ++y) {
            for (float x = 0.5f; x < 20; ++x) {
                const Rgba c = FittingColour(fitting, variant, {x / 20, y / 20});
                sum += c.r + c.g + c.b;
            }
        }
        return sum / 1200;
    };
    for (int variant = 0; variant < 4; ++variant) {
        EXPECT_GT(mean(Fitting::LitPane, variant), 1.3f * mean(Fitting::DimPane, variant));
        EXPECT_GT(mean(Fitting::LitPane, variant), 1.3f * mean(Fitting::DarkPane, variant));
    }
}

TEST(Textures, A_lamp_shines_in_its_middle) {
    const Picture lamp = PaintLamp();
    EXPECT_LT(lamp.At(32, 32).a, 0.2f);
    EXPECT_EQ(lamp.At(0, 0).a, 1.0f);
}

} // namespace
