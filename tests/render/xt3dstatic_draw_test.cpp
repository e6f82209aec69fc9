#include "engine/render/xt3dstatic.h"

#include "engine/core/textureunits.h"
#include "tests/render/xt3dstatic_probe.h"
#include "tests/support/fake_time.h"
#include "tests/support/gl_state.h"

using namespace Vell;

namespace {

constexpr float untouchedDepth = 1.0f;
constexpr float middleDepth = 0.5f; // z = 0 between the near plane 1 and the far plane -1

const char* const vertexSource = "void main() { gl_Position = ftransform(); "
                                 "gl_TexCoord[0] = gl_MultiTexCoord0; "
                                 "gl_TexCoord[1] = gl_MultiTexCoord1; "
                                 "gl_FrontColor = vec4(gl_Normal * 0.5 + 0.5, 1.0); }";

std::string FragmentSource(const std::string& declarations, const std::string& colour) {
    return declarations + " void main() { gl_FragColor = " + colour + "; }";
}

const std::string redSource = FragmentSource("", "vec4(1.0, 0.0, 0.0, 1.0)");

/// Gives the mesh a material from new files; returns what SetMaterialShader() returns.
Shader* SetMaterial(XT3DStatic& mesh, const std::string& fragment) {
    const std::string prefix = NewPrefix();
    WriteFile(prefix + "material.vert", vertexSource);
    WriteFile(prefix + "material.frag", fragment);
    return mesh.SetMaterialShader(prefix + "material.vert", prefix + "material.frag");
}

/// One or more sub-meshes, each "textures, rectangle", without light map.
std::unique_ptr<XT3DStatic> LoadParts(const std::string& prefix,
                                      const std::vector<std::string>& parts) {
    std::string text = Header(prefix, static_cast<int>(parts.size()), false);
    for (const std::string& part : parts)
        text += part;
    auto mesh = std::make_unique<XT3DStatic>();
    mesh->Load(WriteMesh(prefix, text));
    return mesh;
}

/// A rectangle over the whole screen in one texture colour.
std::unique_ptr<XT3DStatic> LoadPlain(Rgba colour) {
    const std::string prefix = NewPrefix();
    const std::string file = PlainTexture(prefix, "plain.png", colour);
    return LoadParts(prefix, {file + " NULL NULL " + Rectangle(0, 0, 1, 1)});
}

std::unique_ptr<XT3DStatic> LoadUntextured() {
    return LoadParts(NewPrefix(), {"NULL NULL NULL " + Rectangle(0, 0, 1, 1)});
}

/// A left and a right half that look up the light map's red and green half.
std::unique_ptr<XT3DStatic> LoadLightmapped() {
    const std::string prefix = NewPrefix();
    WriteLightmap(prefix, red, green);
    auto mesh = std::make_unique<XT3DStatic>();
    mesh->Load(WriteMesh(prefix, Header(prefix, 2, true) + "NULL NULL NULL " +
                                     Rectangle(0, 0, 0.5f, 1, 0, "0.25 0.5") + "NULL NULL NULL " +
                                     Rectangle(0.5f, 0, 1, 1, 0, "0.75 0.5")));
    return mesh;
}

const std::string lightmapSource =
    FragmentSource("uniform sampler2D lightmap;", "texture2D(lightmap, gl_TexCoord[1].st)");

class XT3DStaticDrawTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        UseUnitOrtho();
    }

    static Rgba ColourAt(int x, int y) { return ReadScreen(screenSize, screenSize).At(x, y); }
    static Rgba Middle() { return ColourAt(64, 64); }

    static float Depth() {
        float depth = 0.0f;
        glReadPixels(64, 64, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
        return depth;
    }

    static void ClearTo(Rgba colour) {
        glClearColor(static_cast<float>(colour.r) / 255.0f, static_cast<float>(colour.g) / 255.0f,
                     static_cast<float>(colour.b) / 255.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    }
};

} // namespace

