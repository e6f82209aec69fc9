#include "engine/scene/sprite.h"

#include "engine/core/core.h"
#include "tests/scene/layout.h"
#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/pixels.h"
#include "tests/support/private_member.h"

#include <array>
#include <memory>

OPEN_PRIVATE(spriteQuad, &Vell::Sprite::quad);
OPEN_PRIVATE(spriteTexture, &Vell::Sprite::texture);
OPEN_PRIVATE(spriteSize, &Vell::Sprite::size);

namespace Vell {

struct SpriteProbe {
    using Corners = std::array<std::array<float, 5>, 4>; // s, t, x, y, z

    static Corners Quad(const Sprite& sprite) {
        Corners corners{};
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const auto& corner = (sprite.*spriteQuad)[i];
            corners[i] = {corner.s, corner.t, corner.x, corner.y, corner.z};
        }
        return corners;
    }

    static std::vector<const void*> Fields(const Sprite& sprite) {
        return {&sprite, &(sprite.*spriteQuad), &(sprite.*spriteTexture), &(sprite.*spriteSize)};
    }
    static std::size_t QuadBytes(const Sprite& sprite) { return sizeof(sprite.*spriteQuad); }
};

} // namespace Vell

using namespace Vell;

namespace {

using Corners = SpriteProbe::Corners;

constexpr Rgba red{255, 0, 0, 255};
constexpr Rgba green{0, 255, 0, 255};
constexpr Rgba blue{0, 0, 255, 255};
constexpr Rgba white{255, 255, 255, 255};

/// Every picture gets a name of its own: the registry remembers paths longer than sprites live.
std::string NewName() {
    static int count = 0;
    return "sprite" + std::to_string(++count) + ".png";
}

/// The picture of one colour.
std::string PlainPng(int width, int height, Rgba colour) {
    std::string name = NewName();
    std::vector<unsigned char> bytes;
    for (int i = 0; i < width * height; ++i)
        for (const int channel : {colour.r, colour.g, colour.b, colour.a})
            bytes.push_back(static_cast<unsigned char>(channel));
    WritePng(name, width, height, 4, bytes);
    return name;
}

class SpriteTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        UseUnitOrtho();
        glEnable(GL_DEPTH_TEST);
    }

    /// Background where `inside` is false, `colour` where it is true.
    template <class Inside>
    static void ExpectArea(Rgba colour, Inside inside) {
        const Picture expected = MakePicture(screenSize, screenSize, [&](int x, int y) {
            return inside(x, y) ? colour : Rgba{0, 0, 0, 255};
        });
        EXPECT_TRUE(Matches(ReadScreen(screenSize, screenSize), expected));
    }
};

} // namespace

TEST_F(SpriteTest, Is_an_empty_rectangle_at_first) {
    Sprite sprite;
    EXPECT_EQ(sprite.GetName(), "");
    EXPECT_EQ(sprite.GetSize(), vec2(0.0f, 0.0f));
    EXPECT_EQ(SpriteProbe::Quad(sprite),
              (Corners{{{1, 1, 0, 0, 0}, {0, 1, 0, 0, 0}, {1, 0, 0, 0, 0}, {0, 0, 0, 0, 0}}}));
    sprite.Draw();
    ExpectArea(white, [](int, int) { return false; });
}

TEST_F(SpriteTest, Keeps_its_fields_and_operations_at_their_places) {
    const Sprite sprite;
    EXPECT_TRUE(InOrder(SpriteProbe::Fields(sprite)));
    EXPECT_EQ(SpriteProbe::QuadBytes(sprite), 20 * sizeof(float)) << "without gaps for OpenGL";
    EXPECT_EQ(Slot(&Sprite::Draw), Slot(&Object2D::Draw));
}

TEST_F(SpriteTest, Spans_the_unit_square_when_its_picture_is_as_large_as_the_screen) {
    Sprite sprite;
    sprite.SetTexture(PlainPng(screenSize, screenSize, red));
    EXPECT_EQ(sprite.GetSize(), vec2(1.0f, 1.0f));
    EXPECT_EQ(SpriteProbe::Quad(sprite),
              (Corners{{{1, 1, 1, 1, 0}, {0, 1, 0, 1, 0}, {1, 0, 1, 0, 0}, {0, 0, 0, 0, 0}}}));
    sprite.Draw();
    ExpectArea(red, [](int, int) { return true; });
}

