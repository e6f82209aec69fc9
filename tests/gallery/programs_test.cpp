// Every program of the gallery draws the picture that docs/gallery.png shows of it.

#include "tests/support/pixels.h"
#include "tests/support/scratch.h"
#include "tests/support/x11_events.h"
#include "tools/picture/tiles.h"
#include "tools/stage/display.h"

#include <gmock/gmock.h>

#include <X11/keysym.h>

#include <filesystem>
#include <map>
#include <memory>
#include <sstream>

namespace fs = std::filesystem;

namespace {

constexpr int columns = 3;        // of the sheet
constexpr double patience = 60.0; // seconds

// Another processor or driver rounds otherwise; that moves an edge here and there.
constexpr Thresholds otherDrivers = {.max = 8.0, .mean = 0.5, .failing = 0.01};

const fs::path root = NIMBREL_SOURCE_DIR;

struct Program {
    int number = 0;
    std::string name;
    std::string moment;
};

std::vector<std::string> Lines(const fs::path& file) {
    std::vector<std::string> lines;
    std::istringstream in(ReadFile(file));
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

/// Those of gallery/programs.
std::vector<Program> AllPrograms() {
    std::vector<Program> programs;
    for (const std::string& line : Lines(root / "gallery/programs")) {
        std::istringstream words(line);
        Program program{static_cast<int>(programs.size()), "", ""};
        if (!line.empty() && line[0] != '#' && words >> program.name >> program.moment)
            programs.push_back(program);
    }
    return programs;
}

fs::path FileOf(const Program& program) {
    return fs::path(NIMBREL_BINARY_DIR) / "gallery" / ("gallery_" + program.name);
}

std::string ProcessorName() {
    for (const std::string& line : Lines("/proc/cpuinfo"))
        if (line.starts_with("model name"))
            return line.substr(line.find(": ") + 2);
    return "";
}

/// What tests/gallery/pictures.sha256 says: who drew the pictures, and the sum of each.
struct Sums {
    std::string driver;
    std::map<std::string, std::string> ofFile;
};

Sums ReadSums() {
    Sums sums;
    for (const std::string& line : Lines(root / "tests/gallery/pictures.sha256")) {
        std::istringstream words(line);
        std::string sum, file;
        words >> sum >> file;
        if (sum == "#")
            sums.driver = line.substr(2);
        else
            sums.ofFile[file] = sum;
    }
    return sums;
}

std::string SumOf(const std::string& file) {
    const Tools::Ending end = Tools::Run({.arguments = {"sha256sum", file}}, patience);
    return end.output.substr(0, end.output.find(' '));
}

class Gallery : public ::testing::Test {
protected:
    static void SetUpTestSuite() { display = std::make_unique<Tools::VirtualDisplay>(); }
    static void TearDownTestSuite() { display.reset(); }

    /// The programs read what the tree's root holds; their log page stays here.
    Gallery() {
        for (const char* folder : {"Data", "gallery"})
            fs::create_directory_symlink(root / folder, folder);
    }

    static Tools::Environment Around() {
        return {{"DISPLAY", display->Name()}, {"ALSA_CONFIG_PATH", "/dev/null"}};
    }

    /// Has the program write its picture, at this moment; who drew it.
    static std::string Draw(const Program& program, const std::string& file,
                            const std::string& moment) {
        Tools::Environment around = Around();
        around["GALLERY_PICTURE"] = file;
        around["GALLERY_MOMENT"] = moment;
        const Tools::Ending end =
            Tools::Run({.arguments = {FileOf(program)}, .added = around}, patience);
        EXPECT_TRUE(end.InOrder()) << end.InWords();
        return end.output.substr(0, end.output.find('\n')) + ", " + ProcessorName();
    }

    ScratchDir scratch;
    static std::unique_ptr<Tools::VirtualDisplay> display;
};

std::unique_ptr<Tools::VirtualDisplay> Gallery::display;

class EachProgram : public Gallery, public ::testing::WithParamInterface<Program> {
protected:
    static Picture Expected(const Tools::Picture& half) {
        static const Tools::Picture sheet = Tools::ReadPng(root / "docs/gallery.png");
        return BottomUp(Tools::TileOf(sheet, columns, GetParam().number, half.width, half.height));
    }
};

} // namespace

TEST_P(EachProgram, Draws_its_picture_of_the_sheet) {
    static const Sums sums = ReadSums();
    const std::string file = GetParam().name + ".ppm";
    const bool same = Draw(GetParam(), file, GetParam().moment) == sums.driver;
    EXPECT_THAT(ReadFile("Vell_log.html"), testing::Not(testing::HasSubstr("ERROR")));
    const Tools::Picture half = Tools::Halved(Tools::ReadPpm(file));
    EXPECT_TRUE(Matches(BottomUp(half), Expected(half), same ? Thresholds{} : otherDrivers))
        << "gallery/run --renew takes it as it is now";
    if (same) {
        EXPECT_EQ(SumOf(file), sums.ofFile.at(file)) << "not the same in full size";
    }
}

INSTANTIATE_TEST_SUITE_P(Programs, EachProgram, ::testing::ValuesIn(AllPrograms()),
                         [](const auto& tested) { return tested.param.name; });

using Programs = Gallery;

TEST_F(Programs, Show_another_picture_at_another_moment) {
    const Program snow = AllPrograms().at(9);
    ASSERT_EQ(snow.name, "10_sprites");
    Draw(snow, "before.ppm", "6");
    Draw(snow, "after.ppm", "6.1");
    EXPECT_NE(SumOf("before.ppm"), SumOf("after.ppm"));
}

TEST_F(Programs, End_in_order_by_escape_and_by_their_window_s_button) {
    const Program window = AllPrograms().front();
    for (const bool escape : {true, false}) {
        Tools::Process program({.arguments = {FileOf(window)}, .added = Around()});
        ForeignWindow shown(display->Name(), "Vell 01: a window and its clear colour", 10.0);
        if (escape)
            shown.PressKey(XK_Escape);
        else
            shown.AskToClose();
        EXPECT_TRUE(program.Wait(10.0).InOrder()) << (escape ? "Escape" : "the button");
    }
}

TEST_F(Programs, Say_so_and_fail_where_there_is_no_window_to_be_had) {
    const Tools::Ending end = Tools::Run(
        {.arguments = {FileOf(AllPrograms().front())}, .added = {{"SDL_VIDEODRIVER", "dummy"}}},
        patience);
    EXPECT_EQ(end.exitStatus, 1);
    EXPECT_THAT(end.errors, testing::HasSubstr("No OpenGL here"));
}

TEST_F(Programs, Find_the_files_that_their_maker_makes) {
    const fs::path maker = fs::path(NIMBREL_BINARY_DIR) / "art/gallery/make_gallery";
    if (!fs::exists(maker))
        GTEST_SKIP() << "needs the art programs";
    ASSERT_TRUE(Tools::Run({.arguments = {maker, "made"}}, patience).InOrder());
    for (const fs::directory_entry& file : fs::recursive_directory_iterator("made"))
        if (file.is_regular_file()) {
            const fs::path kept = "gallery/data" / fs::relative(file.path(), "made");
            EXPECT_TRUE(ReadFile(file.path()) == ReadFile(kept)) << kept;
        }
}