TEST_F(XT3DStaticDrawTest, Draws_each_sub_mesh_in_its_own_texture) {
    const std::string prefix = NewPrefix();
    const std::string redFile = PlainTexture(prefix, "red.png", red);
    const std::string blueFile = PlainTexture(prefix, "blue.png", blue);
    const auto mesh = LoadParts(prefix, {redFile + " NULL NULL " + Rectangle(0, 0, 0.5f, 0.5f),
                                         blueFile + " NULL NULL " + Rectangle(0.5f, 0, 1, 0.5f),
                                         "NULL NULL NULL " + Rectangle(0, 0.5f, 0.5f, 1)});
    mesh->Draw();
    const Picture expected = MakePicture(screenSize, screenSize, [](int x, int y) {
        if (y < 64)
            return x < 64 ? red : blue;
        return x < 64 ? white : black;
    });
    EXPECT_TRUE(Matches(ReadScreen(screenSize, screenSize), expected));
}

TEST_F(XT3DStaticDrawTest, Draws_untextured_where_a_texture_is_missing) {
    const auto mesh = LoadParts(NewPrefix(), {"missing.png NULL NULL " + Rectangle(0, 0, 1, 1)});
    mesh->Draw();
    EXPECT_EQ(Middle(), white);
}

TEST_F(XT3DStaticDrawTest, Has_its_three_textures_on_units_0_to_2) {
    const std::string prefix = NewPrefix();
    std::string files;
    files += PlainTexture(prefix, "a.png", {51, 255, 255, 255}) + " ";
    files += PlainTexture(prefix, "b.png", {255, 102, 255, 255}) + " ";
    files += PlainTexture(prefix, "c.png", {255, 255, 153, 255}) + " ";
    const auto mesh = LoadParts(prefix, {files + Rectangle(0, 0, 1, 1)});
    mesh->Draw();
    // The fixed pipeline multiplies the units.
    EXPECT_TRUE(Near(Middle(), {51, 102, 153, 255}, 1)) << "8-bit rounding";
}

TEST_F(XT3DStaticDrawTest, Is_cut_where_alpha_is_one_half_or_less_in_either_pass) {
    for (const int alpha : {0, 126, 129, 255}) { // 0.494 and 0.506 around the cut
        SCOPED_TRACE(alpha);
        const auto mesh = LoadPlain({255, 0, 0, alpha});
        const bool drawn = alpha > 127;
        ClearTo(blue);
        mesh->Draw();
        EXPECT_EQ(Middle(), drawn ? red : blue);
        EXPECT_NEAR(Depth(), drawn ? middleDepth : untouchedDepth, 1e-3f) << "16-bit depth";
        ClearTo(blue);
        mesh->DrawShadow();
        EXPECT_EQ(Middle(), drawn ? red : blue);
        EXPECT_NEAR(Depth(), drawn ? middleDepth : untouchedDepth, 1e-3f) << "16-bit depth";
    }
}

TEST_F(XT3DStaticDrawTest, Draws_nothing_in_either_pass_while_it_is_hidden) {
    const auto mesh = LoadPlain(red);
    mesh->SetDebug(true);
    mesh->SetShow(false);
    mesh->Draw();
    mesh->DrawShadow();
    EXPECT_EQ(Middle(), black);
    EXPECT_FLOAT_EQ(Depth(), untouchedDepth);
    mesh->SetShow(true);
    mesh->Draw();
    EXPECT_EQ(Middle(), red);
}

