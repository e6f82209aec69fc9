#include "tools/doctor/graphics.h"

#include "tools/doctor/glgroups.h"

#include "engine/core/GLExtensions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

using Doctor::Row;
using Doctor::State;
using Doctor::Table;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using Tools::Facts;
using Tools::IsolatedRun;

namespace {

/// What a machine on which all is well tells.
Facts GoodFacts() {
    Facts facts = {{"sdl", "1.2.15"},
                   {"driver", "x11"},
                   {"vendor", "Maker"},
                   {"renderer", "Card 3000"},
                   {"version", "2.0 build 7"},
                   {"glsl", "1.10"},
                   {"units", "7"},
                   {"texture_size", "2048"},
                   {"multitexture", "1"},
                   {"any_size", "1"},
                   {"target", "1"},
                   {"complete", "1"}};
    for (const Doctor::GlGroup& group : Doctor::GlGroups())
        facts[group.id] = "";
    return facts;
}

IsolatedRun Look(const Facts& facts) {
    IsolatedRun look;
    look.facts = facts;
    return look;
}

Table Rows(const Facts& facts) {
    return Doctor::GraphicsRows(Look(facts), true, {"Data/a.png", 2048, 100});
}

/// The rows when one fact is another.
Table RowsWith(const std::string& fact, const std::string& value) {
    Facts facts = GoodFacts();
    facts[fact] = value;
    return Rows(facts);
}

Table RowsWithout(const std::vector<std::string>& names) {
    Facts facts = GoodFacts();
    for (const std::string& name : names)
        facts.erase(name);
    return Rows(facts);
}

const Row& Find(const Table& table, const std::string& id) {
    const auto found =
        std::find_if(table.begin(), table.end(), [&](const Row& row) { return row.id == id; });
    if (found == table.end())
        throw std::runtime_error("no row " + id);
    return *found;
}

/// The rows that are not fine, by id.
std::vector<std::string> NotOk(const Table& table) {
    std::vector<std::string> ids;
    for (const Row& row : table)
        if (row.state != State::Ok)
            ids.push_back(row.id);
    return ids;
}

using Ids = std::vector<std::string>;

} // namespace

TEST(Graphics, All_is_well_on_the_least_machine_that_can_run_the_demo) {
    EXPECT_EQ(NotOk(Rows(GoodFacts())), Ids());
}

struct Lack {
    const char* fact;
    const char* value;
    const char* row;
    State state;
    const char* finding;
};

class GraphicsLack : public ::testing::TestWithParam<Lack> {};

TEST_P(GraphicsLack, Is_told_by_its_row_alone_with_what_to_do) {
    const Lack& lack = GetParam();
    const Table table = RowsWith(lack.fact, lack.value);
    EXPECT_EQ(NotOk(table), Ids{lack.row});
    EXPECT_EQ(Find(table, lack.row).state, lack.state);
    EXPECT_THAT(Find(table, lack.row).finding, HasSubstr(lack.finding));
    EXPECT_THAT(Find(table, lack.row).advice, HasSubstr("libgl1-mesa-dri"));
}

INSTANTIATE_TEST_SUITE_P(
    Each, GraphicsLack,
    ::testing::Values(Lack{"version", "1.5.0", "opengl", State::Fail, "older than 2.0"},
                      Lack{"version", "", "opengl", State::Fail, "the window has no OpenGL"},
                      Lack{"glsl", "1.05", "glsl", State::Fail, "older than 1.10"},
                      Lack{"glsl", "", "glsl", State::Fail, "there is none"},
                      Lack{"multitexture", "0", "multitexture", State::Fail, "GL_ARB_multitexture"},
                      Lack{"units", "6", "texture_units", State::Warn, "only 6 of 7"},
                      Lack{"texture_size", "2047", "texture_size", State::Warn,
                           "Data/a.png has 2048 x 100 pixels"},
                      Lack{"any_size", "0", "any_size", State::Fail,
                           "GL_ARB_texture_non_power_of_two"},
                      Lack{"target", "0", "render_target", State::Fail, "cannot draw into"}),
    [](const auto& lack) { return std::to_string(lack.index) + "_" + lack.param.row; });

TEST(Graphics, Missing_group_says_what_the_demo_does) {
    for (const Doctor::GlGroup& group : Doctor::GlGroups()) {
        const Table table = RowsWith(group.id, "glSomethingARB");
        EXPECT_EQ(NotOk(table), Ids{group.id});
        const Row& row = Find(table, group.id);
        EXPECT_EQ(row.state, State::Fail);
        EXPECT_EQ(row.finding, "missing (glSomethingARB): the demo ends at once");
        EXPECT_THAT(row.advice, StartsWith("install the driver: libgl1-mesa-dri"));
    }
}

