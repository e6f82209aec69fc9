// The production where there is nothing to draw with: it ends at once and in order, and the log
// says why. And where a library below it ends the program: what is ours does not crash.

#include "tests/support/demo_data.h"
#include "tests/support/log_page.h"
#include "tests/system/expected_page.h"
#include "tests/system/nimbrel_test.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <sched.h>

using ::testing::HasSubstr;

namespace {

/// Seconds in which the demo has found that there is no OpenGL, and ended.
constexpr double atOnce = sanitized ? 10.0 : 1.0;

/// What libraries may say on standard output; the demo itself says nothing there.
enum class Words {
    None,
    TextScreen, ///< SDL looks for another screen, and may take the terminal for one
    Warning     ///< the driver's, one line
};

/// A place without a usable OpenGL.
struct Place {
    const char* name;
    std::vector<std::string> server;  ///< changes to the X server's options
    Tools::Environment added;         ///< to the environment, in which DISPLAY names that server
    std::vector<std::string> removed; ///< from it
    Words words;
};

/// The driver keeps to itself one of the extensions that the engine looks for.
Place Without(const char* name, const std::string& extension) {
    return {name, {}, {{"MESA_EXTENSION_OVERRIDE", '-' + extension}}, {}, Words::Warning};
}

const std::vector<Place> places = {
    {"No_display", {}, {}, {"DISPLAY"}, Words::TextScreen},
    {"No_display_and_no_text_screen", {}, {{"SDL_VIDEODRIVER", "x11"}}, {"DISPLAY"}, Words::None},
    {"Number_that_no_display_has", {}, {{"DISPLAY", ":98765"}}, {}, Words::TextScreen},
    {"Name_that_is_no_display", {}, {{"DISPLAY", "screen"}}, {}, Words::TextScreen},
    {"Display_without_GLX", {"-extension", "GLX"}, {}, {}, Words::None},
    {"Display_of_eight_bits", {"-screen", "0", "1280x1024x8"}, {}, {}, Words::None},
    {"Driver_of_SDL_without_OpenGL", {}, {{"SDL_VIDEODRIVER", "dummy"}}, {}, Words::None},
    Without("No_shader_objects", "GL_ARB_shader_objects"),
    Without("No_vertex_program", "GL_ARB_vertex_program"),
    Without("No_vertex_shader", "GL_ARB_vertex_shader"),
    Without("No_vertex_buffers", "GL_ARB_vertex_buffer_object"),
    Without("No_point_sprites", "GL_ARB_point_sprite"),
    Without("No_framebuffer_objects", "GL_EXT_framebuffer_object"),
};

/// What this process starts has one processor, as long as the object lives.
class SingleProcessor {
public:
    SingleProcessor() {
        sched_getaffinity(0, sizeof all, &all);
        cpu_set_t one;
        CPU_ZERO(&one);
        for (int i = 0; i < CPU_SETSIZE && CPU_COUNT(&one) == 0; ++i)
            if (CPU_ISSET(i, &all))
                CPU_SET(i, &one);
        sched_setaffinity(0, sizeof one, &one);
    }
    ~SingleProcessor() { sched_setaffinity(0, sizeof all, &all); }
    SingleProcessor(const SingleProcessor&) = delete;
    SingleProcessor& operator=(const SingleProcessor&) = delete;

private:
    cpu_set_t all{};
};

class Surroundings : public NimbrelTest {
protected:
    void SetUp() override {
        for (const char* other : {"WAYLAND_DISPLAY", "SDL_VIDEODRIVER"})
            unsetenv(other); // there is what each test says, and nothing else
        MakeDemoData();
    }

    void StartIn(Tools::Environment added, const std::vector<std::string>& removed = {}) {
        added.insert({"TERM", "xterm"}); // every system knows this one
        StartAnywhere(std::move(added), removed);
    }

    /// Fails unless the demo ended by itself with this status.
    static void ExpectEnd(const Tools::Ending& end, int exitStatus) {
        EXPECT_FALSE(end.timedOut);
        EXPECT_EQ(end.signal, 0) << Complaint(end);
        EXPECT_EQ(LeakCheckerFell(end) ? exitStatus : end.exitStatus, exitStatus) << Complaint(end);
    }

    /// Runs the demo, which has to end at once, in order and without a complaint, and to leave a
    /// page with one row: the engine did not start.
    Tools::Ending ExpectRefusal(const Tools::Environment& added,
                                const std::vector<std::string>& removed = {}) {
        Tools::Ending end;
        int attempts = 3; // a machine that was busy with something else gets another chance
        do {
            StartIn(added, removed);
            end = run->Wait(patience);
        } while (end.seconds > atOnce && --attempts > 0);
        EXPECT_LE(end.seconds, atOnce);
        ExpectEnd(end, 0);
        EXPECT_EQ(Complaint(end), "");
        EXPECT_TRUE(
            Same(ReadLogText(), OpenPage({{"InitEngine", "ERROR", "GLExtentions"}}) + footer));
        return end;
    }

