#include "engine/render/shader.h"

#include "tests/render/shader_probe.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <utility>

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Vell;

namespace {

off_t claimed = 0; // bytes that files pretend to have beyond their end

} // namespace

/// Takes the place of the C library's function in this executable: the linker finds it first.
extern "C" off_t lseek(int file, off_t offset, int from) noexcept {
    static const auto real = reinterpret_cast<decltype(&lseek)>(dlsym(RTLD_NEXT, "lseek"));
    const off_t position = real(file, offset, from);
    return from == SEEK_END && position >= 0 ? position + claimed : position;
}

namespace {

const char* const brokenVertex = "void main() { gl_Position = onlyInTheVertexShader; }";
const char* const brokenFragment = "void main() { gl_FragColor = onlyInTheFragmentShader; }";

class ShaderFailureTest : public GlTest {};

bool LogHas(const std::string& text) {
    return ReadLogText().find(text) != std::string::npos;
}

} // namespace

TEST_F(ShaderFailureTest, Logs_a_missing_file_and_draws_on_with_the_fixed_pipeline) {
    struct Case {
        const char* what;
        bool vertexThere, fragmentThere;
    };
    for (const Case& c : {Case{"no vertex file", false, true},
                          Case{"no fragment file", true, false}, Case{"neither", false, false}}) {
        SCOPED_TRACE(c.what);
        const std::string vert = VertexFile();
        const std::string frag = FragmentFile();
        Rows expected;
        if (!c.vertexThere) {
            std::filesystem::remove(vert);
            expected.push_back({"Shader", "ERROR", vert});
        }
        if (!c.fragmentThere) {
            std::filesystem::remove(frag);
            expected.push_back({"Shader", "ERROR", frag});
        }
        expected.push_back({c.vertexThere ? "Pixel Shader" : "Vertex Shader", "ERROR", vert});
        const LogWatch log;
        Shader shader;
        shader.Load(vert, frag);
        EXPECT_EQ(log.NewRows(), expected);
        EXPECT_EQ(ShaderProbe::Program(shader), 0u);
        shader.Enable();
        shader.Send("v", vec3(1.0f, 1.0f, 1.0f));
        EXPECT_EQ(DrawnColour(shader), white);
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    }
}

TEST_F(ShaderFailureTest, Treats_an_empty_file_as_a_shader_that_does_not_compile) {
    const std::string vert = VertexFile("");
    const LogWatch log;
    Shader shader;
    shader.Load(vert, FragmentFile());
    EXPECT_EQ(log.NewRows(), (Rows{{"Vertex Shader", "ERROR", vert}}));
    EXPECT_EQ(ShaderProbe::Program(shader), 0u);
}

TEST_F(ShaderFailureTest, Logs_the_vertex_shader_s_message_below_its_row) {
    const std::string vert = VertexFile(brokenVertex);
    const LogWatch log;
    Shader shader;
    shader.Load(vert, FragmentFile());
    EXPECT_EQ(log.NewRows(), (Rows{{"Vertex Shader", "ERROR", vert}}));
    EXPECT_TRUE(LogHas("onlyInTheVertexShader"));
    EXPECT_EQ(ShaderProbe::Program(shader), 0u);
    EXPECT_EQ(DrawnColour(shader), white);
}

TEST_F(ShaderFailureTest, Logs_a_broken_fragment_shader_under_the_vertex_path_and_message) {
    const std::string vert = VertexFile();
    const LogWatch log;
    Shader shader;
    shader.Load(vert, FragmentFile(brokenFragment));
    EXPECT_EQ(log.NewRows(), (Rows{{"Pixel Shader", "ERROR", vert}}));
    EXPECT_FALSE(LogHas("onlyInTheFragmentShader"));
    EXPECT_EQ(ShaderProbe::Program(shader), 0u);
    // The vertex shader has nothing to say: an empty message stands between the two line feeds and
    // the two behind it, each text with the line feed that the log puts after it.
    const std::string page = ReadLogText();
    EXPECT_EQ(page.substr(page.rfind("</tr>")), "</tr>\n\n\n\n\n\n\n\n");
}

