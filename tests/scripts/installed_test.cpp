// The installed Nimbrel, in a folder that nobody prepared for it: its launcher plays what ./play
// plays.

#include "tests/support/log_page.h"
#include "tests/support/scratch.h"
#include "tools/stage/display.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>
#include <sstream>

#include <csignal>
#include <elf.h>

namespace fs = std::filesystem;

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

constexpr double patience = 60.0; // seconds

/// Demo time of the frame that is compared: city, water and sky are in it.
constexpr const char* moment = "25";
constexpr const char* frameFile = "frame_0025.000.ppm";

void WriteScript(const fs::path& path, const std::string& text) {
    WriteFile(path, "#!/bin/bash\n" + text + "\n");
    fs::permissions(path, fs::perms::owner_all);
}

/// Installed once, by what `cpack` installs by, in a folder whose name is no easy one.
class Installed : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        scratch = std::make_unique<ScratchDir>();
        display = std::make_unique<Tools::VirtualDisplay>();
        prefix = scratch->Path() / "an odd (place)";
        home = scratch->Path() / "home";
        fs::create_directory(home);
        fs::create_directory("a folder");
        const Tools::Ending end =
            Tools::Run({.arguments = {"cmake", "--install", NIMBREL_BINARY_DIR, "--component",
                                      "Demo", "--prefix", prefix}},
                       patience);
        ASSERT_EQ(end.exitStatus, 0) << end.errors;
        Watch(prefix / "libexec/nimbrel/nimbrel");
    }

    static void TearDownTestSuite() {
        display.reset();
        scratch.reset();
    }

    void SetUp() override { fs::current_path(scratch->Path() / "a folder"); }
    void TearDown() override { fs::current_path(scratch->Path()); }

    /// Puts a script in the place of the program, which plays two frames of it and takes a picture
    /// of the second into the folder that SHOTS names.
    static void Watch(const fs::path& program) {
        fs::rename(program, program.string() + ".real");
        WriteScript(program, "exec 9<'" NIMBREL_BINARY_DIR "/tools/probe/libnimbrel_probe.so'\n"
                             "export LD_PRELOAD=\"/proc/self/fd/9 ${LD_PRELOAD-}\"\n"
                             "export NIMBREL_PROBE_SHOT_DIR=$SHOTS\n"
                             "export NIMBREL_PROBE_TIMES=0," +
                                 std::string(moment) + " NIMBREL_PROBE_SHOTS=" + moment +
                                 "\nexec \"$0.real\"");
    }

    static Tools::Environment Around(const std::string& displayName) {
        return {{"DISPLAY", displayName},
                {"HOME", home},
                {"XDG_STATE_HOME", ""},
                {"SHOTS", fs::current_path()},
                {"ALSA_CONFIG_PATH", "/dev/null"}};
    }

    static Tools::Ending Play(const fs::path& launcher, const std::string& displayName,
                              std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.begin(), launcher);
        return Tools::Run({.arguments = arguments, .added = Around(displayName)}, patience);
    }

    /// The frame that the demo of the build folder shows at that moment.
    static std::string FrameOfTheBuild() {
        fs::create_directory("build");
        fs::current_path("build");
        fs::create_directory("Data");
        fs::create_directory_symlink(NIMBREL_SOURCE_DIR "/Data/Gfx", "Data/Gfx");
        fs::create_symlink(NIMBREL_BINARY_DIR "/demo/nimbrel", "nimbrel");
        Watch("nimbrel");
        Play(fs::absolute("nimbrel"), display->Name());
        fs::current_path("..");
        return ReadFile(fs::path("build") / frameFile);
    }

    /// Every installed file, as seen from the prefix.
    static std::set<std::string> Files() {
        std::set<std::string> files;
        for (const auto& entry : fs::recursive_directory_iterator(prefix))
            if (entry.is_regular_file())
                files.insert(fs::relative(entry.path(), prefix));
        return files;
    }

    static std::unique_ptr<ScratchDir> scratch;
    static std::unique_ptr<Tools::VirtualDisplay> display;
    static fs::path prefix;
    static fs::path home;
};

std::unique_ptr<ScratchDir> Installed::scratch;
std::unique_ptr<Tools::VirtualDisplay> Installed::display;
fs::path Installed::prefix;
fs::path Installed::home;

} // namespace

TEST_F(Installed, Launcher_plays_the_show_of_the_build_and_leaves_its_page_with_the_user) {
    // The music is heard in real time, and what beats with it would not be the same twice.
    fs::rename(prefix / "share/nimbrel/Data/Musics", prefix / "Musics");
    const Tools::Ending end = Play(prefix / "bin/nimbrel", display->Name());
    fs::rename(prefix / "Musics", prefix / "share/nimbrel/Data/Musics");
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    EXPECT_EQ(end.errors, "");
    const fs::path page = home / ".local/state/nimbrel/Vell_log.html";
    EXPECT_THAT(end.output, EndsWith(page.string() + ": no row says ERROR.\n"));
    EXPECT_THAT(ReadFile(page), HasSubstr("Data/Gfx/City/city.xt3dstatic"));
    EXPECT_THAT(ReadFile(page), EndsWith("</html>\n"));
    const std::string frame = ReadFile(frameFile);
    EXPECT_THAT(frame, StartsWith("P6\n960 89\n"));
    EXPECT_TRUE(frame == FrameOfTheBuild());
}

