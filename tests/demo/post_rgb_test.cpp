#include "demo/post_rgb.h"

#include "tests/post/effect_stage.h"
#include "tests/support/bound_program.h"
#include "tests/support/private_member.h"

#include <ostream>

OPEN_PRIVATE(postRgbShader, &PostRGB::shader);

struct PostRGBProbe {
    static Vell::Shader& Program(PostRGB& rgb) { return rgb.*postRgbShader; }
};

namespace {

// 100 pixels: one unit of offset, a hundredth of the picture, is exactly one pixel.
constexpr int size = 100;

Picture Sample() {
    return MakePicture(size, size, [](int x, int y) {
        return Rgba{x + y + 20, 2 * y + 30, (x * 7 + y * 3) % 256, 255 - x};
    });
}

// Red comes from `offset` pixels to the lower left, blue from the upper right, both from the edge
// where that is outside; green fades by a tenth per unit.
Picture Split(const Picture& input, int offset) {
    const auto inside = [](int i) { return std::clamp(i, 0, size - 1); };
    return MakePicture(size, size, [&](int x, int y) {
        const int green = static_cast<int>(std::lround(input.At(x, y).g * (1.0 - offset * 0.1)));
        return Rgba{input.At(inside(x - offset), inside(y - offset)).r, std::clamp(green, 0, 255),
                    input.At(inside(x + offset), inside(y + offset)).b, 255};
    });
}

// Both look-ups one after another over a texture that goes on as its own mirror image instead of
// repeating its edge: this shows which of them are held at an edge, and at which one.
Picture MirroredSplit(const Picture& input, int offset) {
    const auto mirrored = [](int i) { return i < 0 ? -1 - i : i >= size ? 2 * size - 1 - i : i; };
    const auto atMostLast = [&](int i) { return mirrored(std::min(i, size - 1)); };
    const auto atLeastFirst = [&](int i) { return mirrored(std::max(i, 0)); };
    return MakePicture(size, size, [&](int x, int y) {
        const int green = static_cast<int>(std::lround(input.At(x, y).g * (1.0 - offset * 0.1)));
        return Rgba{input.At(atMostLast(x - offset), atMostLast(y - offset)).r,
                    std::clamp(green, 0, 255),
                    input.At(atLeastFirst(x + offset), atLeastFirst(y + offset)).b, 255};
    });
}

struct SplitCase {
    const char* name;
    int offset;
};

void PrintTo(const SplitCase& c, std::ostream* out) {
    *out << c.name;
}

// The shift in floats may miss a texel's middle by a thousandth, which is a step of the slope at
// one channel in a hundred.
constexpr Thresholds rounding{.max = 1.0, .mean = 0.01};

} // namespace

class PostRGBTest : public EffectStage {};

TEST_F(PostRGBTest, Begins_with_offset_0_and_no_program_bound) {
    PostRGB rgb;
    EXPECT_EQ(rgb.GetOffset(), 0.0f);
    EXPECT_TRUE(rgb.GetEnabled());
    EXPECT_EQ(BoundProgram(), 0u);
}

TEST_F(PostRGBTest, Program_is_clean_and_takes_the_offset_at_the_next_process) {
    PostRGB rgb;
    rgb.SetOffset(4.0f);
    EXPECT_EQ(rgb.GetOffset(), 4.0f);
    PostRGBProbe::Program(rgb).Enable();
    EXPECT_TRUE(BoundProgramIsClean());
    EXPECT_EQ(BoundUniformInt("texture"), 0);
    EXPECT_EQ(BoundUniform("offset")[0], 0.0f);
    PostRGBProbe::Program(rgb).Disable();
    Run(rgb, Sample());
    PostRGBProbe::Program(rgb).Enable();
    EXPECT_EQ(BoundUniform("offset")[0], 4.0f);
    PostRGBProbe::Program(rgb).Disable();
}

TEST_F(PostRGBTest, Offset_0_gives_the_input_with_alpha_1) {
    PostRGB rgb;
    Picture opaque = Sample();
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            const Rgba p = opaque.At(x, y);
            opaque.Set(x, y, {p.r, p.g, p.b, 255});
        }
    EXPECT_TRUE(Matches(Run(rgb, Sample()), opaque));
}

class PostRGBPicture : public PostRGBTest, public ::testing::WithParamInterface<SplitCase> {};

TEST_P(PostRGBPicture, Splits_red_and_blue_by_a_hundredth_per_unit) {
    const int offset = GetParam().offset;
    PostRGB rgb;
    rgb.SetOffset(static_cast<float>(offset));
    EXPECT_TRUE(Matches(Run(rgb, Sample()), Split(Sample(), offset), rounding));
}

TEST_P(PostRGBPicture, Holds_each_look_up_at_one_edge_only) {
    const int offset = GetParam().offset;
    PostRGB rgb;
    rgb.SetOffset(static_cast<float>(offset));
    EXPECT_TRUE(
        Matches(Run(rgb, Sample(), Edges::Mirrored), MirroredSplit(Sample(), offset), rounding));
}

INSTANTIATE_TEST_SUITE_P(Offset, PostRGBPicture,
                         ::testing::Values(SplitCase{"Offset_0", 0}, SplitCase{"Offset_1", 1},
                                           SplitCase{"Offset_5", 5}, SplitCase{"Offset_10", 10},
                                           SplitCase{"Offset_minus_3", -3}),
                         ::testing::PrintToStringParamName());

TEST_F(PostRGBTest, Offset_10_takes_all_green_and_shifts_by_a_tenth) {
    PostRGB rgb;
    rgb.SetOffset(10.0f);
    const Picture result = Run(rgb, Sample());
    EXPECT_TRUE(Matches(result, Split(Sample(), 10), rounding));
    EXPECT_TRUE(Near(result.At(50, 50), {40 + 40 + 20, 0, (60 * 7 + 60 * 3) % 256, 255}, 1));
}

TEST_F(PostRGBTest, Red_slides_to_the_upper_right_and_blue_to_the_lower_left) {
    Picture dot(size, size, {0, 0, 0, 255});
    dot.Set(50, 50, {255, 255, 255, 255});
    PostRGB rgb;
    rgb.SetOffset(2.0f);
    const Picture result = Run(rgb, dot);
    EXPECT_TRUE(Near(result.At(52, 52), {255, 0, 0, 255}, 1));
    EXPECT_TRUE(Near(result.At(48, 48), {0, 0, 255, 255}, 1));
    EXPECT_TRUE(Near(result.At(50, 50), {0, 204, 0, 255}, 1)); // 255 * (1 - 0.2)
}

TEST_F(PostRGBTest, Runs_whatever_its_enabled_flag_says) {
    PostRGB rgb;
    rgb.SetOffset(5.0f);
    rgb.SetEnabled(false); // the chain's business
    EXPECT_TRUE(Matches(Run(rgb, Sample()), Split(Sample(), 5), rounding));
}

TEST_F(PostRGBTest, Leaves_no_state_behind) {
    PostRGB rgb;
    EXPECT_EQ(StateLeft(rgb, Sample()), "");
}
