#include "engine/render/shader.h"

#include "engine/core/ressourcemanager.h"
#include "tests/render/shader_probe.h"
#include "tests/scene/layout.h"

#include <functional>
#include <memory>
#include <type_traits>

using namespace Vell;

namespace {

class ShaderTest : public GlTest {};

} // namespace

TEST_F(ShaderTest, Is_empty_at_first_and_enables_the_fixed_pipeline) {
    Shader shader;
    EXPECT_EQ(ShaderProbe::Names(shader), "|");
    EXPECT_EQ(ShaderProbe::Vertex(shader), 0u);
    EXPECT_EQ(ShaderProbe::Fragment(shader), 0u);
    EXPECT_EQ(ShaderProbe::Program(shader), 0u);
    EXPECT_EQ(DrawnColour(shader), white);
}

TEST_F(ShaderTest, Keeps_its_fields_at_their_places_without_virtual_operations) {
    const Shader shader;
    EXPECT_TRUE(InOrder(ShaderProbe::Fields(shader)));
    EXPECT_FALSE(std::is_polymorphic_v<Shader>);
}

TEST_F(ShaderTest, Builds_from_memory_without_a_word_and_stays_bound) {
    const LogWatch log;
    {
        Shader shader;
        shader.LoadToChar(plainVertex, redFragment);
        EXPECT_EQ(ShaderProbe::Names(shader), "Internal|Internal");
        EXPECT_NE(ShaderProbe::Program(shader), 0u);
        EXPECT_EQ(CurrentProgram(), ShaderProbe::Program(shader));
        EXPECT_EQ(DrawnColour(), red);
        shader.Disable();
        EXPECT_EQ(CurrentProgram(), 0u);
    }
    EXPECT_EQ(log.NewRows(), Rows());
    EXPECT_FALSE(RessourceManager::GetInstance().Exist("Internal"));
}

TEST_F(ShaderTest, Builds_from_files_stays_bound_and_logs_both_paths_at_either_end) {
    const LogWatch log;
    const std::string vert = VertexFile();
    const std::string frag = FragmentFile();
    {
        Shader shader;
        shader.Load(vert, frag);
        EXPECT_EQ(CurrentProgram(), ShaderProbe::Program(shader));
        EXPECT_EQ(ShaderProbe::Names(shader), vert + "|" + frag);
        EXPECT_EQ(DrawnColour(), red);
        EXPECT_EQ(RessourceManager::GetInstance().Get(vert), &shader);
        EXPECT_EQ(RessourceManager::GetInstance().Get(frag), &shader);
        shader.Disable();
    }
    EXPECT_EQ(log.NewRows(),
              (Rows{{"Shader", "LOADED", Both(vert, frag)}, {"Shader", "FREE", Both(vert, frag)}}));
}

TEST_F(ShaderTest, Frees_a_row_even_when_nothing_was_ever_loaded) {
    const LogWatch log;
    { const Shader shader; }
    EXPECT_EQ(log.NewRows(), (Rows{{"Shader", "FREE", " "}})) << "two empty names";
}

