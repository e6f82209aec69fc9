// What passes and programs are called.

#include "tools/passes/passnames.h"

#include "engine/scene/scenemanager.h"
#include "tests/passes/recorded_frames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using Passes::NameOfPass;
using Passes::NameOfProgram;
using Passes::Pass;
using Passes::PassFacts;
using testing::Contains;
using testing::ElementsAre;

constexpr int screenWidth = 960;

PassFacts FactsOf(int width, int height, const std::vector<std::string>& programs) {
    PassFacts facts;
    facts.width = width;
    facts.height = height;
    facts.screenWidth = screenWidth;
    facts.draws = 1;
    facts.programs = programs;
    return facts;
}

std::vector<std::string> ReadsOf(const Pass& pass) {
    std::vector<std::string> reads;
    for (const Passes::Input& input : pass.inputs)
        reads.push_back(input.name + " by " + input.reader);
    return reads;
}

/// A scene of the engine's own beside the demo's: a triangle and a light over it.
class ShadowScene : public Stage::Visitor {
public:
    bool Wants(int) override { return true; }
    void End(int) override {
        Vell::SceneManager scene;
        scene.AddCamera(Vell::vec3(0, 5, 20), Vell::vec3(0, 0, 0));
        scene.AddShadowMapping(Vell::vec3(5, 10, 5), Vell::vec3(0, 0, 0), 256, 0.5f);
        // The demo's own mesh, which the registry knows already.
        scene.AddSceneNode(scene.GetMesh("Data/Gfx/Fish/fish.xt3dstatic"), Vell::vec3(0));
        Passes::PassRecorder recorder(Passes::Detail::Everything);
        recorder.BeginFrame();
        scene.Draw();
        recorder.EndFrame();
        passes = recorder.Take();
        KeepLibraries();
    }

    std::vector<Pass> passes;
};

} // namespace

TEST(PassNames, Give_a_pass_that_no_row_knows_its_number) {
    PassFacts facts = FactsOf(300, 200, {"program"});
    facts.before = {"reflection", "scene"};
    EXPECT_EQ(NameOfPass(facts), "pass 3");
}

TEST(PassNames, Are_different_within_a_frame) {
    PassFacts facts = FactsOf(960, 89, {"fixed pipeline"});
    facts.depthTested = true;
    facts.before = {"scene"};
    EXPECT_EQ(NameOfPass(facts), "scene 2");
    facts.before = {"scene", "scene 2"};
    EXPECT_EQ(NameOfPass(facts), "scene 3");
}

TEST(PassNames, Count_the_steps_of_the_blur_from_one) {
    PassFacts facts = FactsOf(128, 128, {"Vell::PostBlur"});
    EXPECT_EQ(NameOfPass(facts), "blur step 1");
    facts.before = {"blur, shrunk", "blur step 1"};
    EXPECT_EQ(NameOfPass(facts), "blur step 2");
}

TEST(PassNames, Tell_copies_apart_by_what_came_before) {
    PassFacts facts = FactsOf(960, 89, {"fixed pipeline"});
    facts.before = {"blur step 10"};
    EXPECT_EQ(NameOfPass(facts), "glow");
    facts.before = {"colour split"};
    EXPECT_EQ(NameOfPass(facts), "ripple, off");
    facts.before = {"glow"};
    facts.blended = true;
    EXPECT_EQ(NameOfPass(facts), "bloom");
}

TEST(ProgramNames, Are_the_files_that_the_texts_came_from) {
    const ScratchDir scratch;
    WriteFile("a.vert", "one");
    WriteFile("a.frag", "two");
    WriteFile("b.frag", "three");
    const std::vector<std::string> files = {"a.vert", "a.frag", "b.frag", "missing"};
    EXPECT_EQ(NameOfProgram("one", "two", files), "a.vert and .frag");
    EXPECT_EQ(NameOfProgram("one", "three", files), "a.vert and b.frag");
    EXPECT_EQ(NameOfProgram("one", "four", files), "program");
}

TEST(ProgramNames, Are_the_classes_whose_words_the_texts_have) {
    EXPECT_EQ(NameOfProgram("", "uniform sampler2D reflectionMap;", {}), "Vell::Water");
    EXPECT_EQ(NameOfProgram("", "uniform float threshold;", {}), "Vell::PostBloom");
}

TEST(Recording, Knows_the_passes_of_a_scene_with_shadows) {
    const ScratchDir scratch;
    MakeFilmData();
    ShadowScene played;
    Stage::PlayShow({}, 0, played);
    const std::vector<Pass>& passes = played.passes;
    ASSERT_EQ(passes.size(), 4u);
    std::vector<std::string> names;
    std::vector<std::string> targets;
    for (const Pass& pass : passes) {
        names.push_back(pass.name);
        targets.push_back(pass.target);
    }
    EXPECT_THAT(names, ElementsAre("light depth", "shadow", "scene", "screen"));
    EXPECT_THAT(targets, ElementsAre("light buffer", "shadow buffer", "scene target", "screen"));
    EXPECT_EQ(passes[0].width, 256);
    EXPECT_EQ(passes[0].height, 256);
    EXPECT_EQ(passes[1].width, screenWidth);
    EXPECT_THAT(ReadsOf(passes[1]), Contains("depth of the light buffer by lightbuffer, unit 6"));
    EXPECT_THAT(ReadsOf(passes[2]), ElementsAre("colour of the shadow buffer by texture0, unit 0"));
}
