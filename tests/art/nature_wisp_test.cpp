#include "art/wisp/wisp.h"

#include "engine/core/core.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/camera.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/pixels.h"

#include <cmath>
#include <filesystem>
#include <map>

#include <gmock/gmock.h>

namespace {

const std::filesystem::path sourceTree = NIMBREL_SOURCE_DIR;
const std::string wispFolder = NIMBREL_SOURCE_DIR "/Data/Gfx/Wisp/";

std::vector<Art::MeshVertex> Vertices(const Art::WispKind& kind) {
    return Art::WispMesh(kind).subMeshes[0].vertices;
}

float LargestRadius(const Art::WispKind& kind) {
    float radius = 0;
    for (const Art::MeshVertex& v : Vertices(kind))
        radius = std::max(radius, std::abs(v.position.z));
    return radius;
}

} // namespace

TEST(NatureWisp, Bounding_box_holds_the_light_from_every_side) {
    for (const Art::WispKind& kind : Art::WispKinds()) {
        Vell::vec3 low;
        Vell::vec3 high;
        for (const Art::MeshVertex& v : Vertices(kind)) {
            low = {std::min(low.x, v.position.x), std::min(low.y, v.position.y),
                   std::min(low.z, v.position.z)};
            high = {std::max(high.x, v.position.x), std::max(high.y, v.position.y),
                    std::max(high.z, v.position.z)};
        }
        const float radius = LargestRadius(kind);
        // In depth the second largest layer, on the other side of the origin, may end it.
        EXPECT_FLOAT_EQ(low.x, -radius);
        EXPECT_FLOAT_EQ(high.x, radius);
        EXPECT_FLOAT_EQ(low.y, -radius);
        EXPECT_FLOAT_EQ(high.y, radius);
        EXPECT_FLOAT_EQ(std::max(-low.z, high.z), radius);
        EXPECT_GE(std::min(-low.z, high.z), 0.9f * radius);
    }
}

TEST(NatureWisp, Layers_are_black_where_turning_and_breathing_could_show_their_edge) {
    constexpr int cell = 64;
    for (const Art::WispKind& kind : Art::WispKinds()) {
        const Art::Picture light = Art::WispLight(kind, cell);
        for (int y = 0; y < 2 * cell; ++y)
            for (int x = 0; x < 2 * cell; ++x) {
                const float fromX = std::abs(static_cast<float>(x % cell) + 0.5f - cell / 2.0f);
                const float fromY = std::abs(static_cast<float>(y % cell) + 0.5f - cell / 2.0f);
                if (std::hypot(fromX, fromY) < 0.9f * cell / 2)
                    continue;
                const Art::Rgba& p = light.At(x, y);
                ASSERT_EQ(p.r + p.g + p.b, 0) << kind.name << " pixel " << x << ", " << y;
            }
    }
}

TEST(NatureWisp, Core_is_hot_and_the_halo_has_the_wisps_colour) {
    constexpr int cell = 64;
    const Art::Picture red = Art::WispLight(Art::WispKinds()[1], cell);
    ASSERT_EQ(Art::WispKinds()[1].name, "red");
    const Art::Rgba& core = red.At(cell + cell / 2, cell / 2);     // upper right cell
    const Art::Rgba& halo = red.At(cell / 2 + 8, cell + cell / 2); // lower left cell
    EXPECT_GT(std::min({core.r, core.g, core.b}), 0.9f);
    EXPECT_GT(halo.r, 0.1f);
    EXPECT_LT(halo.g, 0.3f * halo.r);
    EXPECT_LT(halo.b, 0.3f * halo.r);
}

TEST(NatureWisp, Stored_meshes_are_the_drawn_ones) {
    for (const Art::WispKind& kind : Art::WispKinds()) {
        Art::MeshFile stored;
        std::string error;
        const std::string path = sourceTree / "Data/Gfx/Wisp" / (kind.name + ".xt3dstatic");
        ASSERT_TRUE(Art::ReadMesh(path, stored, error)) << error;
        const Art::MeshFile drawn = Art::WispMesh(kind);
        ASSERT_EQ(Art::VertexCount(stored), Art::VertexCount(drawn));
        for (std::size_t i = 0; i < drawn.subMeshes[0].vertices.size(); ++i)
            EXPECT_LT(Vell::Length(stored.subMeshes[0].vertices[i].position -
                                   drawn.subMeshes[0].vertices[i].position),
                      1e-3f);
    }
}

/// Draws a stored wisp with its material, from ten units away.
class NatureWispLight : public GlTest {
protected:
    static constexpr float distance = 10;

    void SetUp() override {
        GlTest::SetUp();
        Vell::SetFovy(60.0f);
        // The mesh names its texture relative to the program's working directory.
        std::filesystem::current_path(sourceTree);
    }

    /// The wisp, loaded once a process: the registry hands the first mesh of a path to all later
    /// ones, so it must outlive them and the registry. Blending is on again for every test.
    static Vell::XT3DStatic& Wisp(const std::string& name) {
        static auto& loaded = *new std::map<std::string, Vell::XT3DStatic*>;
        Vell::XT3DStatic*& wisp = loaded[name];
        if (wisp == nullptr) {
            wisp = new Vell::XT3DStatic;
            wisp->Load("Data/Gfx/Wisp/" + name + ".xt3dstatic");
            wisp->SetMaterialShader("Data/Gfx/Wisp/billboard.vert", "Data/Gfx/Wisp/billboard.frag");
        }
        wisp->SetBlend(true);
        return *wisp;
    }

