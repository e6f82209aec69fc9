#include "engine/post/postprocess.h"

#include "engine/core/core.h"
#include "engine/core/fbo.h"
#include "engine/math/vec2.h"
#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using Vell::FBO;
using Vell::ivec2;
using Vell::PostEffect;
using Vell::PostProcess;

namespace {

constexpr int size = 128;

// One call of Process().
struct Step {
    int effect;
    FBO* in;
    FBO* out;
};

// Turns every red r into 3 r + `number` (modulo 256), so that the result tells which effects ran
// and in which order.
class Counting : public PostEffect {
public:
    Counting(int effectNumber, std::vector<Step>& steps) : number(effectNumber), log(steps) {}

    void Process(FBO* in, FBO* out) override {
        log.push_back({number, in, out});
        const Picture input = ReadTexture(in->GetColor());
        Fill(*out, MakePicture(size, size, [&](int x, int y) {
            return Rgba{Next(input.At(x, y).r), x, y, 255};
        }));
    }

    int Next(int red) const { return (3 * red + number) % 256; }

private:
    int number;
    std::vector<Step>& log;
};

// Looks at what the chain has set up for its effects.
class Inspecting : public PostEffect {
public:
    void Process(FBO* in, FBO* out) override {
        glGetFloatv(GL_PROJECTION_MATRIX, projection.data());
        glGetFloatv(GL_MODELVIEW_MATRIX, modelview.data());
        depthTest = glIsEnabled(GL_DEPTH_TEST);
        inSize = in->GetSize();
        outSize = out->GetSize();
    }

    std::array<float, 16> projection{};
    std::array<float, 16> modelview{};
    bool depthTest = true;
    ivec2 inSize;
    ivec2 outSize;
};

// Green and blue carry the place, as Counting leaves them.
Picture Expected(int red) {
    return MakePicture(size, size, [red](int x, int y) { return Rgba{red, x, y, 255}; });
}

} // namespace

class PostProcessTest : public GlTest {
protected:
    static constexpr int startRed = 5;

    void SetUp() override {
        GlTest::SetUp();
        scene = std::make_unique<FBO>();
        scene->SetSize(ivec2(size, size));
        glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, 0);
        Fill(*scene, Expected(startRed));
    }

    void TearDown() override {
        scene.reset();
        GlTest::TearDown();
    }

    std::unique_ptr<FBO> scene;
    std::vector<Step> steps;
};

TEST_F(PostProcessTest, Without_effects_the_scene_is_shown_unchanged) {
    PostProcess chain(scene.get());
    chain.Draw();
    EXPECT_TRUE(Matches(ReadScreen(size, size), Expected(startRed)));
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
}

TEST_F(PostProcessTest, One_effect_reads_the_scene_and_its_result_in_the_spare_target_is_shown) {
    PostProcess chain(scene.get());
    Counting effect(1, steps);
    chain.AddPostEffect(&effect);
    chain.Draw();
    ASSERT_EQ(steps.size(), 1u);
    EXPECT_EQ(steps[0].in, scene.get());
    EXPECT_NE(steps[0].out, scene.get());
    EXPECT_TRUE(Matches(ReadScreen(size, size), Expected(3 * startRed + 1)));
    // The scene itself is still there.
    EXPECT_TRUE(Matches(ReadTexture(scene->GetColor()), Expected(startRed)));
}

TEST_F(PostProcessTest, Three_effects_with_the_middle_one_disabled_end_in_the_scene_target) {
    PostProcess chain(scene.get());
    Counting first(1, steps);
    Counting second(2, steps);
    Counting third(3, steps);
    for (Counting* effect : {&first, &second, &third})
        chain.AddPostEffect(effect);
    second.SetEnabled(false);
    chain.Draw();
    ASSERT_EQ(steps.size(), 2u);
    EXPECT_EQ(steps[0].in, scene.get());
    EXPECT_EQ(steps[1].in, steps[0].out);
    EXPECT_EQ(steps[1].out, scene.get());
    // 5 -> 16 -> 51
    EXPECT_TRUE(Matches(ReadScreen(size, size), Expected(51)));
    EXPECT_TRUE(Matches(ReadTexture(scene->GetColor()), Expected(51)));
}

