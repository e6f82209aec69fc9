// Libraries are preloaded from folders of any name, by the scripts as by the tools.

#include "tools/probe/preload.h"

#include "tests/scripts/script_stage.h"

namespace fs = std::filesystem;

using Tools::Preloadable;

namespace {

const char* const oddName = "\xC3\x84 b:c"; // "Ä b:c"

/// What the loader says when it is asked to put this library under a program: nothing if all is
/// well.
std::string ComplaintAbout(const std::string& preload) {
    return ProgramRun({"/bin/true"}, {{"LD_PRELOAD", preload}}).Wait(10.0).complaint;
}

/// A checkout in a folder of such a name, with everything built.
class OddFolder : public ScriptStage {
protected:
    OddFolder() : ScriptStage(oddName) {
        fs::create_directory_symlink(NIMBREL_SOURCE_DIR "/Data", "Data");
        for (const char* program :
             {"demo/nimbrel", "tools/capture/nimbrel_stack", "tools/probe/libnimbrel_probe.so"})
            Link(program);
    }

private:
    static void Link(const fs::path& program) {
        const fs::path here = "build/release" / program;
        fs::create_directories(here.parent_path());
        fs::create_symlink(NIMBREL_BINARY_DIR / program, here);
    }
};

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

TEST_F(OddFolder, Is_no_obstacle_to_pictures_of_the_show) {
    const Outcome end = Run("tools/capture/sheet", {"my sheet.png", "2", "1", "14", "--keep", "k p",
                                                    "--build", "build/release"});
    EXPECT_EQ(end.exitStatus, 0) << end.complaint;
    EXPECT_TRUE(fs::exists("my sheet.png"));
    EXPECT_TRUE(fs::exists("k p/frame_0014.000.ppm")) << end.complaint;
}
