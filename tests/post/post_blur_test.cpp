#include "engine/post/post_blur.h"

#include "tests/post/effect_stage.h"
#include "tests/support/bound_program.h"
#include "tests/support/private_member.h"

#include <ostream>

using Vell::ivec2;
using Vell::PostBlur;

OPEN_PRIVATE(postBlurShader, &Vell::PostBlur::shader);
OPEN_PRIVATE(postBlurFirst, &Vell::PostBlur::first);
OPEN_PRIVATE(postBlurSecond, &Vell::PostBlur::second);

namespace Vell {

struct PostBlurProbe {
    static Shader& Program(PostBlur& blur) { return blur.*postBlurShader; }
    static FBO& First(PostBlur& blur) { return blur.*postBlurFirst; }
    static FBO& Second(PostBlur& blur) { return blur.*postBlurSecond; }
};

} // namespace Vell

namespace {

using Vell::PostBlurProbe;

constexpr int size = 64;

// Something with edges, slopes and a varying alpha.
Picture Sample(int side = size) {
    return MakePicture(side, side, [side](int x, int y) {
        const bool square = x > side / 4 && x < side / 2 && y > side / 3 && y < side - 9;
        return Rgba{square ? 250 : 20, x * 255 / side, (x / 8 + y / 8) % 2 * 200, 255 - y};
    });
}

// What the effect does, by hand.
Picture Blurred(const Picture& input, int sizeRTT, int passes, double offset) {
    Picture work = Resized(input, sizeRTT, sizeRTT);
    for (int i = 0; i < 2 * passes; ++i)
        work = BoxFiltered(work, offset);
    return Resized(work, input.Width(), input.Height());
}

struct BlurCase {
    const char* name;
    int side; // of the input
    int sizeRTT;
    int passes;
    float offset;
};

void PrintTo(const BlurCase& c, std::ostream* out) {
    *out << c.name;
}

// Every scaling and every filtering rounds to 8 bits on both sides, with weights of 8 bits.
constexpr Thresholds rounding{.max = 2.0, .mean = 0.1};

} // namespace

class PostBlurTest : public EffectStage {};
class PostBlurPicture : public PostBlurTest, public ::testing::WithParamInterface<BlurCase> {};

TEST_F(PostBlurTest, Begins_with_five_passes_at_128_pixels) {
    PostBlur blur;
    EXPECT_EQ(blur.GetPass(), 5);
    EXPECT_EQ(blur.GetSizeRTT(), 128);
    EXPECT_EQ(blur.GetOffset(), 0.01f);
    EXPECT_TRUE(blur.GetEnabled());
    EXPECT_EQ(PostBlurProbe::First(blur).GetSize(), ivec2(128, 128));
    EXPECT_EQ(PostBlurProbe::Second(blur).GetSize(), ivec2(128, 128));
}

TEST_F(PostBlurTest, Program_is_clean_and_follows_the_offset) {
    PostBlur blur;
    EXPECT_EQ(BoundProgram(), 0u);
    PostBlurProbe::Program(blur).Enable();
    EXPECT_TRUE(BoundProgramIsClean());
    EXPECT_EQ(BoundUniformInt("texture"), 0);
    EXPECT_EQ(BoundUniform("offset")[0], 0.01f);
    blur.SetOffset(0.25f);
    EXPECT_EQ(BoundProgram(), 0u);
    EXPECT_EQ(blur.GetOffset(), 0.25f);
    PostBlurProbe::Program(blur).Enable();
    EXPECT_EQ(BoundUniform("offset")[0], 0.25f);
    PostBlurProbe::Program(blur).Disable();
}

TEST_F(PostBlurTest, Size_resizes_both_work_targets) {
    PostBlur blur;
    blur.SetSizeRTT(64);
    EXPECT_EQ(blur.GetSizeRTT(), 64);
    EXPECT_EQ(PostBlurProbe::First(blur).GetSize(), ivec2(64, 64));
    EXPECT_EQ(PostBlurProbe::Second(blur).GetSize(), ivec2(64, 64));
}

TEST_F(PostBlurTest, No_pass_at_the_same_size_is_a_copy) {
    PostBlur blur;
    blur.SetPass(0);
    blur.SetSizeRTT(size);
    EXPECT_TRUE(Matches(Run(blur, Sample()), Sample()));
}

TEST_P(PostBlurPicture, Is_scaled_down_filtered_twice_a_pass_and_scaled_up) {
    const BlurCase& c = GetParam();
    PostBlur blur;
    blur.SetSizeRTT(c.sizeRTT);
    blur.SetOffset(c.offset);
    blur.SetPass(c.passes);
    EXPECT_EQ(blur.GetPass(), c.passes);
    EXPECT_TRUE(Matches(Run(blur, Sample(c.side)),
                        Blurred(Sample(c.side), c.sizeRTT, c.passes, static_cast<double>(c.offset)),
                        rounding));
}

// An offset of 1 / 64 is exactly one texel of 64; 0.01 is 1.28 texels of 128 and 0.03 1.92 of 64:
// between texels, where the linear filter joins in.
INSTANTIATE_TEST_SUITE_P(Blur, PostBlurPicture,
                         ::testing::Values(BlurCase{"Pass_0", 64, 32, 0, 0.01f},
                                           BlurCase{"Pass_1", 64, 64, 1, 1.0f / 64},
                                           BlurCase{"Pass_2", 64, 64, 2, 1.0f / 64},
                                           BlurCase{"Pass_5", 64, 64, 5, 1.0f / 64},
                                           BlurCase{"Offset_0", 128, 32, 1, 0.0f},
                                           BlurCase{"Offset_1_hundredth", 128, 128, 1, 0.01f},
                                           BlurCase{"Offset_3_hundredths", 128, 64, 1, 0.03f},
                                           BlurCase{"Offset_half", 64, 64, 1, 0.5f},
                                           BlurCase{"Offset_1", 64, 64, 1, 1.0f}),
                         ::testing::PrintToStringParamName());

TEST_F(PostBlurTest, Edges_repeat_instead_of_wrapping) {
    // A bright left edge must not shine in from the right.
    PostBlur blur;
    blur.SetSizeRTT(size);
    blur.SetOffset(4.0f / size);
    const Picture edge = MakePicture(size, size, [](int x, int) {
        return x < 4 ? Rgba{255, 255, 255, 255} : Rgba{0, 0, 0, 255};
    });
    const Picture blurred = Run(blur, edge);
    EXPECT_GT(blurred.At(0, 32).r, 60);
    for (int x = size - 8; x < size; ++x)
        EXPECT_EQ(blurred.At(x, 32).r, 0) << x;
}

TEST_F(PostBlurTest, One_colour_stays_one_colour) {
    PostBlur blur;
    const Picture plain(size, size, {90, 180, 45, 120});
    EXPECT_TRUE(
        Matches(Run(blur, plain), plain, {.max = 1.0, .mean = 0.1})); // nine ninths may round up
}

TEST_F(PostBlurTest, Leaves_no_state_behind) {
    PostBlur blur;
    EXPECT_EQ(StateLeft(blur, Sample()), "");
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
}