    static constexpr double patience = 60.0; // seconds
};

/// Whether the words are nothing but what is allowed.
bool Are(Words allowed, const std::string& output) {
    const bool entered = output.find("\033[?1049h") != std::string::npos;
    const bool left = output.find("\033[?1049l") != std::string::npos;
    const auto lines = std::count(output.begin(), output.end(), '\n');
    switch (allowed) {
    case Words::None:
        break;
    case Words::TextScreen: // and the terminal is as it was before
        return output.empty() || (output.front() == '\033' && entered && left && lines == 0);
    case Words::Warning:
        return output.empty() || (output.starts_with("Warning: extension '") && lines == 1);
    }
    return output.empty();
}

class Unusable : public Surroundings, public ::testing::WithParamInterface<Place> {};

} // namespace

TEST_P(Unusable, Is_where_the_demo_ends_at_once_and_the_log_says_so) {
    const Tools::VirtualDisplay server(GetParam().server);
    Tools::Environment added = GetParam().added;
    added.insert({"DISPLAY", server.Name()});
    const Tools::Ending end = ExpectRefusal(added, GetParam().removed);
    EXPECT_TRUE(Are(GetParam().words, end.output)) << end.output;
}

INSTANTIATE_TEST_SUITE_P(Place, Unusable, ::testing::ValuesIn(places),
                         [](const auto& place) { return std::string(place.param.name); });

TEST_F(Surroundings, Server_that_has_ended_is_no_display) {
    auto server = std::make_unique<Tools::VirtualDisplay>();
    const std::string name = server->Name();
    server.reset();
    ExpectRefusal({{"DISPLAY", name}});
}

// Xlib ends a program whose display is gone, and with it, in order, what is ours.
TEST_F(Surroundings, Display_that_goes_while_the_demo_plays_leaves_a_complete_page) {
    auto server = std::make_unique<Tools::VirtualDisplay>();
    const std::string name = server->Name();
    StartIn({{"DISPLAY", name}});
    ASSERT_NO_FATAL_FAILURE(WaitForPlaying());
    const std::string page = ReadLogText();
    server.reset();
    const Tools::Ending end = run->Wait(patience);
    ExpectEnd(end, 1);
    EXPECT_EQ(end.output, "");
    EXPECT_THAT(Complaint(end), HasSubstr(name)) << "it says which display";
    EXPECT_TRUE(Same(ReadLogText(), page + footer));
}

namespace {

/// A place where a library ends the program before the engine is started.
struct Ending {
    const char* name;
    Tools::Environment added;
    std::vector<std::string> removed;
    const char* complaint; ///< the library's
};

const Ending endings[] = {
    {"Display_that_cannot_make_a_context", {{"LIBGL_ALWAYS_INDIRECT", "1"}}, {}, "X Error"},
    {"Driver_that_is_not_installed", {{"LIBGL_DRIVERS_PATH", "/nowhere"}}, {}, "libGL error"},
    {"Neither_display_nor_terminal", {}, {"DISPLAY", "TERM"}, "Error opening terminal"},
};

class EndedBelow : public Surroundings, public ::testing::WithParamInterface<Ending> {};

} // namespace

TEST_P(EndedBelow, Demo_ends_with_the_librarys_words_and_status) {
    Tools::Environment added = GetParam().added;
    // What the library had at that moment, it leaves behind.
    added.insert({{"DISPLAY", display->Name()},
                  {"ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0"}});
    StartIn(added, GetParam().removed);
    const Tools::Ending end = run->Wait(patience);
    ExpectEnd(end, 1);
    EXPECT_THAT(end.errors, HasSubstr(GetParam().complaint));
    EXPECT_FALSE(std::filesystem::exists("Vell_log.html"));
}

INSTANTIATE_TEST_SUITE_P(Place, EndedBelow, ::testing::ValuesIn(endings),
                         [](const auto& place) { return std::string(place.param.name); });

// Nothing of it waits for a thread that would need another one.
TEST_F(Surroundings, With_a_single_processor_are_enough) {
    const SingleProcessor processor;
    constexpr double step = 10.0; // seconds a frame
    StartStepped(step);
    WaitForOrderlyEnd(60.0);
    EXPECT_GT(Reported("last_frame_time"), runningTime - step);
    EXPECT_EQ(Reported("errors"), 0) << report["first_error"];
}
