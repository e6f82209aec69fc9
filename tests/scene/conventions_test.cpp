// Axes, orders and names that docs/conventions.md tells, where no class's own test proves them.
#include "engine/core/core.h"
#include "engine/math/matrix.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/scenemanager.h"
#include "engine/scene/scenenode.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"
#include "tests/support/shapes.h"

#include <string>

using Vell::Matrix;
using Vell::SceneManager;
using Vell::vec3;

namespace {

constexpr Rgba red{255, 0, 0, 255};
constexpr Rgba green{0, 255, 0, 255};
constexpr Rgba white{255, 255, 255, 255};

std::string MeshFile(const std::string& texture, const std::string& records) {
    std::string path = FreshName("convention", ".xt3dstatic");
    WriteFile(path, "XT3DSTATIC 1 ./ 0\n" + texture + " NULL NULL " + records);
    return path;
}

std::string QuartersFile() {
    std::string path = FreshName("quarters", ".png");
    WritePicture(path, MakePicture(64, 64, [](int x, int y) { // (0, 0) is the lower left
                     return Rgba{x < 32 ? 255 : 0, y < 32 ? 255 : 0, 0, 255};
                 }));
    return path;
}

} // namespace

/// With a field of view of 90 degrees a point at (x, y, d) before the eye is seen at
/// (64 + 64 x / d, 64 + 64 y / d).
class Conventions : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        Vell::SetFovy(90.0f);
    }

    /// What an eye at the origin that looks along -z sees of the mesh.
    static Picture SeenAlongMinusZ(const std::string& path, const vec3& place = vec3(0)) {
        SceneManager scene;
        scene.AddCamera(vec3(0), vec3(0, 0, -1));
        scene.AddSceneNode(scene.GetMesh(path), place);
        scene.Draw();
        return ReadScreen(screenSize, screenSize);
    }
};

TEST_F(Conventions, World_is_right_handed_with_y_up) {
    RectangleMesh right({vec3(1, -0.25f, 0), vec3(0.5f, 0, 0), vec3(0, 0.5f, 0)}, red);
    RectangleMesh above({vec3(-0.25f, 1, 0), vec3(0.5f, 0, 0), vec3(0, 0.5f, 0)}, green);
    SceneManager scene;
    scene.AddCamera(vec3(0, 0, 5), vec3(0, 0, 0));
    scene.AddSceneNode(&right, vec3(0));
    scene.AddSceneNode(&above, vec3(0));
    scene.Draw();
    const Picture seen = ReadScreen(screenSize, screenSize);
    EXPECT_TRUE(Near(seen.At(80, 64), red)); // 64 + 64 * 1.25 / 5
    EXPECT_TRUE(Near(seen.At(64, 80), green));
}

TEST_F(Conventions, First_view_looks_along_plus_z_with_plus_x_on_the_left) {
    RectangleMesh mesh({vec3(1, -0.25f, 5), vec3(0.5f, 0, 0), vec3(0, 0.5f, 0)}, red);
    SceneManager scene;
    scene.AddSceneNode(&mesh, vec3(0));
    scene.Draw();
    EXPECT_TRUE(Near(ReadScreen(screenSize, screenSize).At(48, 64), red)); // 64 - 64 * 1.25 / 5
}

TEST_F(Conventions, Mesh_keeps_the_axes_of_its_file) {
    const std::string path = MeshFile("NULL", "3\n1 2 -5  0 0 1  0 0\n"
                                              "1.6 2 -5  0 0 1  0 0\n1 2.6 -5  0 0 1  0 0\n");
    // Its middle is (1.2, 2.2, -5): at 64 + 15 and 64 + 28.
    EXPECT_TRUE(Near(SeenAlongMinusZ(path).At(79, 92), white));
    const Picture moved = SeenAlongMinusZ(path, vec3(0, -4, 0));
    EXPECT_TRUE(Near(moved.At(79, 92), Rgba{0, 0, 0, 255}));
    EXPECT_TRUE(Near(moved.At(79, 64 - 23), white)); // 64 * 1.8 / 5
}