TEST_F(PostProcessTest, Every_combination_of_enabled_effects_alternates_between_the_targets) {
    PostProcess chain(scene.get());
    std::vector<std::unique_ptr<Counting>> effects;
    for (int i = 0; i < 4; ++i) {
        effects.push_back(std::make_unique<Counting>(i + 1, steps));
        chain.AddPostEffect(effects.back().get());
    }
    FBO* spare = nullptr;
    for (unsigned mask = 0; mask < 16; ++mask) {
        SCOPED_TRACE(mask);
        Fill(*scene, Expected(startRed));
        steps.clear();
        int red = startRed;
        std::vector<int> running;
        for (unsigned i = 0; i < 4; ++i) {
            effects[i]->SetEnabled(mask & (1u << i));
            if (mask & (1u << i)) {
                red = effects[i]->Next(red);
                running.push_back(static_cast<int>(i) + 1);
            }
        }
        chain.Draw();
        ASSERT_EQ(steps.size(), running.size());
        for (std::size_t i = 0; i < steps.size(); ++i) {
            if (spare == nullptr)
                spare = steps[0].out;
            EXPECT_EQ(steps[i].effect, running[i]);
            EXPECT_EQ(steps[i].in, i % 2 ? spare : scene.get());
            EXPECT_EQ(steps[i].out, i % 2 ? scene.get() : spare);
        }
        EXPECT_TRUE(Matches(ReadScreen(size, size), Expected(red)));
    }
}

TEST_F(PostProcessTest, Effect_that_is_added_twice_runs_twice) {
    PostProcess chain(scene.get());
    Counting effect(1, steps);
    chain.AddPostEffect(&effect);
    chain.AddPostEffect(&effect);
    chain.Draw();
    // 5 -> 16 -> 49
    EXPECT_TRUE(Matches(ReadScreen(size, size), Expected(49)));
}

TEST_F(PostProcessTest, Effects_are_enabled_when_made) {
    Counting effect(1, steps);
    EXPECT_TRUE(effect.GetEnabled());
    effect.SetEnabled(false);
    EXPECT_FALSE(effect.GetEnabled());
}

TEST_F(PostProcessTest, Effects_run_in_a_unit_square_without_depth_test) {
    glMatrixMode(GL_PROJECTION);
    glOrtho(-3.0, 3.0, -2.0, 2.0, -1.0, 1.0);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(1.0f, 2.0f, 3.0f);
    PostProcess chain(scene.get());
    Inspecting effect;
    chain.AddPostEffect(&effect);
    chain.Draw();
    // glOrtho(0, 1, 0, 1, -1, 1): 2 x - 1, 2 y - 1, -z.
    EXPECT_THAT(effect.projection, ElementsAre(2, 0, 0, 0, 0, 2, 0, 0, 0, 0, -1, 0, -1, -1, 0, 1));
    EXPECT_THAT(effect.modelview, ElementsAre(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1));
    EXPECT_FALSE(effect.depthTest);
    EXPECT_EQ(effect.inSize, ivec2(size, size));
    EXPECT_EQ(effect.outSize, ivec2(size, size));
}

TEST_F(PostProcessTest, Spare_target_keeps_the_screen_size_of_construction) {
    PostProcess chain(scene.get());
    Vell::SetScreen(ivec2(64, 32));
    Inspecting effect;
    chain.AddPostEffect(&effect);
    chain.Draw();
    EXPECT_EQ(effect.outSize, ivec2(size, size));
}

TEST_F(PostProcessTest, Leaves_the_effects_and_the_scene_target_alive) {
    Counting effect(1, steps);
    {
        PostProcess chain(scene.get());
        chain.AddPostEffect(&effect);
    }
    EXPECT_TRUE(effect.GetEnabled());
    EXPECT_TRUE(glIsTexture(scene->GetColor()));
}

TEST_F(PostProcessTest, Deletes_the_spare_target) {
    GLuint spare = 0;
    {
        PostProcess chain(scene.get());
        Counting effect(1, steps);
        chain.AddPostEffect(&effect);
        chain.Draw();
        spare = steps[0].out->GetColor();
        ASSERT_TRUE(glIsTexture(spare));
    }
    EXPECT_FALSE(glIsTexture(spare));
}

TEST_F(PostProcessTest, Changes_no_state_but_the_binding_of_unit_0_and_the_client_arrays) {
    glMatrixMode(GL_PROJECTION);
    glOrtho(-3.0, 3.0, -2.0, 2.0, -1.0, 1.0);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(1.0f, 2.0f, 3.0f);
    PostProcess chain(scene.get());
    glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, 0);
    glBindTexture(GL_TEXTURE_2D, 0);
    const GlState before = CaptureGlState();
    glActiveTexture(GL_TEXTURE3); // the chain makes unit 0 active itself
    chain.Draw();
    const std::string color = std::to_string(scene->GetColor());
    EXPECT_EQ(Differences(before, CaptureGlState()), "unit 0 binding: 0  -> " + color +
                                                         " \n"
                                                         "unit 0 coordinate array: off -> on\n"
                                                         "vertex array: off -> on\n");
}
