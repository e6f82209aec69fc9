#include "art/water/waves.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {

constexpr int size = 256; // the waves are drawn analytically: a coarser map shows the same sea

const Art::SlopeMap& Waves() {
    static const Art::SlopeMap map = Art::MakeWaves(size);
    return map;
}

const Art::Picture& Stored() {
    static const Art::Picture picture = Art::ReadAsEngine(NIMBREL_SOURCE_DIR "/Data/Gfx/water.jpg");
    return picture;
}

/// The direction that the water shader makes of a texel: normalize(rgb - 0.5).
Vell::vec3 NormalOf(const Art::Rgba& texel) {
    return Vell::Normalized(Vell::vec3{texel.r - 0.5f, texel.g - 0.5f, texel.b - 0.5f});
}

/// How alike the sea is to itself moved by (ds, dt): 1 the same, 0 unrelated.
double Likeness(const Art::SlopeMap& map, int ds, int dt) {
    double same = 0;
    double power = 0;
    for (int t = 0; t < map.size; ++t)
        for (int s = 0; s < map.size; ++s) {
            const Vell::vec2& here = map.At(s, t);
            const Vell::vec2& there = map.At((s + ds) % map.size, (t + dt) % map.size);
            same += Vell::Dot(here, there);
            power += Vell::Dot(here, here);
        }
    return same / power;
}

/// Root mean square of the slopes along s and t after `halvings` of the map, as mip-maps do.
Vell::vec2 Steepness(Art::Picture normals, int halvings) {
    for (int i = 0; i < halvings; ++i)
        normals = Art::Halved(normals);
    double s = 0;
    double t = 0;
    for (int y = 0; y < normals.Height(); ++y)
        for (int x = 0; x < normals.Width(); ++x) {
            const Vell::vec3 normal = NormalOf(normals.At(x, y));
            s += normal.x * normal.x;
            t += normal.y * normal.y;
        }
    const double count = static_cast<double>(normals.Width()) * normals.Height();
    return {static_cast<float>(std::sqrt(s / count)), static_cast<float>(std::sqrt(t / count))};
}

} // namespace

TEST(NatureWater, Lies_level_on_the_whole) {
    double x = 0;
    double y = 0;
    for (const Vell::vec2& slope : Waves().slopes) {
        x += slope.x;
        y += slope.y;
    }
    EXPECT_NEAR(x / Waves().slopes.size(), 0, 1e-5);
    EXPECT_NEAR(y / Waves().slopes.size(), 0, 1e-5);
}

TEST(NatureWater, Stored_map_shifts_no_mirror_image_on_average) {
    double x = 0;
    double y = 0;
    for (int row = 0; row < Stored().Height(); ++row)
        for (int column = 0; column < Stored().Width(); ++column) {
            const Vell::vec3 normal = NormalOf(Stored().At(column, row));
            x += normal.x;
            y += normal.y;
        }
    // A mean of 0.01 would shift the image by 0.01 * 0.02 * 960 = 0.2 pixels.
    const double count = static_cast<double>(Stored().Width()) * Stored().Height();
    EXPECT_NEAR(x / count, 0, 0.01);
    EXPECT_NEAR(y / count, 0, 0.01);
}

TEST(NatureWater, Stored_map_is_the_drawn_sea_the_right_way_round) {
    const Art::Picture drawn = Art::NormalPicture(Art::MakeWaves(1024));
    ASSERT_EQ(Stored().Width(), drawn.Width());
    double sum = 0;
    int count = 0;
    for (int y = 3; y < 1024; y += 7)
        for (int x = 3; x < 1024; x += 7, ++count) {
            const Art::Rgba difference = Stored().At(x, y) - drawn.At(x, y);
            sum += std::abs(difference.r) + std::abs(difference.g);
        }
    EXPECT_LT(sum / count / 2 * 255, 2.0) << "mean error in steps of 1/255";
}

TEST(NatureWater, Tiles_without_a_seam) {
    // Across the border a slope changes no more than between any two neighbours.
    float inside = 0;
    float across = 0;
    for (int t = 0; t < size; ++t) {
        for (int s = 0; s + 1 < size; ++s)
            inside = std::max(inside, Vell::Length(Waves().At(s + 1, t) - Waves().At(s, t)));
        across = std::max(across, Vell::Length(Waves().At(0, t) - Waves().At(size - 1, t)));
        across = std::max(across, Vell::Length(Waves().At(t, 0) - Waves().At(t, size - 1)));
    }
    EXPECT_LE(across, 1.2f * inside);
}

TEST(NatureWater, Repeats_nowhere_within_the_tile) {
    for (const int part : {2, 3, 4, 5})
        for (const int which : {1, 2, 3}) {
            const int ds = which & 1 ? size / part : 0;
            const int dt = which & 2 ? size / part : 0;
            // Half alike would already read as a pattern of that size.
            EXPECT_LT(std::abs(Likeness(Waves(), ds, dt)), 0.5)
                << "moved by 1/" << part << " of the tile, way " << which;
        }
}

