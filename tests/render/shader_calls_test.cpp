// Shader programs, call by call: built from files and from memory, every failure, uniforms, end.

#include "tests/recording/calls.h"

#include "engine/math/vec3.h"
#include "engine/math/vec4.h"
#include "engine/render/shader.h"
#include "tests/support/log_page.h"

#include <gmock/gmock.h>

#include <optional>

using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using Vell::Shader;

namespace {

// Semicolons separate calls in an expected sequence, so these texts have none.
const char* const plainVertex = "void main() { vertex() }";
const char* const plainFragment = "void main() { fragment() }";

/// A driver that does not compile some kinds of shader, and what it says.
struct Driver {
    bool vertexCompiles;
    bool fragmentCompiles;
    std::string vertexLog;
};

class ShaderCalls : public Calls {
protected:
    static void Set(const Driver& driver) {
        if (!driver.vertexCompiles)
            gl.refused.insert(GL_VERTEX_SHADER);
        if (!driver.fragmentCompiles)
            gl.refused.insert(GL_FRAGMENT_SHADER);
        gl.infoLogs[GL_VERTEX_SHADER] = driver.vertexLog;
        gl.infoLogs[GL_FRAGMENT_SHADER] = "the fragment shader's own message";
    }

    // The steps of building, each with what it is called with.

    static std::string Create() {
        return "-- both objects\n"
               "glCreateShaderObject(GL_VERTEX_SHADER)\n"
               "glCreateShaderObject(GL_FRAGMENT_SHADER)\n";
    }
    // a text for each
    static std::string GiveVertex() {
        return "glShaderSource(vertex 1, 1, \"void main() { vertex() }\", 0)\n";
    }
    static std::string GiveFragment() {
        return "glShaderSource(fragment 1, 1, \"void main() { fragment() }\", 0)\n";
    }
    static std::string Compile() {
        return "-- compiled\n"
               "glCompileShader(vertex 1)\n"
               "glCompileShader(fragment 1)\n";
    }
    static std::string AskVertex() {
        return "-- vertex status\nglGetObjectParameteriv(vertex 1, GL_COMPILE_STATUS)\n";
    }
    static std::string AskFragment() {
        return "-- fragment status\nglGetObjectParameteriv(fragment 1, GL_COMPILE_STATUS)\n";
    }
    static std::string Link() {
        return R"(
            -- linked; the program stays in use
            glCreateProgramObject()
            glAttachObject(program 1, vertex 1)
            glAttachObject(program 1, fragment 1)
            glLinkProgram(program 1)
            glUseProgramObject(program 1)
            )";
    }
    /// The vertex object's message, whichever failed: the length first, and one more at most.
    static std::string ReadMessage(int most) {
        return "glGetShaderiv(vertex 1, GL_INFO_LOG_LENGTH)\n"
               "glGetShaderInfoLog(vertex 1, " +
               std::to_string(most) + ", 0)\n";
    }
};

} // namespace

TEST_F(ShaderCalls, Files_become_a_program) {
    WriteFile("plain.vert", plainVertex);
    WriteFile("plain.frag", plainFragment);
    Shader shader;
    shader.Load("plain.vert", "plain.frag");
    EXPECT_TRUE(Made(Create() + GiveVertex() + GiveFragment() + Compile() + AskVertex() +
                     AskFragment() + Link()));
    EXPECT_EQ(ReadLogRows().back(), (LogRow{"Shader", "LOADED", "plain.vert plain.frag"}));
}

TEST_F(ShaderCalls, Texts_from_memory_become_a_program_without_a_row) {
    const std::size_t rows = ReadLogRows().size();
    Shader shader;
    shader.LoadToChar(plainVertex, plainFragment);
    EXPECT_TRUE(Made(Create() + GiveVertex() + GiveFragment() + Compile() + AskVertex() +
                     AskFragment() + Link()));
    EXPECT_EQ(ReadLogRows().size(), rows);
}

TEST_F(ShaderCalls, Second_load_of_a_pair_calls_nothing) {
    WriteFile("pair.vert", plainVertex);
    WriteFile("pair.frag", plainFragment);
    Shader first;
    first.Load("pair.vert", "pair.frag");
    Forget();
    const std::size_t rows = ReadLogRows().size();
    Shader second;
    second.Load("pair.vert", "pair.frag");
    EXPECT_TRUE(Made(""));
    EXPECT_EQ(ReadLogRows().size(), rows);
    second.Enable();
    EXPECT_TRUE(Made("glUseProgramObject(program 1)"));
}

