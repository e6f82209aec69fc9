// The engine in a program of somebody else's: docs/use-the-library.md and
// docs/make-your-own-scene.md, line by line, in folders far from this tree.

#include "tests/support/pixels.h"
#include "tests/support/scratch.h"
#include "tests/support/x11_events.h"
#include "tools/stage/display.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>

#include <X11/keysym.h>

#include <filesystem>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;

namespace {

constexpr double patience = 240.0; // seconds, on a machine that has other things to do

/// What a page of docs/ has in the blocks that are opened by "```" and this label, one below the
/// other.
std::string Blocks(const std::string& page, const std::string& label) {
    const std::string text = ReadFile(fs::path(NIMBREL_SOURCE_DIR) / "docs" / page);
    const std::string opening = "```" + label + "\n";
    std::string blocks;
    for (std::size_t at = text.find(opening); at != std::string::npos;
         at = text.find(opening, at)) {
        at += opening.size();
        blocks += text.substr(at, text.find("```", at) - at);
    }
    if (blocks.empty())
        throw std::runtime_error(page + " has no block " + label);
    return blocks;
}

std::string Block(const std::string& label) {
    return Blocks("use-the-library.md", label);
}

std::string OfScene(const std::string& label) {
    return Blocks("make-your-own-scene.md", label);
}

/// What the program of the page shows, without its head: 200 x 200 pixels of (0.2, 0.4, 0.6) * 255
/// = (51, 102, 153). The square of 2 x 2 at distance 5, under 90 degrees, is 200 * 2 / (2 * 5) = 40
/// pixels wide and stands in the middle: 80 to 119.
std::string ExpectedPixels() {
    std::string pixels;
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x)
            pixels += x >= 80 && x < 120 && y >= 80 && y < 120 ? "\377\200" + std::string(1, '\0')
                                                               : "\063\146\231";
    return pixels;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

/// The user's home, with a folder for every way of use in which the tree lies as "nimbrel". What
/// one test builds there, the next ones find.
class Use : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        home = std::make_unique<ScratchDir>();
        display = std::make_unique<Tools::VirtualDisplay>();
    }

    static void TearDownTestSuite() {
        display.reset();
        home.reset();
    }

    void TearDown() override { fs::current_path(home->Path()); }

    /// Begins a project of this name, with the page's program.
    static void Begin(const std::string& name) {
        fs::create_directory(home->Path() / name);
        fs::current_path(home->Path() / name);
        fs::create_directory_symlink(NIMBREL_SOURCE_DIR, "nimbrel");
        WriteFile("main.cpp", Block("cpp main.cpp"));
    }

    /// Follows the other page, once, up to its program.
    static void BuildScene() {
        if (fs::exists(home->Path() / "scene"))
            return fs::current_path(home->Path() / "scene");
        Install();
        Begin("scene");
        for (const std::string file :
             {"text crystal.xt3dstatic", "cpp main.cpp", "cmake CMakeLists.txt"})
            WriteFile(file.substr(file.find(' ') + 1), OfScene(file));
        Told(OfScene("sh build"));
    }

    /// The page's CMakeLists.txt, the engine brought in by `way`.
    static void WriteLists(const std::string& way) {
        std::string lists = Block("cmake add_subdirectory");
        const std::string first = "add_subdirectory(nimbrel/engine)\n";
        lists.replace(lists.find(first), first.size(), way);
        WriteFile("CMakeLists.txt", lists);
    }

    /// Runs commands as the page gives them, in a home of its own; without optimisation, for the
    /// time that saves.
    static Tools::Ending Shell(const std::string& commands) {
        Tools::Environment around = {{"HOME", home->Path().string()},
                                     {"DISPLAY", display->Name()},
                                     {"CMAKE_GENERATOR", "Ninja"},
                                     {"CMAKE_BUILD_TYPE", "Debug"},
                                     {"CXXFLAGS", "-O0"}};
        if (fs::exists("/usr/bin/ccache")) { // then a file is compiled once, and not in every run
            around["CMAKE_CXX_COMPILER_LAUNCHER"] = "/usr/bin/ccache";
            around["CCACHE_BASEDIR"] = home->Path().string();
            around["CCACHE_DIR"] = NIMBREL_BINARY_DIR "/tests/consumer/ccache";
        }
        return Tools::Run({.arguments = {"/bin/bash", "-ec", commands}, .added = around}, patience);
    }

    static std::string Told(const std::string& commands) {
        const Tools::Ending end = Shell(commands);
        EXPECT_EQ(end.exitStatus, 0) << commands << end.output << end.errors;
        return end.output;
    }

    static void ExpectThePicture(const std::string& program) {
        Told(program);
        const std::string head = "P6 200 200 255\n";
        EXPECT_TRUE(ReadFile("picture.ppm") == head + ExpectedPixels());
    }

    /// Installs the engine, once, where the page says.
    static void Install() {
        if (fs::exists(home->Path() / "vell"))
            return;
        Begin("install");
        Told(Block("sh install"));
    }

    static std::unique_ptr<ScratchDir> home;
    static std::unique_ptr<Tools::VirtualDisplay> display;
};

