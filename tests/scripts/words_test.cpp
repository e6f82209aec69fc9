// Every script answers --help, and refuses words that it does not know, before it installs, builds
// or draws anything.

#include "tests/scripts/script_stage.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>

using ::testing::HasSubstr;

namespace {

constexpr int wrongUsage = 2;

class Words : public ScriptStage {
protected:
    Words() {
        // Whatever takes time or changes something, as far as the scripts go for it.
        for (const char* name : {"apt-get", "dpkg-query", "sudo", "Xvfb", "ctest", "gcovr",
                                 "clang-format", "clang-tidy", "shellcheck", "flock"})
            StandIn(name);
    }

    /// Fails unless the words are refused for this reason, and nothing else is done.
    void ExpectRefused(const std::string& script, const std::vector<std::string>& words,
                       const std::string& reason) {
        const Tools::Ending end = Run(script, words);
        EXPECT_EQ(end.exitStatus, wrongUsage) << reason;
        EXPECT_EQ(end.errors, script + ": " + reason + "\nSee " + script + " --help.\n");
        EXPECT_EQ(Calls(), "");
    }
};

/// In the folder that the script is called from.
std::string Path(const std::string& name) {
    return std::filesystem::absolute(name);
}

class EachScript : public Words, public ::testing::WithParamInterface<std::string> {};

std::string TestName(const ::testing::TestParamInfo<std::string>& script) {
    std::string name = script.param;
    std::replace_if(
        name.begin(), name.end(), [](char letter) { return !std::isalnum(letter); }, '_');
    return name;
}

} // namespace

TEST_P(EachScript, Answers_help_and_does_nothing_else) {
    for (const char* word : {"--help", "-h"}) {
        const Tools::Ending end = Run(GetParam(), {word});
        EXPECT_EQ(end.exitStatus, 0) << end.errors;
        EXPECT_EQ(end.errors, "");
        EXPECT_THAT(end.output, HasSubstr(GetParam())) << "it tells how it is called";
        EXPECT_EQ(Calls(), "");
    }
}

TEST_P(EachScript, Refuses_a_word_that_it_does_not_know) {
    const std::string folder = GetParam().find('/') == std::string::npos ? "./" : "";
    ExpectRefused(folder + GetParam(), {"--no-such-word"}, "there is no option --no-such-word");
}

INSTANTIATE_TEST_SUITE_P(Scripts, EachScript, ::testing::ValuesIn(AllScripts()), TestName);

TEST_F(Words, Are_all_that_the_scripts_list_shows) {
    // Or a script that is not found would not be tested.
    const std::vector<std::string> scripts = AllScripts();
    for (const char* script :
         {"play", "movie", "test", "bench/film", "bench/mesh", "bench/run", "art/make",
          "gallery/run", "packaging/make", "tools/doctor/sums", "docs/make-pictures", "tests/style",
          "tests/coverage", "tests/packages", "tests/faults/run", "tests/fuzz/run", "web/make",
          "tests/web/check"})
        EXPECT_NE(std::find(scripts.begin(), scripts.end(), script), scripts.end()) << script;
}

TEST_F(Words, Of_scripts_that_take_none_are_one_too_many) {
    for (const char* script : {"./play", "bench/film", "bench/mesh"})
        ExpectRefused(script, {"moon"}, std::string("\"moon\" is one word too many: ") + script);
}

TEST_F(Words, Of_tests_must_match_the_name_of_one) {
    ExpectRefused("./test", {"no_such_test"},
                  "needs a part or what a test's name matches, not \"no_such_test\": ./test water");
    ExpectRefused("./test", {"style", "format"}, "\"format\" is one word too many: ./test water");
}

TEST_F(Words, Of_a_soak_are_numbers_and_go_with_nothing_else) {
    ExpectRefused("./test", {"soak", "--shows", "many"},
                  "--shows needs a whole number from 1 to 1000, not \"many\": --shows 20");
    ExpectRefused("./test", {"style", "--shows", "3"}, "--shows goes with ./test soak only");
}

TEST_F(Words, Of_art_must_name_what_is_made) {
    ExpectRefused("art/make", {"moon"},
                  "needs names of what it makes (sky, water, logo, fish, wisps, textures, views, "
                  "city, lightmap, music or stems), not \"moon\": art/make fish wisps");
    ExpectRefused("art/make", {"--build"}, "--build needs a folder: --build build/release");
}

TEST_F(Words, Of_pictures_must_name_one_of_the_list) {
    ExpectRefused("docs/make-pictures", {"moon.png"},
                  "needs names that --list shows, not \"moon.png\": docs/make-pictures basin.png");
    ExpectRefused("docs/make-pictures", {"basinxpng"},
                  "needs names that --list shows, not \"basinxpng\": docs/make-pictures basin.png");
    ExpectRefused("docs/make-pictures", {"--list", "basin.png"},
                  "\"basin.png\" is one word too many: --list");
}

