// The blur, call by call.

#include "tests/post/blur_calls.h"

#include "engine/post/post_blur.h"

#include <memory>
#include <utility>

using Vell::PostBlur;

TEST_F(BlurCalls, Builds_targets_and_shader_and_sends_its_defaults) {
    NameBlur();
    auto blur = std::make_unique<PostBlur>();
    EXPECT_TRUE(Made(NewTarget("first") + NewTarget("second") + NewProgram("blur") +
                     SizeTarget("first", 128, 128) + SizeTarget("second", 128, 128) +
                     Clamp("first") + Clamp("second") + SetUniform("blur", "offset", "0.01")));
}

TEST_F(BlurCalls, Takes_its_parameters_as_they_are_given) {
    NameBlur();
    PostBlur blur;
    Forget();
    for (const int size : {64, 1, 1000}) { // also beyond the screen
        blur.SetSizeRTT(size);
        EXPECT_TRUE(Made(SizeTarget("first", size, size) + SizeTarget("second", size, size)));
        EXPECT_EQ(blur.GetSizeRTT(), size);
    }
    for (const auto& [offset, sent] : {std::pair{0.5f, "0.5"}, {-0.25f, "-0.25"}, {2.0f, "2"}}) {
        blur.SetOffset(offset);
        EXPECT_TRUE(Made(SetUniform("blur", "offset", sent)));
        EXPECT_EQ(blur.GetOffset(), offset);
    }
    for (const int passes : {3, 0, 100}) {
        blur.SetPass(passes);
        EXPECT_TRUE(Made(""));
        EXPECT_EQ(blur.GetPass(), passes);
    }
}

TEST_F(BlurCalls, Filters_back_and_forth) {
    NameBlur();
    PostBlur blur;
    Forget();
    blur.Process(in.get(), out.get());
    EXPECT_TRUE(Made(Blurred("in", "out", 5)));
    for (const int passes : {0, 1, 2, 12}) {
        blur.SetPass(passes);
        blur.Process(in.get(), out.get());
        EXPECT_TRUE(Made(Blurred("in", "out", passes))) << passes;
    }
}
