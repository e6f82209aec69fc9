// Both shadow programs pixel for pixel: what they compute, done again on the CPU, with each
// parameter at its least, in the middle and at its most.
#include "tests/env/shadow_scene.h"

#include "engine/core/fast2dquad.h"
#include "engine/core/fullscreen.h"
#include "engine/math/vec2.h"
#include "tests/post/filters.h"
#include "tests/support/gl_test.h"

#include <array>
#include <ostream>

using Vell::ShadowMapping;
using Vell::vec2;

namespace {

constexpr int size = 128; // of the screen and of the light buffer: a pixel looks up its own texel

struct SampleCase {
    const char* name;
    int pass = 1;
    double depth = 0.5; // of the surface, 0..1
    double w = 2.0;     // of the look-up
    int aside = 0;      // how many texels further along x and y a pixel looks up
};

void PrintTo(const SampleCase& c, std::ostream* out) {
    *out << c.name;
}

struct CompositeCase {
    const char* name;
    float intensity;
};

void PrintTo(const CompositeCase& c, std::ostream* out) {
    *out << c.name;
}

// Without a pattern.
float LightDepth(int x, int y) {
    const float depths[] = {0.0f, 0.25f, 0.5f, 0.75f};
    return depths[Scattered(x, y, 7) % 4];
}

bool Occluded(int x, int y, double depth) {
    const auto texel = [](int i) { return std::clamp(i, 0, size - 1); };
    return static_cast<double>(LightDepth(texel(x), texel(y))) <= depth - 0.0001;
}

// The share of shadow of one pixel, 0..255: 8 n samples over 4 n, held at 1.
int Share(int x, int y, const SampleCase& c) {
    int occluded = 0;
    x += c.aside;
    y += c.aside;
    for (int i = -c.pass; i < c.pass; ++i) {
        occluded += Occluded(x + i, y, c.depth);
        occluded += Occluded(x, y + i, c.depth);
        occluded += Occluded(x + i, y + i, c.depth);
        occluded += Occluded(x + c.pass - i, y + i, c.depth);
    }
    return static_cast<int>(std::lround(255.0 * std::min(1.0, occluded / (c.pass * 4.0))));
}

Picture Surface() {
    return MakePicture(size, size, [](int x, int y) { return Rgba{9, 9, 9, x + y}; });
}

void FillDepth(Vell::FBO& target) {
    std::vector<float> depths;
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            depths.push_back(LightDepth(x, y));
    glBindTexture(GL_TEXTURE_2D, target.GetDepth());
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, size, size, GL_DEPTH_COMPONENT, GL_FLOAT,
                    depths.data());
}

// Leads every point of the unit square to its texel and to its depth; all components are `w` times
// as large, for the program to divide by the fourth.
void LoadTextureMatrix(const SampleCase& c) {
    const double w = c.w;
    const double aside = w * c.aside / size;
    const std::array<GLdouble, 16> place{w,     0,     0,           0, //
                                         0,     w,     0,           0, //
                                         0,     0,     0,           0, //
                                         aside, aside, w * c.depth, w};
    glActiveTexture(GL_TEXTURE0);
    glMatrixMode(GL_TEXTURE);
    glLoadMatrixd(place.data());
    glMatrixMode(GL_MODELVIEW);
}

} // namespace

class ShadowPicture : public GlTest, public ::testing::WithParamInterface<SampleCase> {};

