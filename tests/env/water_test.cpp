#include "tests/env/water_stage.h"

#include "tests/support/gl_state.h"
#include "tests/support/log_page.h"

#include <algorithm>
#include <vector>

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using Vell::ivec2;
using Vell::vec2;
using Vell::vec3;
using Vell::WaterProbe;

namespace {

// From (0, 4, 10) along -z this stands 20 units ahead, 4 to 8 units right of the eye and 4 to 8
// above it: pixels 64 + 64 * 4 / 20 = 76.8 to 89.6 both ways.
const Rectangle above{vec3(4, 8, -10), vec3(4, 0, 0), vec3(0, 4, 0)};
const vec3 eye(0, 4, 10);
const vec3 ahead(0, 0, -1);
constexpr Rgba red{255, 0, 0, 255};

struct Bounds {
    int left, right, bottom, top;
    bool operator==(const Bounds&) const = default;
};

// The pixels that are red, as the smallest rectangle around them.
Bounds RedBounds(const Picture& picture) {
    Bounds found{picture.Width(), -1, picture.Height(), -1};
    for (int y = 0; y < picture.Height(); ++y)
        for (int x = 0; x < picture.Width(); ++x)
            if (picture.At(x, y).r > 200)
                found = {std::min(found.left, x), std::max(found.right, x),
                         std::min(found.bottom, y), std::max(found.top, y)};
    return found;
}

void PrintTo(const Bounds& b, std::ostream* out) {
    *out << "x " << b.left << ".." << b.right << ", y " << b.bottom << ".." << b.top;
}

} // namespace

class WaterTest : public WaterStage {
protected:
    // What a 512 x 512 target of the water shows of the rectangle `above` and its like.
    Picture Reflection(Vell::Water& water, const Rectangle& r) {
        RenderImages(water, [&] { DrawRectangle(r, red); });
        return ReadTexture(WaterProbe::Reflection(water).GetColor());
    }
};

TEST_F(WaterTest, Begins_with_its_defaults) {
    Vell::Water water;
    EXPECT_EQ(water.GetSize(), ivec2(1024, 1024));
    EXPECT_EQ(water.GetBlend(), 0.5f);
    EXPECT_EQ(water.GetDeform(), 0.035f);
    EXPECT_EQ(water.GetSpeed(), vec2(1, 1));
    EXPECT_EQ(water.GetUVRepeat(), vec2(1, 1));
    EXPECT_FALSE(water.GetInFrustum());
    EXPECT_FALSE(water.GetDebug());
}

TEST_F(WaterTest, Begins_with_a_quad_around_the_origin_and_a_box_in_its_positive_quarter) {
    Vell::Water water;
    EXPECT_THAT(std::vector<float>(WaterProbe::Quad(water), WaterProbe::Quad(water) + 20),
                ElementsAreArray({1, 1, 1024, 0, 1024,  0, 1, -1024, 0, 1024, //
                                  1, 0, 1024, 0, -1024, 0, 0, -1024, 0, -1024}));
    EXPECT_EQ(water.GetBBox()->GetMin(), vec3(0, -0.1f, 0));
    EXPECT_EQ(water.GetBBox()->GetMax(), vec3(1024, 0.1f, 1024));
}

TEST_F(WaterTest, Size_moves_the_positive_edges_only_and_doubles_the_positive_side_of_the_box) {
    Vell::Water water;
    water.SetSize(ivec2(100, 100));
    EXPECT_THAT(std::vector<float>(WaterProbe::Quad(water), WaterProbe::Quad(water) + 20),
                ElementsAreArray({1, 1, 100, 0, 100,   0, 1, -1024, 0, 100, //
                                  1, 0, 100, 0, -1024, 0, 0, -1024, 0, -1024}));
    EXPECT_EQ(water.GetSize(), ivec2(100, 100));
    EXPECT_EQ(water.GetBBox()->GetMin(), vec3(-100, -0.1f, -100));
    EXPECT_EQ(water.GetBBox()->GetMax(), vec3(200, 0.1f, 200));
}