TEST_F(ShaderTest, Sends_every_type_of_value) {
    struct Case {
        const char* type;
        const char* colour; // GLSL, from the uniform v
        std::function<void(Shader&)> send;
        Rgba expected;
    };
    const Case cases[] = {
        {"float", "vec4(v, 0.0, 0.0, 1.0)", [](Shader& s) { s.Send("v", 0.2f); }, {51, 0, 0, 255}},
        {"int",
         "vec4(float(v) / 255.0, 0.0, 0.0, 1.0)",
         [](Shader& s) { s.Send("v", 7); },
         {7, 0, 0, 255}},
        {"vec2",
         "vec4(v, 0.0, 1.0)",
         [](Shader& s) { s.Send("v", vec2(0.2f, 0.4f)); },
         {51, 102, 0, 255}},
        {"ivec2",
         "vec4(vec2(v) / 255.0, 0.0, 1.0)",
         [](Shader& s) { s.Send("v", ivec2(7, 8)); },
         {7, 8, 0, 255}},
        {"vec3",
         "vec4(v, 1.0)",
         [](Shader& s) { s.Send("v", vec3(0.2f, 0.4f, 0.6f)); },
         {51, 102, 153, 255}},
        {"ivec3",
         "vec4(vec3(v) / 255.0, 1.0)",
         [](Shader& s) { s.Send("v", ivec3(7, 8, 9)); },
         {7, 8, 9, 255}},
        // w shows in place of z, as the screen keeps no alpha.
        {"vec4",
         "vec4(v.xyw, v.z)",
         [](Shader& s) { s.Send("v", vec4(0.2f, 0.4f, 1.0f, 0.8f)); },
         {51, 102, 204, 255}},
        {"ivec4",
         "vec4(vec3(v.xyw) / 255.0, float(v.z))",
         [](Shader& s) { s.Send("v", ivec4(7, 8, 1, 9)); },
         {7, 8, 9, 255}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.type);
        Shader shader;
        shader.LoadToChar(plainVertex, (std::string("uniform ") + c.type +
                                        " v; void main() { gl_FragColor = " + c.colour + "; }")
                                           .c_str());
        shader.Enable();
        c.send(shader);
        EXPECT_TRUE(Near(DrawnColour(shader), c.expected));
    }
}

TEST_F(ShaderTest, Sends_z_of_the_four_component_types) {
    Shader floats;
    floats.LoadToChar(plainVertex,
                      "uniform vec4 v; void main() { gl_FragColor = vec4(v.z, 0.0, 0.0, 1.0); }");
    floats.Send("v", vec4(1.0f, 1.0f, 0.2f, 1.0f));
    EXPECT_EQ(DrawnColour(floats), (Rgba{51, 0, 0, 255}));
    Shader ints;
    ints.LoadToChar(plainVertex, "uniform ivec4 v; void main() { gl_FragColor = "
                                 "vec4(float(v.z) / 255.0, 0.0, 0.0, 1.0); }");
    ints.Send("v", ivec4(1, 1, 7, 1));
    EXPECT_EQ(DrawnColour(ints), (Rgba{7, 0, 0, 255}));
}

TEST_F(ShaderTest, Gives_a_sampler_its_texture_unit) {
    const GLuint texture = UploadTexture(Picture(1, 1, green));
    glActiveTexture(GL_TEXTURE3);
    glBindTexture(GL_TEXTURE_2D, texture);
    glActiveTexture(GL_TEXTURE0);
    Shader shader;
    shader.LoadToChar(plainVertex, "uniform sampler2D picture; void main() { gl_FragColor = "
                                   "texture2D(picture, vec2(0.5, 0.5)); }");
    shader.Send("picture", 3);
    EXPECT_EQ(DrawnColour(shader), green);
    glDeleteTextures(1, &texture);
}

TEST_F(ShaderTest, Ignores_a_name_that_the_program_does_not_use) {
    Shader shader;
    shader.LoadToChar(plainVertex, redFragment);
    shader.Send("nobody", 1.0f);
    shader.Send("nobody", vec3(1.0f, 1.0f, 1.0f));
    shader.Send("", 1);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_EQ(DrawnColour(shader), red);
}

