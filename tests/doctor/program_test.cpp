// The doctor itself, as it is called: on a machine where all is well but the sound, and on others.

#include "tools/doctor/advice.h"

#include "tests/doctor/published_data.h"
#include "tools/stage/display.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>

namespace fs = std::filesystem;

using Json = nlohmann::json;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr bool sanitized = true; // such a run takes small data, so that it ends in time
#else
constexpr bool sanitized = false;
#endif

class DoctorProgram : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        for (const char* other : {"WAYLAND_DISPLAY", "SDL_VIDEODRIVER"})
            unsetenv(other); // there is the one display that each test names
        display = std::make_unique<Tools::VirtualDisplay>();
    }
    static void TearDownTestSuite() { display.reset(); }

    static Tools::Ending Run(std::vector<std::string> arguments,
                             Tools::Environment environment = {}) {
        constexpr double patience = 100.0; // seconds: the doctor's own are less
        arguments.insert(arguments.begin(), NIMBREL_BINARY_DIR "/tools/doctor/nimbrel_doctor");
        environment.insert({{"DISPLAY", display->Name()}, {"ALSA_CONFIG_PATH", "/dev/null"}});
        return Tools::Run({.arguments = arguments, .added = environment}, patience);
    }

    static const Json& Find(const Json& page, const std::string& id) {
        for (const Json& row : page.at("rows"))
            if (row.at("id") == id)
                return row;
        throw std::runtime_error("no row " + id);
    }

    static std::string TextOf(const Json& object, const std::string& key) { return object.at(key); }

    static std::string StateOf(const Json& page, const std::string& id) {
        return Find(page, id).at("state");
    }

    static inline std::unique_ptr<Tools::VirtualDisplay> display;
    ScratchDir scratch;
};

/// The ids in the first column of the documentation's table, that of the single files left out.
std::set<std::string> DocumentedIds() {
    std::set<std::string> ids;
    std::ifstream in(NIMBREL_SOURCE_DIR "/docs/doctor.md");
    for (std::string line; std::getline(in, line);) {
        const std::string cell = line.substr(0, line.find('|', 1));
        for (std::size_t at = cell.find('`'); line[0] == '|' && at != std::string::npos;) {
            const std::size_t end = cell.find('`', at + 1);
            ids.insert(cell.substr(at + 1, end - at - 1));
            at = cell.find('`', end + 1);
        }
    }
    ids.erase("data:PATH");
    return ids;
}

} // namespace

TEST_F(DoctorProgram, Finds_a_machine_fit_that_has_no_sound_and_disturbs_nothing) {
    if (sanitized)
        PublishTinyData();
    else
        PublishRealData();
    WriteFile("Vell_log.html", "the last run's page");
    const Tools::Ending outcome = Run({"--json"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    EXPECT_LT(outcome.seconds, 15.0);
    EXPECT_EQ(ReadFile("Vell_log.html"), "the last run's page");

    const Json page = Json::parse(outcome.output);
    EXPECT_EQ(page.at("verdict"), "warn");
    EXPECT_THAT(TextOf(page, "sentence"), StartsWith("Nimbrel runs here, but: there is no sound"));
    std::set<std::string> ids;
    for (const Json& row : page.at("rows")) {
        const std::string id = row.at("id");
        if (!row.at("detail")) {
            EXPECT_TRUE(ids.insert(id).second) << id << " stands twice";
        }
        // How fast this machine is, and by what it draws, is not the matter here.
        const bool open = id == "sound" || id == "speed" || id == "renderer";
        EXPECT_TRUE(open || row.at("state") == "ok") << id << ": " << row.at("finding");
    }
    EXPECT_EQ(ids, DocumentedIds());
    EXPECT_EQ(StateOf(page, "sound"), "warn");
    const Json& speed = Find(page, "speed").at("values");
    EXPECT_GT(speed.at("fps"), 0.0);
    EXPECT_LE(speed.at("median_ms"), speed.at("slow_ms"));
    EXPECT_LE(speed.at("slow_ms"), speed.at("longest_ms"));
    EXPECT_GT(Find(page, "texture_size").at("values").at("width"), 0.0);
}

TEST_F(DoctorProgram, Virtual_display_of_the_documentation_is_the_one_that_is_advised) {
    EXPECT_THAT(ReadFile(NIMBREL_SOURCE_DIR "/docs/doctor.md"),
                HasSubstr("\n" + Doctor::virtualDisplay + " build/release/demo/nimbrel\n"));
}

TEST_F(DoctorProgram, Json_is_taken_by_another_reader) {
    if (std::system("command -v python3 >/dev/null") != 0)
        GTEST_SKIP() << "needs python3";
    const Tools::Ending outcome = Run({"--json"}, {{"DISPLAY", ""}});
    WriteFile("page.json", outcome.output);
    EXPECT_EQ(std::system("python3 -m json.tool page.json >/dev/null"), 0) << outcome.output;
}

TEST_F(DoctorProgram, Names_a_missing_file_and_what_the_show_lacks) {
    PublishTinyData();
    fs::remove(waterPicture);
    const Tools::Ending outcome = Run({"--seconds", "0.2"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr("Nimbrel runs here, but: Data/Gfx/water.jpg (missing: "
                                          "water without waves)"));
    EXPECT_THAT(outcome.output, HasSubstr("rows that say ERROR: Image Data/Gfx/water.jpg"));
    EXPECT_THAT(outcome.output, HasSubstr("What to do:\n  - bring the files of Data/ back"));
}

TEST_F(DoctorProgram, Names_a_damaged_file) {
    PublishTinyData();
    Damage(waterPicture);
    const Json page = Json::parse(Run({"--json", "--seconds", "0.2"}).output);
    EXPECT_EQ(StateOf(page, "data"), "warn");
    EXPECT_EQ(StateOf(page, std::string("data:") + waterPicture), "warn");
    EXPECT_THAT(TextOf(page, "sentence"), HasSubstr("Data/Gfx/water.jpg (damaged or changed)"));
}

TEST_F(DoctorProgram, Says_that_it_was_started_in_another_folder) {
    const Json page = Json::parse(Run({"--json"}).output);
    EXPECT_EQ(page.at("verdict"), "fail");
    EXPECT_THAT(TextOf(page, "sentence"), HasSubstr("there is no Data/ in "));
    EXPECT_THAT(page.at("advice").at(0).get<std::string>(),
                HasSubstr("change into Nimbrel's folder"));
}

TEST_F(DoctorProgram, Refuses_a_command_line_that_it_does_not_know) {
    using Words = std::vector<std::string>;
    for (const Words& words :
         {Words{"--jsno"}, Words{"--json", "file"}, Words{"--seconds"}, Words{"--seconds", "0"},
          Words{"--seconds", "3s"}, Words{"--seconds", "1e9"}, Words{"--seconds", "nan"}}) {
        const Tools::Ending outcome = Run(words);
        EXPECT_EQ(outcome.exitStatus, 2) << words.back();
        EXPECT_EQ(outcome.output, "") << words.back();
        EXPECT_THAT(outcome.errors, HasSubstr("See ./movie --doctor --help.\n")) << words.back();
    }
}

TEST_F(DoctorProgram, Explains_itself) {
    const Tools::Ending outcome = Run({"--help"});
    EXPECT_EQ(outcome.exitStatus, 0);
    for (const char* word : {"--json", "--seconds", "Exit status", "\"rows\"", "\"verdict\""})
        EXPECT_THAT(outcome.output, HasSubstr(word));
}
