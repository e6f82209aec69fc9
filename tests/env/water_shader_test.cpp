// What the water's program computes per pixel; its passes and its surface are in water_test.cpp.
#include "tests/env/water_stage.h"

#include "tests/support/bound_program.h"
#include "tests/support/fake_time.h"

#include <array>
#include <cmath>

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using Vell::ivec2;
using Vell::vec2;
using Vell::vec3;
using Vell::WaterProbe;

namespace {

constexpr int targetSize = 512;
const vec3 ahead(0, 0, -1);

// Left half red, right half green.
Picture Halves() {
    return MakePicture(targetSize, targetSize, [](int x, int) {
        return x < targetSize / 2 ? Rgba{255, 0, 0, 255} : Rgba{0, 255, 0, 255};
    });
}

// The colour of a normal map whose normal is (n, 0, 0): 127.5 is no deviation, so 128 leaves a
// rest of 0.002 per channel, which after normalising is 0.004 of the bending.
Rgba Normal(int n) {
    return {n > 0 ? 255 : 0, 128, 128, 255};
}

// A normal map that bends to +x in the first half of each repeat and to -x in the second. The
// change is along x, or, when transposed, along z.
std::string StripedNormals(bool transposed = false) {
    std::string path = FreshName("stripes", ".png");
    WritePicture(path, MakePicture(64, 64, [transposed](int x, int y) {
                     return Normal((transposed ? y : x) < 32 ? 1 : -1);
                 }));
    return path;
}

} // namespace

class WaterShader : public WaterStage {
protected:
    void SetUp() override {
        WaterStage::SetUp();
        LookFrom(vec3(0, 4, 10), ahead);
    }

    void TearDown() override {
        ClearFakeTime();
        WaterStage::TearDown();
    }

    // A surface at z < 0 is never in shadow, see the strip's tests.
    void LookAtLitWater(float x, float z) { LookFrom(vec3(x, 4, z), ahead); }

    // Both images of one colour each.
    static void FillImages(Vell::Water& water, Rgba reflection, Rgba refraction) {
        Fill(WaterProbe::Reflection(water), Picture(targetSize, targetSize, reflection));
        Fill(WaterProbe::Refraction(water), Picture(targetSize, targetSize, refraction));
    }

    // A surface that shows Halves() bent by 1/20 of the screen, which is 6.4 pixels. 3 pixels left
    // of the middle it is green when the noise bends to the right there, else red.
    void PrepareBend(Vell::Water& water, const std::string& normals) {
        water.SetNormalMap(normals);
        water.SetBlend(1.0f);
        water.SetDeform(0.05f);
        water.SetSpeed(vec2(0, 0));
        Fill(WaterProbe::Refraction(water), Halves());
    }

    // Whether the noise bends to +x in the screen's column `x` of the row 12 from below.
    bool BendsRight(Vell::Water& water, float time, int x) {
        const Rgba left = DrawnAt(water, time).At(x - 3, 12);
        const Rgba right = DrawnAt(water, time).At(x + 2, 12);
        EXPECT_EQ(left, right) << "not bent at all";
        return left == Rgba{0, 255, 0, 255};
    }
};

TEST_F(WaterShader, Links_without_a_warning_and_reads_its_four_units) {
    Vell::Water water;
    WaterProbe::Program(water).Enable();
    EXPECT_TRUE(BoundProgramIsClean());
    EXPECT_EQ(BoundUniformInt("noiseMap"), 0);
    EXPECT_EQ(BoundUniformInt("reflectionMap"), 1);
    EXPECT_EQ(BoundUniformInt("refractionMap"), 2);
    EXPECT_EQ(BoundUniformInt("shadowmap"), 6);
    EXPECT_EQ(BoundUniform("taille")[0], 0.005f);
    WaterProbe::Program(water).Disable();
}

