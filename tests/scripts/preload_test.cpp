// Libraries are preloaded from folders of any name.

#include "tools/preload/preload.h"

#include "tests/support/program_run.h"
#include "tests/support/scratch.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

using Tools::Preloadable;

namespace {

/// What the loader says when it is asked to put this library under a program: nothing if all is
/// well.
std::string ComplaintAbout(const std::string& preload) {
    return ProgramRun({"/bin/true"}, {{"LD_PRELOAD", preload}}).Wait(10.0).complaint;
}

} // namespace

TEST(Preload, Knows_libraries_in_folders_with_blanks_colons_and_other_letters) {
    const ScratchDir scratch;
    const std::string library = "\xC3\x84 b:c/d e.so"; // "Ä b:c"
    fs::create_directory("\xC3\x84 b:c");
    fs::copy(NIMBREL_BINARY_DIR "/tools/capture/libnimbrel_probe.so", library);
    EXPECT_EQ(ComplaintAbout(Preloadable(library)), "");
    EXPECT_NE(ComplaintAbout(library), "") << "such a name is not simply taken, then?";
}

TEST(Preload, Refuses_a_library_that_is_not_there) {
    const ScratchDir scratch;
    EXPECT_THROW(Preloadable("missing.so"), std::runtime_error);
}
