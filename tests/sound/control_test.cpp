#include "sound/control.h"

#include "tests/sound/alsa_setup.h"
#include "tests/sound/whole_track.h"
#include "tests/support/scratch.h"

#include <gtest/gtest.h>

#include <memory>

using namespace Vell::Sound;

namespace {

class Control : public ::testing::Test {
protected:
    ~Control() override { SetOutputMaker({}); }

    std::shared_ptr<const Track> track =
        std::make_shared<const WholeTrack>(44100, std::vector<std::int16_t>(2 * 44100));
};

struct FixedOutput : Output {
    std::int64_t FramesHeard() const override { return 12'345; }
};

TEST_F(Control, Hand_time_stands_until_it_is_moved) {
    HandTime time;
    EXPECT_EQ(time.Now(), Time(0));
    time.MoveTo(1.5);
    EXPECT_EQ(time.Now(), std::chrono::milliseconds(1500));
    time.MoveTo(0.25); // backwards too
    EXPECT_EQ(time.Now(), std::chrono::milliseconds(250));
}

TEST_F(Control, An_output_by_hand_hears_the_frames_of_each_moment) {
    const auto time = std::make_shared<HandTime>();
    time->MoveTo(10.0);
    PlayByHand(time);
    const std::unique_ptr<Output> output = MakeOutput(track);
    EXPECT_EQ(output->FramesHeard(), 0) << "the track starts at the moment it is played";
    for (int frame = 1; frame <= 60; ++frame) { // of a film with 60 a second
        time->MoveTo(10.0 + frame / 60.0);
        EXPECT_EQ(output->FramesHeard(), frame * 735) << "44100 / 60 = 735";
    }
}

TEST_F(Control, Any_output_can_be_installed) {
    std::shared_ptr<const Track> played;
    SetOutputMaker([&](std::shared_ptr<const Track> toPlay) {
        played = std::move(toPlay);
        return std::make_unique<FixedOutput>();
    });
    EXPECT_EQ(MakeOutput(track)->FramesHeard(), 12'345);
    EXPECT_EQ(played, track);
}

TEST_F(Control, An_empty_maker_brings_the_sound_device_back) {
    const ScratchDir scratch;
    const AlsaSetup setup(fileDevice);
    SetOutputMaker([](const auto&) { return std::make_unique<FixedOutput>(); });
    SetOutputMaker({});
    MakeOutput(track);
    EXPECT_TRUE(std::filesystem::exists("out.raw"));
}

} // namespace
