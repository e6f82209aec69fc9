// The doctor itself wherever the demo cannot run: it says why, and what to do about it.

#include "tests/support/demo_data.h"
#include "tests/support/scratch.h"
#include "tools/stage/display.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <set>

using ::testing::AllOf;
using ::testing::HasSubstr;

namespace {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

struct Place {
    const char* name;
    Words server;               ///< changes to the X server's options
    Tools::Environment added;   ///< to the environment, in which DISPLAY names that server
    Words removed;              ///< from it
    std::set<std::string> rows; ///< that fail
    std::string finding;        ///< in one of them, and so in the verdict's sentence
    const char* advice;         ///< in each of them
};

/// The driver keeps an extension to itself. One that every driver has today takes all of its kind
/// along; without shaders it calls itself older than it is.
Place Without(const char* name, const std::string& extension, const std::set<std::string>& rows) {
    const std::size_t prefix =
        extension.find("EXT_") == std::string::npos ? 0 : 3; // as it is looked for
    return {name,
            {},
            {{"MESA_EXTENSION_OVERRIDE", '-' + extension}},
            {},
            rows,
            "missing (" + extension.substr(prefix) + "): the demo ends at once",
            "env -u MESA_EXTENSION_OVERRIDE ./play"};
}

const char* const xvfb = "xvfb-run -a -s \"-screen 0 1280x1024x24 -noreset\"";
const std::set<std::string> inEveryDriver = {"shader_objects", "vertex_buffers", "point_sprites",
                                             "framebuffers", "multitexture"};

const std::vector<Place> places = {
    {"No_display", {}, {}, {"DISPLAY"}, {"display"}, "there is no display", xvfb},
    {"Neither_display_nor_terminal",
     {},
     {},
     {"DISPLAY", "TERM"},
     {"display"},
     "DISPLAY is not set",
     xvfb},
    {"Number_that_no_display_has",
     {},
     {{"DISPLAY", ":98765"}},
     {},
     {"display"},
     "no X server answers at DISPLAY=:98765",
     xvfb},
    {"Display_of_somebody_else",
     {"-auth", "key"},
     {{"XAUTHORITY", "/nowhere"}},
     {},
     {"display"},
     "turns programs of this user away, saying \"Authorization required",
     "env -u DISPLAY ./play"},
    {"Driver_of_SDL_without_OpenGL",
     {},
     {{"SDL_VIDEODRIVER", "dummy"}},
     {},
     {"display"},
     "SDL_VIDEODRIVER has SDL draw by its driver dummy",
     "env -u SDL_VIDEODRIVER ./play"},
    {"Display_without_GLX",
     {"-extension", "GLX"},
     {},
     {},
     {"opengl"},
     "this X server has no GLX",
     "+extension GLX"},
    {"Display_of_eight_bits",
     {"-screen", "0", "1280x1024x8"},
     {},
     {},
     {"opengl"},
     "the screen has 8 bits a pixel",
     "-screen 0 1280x1024x24"},
    {"Driver_that_is_not_installed",
     {},
     {{"LIBGL_DRIVERS_PATH", "/nowhere"}},
     {},
     {"opengl"},
     "ended with exit status 1, saying \"libGL error",
     "libgl1-mesa-dri"},
    Without("No_shader_objects", "GL_ARB_shader_objects", inEveryDriver),
    Without("No_vertex_program", "GL_ARB_vertex_program", {"vertex_program"}),
    Without("No_vertex_shader", "GL_ARB_vertex_shader", {"opengl", "vertex_shader"}),
    Without("No_vertex_buffers", "GL_ARB_vertex_buffer_object", inEveryDriver),
    Without("No_point_sprites", "GL_ARB_point_sprite", inEveryDriver),
    Without("No_framebuffer_objects", "GL_EXT_framebuffer_object", inEveryDriver),
};

class DoctorSurroundings : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* other : {"WAYLAND_DISPLAY", "SDL_VIDEODRIVER"})
            unsetenv(other); // there is what each test says, and nothing else
        MakeDemoData();
        // A display's key of 16 bytes, as xauth writes it: for any host, for display 0.
        WriteFile("key", std::string("\xff\xff\0\0\0\0\0\x12MIT-MAGIC-COOKIE-1\0\x10", 28) +
                             std::string(16, 'k'));
    }

    static Tools::Ending Doctor(const Words& arguments, Tools::Environment added,
                                const Words& removed) {
        added.insert({{"TERM", "xterm"}, {"ALSA_CONFIG_PATH", "/dev/null"}});
        Words command = arguments;
        command.insert(command.begin(), NIMBREL_BINARY_DIR "/tools/doctor/nimbrel_doctor");
        return Tools::Run({.arguments = command, .added = added, .removed = removed}, 100.0);
    }

    ScratchDir scratch;
};

class Unusable : public DoctorSurroundings, public ::testing::WithParamInterface<Place> {};

} // namespace

TEST_P(Unusable, Is_told_with_what_to_do_about_it) {
    const Place& place = GetParam();
    const Tools::VirtualDisplay server(place.server);
    Tools::Environment added = place.added;
    added.insert({"DISPLAY", server.Name()});
    const Tools::Ending outcome = Doctor({"--json"}, added, place.removed);
    EXPECT_FALSE(outcome.timedOut);
    EXPECT_LT(outcome.seconds, 15.0);
    ASSERT_EQ(outcome.exitStatus, 1) << outcome.output << outcome.errors;

    const Json page = Json::parse(outcome.output);
    EXPECT_EQ(page.at("verdict"), "fail");
    EXPECT_THAT(page.at("sentence").get<std::string>(),
                AllOf(HasSubstr("Nimbrel cannot run here: "), HasSubstr(place.finding)));
    std::set<std::string> failed;
    for (const Json& row : page.at("rows")) {
        if (row.at("state") != "fail" || row.at("detail").get<bool>())
            continue;
        failed.insert(row.at("id").get<std::string>());
        EXPECT_THAT(row.at("advice").get<std::string>(), HasSubstr(place.advice));
    }
    EXPECT_EQ(failed, place.rows);
}

INSTANTIATE_TEST_SUITE_P(Place, Unusable, ::testing::ValuesIn(places),
                         [](const auto& place) { return std::string(place.param.name); });

// Whether the demo then comes up is a matter of luck; either way the display's row warns.
TEST_F(DoctorSurroundings, Server_that_starts_over_is_found_out) {
    const Tools::VirtualDisplay server({"-reset"});
    const Tools::Ending outcome =
        Doctor({"--json", "--seconds", "0.2"}, {{"DISPLAY", server.Name()}}, {});
    const Json page = Json::parse(outcome.output);
    for (const Json& row : page.at("rows"))
        if (row.at("id") == "display") {
            EXPECT_EQ(row.at("state"), "warn");
            EXPECT_THAT(row.at("advice").get<std::string>(), HasSubstr(xvfb));
        }
    EXPECT_THAT(outcome.output, HasSubstr("the X server starts over"));
}