    static Picture Shown(Vell::XT3DStatic& wisp, const Vell::vec3& eye, bool mirrored = false) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glLoadIdentity();
        Vell::Camera camera;
        camera.Set(eye, Vell::vec3(0, 0, 0));
        camera.Draw();
        if (mirrored)
            glScalef(1.0f, -1.0f, 1.0f);
        wisp.Draw();
        return ReadScreen(screenSize, screenSize);
    }

    static double Light(const Picture& picture) {
        double sum = 0;
        for (int y = 0; y < picture.Height(); ++y)
            for (int x = 0; x < picture.Width(); ++x)
                sum += picture.At(x, y).r + picture.At(x, y).g + picture.At(x, y).b;
        return sum;
    }
};

TEST_F(NatureWispLight, Material_compiles_without_a_complaint) {
    const LogWatch log;
    Vell::Shader material;
    material.Load(wispFolder + "billboard.vert", wispFolder + "billboard.frag");
    EXPECT_EQ(log.NewRows(), (std::vector<LogRow>{{"Shader", "LOADED",
                                                   wispFolder + "billboard.vert " + wispFolder +
                                                       "billboard.frag"}}));
}

TEST_F(NatureWispLight, Shaders_compile_without_a_warning) {
    const std::pair<GLenum, const char*> stages[] = {{GL_VERTEX_SHADER, "billboard.vert"},
                                                     {GL_FRAGMENT_SHADER, "billboard.frag"}};
    for (const auto& [stage, file] : stages) {
        const std::string text = ReadFile(wispFolder + file);
        const char* source = text.c_str();
        const auto shader = glCreateShaderObject(stage);
        glShaderSource(shader, 1, &source, nullptr);
        glCompileShader(shader);
        char message[1024] = "";
        glGetShaderInfoLog(shader, sizeof message, nullptr, message);
        EXPECT_STREQ(message, "") << file;
        glDeleteObject(shader);
    }
}

TEST_F(NatureWispLight, Faces_the_eye_from_every_side_and_in_the_mirror) {
    Vell::XT3DStatic& wisp = Wisp("red");
    const double front = Light(Shown(wisp, Vell::vec3(0, 0, distance)));
    ASSERT_GT(front, 10000);
    // Shimmer and breath change the sum from one moment to the next, by less than a quarter.
    const double tolerance = 0.25 * front;
    EXPECT_NEAR(Light(Shown(wisp, Vell::vec3(distance, 0, 0))), front, tolerance);
    EXPECT_NEAR(Light(Shown(wisp, Vell::vec3(-6, 0, -8))), front, tolerance);
    EXPECT_NEAR(Light(Shown(wisp, Vell::vec3(0, 8, 6))), front, tolerance);
    EXPECT_NEAR(Light(Shown(wisp, Vell::vec3(0, 6, 8), true)), front, tolerance);
}

TEST_F(NatureWispLight, Has_a_hot_middle_and_a_dark_rim) {
    Vell::XT3DStatic& wisp = Wisp("blue");
    const Picture picture = Shown(wisp, Vell::vec3(0, 0, distance));
    const Rgba middle = picture.At(screenSize / 2, screenSize / 2);
    EXPECT_GT(middle.r, 200);
    EXPECT_GT(middle.b, 240);
    // The largest layer's half side at this distance, in pixels, with room for the breath.
    const float pixelsPerUnit =
        static_cast<float>(screenSize) / 2 / (std::tan(Art::pi / 6) * distance);
    const float reach = LargestRadius(Art::WispKinds()[2]) * pixelsPerUnit;
    for (int y = 0; y < screenSize; ++y)
        for (int x = 0; x < screenSize; ++x) {
            if (std::hypot(static_cast<float>(x) - 63.5f, static_cast<float>(y) - 63.5f) < reach)
                continue;
            const Rgba p = picture.At(x, y);
            ASSERT_EQ(p.r + p.g + p.b, 0) << x << ", " << y;
        }
}

TEST_F(NatureWispLight, Passes_the_alpha_test_even_where_it_is_dark) {
    Vell::XT3DStatic& wisp = Wisp("blue");
    wisp.SetBlend(false); // so that a dark fragment that passes shows as black on white
    glClearColor(1.0f, 1.0f, 1.0f, 1.0f);
    const Picture picture = Shown(wisp, Vell::vec3(0, 0, distance));
    const float pixelsPerUnit =
        static_cast<float>(screenSize) / 2 / (std::tan(Art::pi / 6) * distance);
    const int out = static_cast<int>(0.92f * LargestRadius(Art::WispKinds()[2]) * pixelsPerUnit);
    const Rgba rim = picture.At(screenSize / 2 + out, screenSize / 2);
    EXPECT_EQ(rim.r + rim.g + rim.b, 0);
}

TEST_F(NatureWispLight, Is_cut_at_the_waterline_of_the_mirrored_pass) {
    Vell::XT3DStatic& wisp = Wisp("red");
    glLoadIdentity();
    Vell::Camera camera;
    camera.Set(Vell::vec3(0, 0, distance), Vell::vec3(0, 0, 0));
    camera.Draw();
    const GLdouble above[] = {0.0, 1.0, 0.0, 0.0};
    glClipPlane(GL_CLIP_PLANE0, above);
    glEnable(GL_CLIP_PLANE0);
    wisp.Draw();
    glDisable(GL_CLIP_PLANE0);
    const Picture picture = ReadScreen(screenSize, screenSize);
    const int middle = screenSize / 2;
    EXPECT_GT(picture.At(middle, middle + 4).r, 100);
    EXPECT_EQ(picture.At(middle, middle - 4).r, 0);
}

TEST_F(NatureWispLight, Fades_before_it_can_fill_the_picture) {
    Vell::XT3DStatic& wisp = Wisp("green");
    const Picture picture = Shown(wisp, Vell::vec3(0, 0, 0.35f));
    EXPECT_EQ(Light(picture), 0);
}
