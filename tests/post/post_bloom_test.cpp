#include "engine/post/post_bloom.h"

#include "tests/post/effect_stage.h"
#include "tests/support/bound_program.h"
#include "tests/support/private_member.h"

#include <ostream>

using Vell::ivec2;
using Vell::PostBloom;

OPEN_PRIVATE(postBloomThresholdShader, &Vell::PostBloom::thresholdShader);
OPEN_PRIVATE(postBloomGlow, &Vell::PostBloom::glow);
OPEN_PRIVATE(postBloomBlur, &Vell::PostBloom::blur);

namespace Vell {

struct PostBloomProbe {
    static Shader& Program(PostBloom& bloom) { return bloom.*postBloomThresholdShader; }
    static FBO& Glow(PostBloom& bloom) { return bloom.*postBloomGlow; }
    static PostBlur& Blur(PostBloom& bloom) { return bloom.*postBloomBlur; }
};

} // namespace Vell

namespace {

using Vell::PostBloomProbe;

constexpr int size = 128;

// A white square on a dark slope: sums of 765 and of at most 150.
Picture Sample() {
    return MakePicture(size, size, [](int x, int y) {
        const bool square = x >= 48 && x < 80 && y >= 40 && y < 72;
        return square ? Rgba{255, 255, 255, 255} : Rgba{x / 2, 20, y / 2, 255};
    });
}

// What the effect does, by hand: `input` + intensity * blurred alpha * blurred bright parts.
Picture Bloomed(const Picture& input, double intensity, double threshold, int passes,
                double offset) {
    Picture glow = MakePicture(size, size, [&](int x, int y) {
        const Rgba p = input.At(x, y);
        return (p.r + p.g + p.b) / 3.0 / 255.0 < threshold ? Rgba{0, 0, 0, 255} : p;
    });
    for (int i = 0; i < 2 * passes; ++i)
        glow = BoxFiltered(glow, offset);
    return MakePicture(size, size, [&](int x, int y) {
        const Colour light(glow.At(x, y));
        const double weight = intensity * light.c[3] / 255.0;
        return Colour(input.At(x, y)).Add(light, weight).Rounded();
    });
}

// A bloom that blurs little enough for a test to follow it.
void BlurALittle(PostBloom& bloom) {
    bloom.SetPass(1);
    bloom.SetSizeRTT(size);
    bloom.SetOffset(1.0f / size);
}

Picture Plain(Rgba colour) {
    return Picture(size, size, colour);
}

struct BloomCase {
    const char* name;
    float intensity;
    float threshold;
};

void PrintTo(const BloomCase& c, std::ostream* out) {
    *out << c.name;
}

// Two filterings, a blend and the test's own rounding.
constexpr Thresholds rounding{.max = 1.0, .mean = 0.01};

} // namespace

class PostBloomTest : public EffectStage {
protected:
    // One colour through the bloom; blurring one colour leaves it as it is.
    static Rgba RunPlain(Rgba colour, float intensity, float threshold) {
        PostBloom bloom;
        BlurALittle(bloom);
        bloom.SetIntensity(intensity);
        bloom.SetThreshold(threshold);
        return Run(bloom, Plain(colour)).At(64, 64);
    }
};

TEST_F(PostBloomTest, Begins_with_its_defaults_and_the_blur_s) {
    PostBloom bloom;
    EXPECT_EQ(bloom.GetIntensity(), 1.0f);
    EXPECT_EQ(bloom.GetThreshold(), 0.9f);
    EXPECT_EQ(bloom.GetPass(), 5);
    EXPECT_EQ(bloom.GetSizeRTT(), 128);
    EXPECT_EQ(bloom.GetOffset(), 0.01f);
    EXPECT_TRUE(bloom.GetEnabled());
    EXPECT_EQ(PostBloomProbe::Glow(bloom).GetSize(), ivec2(size, size)); // the screen's
}