TEST_F(ShaderFailureTest, Shows_what_the_vertex_compiler_said_when_the_fragment_shader_is_broken) {
    // Legal, but worth a warning to the compiler. Drivers remember on disk what they compiled and
    // do not repeat the warning, so the text is a new one in every run.
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    const std::string vert = VertexFile("// " + std::to_string(now) +
                                        "\n#extension GL_VELL_unheard_of : warn\n" + plainVertex);
    Shader shader;
    shader.Load(vert, FragmentFile(brokenFragment));
    EXPECT_TRUE(LogHas("GL_VELL_unheard_of")) << ReadLogText();
    EXPECT_FALSE(LogHas("onlyInTheFragmentShader"));
}

TEST_F(ShaderFailureTest, Reports_only_the_vertex_shader_when_both_are_broken) {
    const std::string vert = VertexFile(brokenVertex);
    const LogWatch log;
    Shader shader;
    shader.Load(vert, FragmentFile(brokenFragment));
    EXPECT_EQ(log.NewRows(), (Rows{{"Vertex Shader", "ERROR", vert}}));
}

TEST_F(ShaderFailureTest, Reports_texts_from_memory_by_their_common_name) {
    const LogWatch log;
    {
        Shader vertexFails;
        vertexFails.LoadToChar(brokenVertex, redFragment);
        Shader fragmentFails;
        fragmentFails.LoadToChar(plainVertex, brokenFragment);
        Shader nothing;
        nothing.LoadToChar(nullptr, nullptr);
    }
    EXPECT_EQ(log.NewRows(), (Rows{{"Vertex Shader", "ERROR", "Internal"},
                                   {"Pixel Shader", "ERROR", "Internal"},
                                   {"Vertex Shader", "ERROR", "Internal"}}));
}

TEST_F(ShaderFailureTest, Keeps_the_program_it_had) {
    Shader shader;
    shader.LoadToChar(plainVertex, redFragment);
    const GLuint program = ShaderProbe::Program(shader);
    for (const auto& [vertex, fragment] :
         {std::pair{plainVertex, brokenFragment}, {brokenVertex, redFragment}}) {
        shader.LoadToChar(vertex, fragment);
        EXPECT_EQ(ShaderProbe::Program(shader), program);
        EXPECT_EQ(DrawnColour(shader), red);
    }
}

TEST_F(ShaderFailureTest, Frees_without_a_row_when_the_vertex_file_is_called_like_a_text) {
    WriteFile("Internal", plainVertex);
    const std::string other = VertexFile();
    const std::string frag = FragmentFile();
    const auto rowsAtItsEnd = [](const std::string& vert, const std::string& fragment) {
        auto shader = std::make_unique<Shader>();
        shader->Load(vert, fragment);
        shader->Disable();
        const LogWatch log;
        shader.reset();
        return log.NewRows();
    };
    EXPECT_EQ(rowsAtItsEnd("Internal", frag), Rows());
    WriteFile("Internal", redFragment);
    EXPECT_EQ(rowsAtItsEnd(other, "Internal"), (Rows{{"Shader", "FREE", Both(other, "Internal")}}));
}

TEST_F(ShaderFailureTest, Takes_a_compiler_message_of_any_length) {
    std::string source;
    for (int i = 0; i < 300; ++i)
        source += "float v" + std::to_string(i) + " = missing" + std::to_string(i) + ";\n";
    Shader shader;
    shader.LoadToChar((source + plainVertex).c_str(), redFragment);
    EXPECT_TRUE(LogHas("missing0"));
    EXPECT_TRUE(LogHas("missing299"));
}

TEST_F(ShaderFailureTest, Frees_with_both_paths_after_a_failure_too) {
    const std::string vert = VertexFile(brokenVertex);
    const std::string frag = FragmentFile();
    auto shader = std::make_unique<Shader>();
    shader->Load(vert, frag);
    const LogWatch log;
    shader.reset();
    EXPECT_EQ(log.NewRows(), (Rows{{"Shader", "FREE", Both(vert, frag)}}));
}