TEST_F(WaterShader, Every_parameter_reaches_the_program_at_once) {
    Vell::Water water;
    const auto expectUniforms = [&](float blend, float deform, vec2 speed, vec2 uvrep) {
        EXPECT_EQ(BoundProgram(), 0u); // no setter leaves the program bound
        WaterProbe::Program(water).Enable();
        EXPECT_EQ(BoundUniform("blend")[0], blend);
        EXPECT_EQ(BoundUniform("deform")[0], deform);
        EXPECT_THAT(BoundUniform("speed"), ElementsAre(speed.x, speed.y, 0.0f, 0.0f));
        EXPECT_THAT(BoundUniform("uvrep"), ElementsAre(uvrep.x, uvrep.y, 0.0f, 0.0f));
        WaterProbe::Program(water).Disable();
    };
    expectUniforms(0.5f, 0.035f, vec2(1, 1), vec2(1, 1));
    water.SetBlend(0.25f);
    water.SetDeform(0.02f);
    water.SetSpeed(vec2(0.01f, 2));
    water.SetUVRepeat(vec2(10, 20));
    expectUniforms(0.25f, 0.02f, vec2(0.01f, 2), vec2(10, 20));
    EXPECT_EQ(water.GetBlend(), 0.25f);
    EXPECT_EQ(water.GetDeform(), 0.02f);
    EXPECT_EQ(water.GetSpeed(), vec2(0.01f, 2));
    EXPECT_EQ(water.GetUVRepeat(), vec2(10, 20));
}

TEST_F(WaterShader, Blend_mixes_reflection_and_refraction) {
    Vell::Water water;
    FillImages(water, {200, 0, 40, 255}, {0, 100, 80, 255});
    const std::pair<float, Rgba> cases[] = {
        {0.0f, {200, 0, 40, 255}},
        {0.25f, {150, 25, 50, 255}}, // 200 * 0.75, 100 * 0.25, 40 * 0.75 + 80 * 0.25
        {0.5f, {100, 50, 60, 255}},
        {1.0f, {0, 100, 80, 255}},
        {-0.5f, {255, 0, 20, 255}}, // beyond both: 200 * 1.5, 100 * -0.5, 40 * 1.5 - 80 * 0.5
        {1.5f, {0, 150, 100, 255}}, // 200 * -0.5, 100 * 1.5, 80 * 1.5 - 40 * 0.5
    };
    for (const auto& [blend, expected] : cases) {
        water.SetBlend(blend);
        EXPECT_TRUE(Near(DrawnOnScreen(water).At(20, 20), expected, 1)) << blend;
    }
}

TEST_F(WaterShader, Alpha_is_mixed_and_shaded_like_the_colours) {
    Vell::Water water;
    FillImages(water, {0, 0, 0, 200}, {0, 0, 0, 100});
    Vell::FBO target;
    target.SetSize(ivec2(size, size));
    UseView();
    target.Enable();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    water.Draw();
    target.Disable();
    // x = 0.5 at z = 6: 0.5 * 64 / 4 = 8 pixels right of the middle in row 0, see the strip's test.
    EXPECT_TRUE(Near(ReadTexture(target.GetColor()).At(20, 2), {0, 0, 0, 150}, 1));
    EXPECT_TRUE(Near(ReadTexture(target.GetColor()).At(72, 2), {0, 0, 0, 75}, 1));
}

TEST_F(WaterShader, Looks_up_the_images_by_screen_position_however_large_the_surface) {
    // From above the middle of a surface that reaches far behind the eye, the lower half of the
    // screen is water. The image shows its own coordinates: 255 / 512 per texel.
    Vell::Water water;
    water.SetSize(ivec2(25000, 25000));
    water.SetBlend(1.0f);
    water.SetDeform(0.0f);
    Fill(WaterProbe::Refraction(water), MakePicture(targetSize, targetSize, [](int x, int y) {
             return Rgba{x / 2, y / 2, 200, 255};
         }));
    for (const vec3& forward : {vec3(0, 0, -1), vec3(1, 0, -2), vec3(-3, -1, -4)}) {
        LookFrom(vec3(2, 7, -300), forward); // lit: it sees z < 0 only
        const Picture screen = DrawnOnScreen(water);
        for (int y = 0; y < 60; y += 5)
            for (int x = 0; x < size; x += 7)
                // The middle of pixel x is 4 x + 2 of 512: the mean of two texels, 2 x + 1 - 0.5.
                EXPECT_TRUE(Near(screen.At(x, y), {2 * x + 1, 2 * y + 1, 200, 255}, 1))
                    << x << ", " << y;
    }
}

