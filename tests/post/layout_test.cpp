// Where the chain and its effects keep their fields and their virtual operations: a contract with
// what was compiled against these headers before, see layout.h.
#include "demo/post_rgb.h"
#include "demo/post_water.h"
#include "engine/post/post_bloom.h"
#include "engine/post/post_blur.h"
#include "engine/post/postprocess.h"
#include "tests/scene/layout.h"
#include "tests/support/gl_test.h"
#include "tests/support/private_member.h"

#include <type_traits>

using Fields = std::vector<const void*>;

OPEN_PRIVATE(postBloomGlow, &Vell::PostBloom::glow);
OPEN_PRIVATE(postBloomThresholdShader, &Vell::PostBloom::thresholdShader);
OPEN_PRIVATE(postBloomBlur, &Vell::PostBloom::blur);
OPEN_PRIVATE(postBloomIntensity, &Vell::PostBloom::intensity);
OPEN_PRIVATE(postBloomThreshold, &Vell::PostBloom::threshold);
OPEN_PRIVATE(postBlurFirst, &Vell::PostBlur::first);
OPEN_PRIVATE(postBlurSecond, &Vell::PostBlur::second);
OPEN_PRIVATE(postBlurShader, &Vell::PostBlur::shader);
OPEN_PRIVATE(postBlurPasses, &Vell::PostBlur::passes);
OPEN_PRIVATE(postBlurSizeRTT, &Vell::PostBlur::SizeRTT);
OPEN_PRIVATE(postBlurOffset, &Vell::PostBlur::offset);
OPEN_PRIVATE(postProcessScene, &Vell::PostProcess::scene);
OPEN_PRIVATE(postProcessSpare, &Vell::PostProcess::spare);
OPEN_PRIVATE(postProcessEffects, &Vell::PostProcess::effects);
OPEN_PRIVATE(postRgbShader, &PostRGB::shader);
OPEN_PRIVATE(postRgbOffset, &PostRGB::offset);
OPEN_PRIVATE(postWaterShader, &PostWater::shader);
OPEN_PRIVATE(postWaterClock, &PostWater::clock);
OPEN_PRIVATE(postWaterEnable, &PostWater::enable);

namespace Vell {

struct PostBloomProbe {
    static Fields Of(const PostBloom& b) {
        return {&(b.*postBloomGlow), &(b.*postBloomThresholdShader), &(b.*postBloomBlur),
                &(b.*postBloomIntensity), &(b.*postBloomThreshold)};
    }
};

struct PostBlurProbe {
    static Fields Of(const PostBlur& b) {
        return {&(b.*postBlurFirst),  &(b.*postBlurSecond),  &(b.*postBlurShader),
                &(b.*postBlurPasses), &(b.*postBlurSizeRTT), &(b.*postBlurOffset)};
    }
};

} // namespace Vell

struct PostRGBProbe {
    static Fields Of(const PostRGB& rgb) { return {&(rgb.*postRgbShader), &(rgb.*postRgbOffset)}; }
};

struct PostWaterProbe {
    static Fields Of(const PostWater& water) {
        return {&(water.*postWaterShader), &(water.*postWaterClock), &(water.*postWaterEnable)};
    }
};

using Vell::FBO;
using Vell::PostBloom;
using Vell::PostBlur;
using Vell::PostEffect;

namespace {

Fields FieldsOf(const Vell::PostProcess& chain) {
    return {&(chain.*postProcessScene), &(chain.*postProcessSpare), &(chain.*postProcessEffects)};
}

// Whether an effect processes in its own way and leaves its flag to the base.
template <class Effect>
bool OnlyProcesses() {
    return Slot(&Effect::Process) == Slot(&PostEffect::Process) &&
           std::is_same_v<decltype(&Effect::Process), void (Effect::*)(FBO*, FBO*)> &&
           std::is_same_v<decltype(&Effect::SetEnabled), decltype(&PostEffect::SetEnabled)> &&
           std::is_same_v<decltype(&Effect::GetEnabled), decltype(&PostEffect::GetEnabled)>;
}

// The effect's own fields, behind the base with its virtual table and its flag.
template <class Effect>
bool BehindTheBase(const Effect& effect, const Fields& fields) {
    const void* own = static_cast<const char*>(static_cast<const void*>(&effect)) + sizeof(void*);
    return std::less<>()(own, fields.front()) && InOrder(fields);
}

} // namespace

class PostLayout : public GlTest {};

TEST_F(PostLayout, Effect_has_process_before_its_two_flag_operations) {
    EXPECT_EQ(Slot(&PostEffect::Process), 2u); // behind the destructor
    EXPECT_EQ(Slot(&PostEffect::SetEnabled), 3u);
    EXPECT_EQ(Slot(&PostEffect::GetEnabled), 4u);
    EXPECT_EQ(sizeof(PostEffect), 2 * sizeof(void*)); // the table and the flag, filled up
}

TEST_F(PostLayout, Chain_is_its_two_targets_and_its_effects) {
    FBO scene;
    const Vell::PostProcess chain(&scene);
    const Fields fields = FieldsOf(chain);
    EXPECT_EQ(fields.front(), &chain); // no virtual table before them
    EXPECT_TRUE(InOrder(fields));
}

TEST_F(PostLayout, Every_effect_has_its_own_process_only) {
    EXPECT_TRUE(OnlyProcesses<PostBloom>());
    EXPECT_TRUE(OnlyProcesses<PostBlur>());
    EXPECT_TRUE(OnlyProcesses<PostRGB>());
    EXPECT_TRUE(OnlyProcesses<PostWater>());
}

TEST_F(PostLayout, Every_effect_keeps_its_fields_behind_the_base_s) {
    const PostBloom bloom;
    EXPECT_TRUE(BehindTheBase(bloom, Vell::PostBloomProbe::Of(bloom)));
    const PostBlur blur;
    EXPECT_TRUE(BehindTheBase(blur, Vell::PostBlurProbe::Of(blur)));
    const PostRGB rgb;
    EXPECT_TRUE(BehindTheBase(rgb, PostRGBProbe::Of(rgb)));
    const PostWater water;
    EXPECT_TRUE(BehindTheBase(water, PostWaterProbe::Of(water)));
}
