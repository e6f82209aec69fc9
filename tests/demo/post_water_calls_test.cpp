// The ripple, call by call.

#include "tests/post/effect_calls.h"

#include "demo/post_water.h"
#include "tests/support/fake_time.h"

#include <memory>

namespace {

class RippleCalls : public EffectCalls {};

} // namespace

TEST_F(RippleCalls, Sends_its_time_with_every_picture) {
    gl.NameProgram("ripple");
    PostWater ripple;
    EXPECT_TRUE(Made(NewProgram("ripple") + Send("ripple", "texture", "1i", "0") +
                     "glUseProgramObject(0)\n"));
    SetFakeTime(1.5); // made at 0
    ripple.Process(in.get(), out.get());
    EXPECT_TRUE(Made("-- picture under the program\n" + EnableTarget("out", 640, 480) +
                     "glUseProgramObject(ripple)\n" + Send("ripple", "time", "1f", "1.5") +
                     UnitOn(0) + BindTexture("in colour") + Quad() +
                     "glDisable(GL_TEXTURE_2D)\nglUseProgramObject(0)\n" +
                     "-- back to the screen\n" + DisableTarget()));
}

TEST_F(RippleCalls, Copies_without_a_shader_when_it_is_switched_off) {
    PostWater ripple;
    ripple.SetEnable(false);
    Forget();
    ripple.Process(in.get(), out.get());
    EXPECT_TRUE(Made("-- picture without a program\n" + EnableTarget("out", 640, 480) + UnitOn(0) +
                     BindTexture("in colour") + Quad() + "glDisable(GL_TEXTURE_2D)\n" +
                     "-- back to the screen\n" + DisableTarget()));
}

TEST_F(RippleCalls, Ends_with_its_shader) {
    gl.NameProgram("ripple");
    auto ripple = std::make_unique<PostWater>();
    Forget();
    ripple.reset();
    EXPECT_TRUE(Made(DeleteProgram("ripple")));
}
