// What a stranger meets first when he fills a scene, as the headers of the calls tell it.
#include "engine/core/GLExtensions.h"
#include "engine/core/core.h"
#include "engine/env/shadowmapping.h"
#include "engine/env/sky.h"
#include "engine/env/terrain.h"
#include "engine/env/water.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/scenemanager.h"
#include "engine/scene/scenenode.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/pixels.h"
#include "tests/support/shapes.h"

#include <algorithm>
#include <string>
#include <vector>

using Vell::SceneManager;
using Vell::vec3;

namespace {

const Rgba grey{100, 100, 100, 255};

std::string PictureFile(Rgba colour) {
    std::string path = FreshName("promised", ".png");
    WritePicture(path, Picture(64, 64, colour));
    return path;
}

std::string TriangleFile() {
    std::string path = FreshName("promised", ".xt3dstatic");
    WriteFile(path, "XT3DSTATIC 1 ./ 0\nNULL NULL NULL 3\n"
                    "0 0 0  0 0 1  0 0\n1 0 0  0 0 1  1 0\n0 1 0  0 0 1  0 1\n");
    return path;
}

// A floor of 200 x 200 around (x, 0, 0).
Rectangle Floor(float x) {
    return {vec3(x - 100, 0, -100), vec3(200, 0, 0), vec3(0, 0, 200)};
}

// How large a part of a picture's pixels has any red.
double ShareOfRed(const Picture& picture) {
    int count = 0;
    for (int y = 0; y < picture.Height(); ++y)
        for (int x = 0; x < picture.Width(); ++x)
            count += picture.At(x, y).r > 0;
    return static_cast<double>(count) / (picture.Width() * picture.Height());
}

Picture ShadowBuffer(SceneManager& scene) {
    return ReadTexture(scene.GetShadowMap()->GetShadowBuffer().GetColor());
}

// The darkened share of a floor that nothing shades: lit at 45 degrees from a distance of `d` and
// seen from above, where 8 x 8 units of it, or d / 5 squared if that is less, fill the picture.
double ShareOfFalseShadow(double d, int side) {
    RectangleMesh floor(Floor(0), grey);
    SceneManager scene;
    const float high = static_cast<float>(d * 0.70710678);
    const float eye = static_cast<float>(std::min(4.0, d / 10.0));
    scene.AddCamera(vec3(0, eye, 0), vec3(0, 0, -0.001f * eye));
    scene.AddSceneNode(&floor, vec3(0, 0, 0));
    scene.AddShadowMapping(vec3(high, high, 0), vec3(0, 0, 0), side, 1.0f);
    scene.Compute();
    return ShareOfRed(ShadowBuffer(scene));
}

} // namespace

class ScenePromises : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        Vell::SetFovy(90.0f);
    }
};

TEST_F(ScenePromises, Scene_that_comes_after_another_loads_the_same_files_afresh) {
    const std::string mesh = TriangleFile();
    const std::string face = PictureFile(grey);
    const std::string normals = PictureFile(grey);
    const std::string ground = PictureFile(grey);
    Picture pictures[2];
    for (Picture& picture : pictures) {
        SceneManager scene;
        scene.AddCamera(vec3(0.2f, 0.2f, 2), vec3(0.2f, 0.2f, 0));
        scene.AddSceneNode(scene.GetMesh(mesh), vec3(0, 0, 0));
        scene.AddSkyBox(face, face, face, face, face, face);
        scene.AddWater()->SetNormalMap(normals);
        Vell::Terrain* terrain = scene.AddTerrain(ground, 1);
        terrain->SetTexture(ground, 0);
        terrain->SetScale(vec3(1, 1, 1));
        scene.Compute();
        scene.Compute();
        picture = ReadTexture(scene.GetFBO()->GetColor());
    }
    EXPECT_TRUE(Near(pictures[0].At(20, 100), grey)) << "the sky";
    EXPECT_TRUE(Near(pictures[0].At(64, 64), {255, 255, 255, 255})) << "the triangle";
    EXPECT_TRUE(Matches(pictures[1], pictures[0]));
}