TEST_F(XT3DStaticDrawTest, Adds_its_light_and_leaves_the_depth_alone_when_it_blends) {
    const auto mesh = LoadPlain({50, 60, 70, 255});
    mesh->SetBlend(true);
    EXPECT_TRUE(mesh->GetBlend());
    ClearTo({100, 0, 0, 255});
    mesh->Draw();
    EXPECT_TRUE(Near(Middle(), {150, 60, 70, 255}, 1)) << "8-bit rounding";
    EXPECT_FLOAT_EQ(Depth(), untouchedDepth);
    mesh->SetBlend(false);
    mesh->Draw();
    EXPECT_TRUE(Near(Middle(), {50, 60, 70, 255}, 1)) << "8-bit rounding";
    EXPECT_NEAR(Depth(), middleDepth, 1e-3f) << "writable again; 16-bit depth";
}

TEST_F(XT3DStaticDrawTest, Draws_whole_triangles_of_a_vertex_count_that_is_no_multiple_of_three) {
    const auto mesh = LoadParts(NewPrefix(), {"NULL NULL NULL 5 " + Vertex(0, 0, 0, 0, 0) +
                                              Vertex(1, 0, 0, 0, 0) + Vertex(1, 1, 0, 0, 0) +
                                              Vertex(0, 0, 0, 0, 0) + Vertex(1, 1, 0, 0, 0)});
    mesh->Draw();
    EXPECT_EQ(ColourAt(96, 32), white) << "inside the one triangle";
    EXPECT_EQ(ColourAt(32, 96), black) << "the second lacks a vertex";
}

TEST_F(XT3DStaticDrawTest, Gives_its_material_the_units_of_its_textures) {
    const std::string prefix = NewPrefix();
    std::string files;
    files += PlainTexture(prefix, "a.png", {200, 9, 9, 255}) + " ";
    files += PlainTexture(prefix, "b.png", {9, 150, 9, 255}) + " ";
    files += PlainTexture(prefix, "c.png", {9, 9, 100, 255}) + " ";
    const auto mesh = LoadParts(prefix, {files + Rectangle(0, 0, 1, 1)});
    SetMaterial(*mesh, FragmentSource("uniform sampler2D texture0, texture1, texture2;",
                                      "vec4(texture2D(texture0, gl_TexCoord[0].st).r, "
                                      "texture2D(texture1, gl_TexCoord[0].st).g, "
                                      "texture2D(texture2, gl_TexCoord[0].st).b, 1.0)"));
    mesh->Draw();
    EXPECT_EQ(Middle(), (Rgba{200, 150, 100, 255}));
}

TEST_F(XT3DStaticDrawTest, Gives_its_material_a_fourth_unit_that_others_may_fill) {
    const GLuint texture = UploadTexture(Picture(1, 1, green));
    glActiveTexture(GL_TEXTURE3);
    glBindTexture(GL_TEXTURE_2D, texture);
    glActiveTexture(GL_TEXTURE0);
    const auto mesh = LoadUntextured();
    SetMaterial(*mesh, FragmentSource("uniform sampler2D texture3;",
                                      "texture2D(texture3, gl_TexCoord[0].st)"));
    mesh->Draw();
    EXPECT_EQ(Middle(), green);
    glDeleteTextures(1, &texture);
}

TEST_F(XT3DStaticDrawTest, Gives_its_material_texture_coordinates_and_normals) {
    const auto mesh = LoadUntextured();
    SetMaterial(*mesh, FragmentSource("", "vec4(gl_TexCoord[0].st, gl_Color.b, 1.0)"));
    mesh->Draw();
    // Pixel centres: (32.5 / 128, 96.5 / 128) = (65, 192) / 255; the normal's z of 1 becomes 255.
    EXPECT_TRUE(Near(ColourAt(32, 96), {65, 192, 255, 255}, 1)) << "8-bit rounding";
}

TEST_F(XT3DStaticDrawTest, Looks_up_the_light_map_on_unit_6_with_coordinates_of_its_own) {
    const auto mesh = LoadLightmapped();
    SetMaterial(*mesh, lightmapSource);
    mesh->Draw();
    EXPECT_TRUE(Near(ColourAt(32, 64), red, jpegRounding));
    EXPECT_TRUE(Near(ColourAt(96, 64), green, jpegRounding));
}

