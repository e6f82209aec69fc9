// "Vell_log.html" of the real program, byte for byte, against pages written out by hand: what is
// loaded and freed, in which order, what is said about what is missing, and every line of the page.

#include "tests/support/log_page.h"
#include "tests/system/expected_page.h"
#include "tests/system/nimbrel_test.h"

#include <SDL.h>

#include <array>
#include <ctime>
#include <set>
#include <utility>
#include <vector>

#include <GL/gl.h>
#include <GL/glext.h>

namespace {

std::string Today() {
    const std::time_t now = std::time(nullptr);
    char date[16];
    std::strftime(date, sizeof date, "%d/%m/%Y", std::localtime(&now));
    return date;
}

// --------------------------------------------------------------------------------------- The rows

Rows Started() {
    return {{"InitEngine", "OK", Today()}};
}

/// Rows of a mesh that is loaded: each picture when it is first named, then the mesh itself.
Rows MeshLoaded(const std::string& path, std::set<std::string>& known) {
    Rows rows;
    for (const std::string& picture : ReadMeshFile(path).pictures)
        if (known.insert(picture).second)
            rows.push_back({"Image", "LOADED", picture});
    rows.push_back({"XT3DStatic", "LOADED", path});
    return rows;
}

/// In the order of the scene's script. A mesh comes before its material; shaders in memory and
/// shared things have no rows.
Rows Loaded() {
    std::set<std::string> known;
    return MeshLoaded("Data/Gfx/City/city.xt3dstatic", known) +
           Rows{{"Shader", "LOADED", "Data/Gfx/City/shader.vert Data/Gfx/City/shader.frag"}} +
           MeshLoaded("Data/Gfx/Wisp/green.xt3dstatic", known) +
           Rows{{"Shader", "LOADED", "Data/Gfx/Wisp/billboard.vert Data/Gfx/Wisp/billboard.frag"}} +
           MeshLoaded("Data/Gfx/Wisp/red.xt3dstatic", known) +
           MeshLoaded("Data/Gfx/Wisp/blue.xt3dstatic", known) +
           MeshLoaded("Data/Gfx/Fish/fish.xt3dstatic", known) +
           Rows{{"Image", "LOADED", "Data/Gfx/City/sky/xpos.jpg"},
                {"Image", "LOADED", "Data/Gfx/City/sky/xneg.jpg"},
                {"Image", "LOADED", "Data/Gfx/City/sky/ypos.jpg"},
                {"Image", "LOADED", "Data/Gfx/City/sky/yneg.jpg"},
                {"Image", "LOADED", "Data/Gfx/City/sky/zpos.jpg"},
                {"Image", "LOADED", "Data/Gfx/City/sky/zneg.jpg"},
                {"Image", "LOADED", "Data/Gfx/water.jpg"},
                {"Image", "LOADED", "Data/Gfx/Logo/logo.jpg"}};
}

/// The scene manager's meshes, each after its material and its light map, then the sky's faces from
/// the last (+x) to the first (+z), then the water; the logo goes with the scene itself. Textures
/// of sub-meshes stay. The same for what failed to load: it has a name all the same.
Rows Freed(bool cityHasLightmap) {
    const Rows lightmap = {{"Image", "FREE", "Data/Gfx/City/lightmap.jpg"}};
    const Rows material = {
        {"Shader", "FREE", "Data/Gfx/Wisp/billboard.vert Data/Gfx/Wisp/billboard.frag"}};
    return Rows{{"Shader", "FREE", "Data/Gfx/City/shader.vert Data/Gfx/City/shader.frag"}} +
           (cityHasLightmap ? lightmap : Rows()) +
           Rows{{"XT3DStatic", "FREE", "Data/Gfx/City/city.xt3dstatic"}} + material +
           Rows{{"XT3DStatic", "FREE", "Data/Gfx/Wisp/green.xt3dstatic"}} + material +
           Rows{{"XT3DStatic", "FREE", "Data/Gfx/Wisp/red.xt3dstatic"}} + material +
           Rows{{"XT3DStatic", "FREE", "Data/Gfx/Wisp/blue.xt3dstatic"},
                {"XT3DStatic", "FREE", "Data/Gfx/Fish/fish.xt3dstatic"},
                {"Image", "FREE", "Data/Gfx/City/sky/xpos.jpg"},
                {"Image", "FREE", "Data/Gfx/City/sky/xneg.jpg"},
                {"Image", "FREE", "Data/Gfx/City/sky/yneg.jpg"},
                {"Image", "FREE", "Data/Gfx/City/sky/ypos.jpg"},
                {"Image", "FREE", "Data/Gfx/City/sky/zneg.jpg"},
                {"Image", "FREE", "Data/Gfx/City/sky/zpos.jpg"},
                {"Image", "FREE", "Data/Gfx/water.jpg"},
                {"Image", "FREE", "Data/Gfx/Logo/logo.jpg"}};
}

/// What follows the row of a shader that did not compile: a line feed, the driver's message and two
/// line feeds, each with the line feed that ends every text between rows.
Rows Message(const std::string& driver) {
    return {{"", "", "\n\n" + driver + "\n" + "\n\n\n"}};
}

/// Both texts of a shader are looked for before it is compiled, which the driver comments on.
Rows ShaderMissing(const std::string& vertex, const std::string& fragment,
                   const std::string& driver) {
    return Rows{{"Shader", "ERROR", vertex},
                {"Shader", "ERROR", fragment},
                {"Vertex Shader", "ERROR", vertex}} +
           Message(driver);
}

/// No mesh and no picture can be loaded. The wisps share one material, which is tried once.
Rows NotLoaded(const Rows& cityShader, const Rows& wispShader) {
    return Rows{{"XT3DStatic", "ERROR", "Data/Gfx/City/city.xt3dstatic"}} + cityShader +
           Rows{{"XT3DStatic", "ERROR", "Data/Gfx/Wisp/green.xt3dstatic"}} + wispShader +
           Rows{{"XT3DStatic", "ERROR", "Data/Gfx/Wisp/red.xt3dstatic"},
                {"XT3DStatic", "ERROR", "Data/Gfx/Wisp/blue.xt3dstatic"},
                {"XT3DStatic", "ERROR", "Data/Gfx/Fish/fish.xt3dstatic"},
                {"Image", "ERROR", "Data/Gfx/City/sky/xpos.jpg"},
                {"Image", "ERROR", "Data/Gfx/City/sky/xneg.jpg"},
                {"Image", "ERROR", "Data/Gfx/City/sky/ypos.jpg"},
                {"Image", "ERROR", "Data/Gfx/City/sky/yneg.jpg"},
                {"Image", "ERROR", "Data/Gfx/City/sky/zpos.jpg"},
                {"Image", "ERROR", "Data/Gfx/City/sky/zneg.jpg"},
                {"Image", "ERROR", "Data/Gfx/water.jpg"},
                {"Image", "ERROR", "Data/Gfx/Logo/logo.jpg"}};
}

const char* const brokenShader = "void main()\n"
                                 "{\n"
                                 "    gl_Position = nowhere;\n"
                                 "}\n";
const char* const soundShader = "void main()\n"
                                "{\n"
                                "    gl_Position = ftransform();\n"
                                "}\n";

/// Small data in which pictures are shared and missing, and some files are not what they should be.
void WriteDamagedData() {
    const std::string lit = " 3 0 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 0 1 0 0 0 1 0 0 0 0";
    const std::string plain = " 3 0 0 0 0 0 1 0 0 1 0 0 0 0 1 0 0 0 1 0 0 0 1 0 0";
    WriteFile("Data/Gfx/City/city.xt3dstatic", "XT3DSTATIC 3 Data/Gfx/City/ 1 a.png NULL b.jpg" +
                                                   lit + " b.jpg a.png NULL" + lit +
                                                   " NULL missing.png plan.PNG" + lit);
    WriteFile("Data/Gfx/Wisp/green.xt3dstatic",
              "XT3DSTATIC 1 Data/Gfx/City/ 0 a.png NULL NULL" + plain);
    WriteFile("Data/Gfx/Wisp/red.xt3dstatic",
              "XT3DSTATIC 1 Data/Gfx/Wisp/ 0 red.png NULL NULL" + plain);
    WriteFile("Data/Gfx/Wisp/blue.xt3dstatic",
              "XT3DSTATIC 1 Data/Gfx/Wisp/ 0 NULL NULL NULL" + plain);
    WriteFile("Data/Gfx/Fish/fish.xt3dstatic", "xt3dstatic 1 Data/Gfx/Fish/ 0 NULL NULL NULL 0");
    const std::vector<unsigned char> pixel = {1, 2, 3};
    for (const char* picture : {"City/a.png", "City/plan.PNG", "Wisp/red.png"})
        WritePng(std::string("Data/Gfx/") + picture, 1, 1, 3, pixel);
    for (const char* picture : {"City/lightmap", "City/b", "City/sky/xpos", "City/sky/xneg",
                                "City/sky/ypos", "City/sky/zpos", "City/sky/zneg", "Logo/logo"})
        WriteJpeg(std::string("Data/Gfx/") + picture + ".jpg", 1, 1, pixel);
    WriteGreyJpeg("Data/Gfx/water.jpg", 1, 1, {1});
    for (const char* shader : {"City/shader", "Wisp/billboard"}) {
        WriteFile(std::string("Data/Gfx/") + shader + ".vert", soundShader);
        WriteFile(std::string("Data/Gfx/") + shader + ".frag",
                  "void main() { gl_FragColor = vec4(1.0); }\n");
    }
}

const Rows loadedOfDamagedData = {
    {"Image", "LOADED", "Data/Gfx/City/lightmap.jpg"},
    {"Image", "LOADED", "Data/Gfx/City/a.png"},
    {"Image", "LOADED", "Data/Gfx/City/b.jpg"}, // and both again, shared
    {"Image", "ERROR", "Data/Gfx/City/missing.png"},
    {"Image", "ERROR", "Data/Gfx/City/plan.PNG"}, // the ending has to be in small letters
    {"XT3DStatic", "LOADED", "Data/Gfx/City/city.xt3dstatic"},
    {"Shader", "LOADED", "Data/Gfx/City/shader.vert Data/Gfx/City/shader.frag"},
    {"XT3DStatic", "LOADED", "Data/Gfx/Wisp/green.xt3dstatic"}, // with the city's a.png
    {"Shader", "LOADED", "Data/Gfx/Wisp/billboard.vert Data/Gfx/Wisp/billboard.frag"},
    {"Image", "LOADED", "Data/Gfx/Wisp/red.png"},
    {"XT3DStatic", "LOADED", "Data/Gfx/Wisp/red.xt3dstatic"},
    {"XT3DStatic", "LOADED", "Data/Gfx/Wisp/blue.xt3dstatic"},
    {"XT3DStatic", "ERROR", "Data/Gfx/Fish/fish.xt3dstatic"}, // the first word is another
    {"Image", "LOADED", "Data/Gfx/City/sky/xpos.jpg"},
    {"Image", "LOADED", "Data/Gfx/City/sky/xneg.jpg"},
    {"Image", "LOADED", "Data/Gfx/City/sky/ypos.jpg"},
    {"Image", "ERROR", "Data/Gfx/City/sky/yneg.jpg"}, // missing
    {"Image", "LOADED", "Data/Gfx/City/sky/zpos.jpg"},
    {"Image", "LOADED", "Data/Gfx/City/sky/zneg.jpg"},
    {"Image", "ERROR", "Data/Gfx/water.jpg"}, // grey
    {"Image", "LOADED", "Data/Gfx/Logo/logo.jpg"},
};

// --------------------------------------------------------------------------------------- The run

constexpr const char* messageFile = "message.txt";
constexpr const char* shaderVariable = "NIMBREL_TEST_SHADER";

class LogPage : public NimbrelTest {
protected:
    /// Plays one frame and returns the page that is left and, without its footer, the page of the
    /// rows that `expected` names on the day of the run.
    template <class Expected>
    std::pair<std::string, std::string> Play(Expected expected) {
        constexpr double patience = 60.0;
        std::string page;
        std::string wanted;
        std::string day;
        do { // once more when the day changed meanwhile
            day = Today();
            wanted = OpenPage(expected());
            WriteFile("Vell_log.html", "of an earlier run"); // to be written over
            StartStepped(1000.0);
            WaitForOrderlyEnd(patience);
            page = ReadLogText();
        } while (day != Today());
        return {page, wanted};
    }

