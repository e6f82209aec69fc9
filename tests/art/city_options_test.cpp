#include "art/common/options.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;

/// A program with a flag, an option that takes digits only, and one operand that may be left out.
struct Program {
    bool quick = false;
    std::string threads;
    int status = -1;
    std::optional<std::vector<std::string>> operands;
    std::string out;
    std::string err;

    explicit Program(std::vector<std::string> words) {
        words.insert(words.begin(), "program");
        std::vector<char*> arguments;
        for (std::string& word : words)
            arguments.push_back(word.data());
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
        operands = Art::ReadArguments(Line(), static_cast<int>(arguments.size()), arguments.data(),
                                      status);
        out = ::testing::internal::GetCapturedStdout();
        err = ::testing::internal::GetCapturedStderr();
    }

    Art::CommandLine Line() {
        const auto isNumber = [](const std::string& text) {
            return text.find_first_not_of("0123456789") == std::string::npos;
        };
        return {.program = "bake",
                .purpose = "Bakes a cake.",
                .operands = {"FOLDER", "[FILE]"},
                .options = {{.name = "--quick",
                             .help = "in a hurry",
                             .apply = [this](const std::string&) { return quick = true; }},
                            {.name = "--threads",
                             .value = "N",
                             .help = "with N hands",
                             .apply = [this, isNumber](const std::string& n) {
                                 threads = n;
                                 return isNumber(n);
                             }}}};
    }
};

constexpr const char* help = "bake [--quick] [--threads N] FOLDER [FILE]\n"
                             "\n"
                             "Bakes a cake.\n"
                             "\n"
                             "--quick      in a hurry\n"
                             "--threads N  with N hands\n";

TEST(Options, Stand_anywhere_between_the_operands) {
    const Program program({"here", "--threads", "3", "there", "--quick"});
    ASSERT_TRUE(program.operands);
    EXPECT_THAT(*program.operands, ElementsAre("here", "there"));
    EXPECT_EQ(program.threads, "3");
    EXPECT_TRUE(program.quick);
    EXPECT_EQ(program.out + program.err, "");
}

TEST(Options, An_operand_in_brackets_may_be_left_out) {
    const Program program({"here"});
    ASSERT_TRUE(program.operands);
    EXPECT_THAT(*program.operands, ElementsAre("here"));
    EXPECT_FALSE(program.quick);
}

TEST(Options, Help_goes_to_standard_output_and_is_no_failure) {
    for (const char* word : {"-h", "--help"}) {
        const Program program({"--unknown", word});
        EXPECT_FALSE(program.operands);
        EXPECT_EQ(program.status, 0);
        EXPECT_EQ(program.out, help);
        EXPECT_EQ(program.err, "");
    }
}

TEST(Options, What_cannot_be_understood_is_refused_with_the_reason_after_the_help) {
    const struct {
        std::vector<std::string> words;
        const char* reason;
    } cases[] = {
        {{}, "FOLDER is missing"},
        {{"a", "b", "c"}, "there is no \"c\""},
        {{"a", "--slow"}, "there is no \"--slow\""},
        {{"a", "--threads"}, "--threads needs a value"},
        {{"a", "--threads", "x"}, "--threads cannot be \"x\""},
    };
    for (const auto& [words, reason] : cases) {
        const Program program(words);
        EXPECT_FALSE(program.operands) << reason;
        EXPECT_EQ(program.status, 2) << reason;
        EXPECT_EQ(program.out, "") << reason;
        EXPECT_EQ(program.err, std::string(help) + "\nbake: " + reason + "\n");
    }
}

} // namespace