TEST(Graphics, Settings_that_may_take_opengl_away_are_to_be_tried_without) {
    Facts facts = GoodFacts();
    facts["settings"] = "LIBGL_ALWAYS_INDIRECT MESA_EXTENSION_OVERRIDE";
    EXPECT_EQ(NotOk(Rows(facts)), Ids()) << "nothing is wrong with them";
    facts["framebuffers"] = "EXT_framebuffer_object";
    EXPECT_THAT(Find(Rows(facts), "framebuffers").advice,
                AllOf(HasSubstr("env -u LIBGL_ALWAYS_INDIRECT -u MESA_EXTENSION_OVERRIDE ./play;"),
                      HasSubstr("libgl1-mesa-dri")));
}

TEST(Graphics, Groups_are_those_that_the_engine_fetches) {
    // Counted in the header of the entry points.
    constexpr std::size_t counts[] = {39, 62, 5, 4, 2, 9};
    for (std::size_t i = 0; i < Doctor::GlGroups().size(); ++i) {
        const Doctor::GlGroup& group = Doctor::GlGroups()[i];
        std::size_t count = 0;
        while (group.names[count] != nullptr)
            ++count;
        EXPECT_EQ(count, counts[i]) << group.id;
    }
    EXPECT_STREQ(Doctor::GlGroups()[0].extension, "GL_ARB_shader_objects");
    EXPECT_STREQ(Doctor::GlGroups()[5].extension, "EXT_framebuffer_object");
}

TEST(Graphics, Sdl_is_told_from_the_layer_over_sdl_2) {
    EXPECT_EQ(Find(RowsWith("sdl", "1.2.15"), "sdl").finding, "SDL 1.2.15");
    EXPECT_EQ(Find(RowsWith("sdl", "1.2.50"), "sdl").finding,
              "the compatibility layer 1.2.50 over SDL 2");
    Facts facts = GoodFacts();
    facts["sdl"] = "1.2.64";
    facts["sdl2"] = "2.26.5";
    EXPECT_EQ(Find(Rows(facts), "sdl").finding,
              "the compatibility layer 1.2.64 over SDL 2 (2.26.5)");
}

TEST(Graphics, Software_renderer_is_told_from_a_graphics_card) {
    const auto kind = [](const char* renderer) {
        return Find(RowsWith("renderer", renderer), "renderer").values.front().text;
    };
    EXPECT_EQ(kind("llvmpipe (LLVM 15.0.6, 256 bits)"), "software");
    EXPECT_EQ(kind("softpipe"), "software");
    EXPECT_EQ(kind("Software Rasterizer"), "software");
    EXPECT_EQ(kind("Mesa Intel(R) UHD Graphics 620 (KBL GT2)"), "hardware");
    EXPECT_EQ(kind("NVIDIA GeForce GTX 1650/PCIe/SSE2"), "hardware");
}

TEST(Graphics, Without_a_display_only_sdl_was_looked_at) {
    const Table table =
        Doctor::GraphicsRows(Look({{"sdl", "1.2.15"}}), false, {"Data/a.png", 2048, 100});
    EXPECT_EQ(Find(table, "display").state, State::Fail);
    EXPECT_THAT(Find(table, "display").finding, HasSubstr("DISPLAY is not set"));
    EXPECT_THAT(Find(table, "display").advice, HasSubstr("xvfb"));
    for (const Row& row : table)
        if (row.id != "display" && row.id != "sdl") {
            EXPECT_EQ(row.state, State::Unknown) << row.id;
        }
    EXPECT_EQ(table.size(), Rows(GoodFacts()).size()) << "always the same rows";
}

TEST(Graphics, Display_that_does_not_answer_is_quoted) {
    const Table table = Doctor::GraphicsRows(
        Look({{"sdl", "1.2.15"}, {"no_video", "No available video device"}}), true, {});
    EXPECT_EQ(Find(table, "display").finding, "no display answers: No available video device");
}

TEST(Graphics, Server_that_does_not_answer_is_named) {
    const Facts facts = {{"sdl", "1.2.15"}, {"display", ":9"}, {"no_server", "1"}};
    const Table table = Doctor::GraphicsRows(Look(facts), true, {});
    EXPECT_EQ(Find(table, "display").state, State::Fail);
    EXPECT_EQ(Find(table, "display").finding, "no X server answers at DISPLAY=:9");
    EXPECT_THAT(Find(table, "display").advice, HasSubstr("-noreset"));
    EXPECT_EQ(Find(table, "opengl").state, State::Unknown);
}