TEST_F(XT3DStaticDrawTest, Tells_its_material_the_seconds_since_it_was_made) {
    SetFakeTime(1000.0);
    const auto mesh = LoadUntextured();
    SetMaterial(*mesh, FragmentSource("uniform float time;", "vec4(time * 0.1, 0.0, 0.0, 1.0)"));
    SetFakeTime(1002.0);
    mesh->Draw();
    ClearFakeTime();
    EXPECT_EQ(Middle(), (Rgba{51, 0, 0, 255})); // 2 s * 0.1 * 255
}

TEST_F(XT3DStaticDrawTest, Keeps_its_first_material) {
    const auto mesh = LoadUntextured();
    EXPECT_EQ(mesh->GetMaterialShader(), nullptr);
    Shader* first = SetMaterial(*mesh, redSource);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(mesh->GetMaterialShader(), first);
    const LogWatch log;
    Shader* second = SetMaterial(*mesh, FragmentSource("", "vec4(0.0, 1.0, 0.0, 1.0)"));
    EXPECT_EQ(second, first);
    EXPECT_EQ(log.NewRows(), Rows()) << "the other files are not even read";
    mesh->Draw();
    EXPECT_EQ(Middle(), red);
}

TEST_F(XT3DStaticDrawTest, Destroys_its_material_with_itself) {
    auto mesh = LoadUntextured();
    const LogWatch log;
    SetMaterial(*mesh, redSource);
    mesh.reset();
    const Rows rows = log.NewRows();
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0].status, "LOADED");
    EXPECT_EQ(rows[1], (LogRow{"Shader", "FREE", rows[0].file}));
    EXPECT_EQ(rows[2].section, "XT3DStatic");
}

TEST_F(XT3DStaticDrawTest, Draws_on_with_the_fixed_pipeline_when_its_material_is_missing) {
    const auto mesh = LoadPlain(red);
    EXPECT_NE(mesh->SetMaterialShader("missing.vert", "missing.frag"), nullptr);
    mesh->Draw();
    EXPECT_EQ(Middle(), red);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(XT3DStaticDrawTest, Shares_the_first_mesh_s_material_but_not_its_blending) {
    const std::string prefix = NewPrefix();
    const std::string name =
        WriteMesh(prefix, Header(prefix, 1, false) + "NULL NULL NULL " + Rectangle(0, 0, 1, 1));
    XT3DStatic first;
    first.Load(name);
    SetMaterial(first, redSource);
    first.SetBlend(true);
    XT3DStatic second;
    second.Load(name);
    ClearTo(blue);
    second.Draw();
    EXPECT_EQ(Middle(), red);
    ClearTo(blue);
    first.Draw();
    EXPECT_EQ(Middle(), (Rgba{255, 0, 255, 255}));
}

TEST_F(XT3DStaticDrawTest, Outlines_its_box_in_blue_when_it_is_debugged) {
    const auto mesh = LoadUntextured(); // from the origin to (1, 1): its box draws true to size
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-0.5, 1.5, -0.5, 1.5, -1.0, 1.0); // the box lies between pixels 32 and 96
    glMatrixMode(GL_MODELVIEW);
    const auto countBlue = [] {
        int count = 0;
        const Picture screen = ReadScreen(screenSize, screenSize);
        for (int y = 0; y < screenSize; ++y)
            for (int x = 0; x < screenSize; ++x)
                count += screen.At(x, y) == blue ? 1 : 0;
        return count;
    };
    mesh->Draw();
    EXPECT_EQ(countBlue(), 0);
    mesh->SetDebug(true);
    mesh->Draw();
    EXPECT_GE(countBlue(), 4 * 60) << "four sides of 64 pixels, less some at the corners";
    EXPECT_EQ(Middle(), white);
}

