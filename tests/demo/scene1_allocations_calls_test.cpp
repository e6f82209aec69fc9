// A frame takes no memory: it could run short in the middle of the show, and asking for it takes
// time. In a file of its own, for it has its own operator new.

#include "tests/recording/calls.h"

#include "demo/scene1.h"
#include "demo/show.h"
#include "tests/support/demo_data.h"
#include "tests/support/fake_time.h"

#include <cstddef>
#include <cstdlib>
#include <new>
#include <vector>

namespace {

std::size_t allocations = 0; // but those of the OpenGL that writes down its calls

/// What the frames of the show take, each second of it.
std::size_t AllocationsOfAllFrames(Scene1& scene) {
    std::size_t sum = 0;
    for (int second = 0; second < static_cast<int>(Show::runningTime); ++second) {
        SetFakeTime(second);
        const std::size_t before = allocations;
        scene.Draw(1.0f);
        sum += allocations - before;
    }
    return sum;
}

} // namespace

// Not inlined, or the compiler takes malloc() and delete for a pair that does not match.
[[gnu::noinline]] void* operator new(std::size_t size) {
    if (gl.writing == 0)
        ++allocations;
    if (void* memory = std::malloc(size > 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

class Allocations : public Calls {};

TEST_F(Allocations, Are_none_in_any_frame_of_the_show) {
    MakeDemoData();
    SetFakeTime(0.0);
    Scene1 scene;
    scene.Load();
    ASSERT_GT(allocations, 0U) << "loading takes memory: is it counted?";
    std::vector<float> spectrum(64, 0.5f);
    scene.SetSpectrum(spectrum.data());
    EXPECT_EQ(AllocationsOfAllFrames(scene), 0U);
}
