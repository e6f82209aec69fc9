// What passes are called.

#include "tools/passes/passnames.h"

#include "demo/show.h"
#include "engine/scene/scenemanager.h"
#include "tests/passes/recorded_frames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using Passes::NameOfPass;
using Passes::Pass;
using Passes::PassFacts;
using testing::Contains;
using testing::ElementsAre;

PassFacts FactsOf(const std::string& target, const std::vector<std::string>& programs) {
    PassFacts facts;
    facts.target = target;
    facts.draws = 1;
    facts.programs = programs;
    return facts;
}

PassFacts CopyInto(const std::string& target) {
    return FactsOf(target, {Passes::fixedPipeline});
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

TEST(PassNames, Are_those_of_their_targets_where_no_row_fits) {
    EXPECT_EQ(NameOfPass(FactsOf("mirror in the hall", {"glass"})), "mirror in the hall");
    PassFacts facts = FactsOf("", {"glass"}); // a target that nobody labelled
    facts.before = {"reflection", "scene"};
    EXPECT_EQ(NameOfPass(facts), "pass 3");
}

TEST(PassNames, Of_the_water_s_and_the_shadow_s_passes_follow_from_their_targets_alone) {
    EXPECT_EQ(NameOfPass(FactsOf("reflection target", {"any"})), "reflection");
    EXPECT_EQ(NameOfPass(FactsOf("refraction target", {"any"})), "refraction");
    EXPECT_EQ(NameOfPass(FactsOf("light buffer", {})), "light depth");
    EXPECT_EQ(NameOfPass(FactsOf("shadow buffer", {"any"})), "shadow");
}

TEST(PassNames, Of_effects_follow_from_their_programs_into_whatever_target) {
    for (const char* target : {"scene target", "spare target"}) {
        EXPECT_EQ(NameOfPass(FactsOf(target, {"bloom: bright parts"})), "bright parts");
        EXPECT_EQ(NameOfPass(FactsOf(target, {"colour split"})), "colour split");
        EXPECT_EQ(NameOfPass(FactsOf(target, {"ripple"})), "ripple");
    }
}

TEST(PassNames, Are_different_within_a_frame) {
    PassFacts facts = CopyInto("scene target");
    facts.depthTested = true;
    facts.before = {"scene"};
    EXPECT_EQ(NameOfPass(facts), "scene 2");
    facts.before = {"scene", "scene 2"};
    EXPECT_EQ(NameOfPass(facts), "scene 3");
}

TEST(PassNames, Count_the_steps_of_the_blur_from_one) {
    PassFacts facts = FactsOf("first blur target", {"blur"});
    EXPECT_EQ(NameOfPass(facts), "blur step 1");
    facts.before = {"blur, shrunk", "blur step 1"};
    EXPECT_EQ(NameOfPass(facts), "blur step 2");
}

TEST(PassNames, Tell_copies_apart_by_where_they_go_and_what_came_before) {
    EXPECT_EQ(NameOfPass(CopyInto("first blur target")), "blur, shrunk");
    EXPECT_EQ(NameOfPass(CopyInto("glow target")), "glow");
    PassFacts facts = CopyInto("spare target");
    facts.before = {"colour split"};
    EXPECT_EQ(NameOfPass(facts), "ripple, off");
    facts.before = {"glow"};
    facts.blended = true;
    EXPECT_EQ(NameOfPass(facts), "bloom");
}

TEST(PassNames, Tell_what_lies_over_the_picture_from_the_picture) {
    PassFacts facts = CopyInto("");
    facts.screen = true;
    EXPECT_EQ(NameOfPass(facts), "screen");
    facts.blended = true;
    EXPECT_EQ(NameOfPass(facts), "logo");
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
    EXPECT_EQ(passes[1].width, Show::width);
    EXPECT_THAT(ReadsOf(passes[1]), Contains("depth of the light buffer by lightbuffer, unit 6"));
    EXPECT_THAT(ReadsOf(passes[2]), ElementsAre("colour of the shadow buffer by texture0, unit 0"));
}