TEST_F(PostBloomTest, Program_is_clean_and_follows_the_threshold) {
    PostBloom bloom;
    EXPECT_EQ(BoundProgram(), 0u);
    PostBloomProbe::Program(bloom).Enable();
    EXPECT_TRUE(BoundProgramIsClean());
    EXPECT_EQ(BoundUniformInt("texture"), 0);
    EXPECT_EQ(BoundUniform("threshold")[0], 0.9f);
    bloom.SetThreshold(0.5f);
    EXPECT_EQ(BoundProgram(), 0u);
    EXPECT_EQ(bloom.GetThreshold(), 0.5f);
    PostBloomProbe::Program(bloom).Enable();
    EXPECT_EQ(BoundUniform("threshold")[0], 0.5f);
    PostBloomProbe::Program(bloom).Disable();
}

TEST_F(PostBloomTest, Hands_the_blur_s_parameters_on) {
    PostBloom bloom;
    bloom.SetPass(3);
    bloom.SetSizeRTT(32);
    bloom.SetOffset(0.5f);
    EXPECT_EQ(bloom.GetPass(), 3);
    EXPECT_EQ(bloom.GetSizeRTT(), 32);
    EXPECT_EQ(bloom.GetOffset(), 0.5f);
    EXPECT_EQ(PostBloomProbe::Blur(bloom).GetPass(), 3);
    EXPECT_EQ(PostBloomProbe::Blur(bloom).GetSizeRTT(), 32);
    EXPECT_EQ(PostBloomProbe::Blur(bloom).GetOffset(), 0.5f);
}

TEST_F(PostBloomTest, Glow_is_added_with_its_intensity) {
    const Rgba colour{100, 60, 20, 255};
    EXPECT_TRUE(Near(RunPlain(colour, 0.0f, 0.0f), colour));
    EXPECT_TRUE(Near(RunPlain(colour, 0.25f, 0.0f), {125, 75, 25, 255}, 1));
    EXPECT_TRUE(Near(RunPlain(colour, 0.5f, 0.0f), {150, 90, 30, 255}, 1));
    EXPECT_TRUE(Near(RunPlain(colour, 1.0f, 0.0f), {200, 120, 40, 255}, 1));
}

TEST_F(PostBloomTest, Glow_is_weighted_by_its_alpha_too) {
    // 100 + 100 * 0.4; alpha 102 + 102 * 0.4 = 142.8.
    EXPECT_TRUE(Near(RunPlain({100, 60, 20, 102}, 1.0f, 0.0f), {140, 84, 28, 143}, 1));
}

class PostBloomPicture : public PostBloomTest, public ::testing::WithParamInterface<BloomCase> {};

TEST_P(PostBloomPicture, Is_the_input_plus_the_weighted_blur_of_its_bright_parts) {
    const BloomCase& c = GetParam();
    PostBloom bloom;
    BlurALittle(bloom);
    bloom.SetIntensity(c.intensity);
    bloom.SetThreshold(c.threshold);
    EXPECT_TRUE(Matches(Run(bloom, Sample()),
                        Bloomed(Sample(), static_cast<double>(c.intensity),
                                static_cast<double>(c.threshold), 1, 1.0 / size),
                        rounding));
}

INSTANTIATE_TEST_SUITE_P(Bloom, PostBloomPicture,
                         ::testing::Values(BloomCase{"Intensity_0", 0.0f, 0.1f},
                                           BloomCase{"Intensity_middle", 0.5f, 0.1f},
                                           BloomCase{"Intensity_1", 1.0f, 0.1f},
                                           BloomCase{"Threshold_0", 1.0f, 0.0f},
                                           BloomCase{"Threshold_middle", 1.0f, 0.5f},
                                           BloomCase{"Threshold_1", 1.0f, 1.0f}),
                         ::testing::PrintToStringParamName());

TEST_F(PostBloomTest, Threshold_0_lets_the_whole_image_glow) {
    PostBloom bloom;
    BlurALittle(bloom);
    bloom.SetThreshold(0.0f);
    const Picture result = Run(bloom, Sample());
    for (int y = 8; y < size; y += 8)
        for (int x = 8; x < size; x += 8)
            EXPECT_GE(result.At(x, y).g, 39) << x << ", " << y; // 20 and its glow of 20, or white
}

TEST_F(PostBloomTest, Intensity_outside_0_to_1_acts_as_the_nearest_of_them) {
    EXPECT_TRUE(Near(RunPlain({100, 60, 20, 255}, 2.0f, 0.0f), {200, 120, 40, 255}, 1));
    EXPECT_TRUE(Near(RunPlain({100, 60, 20, 255}, -1.0f, 0.0f), {100, 60, 20, 255}));
}

