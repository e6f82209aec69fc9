// A frame takes no memory: it could run short in the middle of the show, and asking for it takes
// time. In a file of its own, for what counts replaces the operator new of the whole program.

#include "tests/recording/calls.h"

#include "demo/scene1.h"
#include "demo/show.h"
#include "tests/allocations/allocations.h"
#include "tests/support/demo_data.h"
#include "tests/support/fake_time.h"

#include <vector>

namespace {

/// What the frames of the show take, each second of it.
int AllocationsOfAllFrames(Scene1& scene) {
    int sum = 0;
    for (int second = 0; second < static_cast<int>(Show::runningTime); ++second) {
        SetFakeTime(second);
        const int before = Allocations();
        scene.Draw(1.0f);
        sum += Allocations() - before;
    }
    return sum;
}

} // namespace

class FrameAllocations : public Calls {
protected:
    /// But those of the OpenGL that writes down its calls.
    FrameAllocations() {
        CountAllocationsIf([] { return gl.writing == 0; });
    }
};

TEST_F(FrameAllocations, Are_none_in_any_frame_of_the_show) {
    MakeDemoData();
    SetFakeTime(0.0);
    Scene1 scene;
    scene.Load();
    ASSERT_GT(Allocations(), 0) << "loading takes memory: is it counted?";
    std::vector<float> spectrum(64, 0.5f);
    scene.SetSpectrum(spectrum.data());
    EXPECT_EQ(AllocationsOfAllFrames(scene), 0);
}