TEST_F(ShaderCalls, Pair_of_which_only_one_path_is_known_is_compiled) {
    WriteFile("half.vert", plainVertex);
    WriteFile("half.frag", plainFragment);
    WriteFile("other.frag", plainFragment);
    Shader first;
    first.Load("half.vert", "half.frag");
    Forget();
    Shader second;
    second.Load("half.vert", "other.frag");
    EXPECT_TRUE(Made(R"(
        glCreateShaderObject(GL_VERTEX_SHADER)
        glCreateShaderObject(GL_FRAGMENT_SHADER)
        glShaderSource(vertex 2, 1, "void main() { vertex() }", 0)
        glShaderSource(fragment 2, 1, "void main() { fragment() }", 0)
        glCompileShader(vertex 2)
        glCompileShader(fragment 2)
        glGetObjectParameteriv(vertex 2, GL_COMPILE_STATUS)
        glGetObjectParameteriv(fragment 2, GL_COMPILE_STATUS)
        glCreateProgramObject()
        glAttachObject(program 2, vertex 2)
        glAttachObject(program 2, fragment 2)
        glLinkProgram(program 2)
        glUseProgramObject(program 2)
        )"));
}

TEST_F(ShaderCalls, Vertex_failure_asks_no_further) {
    Set({false, true, "bad vertex"}); // 10 characters and the terminator: 11, and one more
    Shader shader;
    shader.LoadToChar(plainVertex, plainFragment);
    EXPECT_TRUE(
        Made(Create() + GiveVertex() + GiveFragment() + Compile() + AskVertex() + ReadMessage(12)));
    EXPECT_EQ(ReadLogRows().back(), (LogRow{"Vertex Shader", "ERROR", "Internal"}));
    EXPECT_NE(ReadLogText().find("</tr>\n\n\n\nbad vertex\n\n\n\n"), std::string::npos);
}

TEST_F(ShaderCalls, Fragment_failure_reads_the_vertex_objects_message) {
    Set({true, false, "fine"});
    Shader shader;
    shader.LoadToChar(plainVertex, plainFragment);
    EXPECT_TRUE(Made(Create() + GiveVertex() + GiveFragment() + Compile() + AskVertex() +
                     AskFragment() + ReadMessage(6)));
    EXPECT_EQ(ReadLogRows().back(), (LogRow{"Pixel Shader", "ERROR", "Internal"}));
    EXPECT_EQ(ReadLogText().find("own message"), std::string::npos);
}

TEST_F(ShaderCalls, Both_failing_count_as_the_vertex_shader) {
    Set({false, false, ""});
    Shader shader;
    shader.LoadToChar(plainVertex, plainFragment);
    EXPECT_TRUE(
        Made(Create() + GiveVertex() + GiveFragment() + Compile() + AskVertex() + ReadMessage(1)));
    EXPECT_EQ(ReadLogRows().back(), (LogRow{"Vertex Shader", "ERROR", "Internal"}));
}

TEST_F(ShaderCalls, Status_that_the_driver_does_not_answer_counts_as_compiled) {
    glGetObjectParameteriv = [](GLhandleARB, GLenum, GLint*) {}; // the next test fetches it anew
    Shader shader;
    shader.LoadToChar(plainVertex, plainFragment);
    EXPECT_TRUE(Made(Create() + GiveVertex() + GiveFragment() + Compile() + Link()));
}

TEST_F(ShaderCalls, Every_other_status_than_1_counts_as_a_failure) {
    static GLint status;
    glGetObjectParameteriv = [](GLhandleARB, GLenum, GLint* value) { *value = status; };
    for (const GLint other : {0, 2, -1}) {
        status = other;
        Shader shader;
        shader.LoadToChar(plainVertex, plainFragment);
        EXPECT_EQ(ReadLogRows().back(), (LogRow{"Vertex Shader", "ERROR", "Internal"})) << other;
        Forget();
        shader.Enable();
        EXPECT_TRUE(Made("glUseProgramObject(0)")) << other;
    }
}

TEST_F(ShaderCalls, Failing_files_are_named_by_the_vertex_path) {
    Set({true, false, ""});
    WriteFile("failing.vert", plainVertex);
    WriteFile("failing.frag", plainFragment);
    Shader shader;
    shader.Load("failing.vert", "failing.frag");
    EXPECT_TRUE(Made(Create() + GiveVertex() + GiveFragment() + Compile() + AskVertex() +
                     AskFragment() + ReadMessage(1)));
    EXPECT_EQ(ReadLogRows().back(), (LogRow{"Pixel Shader", "ERROR", "failing.vert"}));
}

TEST_F(ShaderCalls, Missing_vertex_file_is_not_handed_over_and_counts_as_not_compiled) {
    WriteFile("alone.frag", plainFragment);
    Shader shader;
    shader.Load("missing.vert", "alone.frag");
    EXPECT_TRUE(Made(Create() + GiveFragment() + Compile() + AskVertex() + ReadMessage(1)));
    EXPECT_EQ(ReadLogRows().back(), (LogRow{"Vertex Shader", "ERROR", "missing.vert"}));
}

TEST_F(ShaderCalls, Missing_fragment_file_is_not_handed_over_and_counts_as_not_compiled) {
    WriteFile("alone.vert", plainVertex);
    Shader shader;
    shader.Load("alone.vert", "missing.frag");
    EXPECT_TRUE(
        Made(Create() + GiveVertex() + Compile() + AskVertex() + AskFragment() + ReadMessage(1)));
    EXPECT_EQ(ReadLogRows().back(), (LogRow{"Pixel Shader", "ERROR", "alone.vert"}));
}

TEST_F(ShaderCalls, Empty_file_is_a_missing_text) {
    WriteFile("empty.vert", "");
    WriteFile("empty.frag", "");
    Shader shader;
    shader.Load("empty.vert", "empty.frag");
    EXPECT_TRUE(Made(Create() + Compile() + AskVertex() + ReadMessage(1)));
}

TEST_F(ShaderCalls, After_a_failure_there_is_program_0_and_nothing_is_sent) {
    Set({false, true, ""});
    Shader shader;
    shader.LoadToChar(plainVertex, plainFragment);
    Forget();
    shader.Enable();
    // Asking program 0 for a location would leave an OpenGL error behind.
    shader.Send("time", 1.0f);
    shader.Disable();
    EXPECT_TRUE(Made("glUseProgramObject(0); glUseProgramObject(0)"));
}

TEST_F(ShaderCalls, End_deletes_both_objects_and_then_the_program) {
    std::optional<Shader> shader(std::in_place);
    shader->LoadToChar(plainVertex, plainFragment);
    Forget();
    shader.reset();
    EXPECT_TRUE(Made(R"(
        glDeleteObject(vertex 1)
        glDeleteObject(fragment 1)
        glDeletePrograms(1, program 1)
        )"));
}

TEST_F(ShaderCalls, End_after_a_failure_deletes_the_objects_that_were_kept) {
    Set({true, false, ""});
    std::optional<Shader> shader(std::in_place);
    shader->LoadToChar(plainVertex, plainFragment);
    Forget();
    shader.reset();
    EXPECT_TRUE(Made(R"(
        glDeleteObject(vertex 1)
        glDeleteObject(fragment 1)
        glDeletePrograms(1, 0)
        )"));
}

TEST_F(ShaderCalls, End_of_one_that_was_never_built_deletes_nothing_at_all) {
    std::optional<Shader> shader(std::in_place);
    shader.reset();
    EXPECT_TRUE(Made("glDeleteObject(0); glDeleteObject(0); glDeletePrograms(1, 0)"));
}

TEST_F(ShaderCalls, Each_sharer_deletes_the_handles) {
    WriteFile("shared.vert", plainVertex);
    WriteFile("shared.frag", plainFragment);
    std::optional<Shader> first(std::in_place);
    std::optional<Shader> second(std::in_place);
    first->Load("shared.vert", "shared.frag");
    second->Load("shared.vert", "shared.frag");
    Forget();
    for (std::optional<Shader>* shader : {&second, &first}) {
        shader->reset();
        EXPECT_TRUE(Made(R"(
            glDeleteObject(vertex 1)
            glDeleteObject(fragment 1)
            glDeletePrograms(1, program 1)
            )"));
        EXPECT_EQ(ReadLogRows().back(), (LogRow{"Shader", "FREE", "shared.vert shared.frag"}));
    }
}

TEST_F(ShaderCalls, Labels_are_the_paths_also_for_a_sharer) {
    const struct {
        const char* vertex;
        const char* fragment;
        const char* label;
    } pairs[] = {{"one.vert", "one.frag", "one.vert and .frag"},
                 {"two.vert", "other.frag", "two.vert and other.frag"},
                 {"long.vert", "long.two.frag", "long.vert and long.two.frag"},
                 {"bare", "bare.frag", "bare and bare.frag"}};
    for (const auto& [vertex, fragment, label] : pairs) {
        WriteFile(vertex, plainVertex);
        WriteFile(fragment, plainFragment);
        Shader shader;
        Shader sharer;
        shader.Load(vertex, fragment);
        sharer.Load(vertex, fragment);
        EXPECT_THAT(Labels(), UnorderedElementsAre(vertex, fragment, label));
    }
    EXPECT_THAT(Labels(), IsEmpty());
}

TEST_F(ShaderCalls, Labels_of_a_program_from_memory_are_its_owner_s_word) {
    Shader shader;
    shader.LoadToChar(plainVertex, plainFragment);
    EXPECT_THAT(Labels(), UnorderedElementsAre("program from memory", "program from memory, vertex",
                                               "program from memory, fragment"));
    shader.SetLabel("glass");
    EXPECT_THAT(Labels(), UnorderedElementsAre("glass", "glass, vertex", "glass, fragment"));
    EXPECT_TRUE(MadeLast("glUseProgramObject(program 1)")); // a label is no call
}

TEST_F(ShaderCalls, Labels_are_also_on_what_did_not_compile) {
    gl.refused = {GL_FRAGMENT_SHADER};
    Shader shader;
    shader.LoadToChar(plainVertex, plainFragment);
    shader.SetLabel("glass");
    EXPECT_THAT(Labels(), UnorderedElementsAre("glass, vertex", "glass, fragment"));
}

TEST_F(ShaderCalls, Uniforms_are_looked_up_on_every_sending) {
    Shader shader;
    shader.LoadToChar(plainVertex, plainFragment);
    shader.Enable();
    Forget();
    shader.Send("a", 0.5f);
    shader.Send("b", 3);
    shader.Send("c", Vell::vec2(1.5f, 2));
    shader.Send("d", Vell::ivec2(1, 2));
    shader.Send("e", Vell::vec3(1.5f, 2, 3));
    shader.Send("f", Vell::ivec3(1, 2, 3));
    shader.Send("g", Vell::vec4(1.5f, 2, 3, 4));
    shader.Send("h", Vell::ivec4(1, 2, 3, 4));
    shader.Send("a", 0.75f);
    shader.Send("a", 0.75f);
    EXPECT_TRUE(Made(R"(
        glGetUniformLocation(program 1, "a"); glUniform1f(a, 0.5)
        glGetUniformLocation(program 1, "b"); glUniform1i(b, 3)
        glGetUniformLocation(program 1, "c"); glUniform2f(c, 1.5, 2)
        glGetUniformLocation(program 1, "d"); glUniform2i(d, 1, 2)
        glGetUniformLocation(program 1, "e"); glUniform3f(e, 1.5, 2, 3)
        glGetUniformLocation(program 1, "f"); glUniform3i(f, 1, 2, 3)
        glGetUniformLocation(program 1, "g"); glUniform4f(g, 1.5, 2, 3, 4)
        glGetUniformLocation(program 1, "h"); glUniform4i(h, 1, 2, 3, 4)
        glGetUniformLocation(program 1, "a"); glUniform1f(a, 0.75)
        glGetUniformLocation(program 1, "a"); glUniform1f(a, 0.75)
        )"));
}

TEST_F(ShaderCalls, Unused_uniform_is_sent_to_location_minus_1) {
    gl.unusedUniforms = {"time"};
    Shader shader;
    shader.LoadToChar(plainVertex, plainFragment);
    Forget();
    shader.Send("time", 1.0f);
    EXPECT_TRUE(Made("glGetUniformLocation(program 1, \"time\"); glUniform1f(-1, 1)"));
}

TEST_F(ShaderCalls, Enable_and_disable_bind_the_program_and_none) {
    Shader shader;
    shader.LoadToChar(plainVertex, plainFragment);
    Forget();
    shader.Enable();
    shader.Disable();
    EXPECT_TRUE(Made("glUseProgramObject(program 1); glUseProgramObject(0)"));
}
