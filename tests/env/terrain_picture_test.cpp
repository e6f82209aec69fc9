// The ground pixel for pixel: what its program computes, done again on the CPU, for slopes and fog
// from nothing to the most.
#include "engine/env/terrain.h"

#include "engine/core/fbo.h"
#include "engine/math/vec2.h"
#include "tests/post/filters.h"
#include "tests/support/gl_test.h"
#include "tests/support/shapes.h"

#include <array>
#include <cmath>
#include <ostream>

using Vell::ivec2;
using Vell::Terrain;
using Vell::vec3;

namespace {

constexpr int size = 128;
constexpr int mapSize = 256; // one texel of the height map is one unit of the grid
constexpr int groundSize = 64;

// The strip that is drawn: 1 x 8 units, the first cells of the tile at (32, 32).
constexpr double stripX = 32.0;
constexpr double stripZ = 32.0;
constexpr double stripLength = 8.0;
constexpr double eyeY = 300.0;     // above the highest ground, 245
constexpr double eyeAside = 400.0; // so the strip is about 500 away, further than it is deep

constexpr Rgba fog{51, 102, 255, 128};

struct TerrainCase {
    const char* name;
    int (*height)(int x, int z) = [](int, int) { return 100; }; // x and z from -1 to 9, in texels
    float density = 0.0f;                                       // of the fog
};

void PrintTo(const TerrainCase& c, std::ostream* out) {
    *out << c.name;
}

int Rough(int x, int z) {
    return 100 + Scattered(x, z, 4) % 5;
}

// The first texels again behind the last ones, where the repeating map has -1.
Picture HeightMap(int (*height)(int x, int z)) {
    const auto place = [](int i) { return i > mapSize / 2 ? i - mapSize : i; };
    return MakePicture(mapSize, mapSize, [&](int x, int z) {
        return Rgba{std::clamp(height(place(x), place(z)), 0, 255), 0, 77, 255};
    });
}

Picture Ground() {
    return MakePicture(groundSize, groundSize, [](int x, int y) {
        return Rgba{Scattered(x, y, 5), Scattered(x, y, 6), x * 3, 255 - y};
    });
}

// The colour of one pixel, as the program's formulas have it.
class Model {
public:
    explicit Model(const TerrainCase& which) : c(which), heights(HeightMap(which.height)) {}

    Rgba At(int column, int row) const {
        // The place in the tile: x grows to the right, z downwards.
        const double x = (column + 0.5) / size;
        const double z = stripLength * (1.0 - (row + 0.5) / size);
        Colour lit;
        lit.Add(Colour(NearestRepeated(ground, x / 256.0 * 20.0, z / 256.0 * 20.0)), Light(x, z));
        const double clear = Clear(x, z);
        return Colour().Add(Colour(fog), 1.0 - clear).Add(lit, clear).Rounded();
    }

private:
    double Height(double x, double z) const {
        return NearestRepeated(heights, x / 256.0, z / 256.0).r / 255.0;
    }

    double Light(double x, double z) const {
        const double nx = Height(x - 1.0, z) - Height(x + 1.0, z);
        const double ny = 2.0 / 256.0;
        const double nz = Height(x, z - 1.0) - Height(x, z + 1.0);
        return std::max((ny - nx) / std::hypot(nx, ny, nz), 0.2);
    }

    // Worked out at the vertices, one unit apart, by their distance while they are flat, and linear
    // between them.
    double Clear(double x, double z) const {
        const auto atVertex = [this](double vx, double vz) {
            const double distance = std::hypot(vx - 0.5 - eyeAside, eyeY, vz - stripLength / 2);
            const double d = static_cast<double>(c.density) * distance;
            return std::exp(-d * d);
        };
        const double first = std::floor(z);
        const auto alongX = [&](double vz) {
            return std::lerp(atVertex(0.0, vz), atVertex(1.0, vz), x);
        };
        return std::lerp(alongX(first), alongX(first + 1.0), z - first);
    }

