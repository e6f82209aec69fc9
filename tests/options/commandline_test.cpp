#include "tools/options/commandline.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Tools::Arguments;
using Tools::Program;
using Tools::WrongUsage;

namespace {

/// A program that looks at files, or counts them.
Program Looker() {
    return {.name = "./look",
            .purpose = "Looks at a file.",
            .options = {{.name = "--often",
                         .value = "N",
                         .kind = Tools::WholeNumberKind(1, 9),
                         .example = "2",
                         .meaning = "looks N times (1)"},
                        {.name = "--wide", .meaning = "looks wide,\nand far"}},
            .modes = {{.operands = {{"FILE", Tools::AnyText("a file"), Tools::Count::AtMostOne}},
                       .example = "a.png",
                       .options = {"--often", "--wide"},
                       .run = [](const Arguments&) { return 3; }},
                      {.name = "--count",
                       .operands = {{"T", Tools::NumberKind("a time", 0, 2.5)},
                                    {"FILE", Tools::AnyText("files"), Tools::Count::OneOrMore}},
                       .example = "1.5 a.png b.png",
                       .options = {"--wide"},
                       .run = [](const Arguments&) { return 4; }},
                      {.name = "--alone",
                       .run = [](const Arguments&) -> int { throw std::runtime_error("dark"); }}},
            .remark = "It does no more."};
}

std::string Refusal(const std::vector<std::string>& given) {
    try {
        Looker().Parse(given);
    } catch (const WrongUsage& error) {
        return error.what();
    }
    return "none";
}

/// A run of the program, as main() does it.
struct LookerRun {
    int status;
    std::string output;
    std::string errors;

    explicit LookerRun(std::vector<std::string> words) {
        words.insert(words.begin(), "/build/look");
        std::vector<char*> arguments;
        for (std::string& word : words)
            arguments.push_back(word.data());
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
        status = Looker().Run(static_cast<int>(arguments.size()), arguments.data());
        output = ::testing::internal::GetCapturedStdout();
        errors = ::testing::internal::GetCapturedStderr();
    }
};

} // namespace

TEST(Program, Sorts_operands_and_options_in_any_order) {
    const Arguments arguments = Looker().Parse({"--often", "2", "here", "--wide"});
    EXPECT_EQ(arguments.mode, "") << "the first mode, since none is named";
    EXPECT_THAT(arguments.operands, ElementsAre("here"));
    EXPECT_TRUE(arguments.Has("--wide"));
    EXPECT_EQ(arguments.Text("--often", "none"), "2");
    EXPECT_EQ(arguments.WholeNumber("--often", 1), 2);
}

TEST(Program, Answers_otherwise_for_options_that_were_not_given) {
    const Arguments arguments = Looker().Parse({});
    EXPECT_THAT(arguments.operands, IsEmpty());
    EXPECT_FALSE(arguments.Has("--wide"));
    EXPECT_EQ(arguments.Text("--often", "none"), "none");
    EXPECT_EQ(arguments.WholeNumber("--often", 50), 50) << "which may be out of bounds";
    EXPECT_EQ(arguments.Number("--often", 0.5), 0.5);
}

TEST(Program, Keeps_every_value_of_an_option_that_is_repeated) {
    const Arguments arguments = Looker().Parse({"--often", "4", "--often", "2"});
    EXPECT_THAT(arguments.Texts("--often"), ElementsAre("4", "2"));
    EXPECT_EQ(arguments.WholeNumber("--often", 1), 2) << "the last";
}

TEST(Program, Runs_the_mode_that_is_named) {
    EXPECT_EQ(LookerRun({"a"}).status, 3);
    EXPECT_EQ(LookerRun({"1", "--count", "b"}).status, 4);
}

TEST(Program, Says_what_is_wrong_and_what_would_be_right) {
    EXPECT_EQ(Refusal({"--fast"}), "there is no option --fast");
    EXPECT_EQ(Refusal({"-f"}), "there is no option -f");
    EXPECT_EQ(Refusal({"--often"}), "--often needs a whole number from 1 to 9: --often 2");
    EXPECT_EQ(Refusal({"--often", "10"}),
              "--often needs a whole number from 1 to 9, not \"10\": --often 2");
    EXPECT_EQ(Refusal({"--often", "x"}),
              "--often needs a whole number from 1 to 9, not \"x\": --often 2");
    EXPECT_EQ(Refusal({"--count", "1", "a", "--count"}), "--count and --count do not go together");
    EXPECT_EQ(Refusal({"--count", "1", "a", "--often", "2"}),
              "--often does not go with --count, which takes --wide");
    EXPECT_EQ(Refusal({"--alone", "--wide"}),
              "--wide does not go with --alone, which takes no options");
    EXPECT_EQ(Refusal({"--count", "1"}),
              "--count needs a time from 0 to 2.5 and files: --count 1.5 a.png b.png");
    EXPECT_EQ(Refusal({"--count", "2.6", "a"}),
              "--count needs a time from 0 to 2.5, not \"2.6\": --count 1.5 a.png b.png");
    EXPECT_EQ(Refusal({"a", "b"}), "\"b\" is one word too many: ./look a.png");
    EXPECT_EQ(Refusal({"--alone", "a"}), "\"a\" is one word too many: --alone");
    EXPECT_EQ(Refusal({""}), "needs a file, not \"\": ./look a.png");
    EXPECT_EQ(Refusal({"-1"}), "none") << "a number below zero is a word";
    EXPECT_EQ(Refusal({"--count", "1", "a", "b", "c"}), "none") << "as many as there are";
}

TEST(Program, Points_to_its_help_when_it_refuses) {
    const LookerRun run({"--fast"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "./look: there is no option --fast\nSee ./look --help.\n");
}

TEST(Program, Says_why_it_failed) {
    const LookerRun run({"--alone"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "./look: dark\n");
}

TEST(Program, Answers_help_whatever_else_it_is_told) {
    for (const char* word : {"-h", "--help"}) {
        const LookerRun run({"--fast", word});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.errors, "");
        EXPECT_EQ(run.output, "./look [--often N] [--wide] [FILE]\n"
                              "./look --count [--wide] T FILE...\n"
                              "./look --alone\n"
                              "\n"
                              "Looks at a file.\n"
                              "\n"
                              "--often N  looks N times (1)\n"
                              "--wide     looks wide,\n"
                              "           and far\n"
                              "\n"
                              "It does no more.\n");
    }
}
