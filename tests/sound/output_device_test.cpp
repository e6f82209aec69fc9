#include "sound/output_device.h"

#include "sound/control.h"
#include "tests/sound/whole_track.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using Vell::Sound::Device;
using Vell::Sound::DeviceOutput;
using Vell::Sound::SteadyTime;
using Outcome = Vell::Sound::Device::Outcome;

namespace {

// A track's end is told to the nearest frame, that is up to half a frame early.
constexpr milliseconds rounding{1};

constexpr int rate = 10'000; // frames per second: ten frames are a millisecond
constexpr int period = 100;
constexpr int buffer = 1'000;

/// What a scripted device answers, and what it was given.
struct Script {
    bool opens = true;
    /// What becomes of a write that starts at this many frames taken; by default all is taken.
    std::function<Outcome(std::int64_t taken)> answer = [](std::int64_t) { return Outcome::Taken; };
    std::function<std::int64_t()> delay = [] { return 0; };
    int drainsNeeded = 0;

    // Written by the feeding thread, read after it has ended:
    std::vector<std::int16_t> received;
    int openedRate = 0;
    std::atomic<int> writes = 0;
    std::atomic<std::int64_t> taken = 0;
    std::atomic<int> drains = 0;
    std::atomic<bool> closed = false;
};

class ScriptedDevice : public Device {
public:
    explicit ScriptedDevice(Script& toFollow) : script(toFollow) {}
    ~ScriptedDevice() override { script.closed = true; }

    bool Open(int atRate) override {
        script.openedRate = atRate;
        return script.opens;
    }
    std::int64_t PeriodFrames() const override { return period; }
    std::int64_t BufferFrames() const override { return buffer; }

    Answer Write(const std::int16_t* frames, std::int64_t count) override {
        ++script.writes;
        const Outcome outcome = script.answer(script.taken);
        if (outcome != Outcome::Taken)
            return {outcome, 0};
        script.received.insert(script.received.end(), frames, frames + 2 * count);
        script.taken += count;
        return {outcome, count};
    }