TEST_F(WaterTest, Size_keeps_x_and_z_apart) {
    Vell::Water water;
    water.SetSize(ivec2(7, 9));
    EXPECT_THAT(std::vector<float>(WaterProbe::Quad(water), WaterProbe::Quad(water) + 20),
                ElementsAreArray({1, 1, 7, 0, 9,     0, 1, -1024, 0, 9, //
                                  1, 0, 7, 0, -1024, 0, 0, -1024, 0, -1024}));
    EXPECT_EQ(water.GetBBox()->GetMax(), vec3(14, 0.1f, 18));
}

TEST_F(WaterTest, Targets_are_512_square_and_clamped) {
    Vell::Water water;
    for (Vell::FBO* target : {&WaterProbe::Reflection(water), &WaterProbe::Refraction(water)}) {
        EXPECT_EQ(target->GetSize(), ivec2(512, 512));
        glBindTexture(GL_TEXTURE_2D, target->GetColor());
        for (GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T}) {
            GLint value = 0;
            glGetTexParameteriv(GL_TEXTURE_2D, wrap, &value);
            EXPECT_EQ(value, GL_CLAMP_TO_EDGE);
        }
    }
}

TEST_F(WaterTest, Reflection_mirrors_the_scene_about_the_surface) {
    // 8 to 12 above the surface becomes 8 to 12 below it, that is 12 to 16 below the eye: rows
    // 64 - 64 * 16 / 20 = 12.8 to 25.6 of 128, and 51.2 to 102.4 of the target's 512.
    // Columns stay: 76.8 to 89.6 of 128 are 307.2 to 358.4 of 512.
    Vell::Water water;
    LookFrom(eye, ahead);
    EXPECT_EQ(RedBounds(Reflection(water, above)), (Bounds{307, 357, 51, 101}));
}

TEST_F(WaterTest, Reflection_is_cut_at_the_surface) {
    // From 6 below the surface to 6 above it: only the upper half is mirrored, to rows between
    // 256 - 256 * 10 / 20 = 128 and 256 - 256 * 4 / 20 = 204.8.
    Vell::Water water;
    LookFrom(eye, ahead);
    const Rectangle through{vec3(4, -6, -10), vec3(4, 0, 0), vec3(0, 12, 0)};
    EXPECT_EQ(RedBounds(Reflection(water, through)), (Bounds{307, 357, 128, 204}));
}

TEST_F(WaterTest, Stays_unmirrored_and_unclipped_when_the_camera_is_at_the_surface_or_below) {
    // At height h, from 6 below the surface to 6 above: rows 256 + 256 * (-6 - h) / 20 and on.
    // h = 0: 179.2 to 332.8; h = -2: 204.8 to 358.4.
    Vell::Water water;
    const Rectangle through{vec3(4, -6, -10), vec3(4, 0, 0), vec3(0, 12, 0)};
    LookFrom(vec3(0, 0, 10), ahead);
    EXPECT_EQ(RedBounds(Reflection(water, through)), (Bounds{307, 357, 179, 332}));
    LookFrom(vec3(0, -2, 10), ahead);
    EXPECT_EQ(RedBounds(Reflection(water, through)), (Bounds{307, 357, 205, 357}));
}

TEST_F(WaterTest, Clip_plane_is_on_during_the_reflection_from_above_only) {
    Vell::Water water;
    for (const auto& [height, clipped] : {std::pair{4.0f, true}, {0.0f, false}, {-1.0f, false}}) {
        LookFrom(vec3(0, height, 10), ahead);
        water.BeginReflection(camera);
        EXPECT_EQ(static_cast<bool>(glIsEnabled(GL_CLIP_PLANE0)), clipped) << height;
        water.EndReflection();
        EXPECT_FALSE(glIsEnabled(GL_CLIP_PLANE0)) << height;
    }
}

