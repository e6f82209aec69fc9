// The program behind ./movie where there is no OpenGL to draw with: it says so, and leaves nothing.

#include "tests/movie/film_test_base.h"

#include <algorithm>

#include <gmock/gmock.h>

using ::testing::HasSubstr;

namespace {

struct Place {
    const char* name;
    std::vector<std::string> server;  ///< changes to the X server's options
    Tools::Environment added;         ///< to the environment, in which DISPLAY names that server
    std::vector<std::string> removed; ///< from it
    const char* complaint;
};

const char* const noWindow = "./movie: cannot open a window with OpenGL: ";
const char* const lacking =
    "./movie: this OpenGL lacks what the show needs (see ./movie --doctor)\n";

const Place places[] = {
    {"No_display", {}, {}, {"DISPLAY"}, noWindow},
    {"Neither_display_nor_terminal", {}, {}, {"DISPLAY", "TERM"}, noWindow},
    {"Display_without_GLX", {"-extension", "GLX"}, {}, {}, noWindow},
    {"Display_of_eight_bits", {"-screen", "0", "1280x1024x8"}, {}, {}, noWindow},
    {"No_framebuffer_objects",
     {},
     {{"MESA_EXTENSION_OVERRIDE", "-GL_EXT_framebuffer_object"}},
     {},
     lacking},
};

using Words = std::vector<std::string>;

const Words modes[] = {{"--end", "0.2", "out.mp4"},
                       {"--at", "3", "out.png"},
                       {"--sheet", "--every", "50", "out.png"},
                       {"--explain", "3", "out.html"},
                       {"--verify", "--references", NIMBREL_SOURCE_DIR "/tools/verify/reference"},
                       {"--verify", "--renew", "--references", "reference"}};

class UnusableForFilm : public FilmTest {
protected:
    void SetUp() override {
        MakeDemoData();
        WriteFile("Vell_log.html", "the viewer's");
        std::filesystem::create_directory("temporary");
    }

    static Tools::Ending Film(const Place& place, const Words& arguments) {
        const Tools::VirtualDisplay server(place.server);
        Tools::Environment added = place.added;
        added.insert({{"DISPLAY", server.Name()},
                      {"TERM", "xterm"},
                      {"TMPDIR", std::filesystem::absolute("temporary")},
                      // A library that ends the program leaves what it has.
                      {"ASAN_OPTIONS", "detect_leaks=0"},
                      {"ALSA_CONFIG_PATH", "/dev/null"}});
        Words command = arguments;
        command.insert(command.begin(), filmProgram);
        return Tools::Run({.arguments = command, .added = added, .removed = place.removed}, 60.0);
    }

    /// Fails unless it ended by itself with status 1, and the folders are as they were.
    static void ExpectFailureThatLeavesNothing(const Tools::Ending& end) {
        EXPECT_FALSE(end.timedOut);
        EXPECT_EQ(end.exitStatus, 1);
        EXPECT_EQ(ReadFile("Vell_log.html"), "the viewer's");
        EXPECT_EQ(Files(), Words({"Data", "Vell_log.html", "temporary"}));
        EXPECT_TRUE(std::filesystem::is_empty("temporary"));
    }

    /// What lies in the working directory.
    static Words Files() {
        Words names;
        for (const auto& entry : std::filesystem::directory_iterator("."))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
};

class Unusable : public UnusableForFilm, public ::testing::WithParamInterface<Place> {};

/// Lines of the driver's own, which tell what it was made to hold back.
std::string WithoutWarnings(const std::string& output) {
    std::istringstream lines(output);
    std::string kept;
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with("Warning: extension '"))
            kept += line + '\n';
    return kept;
}

} // namespace

TEST_P(Unusable, Is_where_every_look_at_the_show_says_so_and_leaves_nothing_behind) {
    for (const Words& mode : modes) {
        SCOPED_TRACE(mode.front());
        const Tools::Ending end = Film(GetParam(), mode);
        ExpectFailureThatLeavesNothing(end);
        EXPECT_THAT(end.errors, HasSubstr(GetParam().complaint));
        EXPECT_THAT(end.errors, HasSubstr("(see ./movie --doctor)\n"));
        EXPECT_EQ(WithoutWarnings(end.output), "");
    }
}

INSTANTIATE_TEST_SUITE_P(Place, Unusable, ::testing::ValuesIn(places),
                         [](const auto& place) { return std::string(place.param.name); });

// Xlib ends the program that asked for what the driver could not do.
TEST_F(UnusableForFilm, Library_that_ends_the_program_is_quoted_and_nothing_is_left_behind) {
    const Place place = {"No_driver", {}, {{"LIBGL_DRIVERS_PATH", "/nowhere"}}, {}, "libGL error"};
    for (const Words& mode : modes) {
        SCOPED_TRACE(mode.front());
        const Tools::Ending end = Film(place, mode);
        ExpectFailureThatLeavesNothing(end);
        EXPECT_THAT(end.errors, HasSubstr(place.complaint));
    }
}
