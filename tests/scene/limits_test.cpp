// How large and how many things may be, and what each call does beyond, as the headers tell it.
#include "engine/core/core.h"
#include "engine/core/fbo.h"
#include "engine/env/shadowmapping.h"
#include "engine/env/water.h"
#include "engine/post/post_blur.h"
#include "engine/post/postprocess.h"
#include "engine/render/image.h"
#include "engine/render/shader.h"
#include "engine/render/xt3dstatic.h"
#include "engine/scene/camera.h"
#include "engine/scene/scenemanager.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/pixels.h"
#include "tests/support/shapes.h"

#include <string>
#include <vector>

using namespace Vell;

namespace {

constexpr Rgba red{255, 0, 0, 255};

GLint LargestTexture() {
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    return largest;
}

ivec2 SizeOf(GLuint texture) {
    ivec2 size;
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &size.x);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &size.y);
    return size;
}

/// Takes the errors that OpenGL has; whether there was one.
bool TakeErrors() {
    bool any = false;
    while (glGetError() != GL_NO_ERROR)
        any = true;
    return any;
}

bool ProjectionIsIdentity() {
    Matrix projection;
    glGetFloatv(GL_PROJECTION_MATRIX, projection.Get());
    const Matrix identity;
    for (int i = 0; i < 16; ++i)
        if (projection[i] != identity[i])
            return false;
    return true;
}

/// Counts how often it runs, and copies.
class CountingEffect : public PostEffect {
public:
    explicit CountingEffect(int& counted) : count(counted) {}
    void Process(FBO* /*in*/, FBO* /*out*/) override { ++count; }

private:
    int& count;
};

class Limits : public GlTest {};

} // namespace

TEST_F(Limits, Target_that_no_texture_can_be_keeps_its_textures_and_leaves_an_error) {
    for (const ivec2& size : {ivec2(LargestTexture() + 1, 4), ivec2(4, LargestTexture() + 1),
                              ivec2(-1, 4), ivec2(4, -1)}) {
        FBO target;
        target.SetSize(ivec2(8, 8));
        target.SetSize(size);
        EXPECT_TRUE(TakeErrors());
        EXPECT_EQ(SizeOf(target.GetColor()), ivec2(8, 8)) << size.x << ' ' << size.y;
        EXPECT_EQ(SizeOf(target.GetDepth()), ivec2(8, 8)) << size.x << ' ' << size.y;
        EXPECT_EQ(target.GetSize(), size) << "what was asked for";
    }
}

TEST_F(Limits, Target_as_large_as_a_texture_may_be_is_made) {
    FBO target;
    target.SetSize(ivec2(LargestTexture(), 1));
    EXPECT_EQ(SizeOf(target.GetColor()), ivec2(LargestTexture(), 1));
}

TEST_F(Limits, Target_without_pixels_takes_no_drawing) {
    FBO target;
    target.SetSize(ivec2(0, 8));
    EXPECT_FALSE(TakeErrors());
    target.Enable();
    DrawRectangle({vec3(0), vec3(1, 0, 0), vec3(0, 1, 0)}, red);
    target.Disable();
    EXPECT_TRUE(TakeErrors());
}

TEST_F(Limits, Targets_may_be_enabled_within_each_other_as_deep_as_the_matrix_stack_is) {
    FBO target;
    for (int i = 0; i < 31; ++i) // of 32 that every driver has
        target.Enable();
    EXPECT_FALSE(TakeErrors());
    for (int i = 0; i < 31; ++i)
        target.Disable();
    EXPECT_FALSE(TakeErrors());
}

TEST_F(Limits, Light_buffer_that_no_texture_can_be_stays_as_it_was) {
    ShadowMapping shadow;
    for (const int side : {LargestTexture() + 1, -1}) {
        shadow.SetSize(side);
        EXPECT_TRUE(TakeErrors());
        EXPECT_EQ(SizeOf(shadow.GetLightBuffer().GetDepth()), ivec2(1024, 1024));
        EXPECT_EQ(shadow.GetSize(), side) << "what was asked for";
    }
}

TEST_F(Limits, Field_of_view_and_ratio_of_0_leave_no_projection) {
    SetFovy(0.0f);
    EXPECT_TRUE(ProjectionIsIdentity());
    SetFovy(70.0f);
    EXPECT_FALSE(ProjectionIsIdentity());
    SetRatio(0.0f);
    EXPECT_TRUE(ProjectionIsIdentity());
}

TEST_F(Limits, Negative_screen_keeps_the_viewport_and_leaves_an_error) {
    SetScreen(ivec2(-4, 4));
    EXPECT_TRUE(TakeErrors());
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[2], screenSize);
    EXPECT_EQ(GetScreen(), ivec2(-4, 4)) << "what was asked for";
}