TEST_F(WaterShader, Deform_bends_the_images_by_a_share_of_the_screen) {
    // The normal is (1, 0, 0) everywhere: every look-up is 1/8 of the screen, 16 pixels, further
    // right, so the border between red and green stands 16 pixels further left.
    Vell::Water water;
    const std::string path = FreshName("normals", ".png");
    WritePicture(path, Picture(4, 4, Normal(1)));
    PrepareBend(water, path);
    LookAtLitWater(0, -100);
    for (const auto& [deform, border] : {std::pair{0.0f, 64}, {0.125f, 48}, {-0.25f, 96}}) {
        SCOPED_TRACE(deform);
        water.SetDeform(deform);
        const Picture screen = DrawnAt(water, 0.0f);
        EXPECT_TRUE(Near(screen.At(border - 2, 12), {255, 0, 0, 255}));
        EXPECT_TRUE(Near(screen.At(border + 1, 12), {0, 255, 0, 255}));
    }
}

TEST_F(WaterShader, Bending_follows_the_normal_in_both_directions) {
    // (204, 153, 128) is (0.3, 0.1, 0.002) off the middle; normalised (0.9487, 0.3162, 0.006). A
    // quarter of that is 121.4 texels to the right and 40.5 up, half of that in the colours of an
    // image that shows its own coordinates: 60.7 and 20.2.
    Vell::Water water;
    const std::string path = FreshName("normals", ".png");
    WritePicture(path, Picture(4, 4, {204, 153, 128, 255}));
    PrepareBend(water, path);
    water.SetDeform(0.25f);
    Fill(WaterProbe::Refraction(water), MakePicture(targetSize, targetSize, [](int x, int y) {
             return Rgba{x / 2, y / 2, 200, 255};
         }));
    LookAtLitWater(0, -100);
    EXPECT_TRUE(Near(DrawnAt(water, 0.0f).At(20, 12), {102, 45, 200, 255}, 1));
}

TEST_F(WaterShader, Bent_look_ups_stay_inside_the_images) {
    Vell::Water water;
    const std::string path = FreshName("normals", ".png");
    WritePicture(path, Picture(4, 4, Normal(1)));
    PrepareBend(water, path);
    water.SetDeform(0.5f); // the right half of the screen looks beyond the right edge
    EXPECT_TRUE(Near(DrawnAt(water, 0.0f).At(size - 2, 12), {0, 255, 0, 255}));
}

TEST_F(WaterShader, Noise_repeats_every_200_units_divided_by_the_uv_repeat) {
    // At x = 50: 50 * 0.005 = 0.25 of a repeat, where the bending goes right; three times as
    // dense 0.75, where it goes left. Likewise along z.
    Vell::Water water;
    PrepareBend(water, StripedNormals());
    LookAtLitWater(50, -100);
    EXPECT_TRUE(BendsRight(water, 0.0f, 64));
    water.SetUVRepeat(vec2(3, 1));
    EXPECT_FALSE(BendsRight(water, 0.0f, 64));
    water.SetUVRepeat(vec2(1, 3));
    EXPECT_TRUE(BendsRight(water, 0.0f, 64));

    // Row 12 is 51.5 pixels below the middle: 4 * 64 / 51.5 = 5 units ahead. z = 50: eye at 55.
    Vell::Water alongZ;
    PrepareBend(alongZ, StripedNormals(true));
    LookFrom(vec3(50, 4, 55), ahead);
    EXPECT_TRUE(BendsRight(alongZ, 0.0f, 64));
    alongZ.SetUVRepeat(vec2(3, 1));
    EXPECT_TRUE(BendsRight(alongZ, 0.0f, 64));
    alongZ.SetUVRepeat(vec2(1, 3));
    EXPECT_FALSE(BendsRight(alongZ, 0.0f, 64));
}