TEST_P(ShadowPicture, Counts_exactly_the_samples_of_the_cross) {
    const SampleCase& c = GetParam();
    ShadowMapping shadow;
    shadow.SetSize(size);
    shadow.SetBlurPass(c.pass);
    FillDepth(shadow.GetLightBuffer());
    const GLuint surface = UploadTexture(Surface());
    glBindTexture(GL_TEXTURE_2D, surface);
    Vell::PushUnitProjection();
    shadow.BindShadowMap();
    LoadTextureMatrix(c);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    Vell::Fast2DQuad::GetInstance().Draw(vec2(1.0f));
    shadow.UnBindShadowMap();
    Vell::PopProjection();
    glDeleteTextures(1, &surface);

    const Picture expected = MakePicture(size, size, [&](int x, int y) {
        const int share = Share(x, y, c);
        return Rgba{share, share, share, x + y};
    });
    EXPECT_TRUE(Matches(ReadTexture(shadow.GetShadowBuffer().GetColor()), expected));
}

// The light buffer holds 0, 0.25, 0.5 and 0.75; a texel shades what lies at least 0.0001 behind it.
INSTANTIATE_TEST_SUITE_P(
    Shadow, ShadowPicture,
    ::testing::Values(
        SampleCase{.name = "Before_all", .depth = 0.00009},
        SampleCase{.name = "Just_as_deep", .depth = 0.0001, .w = 1.0},
        SampleCase{.name = "Just_not_behind", .depth = 0.50009},
        SampleCase{.name = "Just_behind", .depth = 0.50011},
        SampleCase{.name = "Behind_all", .depth = 0.9},
        SampleCase{.name = "Behind_the_light", .w = -2.0},
        SampleCase{.name = "Beyond_its_view_up", .pass = 8, .depth = 0.2, .aside = 100},
        SampleCase{.name = "Beyond_its_view_down", .pass = 8, .depth = 0.2, .aside = -100},
        SampleCase{.name = "Pass_1", .pass = 1}, SampleCase{.name = "Pass_2", .pass = 2},
        SampleCase{.name = "Pass_4", .pass = 4}, SampleCase{.name = "Pass_8", .pass = 8},
        SampleCase{.name = "Pass_16", .pass = 16, .depth = 0.2}),
    ::testing::PrintToStringParamName());

class ShadowComposite : public GlTest, public ::testing::WithParamInterface<CompositeCase> {};

TEST_P(ShadowComposite, Darkens_every_pixel_by_its_share_times_the_intensity) {
    const double intensity = static_cast<double>(GetParam().intensity);
    ShadowMapping shadow;
    Vell::FBO scene;
    scene.SetSize(Vell::ivec2(size, size));
    // Red alone counts.
    const auto share = [](int x, int y) { return Scattered(x, y, 8); };
    Fill(shadow.GetShadowBuffer(), MakePicture(size, size, [&](int x, int y) {
             return Rgba{share(x, y), 255 - x, y, x + y};
         }));
    const Picture before = MakePicture(size, size, [](int x, int y) {
        return Rgba{2 * x, 255 - y, Scattered(x, y, 9), 255 - x / 2};
    });
    Fill(scene, before);
    shadow.SetIntensity(GetParam().intensity);
    scene.Enable();
    shadow.Draw(&scene);
    scene.Disable();

    // Black with opacity o blended over it: colour * (1 - o), alpha o * o + alpha * (1 - o).
    const Picture expected = MakePicture(size, size, [&](int x, int y) {
        const double o = std::min(1.0, share(x, y) / 255.0 * intensity);
        return Colour(before.At(x, y))
            .Add(Colour(before.At(x, y)), -o)
            .Add(Colour({0, 0, 0, 255}), o * o)
            .Rounded();
    });
    // The opacity is rounded to 8 bits before the blending, which rounds once more.
    EXPECT_TRUE(Matches(ReadTexture(scene.GetColor()), expected, {.max = 1.0, .mean = 0.3}));
}

INSTANTIATE_TEST_SUITE_P(Shadow, ShadowComposite,
                         ::testing::Values(CompositeCase{"Intensity_0", 0.0f},
                                           CompositeCase{"Intensity_middle", 0.5f},
                                           CompositeCase{"Intensity_1", 1.0f},
                                           CompositeCase{"Intensity_2", 2.0f}),
                         ::testing::PrintToStringParamName());
