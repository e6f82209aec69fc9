// The small programs that scripts call read their words as all others do.

#include "tools/stage/process.h"

#include <gmock/gmock.h>

#include <filesystem>

using ::testing::StartsWith;

namespace {

struct SmallProgram {
    const char* path; ///< below the build folder
    const char* refusal;
};

const SmallProgram programs[] = {
    {"tools/escape/nimbrel_escape",
     "needs a whole number from 1 to 2147483647: nimbrel_escape 1234"},
    {"tools/picture/nimbrel_skyfaces", "needs a .png file: nimbrel_skyfaces sky.png"},
    {"tools/picture/gallery_sheet",
     "needs a .png file and names of pictures: gallery_sheet sheet.png 01_window 02_mesh"},
};

Tools::Ending Call(const SmallProgram& program, const std::vector<std::string>& words) {
    std::vector<std::string> command = {std::string(NIMBREL_BINARY_DIR "/") + program.path};
    command.insert(command.end(), words.begin(), words.end());
    return Tools::Run({.arguments = command}, 60.0);
}

} // namespace

TEST(SmallPrograms, Refuse_too_few_words_and_answer_help) {
    for (const SmallProgram& program : programs) {
        const std::string name = std::filesystem::path(program.path).filename();
        const Tools::Ending refused = Call(program, {});
        EXPECT_EQ(refused.exitStatus, 2) << name;
        EXPECT_EQ(refused.output, "") << name;
        EXPECT_EQ(refused.errors, name + ": " + program.refusal + "\nSee " + name + " --help.\n");
        const Tools::Ending helped = Call(program, {"--help"});
        EXPECT_EQ(helped.exitStatus, 0) << name;
        EXPECT_THAT(helped.output, StartsWith(name + " "));
    }
}