TEST_F(XT3DStaticDrawTest, Casts_shadows_without_material_blending_and_light_map) {
    const auto mesh = LoadPlain({50, 60, 70, 255});
    SetMaterial(*mesh, redSource);
    mesh->SetBlend(true);
    ClearTo({100, 0, 0, 255});
    mesh->DrawShadow();
    EXPECT_TRUE(Near(Middle(), {50, 60, 70, 255}, 1)) << "8-bit rounding";
    EXPECT_NEAR(Depth(), middleDepth, 1e-3f) << "16-bit depth";
    const auto lit = LoadLightmapped();
    ClearTo(black);
    lit->DrawShadow();
    EXPECT_EQ(Middle(), white);
}

TEST_F(XT3DStaticDrawTest, Casts_shadows_through_what_unit_0_holds_where_it_has_no_texture) {
    const GLuint texture = UploadTexture(Picture(1, 1, green));
    const auto mesh = LoadUntextured();
    glBindTexture(GL_TEXTURE_2D, texture);
    glEnable(GL_TEXTURE_2D);
    mesh->DrawShadow();
    EXPECT_EQ(Middle(), green);
    glBindTexture(GL_TEXTURE_2D, texture);
    glEnable(GL_TEXTURE_2D);
    ClearTo(black);
    mesh->Draw();
    EXPECT_EQ(Middle(), white) << "the colour pass takes it off";
    GLint bound = -1;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &bound);
    EXPECT_EQ(bound, 0);
    glDeleteTextures(1, &texture);
}

TEST_F(XT3DStaticDrawTest, Switches_texturing_off_on_every_unit_of_the_pass) {
    const std::string prefix = NewPrefix();
    const std::string file = PlainTexture(prefix, "plain.png", white) + " ";
    const auto mesh = LoadParts(prefix, {file + file + file + Rectangle(0, 0, 1, 1)});
    const auto unitsOnAfter = [&](void (XT3DStatic::*pass)()) {
        std::vector<int> units;
        for (const int unit : {6, 3, 2, 1, 0})
            TextureUnit::Enable(unit);
        (mesh.get()->*pass)();
        for (const int unit : {0, 1, 2, 3, 6}) {
            glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
            if (glIsEnabled(GL_TEXTURE_2D))
                units.push_back(unit);
        }
        return units;
    };
    EXPECT_EQ(unitsOnAfter(&XT3DStatic::Draw), (std::vector<int>{3}));
    EXPECT_EQ(unitsOnAfter(&XT3DStatic::DrawShadow), (std::vector<int>{3, 6}));
}

TEST_F(XT3DStaticDrawTest, Leaves_no_state_behind_but_its_bindings_and_blend_factors) {
    const auto lit = LoadLightmapped();
    SetMaterial(*lit, lightmapSource);
    lit->SetBlend(true);
    for (GLenum unit : {GL_TEXTURE0, GL_TEXTURE1, GL_TEXTURE2, GL_TEXTURE6}) {
        glActiveTexture(unit);
        glBindTexture(GL_TEXTURE_2D, 0);
    }
    glActiveTexture(GL_TEXTURE0);
    GlState expected = CaptureGlState();
    expected.values["unit 6 binding"] = std::to_string(Probe::Lightmap(*lit)->GetID()) + " ";
    expected.values["blend source"] = std::to_string(GL_ONE) + " ";
    expected.values["blend destination"] = std::to_string(GL_ONE) + " ";
    lit->Draw();
    EXPECT_EQ(Differences(expected, CaptureGlState()), "");

    const auto plain = LoadPlain(red);
    expected.values["unit 0 binding"] =
        std::to_string(Probe::SubMesh(*plain, 0).texture0->GetID()) + " ";
    plain->Draw();
    EXPECT_EQ(Differences(expected, CaptureGlState()), "");
    plain->DrawShadow();
    EXPECT_EQ(Differences(expected, CaptureGlState()), "");
}