TEST_F(Limits, Negative_fog_is_stored_and_refused_by_opengl) {
    SceneManager scene;
    scene.SetFogDensity(0.25f);
    scene.SetFogDensity(-0.5f);
    EXPECT_TRUE(TakeErrors());
    float density = 0.0f;
    glGetFloatv(GL_FOG_DENSITY, &density);
    EXPECT_EQ(density, 0.25f);
    EXPECT_EQ(scene.GetFogDensity(), -0.5f);
}

TEST_F(Limits, Negative_number_of_blur_passes_is_none) {
    FBO in;
    FBO out;
    const Picture picture = MakePicture(256, 256, [](int x, int) {
        return Rgba{x < 128 ? 255 : 0, 0, 0, 255};
    });
    Fill(in, picture);
    UseUnitOrtho();
    glDisable(GL_DEPTH_TEST);
    PostBlur blur;
    blur.SetSizeRTT(256);
    blur.SetPass(-3);
    blur.Process(&in, &out);
    glEnable(GL_DEPTH_TEST);
    EXPECT_TRUE(Matches(ReadTexture(out.GetColor()), picture));
    EXPECT_EQ(blur.GetPass(), -3);
}

TEST_F(Limits, Chain_takes_any_number_of_effects) {
    int count = 0;
    CountingEffect effect(count);
    FBO scene;
    PostProcess chain(&scene);
    for (int i = 0; i < 1000; ++i)
        chain.AddPostEffect(&effect);
    chain.Draw();
    EXPECT_EQ(count, 1000);
}

TEST_F(Limits, Scene_takes_any_number_of_nodes) {
    SetFovy(90.0f);
    RectangleMesh mesh({vec3(-0.5f, -0.5f, 0), vec3(1, 0, 0), vec3(0, 1, 0)}, red);
    SceneManager scene;
    for (int i = 0; i < 20000; ++i)
        scene.AddSceneNode(&mesh, vec3(0, 0, -5)); // behind the eye
    scene.AddSceneNode(&mesh, vec3(0, 0, 5));
    scene.Draw();
    EXPECT_TRUE(Near(ReadScreen(screenSize, screenSize).At(64, 64), red));
}

TEST_F(Limits, Water_is_exact_up_to_two_to_the_24_units) {
    Water water;
    water.SetSize(ivec2(16777216, 16777217));
    EXPECT_EQ(water.GetBBox()->GetMin().x, -16777216.0f);
    EXPECT_EQ(water.GetBBox()->GetMin().z, -16777216.0f) << "the next float";
}

TEST_F(Limits, Uniform_name_may_be_an_element_or_a_member_and_of_any_length) {
    Shader shader;
    shader.LoadToChar("void main() { gl_Position = ftransform(); }",
                      "uniform float parts[3];\n"
                      "struct Light { vec2 mix; };\n"
                      "uniform Light lamp;\n"
                      "void main() { gl_FragColor = vec4(parts[2], lamp.mix, 1.0); }\n");
    shader.Send("parts[2]", 1.0f);
    shader.Send("lamp.mix", vec2(0.0f, 1.0f));
    shader.Send(std::string(100000, 'x'), 1.0f);
    shader.Send("gl_Fog.density", 1.0f);
    shader.Send("", 1.0f);
    EXPECT_FALSE(TakeErrors());
    UseUnitOrtho();
    DrawRectangle({vec3(0), vec3(1, 0, 0), vec3(0, 1, 0)});
    shader.Disable();
    EXPECT_TRUE(Near(ReadScreen(screenSize, screenSize).At(64, 64), {255, 0, 255, 255}));
}

TEST_F(Limits, Path_longer_than_the_system_takes_is_a_missing_file) {
    const std::string path = std::string(5000, 'p') + ".png"; // 4096 on Linux
    const std::string meshPath = std::string(5000, 'p') + ".xt3dstatic";
    const LogWatch log;
    Image image;
    XT3DStatic mesh;
    EXPECT_FALSE(image.Load(path));
    mesh.Load(meshPath);
    const std::vector<LogRow> rows = log.NewRows();
    ASSERT_EQ(rows.size(), 2U);
    for (const LogRow& row : rows) {
        EXPECT_EQ(row.status, "ERROR");
        EXPECT_EQ(row.file.find_first_not_of('p'), std::string::npos) << "cut";
        EXPECT_GE(row.file.size(), 1700U);
    }
}

TEST_F(Limits, Path_may_have_blanks_but_a_mesh_file_cannot_name_it) {
    WritePicture("a picture.png", Picture(2, 2, red));
    WriteFile("a mesh.xt3dstatic", "XT3DSTATIC 1 ./ 0\na picture.png NULL NULL 0\n");
    Image image;
    EXPECT_TRUE(image.Load("a picture.png"));
    const LogWatch log;
    XT3DStatic mesh;
    mesh.Load("a mesh.xt3dstatic");
    const std::vector<LogRow> rows = log.NewRows();
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0], (LogRow{"Image", "ERROR", "./a"}));
    EXPECT_EQ(rows[1].file, "./picture.png");
    EXPECT_EQ(rows[2], (LogRow{"XT3DStatic", "LOADED", "a mesh.xt3dstatic"}));
}