TEST_F(WaterTest, Refraction_shows_the_whole_scene_as_the_camera_sees_it) {
    Vell::Water water;
    LookFrom(eye, ahead);
    const Rectangle through{vec3(4, -6, -10), vec3(4, 0, 0), vec3(0, 12, 0)};
    RenderImages(water, [&] { DrawRectangle(through, red); });
    // 10 below to 2 above the eye: rows 256 - 128 to 256 + 25.6.
    EXPECT_EQ(RedBounds(ReadTexture(WaterProbe::Refraction(water).GetColor())),
              (Bounds{307, 357, 128, 281}));
}

TEST_F(WaterTest, Both_passes_begin_with_cleared_colour_and_depth) {
    Vell::Water water;
    LookFrom(eye, ahead);
    Reflection(water, above);
    glClearColor(0.0f, 1.0f, 0.0f, 1.0f);
    RenderImages(water, [] {});
    for (Vell::FBO* target : {&WaterProbe::Reflection(water), &WaterProbe::Refraction(water)}) {
        EXPECT_TRUE(Matches(ReadTexture(target->GetColor()), Picture(512, 512, {0, 255, 0, 255})));
        EXPECT_THAT(ReadDepthTexture(target->GetDepth()), ::testing::Each(1.0f));
    }
}

TEST_F(WaterTest, Passes_leave_the_state_as_they_found_it) {
    Vell::Water water;
    RenderImages(water, [] {}); // the targets' construction has left a renderbuffer bound
    for (float height : {4.0f, 0.0f, -1.0f}) {
        LookFrom(vec3(0, height, 10), ahead);
        glLoadIdentity();
        const GlState before = CaptureGlState();
        RenderImages(water, [] {});
        EXPECT_EQ(Differences(before, CaptureGlState()), "");
    }
}

TEST_F(WaterTest, Surface_shows_the_mirror_image_at_blend_0) {
    // Columns 76.8 to 89.6 and rows 12.8 to 25.6, as in the target. A pixel shows the mean of 2 x 2
    // texels of the target, 4 x + 1 and 4 x + 2: column 89 and row 25 are half red, no more.
    Vell::Water water;
    water.SetBlend(0.0f);
    water.SetDeform(0.0f);
    LookFrom(eye, ahead);
    RenderImages(water, [] { DrawRectangle(above, red); });
    EXPECT_EQ(RedBounds(DrawnOnScreen(water)), (Bounds{77, 88, 13, 24}));
}

TEST_F(WaterTest, Surface_shows_what_lies_below_it_at_blend_1) {
    // 4 to 8 right, 8 to 12 below the eye: x 76.8 to 89.6, y 64 - 38.4 = 25.6 to 38.4.
    Vell::Water water;
    water.SetBlend(1.0f);
    water.SetDeform(0.0f);
    LookFrom(eye, ahead);
    const Rectangle below{vec3(4, -8, -10), vec3(4, 0, 0), vec3(0, 4, 0)};
    RenderImages(water, [&] { DrawRectangle(below, red); });
    EXPECT_EQ(RedBounds(DrawnOnScreen(water)), (Bounds{77, 88, 26, 37}));
}

TEST_F(WaterTest, Is_not_drawn_out_of_view_and_says_so) {
    Vell::Water water;
    LookFrom(eye, vec3(0, 1, -0.001f)); // at the sky
    EXPECT_TRUE(Matches(DrawnOnScreen(water), Picture(size, size, {0, 0, 0, 255})));
    EXPECT_FALSE(water.GetInFrustum());

    LookFrom(vec3(100, 4, 100), ahead);
    DrawnOnScreen(water);
    EXPECT_TRUE(water.GetInFrustum());

    LookFrom(eye, vec3(0, 1, -0.001f));
    DrawnOnScreen(water);
    EXPECT_FALSE(water.GetInFrustum());
}

TEST_F(WaterTest, Unsized_surface_is_looked_for_in_its_positive_quarter_only) {
    // The quad reaches to -1024, but seen from (-50, 4, -50) towards -z its box is behind the eye.
    Vell::Water water;
    LookFrom(vec3(-50, 4, -50), ahead);
    DrawnOnScreen(water);
    EXPECT_FALSE(water.GetInFrustum());
    water.SetSize(ivec2(1024, 1024));
    DrawnOnScreen(water);
    EXPECT_TRUE(water.GetInFrustum());
}

