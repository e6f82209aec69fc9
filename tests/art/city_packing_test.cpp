#include "art/lightmap/packing.h"

#include "art/common/noise.h"

#include <gmock/gmock.h>

namespace {

using namespace Art;

std::vector<Chart> ManyCharts(int count, int largest) {
    Random random(3);
    std::vector<Chart> charts;
    for (int i = 0; i < count; ++i)
        charts.push_back({random.Int(1, largest), random.Int(1, largest), 0, 0});
    return charts;
}

TEST(Packing, Keeps_two_free_texels_round_every_chart) {
    constexpr int mapSize = 256;
    std::vector<Chart> charts = ManyCharts(180, 22);
    ASSERT_TRUE(PackCharts(charts, mapSize));
    // Every chart claims itself and two texels on each side; no texel may be claimed twice.
    std::vector<int> claims(mapSize * mapSize);
    for (const Chart& chart : charts) {
        ASSERT_GE(chart.x, 2);
        ASSERT_GE(chart.y, 2);
        ASSERT_LE(chart.x + chart.width, mapSize - 2);
        ASSERT_LE(chart.y + chart.height, mapSize - 2);
        for (int y = chart.y - 2; y < chart.y + chart.height + 2; ++y)
            for (int x = chart.x - 2; x < chart.x + chart.width + 2; ++x)
                ASSERT_EQ(++claims[static_cast<std::size_t>(y) * mapSize + x], 1);
    }
}

TEST(Packing, Wastes_little_on_many_small_charts) {
    std::vector<Chart> charts = ManyCharts(3000, 22);
    double area = 0;
    for (const Chart& chart : charts)
        area += (chart.width + 4.0) * (chart.height + 4.0);
    // 88 of 100 texels used: the side of a square that must be enough.
    EXPECT_TRUE(PackCharts(charts, static_cast<int>(std::sqrt(area / 0.88))));
}

TEST(Packing, Says_no_when_there_is_no_room) {
    std::vector<Chart> wide{{61, 4, 0, 0}};
    EXPECT_FALSE(PackCharts(wide, 64)) << "61 + 4 texels of padding are more than 64";
    std::vector<Chart> many(10, Chart{16, 16, 0, 0});
    EXPECT_FALSE(PackCharts(many, 60)) << "9 squares of 20 fit in 60 x 60, not 10";
    std::vector<Chart> nine(9, Chart{16, 16, 0, 0});
    EXPECT_TRUE(PackCharts(nine, 60));
}

} // namespace
