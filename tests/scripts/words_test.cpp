// Every script answers --help, and refuses words that it does not know, before it installs, builds
// or draws anything.

#include "tests/scripts/script_stage.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>

using ::testing::HasSubstr;
using ::testing::StartsWith;

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

    /// Fails unless the words are refused for this reason, beside what would be right.
    void ExpectRefused(const std::string& script, const std::vector<std::string>& words,
                       const std::string& reason) {
        const Tools::Ending end = Run(script, words);
        EXPECT_EQ(end.exitStatus, wrongUsage) << reason;
        EXPECT_THAT(end.errors, HasSubstr(script + ": " + reason + "\n"));
        EXPECT_EQ(end.errors.find(Run(script, {"--help"}).output), 0U) << "no usage in:\n"
                                                                       << end.errors;
        EXPECT_EQ(Calls(), "");
    }
};

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
    const Tools::Ending end = Run(GetParam(), {"--no-such-word"});
    EXPECT_EQ(end.exitStatus, wrongUsage);
    EXPECT_THAT(end.errors, HasSubstr("--no-such-word"));
    EXPECT_THAT(end.errors, StartsWith(Run(GetParam(), {"--help"}).output));
    EXPECT_EQ(Calls(), "");
}

INSTANTIATE_TEST_SUITE_P(Scripts, EachScript, ::testing::ValuesIn(AllScripts()), TestName);

TEST_F(Words, Are_all_that_the_scripts_list_shows) {
    // Or a script that is not found would not be tested.
    const std::vector<std::string> scripts = AllScripts();
    for (const char* script :
         {"play", "movie", "test", "bench/film", "bench/frames", "bench/mesh", "art/make",
          "gallery/run", "packaging/make", "tools/doctor/sums", "docs/make-pictures", "tests/style",
          "tests/coverage", "tests/packages", "tests/faults/run"})
        EXPECT_NE(std::find(scripts.begin(), scripts.end(), script), scripts.end()) << script;
}

TEST_F(Words, Of_tests_must_match_the_name_of_one) {
    ExpectRefused("test", {"no_such_test"}, "no test's name matches \"no_such_test\"");
    ExpectRefused("test", {"style", "format"}, "one word too many: \"format\"");
}

TEST_F(Words, Of_art_must_name_what_is_made) {
    ExpectRefused("art/make", {"moon"}, "nothing is called \"moon\"");
    ExpectRefused("art/make", {"--build"}, "--build needs a value");
}

TEST_F(Words, Of_coverage_must_be_one_folder) {
    ExpectRefused("tests/coverage", {}, "expected one build folder, found none");
    ExpectRefused("tests/coverage", {"nowhere"}, "there is no folder nowhere");
}

TEST_F(Words, Of_faults_must_be_one) {
    ExpectRefused("tests/faults/run", {"water", "sky"}, "one word too many: \"sky\"");
}

TEST_F(Words, Of_the_film_must_be_what_its_mode_takes) {
    const struct {
        std::vector<std::string> words;
        const char* reason;
    } cases[] = {
        {{"out.avi"}, "expected a file name that ends in .mp4, .mov or .mkv, found \"out.avi\""},
        {{""}, "expected a file name that ends in .mp4, .mov or .mkv, found \"\""},
        {{"a.mp4", "b.mp4"}, "one word too many: \"b.mp4\""},
        {{"--at", "out.png"}, "expected a number of seconds, found \"out.png\""},
        {{"--at", "97"}, "a file name that ends in .png is missing"},
        {{"--at", "97", "out.html"}, "expected a file name that ends in .png, found \"out.html\""},
        {{"--join", "whole.mp4"}, "the name of a piece is missing"},
        {{"--sheet", "--verify", "a.png"}, "--sheet and --verify do not go together"},
        {{"--fps"}, "--fps needs a value"},
        {{"--fps", "fast"}, "expected a rate, such as 60 or 60000/1001, found \"fast\""},
        {{"--scale", "1.5"}, "expected a whole number, found \"1.5\""},
        {{"--verify", "--lossless"}, "--lossless means nothing here"},
        {{"--doctor", "--seconds", "soon"}, "expected a number of seconds, found \"soon\""},
    };
    for (const auto& [words, reason] : cases)
        ExpectRefused("movie", words, reason);
}