/// The greatest likeness of values to themselves moved by more than `nearest` texels either way.
double SecondPeak(const std::vector<float>& values, int side, int nearest) {
    double mean = 0;
    for (const float value : values)
        mean += value / static_cast<double>(values.size());
    double power = 0;
    for (const float value : values)
        power += (value - mean) * (value - mean);
    double greatest = 0;
    for (int dt = 0; dt <= side / 2; ++dt)
        for (int ds = 0; ds < side; ++ds) {
            if (std::min(ds, side - ds) <= nearest && dt <= nearest)
                continue;
            double same = 0;
            for (int t = 0; t < side; ++t)
                for (int s = 0; s < side; ++s)
                    same += (values[t * side + s] - mean) *
                            (values[(t + dt) % side * side + (s + ds) % side] - mean);
            greatest = std::max(greatest, same / power);
        }
    return greatest;
}

/// The stored map as it looks from high up and far away: 64 x 64 texels of what moves the picture
/// up and down, in shares of the most there is.
std::vector<float> LiftsFromAfar() {
    const Art::Picture far = Art::Halved(Art::Halved(Art::Halved(Art::Halved(Stored()))));
    std::vector<float> lifts;
    for (int y = 0; y < far.Height(); ++y)
        for (int x = 0; x < far.Width(); ++x)
            lifts.push_back(NormalOf(far.At(x, y)).y);
    return lifts;
}

TEST(NatureWater, Has_no_second_peak_of_likeness_within_the_tile) {
    constexpr int side = 64;
    // The longest waves, a third of the tile, are like themselves within a sixth either way.
    EXPECT_LT(SecondPeak(LiftsFromAfar(), side, side / 6), 0.45);
}

TEST(NatureWater, A_second_peak_would_be_found) {
    constexpr int side = 64;
    std::vector<float> twice = LiftsFromAfar();
    for (int t = 0; t < side; ++t) // the right half is the left one once more
        std::copy_n(&twice[t * side], side / 2, &twice[t * side + side / 2]);
    EXPECT_NEAR(SecondPeak(twice, side, side / 6), 1.0, 1e-6);
}

TEST(NatureWater, Draws_lights_out_into_columns_even_from_afar) {
    // The shader moves the mirrored picture by 2 % of 89 rows, 1.78 at most, and of 960 columns.
    const auto rows = [](Vell::vec2 steep) { return steep.y * 0.02f * 89; };
    const auto columns = [](Vell::vec2 steep) { return steep.x * 0.02f * 960; };
    EXPECT_GT(rows(Steepness(Stored(), 0)), 0.8f); // either way; more than one is glitter
    EXPECT_GT(rows(Steepness(Stored(), 5)), 0.5f) << "where 32 x 32 texels are one pixel";
    for (const int halvings : {0, 2, 5})
        EXPECT_LT(columns(Steepness(Stored(), halvings)), 4.0f) << "torn aside";
}

TEST(NatureWater, Is_rougher_where_the_wind_blows) {
    const Art::Picture normals = Art::NormalPicture(Waves());
    double lifts[2] = {};
    int counts[2] = {};
    for (int t = 0; t < size; ++t)
        for (int s = 0; s < size; ++s) {
            const float wind = Waves().Wind(s, t);
            if (wind > 0.25f && wind < 0.75f)
                continue;
            const float lift = NormalOf(normals.At(s, size - 1 - t)).y;
            lifts[wind > 0.5f ? 1 : 0] += lift * lift;
            ++counts[wind > 0.5f ? 1 : 0];
        }
    EXPECT_GT(counts[0], size * size / 20) << "lanes";
    EXPECT_GT(counts[1], size * size / 20) << "gusts";
    EXPECT_GT(lifts[1] / counts[1], 2 * lifts[0] / counts[0]);
}

TEST(NatureWater, Has_waves_of_many_sizes) {
    // Each halving takes the shortest waves away and leaves the longer ones to the distance.
    const Art::Picture normals = Art::NormalPicture(Waves());
    float before = Steepness(normals, 0).y;
    for (const int halvings : {2, 4, 5}) {
        const float now = Steepness(normals, halvings).y;
        EXPECT_LT(now, 0.95f * before) << halvings << " halvings";
        EXPECT_GT(now, 0.04f) << halvings << " halvings";
        before = now;
    }
}

TEST(NatureWater, Is_calm_enough_for_a_mirror) {
    // The shader turns a slope of 1 into 2 % of the screen: 19 pixels sideways, 1.8 upwards.
    const Vell::vec2 steep = Steepness(Art::NormalPicture(Waves()), 0);
    EXPECT_GT(steep.x * 0.02f * 960, 1.0f) << "pixels sideways: still glass";
    EXPECT_LT(steep.x * 0.02f * 960, 5.0f) << "pixels sideways: torn to pieces";
    EXPECT_GT(steep.y, steep.x) << "waves balance the ten times wider picture";
}
