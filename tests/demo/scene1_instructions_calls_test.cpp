// What a frame costs beside the driver: the demo's and the engine's own instructions, counted one
// by one over an OpenGL that is left out of the count.

#include "tests/recording/calls.h"
#include "tests/support/instructions.h"

#include "demo/scene1.h"
#include "demo/show.h"
#include "tests/support/fake_time.h"

#include <filesystem>
#include <string>
#include <vector>

namespace {

long Own(const std::function<void()>& work) {
    return InstructionsOf(work, RecordedFunctions());
}

/// As long as Mesa's list, which has what the engine asks for behind some two thousand characters.
std::string LongList(const std::string& asked) {
    const std::string other = "GL_SOME_other_extension ";
    std::string list;
    while (list.size() < 2200)
        list += other;
    list += asked;
    while (list.size() < 7800)
        list += other;
    return list;
}

} // namespace

class Instructions : public Calls {
protected:
    void SetUp() override {
        Calls::SetUp();
        if (Own([] {}) < 0)
            GTEST_SKIP() << "counts on x86-64";
    }

    static long OwnInMiddleOf(Scene1& scene, const Show::Flight& flight);
};

/// The second frame in the middle of a flight: the first one finds a view that it did not know.
long Instructions::OwnInMiddleOf(Scene1& scene, const Show::Flight& flight) {
    SetFakeTime(flight.begin + static_cast<double>(flight.duration) / 2);
    scene.Draw(0.1f);
    const long own = Own([&] { scene.Draw(0.1f); });
    Forget();
    return own;
}

// A hundred more of them are a hundred more.
TEST_F(Instructions, Are_counted_one_by_one) {
    const long few = Own([] { asm volatile("nop"); });
    const long many = Own([] { asm volatile(".rept 101\nnop\n.endr"); });
    EXPECT_EQ(many - few, 100);
}

// To write a call down takes thousands. What is left are those of the count itself and of the call.
TEST_F(Instructions, Of_OpenGL_are_not_counted) {
    const long nothing = Own([] {});
    const long call = Own([] { glEnable(GL_BLEND); });
    EXPECT_TRUE(Made("glEnable(GL_BLEND)"));
    EXPECT_GE(call - nothing, 2) << "an argument and the call";
    EXPECT_LE(call - nothing, 10);
}

// The frame takes 372 million instructions on Mesa's software renderer (bench/run replay): 0.05 %
// of that are 186,000.
TEST_F(Instructions, Of_a_frame_are_its_own_to_half_a_thousandth) {
    gl.extensions = LongList(gl.extensions);
    std::filesystem::create_directory_symlink(NIMBREL_SOURCE_DIR "/Data", "Data");
    Scene1 scene;
    scene.Load();
    std::vector<float> spectrum(64, 0.5f);
    scene.SetSpectrum(spectrum.data());
    const long own = OwnInMiddleOf(scene, Show::flights[Show::OverRoofs]);
    EXPECT_LE(own, 186'000);
    EXPECT_GE(own, 30'000) << "is the city there, with its thousands of calls?";
}