std::unique_ptr<ScratchDir> Use::home;
std::unique_ptr<Tools::VirtualDisplay> Use::display;

} // namespace

TEST_F(Use, Pages_name_packages_that_the_scripts_install_too) {
    const std::string known = ReadFile(fs::path(NIMBREL_SOURCE_DIR) / "packaging/packages.sh");
    for (const std::string& packages : {Block("sh packages"), OfScene("sh packages")}) {
        std::istringstream in(packages);
        std::string name;
        in >> name >> name;
        while (in >> name)
            EXPECT_THAT(known, HasSubstr(name));
    }
}

TEST_F(Use, Folder_of_the_project_draws_the_picture) {
    Begin("folder");
    WriteFile("CMakeLists.txt", Block("cmake add_subdirectory"));
    Told(Block("sh build"));
    ExpectThePicture("build/show");
}

TEST_F(Use, Folder_of_the_project_is_not_installed_with_it) {
    Begin("guest");
    WriteLists("add_subdirectory(nimbrel/engine)\n");
    Told("cmake -S . -B build >configured\ncmake --install build --prefix out");
    EXPECT_FALSE(fs::exists("out"));
}

TEST_F(Use, Fetched_content_draws_the_picture_as_a_shared_library_too) {
    Begin("fetched");
    WriteFile("main.cpp", Block("cpp main.cpp") + "const void* use = &glGenBuffers;\n");
    WriteLists("set(BUILD_SHARED_LIBS ON)\nset(VELL_INSTALL ON)\n" + Block("cmake FetchContent"));
    Told(Block("sh build"));
    ExpectThePicture("build/show");
    EXPECT_THAT(Told("readelf -d build/show"), HasSubstr("[libvell.so.1]"));
}

TEST_F(Use, Installed_package_draws_the_picture) {
    Install();
    Begin("found");
    WriteLists(Block("cmake find_package"));
    Told(Block("sh find"));
    ExpectThePicture("build/show");
}

TEST_F(Use, Installed_library_draws_the_picture_by_pkg_config) {
    Install();
    Begin("pkg-config");
    Told(Block("sh pkg-config"));
    ExpectThePicture("./show");
}

TEST_F(Use, Page_of_a_scene_leads_from_an_empty_folder_to_its_picture) {
    EXPECT_EQ(OfScene("sh install"), Block("sh install"));
    BuildScene();
    EXPECT_EQ(Lines(ReadFile("crystal.xt3dstatic")).size(), 12U);
    Told("g++ -shared -fPIC nimbrel/tests/consumer/still_time.cpp -o still.so\n"
         "LD_PRELOAD=./still.so " +
         OfScene("sh picture"));
    EXPECT_THAT(ReadFile("Vell_log.html"), Not(HasSubstr("ERROR")));
    const std::string shown = NIMBREL_SOURCE_DIR "/docs/make-your-own-scene.png";
    // Another processor rounds otherwise, which moves an edge here and there.
    EXPECT_TRUE(Matches(BottomUp(Tools::ReadPpm("picture.ppm")), BottomUp(Tools::ReadPng(shown)),
                        {.max = 8.0, .mean = 0.5, .failing = 0.01}))
        << "docs/make-pictures make-your-own-scene.png makes it anew";
}

TEST_F(Use, Scene_of_the_page_ends_by_escape) {
    BuildScene();
    Tools::Process scene({.arguments = {"build/scene"}, .added = {{"DISPLAY", display->Name()}}});
    ForeignWindow window(display->Name(), "Three crystals", 10.0);
    window.PressKey(XK_Escape);
    EXPECT_TRUE(scene.Wait(10.0).InOrder());
}

TEST_F(Use, Installed_headers_need_no_other_headers_of_the_tree) {
    Install();
    Begin("headers");
    fs::remove("nimbrel");
    std::string all;
    const fs::path include = home->Path() / "vell/include/Vell";
    for (const auto& entry : fs::recursive_directory_iterator(include / "engine"))
        if (entry.path().extension() == ".h")
            all += "#include <" + fs::relative(entry.path(), include).string() + ">\n";
    EXPECT_THAT(all, HasSubstr("<engine/scene/scenemanager.h>"));
    EXPECT_THAT(all, Not(HasSubstr("errorguard")));
    WriteFile("all.cpp", all);
    Told("g++ -std=c++20 -Wall -Werror -fsyntax-only -I\"$HOME/vell/include/Vell\" all.cpp");
}

