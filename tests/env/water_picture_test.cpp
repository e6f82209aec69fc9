// The surface pixel for pixel: what its program computes, done again on the CPU, with each
// parameter at 0, in the middle and at 1.
#include "tests/env/water_stage.h"
#include "tests/post/filters.h"
#include "tests/support/fake_time.h"

#include <array>
#include <cmath>
#include <ostream>

using Vell::ivec2;
using Vell::vec2;
using Vell::WaterProbe;

namespace {

constexpr int targetSize = 512;
constexpr int noiseSize = 64;
constexpr int mapSize = 16;

// The square of the surface that fills the screen, in world units.
constexpr double left = 300.0;    // x
constexpr double nearest = 200.0; // z
constexpr double side = 100.0;

constexpr Rgba fog{51, 102, 255, 128};

struct WaterCase {
    const char* name;
    float blend = 0.5f;
    float deform = 0.035f;
    float density = 0.0f; // of the fog; the depth is 0 at the bottom of the screen and 1 at its top
    float seconds = 0.0f;
    vec2 speed = vec2(0, 0);
    vec2 uvrep = vec2(1, 1);
    bool shadow = false;
};

void PrintTo(const WaterCase& c, std::ostream* out) {
    *out << c.name;
}

// Both images show their own coordinates, so that every bent look-up tells where it went.
Picture Reflection() {
    return MakePicture(targetSize, targetSize, [](int x, int y) {
        return Rgba{x / 2, y / 2, 40, 255 - x / 4};
    });
}

Picture Refraction() {
    return MakePicture(targetSize, targetSize, [](int x, int y) {
        return Rgba{20, 255 - x / 2, y / 2, 100 + y / 8};
    });
}

// Normals in every direction of the upper half.
Picture Noise() {
    return MakePicture(noiseSize, noiseSize, [](int x, int y) {
        return Rgba{Scattered(x, y, 1), Scattered(x, y, 2), 200, 255};
    });
}

// Depth 0.2 or 0.8 in blue, which is the component that counts; the others say the opposite.
Picture ShadowMap() {
    return MakePicture(mapSize, mapSize, [](int x, int y) {
        const int depth = Scattered(x, y, 3) < 128 ? 51 : 204;
        return Rgba{255 - depth, 255 - depth, depth, 255 - depth};
    });
}

// Where pixel (column, row) is in the shadow map. The map covers the middle of the screen only.
double InMap(int pixel) {
    return 1.5 * (pixel + 0.5) / 128.0 - 0.25;
}

// The colour of one pixel, as the program's formulas have it.
class Model {
public:
    explicit Model(const WaterCase& which) : c(which) {}

    Rgba At(int column, int row) const {
        const double u = (column + 0.5) / 128.0;
        const double v = (row + 0.5) / 128.0;
        double bendX = 0.0;
        double bendY = 0.0;
        Bend(left + u * side, nearest + v * side, bendX, bendY);
        Colour mixed;
        mixed.Add(Sampled(reflection, u + bendX, v + bendY), 1.0 - static_cast<double>(c.blend));
        mixed.Add(Sampled(refraction, u + bendX, v + bendY), static_cast<double>(c.blend));

        const double clear =
            std::exp(-static_cast<double>(c.density) * static_cast<double>(c.density) * v * v);
        const double light = c.shadow && InShadow(column, row) ? 0.5 : 1.0;
        return Colour().Add(Colour(fog), (1.0 - clear) * light).Add(mixed, clear * light).Rounded();
    }

private:
    void Bend(double x, double z, double& bendX, double& bendY) const {
        const double drift = static_cast<double>(c.seconds) / 1000.0;
        const double s = (x * static_cast<double>(c.uvrep.x) + drift) * 0.005 +
                         static_cast<double>(c.seconds * c.speed.x);
        const double t = (z * static_cast<double>(c.uvrep.y) + drift) * 0.005 +
                         static_cast<double>(c.seconds * c.speed.y);
        const Rgba texel = NearestRepeated(noise, s, t);
        const double n[] = {texel.r / 255.0 - 0.5, texel.g / 255.0 - 0.5, texel.b / 255.0 - 0.5};
        const double length = std::hypot(n[0], n[1], n[2]);
        bendX = n[0] / length * static_cast<double>(c.deform);
        bendY = n[1] / length * static_cast<double>(c.deform);
    }

