#include "art/logo/letters.h"
#include "art/logo/logo.h"

#include "engine/core/core.h"
#include "engine/core/fbo.h"
#include "engine/scene/sprite.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"

#include <cmath>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

const std::string logoFile = NIMBREL_SOURCE_DIR "/Data/Gfx/Logo/logo.jpg";

/// Inside the unit square of a letter: is there ink?
bool Ink(char letter, float x, float y) {
    return Art::LetterNamed(letter).Contains({x, y});
}

float Brightness(const Art::Rgba& p) {
    return (p.r + p.g + p.b) / 3;
}

} // namespace

TEST(NatureLogo, Letters_have_their_strokes_where_a_reader_expects_them) {
    EXPECT_TRUE(Ink('L', 0.08f, 0.9f)) << "stem on the left";
    EXPECT_TRUE(Ink('L', 0.4f, 0.03f)) << "foot to the right";
    EXPECT_FALSE(Ink('L', 0.4f, 0.9f));
    EXPECT_TRUE(Ink('E', 0.3f, 0.53f)) << "middle bar";
    EXPECT_TRUE(Ink('H', 0.35f, 0.47f)) << "cross bar";
    EXPECT_TRUE(Ink('N', 0.12f, 0.95f)) << "the slant starts at the upper left";
    EXPECT_FALSE(Ink('N', 0.30f, 0.1f)) << "and does not start at the lower left";
    EXPECT_TRUE(Ink('V', 0.45f, 0.03f)) << "point below";
    EXPECT_TRUE(Ink('A', 0.40f, 0.95f)) << "point above";
    EXPECT_FALSE(Ink('O', 0.5f, 0.5f)) << "counter";
    EXPECT_TRUE(Ink('R', 0.6f, 0.03f)) << "leg";
    EXPECT_FALSE(Ink('B', 0.3f, 0.3f)) << "counter";
}

TEST(NatureLogo, A_letter_that_was_never_drawn_is_refused) {
    EXPECT_THROW(Art::LetterNamed('Q'), std::out_of_range);
}

TEST(NatureLogo, A_word_fills_its_place_with_even_gaps) {
    const std::vector<Art::PlacedLetter> line = Art::SetWord("HAL", 10, 110, 5, 20);
    // Widths 0.74, 0.86 and 0.54 at height 20 are 14.8, 17.2 and 10.8: 42.8 of 100, so 28.6 a gap.
    ASSERT_EQ(line.size(), 3U);
    EXPECT_NEAR(line[0].origin.x, 10, 1e-3);
    EXPECT_NEAR(line[1].origin.x, 10 + 14.8 + 28.6, 1e-3);
    EXPECT_NEAR(line[2].origin.x, 110 - 10.8, 1e-3);
}

TEST(NatureLogo, Ink_is_bright_and_the_ground_dark_even_half_faded) {
    const Art::Picture title = Art::TitlePicture();
    double ink = 0;
    double ground = 0;
    int inks = 0;
    int grounds = 0;
    for (int y = 0; y < Art::logoHeight / 2; ++y)
        for (int x = 0; x < Art::logoWidth; ++x) {
            const float covered = Art::InkAt(x, y);
            if (covered == 1) {
                ink += Brightness(title.At(x, y));
                ++inks;
            } else if (covered == 0) {
                ground += Brightness(title.At(x, y));
                ++grounds;
            }
        }
    ASSERT_GT(inks, 1000);
    ASSERT_GT(grounds, 20000);
    // Half faded, half of the difference is left; a fifth of white is still easily read.
    EXPECT_GT((ink / inks - ground / grounds) / 2, 0.2);
    EXPECT_LT(ground / grounds, 0.3);
}

class NatureLogoSprite : public GlTest {};

TEST_F(NatureLogoSprite, Reads_from_left_to_right_over_the_whole_window) {
    const Vell::ivec2 window(Art::logoWidth, Art::logoHeight);
    Vell::SetScreen(window); // sprites measure themselves against it
    Vell::FBO target;
    target.SetSize(window);
    target.Enable();
    Vell::Sprite logo;
    logo.SetTexture(logoFile);
    // The window and what lies beyond its upper and right edges, pixel for pixel.
    EXPECT_EQ(logo.GetSize().x, 1024.0f / 960.0f);
    EXPECT_EQ(logo.GetSize().y, 128.0f / 89.0f);
    UseUnitOrtho();
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    logo.Draw();
    const Picture shown = ReadScreen(Art::logoWidth, Art::logoHeight);
    target.Disable();
    const Art::Picture title = Art::TitlePicture();
    const Picture expected = MakePicture(Art::logoWidth, Art::logoHeight, [&](int x, int y) {
        const Art::Rgba& p = title.At(x, Art::logoHeight - 1 - y);
        const auto byte = [](float v) { return static_cast<int>(std::lround(v * 255)); };
        return Rgba{byte(p.r), byte(p.g), byte(p.b), 255};
    });
    // JPEG blurs the sharpest pixels of the lettering by some steps and leaves the rest alone.
    EXPECT_TRUE(Matches(shown, expected, {.max = 14, .mean = 1.5, .failing = 0.005}));
}
