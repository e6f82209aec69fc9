// The demo's objects have names. In a file of its own, for the registry knows the scene's paths for
// good: it can be loaded once a process.

#include "tests/recording/calls.h"

#include "demo/scene1.h"
#include "engine/core/labels.h"
#include "tests/support/demo_data.h"

#include <gmock/gmock.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using Vell::LabelOf;

namespace {

class DemoLabels : public Calls {
protected:
    static std::vector<std::string> Unlabelled() {
        std::vector<std::string> found;
        for (const Recorder::Object& object : gl.Objects())
            if (LabelOf(object.kind, object.name).empty())
                found.push_back(object.label);
        return found;
    }
};

} // namespace

TEST_F(DemoLabels, Each_object_has_one_which_no_frame_changes_and_which_goes_with_it) {
    MakeDemoData();
    auto scene = std::make_unique<Scene1>();
    scene->Load();
    EXPECT_THAT(Unlabelled(), IsEmpty());
    EXPECT_THAT(
        Labels(),
        IsSupersetOf({"Data/Gfx/City/shader.vert and .frag", "Data/Gfx/City/shader.vert",
                      "Data/Gfx/City/shader.frag", "Data/Gfx/Wisp/billboard.vert and .frag",
                      "Data/Gfx/water.jpg", "Data/Gfx/Logo/logo.jpg", "Data/Gfx/City/sky/xpos.jpg",
                      "sky box", "colour split", "ripple", "scene target"}));

    for (const Recorder::Object& object : gl.Objects())
        Vell::Label(object.kind, object.name, "my word");
    scene->Draw(0.02f); // without water passes: they come from the second frame on
    scene->Draw(0.02f);
    EXPECT_THAT(Labels(), ::testing::Each("my word"));

    Forget();
    scene.reset();
    const std::set<std::string> deleted = Deleted();
    for (const Recorder::Object& object : gl.Objects())
        EXPECT_EQ(LabelOf(object.kind, object.name).empty(), deleted.count(object.label) != 0)
            << object.label;
}
