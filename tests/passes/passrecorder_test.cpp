// What a recorder makes of drawing that the demo does not do: a target of the test's own, drawn
// into beside a frame of the show.

#include "engine/core/fast2dquad.h"
#include "engine/core/fbo.h"
#include "engine/render/shader.h"
#include "tests/passes/recorded_frames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>

namespace {

using Passes::Pass;
using testing::ElementsAre;
using testing::IsEmpty;

const char* const vertexText = "void main() { gl_Position = ftransform(); }\n";
const char* const fragmentText = "uniform float level;\n"
                                 "uniform sampler2D low;\n"
                                 "uniform sampler2D high;\n"
                                 "void main()\n"
                                 "{\n"
                                 "    vec4 both = texture2D(low, vec2(0.5)) + "
                                 "texture2D(high, vec2(0.5));\n"
                                 "    gl_FragColor = vec4(level) + both;\n"
                                 "}\n";

/// Locals, comments and constants of the blur and of the bloom as they once were, and the water's
/// samplers: what programs are not to be known by.
const char* const borrowedText = "uniform float threshold;\n"
                                 "uniform sampler2D reflectionMap;\n"
                                 "void main()\n"
                                 "{\n"
                                 "    vec4 sum = texture2D(reflectionMap, vec2(threshold));\n"
                                 "    gl_FragColor = sum / 9.0;\n"
                                 "}\n";

void DrawQuad() {
    Vell::Fast2DQuad::GetInstance().Draw(Vell::vec2(0.5f));
}

/// Everything that is done here, recorded after the show's first frame.
class Workbench : public Stage::Visitor {
public:
    bool Wants(int) override { return true; }
    void End(int) override {
        target.emplace();
        target->SetSize({64, 32});
        target->SetLabel("bench");
        other.emplace();
        other->SetLabel("shelf");
        shader.emplace();
        shader->LoadToChar(vertexText, fragmentText);
        shader->Disable();
        depth = Recorded([this] { DrawWithDepth(); });
        cleared = Recorded([this] { ClearColours(); });
        levels = Recorded([this] { DrawTwoLevels(); });
        read = Recorded([this] { DrawFromUnits(); });
        windows = Recorded([] { glClear(GL_COLOR_BUFFER_BIT); });
        labels.push_back(DrawAs("glass", borrowedText));
        labels.push_back(DrawAs("bloom: bright parts", fragmentText));
        labels.push_back(DrawAs("", borrowedText));
        large = DrawLarge();
        shader.reset();
        other.reset();
        target.reset();
        KeepLibraries();
    }

    std::vector<Pass> depth, cleared, levels, read, windows, large;
    std::vector<Pass> labels; ///< by programs of one label and another's text
    std::string stateChange;  ///< by a drawing that is recorded

private:
    std::vector<Pass> Recorded(const std::function<void()>& draw) {
        Passes::PassRecorder recorder(Passes::Detail::Everything);
        recorder.BeginFrame();
        draw();
        recorder.EndFrame();
        return recorder.Take();
    }

    void DrawWithDepth() {
        target->Enable();
        glEnable(GL_DEPTH_TEST);
        DrawQuad();
        target->Disable();
    }

    void ClearColours() {
        target->Enable();
        glClear(GL_COLOR_BUFFER_BIT);
        target->Disable();
    }

    void DrawTwoLevels() {
        target->Enable();
        shader->Enable();
        shader->Send("level", 0.25f);
        DrawQuad();
        DrawQuad();
        shader->Send("level", 0.5f);
        DrawQuad();
        shader->Disable();
        target->Disable();
    }

    void DrawFromUnits() {
        target->Enable();
        shader->Enable();
        shader->Send("low", 1);
        shader->Send("high", 4);
        glActiveTexture(GL_TEXTURE1);
        glBindTexture(GL_TEXTURE_2D, 0);
        glActiveTexture(GL_TEXTURE4);
        glBindTexture(GL_TEXTURE_2D, other->GetColor());
        stateChange = ChangeByDrawing();
        shader->Disable();
        stateChange += ChangeByDrawing(); // without a program
        glActiveTexture(GL_TEXTURE0);
        target->Disable();
    }

    Pass DrawAs(const std::string& label, const char* text) {
        Vell::Shader labelled;
        labelled.LoadToChar(vertexText, text);
        labelled.SetLabel(label);
        const std::vector<Pass> passes = Recorded([&] {
            target->Enable();
            labelled.Enable();
            DrawQuad();
            labelled.Disable();
            target->Disable();
        });
        return passes.at(0);
    }

