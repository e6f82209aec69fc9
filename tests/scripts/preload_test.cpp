// Libraries are preloaded from folders of any name, by the scripts as by the tools.

#include "tools/probe/preload.h"

#include "tests/support/scratch.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace fs = std::filesystem;

using Tools::Preloadable;

namespace {

const char* const oddName = "\xC3\x84 b:c"; // "Ä b:c"

/// What the loader says when it is asked to put this library under a program: nothing if all is
/// well.
std::string ComplaintAbout(const std::string& preload) {
    return Tools::Run({.arguments = {"/bin/true"}, .added = {{"LD_PRELOAD", preload}}}, 10.0)
        .errors;
}

} // namespace

TEST(Preload, Knows_libraries_in_folders_with_blanks_colons_and_other_letters) {
    const ScratchDir scratch;
    const std::string library = std::string(oddName) + "/d e.so";
    fs::create_directory(oddName);
    fs::copy(NIMBREL_BINARY_DIR "/tools/probe/libnimbrel_probe.so", library);
    EXPECT_EQ(ComplaintAbout(Preloadable(library)), "");
    EXPECT_NE(ComplaintAbout(library), "") << "such a name is simply taken, then?";
}

TEST(Preload, Refuses_a_library_that_is_not_there) {
    const ScratchDir scratch;
    EXPECT_THROW(Preloadable("missing.so"), std::runtime_error);
}

TEST(Preload, Is_possible_to_scripts_in_such_folders_too) {
    const ScratchDir scratch;
    fs::create_directory(oddName);
    fs::copy(NIMBREL_BINARY_DIR "/tools/probe/libnimbrel_probe.so",
             fs::path(oddName) / "libnimbrel_probe.so");
    // The loader's own list of what it has put into the program.
    const Tools::Ending end = Tools::Run(
        {.arguments = {"/bin/bash", "-c",
                       ". '" NIMBREL_SOURCE_DIR "/packaging/preload.sh'\n"
                       "preloaded \"$PWD/$1/libnimbrel_probe.so\" /bin/cat /proc/self/maps",
                       "script", oddName}},
        10.0);
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    EXPECT_EQ(end.errors, "");
    EXPECT_THAT(end.output, ::testing::HasSubstr("libnimbrel_probe.so"));
}