TEST_F(SpriteTest, Takes_its_picture_s_share_of_the_screen_and_its_path_as_name) {
    Sprite sprite;
    const std::string name = PlainPng(64, 32, red);
    sprite.SetTexture(name);
    EXPECT_EQ(sprite.GetName(), name);
    EXPECT_EQ(sprite.GetSize(), vec2(0.5f, 0.25f)); // 64 / 128, 32 / 128
    sprite.Draw();
    ExpectArea(red, [](int x, int y) { return x < 64 && y < 32; });
}

TEST_F(SpriteTest, Measures_width_and_height_against_the_screen_s_own) {
    SetScreen(ivec2(128, 64));
    Sprite sprite;
    sprite.SetTexture(PlainPng(64, 16, red));
    SetScreen(ivec2(screenSize, screenSize));
    EXPECT_EQ(sprite.GetSize(), vec2(0.5f, 0.25f)); // 64 / 128, 16 / 64
}

TEST_F(SpriteTest, Reaches_beyond_the_screen_when_its_picture_does) {
    Sprite sprite;
    sprite.SetTexture(PlainPng(256, 192, red));
    EXPECT_EQ(sprite.GetSize(), vec2(2.0f, 1.5f)); // 256 / 128, 192 / 128
}

TEST_F(SpriteTest, Shows_its_picture_upright) {
    const std::string name = NewName();
    WritePng(name, 2, 2, 3, {255, 0, 0, 0, 255, 0, /* below */ 0, 0, 255, 255, 255, 255});
    Sprite sprite;
    sprite.SetTexture(name);
    sprite.SetScale(vec2(64.0f, 64.0f)); // two pixels' worth of picture over the whole screen
    sprite.Draw();
    const Picture screen = ReadScreen(screenSize, screenSize);
    // The pixel next to a texel's centre lies half a pixel, 1 / 128 of a texel, off it in both
    // directions: the linear filter mixes in 2 of 255 for each.
    constexpr int mixed = 4;
    EXPECT_TRUE(Near(screen.At(31, 96), red, mixed));
    EXPECT_TRUE(Near(screen.At(96, 96), green, mixed));
    EXPECT_TRUE(Near(screen.At(31, 31), blue, mixed));
    EXPECT_TRUE(Near(screen.At(96, 31), white, mixed));
}

TEST_F(SpriteTest, Keeps_its_drawn_height_when_its_size_is_set) {
    Sprite sprite;
    sprite.SetTexture(PlainPng(screenSize, screenSize, red));
    sprite.SetSize(vec2(0.5f, 0.5f));
    EXPECT_EQ(sprite.GetSize(), vec2(0.5f, 0.5f));
    EXPECT_EQ(
        SpriteProbe::Quad(sprite),
        (Corners{
            {{1, 1, 0.5f, 1, 0.5f}, {0, 1, 0, 1, 0.5f}, {1, 0, 0.5f, 0, 0}, {0, 0, 0, 0, 0}}}));
    sprite.Draw();
    ExpectArea(red, [](int x, int) { return x < 64; });
}

TEST_F(SpriteTest, Keeps_the_depth_that_its_size_gave_when_it_takes_its_picture_s_size) {
    Sprite sprite;
    sprite.SetSize(vec2(0.75f, 0.125f));
    sprite.SetTexture(PlainPng(64, 32, red)); // 0.5 and 0.25 of the screen
    EXPECT_EQ(SpriteProbe::Quad(sprite), (Corners{{{1, 1, 0.5f, 0.25f, 0.125f},
                                                   {0, 1, 0, 0.25f, 0.125f},
                                                   {1, 0, 0.5f, 0, 0},
                                                   {0, 0, 0, 0, 0}}}));
}

TEST_F(SpriteTest, Draws_the_same_after_a_rotation) {
    Sprite sprite;
    sprite.SetTexture(PlainPng(64, 32, red));
    sprite.SetRotation(vec2(1.0f, 2.0f));
    sprite.Draw();
    ExpectArea(red, [](int x, int y) { return x < 64 && y < 32; });
}

TEST_F(SpriteTest, Draws_the_same_when_it_is_debugged) {
    Sprite sprite;
    sprite.SetTexture(PlainPng(64, 32, red));
    sprite.ShowDebug(true);
    sprite.Draw();
    ExpectArea(red, [](int x, int y) { return x < 64 && y < 32; });
}