    /// What the driver says about a vertex shader, asked by a program that has nothing of the
    /// engine. Without `source` the shader is compiled without ever having been given a text.
    std::string DriverOn(const char* source) {
        WriteFile("subject.vert", source ? source : "");
        const std::string self = std::filesystem::read_symlink("/proc/self/exe");
        const Tools::Ending end =
            Tools::Run({.arguments = {self, "--gtest_also_run_disabled_tests",
                                      "--gtest_filter=Subject.DISABLED_*"},
                        .added = {{"DISPLAY", display->Name()},
                                  {shaderVariable, source ? "subject.vert" : ""},
                                  {"ASAN_OPTIONS", "detect_leaks=0"}}},
                       60.0);
        EXPECT_EQ(end.exitStatus, 0) << end.output << end.errors;
        return ReadFile(messageFile);
    }
};

template <class Function>
Function* Fetch(const char* name) {
    return reinterpret_cast<Function*>(SDL_GL_GetProcAddress(name));
}

std::string CompileAndAsk(const std::string& path) {
    const GLuint shader = Fetch<GLuint(GLenum)>("glCreateShader")(GL_VERTEX_SHADER);
    if (!path.empty()) {
        const std::string source = ReadFile(path);
        const GLchar* text = source.c_str();
        Fetch<void(GLuint, GLsizei, const GLchar* const*, const GLint*)>("glShaderSource")(
            shader, 1, &text, nullptr);
    }
    Fetch<void(GLuint)>("glCompileShader")(shader);
    std::array<GLchar, 4096> message{};
    Fetch<void(GLuint, GLsizei, GLsizei*, GLchar*)>("glGetShaderInfoLog")(shader, message.size(),
                                                                          nullptr, message.data());
    return message.data();
}

} // namespace

