// A scene that is loaded, drawn and deleted again and again in one process: of what it makes in
// OpenGL, only what is left behind on purpose stays, as much in every round.

#include "tests/recording/calls.h"

#include "demo/assets.h"
#include "demo/scene1.h"
#include "tests/support/demo_data.h"
#include "tests/support/process_state.h"

#include <map>
#include <memory>
#include <set>

namespace {

constexpr int rounds = 20;

/// How many there are, by kind.
using Balance = std::map<std::string, int>;

class SceneBalance : public Calls {
protected:
    /// The city gets what the others have not: a texture and a light map.
    static void MakeData() {
        MakeDemoData();
        ASSERT_FALSE(DemoDataIsReal()) << "its files are not to be written over";
        WriteFile(Assets::cityMesh, "XT3DSTATIC 1 Data/Gfx/City/ 1\n"
                                    "brick.jpg NULL NULL 3\n"
                                    "-1 0 0  0 0 1  0 0  0 0\n"
                                    " 1 0 0  0 0 1  1 0  1 0\n"
                                    " 0 1 0  0 0 1  0 1  0 1\n");
        for (const char* picture : {"brick.jpg", "lightmap.jpg"})
            WriteJpeg(std::string("Data/Gfx/City/") + picture, 1, 1, {90, 60, 30});
    }

    static void LoadDrawAndDelete() {
        auto scene = std::make_unique<Scene1>();
        scene->Load();
        scene->Draw(0.02f); // without water passes: they come from the second frame on
        scene->Draw(0.02f);
    }

    /// What has been made and not deleted since the test began. A program never is: the call that
    /// names it is about programs of another kind.
    Balance Alive() {
        deleted.merge(Deleted());
        Balance alive;
        for (const Recorder::Object& object : gl.Objects()) {
            const std::string kind = object.label.substr(0, object.label.find(' '));
            if (kind == "program" || deleted.count(object.label) == 0)
                ++alive[kind];
        }
        return alive;
    }

    /// What stays of so many rounds. Programs: blur, threshold, colour split and ripple, of the
    /// city, the wisps and the water. The ripple is never deleted, so its two shaders stay. So do
    /// the light map coordinates of meshes without a light map: three wisps and the fish. The
    /// city's texture belongs to the table of shared pictures, where all later rounds find it.
    static Balance LeftBehind(int count) {
        return {{"program", 7 * count},
                {"vertex", count},
                {"fragment", count},
                {"buffer", 4 * count},
                {"texture", 1}};
    }

    std::set<std::string> deleted;
};

} // namespace

TEST_F(SceneBalance, Of_every_round_only_what_is_left_on_purpose_stays) {
    ASSERT_NO_FATAL_FAILURE(MakeData());
    for (int round = 1; round <= rounds; ++round) {
        LoadDrawAndDelete();
        ASSERT_EQ(Alive(), LeftBehind(round)) << "round " << round;
    }
}

TEST_F(SceneBalance, Of_every_round_no_file_stays_open) {
    ASSERT_NO_FATAL_FAILURE(MakeData());
    LoadDrawAndDelete();
    const int before = OpenDescriptors();
    for (int round = 1; round < rounds; ++round)
        LoadDrawAndDelete();
    EXPECT_EQ(OpenDescriptors(), before);
}