TEST_F(ShaderFailureTest, Shares_the_failure_of_a_pair_that_was_tried_before) {
    const std::string vert = VertexFile(brokenVertex);
    const std::string frag = FragmentFile();
    auto first = std::make_unique<Shader>();
    first->Load(vert, frag);
    WriteFile(vert, plainVertex); // mended, but not read again
    {
        const LogWatch log;
        Shader second;
        second.Load(vert, frag);
        EXPECT_EQ(log.NewRows(), Rows());
        EXPECT_EQ(ShaderProbe::Program(second), 0u);
        EXPECT_EQ(DrawnColour(second), white);
    }
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    // Every sharer deletes the handles. Without a program to hold them they went with the first.
    first.reset();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_VALUE));
}

TEST_F(ShaderFailureTest, Does_not_notice_a_pair_that_compiles_but_does_not_link) {
    const std::string vert = VertexFile();
    const std::string frag = FragmentFile("varying vec4 nobodyWrites; "
                                          "void main() { gl_FragColor = nobodyWrites; }");
    const LogWatch log;
    Shader shader;
    shader.Load(vert, frag);
    EXPECT_EQ(log.NewRows(), (Rows{{"Shader", "LOADED", Both(vert, frag)}}));
    EXPECT_NE(ShaderProbe::Program(shader), 0u);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_OPERATION))
        << "the driver refuses to bind it";
}

TEST_F(ShaderFailureTest, Reads_a_text_whole_and_ends_it) {
    const std::string text = "first line\n\tsecond line\r\nlast, without line feed";
    const std::string name = NewFile(".txt", text);
    const LogWatch log;
    char* read = Shader::textFileRead(name.c_str());
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(std::string(read), text);
    std::free(read);
    EXPECT_EQ(log.NewRows(), Rows());
}

TEST_F(ShaderFailureTest, Ends_a_text_where_its_bytes_end_when_it_is_shorter_than_it_claims) {
    const std::string name = NewFile(".txt", "short");
    claimed = 100;
    char* read = Shader::textFileRead(name.c_str());
    claimed = 0;
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(std::string(read), "short");
    std::free(read);
}

TEST_F(ShaderFailureTest, Logs_a_text_too_large_to_be_one) {
    const std::string name = NewFile(".txt", "");
    std::filesystem::resize_file(name, std::uintmax_t{1} << 31); // a hole: no disk is used
    const LogWatch log;
    EXPECT_EQ(Shader::textFileRead(name.c_str()), nullptr);
    EXPECT_EQ(log.NewRows(), (Rows{{"Shader", "ERROR", name}}));
}

TEST_F(ShaderFailureTest, Reads_nothing_and_says_nothing_when_a_file_is_empty) {
    const std::string name = NewFile(".txt", "");
    const LogWatch log;
    EXPECT_EQ(Shader::textFileRead(name.c_str()), nullptr);
    EXPECT_EQ(log.NewRows(), Rows());
}

TEST_F(ShaderFailureTest, Logs_a_pipe_or_a_device_without_waiting_for_it) {
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    const LogWatch log;
    EXPECT_EQ(Shader::textFileRead("pipe"), nullptr);
    EXPECT_EQ(Shader::textFileRead("/dev/zero"), nullptr);
    EXPECT_EQ(log.NewRows(), (Rows{{"Shader", "ERROR", "pipe"}, {"Shader", "ERROR", "/dev/zero"}}));
}

TEST_F(ShaderFailureTest, Logs_a_text_that_cannot_be_read) {
    std::filesystem::create_directory("folder");
    const LogWatch log;
    EXPECT_EQ(Shader::textFileRead("missing.txt"), nullptr);
    EXPECT_EQ(Shader::textFileRead(nullptr), nullptr);
    EXPECT_EQ(Shader::textFileRead("folder"), nullptr) << "opens, but has no text";
    EXPECT_EQ(log.NewRows(), (Rows{{"Shader", "ERROR", "missing.txt"},
                                   {"Shader", "ERROR", ""},
                                   {"Shader", "ERROR", "folder"}}));
}