TEST_F(SpriteTest, Keeps_its_scale_when_it_is_moved) {
    Sprite sprite;
    sprite.SetTexture(PlainPng(screenSize, screenSize, red));
    sprite.SetScale(vec2(0.5f, 0.25f));
    sprite.SetPosition(vec2(0.25f, 0.5f));
    sprite.Draw();
    ExpectArea(red, [](int x, int y) { return x >= 32 && x < 96 && y >= 64 && y < 96; });
}

TEST_F(SpriteTest, Blends_by_its_alpha_times_the_current_colour_s) {
    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    Sprite sprite;
    sprite.SetTexture(PlainPng(screenSize, screenSize, {255, 0, 0, 204}));
    glColor4f(1.0f, 1.0f, 1.0f, 0.5f);
    sprite.Draw();
    // alpha 0.8 * 0.5 = 0.4: red 255 * 0.4 = 102, blue 255 * 0.6 = 153.
    const Rgba pixel = ReadScreen(screenSize, screenSize).At(64, 64);
    EXPECT_TRUE(Near({pixel.r, pixel.g, pixel.b, 0}, {102, 0, 153, 0}, 1)) << "8-bit rounding";
}

TEST_F(SpriteTest, Is_tinted_by_the_current_colour_and_resets_it) {
    Sprite sprite;
    sprite.SetTexture(PlainPng(screenSize, screenSize, white));
    glColor4f(0.0f, 1.0f, 0.0f, 1.0f);
    sprite.Draw();
    ExpectArea(green, [](int, int) { return true; });
    sprite.Draw();
    ExpectArea(white, [](int, int) { return true; });
}

TEST_F(SpriteTest, Draws_over_whatever_is_nearer) {
    Sprite sprite;
    sprite.SetTexture(PlainPng(screenSize, screenSize, red));
    glClearDepth(0.0); // nothing passes the depth test any more
    glClear(GL_DEPTH_BUFFER_BIT);
    glClearDepth(1.0);
    sprite.Draw();
    ExpectArea(red, [](int, int) { return true; });
}

TEST_F(SpriteTest, Leaves_its_texture_on_unit_0_and_its_arrays_on_and_nothing_else) {
    Sprite sprite;
    sprite.SetTexture(PlainPng(screenSize, screenSize, red)); // which binds the texture
    glActiveTexture(GL_TEXTURE1);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    const GlState before = CaptureGlState();
    sprite.Draw();
    GlState expected = before;
    expected.values["active texture"] = std::to_string(GL_TEXTURE0) + " ";
    expected.values["unit 0 texture 2D"] = "on";
    expected.values["blend source"] = std::to_string(GL_SRC_ALPHA) + " ";
    expected.values["blend destination"] = std::to_string(GL_ONE_MINUS_SRC_ALPHA) + " ";
    expected.values["vertex array"] = "on";
    expected.values["unit 0 coordinate array"] = "on";
    EXPECT_EQ(Differences(expected, CaptureGlState()), "");
}

TEST_F(SpriteTest, Switches_the_depth_test_on_even_if_it_was_off) {
    Sprite sprite;
    glDisable(GL_DEPTH_TEST);
    sprite.Draw();
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
}

TEST_F(SpriteTest, Draws_nothing_when_its_picture_is_missing) {
    const LogWatch log;
    Sprite sprite;
    sprite.SetTexture("missing.png");
    EXPECT_EQ(sprite.GetSize(), vec2(0.0f, 0.0f));
    EXPECT_EQ(sprite.GetName(), "missing.png");
    EXPECT_EQ(log.NewRows(), (std::vector<LogRow>{{"Image", "ERROR", "missing.png"}}));
    sprite.Draw();
    ExpectArea(white, [](int, int) { return false; });
}

TEST_F(SpriteTest, Takes_no_texture_of_others_when_it_has_none_itself) {
    Sprite other;
    other.SetTexture(PlainPng(2, 2, red)); // which leaves its texture bound
    Sprite sprite;
    sprite.Draw();
    GLint bound = -1;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(bound, 0);
}

TEST_F(SpriteTest, Frees_its_picture_when_it_ends) {
    const std::string name = PlainPng(2, 2, red);
    std::unique_ptr<Object2D> sprite = std::make_unique<Sprite>();
    static_cast<Sprite&>(*sprite).SetTexture(name);
    const LogWatch log;
    sprite.reset();
    EXPECT_EQ(log.NewRows(), (std::vector<LogRow>{{"Image", "FREE", name}}));
}