TEST_F(ShaderTest, Ignores_every_value_while_there_is_no_program) {
    Shader shader;
    shader.Enable();
    shader.Send("v", 1.0f);
    shader.Send("v", 1);
    shader.Send("v", vec2(1.0f, 1.0f));
    shader.Send("v", ivec2(1, 1));
    shader.Send("v", vec3(1.0f, 1.0f, 1.0f));
    shader.Send("v", ivec3(1, 1, 1));
    shader.Send("v", vec4(1.0f, 1.0f, 1.0f, 1.0f));
    shader.Send("v", ivec4(1, 1, 1, 1));
    shader.Disable();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(ShaderTest, Does_not_bind_its_program_to_send) {
    Shader first;
    first.LoadToChar(plainVertex, "uniform vec4 v; void main() { gl_FragColor = v; }");
    Shader second;
    second.LoadToChar(plainVertex, redFragment);
    first.Send("absent", 1.0f);
    EXPECT_EQ(CurrentProgram(), ShaderProbe::Program(second));
    second.Disable();
}

TEST_F(ShaderTest, Shares_a_pair_that_is_loaded_already_without_reading_or_logging) {
    const std::string vert = VertexFile();
    const std::string frag = FragmentFile();
    Shader first;
    first.Load(vert, frag);
    first.Disable();
    WriteFile(frag, greenFragment); // would show if the file were read again
    const LogWatch log;
    Shader second;
    second.Load(vert, frag);
    EXPECT_EQ(CurrentProgram(), 0u) << "nothing was built, so nothing was bound";
    EXPECT_EQ(ShaderProbe::Names(second), vert + "|" + frag);
    EXPECT_EQ(ShaderProbe::Vertex(second), ShaderProbe::Vertex(first));
    EXPECT_EQ(ShaderProbe::Fragment(second), ShaderProbe::Fragment(first));
    EXPECT_EQ(ShaderProbe::Program(second), ShaderProbe::Program(first));
    EXPECT_EQ(DrawnColour(second), red);
    EXPECT_EQ(log.NewRows(), Rows());
}

TEST_F(ShaderTest, Compiles_a_pair_afresh_when_only_one_path_is_known) {
    const std::string vert = VertexFile();
    Shader first;
    first.Load(vert, FragmentFile());
    const std::string frag = FragmentFile(greenFragment);
    const LogWatch log;
    Shader second;
    second.Load(vert, frag);
    EXPECT_EQ(log.NewRows(), (Rows{{"Shader", "LOADED", Both(vert, frag)}}));
    EXPECT_NE(ShaderProbe::Program(second), ShaderProbe::Program(first));
    EXPECT_EQ(DrawnColour(second), green);
    EXPECT_EQ(DrawnColour(first), red);
    EXPECT_EQ(RessourceManager::GetInstance().Get(vert), &second) << "the latest takes the name";
}

TEST_F(ShaderTest, Takes_the_vertex_path_s_shader_when_two_pairs_are_crossed) {
    const std::string vert = VertexFile();
    const std::string frag = FragmentFile(greenFragment);
    Shader first;
    first.Load(vert, FragmentFile(redFragment));
    Shader second;
    second.Load(VertexFile(), frag);
    Shader crossed;
    crossed.Load(vert, frag);
    EXPECT_EQ(ShaderProbe::Program(crossed), ShaderProbe::Program(first));
    EXPECT_EQ(DrawnColour(crossed), red);
}

TEST_F(ShaderTest, Goes_on_drawing_when_one_of_two_sharers_ends_whichever_it_is) {
    for (const bool firstEnds : {true, false}) {
        const std::string vert = VertexFile();
        const std::string frag = FragmentFile();
        auto first = std::make_unique<Shader>();
        first->Load(vert, frag);
        first->Disable();
        auto second = std::make_unique<Shader>();
        second->Load(vert, frag);
        (firstEnds ? first : second).reset();
        Shader& left = firstEnds ? *second : *first;
        EXPECT_EQ(DrawnColour(left), red);
        const LogWatch log;
        (firstEnds ? second : first).reset();
        EXPECT_EQ(log.NewRows(), (Rows{{"Shader", "FREE", Both(vert, frag)}}));
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR))
            << "the second deletion is ignored";
    }
}

TEST_F(ShaderTest, Leaves_the_program_object_behind_when_it_ends) {
    GLuint program = 0;
    {
        Shader shader;
        shader.LoadToChar(plainVertex, redFragment);
        program = ShaderProbe::Program(shader);
        shader.Disable();
    }
    glUseProgramObject(program);
    EXPECT_EQ(DrawnColour(), red);
    glUseProgramObject(0);
}
