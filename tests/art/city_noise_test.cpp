#include "art/common/noise.h"
#include "art/common/parallel.h"

#include <atomic>
#include <vector>

#include <gmock/gmock.h>

namespace {

using namespace Art;

TEST(Noise, Repeats_with_its_period) {
    for (int i = 0; i < 20; ++i) {
        const vec2 p{0.37f * static_cast<float>(i), 0.21f * static_cast<float>(i)};
        EXPECT_NEAR(Noise2(p, 5, 8), Noise2({p.x + 8, p.y - 16}, 5, 8), 1e-4f);
        EXPECT_NEAR(Fbm2(p, 5, 4, 8), Fbm2({p.x - 8, p.y + 8}, 5, 4, 8), 1e-3f);
        EXPECT_NEAR(Cellular2(p, 5, 4).nearest, Cellular2({p.x + 4, p.y}, 5, 4).nearest, 1e-4f);
    }
}

TEST(Noise, Is_zero_at_grid_points_and_differs_by_seed) {
    EXPECT_EQ(Noise2({3, 4}, 1), 0.0f);
    EXPECT_EQ(Noise3({3, 4, 5}, 1), 0.0f);
    EXPECT_NE(Noise2({3.5f, 4.2f}, 1), Noise2({3.5f, 4.2f}, 2));
}

TEST(Random, Repeats_with_its_seed_and_stays_in_range) {
    Random a(9);
    Random b(9);
    Random c(10);
    int same = 0;
    for (int i = 0; i < 1000; ++i) {
        const int drawn = a.Int(2, 5);
        EXPECT_EQ(drawn, b.Int(2, 5));
        same += drawn == c.Int(2, 5) ? 1 : 0;
        EXPECT_GE(drawn, 2);
        EXPECT_LE(drawn, 5);
    }
    EXPECT_LT(same, 400) << "another seed must give another sequence";
}

TEST(ForEachIndex, Every_index_is_done_once_on_any_number_of_threads) {
    for (const int threads : {1, 2, 5}) {
        std::vector<std::atomic<int>> done(101);
        ForEachIndex(101, threads, [&](int i) { ++done[static_cast<std::size_t>(i)]; });
        for (const auto& count : done)
            EXPECT_EQ(count.load(), 1);
    }
}

} // namespace