TEST(Graphics, Server_that_turns_us_away_is_quoted) {
    IsolatedRun look = Look({{"sdl", "1.2.15"}, {"display", ":9"}, {"no_server", "1"}});
    look.ending.errors = "Authorization required";
    const Row row = Find(Doctor::GraphicsRows(look, true, {}), "display");
    EXPECT_EQ(row.state, State::Fail);
    EXPECT_EQ(row.finding, "the X server at DISPLAY=:9 turns programs of this user away, saying "
                           "\"Authorization required\"");
    EXPECT_THAT(row.advice, HasSubstr("env -u DISPLAY ./play"));
}

TEST(Graphics, Server_that_starts_over_is_a_warning) {
    const Table table = RowsWith("resets", "1");
    EXPECT_EQ(NotOk(table), Ids{"display"});
    EXPECT_EQ(Find(table, "display").state, State::Warn);
    EXPECT_EQ(Find(table, "display").finding,
              "the X server starts over whenever its last program leaves, and may then turn the "
              "demo away");
    EXPECT_THAT(Find(table, "display").advice, HasSubstr("the option -noreset"));
    EXPECT_EQ(NotOk(RowsWith("resets", "0")), Ids());
}

TEST(Graphics, Driver_that_the_environment_chose_is_blamed_on_it) {
    Facts facts = {{"sdl", "1.2.15"}, {"driver", "dummy"}, {"no_window", "No OpenGL"}};
    facts["settings"] = "SDL_VIDEODRIVER";
    const Row row = Find(Doctor::GraphicsRows(Look(facts), true, {}), "display");
    EXPECT_EQ(row.state, State::Fail);
    EXPECT_EQ(row.finding, "SDL_VIDEODRIVER has SDL draw by its driver dummy, which has no OpenGL");
    EXPECT_THAT(row.advice, EndsWith("env -u SDL_VIDEODRIVER ./play"));
}

TEST(Graphics, Driver_that_draws_letters_is_no_display) {
    const Table table = Doctor::GraphicsRows(
        Look({{"sdl", "1.2.15"}, {"driver", "caca"}, {"no_window", "No OpenGL"}}), true, {});
    EXPECT_EQ(Find(table, "display").state, State::Fail);
    EXPECT_EQ(Find(table, "display").finding,
              "no display answers: SDL is left with the video driver caca");
    EXPECT_THAT(Find(table, "display").advice, HasSubstr("xvfb"));
    EXPECT_EQ(Find(table, "opengl").state, State::Unknown) << "its driver is not to blame";
}

TEST(Graphics, Window_without_opengl_is_quoted) {
    const Table table = Doctor::GraphicsRows(
        Look({{"sdl", "1.2.15"}, {"driver", "x11"}, {"no_window", "No GLX"}}), true, {});
    EXPECT_EQ(Find(table, "display").state, State::Ok);
    EXPECT_EQ(Find(table, "opengl").finding, "no window with OpenGL can be had: No GLX");
    EXPECT_EQ(Find(table, "glsl").state, State::Unknown);
}

TEST(Graphics, Server_without_glx_and_screen_of_few_bits_are_named) {
    Facts facts = {{"sdl", "1.2.15"}, {"driver", "x11"}, {"no_window", "No visual"}};
    const auto openGl = [&] { return Find(Doctor::GraphicsRows(Look(facts), true, {}), "opengl"); };
    facts["depth"] = "24";
    facts["glx"] = "0";
    EXPECT_THAT(openGl().finding, StartsWith("this X server has no GLX"));
    EXPECT_THAT(openGl().advice, HasSubstr("+extension GLX"));
    facts["depth"] = "8"; // at which a server has none
    EXPECT_EQ(openGl().finding, "the screen has 8 bits a pixel, too few for a window with OpenGL");
    EXPECT_THAT(openGl().advice, HasSubstr("-screen 0 1280x1024x24"));
    facts["depth"] = "15"; // there is OpenGL with as many
    facts["glx"] = "1";
    EXPECT_EQ(openGl().finding, "no window with OpenGL can be had: No visual");
}

TEST(Graphics, Driver_that_crashes_is_no_reason_to_crash) {
    IsolatedRun look = Look({{"sdl", "1.2.15"}, {"driver", "x11"}});
    look.ending.signal = SIGSEGV;
    const Table table = Doctor::GraphicsRows(look, true, {});
    EXPECT_EQ(Find(table, "opengl").state, State::Fail);
    EXPECT_EQ(Find(table, "opengl").finding,
              "looking at OpenGL was ended by a crash (Segmentation fault)");
    look.facts.erase("driver");
    EXPECT_EQ(Find(Doctor::GraphicsRows(look, true, {}), "display").finding,
              "opening the display was ended by a crash (Segmentation fault)");
}

TEST(Graphics, Question_that_the_driver_cannot_be_asked_stays_open) {
    EXPECT_EQ(NotOk(RowsWithout({"target"})), Ids{"render_target"});
    EXPECT_EQ(Find(RowsWithout({"target"}), "render_target").state, State::Unknown);
}