TEST_F(Use, Installed_package_refuses_other_versions_and_unknown_components) {
    Install();
    Begin("refused");
    WriteFile("CMakeLists.txt", "cmake_minimum_required(VERSION 3.25)\n"
                                "project(Asks LANGUAGES CXX)\n"
                                "foreach(wanted 1.0 2.0 1.0%COMPONENTS%sound 1.0%COMPONENTS%tea)\n"
                                "string(REPLACE % \";\" words ${wanted})\n"
                                "find_package(Vell ${words} QUIET)\n"
                                "list(APPEND found ${Vell_FOUND})\n"
                                "endforeach()\n"
                                "message(STATUS \"answers ${found}\")\n");
    EXPECT_THAT(Told("cmake -S . -B build -DCMAKE_PREFIX_PATH=$HOME/vell"),
                HasSubstr("answers 1;0;0;0\n"));
}

TEST_F(Use, Installed_package_brings_the_sound_when_it_is_asked_for) {
    Install();
    fs::current_path(home->Path() / "install");
    Told(Block("sh install") + "cmake -S nimbrel/engine -B build-vell -DVELL_SOUND=ON\n"
                               "cmake --build build-vell\ncmake --install build-vell\n");
    Begin("sound");
    WriteLists("find_package(Vell 1.0 REQUIRED COMPONENTS sound)\nlink_libraries(Vell::Sound)\n");
    WriteFile("main.cpp", "#include <fmod.h>\n"
                          "int main() {\n"
                          "    FMOD_SYSTEM* system = nullptr;\n"
                          "    return FMOD_System_Create(&system) != FMOD_OK ||\n"
                          "           FMOD_System_Release(system) != FMOD_OK;\n"
                          "}\n");
    Told(Block("sh find") + "build/show");
}

TEST_F(Use, Shared_library_stands_on_opengl_glu_libjpeg_and_libpng_alone) {
    fs::current_path(home->Path() / "fetched");
    std::set<std::string> needed;
    for (const std::string& line : Lines(Told("readelf -d build/_deps/vell-build/libvell.so")))
        if (const std::size_t at = line.find("[lib"); line.find("(NEEDED)") != std::string::npos)
            needed.insert(line.substr(at + 1, line.find(".so") - at - 1));
    const std::set<std::string> allowed = {"libGL",    "libGLX",   "libOpenGL", "libGLU",
                                           "libjpeg",  "libpng16", "libstdc++", "libm",
                                           "libgcc_s", "libc"};
    EXPECT_THAT(needed, IsSupersetOf({"libGLU", "libjpeg", "libpng16"}));
    EXPECT_THAT(allowed, IsSupersetOf(needed));
}

TEST_F(Use, Shared_library_shows_what_its_headers_declare_and_no_more) {
    fs::current_path(home->Path() / "fetched");
    const std::string symbols =
        Told("nm -DC --defined-only build/_deps/vell-build/libvell.so | cut -c 20-");
    EXPECT_THAT(symbols, HasSubstr("Vell::SceneManager::Draw()@@VELL_1\n"));
    EXPECT_THAT(symbols, HasSubstr("Vell_glGenBuffers@@VELL_1\n"));
    EXPECT_THAT(symbols, Not(HasSubstr("ErrorGuard")));
    for (const std::string& line : Lines(symbols))
        EXPECT_THAT(line, ::testing::MatchesRegex(
                              "((vtable for |typeinfo for |typeinfo name for )?Vell::.*|VELL_1|"
                              "Vell_gl[A-Z].*|(ARB|EXT)[A-Za-z]*Proc(Name|Address)@.*|"
                              "(CheckForExtension|InitializeGLExtension|InitGLEXT)\\(.*)"));
}

TEST_F(Use, Shared_library_is_installed_apart_for_running_and_for_building) {
    fs::current_path(home->Path() / "fetched");
    Told("cmake --install build --prefix run --component Runtime\n"
         "cmake --install build --prefix develop --component Development\n");
    EXPECT_THAT(Lines(Told("find run ! -type d | LC_ALL=C sort")),
                ElementsAre("run/lib/libvell.so.1", "run/lib/libvell.so.1.0.0"));
    const auto development = Lines(Told("find develop ! -type d"));
    EXPECT_THAT(
        development,
        IsSupersetOf({"develop/lib/libvell.so", "develop/lib/cmake/Vell/VellConfig.cmake",
                      "develop/lib/pkgconfig/vell.pc", "develop/include/Vell/engine/core/core.h"}));
}