TEST_F(WaterShader, Noise_scrolls_by_speed_in_repeats_per_second) {
    Vell::Water water;
    PrepareBend(water, StripedNormals());
    LookAtLitWater(0, -100);
    const auto at = [&](float repeatsPerSecond, float seconds) {
        water.SetSpeed(vec2(repeatsPerSecond, 0));
        return BendsRight(water, seconds, 64);
    };
    EXPECT_TRUE(at(0.25f, 1.0f));   // 0.25
    EXPECT_FALSE(at(0.75f, 1.0f));  // 0.75
    EXPECT_FALSE(at(0.25f, 3.0f));  // 0.75
    EXPECT_TRUE(at(0.25f, 5.0f));   // 1.25
    EXPECT_FALSE(at(-0.25f, 1.0f)); // -0.25, which is 0.75
}

TEST_F(WaterShader, Noise_drifts_by_a_thousandth_of_the_time_on_top_of_its_speed) {
    // time / 1000 units of texture coordinate, 0.005 repeats each, along both axes: 50,000 s are a
    // quarter. Row 12 is 51.5 pixels below the middle: 4 * 64 / 51.5 = 5 units ahead, at z = -200,
    // a whole repeat away from 0.
    for (const bool alongZ : {false, true}) {
        Vell::Water water;
        PrepareBend(water, StripedNormals(alongZ));
        LookAtLitWater(0, -195);
        EXPECT_TRUE(BendsRight(water, 50000.0f, 64)) << (alongZ ? "z" : "x");
        EXPECT_FALSE(BendsRight(water, 150000.0f, 64)) << (alongZ ? "z" : "x");
    }
}

TEST_F(WaterShader, Time_is_the_seconds_since_construction) {
    SetFakeTime(5000.0);
    Vell::Water water;
    for (float seconds : {0.0f, 0.5f, 118.25f}) {
        SetFakeTime(5000.0 + static_cast<double>(seconds));
        DrawnOnScreen(water);
        WaterProbe::Program(water).Enable();
        EXPECT_EQ(BoundUniform("time")[0], seconds);
        WaterProbe::Program(water).Disable();
    }
}

TEST_F(WaterShader, Fog_goes_by_depth_times_distance) {
    // Row y looks (64 - y - 0.5) / 64 below the horizon: the surface, 4 below, is D = 4 / that
    // ahead. A fragment's depth is 1 - 0.1 / D (far plane aside), so z = D - 0.1.
    Vell::Water water;
    water.SetBlend(0.0f);
    FillImages(water, {255, 0, 0, 255}, {0, 0, 0, 255});
    const std::array<GLfloat, 4> blue{0.0f, 0.0f, 1.0f, 1.0f};
    glFogfv(GL_FOG_COLOR, blue.data());
    for (float density : {0.0f, 0.01f, 0.05f, 0.2f})
        for (int y : {3, 30, 50, 60}) {
            glFogf(GL_FOG_DENSITY, density);
            const double distance = 4.0 * 64.0 / (63.5 - y);
            const double z = distance - 0.1;
            const double clear = std::exp(-static_cast<double>(density) * density * z * z);
            const Rgba expected{static_cast<int>(std::lround(255 * clear)), 0,
                                static_cast<int>(std::lround(255 * (1.0 - clear))), 255};
            EXPECT_TRUE(Near(DrawnOnScreen(water).At(20, y), expected, 1))
                << "density " << density << ", row " << y;
        }
}

