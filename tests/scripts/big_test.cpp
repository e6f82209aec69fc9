// ./play --big: the library that enlarges the picture is built and put under the demo, and only
// then.

#include "tests/scripts/script_stage.h"

#include <gmock/gmock.h>

namespace fs = std::filesystem;

using ::testing::HasSubstr;
using ::testing::Not;

namespace {

class Big : public ScriptStage {
protected:
    Big() {
        StandIn("Xvfb", "echo 0 >&3; exec sleep 100");
        const fs::path library = "build/release/tools/big/libnimbrel_big.so";
        fs::create_directories(library.parent_path());
        fs::copy(NIMBREL_BINARY_DIR "/tools/big/libnimbrel_big.so", library);
        // The loader's own list of what it has put into a program of the show.
        WriteScript(
            "build/release/demo/nimbrel",
            "grep -o libnimbrel_big /proc/self/maps >loaded\necho '</html>' >Vell_log.html");
    }
};

} // namespace

TEST_F(Big, Show_has_the_enlarging_library_under_it) {
    const Tools::Ending end = Run("play", {"--big"});
    EXPECT_EQ(end.exitStatus, 0) << end.errors;
    EXPECT_THAT(ReadFile("loaded"), HasSubstr("libnimbrel_big"));
    EXPECT_THAT(Calls("cmake"), HasSubstr("-DNIMBREL_BUILD_BIG=ON"));
    EXPECT_THAT(Calls("cmake"), HasSubstr("--target nimbrel nimbrel_escape nimbrel_big\n"));
}

TEST_F(Big, Show_that_is_not_asked_for_does_without) {
    EXPECT_EQ(Run("play").exitStatus, 0);
    EXPECT_EQ(ReadFile("loaded"), "");
    EXPECT_THAT(Calls("cmake"), Not(HasSubstr("big")));
}
