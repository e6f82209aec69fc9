// Picture and sound of a finished film, from its first second to its last, with assets that tell
// when what happens. At 30 frames a second, which takes half the time and shows the same.

#include "tests/movie/film_test_base.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int rate = 44100;
constexpr double frameRate = 30.0;
constexpr double length = 118.5; // seconds of sound

// Where the picture changes from one frame to the next, in seconds: each is the first frame after
// its time, whatever the flights' clocks do, for the view or the ripple changes there.
constexpr double cuts[] = {13.912, 27.824, 41.736, 104.34};

// Where the sound falls silent for a moment while the glow follows it: the glow jumps up.
constexpr double gaps[] = {58.0, 61.3, 64.7, 68.05, 71.9, 75.1};
constexpr double gapLength = 0.1;

using Samples = std::vector<std::int16_t>;

/// A steady tone in the lowest band, silent in the gaps, with a click at each cut.
Samples Music() {
    constexpr double pi = 3.14159265358979;
    Samples samples(static_cast<std::size_t>(length * rate) * 2);
    for (std::size_t i = 0; i < samples.size() / 2; ++i) {
        const double t = static_cast<double>(i) / rate;
        double value = 0.25 * std::sin(2.0 * pi * 100.0 * t);
        for (double gap : gaps)
            if (t >= gap && t < gap + gapLength)
                value = 0.0;
        for (double cut : cuts)
            if (t >= cut && t < cut + 0.004)
                value = 0.9 * std::sin(2.0 * pi * 4000.0 * (t - cut));
        samples[2 * i] = samples[2 * i + 1] =
            static_cast<std::int16_t>(std::lround(value * 32767.0));
    }
    return samples;
}

/// Assets that cost little and tell much: a sky of six colours, nothing else, and the music.
void MakeData() {
    MakeDemoData();
    const struct {
        const char* name;
        std::array<unsigned char, 3> colour;
    } faces[] = {
        {"xpos", {120, 20, 20}}, {"xneg", {20, 110, 20}}, {"ypos", {30, 30, 90}},
        {"yneg", {90, 90, 20}},  {"zpos", {90, 20, 110}}, {"zneg", {20, 100, 110}},
    };
    for (const auto& face : faces) {
        std::vector<unsigned char> pixels;
        for (int i = 0; i < 8 * 8; ++i)
            pixels.insert(pixels.end(), face.colour.begin(), face.colour.end());
        WriteJpeg("Data/Gfx/City/sky/" + std::string(face.name) + ".jpg", 8, 8, pixels);
    }
    const Samples samples = Music();
    WriteFile("music.raw", {reinterpret_cast<const char*>(samples.data()), samples.size() * 2});
    std::filesystem::create_directories("Data/Musics");
    const Tools::Ending end = Tools::Run(
        {.arguments = {"lame", "--quiet", "-r", "-s", "44.1", "--signed", "--little-endian", "-b",
                       "192", "music.raw", "Data/Musics/Quorrel.mp3"}},
        60.0);
    ASSERT_EQ(end.exitStatus, 0) << end.errors;
}

/// Mean brightness of every frame (0 to 255), and how much it differs from the frame before.
struct Frame {
    double brightness = 0.0;
    double change = 0.0;
};

std::vector<Frame> Watch(const std::string& bytes) {
    constexpr std::size_t size = 96 * 9 * 3;
    std::vector<Frame> frames(bytes.size() / size);
    for (std::size_t n = 0; n < frames.size(); ++n) {
        double sum = 0.0;
        double change = 0.0;
        for (std::size_t i = n * size; i < (n + 1) * size; ++i) {
            const auto now = static_cast<unsigned char>(bytes[i]);
            sum += now;
            if (n > 0)
                change += std::abs(static_cast<int>(now) -
                                   static_cast<int>(static_cast<unsigned char>(bytes[i - size])));
        }
        frames[n] = {sum / static_cast<double>(size), change / static_cast<double>(size)};
    }
    return frames;
}

/// The frame near `time` that differs most from the one before.
int Cut(const std::vector<Frame>& frames, double time) {
    const int middle = static_cast<int>(time * frameRate);
    int largest = middle - 10;
    for (int n = middle - 10; n <= middle + 10; ++n)
        if (frames[static_cast<std::size_t>(n)].change >
            frames[static_cast<std::size_t>(largest)].change)
            largest = n;
    return largest;
}

/// The frame near `time` that is so much brighter than the one before as no other.
int Flash(const std::vector<Frame>& frames, double time) {
    const int middle = static_cast<int>(time * frameRate);
    const auto rise = [&](int n) {
        return frames[static_cast<std::size_t>(n)].brightness -
               frames[static_cast<std::size_t>(n - 1)].brightness;
    };
    int largest = middle - 10;
    for (int n = middle - 10; n <= middle + 10; ++n)
        if (rise(n) > rise(largest))
            largest = n;
    return largest;
}

/// When the click near `time` begins, in seconds: where the left side first exceeds half of full
/// scale.
double Click(const Samples& samples, double time) {
    for (auto i = static_cast<std::size_t>((time - 0.3) * rate);
         i < static_cast<std::size_t>((time + 0.3) * rate); ++i)
        if (std::abs(static_cast<int>(samples[2 * i])) > 0.6 * 32767)
            return static_cast<double>(i) / rate;
    return -1.0;
}

} // namespace

class SyncTest : public FilmTest {};

TEST_F(SyncTest, Keeps_picture_and_sound_in_step_from_first_to_last) {
    if (sanitized)
        GTEST_SKIP() << "the same in the other build, in a tenth of the time";
    ASSERT_NO_FATAL_FAILURE(MakeData());
    ASSERT_NO_FATAL_FAILURE(MustFilm({"--scale", "1", "--fps", "30", "out.mp4"}, 280.0));

    auto picture = Facts("out.mp4", "v");
    EXPECT_EQ(picture["nb_read_packets"], "3548"); // the last one at 118.233 s
    EXPECT_EQ(picture["r_frame_rate"], "30/1");
    EXPECT_EQ(picture["start_time"], "0.000000");
    EXPECT_EQ(Facts("out.mp4", "a")["start_time"], "0.000000");

    // As a player would show it: frames stay where their times are, so none may be missing.
    Output({"/usr/bin/env", "ffmpeg", "-v", "error", "-y", "-i", "out.mp4", "-fps_mode",
            "passthrough", "-map", "0:v", "-vf", "scale=96:9:flags=area", "-f", "rawvideo",
            "-pix_fmt", "rgb24", "frames.raw"});
    const std::vector<Frame> frames = Watch(ReadFile("frames.raw"));
    ASSERT_EQ(frames.size(), 3548u);
    const std::string bytes = Samples("out.mp4");
    ::Samples samples(bytes.size() / 2);
    std::memcpy(samples.data(), bytes.data(), samples.size() * 2);
    EXPECT_NEAR(static_cast<double>(samples.size()) / 2.0 / rate, 3548 / frameRate, 0.03);

    for (double cut : cuts) {
        EXPECT_NEAR(Click(samples, cut), cut, 0.001);
        // Within one frame: at the first frame after the click, never before it.
        EXPECT_EQ(Cut(frames, cut), static_cast<int>(std::ceil(cut * frameRate))) << cut << " s";
    }
    for (double gap : gaps) {
        // The spectrum looks at the last 2.9 ms, and the lowest band must have fallen under 0.03.
        const double flash = Flash(frames, gap) / frameRate;
        EXPECT_GE(flash, gap) << gap << " s";
        EXPECT_LE(flash, gap + 0.003 + 1.0 / frameRate) << gap << " s";
    }
}
