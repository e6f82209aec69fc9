#include "tools/stage/show.h"

#include "tests/support/demo_data.h"
#include "tests/support/scratch.h"

#include <sys/time.h>

#include <vector>

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;

double Now() {
    timeval now{};
    gettimeofday(&now, nullptr);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_usec) * 1e-6;
}

/// Wants frame 1 of ten a second three times, and each other one once.
class Repeater : public Stage::Visitor {
public:
    std::vector<int> numbers;
    std::vector<double> times;

private:
    bool Wants(int /*number*/) override { return true; }
    void End(int number) override {
        numbers.push_back(number);
        times.push_back(Now());
    }
    bool Again(int number) override { return number == 1 && numbers.size() < 4; }
};

} // namespace

// The only test here: a process plays the show once.
TEST(PlayShow, Draws_a_frame_again_while_time_stands_still) {
    const ScratchDir scratch;
    MakeDemoData();
    Repeater repeater;
    Stage::PlayShow({10, 1}, 2, repeater);
    EXPECT_THAT(repeater.numbers, ElementsAre(0, 1, 1, 1, 2));
    EXPECT_EQ(repeater.times[1], repeater.times[2]);
    EXPECT_EQ(repeater.times[1], repeater.times[3]);
    EXPECT_NEAR(repeater.times[4] - repeater.times[1], 0.1, 1e-5);
}