TEST_F(WaterShader, Strip_from_0_to_1_is_at_half_brightness_after_the_shadow_pass) {
    // With texture matrix 0 back at the identity the look-up is at (x, 0, z): only 0 <= x <= 1 is
    // inside, and in shadow where the map's depth is at most z. Row 0 is 4 * 64 / 63.5 = 4.03
    // ahead, z = 5.97; x = 0 and 1 are columns 64 and 64 + 15.9. The white map's depth is 1.
    Vell::Water water;
    FillImages(water, {200, 100, 50, 255}, {200, 100, 50, 255});
    const Picture screen = DrawnOnScreen(water);
    for (int x : {0, 40, 62, 81, 120})
        EXPECT_TRUE(Near(screen.At(x, 0), {200, 100, 50, 255}, 1)) << x;
    for (int x : {65, 70, 78})
        EXPECT_TRUE(Near(screen.At(x, 0), {100, 50, 25, 255}, 1)) << x;
}

TEST_F(WaterShader, Strip_ends_where_the_map_is_deeper_than_z) {
    // Row y is at z = 10 - 256 / (63.5 - y): 1 in row 35.06, 0 in row 37.9. With the map at 1 row
    // 30 is dark (z = 2.4) and row 37 (z = 0.34) is not; with nothing bound, depth 0, row 37 is
    // dark and row 40 (z = -0.9) is not. Column 64 is x = 0 to 0.16 there.
    Vell::Water water;
    FillImages(water, {200, 200, 200, 255}, {200, 200, 200, 255});
    Picture screen = DrawnOnScreen(water);
    EXPECT_TRUE(Near(screen.At(64, 30), {100, 100, 100, 255}, 1));
    EXPECT_TRUE(Near(screen.At(64, 37), {200, 200, 200, 255}, 1));
    BindShadowMap(0);
    screen = DrawnOnScreen(water);
    EXPECT_TRUE(Near(screen.At(64, 37), {100, 100, 100, 255}, 1));
    EXPECT_TRUE(Near(screen.At(64, 40), {200, 200, 200, 255}, 1));
}

TEST_F(WaterShader, Strip_can_be_hidden_whatever_the_map_holds) {
    Vell::Water water;
    FillImages(water, {200, 100, 50, 255}, {200, 100, 50, 255});
    Vell::Water::HideShadowStripe();
    for (const bool bound : {true, false}) { // depth 1 everywhere, and 0
        const Picture screen = DrawnOnScreen(water);
        for (const auto& [x, y] : {std::pair{70, 0}, {78, 0}, {64, 30}, {64, 37}})
            EXPECT_TRUE(Near(screen.At(x, y), {200, 100, 50, 255}, 1)) << bound << x << ',' << y;
        BindShadowMap(0);
    }
}

TEST_F(WaterShader, Shadow_is_looked_up_through_texture_matrix_0) {
    // The matrix moves x = -3..-2 to 0..1 and every z to 0.5: dark where the map says 0.4, lit
    // where it says 0.6. Column 64 + 16 * -2.5 / 4.03 * 4 = 24 is x = -2.5 in row 0.
    Vell::Water water;
    FillImages(water, {200, 200, 200, 255}, {200, 200, 200, 255});
    glMatrixMode(GL_TEXTURE);
    glTranslatef(3.0f, 0.0f, 0.5f);
    glScalef(1.0f, 1.0f, 0.0f);
    glMatrixMode(GL_MODELVIEW);
    for (const auto& [depth, brightness] : {std::pair{102, 100}, {153, 200}}) {
        const GLuint map = UploadTexture(Picture(1, 1, {depth, depth, depth, 255}));
        BindShadowMap(map);
        const Picture screen = DrawnOnScreen(water);
        EXPECT_TRUE(Near(screen.At(24, 0), {brightness, brightness, brightness, 255}, 1)) << depth;
        EXPECT_TRUE(Near(screen.At(72, 0), {200, 200, 200, 255}, 1)) << depth;
        glDeleteTextures(1, &map);
    }
}