TEST_F(PostBloomTest, Middle_threshold_lets_the_bright_parts_glow_and_spread) {
    PostBloom bloom;
    BlurALittle(bloom);
    bloom.SetThreshold(0.5f);
    bloom.SetIntensity(0.5f);
    const Picture result = Run(bloom, Sample());
    EXPECT_TRUE(Matches(result, Bloomed(Sample(), 0.5, 0.5, 1, 1.0 / size), rounding));
    EXPECT_GT(result.At(47, 56).g, 40); // beside the square, where the input has 20
    EXPECT_EQ(result.At(20, 56).g, 20); // out of reach
}

TEST_F(PostBloomTest, Threshold_above_1_leaves_the_input) {
    PostBloom bloom;
    bloom.SetThreshold(1.01f);
    EXPECT_TRUE(Matches(Run(bloom, Sample()), Sample()));
}

TEST_F(PostBloomTest, Intensity_0_leaves_the_input) {
    PostBloom bloom;
    bloom.SetThreshold(0.0f);
    bloom.SetIntensity(0.0f);
    EXPECT_TRUE(Matches(Run(bloom, Sample()), Sample()));
}

TEST_F(PostBloomTest, Brightness_equal_to_the_threshold_passes) {
    // (1 + 1 + 1) / 3 is 1, and so is the threshold; a step of the float more and nothing passes.
    // The glow is looked at, for white stays white.
    PostBloom bloom;
    bloom.SetThreshold(1.0f);
    Run(bloom, Plain({255, 255, 255, 255}));
    const auto glow = [&] { return ReadTexture(PostBloomProbe::Glow(bloom).GetColor()); };
    EXPECT_TRUE(Near(glow().At(64, 64), {255, 255, 255, 255}));
    bloom.SetThreshold(std::nextafter(1.0f, 2.0f));
    Run(bloom, Plain({255, 255, 255, 255}));
    EXPECT_TRUE(Near(glow().At(64, 64), {0, 0, 0, 255}));
}

TEST_F(PostBloomTest, Dark_parts_of_the_glow_are_opaque_and_bright_ones_keep_their_alpha) {
    PostBloom bloom;
    bloom.SetThreshold(0.5f);
    Run(bloom, Plain({100, 100, 100, 77}));
    EXPECT_TRUE(
        Near(ReadTexture(PostBloomProbe::Glow(bloom).GetColor()).At(64, 64), {0, 0, 0, 255}));
    Run(bloom, Plain({200, 200, 200, 77}));
    EXPECT_TRUE(Near(ReadTexture(PostBloomProbe::Glow(bloom).GetColor()).At(64, 64),
                     {200, 200, 200, 77}, 1));
}

TEST_F(PostBloomTest, Offset_changes_the_spread_of_the_glow_only) {
    PostBloom bloom;
    BlurALittle(bloom);
    bloom.SetThreshold(0.5f);
    const Picture narrow = Run(bloom, Sample());
    bloom.SetOffset(8.0f / size);
    const Picture wide = Run(bloom, Sample());
    EXPECT_EQ(narrow.At(36, 56), Sample().At(36, 56)); // 12 pixels beside the square
    EXPECT_GT(wide.At(36, 56).g, 40);
    EXPECT_EQ(wide.At(100, 56),
              Sample().At(100, 56)); // 20 pixels beside it: 2 * 8 reach no further
}

TEST_F(PostBloomTest, Disabled_flag_of_the_inner_blur_is_not_asked) {
    PostBloom bloom;
    BlurALittle(bloom);
    PostBloomProbe::Blur(bloom).SetEnabled(false);
    bloom.SetThreshold(0.5f);
    EXPECT_TRUE(
        Matches(Run(bloom, Sample()), Bloomed(Sample(), 1.0, 0.5, 1, 1.0 / size), rounding));
}

TEST_F(PostBloomTest, Leaves_no_state_behind) {
    PostBloom bloom;
    EXPECT_EQ(StateLeft(bloom, Sample()), "");
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D));
}
