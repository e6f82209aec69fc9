#include "tools/options/commandline.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Tools::Arguments;
using Tools::CommandLine;
using Tools::WrongUsage;

namespace {

/// A program that looks at files, or counts them.
CommandLine Looker() {
    return {
        .options = {{"--often", "N", "looks N times (1)"}, {"--wide", "", "looks wide,\nand far"}},
        .modes = {{"look", 0, 1, {"--often", "--wide"}, [](const Arguments&) { return 3; }},
                  {"--count", 1, 2, {"--wide"}, [](const Arguments&) { return 4; }}}};
}

std::string Refusal(const std::vector<std::string>& given) {
    try {
        Looker().Parse(given);
    } catch (const WrongUsage& error) {
        return error.what();
    }
    return "none";
}

std::string RefusalOf(double least, double most, const std::string& text) {
    try {
        Tools::ParseNumber("--often", text, least, most);
    } catch (const WrongUsage& error) {
        return error.what();
    }
    return "none";
}

} // namespace

TEST(CommandLine, Sorts_words_and_options_in_any_order) {
    const Arguments arguments = Looker().Parse({"--often", "2", "here", "--wide"});
    EXPECT_EQ(arguments.mode, "look") << "the first mode, since none is named";
    EXPECT_THAT(arguments.words, ElementsAre("here"));
    EXPECT_TRUE(arguments.Has("--wide"));
    EXPECT_EQ(arguments.Text("--often", "none"), "2");
    EXPECT_EQ(arguments.WholeNumber("--often", 1, 9, 1), 2);
}

TEST(CommandLine, Answers_otherwise_for_options_that_were_not_given) {
    const Arguments arguments = Looker().Parse({});
    EXPECT_THAT(arguments.words, IsEmpty());
    EXPECT_FALSE(arguments.Has("--wide"));
    EXPECT_EQ(arguments.Text("--often", "none"), "none");
    EXPECT_EQ(arguments.WholeNumber("--often", 1, 9, 5), 5);
    EXPECT_EQ(arguments.Number("--often", 1.0, 9.0, 0.5), 0.5) << "which may be out of bounds";
}

TEST(CommandLine, Runs_the_mode_that_is_named) {
    EXPECT_EQ(Looker().Run({"a"}), 3);
    EXPECT_EQ(Looker().Run({"a", "--count", "b"}), 4);
}

TEST(CommandLine, Says_what_is_wrong) {
    EXPECT_EQ(Refusal({"--fast"}), "unknown option: --fast");
    EXPECT_EQ(Refusal({"--often"}), "--often: expected a value");
    EXPECT_EQ(Refusal({"--count", "a", "--count"}), "--count and --count do not go together");
    EXPECT_EQ(Refusal({"--count", "a", "--often", "2"}), "--often means nothing here");
    EXPECT_EQ(Refusal({"--count"}), "--count: expected 1 to 2 words, found 0");
    EXPECT_EQ(Refusal({"a", "b"}), "look: expected 0 to 1 words, found 2");
    EXPECT_EQ(Refusal({"-1"}), "none") << "a number below zero is a word";
}

TEST(CommandLine, Takes_numbers_within_bounds_alone) {
    EXPECT_EQ(Tools::ParseNumber("--often", "2.5", 1.0, 9.0), 2.5);
    EXPECT_EQ(Tools::ParseNumber("--often", "9", 1.0, 9.0), 9.0);
    for (const char* text : {"", "0.9", "9.1", "2x", "nan"})
        EXPECT_EQ(RefusalOf(1.0, 9.0, text),
                  std::string("--often: expected a number from 1.000000 to 9.000000, found \"") +
                      text + "\"");
    EXPECT_THROW(Tools::ParseWholeNumber("--often", "2.5", 1, 9), WrongUsage);
}

TEST(CommandLine, Takes_file_names_by_their_ends) {
    const Arguments arguments = Looker().Parse({"a.png"});
    EXPECT_EQ(arguments.Path(0, {".jpg", ".png"}), "a.png");
    EXPECT_THROW(static_cast<void>(arguments.Path(0, {".jpg"})), WrongUsage);
    EXPECT_THROW(static_cast<void>(Looker().Parse({".png"}).Path(0, {".png"})), WrongUsage)
        << "an end alone is no name";
}

TEST(CommandLine, Help_stands_in_two_columns) {
    EXPECT_EQ(Looker().Help(), "--often N  looks N times (1)\n"
                               "--wide     looks wide,\n"
                               "           and far\n");
}
