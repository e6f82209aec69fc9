// web/gl writes shaders of GLSL 1.10 in GLSL ES 3.00.

#include "web/gl/glsl/translate.h"

#include <gmock/gmock.h>

#include <string>

#include <GL/gl.h>

using ::testing::HasSubstr;
using ::testing::Not;
using WebGL::Glsl::Interface;
using WebGL::Glsl::Stage;
using WebGL::Glsl::Variant;

namespace {

std::string Translation(Stage stage, const std::string& text, const Variant& variant = {}) {
    const WebGL::Glsl::Source source = WebGL::Glsl::Parse(stage, text);
    return WebGL::Glsl::Translate(source, source.interface, variant);
}

std::string Vertex(const std::string& text, const Variant& variant = {}) {
    return Translation(Stage::Vertex, text, variant);
}

std::string Fragment(const std::string& text, const Variant& variant = {}) {
    return Translation(Stage::Fragment, text, variant);
}

/// From the first line of the shader's own text on.
std::string Body(const std::string& translation) {
    const std::string mark = "#line 1\n";
    return translation.substr(translation.find(mark) + mark.size());
}

} // namespace

TEST(Translate, Begins_with_the_version_whatever_the_shader_says) {
    EXPECT_TRUE(Vertex("\n#version 110\nvoid main() {}").starts_with("#version 300 es\n"));
    EXPECT_THAT(Body(Vertex("#version 110\nvoid main() {}")), Not(HasSubstr("110")));
}

TEST(Translate, Keeps_the_numbers_of_lines) {
    const std::string body = Body(Vertex("#version 110\n#extension GL_ARB_x : enable\nvoid f();"));
    EXPECT_EQ(body.find("void f();"), 2U); // behind two ends of lines
}

TEST(Translate, Turns_qualifiers_round_by_stage) {
    EXPECT_THAT(Vertex("attribute vec3 a; varying vec2 b;"), HasSubstr("in vec3 a; out vec2 b;"));
    EXPECT_THAT(Fragment("varying vec2 b;"), HasSubstr("in vec2 b;"));
}

TEST(Translate, Tells_a_sampler_named_texture_from_the_function) {
    EXPECT_THAT(Fragment("uniform sampler2D texture; vec4 f() { return texture2D(texture, a); }"),
                HasSubstr("sampler2D vell_user_texture; vec4 f() { return texture("
                          "vell_user_texture, a); }"));
}

TEST(Translate, Sets_apart_what_glsl_es_keeps_for_itself_and_nothing_else) {
    EXPECT_EQ(WebGL::Glsl::Translated("sample", Stage::Fragment), "vell_user_sample");
    EXPECT_EQ(WebGL::Glsl::Translated("inverse", Stage::Vertex), "vell_user_inverse");
    EXPECT_EQ(WebGL::Glsl::Translated("samples", Stage::Fragment), "samples");
    EXPECT_EQ(WebGL::Glsl::Translated("gl_Position", Stage::Vertex), "gl_Position");
}

TEST(Translate, Finds_names_of_uniforms_on_the_way_there_and_back) {
    EXPECT_EQ(WebGL::Glsl::TranslatedPath("lights[2].sample"), "lights[2].vell_user_sample");
    EXPECT_EQ(WebGL::Glsl::OriginalPath("lights[2].vell_user_sample"), "lights[2].sample");
}

TEST(Translate, Declares_the_state_that_a_shader_names_and_no_other) {
    const std::string text = Vertex("void main() { gl_Position = ftransform(); }");
    EXPECT_THAT(text, HasSubstr("uniform mat4 vell_ModelViewProjectionMatrix;"));
    EXPECT_THAT(text, HasSubstr("in vec4 vell_Vertex;"));
    EXPECT_THAT(text, Not(HasSubstr("vell_ModelViewMatrix;")));
    EXPECT_THAT(text, Not(HasSubstr("in vec4 vell_Color;")));
}