TEST_F(WaterTest, Shadow_pass_draws_the_bare_quad_whatever_the_frustum_says) {
    Vell::Water water;
    LookFrom(eye, vec3(0, 1, -0.001f));
    UseView(); // planes that do not see the water
    LookFrom(eye, ahead);
    glLoadIdentity();
    camera.Draw();
    glColor4f(0.0f, 1.0f, 0.0f, 1.0f);
    water.DrawShadow();
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    // The horizon of a plane that ends 1034 units away and 4 below is at 64 - 64 * 4 / 1034 = 63.8.
    const Picture screen = ReadScreen(size, size);
    EXPECT_TRUE(Near(screen.At(5, 62), {0, 255, 0, 255}));
    EXPECT_TRUE(Near(screen.At(120, 1), {0, 255, 0, 255}));
    EXPECT_TRUE(Near(screen.At(64, 65), {0, 0, 0, 255}));
    EXPECT_FALSE(water.GetInFrustum());
}

TEST_F(WaterTest, Drawing_changes_no_state_but_bindings_and_client_arrays) {
    Vell::Water water;
    LookFrom(eye, ahead);
    DrawnOnScreen(water); // leaves its bindings and its arrays
    ASSERT_TRUE(water.GetInFrustum());
    const GlState before = CaptureGlState();
    water.Draw();
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
    water.SetDebug(true);
    water.Draw();
    // The box is drawn from the vertex array alone.
    EXPECT_EQ(Differences(before, CaptureGlState()), "unit 0 coordinate array: on -> off\n");
}

TEST_F(WaterTest, Is_drawn_whatever_its_show_flag_says) {
    Vell::Water water;
    water.SetBlend(0.0f);
    Fill(WaterProbe::Reflection(water), Picture(512, 512, {200, 100, 50, 255}));
    LookFrom(vec3(0, 4, -10), ahead); // sees z < 0 only, which no shadow reaches
    water.SetSize(ivec2(1024, 1024)); // so that the box reaches there, too
    water.SetShow(false);
    EXPECT_TRUE(Near(DrawnOnScreen(water).At(20, 20), {200, 100, 50, 255}));
}

TEST_F(WaterTest, Debug_shows_the_box_in_blue) {
    Vell::Water water;
    water.SetSize(ivec2(5, 5)); // box -5..10
    LookFrom(vec3(0, 8, 30), ahead);
    const auto bluePixels = [&] {
        const Picture screen = DrawnOnScreen(water);
        int count = 0;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x)
                count += screen.At(x, y).b == 255 && screen.At(x, y).r == 0;
        return count;
    };
    EXPECT_EQ(bluePixels(), 0);
    water.SetDebug(true);
    EXPECT_GT(bluePixels(), 20);
}

TEST_F(WaterTest, Loads_its_normal_map_and_frees_it) {
    const std::string path = FreshName("normals", ".png");
    WritePicture(path, Picture(2, 2, {128, 128, 255, 255}));
    const LogWatch log;
    {
        Vell::Water water;
        water.SetNormalMap(path);
        EXPECT_EQ(water.GetNormalMap().GetSize(), ivec2(2, 2));
    }
    EXPECT_THAT(log.NewRows(),
                ElementsAre(LogRow{"Image", "LOADED", path}, LogRow{"Image", "FREE", path}));
}

TEST_F(WaterTest, Reports_a_missing_normal_map_and_draws_all_the_same) {
    const std::string missing = FreshName("missing", ".png");
    const LogWatch log;
    Vell::Water water;
    water.SetNormalMap(missing);
    EXPECT_THAT(log.NewRows(), ElementsAre(LogRow{"Image", "ERROR", missing}));
    LookFrom(eye, ahead);
    DrawnOnScreen(water);
    EXPECT_TRUE(water.GetInFrustum());
}