TEST_F(Installed, Launcher_plays_by_another_name_and_without_a_display) {
    fs::create_symlink(prefix / "bin/nimbrel", "link");
    const Tools::Ending end = Play(fs::absolute("link"), "");
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    EXPECT_THAT(end.errors, HasSubstr("No display here: playing on a virtual one"));
    EXPECT_THAT(end.output, EndsWith(": no row says ERROR.\n"));
}

TEST_F(Installed, Launcher_shows_the_picture_as_wide_as_the_screen_when_asked) {
    const Tools::Ending end = Play(prefix / "bin/nimbrel", display->Name(), {"--big"});
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    // The screen is 1280 wide, and 89 * 1280 / 960 = 118.67.
    EXPECT_THAT(ReadFile(frameFile), StartsWith("P6\n1280 119\n"));
}

TEST_F(Installed, Launcher_says_that_something_is_wrong_and_gives_the_demos_status) {
    fs::create_directory("other");
    fs::copy(prefix, "other", fs::copy_options::recursive);
    fs::remove("other/share/nimbrel/Data/Gfx/water.jpg");
    const Tools::Ending end = Play(fs::absolute("other/bin/nimbrel"), display->Name());
    EXPECT_EQ(end.exitStatus, 0);
    EXPECT_THAT(end.output, EndsWith(": rows that say ERROR: Image Data/Gfx/water.jpg\n"));
    EXPECT_THAT(end.errors, HasSubstr("Something is wrong here"));
    WriteScript("other/libexec/nimbrel/nimbrel", "exit 3");
    EXPECT_EQ(Play(fs::absolute("other/bin/nimbrel"), display->Name()).exitStatus, 3);
}

TEST_F(Installed, Launcher_presses_Escape_for_a_signal) {
    fs::create_directory("another");
    fs::copy(prefix, "another", fs::copy_options::recursive);
    fs::rename("another/libexec/nimbrel/nimbrel.real",
               "another/libexec/nimbrel/nimbrel"); // in real time
    Tools::Process run(
        {.arguments = {fs::absolute("another/bin/nimbrel")}, .added = Around(display->Name())});
    const fs::path page = home / ".local/state/nimbrel/Vell_log.html";
    fs::remove(page);
    for (double end = Tools::SteadySeconds() + patience; !fs::exists(page);)
        ASSERT_LT(Tools::SteadySeconds(), end);
    run.Signal(SIGTERM);
    EXPECT_EQ(run.Wait(patience).exitStatus, 128 + SIGTERM);
    EXPECT_THAT(ReadFile(page), EndsWith("</html>\n"));
}

TEST_F(Installed, Launcher_answers_help_and_refuses_what_it_does_not_know) {
    const auto run = [](const std::string& word) {
        return Tools::Run({.arguments = {prefix / "bin/nimbrel", word}}, patience);
    };
    EXPECT_THAT(run("--help").output, StartsWith("nimbrel "));
    const Tools::Ending end = run("--loud");
    EXPECT_EQ(end.exitStatus, 2);
    EXPECT_THAT(end.errors, HasSubstr("there is no option --loud\n"));
}

TEST_F(Installed, Files_have_all_of_the_data_and_programs_only_where_they_belong) {
    const std::set<std::string> files = Files();
    EXPECT_FALSE(fs::is_symlink(prefix / "share/nimbrel/Data")) << "Data/ may be one itself";
    const fs::path data = NIMBREL_SOURCE_DIR "/Data";
    for (const auto& entry : fs::recursive_directory_iterator(data)) {
        const std::string name = "share/nimbrel/Data/" + fs::relative(entry.path(), data).string();
        const bool wanted = entry.is_regular_file() && entry.path().filename() != "SHA256SUMS";
        EXPECT_EQ(files.contains(name), wanted) << name;
    }
    for (const std::string& file : files)
        EXPECT_EQ(ReadFile(prefix / file).starts_with(ELFMAG),
                  file.starts_with("libexec/nimbrel/") && file != "libexec/nimbrel/nimbrel")
            << file;
}

TEST_F(Installed, Files_for_the_desktop_name_what_is_installed) {
    const std::string entry = ReadFile(prefix / "share/applications/nimbrel.desktop");
    EXPECT_THAT(entry, HasSubstr("\nExec=nimbrel\n"));
    EXPECT_TRUE(fs::exists(prefix / "bin/nimbrel"));
    EXPECT_THAT(entry, HasSubstr("\nIcon=nimbrel\n"));
    EXPECT_TRUE(fs::exists(prefix / "share/icons/hicolor/scalable/apps/nimbrel.svg"));
    EXPECT_THAT(ReadFile(prefix / "share/metainfo/nimbrel.metainfo.xml"),
                HasSubstr(">nimbrel.desktop</launchable>"));
}

TEST_F(Installed, Files_have_a_page_of_eighty_plain_columns_for_the_scene) {
    std::istringstream lines(ReadFile(prefix / "share/doc/nimbrel/nimbrel.nfo"));
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(line.size(), 80U) << line;
        EXPECT_TRUE(std::all_of(line.begin(), line.end(), [](char c) {
            return c >= ' ' && c <= '~';
        })) << line;
    }
}