TEST_F(ScenePromises, Sky_and_water_that_replace_others_load_the_same_files_afresh) {
    SceneManager scene;
    scene.AddCamera(vec3(0, 2, 8), vec3(0, 2, 0));
    const std::string face = PictureFile(grey);
    const std::string normals = PictureFile(grey);
    const LogWatch log;
    for (int i = 0; i < 2; ++i) {
        scene.AddSkyBox(face, face, face, face, face, face);
        scene.AddWater()->SetNormalMap(normals);
        scene.Compute();
        EXPECT_TRUE(Near(ReadTexture(scene.GetFBO()->GetColor()).At(64, 100), grey));
    }
    const auto rows = [](const std::string& status, const std::string& path) {
        return LogRow{"Image", status, path};
    };
    EXPECT_EQ(log.NewRows(), (std::vector<LogRow>{rows("LOADED", face), rows("LOADED", normals),
                                                  rows("FREE", face), rows("LOADED", face),
                                                  rows("FREE", normals), rows("LOADED", normals)}));
}

TEST_F(ScenePromises, Two_scenes_at_once_share_a_mesh) {
    const std::string path = TriangleFile();
    SceneManager first;
    SceneManager second;
    EXPECT_EQ(first.GetMesh(path), second.GetMesh(path));
}

// A square 5 above the floor, lit from 10 above it, throws its shadow on it: unless the floor's
// vertices lie 1000 aside and its node brings it back, for then the shadow is looked for 1000
// aside.
TEST_F(ScenePromises, Floor_that_its_node_moved_gets_no_shadow) {
    for (const float aside : {0.0f, 1000.0f}) {
        RectangleMesh floor(Floor(aside), grey);
        RectangleMesh square({vec3(-1, 5, -1), vec3(2, 0, 0), vec3(0, 0, 2)}, grey);
        SceneManager scene;
        scene.AddCamera(vec3(0, 20, 0), vec3(0, 0, -0.02f));
        scene.AddSceneNode(&floor, vec3(-aside, 0, 0));
        scene.AddSceneNode(&square, vec3(0, 0, 0));
        scene.AddShadowMapping(vec3(4, 10, 0), vec3(4, 0, -0.01f), 1024, 1.0f);
        scene.Compute();
        // The shadow's middle, (-4, 0, 0), is seen at 64 - 64 * 4 / 20 = 51.2.
        EXPECT_EQ(ShadowBuffer(scene).At(51, 64).r, aside == 0.0f ? 255 : 0) << aside;
    }
}

TEST_F(ScenePromises, Sky_in_the_shadow_buffer_is_as_dark_as_the_clear_colour_is_red) {
    glClearColor(0.2f, 1.0f, 1.0f, 1.0f);
    SceneManager scene;
    scene.AddShadowMapping(vec3(4, 10, 0), vec3(4, 0, -0.01f), 64, 1.0f);
    scene.Compute();
    // 255 * (0.2, 1, 1) * (1 - 0.2) = (40.8, 204, 204)
    const Rgba sky = ReadTexture(scene.GetFBO()->GetColor()).At(64, 64);
    EXPECT_TRUE(Near({sky.r, sky.g, sky.b}, {41, 204, 204}, 1));
}

TEST_F(ScenePromises, Terrains_neither_cast_nor_take_shadows) {
    SceneManager scene;
    scene.AddCamera(vec3(32.5f, 300, 36), vec3(32.5f, 0, 35.99f));
    Vell::Terrain* terrain = scene.AddTerrain(PictureFile({100, 0, 0, 255}), 1);
    terrain->SetTexture(PictureFile(grey), 0);
    terrain->SetScale(vec3(1, 1, 1));
    scene.AddShadowMapping(vec3(32.5f, 300, 36), vec3(32.5f, 0, 35.99f), 64, 1.0f);
    scene.Compute();
    for (const float depth : ReadDepthTexture(scene.GetShadowMap()->GetLightBuffer().GetDepth()))
        ASSERT_EQ(depth, 1.0f);
    EXPECT_EQ(ShareOfRed(ShadowBuffer(scene)), 0.0);
}

// The samples of an unblurred shadow lie up to 2 texels and the rounding of half a texel away. A
// texel is 2 tan 60 d / side = 3.46 d / side wide there, the ground falls as much, and depth grows
// by 1 / d^2 per unit: 2.5 * 3.46 / (d side) is below the 0.0001 that are forgiven from d * side =
// 86,600 on.
TEST_F(ScenePromises, Lit_ground_is_darkened_by_a_light_buffer_too_small_for_the_distance) {
    struct Row {
        double distance;
        double shares[4]; // of sides 512, 1024, 2048, 4096, as the header gives them
    };
    const Row rows[] = {{20, {1.0, 0.91, 0.32, 0.0}},
                        {43, {0.85, 0.23, 0.0, 0.0}},
                        {100, {0.02, 0.0, 0.0, 0.0}},
                        {200, {0.0, 0.0, 0.0, 0.0}}};
    for (const auto& [distance, shares] : rows)
        for (int i = 0; i < 4; ++i) {
            const int side = 512 << i;
            const double share = ShareOfFalseShadow(distance, side);
            EXPECT_NEAR(share, shares[i], 0.02) << distance << ' ' << side;
            EXPECT_TRUE(share == 0.0 || distance * side < 86600) << distance << ' ' << side;
        }
}

