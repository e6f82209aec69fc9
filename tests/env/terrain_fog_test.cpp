// How the terrain goes into the fog: colour and alpha, from none to full fog.
#include "engine/env/terrain.h"

#include "engine/core/fbo.h"
#include "engine/math/vec2.h"
#include "tests/support/gl_test.h"
#include "tests/support/shapes.h"

#include <array>
#include <ostream>

using Vell::ivec2;
using Vell::Terrain;
using Vell::vec3;

namespace {

constexpr int size = 128;
constexpr double eyeY = 1000.0; // above the flat grid, so far that all of it is as far away

// Flat ground gets all of the light: it has the colour of its texture.
constexpr Rgba ground{200, 100, 40, 240};

struct FogCase {
    const char* name;
    float density;
    Rgba fog;
    Rgba expected;
};

void PrintTo(const FogCase& c, std::ostream* out) {
    *out << c.name;
}

} // namespace

class TerrainFog : public GlTest, public ::testing::WithParamInterface<FogCase> {
protected:
    // A height map of 32 texels makes one tile, and so one strip, at 32..33, 32..40.
    static void Prepare(Terrain& terrain) {
        const std::string heightPath = FreshName("height", ".png");
        const std::string groundPath = FreshName("ground", ".png");
        WritePicture(heightPath, Picture(32, 32, {100, 100, 100, 255}));
        WritePicture(groundPath, Picture(4, 4, ground));
        terrain.Load(heightPath);
        terrain.SetTexture(groundPath, 0);
        terrain.SetScale(vec3(1, 1, 1));
    }

    static void SetFog(float density, Rgba colour) {
        const std::array<GLfloat, 4> components{
            static_cast<float>(colour.r) / 255.0f, static_cast<float>(colour.g) / 255.0f,
            static_cast<float>(colour.b) / 255.0f, static_cast<float>(colour.a) / 255.0f};
        glFogfv(GL_FOG_COLOR, components.data());
        glFogf(GL_FOG_DENSITY, density);
    }

    // Straight down on the middle of the strip, which fills the target.
    static Picture Drawn(Terrain& terrain) {
        Vell::FBO target;
        target.SetSize(ivec2(size, size));
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(-0.5, 0.5, -4.0, 4.0, 0.0, 2.0 * eyeY);
        glMatrixMode(GL_MODELVIEW);
        gluLookAt(32.5, eyeY, 36.0, 32.5, 0.0, 36.0, 0.0, 0.0, -1.0);
        target.Enable();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        terrain.Draw(vec3());
        target.Disable();
        return ReadTexture(target.GetColor());
    }
};

TEST_P(TerrainFog, Takes_all_four_components_of_the_fog_s_colour) {
    Terrain terrain(1);
    Prepare(terrain);
    SetFog(GetParam().density, GetParam().fog);
    // A half may round either way.
    EXPECT_TRUE(Matches(Drawn(terrain), Picture(size, size, GetParam().expected), {.max = 1.0}));
}

// At distance 1000 the ground keeps exp(-(1000 density)^2) of itself: half of it at a density of
// sqrt(ln 2) / 1000 = 0.000832555.
INSTANTIATE_TEST_SUITE_P(
    Terrain, TerrainFog,
    ::testing::Values(
        FogCase{"None", 0.0f, {50, 102, 254, 128}, ground},
        FogCase{"Half", 0.000832555f, {50, 102, 254, 128}, {125, 101, 147, 184}},
        FogCase{"Half_and_transparent", 0.000832555f, {50, 102, 254, 0}, {125, 101, 147, 120}},
        FogCase{"Full", 1.0f, {50, 102, 254, 128}, {50, 102, 254, 128}},
        FogCase{"Full_and_transparent", 1.0f, {50, 102, 254, 0}, {50, 102, 254, 0}},
        FogCase{"Full_and_opaque", 1.0f, {50, 102, 254, 255}, {50, 102, 254, 255}}),
    ::testing::PrintToStringParamName());
