#pragma once

#include "engine/env/terrain.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"
#include "tests/support/private_member.h"
#include "tests/support/shapes.h"

#include <functional>
#include <string>

// What the tests of the terrain share.

OPEN_PRIVATE(terrainShader, &Vell::Terrain::shader);
OPEN_PRIVATE(terrainVertexBuffer, &Vell::Terrain::vertexBuffer);
OPEN_PRIVATE(terrainIndexBuffers, &Vell::Terrain::indexBuffers);

namespace Vell {

struct TerrainProbe {
    static Shader& Program(Terrain& terrain) { return terrain.*terrainShader; }
    static GLuint Vertices(const Terrain& terrain) { return terrain.*terrainVertexBuffer; }
    static GLuint Indices(const Terrain& terrain, int i) {
        return (terrain.*terrainIndexBuffers)[static_cast<std::size_t>(i)];
    }
};

} // namespace Vell

class TerrainStage : public GlTest {
protected:
    static constexpr int size = screenSize;
    static constexpr double eye = 100.0;   // height of the view from above
    static constexpr double reach = 200.0; // of that view; its depth runs linearly over it

    // Writes a height map and gives its path. The engine asks for the height in red.
    static std::string HeightMap(int width, int height,
                                 const std::function<int(int x, int y)>& red) {
        std::string path = FreshName("height", ".png");
        WritePicture(path, MakePicture(width, height, [&](int x, int y) {
                         return Rgba{red(x, y), 0, 0, 255};
                     }));
        return path;
    }

    static std::string Flat(int width, int red) {
        return HeightMap(width, width, [red](int, int) { return red; });
    }

    static std::string Ground(Rgba colour) {
        std::string path = FreshName("ground", ".png");
        WritePicture(path, Picture(4, 4, colour));
        return path;
    }

    // Ready to draw; 100 in every channel, so that light shows up to a factor of 2.55.
    static void Prepare(Vell::Terrain& terrain, const std::string& heightMap) {
        terrain.Load(heightMap);
        terrain.SetTexture(Ground({100, 100, 100, 255}), 0);
        terrain.SetScale(Vell::vec3(1.0f, 1.0f, 1.0f));
    }

    // Looks straight down at the square of `units` x `units` around (x, z): +x to the right, -z up,
    // depth (100 - y) / 200.
    static void LookDownAt(double x, double z, double units) {
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(-units / 2, units / 2, -units / 2, units / 2, 0.0, reach);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        gluLookAt(x, eye, z, x, 0.0, z, 0.0, 0.0, -1.0);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    }

    static float DepthAt(int x, int y) {
        float depth = 0.0f;
        glReadPixels(x, y, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
        return depth;
    }

    static bool CoveredAt(Vell::Terrain& terrain, double x, double z) {
        LookDownAt(x, z, 4.0);
        terrain.Draw(Vell::vec3());
        return DepthAt(size / 2, size / 2) < 1.0f;
    }

    static Rgba CentreOfFirstTile(Vell::Terrain& terrain) {
        LookDownAt(32.5, 36.5, 16.0);
        terrain.Draw(Vell::vec3());
        return ReadScreen(size, size).At(size / 2, size / 2);
    }
};
