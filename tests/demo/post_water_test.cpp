#include "demo/post_water.h"

#include "tests/post/effect_stage.h"
#include "tests/support/bound_program.h"
#include "tests/support/fake_time.h"
#include "tests/support/private_member.h"

#include <ostream>

OPEN_PRIVATE(postWaterShader, &PostWater::shader);

struct PostWaterProbe {
    static Vell::Shader& Program(PostWater& water) { return water.*postWaterShader; }
};

namespace {

constexpr int size = 128;

Picture Sample() {
    return MakePicture(size, size, [](int x, int y) {
        return Rgba{2 * x, (x / 16 + y / 16) % 2 * 220, 2 * y, 255 - y};
    });
}

// x' = x + cos(x + 5 y + time) / 100, then 70 % of the way to (0, 0, 0.3, 1).
Picture Rippled(const Picture& input, double time) {
    return MakePicture(size, size, [&](int column, int row) {
        const double x = (column + 0.5) / size;
        const double y = (row + 0.5) / size;
        Colour mixed;
        mixed.Add(Sampled(input, x + std::cos(x + y * 5.0 + time) * 0.01, y), 0.3);
        mixed.Add(Colour({0, 0, 0, 255}), 0.7);
        mixed.c[2] += 0.7 * 0.3 * 255.0;
        return mixed.Rounded();
    });
}

struct RippleCase {
    const char* name;
    double seconds;
};

void PrintTo(const RippleCase& c, std::ostream* out) {
    *out << c.name;
}

// The filter's weights have 8 bits, and the mix rounds once more.
constexpr Thresholds rounding{.max = 1.0, .mean = 0.05};

double TimeOf(PostWater& water) {
    PostWaterProbe::Program(water).Enable();
    const double time = static_cast<double>(BoundUniform("time")[0]);
    PostWaterProbe::Program(water).Disable();
    return time;
}

} // namespace

class PostWaterTest : public EffectStage {
protected:
    void TearDown() override {
        ClearFakeTime();
        EffectStage::TearDown();
    }
};

TEST_F(PostWaterTest, Program_is_clean_and_left_unbound) {
    PostWater water;
    EXPECT_EQ(BoundProgram(), 0u);
    PostWaterProbe::Program(water).Enable();
    EXPECT_TRUE(BoundProgramIsClean());
    EXPECT_EQ(BoundUniformInt("texture"), 0);
    PostWaterProbe::Program(water).Disable();
}

class PostWaterPicture : public PostWaterTest, public ::testing::WithParamInterface<RippleCase> {};

TEST_P(PostWaterPicture, Bends_sideways_and_tints_moving_with_the_seconds) {
    const double seconds = GetParam().seconds;
    SetFakeTime(5000.0);
    PostWater water;
    SetFakeTime(5000.0 + seconds);
    EXPECT_TRUE(Matches(Run(water, Sample()), Rippled(Sample(), seconds), rounding));
}

// The wave is the cosine of the seconds.
INSTANTIATE_TEST_SUITE_P(Time, PostWaterPicture,
                         ::testing::Values(RippleCase{"After_0_s", 0.0},
                                           RippleCase{"After_half_a_second", 0.5},
                                           RippleCase{"After_1_s", 1.0},
                                           RippleCase{"After_half_a_wave", 3.140625},
                                           RippleCase{"After_118_s", 118.25}),
                         ::testing::PrintToStringParamName());

TEST_F(PostWaterTest, Clock_is_never_reset) {
    SetFakeTime(5000.0);
    PostWater water;
    for (double seconds : {0.0, 1.0, 2.5, 27.75}) {
        SetFakeTime(5000.0 + seconds);
        water.SetEnable(seconds != 1.0); // switching off and on does not start it again either
        Run(water, Sample());
        water.SetEnable(true);
        Run(water, Sample());
        EXPECT_EQ(TimeOf(water), seconds);
    }
}

TEST_F(PostWaterTest, Switched_off_it_copies_the_input_unchanged) {
    PostWater water;
    water.SetEnable(false);
    EXPECT_TRUE(Matches(Run(water, Sample()), Sample()));
    water.SetEnable(true);
    EXPECT_FALSE(Near(Run(water, Sample()).At(64, 64), Sample().At(64, 64), 10));
}

TEST_F(PostWaterTest, Its_own_switch_is_not_the_chain_s) {
    PostWater water;
    water.SetEnable(false);
    EXPECT_TRUE(water.GetEnabled()); // the chain still runs it
    water.SetEnable(true);
    water.SetEnabled(false);
    const Picture result = Run(water, Sample());
    EXPECT_TRUE(Matches(result, Rippled(Sample(), TimeOf(water)), rounding));
}

TEST_F(PostWaterTest, Leaves_no_state_behind_switched_on_or_off) {
    PostWater water;
    EXPECT_EQ(StateLeft(water, Sample()), "");
    water.SetEnable(false);
    EXPECT_EQ(StateLeft(water, Sample()), "");
}