    /// As large as the water's targets, and not labelled as they are.
    std::vector<Pass> DrawLarge() {
        Vell::FBO water;
        water.SetSize({512, 512});
        return Recorded([&] {
            water.Enable();
            DrawQuad();
            water.Disable();
        });
    }

    static std::string ChangeByDrawing() {
        DrawQuad(); // once before, for what the drawing itself changes
        glActiveTexture(GL_TEXTURE2);
        const GlState before = CaptureGlState();
        DrawQuad();
        return Differences(before, CaptureGlState());
    }

    std::optional<Vell::FBO> target;
    std::optional<Vell::FBO> other;
    std::optional<Vell::Shader> shader;
};

const Workbench& Done() {
    static const ScratchDir scratch;
    static Workbench bench;
    static const bool played = [] {
        MakeFilmData();
        Stage::PlayShow({}, 0, bench);
        return true;
    }();
    EXPECT_TRUE(played);
    return bench;
}

} // namespace

TEST(PassRecorder, Keeps_depth_that_was_drawn_but_not_cleared) {
    ASSERT_EQ(Done().depth.size(), 1u);
    EXPECT_EQ(Done().depth[0].depth.size(), 64u * 32u);
}

TEST(PassRecorder, Makes_a_pass_of_a_clear_alone_and_keeps_no_depth_for_colours) {
    ASSERT_EQ(Done().cleared.size(), 1u);
    const Pass& pass = Done().cleared[0];
    EXPECT_EQ(pass.name, "bench");
    EXPECT_EQ(pass.target, "bench");
    EXPECT_EQ(pass.width, 64);
    EXPECT_EQ(pass.height, 32);
    EXPECT_THAT(pass.clears, ElementsAre("colour"));
    EXPECT_THAT(pass.draws, IsEmpty());
    EXPECT_THAT(pass.depth, IsEmpty());
}

TEST(PassRecorder, Notes_every_value_that_a_uniform_had_in_a_pass) {
    ASSERT_EQ(Done().levels.size(), 1u);
    const Pass& pass = Done().levels[0];
    EXPECT_EQ(pass.draws.size(), 3u);
    ASSERT_EQ(pass.programs.size(), 1u);
    const std::vector<Passes::Uniform>& uniforms = pass.programs[0].uniforms;
    EXPECT_EQ(uniforms.size(), 3u);
    const auto level = std::find_if(uniforms.begin(), uniforms.end(),
                                    [](const auto& uniform) { return uniform.name == "level"; });
    ASSERT_NE(level, uniforms.end());
    EXPECT_THAT(level->values, ElementsAre(ElementsAre(0.25f), ElementsAre(0.5f)));
}

TEST(PassRecorder, Looks_at_the_units_of_the_samplers_and_leaves_the_state_alone) {
    ASSERT_EQ(Done().read.size(), 1u);
    std::vector<std::string> reads;
    const Pass& pass = Done().read[0];
    for (const int index : pass.draws.at(0).inputs) {
        const Passes::Input& input = pass.inputs.at(static_cast<std::size_t>(index));
        reads.push_back(input.reader + ": " + input.name);
    }
    EXPECT_THAT(reads, testing::UnorderedElementsAre(
                           "low, unit 1: no texture",
                           "high, unit 4: colour of the shelf, not drawn in this frame"));
    EXPECT_EQ(Done().stateChange, "");
}

TEST(PassRecorder, Calls_programs_by_their_labels_whatever_their_texts_are) {
    std::vector<std::string> names;
    for (const Pass& pass : Done().labels)
        names.push_back(pass.name + " by " + pass.programs.at(0).name);
    EXPECT_THAT(names, ElementsAre("bench by glass", "bright parts by bloom: bright parts",
                                   "bench by program"));
}

TEST(PassRecorder, Calls_targets_by_their_labels_whatever_their_sizes_are) {
    ASSERT_EQ(Done().large.size(), 1u);
    EXPECT_EQ(Done().large[0].width, 512);
    EXPECT_EQ(Done().large[0].name, "target");
}

TEST(PassRecorder, Takes_the_size_of_the_screen_from_its_window) {
    ASSERT_EQ(Done().windows.size(), 1u);
    EXPECT_EQ(Done().windows[0].name, "screen");
    EXPECT_EQ(Done().windows[0].width, Show::width);
    EXPECT_EQ(Done().windows[0].height, Show::height);
}