// Not a test: the program that asks the driver for the tests below.
TEST(Subject, DISABLED_Writes_down_what_the_driver_says) {
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0);
    ASSERT_NE(SDL_SetVideoMode(16, 16, 32, SDL_OPENGL), nullptr);
    const char* path = std::getenv(shaderVariable);
    ASSERT_NE(path, nullptr);
    WriteFile(messageFile, CompileAndAsk(path));
    SDL_Quit();
}

TEST(LogPageCheck, Names_the_first_line_that_differs) {
    EXPECT_TRUE(Same("one\ntwo\n", "one\ntwo\n"));
    const std::string changed = Same("one\ntwo\n", "one\ntoo\n").message();
    EXPECT_EQ(changed, "line 2: expected \"too\", found \"two\"; 8 bytes expected, 8 found");
    const std::string shorter = Same("one\n", "one\ntwo\n").message();
    EXPECT_EQ(shorter, "line 2: expected \"two\", found \"\"; 8 bytes expected, 4 found");
}

TEST_F(LogPage, Of_a_whole_run_has_every_row_in_order_byte_for_byte) {
    LinkData();
    const bool lightmap = ReadMeshFile("Data/Gfx/City/city.xt3dstatic").lightmap;
    const auto [page, wanted] = Play([&] { return Started() + Loaded() + Freed(lightmap); });
    EXPECT_TRUE(Same(page, wanted + footer));
}