TEST(Translate, Passes_as_many_texture_coordinates_as_either_stage_names) {
    const auto vertex = WebGL::Glsl::Parse(Stage::Vertex, "gl_TexCoord[0]");
    const auto fragment = WebGL::Glsl::Parse(Stage::Fragment, "gl_TexCoord[ 2 ].st");
    const Interface both = WebGL::Glsl::Together(vertex.interface, fragment.interface);
    EXPECT_EQ(both.texCoords, 3);
    EXPECT_THAT(WebGL::Glsl::Translate(vertex, both, {}), HasSubstr("out vec4 vell_TexCoord[3];"));
    EXPECT_THAT(WebGL::Glsl::Translate(fragment, both, {}), HasSubstr("in vec4 vell_TexCoord[3];"));
}

TEST(Translate, Declares_in_the_vertex_stage_what_only_the_other_reads) {
    const auto vertex = WebGL::Glsl::Parse(Stage::Vertex, "void main() {}");
    const auto fragment = WebGL::Glsl::Parse(Stage::Fragment, "gl_Color");
    const Interface both = WebGL::Glsl::Together(vertex.interface, fragment.interface);
    EXPECT_THAT(WebGL::Glsl::Translate(vertex, both, {}), HasSubstr("out vec4 vell_FrontColor;"));
}

TEST(Translate, Writes_the_alpha_test_behind_the_shader_s_own_end) {
    const std::string text = Fragment("void main() { gl_FragColor = vec4(1.0); }",
                                      {.alphaFunction = GL_GREATER, .grey = {}});
    const std::size_t own = text.find("    vell_main();");
    const std::size_t test =
        text.find("if (!(clamp(vell_FragColor.a, 0.0, 1.0) > vell_AlphaReference)) discard;");
    ASSERT_NE(own, std::string::npos);
    ASSERT_NE(test, std::string::npos);
    EXPECT_LT(own, test);
    EXPECT_THAT(Fragment("void main() {}"), Not(HasSubstr("discard")));
}

TEST(Translate, Measures_the_clip_vertex_and_without_one_the_position) {
    const Variant clipped{.clipPlanes = 2, .grey = {}}; // plane 1
    EXPECT_THAT(Vertex("void main() { gl_ClipVertex = v; }", clipped),
                HasSubstr("vell_Distance1 = dot(vell_ClipPlane[1], vell_ClipVertex);"));
    EXPECT_THAT(Vertex("void main() {}", clipped),
                HasSubstr("vell_Distance1 = dot(vell_ClipPlane[1], gl_Position);"));
    EXPECT_THAT(Fragment("void main() {}", clipped),
                HasSubstr("if (vell_Distance1 < 0.0) discard;"));
}

TEST(Translate, Reads_depth_as_grey_where_the_sampler_holds_depth) {
    const std::string text = "float f() { return texture2D(a, g(p.xy)).z + texture2D(b, p.xy).z; }";
    EXPECT_THAT(Fragment(text, {.grey = {"a"}}),
                HasSubstr("vell_Grey(texture(a, g(p.xy))).z + texture(b, p.xy).z;"));
    EXPECT_THAT(Fragment(text), Not(HasSubstr("vell_Grey")));
}

TEST(Translate, Leaves_unknown_extensions_to_the_driver_and_before_all_else) {
    const std::string text = Vertex("#version 110\n#extension GL_VELL_x : warn\nvoid main() {}");
    EXPECT_TRUE(text.starts_with("#version 300 es\n#extension GL_VELL_x : warn\n"));
}

TEST(Translate, Answers_a_shader_s_question_for_gl_es_as_a_desktop_does) {
    EXPECT_THAT(Body(Vertex("#ifdef GL_ES\nx\n#endif")), HasSubstr("#ifdef vell_user_GL_ES"));
}

TEST(Translate, Keeps_colours_from_0_to_1) {
    EXPECT_THAT(Vertex("void main() { gl_FrontColor = c; }"),
                HasSubstr("vell_FrontColor = clamp(vell_FrontColor, 0.0, 1.0);"));
}