    bool InShadow(int column, int row) const {
        const double x = InMap(column);
        const double y = InMap(row);
        if (x < 0.0 || x > 1.0 || y < 0.0 || y > 1.0)
            return false;
        return NearestRepeated(map, x, y).b / 255.0 <= 0.5 - 0.00001;
    }

    WaterCase c;
    Picture reflection = Reflection();
    Picture refraction = Refraction();
    Picture noise = Noise();
    Picture map = ShadowMap();
};

} // namespace

class WaterPictureTest : public WaterStage {
protected:
    void SetUp() override {
        WaterStage::SetUp();
        const std::array<GLfloat, 4> fogColour{fog.r / 255.0f, fog.g / 255.0f, fog.b / 255.0f,
                                               fog.a / 255.0f};
        glFogfv(GL_FOG_COLOR, fogColour.data());
        SetFakeTime(5000.0);
    }

    void TearDown() override {
        ClearFakeTime();
        WaterStage::TearDown();
    }

    // From above, x to the right and z up, without perspective; depth runs from 0 to 1 along z.
    static void LookFromAbove() {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(0.0, side, 0.0, side, 0.0, side);
        glMatrixMode(GL_MODELVIEW);
        const std::array<GLdouble, 16> view{1,     0,        0,       0, //
                                            0,     0,        1,       0, //
                                            0,     1,        -1,      0, //
                                            -left, -nearest, nearest, 1};
        glLoadMatrixd(view.data());
        Vell::Frustum::GetInstance().MakePlane();
    }

    // Texture matrix 0 that takes the square to InMap(), at the given depth. Twice as large in all
    // components, for the program to divide by the fourth.
    static void PlaceShadowMap(double depth) {
        constexpr double scale = 2.0 * 1.5 / side;
        const std::array<GLdouble, 16> place{scale,
                                             0,
                                             0,
                                             0, //
                                             0,
                                             0,
                                             0,
                                             0, //
                                             0,
                                             scale,
                                             0,
                                             0, //
                                             -scale * left - 0.5,
                                             -scale * nearest - 0.5,
                                             2.0 * depth,
                                             2.0};
        LoadTextureMatrix(place);
    }

    static void LoadTextureMatrix(const std::array<GLdouble, 16>& matrix) {
        glMatrixMode(GL_TEXTURE);
        glLoadMatrixd(matrix.data());
        glMatrixMode(GL_MODELVIEW);
    }

    // What Water::Draw() leaves in a target that has an alpha.
    static Picture Drawn(Vell::Water& water) {
        Vell::FBO target;
        target.SetSize(ivec2(size, size));
        LookFromAbove();
        target.Enable();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        water.Draw();
        target.Disable();
        EXPECT_TRUE(water.GetInFrustum());
        return ReadTexture(target.GetColor());
    }

    // Whether the shadow falls where the look-up is at (x, y, z) everywhere, in a map of one depth.
    // The program finds all of it w times as large, and w itself to divide by.
    bool InShadowAt(double x, double y, double z, int depth, double w = 1.0) {
        Vell::Water water;
        Fill(WaterProbe::Reflection(water), Picture(targetSize, targetSize, {200, 200, 200, 255}));
        water.SetBlend(0.0f);
        const GLuint map = UploadTexture(Picture(1, 1, {depth, depth, depth, 255}));
        BindShadowMap(map);
        LoadTextureMatrix({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, w * x, w * y, w * z, w});
        const int grey = Drawn(water).At(64, 64).r;
        glDeleteTextures(1, &map);
        EXPECT_TRUE(grey == 100 || grey == 200) << grey;
        return grey == 100;
    }
};

class WaterPicture : public WaterPictureTest, public ::testing::WithParamInterface<WaterCase> {
protected:
    static void Prepare(Vell::Water& water, const WaterCase& c) {
        const std::string path = FreshName("noise", ".png");
        WritePicture(path, Noise());
        water.SetNormalMap(path);
        water.GetNormalMap().SetParameter(0, false); // a look-up is one texel
        Fill(WaterProbe::Reflection(water), Reflection());
        Fill(WaterProbe::Refraction(water), Refraction());
        water.SetBlend(c.blend);
        water.SetDeform(c.deform);
        water.SetSpeed(c.speed);
        water.SetUVRepeat(c.uvrep);
    }
};