    void Wait() override { std::this_thread::sleep_for(milliseconds(1)); }
    std::int64_t Delay() override { return script.delay(); }
    bool Drain() override { return ++script.drains > script.drainsNeeded; }

private:
    Script& script;
};

/// A track in which every sample tells where it stands.
std::shared_ptr<const WholeTrack> NumberedTrack(int frames) {
    std::vector<std::int16_t> samples;
    for (int i = 0; i < 2 * frames; ++i)
        samples.push_back(static_cast<std::int16_t>(i % 30'011));
    return std::make_shared<const WholeTrack>(rate, std::move(samples));
}

bool Within(milliseconds limit, const std::function<bool()>& condition) {
    const auto end = steady_clock::now() + limit;
    while (!condition() && steady_clock::now() < end)
        std::this_thread::sleep_for(milliseconds(1));
    return condition();
}

class DeviceOutputTest : public ::testing::Test {
protected:
    DeviceOutput& Play(int frames) {
        track = NumberedTrack(frames);
        output = std::make_unique<DeviceOutput>(track, std::make_unique<ScriptedDevice>(script),
                                                SteadyTime);
        return *output;
    }

    bool PlaysToTheEnd() {
        return Within(milliseconds(5000), [this] { return script.closed.load(); });
    }

    Script script;
    std::shared_ptr<const WholeTrack> track;
    std::unique_ptr<DeviceOutput> output; // last: its thread uses the script
};

TEST_F(DeviceOutputTest, Hands_over_every_sample_once_and_in_order) {
    Play(2'345); // no multiple of the period
    ASSERT_TRUE(PlaysToTheEnd());
    output.reset();
    EXPECT_EQ(script.received, track->samples);
    EXPECT_EQ(script.openedRate, rate);
    EXPECT_EQ(script.drains, 1);
}

TEST_F(DeviceOutputTest, Waits_until_the_device_has_played_out) {
    script.drainsNeeded = 3;
    Play(500);
    ASSERT_TRUE(PlaysToTheEnd());
    EXPECT_EQ(script.drains, 4);
}

TEST_F(DeviceOutputTest, Keeps_a_device_that_takes_everything_at_the_speed_of_the_clock) {
    const auto start = steady_clock::now();
    DeviceOutput& playing = Play(10'000); // one second
    std::int64_t heard = 0;
    while (heard < 3'000) {
        heard = playing.FramesHeard();
        const std::int64_t taken = script.taken;
        const auto passed = steady_clock::now() - start; // last: a busy machine stops anywhere
        const std::int64_t clock = std::chrono::duration_cast<milliseconds>(passed).count() * 10;
        ASSERT_LE(heard, clock + 10);
        // Two buffers ahead of the clock, and the period that was begun before that.
        ASSERT_LE(taken, clock + 10 + 2 * buffer + period);
    }
    EXPECT_GE(steady_clock::now() - start, milliseconds(300) - rounding);
}

TEST_F(DeviceOutputTest, Plays_in_silence_when_the_device_cannot_be_opened) {
    script.opens = false;
    const auto start = steady_clock::now();
    DeviceOutput& playing = Play(1'000);
    EXPECT_TRUE(Within(milliseconds(5000), [&] { return playing.FramesHeard() >= 1'000; }));
    EXPECT_GE(steady_clock::now() - start, milliseconds(100) - rounding);
    EXPECT_EQ(script.writes, 0);
}

TEST_F(DeviceOutputTest, Goes_on_in_silence_when_the_device_is_lost_on_the_way) {
    script.answer = [](std::int64_t taken) {
        return taken < 1'000 ? Outcome::Taken : Outcome::Lost;
    };
    const auto start = steady_clock::now();
    DeviceOutput& playing = Play(3'000);
    EXPECT_TRUE(PlaysToTheEnd()) << "the device is given back at once";
    EXPECT_TRUE(Within(milliseconds(5000), [&] { return playing.FramesHeard() >= 3'000; }));
    EXPECT_GE(steady_clock::now() - start, milliseconds(300) - rounding) << "at the right speed";
    EXPECT_EQ(script.taken, 1'000);
    EXPECT_EQ(script.drains, 0);
}

TEST_F(DeviceOutputTest, Gives_up_a_device_that_takes_nothing_any_more) {
    script.answer = [](std::int64_t taken) { return taken < 500 ? Outcome::Taken : Outcome::Full; };
    DeviceOutput& playing = Play(2'000);
    EXPECT_TRUE(PlaysToTheEnd());
    EXPECT_EQ(script.writes, 5 + 10) << "five periods, then ten tries";
    EXPECT_TRUE(Within(milliseconds(5000), [&] { return playing.FramesHeard() >= 2'000; }));
}

TEST_F(DeviceOutputTest, Is_patient_with_a_device_that_is_full_now_and_then) {
    // Nine tries in a row find no room before every period: one fewer than it takes to give up.
    script.answer = [this](std::int64_t) {
        return script.writes % 10 == 0 ? Outcome::Taken : Outcome::Full;
    };
    Play(500);
    ASSERT_TRUE(PlaysToTheEnd());
    output.reset();
    EXPECT_EQ(script.received, track->samples);
}

TEST_F(DeviceOutputTest, Goes_on_with_the_clock_after_the_device_ran_dry) {
    bool dry = true;
    script.answer = [&](std::int64_t taken) {
        if (taken < 1'000 || !dry)
            return Outcome::Taken;
        dry = false;
        std::this_thread::sleep_for(milliseconds(300)); // for which the machine was busy
        return Outcome::Recovered;
    };
    Play(12'000);
    ASSERT_TRUE(PlaysToTheEnd());
    output.reset();
    // The first 100 ms were handed over at once; the next frame is the one of 300 ms or later.
    const std::size_t before = 2 * 1'000;
    ASSERT_GT(script.received.size(), before);
    const std::int16_t* next = &script.received[before];
    EXPECT_TRUE(std::equal(script.received.begin(), script.received.begin() + before,
                           track->samples.begin()));
    EXPECT_GE(*next, 2 * 3'000);
    // From there to the end nothing is missing.
    const std::size_t rest = script.received.size() - before;
    EXPECT_TRUE(std::equal(track->samples.end() - static_cast<std::ptrdiff_t>(rest),
                           track->samples.end(), next));
}

TEST_F(DeviceOutputTest, Ends_when_a_device_ran_dry_until_after_the_end) {
    script.answer = [](std::int64_t taken) {
        if (taken < 500)
            return Outcome::Taken;
        std::this_thread::sleep_for(milliseconds(200));
        return Outcome::Recovered;
    };
    DeviceOutput& playing = Play(1'000);
    EXPECT_TRUE(PlaysToTheEnd());
    EXPECT_EQ(script.taken, 500);
    EXPECT_GE(playing.FramesHeard(), 1'000);
}

TEST_F(DeviceOutputTest, Reports_what_was_written_less_the_delay) {
    Vell::Sound::HandTime time;
    script.answer = [&](std::int64_t taken) {
        time.MoveTo(1.0); // far ahead, so that the clock does not hold the position back
        return taken < 1'000 ? Outcome::Taken : Outcome::Full;
    };
    script.delay = [this] { return script.taken < 1'000 ? 0 : 600; };
    track = NumberedTrack(5'000);
    const DeviceOutput playing(track, std::make_unique<ScriptedDevice>(script),
                               [&] { return time.Now(); });
    EXPECT_TRUE(PlaysToTheEnd());
    EXPECT_EQ(playing.FramesHeard(), 400);
    time.MoveTo(1.01);
    EXPECT_EQ(playing.FramesHeard(), 500) << "and the time since, 10 ms";
}

TEST_F(DeviceOutputTest, Waits_for_a_slow_device_but_not_for_long) {
    script.delay = [this] { return script.taken.load(); }; // nothing has left it yet
    const auto start = steady_clock::now();
    Play(5'000);
    const auto passed = steady_clock::now() - start;
    EXPECT_GE(passed, milliseconds(50));
    EXPECT_LT(passed, milliseconds(500)) << "50 ms, and what a busy machine adds";
}

TEST_F(DeviceOutputTest, Returns_as_soon_as_the_first_frame_has_left_the_device) {
    script.delay = [this] { return script.taken < 1'000 ? script.taken.load() : 990; };
    Play(5'000);
    EXPECT_GE(script.taken, 1'000);
}

TEST_F(DeviceOutputTest, Stops_in_the_middle_of_everything) {
    const std::function<Outcome(std::int64_t)> answers[] = {
        [](std::int64_t) { return Outcome::Taken; }, [](std::int64_t) { return Outcome::Full; },
        [](std::int64_t) { return Outcome::Recovered; }};
    for (const auto& answer : answers) {
        script.answer = answer;
        script.drainsNeeded = 1 << 30;
        const auto start = steady_clock::now();
        Play(100);       // ends in the middle of draining,
        Play(1'000'000); // of waiting for the clock, or of what the answer leads to
        output.reset();
        EXPECT_LT(steady_clock::now() - start, milliseconds(1000));
    }
}

TEST_F(DeviceOutputTest, Leaves_a_device_that_never_finishes) {
    script.drainsNeeded = 1 << 30;
    Play(100);
    EXPECT_TRUE(PlaysToTheEnd());
}

TEST_F(DeviceOutputTest, Plays_a_track_without_a_frame) {
    DeviceOutput& playing = Play(0);
    EXPECT_TRUE(PlaysToTheEnd());
    EXPECT_EQ(script.writes, 0);
    EXPECT_EQ(playing.FramesHeard(), 0);
}

} // namespace