// Eye to eye with the point (-0.5, 2, 0), 8 away: its mirror image 4 below is seen at
// (64 - 64 * 0.5 / 8, 64 - 64 * 4 / 8) = (60, 32).
TEST_F(ScenePromises, Material_without_a_clip_vertex_is_not_in_the_mirror) {
    const std::string fragment = FreshName("red", ".frag");
    WriteFile(fragment, "void main() { gl_FragColor = vec4(1.0, 0.0, 0.0, 1.0); }");
    for (const std::string clip : {"", "gl_ClipVertex = gl_ModelViewMatrix * gl_Vertex;"}) {
        const std::string path = FreshName("mirrored", ".xt3dstatic");
        WriteFile(path, "XT3DSTATIC 1 ./ 0\nNULL NULL NULL 3\n"
                        "-3 1 0  0 0 1  0 0\n3 1 0  0 0 1  1 0\n0 4 0  0 0 1  0 1\n");
        const std::string vertex = FreshName("plain", ".vert");
        WriteFile(vertex, "void main() { gl_Position = ftransform(); " + clip + " }");
        SceneManager scene;
        scene.AddCamera(vec3(0, 2, 8), vec3(0, 2, 0));
        auto* mesh = static_cast<Vell::XT3DStatic*>(scene.GetMesh(path));
        mesh->SetMaterialShader(vertex, fragment);
        scene.AddSceneNode(mesh, vec3(0, 0, 0));
        Vell::Water* water = scene.AddWater();
        water->SetBlend(0.0f);
        water->SetDeform(0.0f);
        scene.Compute();
        scene.Compute();
        const Picture picture = ReadTexture(scene.GetFBO()->GetColor());
        EXPECT_EQ(picture.At(60, 64).r, 255) << clip;
        EXPECT_EQ(picture.At(60, 32).r, clip.empty() ? 0 : 255) << clip;
    }
}

// Straight down on the water around (0.5, 20): 0 to 1 is 64 * 1 / 4 = 16 pixels wide.
TEST_F(ScenePromises, Stripe_of_shadow_on_the_water_goes_with_one_line) {
    glClearColor(0.0f, 1.0f, 0.0f, 1.0f);
    SceneManager scene;
    scene.AddWater();
    scene.AddCamera(vec3(0.5f, 4, 20), vec3(0.5f, 0, 19.99f));
    scene.Compute();
    scene.Compute();
    const Picture with = ReadTexture(scene.GetFBO()->GetColor());
    EXPECT_TRUE(Near(with.At(64, 64), {0, 128, 0, 128}, 1));
    EXPECT_TRUE(Near(with.At(64 + 20, 64), {0, 255, 0, 255}));
    glMatrixMode(GL_TEXTURE), glScalef(1, 1, 0), glMatrixMode(GL_MODELVIEW);
    scene.Compute();
    const Picture without = ReadTexture(scene.GetFBO()->GetColor());
    EXPECT_TRUE(Near(without.At(64, 64), {0, 255, 0, 255}));
}

TEST_F(ScenePromises, Jpeg_face_of_the_sky_is_mirrored_and_a_png_is_not) {
    std::vector<unsigned char> halves; // red on the left, blue on the right
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            halves.insert(halves.end(), {static_cast<unsigned char>(x < 32 ? 255 : 0), 0,
                                         static_cast<unsigned char>(x < 32 ? 0 : 255)});
    for (const std::string ending : {".png", ".jpg"}) {
        const std::string path = FreshName("halves", ending);
        if (ending == ".png")
            WritePng(path, 64, 64, 3, halves);
        else
            WriteJpeg(path, 64, 64, halves);
        SceneManager scene;
        scene.AddCamera(vec3(0, 0, 0), vec3(0, 0, -1));
        scene.AddSkyBox(path, path, path, path, path, path);
        scene.Compute();
        const Rgba left = ReadTexture(scene.GetFBO()->GetColor()).At(20, 64);
        EXPECT_EQ(left.r > left.b, ending == ".png") << ending;
    }
}