TEST_P(WaterPicture, Is_what_the_formulas_give) {
    const WaterCase& c = GetParam();
    Vell::Water water;
    Prepare(water, c);
    glFogf(GL_FOG_DENSITY, c.density);
    const GLuint map = UploadTexture(ShadowMap());
    if (c.shadow)
        BindShadowMap(map);
    PlaceShadowMap(0.5);
    SetFakeTime(5000.0 + static_cast<double>(c.seconds));
    const Picture actual = Drawn(water);
    glDeleteTextures(1, &map);
    const Model model(c);
    const Picture expected = MakePicture(size, size, [&](int x, int y) { return model.At(x, y); });
    // The images' linear filter has weights of 8 bits, and many a channel is a half: it may round
    // the other way.
    EXPECT_TRUE(Matches(actual, expected, {.max = 1.0, .mean = 0.4}));
}

// The unset ones are at blend 0.5, deform 0.035, no fog, 0 s, speed (0, 0), UV repeat (1, 1).
INSTANTIATE_TEST_SUITE_P(
    Water, WaterPicture,
    ::testing::Values(
        WaterCase{.name = "Blend_0", .blend = 0.0f},        //
        WaterCase{.name = "Blend_middle", .blend = 0.5f},   //
        WaterCase{.name = "Blend_1", .blend = 1.0f},        //
        WaterCase{.name = "Deform_0", .deform = 0.0f},      //
        WaterCase{.name = "Deform_middle", .deform = 0.1f}, //
        WaterCase{.name = "Deform_1", .deform = 1.0f},      //
        WaterCase{.name = "Fog_light", .density = 0.8f},    //
        WaterCase{.name = "Fog_1", .density = 1.0f},        //
        WaterCase{.name = "Fog_dense", .density = 8.0f},    //
        WaterCase{.name = "Scrolled_by_speed", .seconds = 2.5f, .speed = vec2(0.25f, -0.5f)},
        WaterCase{.name = "Drifted_by_a_quarter", .seconds = 50000.0f}, //
        WaterCase{.name = "UV_repeat_0", .uvrep = vec2(0, 0)},          //
        WaterCase{.name = "UV_repeat_3_and_2", .uvrep = vec2(3, 2)},    //
        WaterCase{.name = "Shadow", .shadow = true},                    //
        WaterCase{.name = "Shadow_in_fog", .density = 0.8f, .shadow = true}),
    ::testing::PrintToStringParamName());

TEST_F(WaterPictureTest, Shadow_needs_a_hundred_thousandth_of_depth) {
    // The map's depth is 51 / 255 = 0.2; the surface must lie 0.00001 behind it to be shaded,
    // whatever its depth was divided by.
    for (double w : {0.25, 1.0, 4.0}) {
        EXPECT_FALSE(InShadowAt(0.5, 0.5, 0.2, 51, w)) << w;
        EXPECT_FALSE(InShadowAt(0.5, 0.5, 0.200008, 51, w)) << w;
        EXPECT_TRUE(InShadowAt(0.5, 0.5, 0.200012, 51, w)) << w;
    }
    EXPECT_TRUE(InShadowAt(0.5, 0.5, 0.00001, 0)); // just as deep, less that
}

TEST_F(WaterPictureTest, Shadow_falls_behind_the_light_as_in_front_of_it) {
    // What lies behind the light has a negative w; after the division it counts like the rest.
    EXPECT_TRUE(InShadowAt(0.5, 0.5, 0.9, 51, -1.0));
    EXPECT_FALSE(InShadowAt(0.5, 0.5, 0.1, 51, -1.0));
}

TEST_F(WaterPictureTest, Shadow_map_reaches_from_0_to_1_both_included) {
    for (double inside : {0.0, 0.5, 1.0}) {
        EXPECT_TRUE(InShadowAt(inside, 0.5, 0.9, 51)) << inside;
        EXPECT_TRUE(InShadowAt(0.5, inside, 0.9, 51)) << inside;
    }
    for (double outside : {-0.0001, 1.0001}) {
        EXPECT_FALSE(InShadowAt(outside, 0.5, 0.9, 51)) << outside;
        EXPECT_FALSE(InShadowAt(0.5, outside, 0.9, 51)) << outside;
    }
}