    TerrainCase c;
    Picture heights;
    Picture ground = Ground();
};

} // namespace

class TerrainPicture : public GlTest, public ::testing::WithParamInterface<TerrainCase> {
protected:
    static void Prepare(Terrain& terrain, int (*height)(int x, int z)) {
        const std::string heightPath = FreshName("height", ".png");
        const std::string groundPath = FreshName("ground", ".png");
        WritePicture(heightPath, HeightMap(height));
        WritePicture(groundPath, Ground());
        terrain.Load(heightPath);
        terrain.SetTexture(groundPath, 0);
        terrain.SetScale(vec3(1, 1, 1));
        // A look-up is one texel.
        terrain.GetHeightmap().SetParameter(0, false);
        terrain.GetTexture(0).SetParameter(0, false);
    }

    // Straight down and aside, without perspective, on the strip, which fills the screen: x to the
    // right, z downwards.
    static void LookDownAtTheStrip() {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(-0.5 - eyeAside, 0.5 - eyeAside, -stripLength / 2, stripLength / 2, 0.0,
                2.0 * eyeY);
        glMatrixMode(GL_MODELVIEW);
        const double x = stripX + 0.5 + eyeAside;
        const double z = stripZ + stripLength / 2;
        gluLookAt(x, eyeY, z, x, 0.0, z, 0.0, 0.0, -1.0);
    }

    // What Terrain::Draw() leaves in a target that has an alpha.
    static Picture Drawn(Terrain& terrain) {
        Vell::FBO target;
        target.SetSize(ivec2(size, size));
        LookDownAtTheStrip();
        target.Enable();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        terrain.Draw(vec3());
        target.Disable();
        return ReadTexture(target.GetColor());
    }
};

TEST_P(TerrainPicture, Is_what_the_formulas_give) {
    const TerrainCase& c = GetParam();
    Terrain terrain(1);
    Prepare(terrain, c.height);
    const std::array<GLfloat, 4> fogColour{fog.r / 255.0f, fog.g / 255.0f, fog.b / 255.0f,
                                           fog.a / 255.0f};
    glFogfv(GL_FOG_COLOR, fogColour.data());
    glFogf(GL_FOG_DENSITY, c.density);
    const Model model(c);
    const Picture expected = MakePicture(size, size, [&](int x, int y) { return model.At(x, y); });
    // Floats here, doubles there: a channel near a half may round the other way.
    EXPECT_TRUE(Matches(Drawn(terrain), expected, {.max = 1.0, .mean = 0.02}));
}

// Without a name of their own: flat ground, no fog. Light is 1 on flat ground.
INSTANTIATE_TEST_SUITE_P(
    Terrain, TerrainPicture,
    ::testing::Values(
        TerrainCase{.name = "Flat"}, //
        // 2 / 255 over two texels against 2 / 256: 45 degrees towards the light, 1.41.
        TerrainCase{.name = "Rising_along_x", .height = [](int x, int) { return 100 + x; }},
        TerrainCase{.name = "Steep_along_x", .height = [](int x, int) { return 100 + 20 * x; }},
        TerrainCase{.name = "Falling_along_x", .height = [](int x, int) { return 100 - 20 * x; }},
        TerrainCase{.name = "Rising_along_z", .height = [](int, int z) { return 100 + z; }},
        TerrainCase{.name = "Steep_along_z", .height = [](int, int z) { return 100 - 9 * z; }},
        TerrainCase{.name = "Rough", .height = Rough},
        TerrainCase{.name = "Black_map", .height = [](int, int) { return 0; }},
        TerrainCase{.name = "White_map", .height = [](int, int) { return 255; }},
        TerrainCase{.name = "Fog_light", .height = Rough, .density = 0.001f},
        TerrainCase{.name = "Fog_middle", .height = Rough, .density = 0.001665f}, // half fog at 500
        TerrainCase{.name = "Fog_1", .height = Rough, .density = 1.0f}),
    ::testing::PrintToStringParamName());