TEST_F(Conventions, Triangles_show_from_both_sides) {
    const std::string path =
        MeshFile("NULL", "6\n-3 -1 -5  0 0 1  0 0\n-1 -1 -5  0 0 1  0 0\n-2 1 -5  0 0 1  0 0\n"
                         "1 -1 -5  0 0 1  0 0\n2 1 -5  0 0 1  0 0\n3 -1 -5  0 0 1  0 0\n");
    const Picture seen = SeenAlongMinusZ(path);
    EXPECT_TRUE(Near(seen.At(64 - 25, 62), white)) << "counter-clockwise"; // 64 * 2 / 5
    EXPECT_TRUE(Near(seen.At(64 + 25, 62), white)) << "clockwise";
    EXPECT_TRUE(Near(seen.At(64, 62), Rgba{0, 0, 0, 255})) << "no third one between them";
}

TEST_F(Conventions, Engine_lights_nothing_by_itself) {
    for (const char* normal : {" 0 0 1", " 0 0 -1", " 0 0 0"}) {
        std::string records = "3\n";
        for (const char* corner : {"-3 -1 -5", "3 -1 -5", "0 2 -5"})
            records.append(corner).append(normal).append(" 0 0\n");
        EXPECT_TRUE(Near(SeenAlongMinusZ(MeshFile("NULL", records)).At(64, 64), white)) << normal;
    }
}

TEST_F(Conventions, Matrix_read_from_opengl_is_transposed) {
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glTranslatef(1, 2, 3);
    Matrix read;
    glGetFloatv(GL_MODELVIEW_MATRIX, read.Get());
    glPopMatrix();
    EXPECT_EQ(read[12], 1.0f);
    EXPECT_EQ(read[13], 2.0f);
    EXPECT_EQ(read[14], 3.0f);
    read.Transpose();
    EXPECT_EQ(read * vec3(0, 0, 0), vec3(1, 2, 3));
}

TEST_F(Conventions, Texture_coordinate_0_0_is_the_lower_left_of_a_png) {
    const std::string path = MeshFile(
        QuartersFile(), "6\n-4 -4 -5  0 0 1  0 0\n4 -4 -5  0 0 1  1 0\n4 4 -5  0 0 1  1 1\n"
                        "-4 -4 -5  0 0 1  0 0\n4 4 -5  0 0 1  1 1\n-4 4 -5  0 0 1  0 1\n");
    const Picture seen = SeenAlongMinusZ(path);
    EXPECT_TRUE(Near(seen.At(38, 38), {255, 255, 0, 255})) << "lower left";
    EXPECT_TRUE(Near(seen.At(90, 38), {0, 255, 0, 255})) << "lower right";
    EXPECT_TRUE(Near(seen.At(38, 90), {255, 0, 0, 255})) << "upper left";
}

TEST_F(Conventions, Colours_reach_the_screen_as_the_picture_has_them) {
    const Rgba colour{100, 150, 200, 255};
    const std::string picture = FreshName("colour", ".png");
    WritePicture(picture, Picture(4, 4, colour));
    const std::string path =
        MeshFile(picture, "3\n-3 -1 -5  0 0 1  0 0\n3 -1 -5  0 0 1  1 0\n0 2 -5  0 0 1  0 1\n");
    EXPECT_TRUE(Near(SeenAlongMinusZ(path).At(64, 64), colour));
}

TEST_F(Conventions, Frame_ends_with_unit_0_no_texturing_and_white) {
    const std::string path = MeshFile(
        QuartersFile(), "3\n-3 -1 -5  0 0 1  0 0\n3 -1 -5  0 0 1  1 0\n0 2 -5  0 0 1  0 1\n");
    SeenAlongMinusZ(path);
    GLint active = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    EXPECT_EQ(active, GL_TEXTURE0);
    for (const GLenum unit : {6U, 2U, 1U, 0U}) {
        glActiveTexture(GL_TEXTURE0 + unit);
        EXPECT_FALSE(glIsEnabled(GL_TEXTURE_2D)) << unit;
    }
    float colour[4] = {};
    glGetFloatv(GL_CURRENT_COLOR, colour);
    for (const float channel : colour)
        EXPECT_EQ(channel, 1.0f);
}

TEST_F(Conventions, Depth_is_0_at_the_near_plane_and_1_at_the_far_one) {
    RectangleMesh close({vec3(-1, -1, 0.1001f), vec3(2, 0, 0), vec3(0, 2, 0)}, red);
    SceneManager scene;
    scene.AddSceneNode(&close, vec3(0));
    scene.Compute();
    EXPECT_NEAR(ReadDepthTexture(scene.GetFBO()->GetDepth())[64 * 128 + 64], 0.001, 0.001);
    SceneManager empty;
    empty.Compute();
    EXPECT_EQ(ReadDepthTexture(empty.GetFBO()->GetDepth())[64 * 128 + 64], 1.0f);
}