TEST_F(Words, Of_benches_must_be_what_they_count_and_name) {
    ExpectRefused("bench/mesh", {"--rounds", "0"},
                  "--rounds needs a whole number from 1 to 1000, not \"0\": --rounds 21");
    ExpectRefused("bench/city", {"--every", "never"},
                  "--every needs a number of seconds from 0.01 to 10, not \"never\": --every 0.2");
    // The steps of art/city/steps.h.
    ExpectRefused(
        "bench/city", {"order", "moon"},
        "needs a step (hidden, order, marks or curtain), not \"moon\": bench/city hidden");
}

TEST_F(Words, Of_coverage_must_be_one_folder) {
    ExpectRefused("tests/coverage", {}, "needs a folder: tests/coverage build/asan");
    ExpectRefused("tests/coverage", {Path("nowhere")},
                  "cannot read " + Path("nowhere") +
                      ": there is no such folder; name one that is there");
}

TEST_F(Words, Of_faults_must_be_one) {
    ExpectRefused("tests/faults/run", {"water", "sky"},
                  "\"sky\" is one word too many: tests/faults/run water");
}

TEST_F(Words, Of_help_may_name_a_mode) {
    EXPECT_EQ(Run("movie", {"--doctor", "--help"}).output,
              "./movie --doctor              says whether and how the show can run here\n"
              "\n"
              "--json          with --doctor: as JSON\n"
              "--seconds S     with --doctor: plays for S seconds (3)\n");
    EXPECT_EQ(Run("movie", {"-h", "--at"}).output,
              "./movie --at T OUT.png        the frame that the film shows at T seconds\n"
              "\n"
              "--fps RATE      frames a second: 60, 23.976 or 60000/1001\n");
    EXPECT_EQ(Calls(), "");
}

TEST_F(Words, Name_places_that_can_be_written_before_anything_is_built) {
    WriteFile("file", "");
    std::filesystem::create_directory("folder.png");
    const std::vector<std::vector<std::string>> modes = {{"OUT.mp4"},
                                                         {"--sheet", "OUT.png"},
                                                         {"--at", "97", "OUT.png"},
                                                         {"--verify", "OUT.png"},
                                                         {"--explain", "97", "OUT.html"},
                                                         {"--join", "OUT.mp4", Path("file")}};
    for (std::vector<std::string> words : modes) {
        std::string& out = *std::find_if(words.begin(), words.end(), [](const std::string& word) {
            return word.starts_with("OUT");
        });
        const std::string name = out.substr(3);
        out = Path("none/a" + name);
        ExpectRefused("./movie", words,
                      "cannot write " + out + ": there is no folder " + Path("none") +
                          "; make it first, or name another");
        out = Path("file/a" + name);
        ExpectRefused("./movie", words,
                      "cannot write " + out + ": " + Path("file") + " is no folder; name another");
        out = "/proc/a" + name; // where even root makes no files
        ExpectRefused("./movie", words,
                      "cannot write " + out +
                          ": the folder /proc takes no new files (No such file or "
                          "directory); name another folder");
    }
    ExpectRefused("./movie", {"--at", "97", Path("folder.png")},
                  "cannot write " + Path("folder.png") + ": it is a folder; name a file in it");
}

TEST_F(Words, Name_places_that_can_be_read_before_anything_is_built) {
    ExpectRefused("./movie", {"--join", "whole.mp4", Path("a.mp4")},
                  "cannot read " + Path("a.mp4") +
                      ": there is no such file; name one that is there");
    ExpectRefused("./movie", {"--verify", "--references", Path("none")},
                  "cannot read " + Path("none") +
                      ": there is no such folder; name one that is there");
    ExpectRefused("art/make", {"--check", "--data", Path("none"), "fish"},
                  "cannot read " + Path("none") +
                      ": there is no such folder; name one that is there");
}

TEST_F(Words, Name_folders_that_can_be_made_before_anything_is_built) {
    const std::string why = " (No such file or directory); name another";
    ExpectRefused("./movie", {"--verify", "--renew", "--references", "/proc/new"},
                  "cannot make the folder /proc/new" + why);
    ExpectRefused("art/make", {"--data", "/proc/new", "fish"},
                  "cannot make the folder /proc/new/Gfx/Fish" + why);
    ExpectRefused("docs/make-pictures", {"--into", "/proc/new"},
                  "cannot make the folder /proc/new" + why);
}

TEST_F(Words, Need_a_place_for_temporary_files) {
    for (const char* script : {"bench/city", "bench/film", "bench/run", "bench/mesh", "art/make"}) {
        const Tools::Ending end = Run(script, {}, {{"TMPDIR", Path("none")}});
        EXPECT_EQ(end.exitStatus, wrongUsage);
        EXPECT_EQ(end.errors, std::string(script) +
                                  ": cannot make a folder for temporary files in " + Path("none") +
                                  "; set TMPDIR to one that takes files\nSee " + script +
                                  " --help.\n");
        EXPECT_EQ(Calls(), "");
    }
}