TEST_F(LogPage, Of_damaged_data_tells_every_picture_once_and_everything_that_is_wrong) {
    WriteDamagedData();
    const auto [page, wanted] = Play([] { return Started() + loadedOfDamagedData + Freed(true); });
    EXPECT_TRUE(Same(page, wanted + footer));
}

TEST_F(LogPage, Of_a_run_without_any_data_names_all_of_it) {
    const std::string driver = DriverOn(nullptr);
    const auto [page, wanted] = Play([&] {
        const Rows city =
            ShaderMissing("Data/Gfx/City/shader.vert", "Data/Gfx/City/shader.frag", driver);
        const Rows wisp =
            ShaderMissing("Data/Gfx/Wisp/billboard.vert", "Data/Gfx/Wisp/billboard.frag", driver);
        return Started() + NotLoaded(city, wisp) + Freed(false);
    });
    EXPECT_TRUE(Same(page, wanted + footer));
}

// Whichever of the two texts does not compile, the row names the vertex text and the message is the
// vertex shader's; that is intended.
TEST_F(LogPage, Shows_the_drivers_message_under_a_shader_that_does_not_compile) {
    const std::string ofBroken = DriverOn(brokenShader);
    const std::string ofSound = DriverOn(soundShader);
    ASSERT_NE(ofBroken, "");
    WriteFile("Data/Gfx/City/shader.vert", brokenShader);
    WriteFile("Data/Gfx/City/shader.frag", "void main() { gl_FragColor = vec4(1.0); }\n");
    WriteFile("Data/Gfx/Wisp/billboard.vert", soundShader);
    WriteFile("Data/Gfx/Wisp/billboard.frag", "void main() { gl_FragColor = nothing; }\n");
    const auto [page, wanted] = Play([&] {
        const Rows city =
            Rows{{"Vertex Shader", "ERROR", "Data/Gfx/City/shader.vert"}} + Message(ofBroken);
        const Rows wisp =
            Rows{{"Pixel Shader", "ERROR", "Data/Gfx/Wisp/billboard.vert"}} + Message(ofSound);
        return Started() + NotLoaded(city, wisp) + Freed(false);
    });
    EXPECT_TRUE(Same(page, wanted + footer));
}

TEST_F(LogPage, Of_a_program_that_was_killed_has_all_rows_and_no_footer) {
    LinkData();
    const std::string before = OpenPage(Started() + Loaded());
    Start();
    WaitForPlaying();
    run.reset(); // kills it
    const std::string page = ReadLogText();
    if (page != before) { // the day may have changed
        EXPECT_TRUE(Same(page, OpenPage(Started() + Loaded())));
    }
}
