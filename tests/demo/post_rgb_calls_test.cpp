// The colour split, call by call.

#include "tests/post/effect_calls.h"

#include "demo/post_rgb.h"

#include <memory>

namespace {

class SplitCalls : public EffectCalls {};

} // namespace

TEST_F(SplitCalls, Sends_its_offset_with_every_picture) {
    gl.NameProgram("split");
    PostRGB split;
    // Building leaves the program in use: the sampler is sent as it is, and then nothing is.
    EXPECT_TRUE(Made(NewProgram("split") + Send("split", "texture", "1i", "0") +
                     "glUseProgramObject(0)\n"));
    split.SetOffset(0.75f);
    EXPECT_TRUE(Made(""));
    split.Process(in.get(), out.get());
    EXPECT_TRUE(Made("-- target and program\n" + EnableTarget("out", 640, 480) +
                     "glUseProgramObject(split)\n" + Send("split", "offset", "1f", "0.75") +
                     "-- picture\n" + UnitOn(0) + BindTexture("in colour") + "-- quad\n" + Quad() +
                     "-- as it was found\n" + "glDisable(GL_TEXTURE_2D)\nglUseProgramObject(0)\n" +
                     DisableTarget()));
}

TEST_F(SplitCalls, Ends_with_its_shader) {
    gl.NameProgram("split");
    auto split = std::make_unique<PostRGB>();
    Forget();
    split.reset();
    EXPECT_TRUE(Made(DeleteProgram("split")));
}
