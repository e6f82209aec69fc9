// chart_music SCORE WAV FOLDER: draws the arrangement, the spectrogram and a look at the pulse.
#include "art/music/lettering.h"
#include "art/music/loudness.h"
#include "art/music/mixer.h"
#include "art/music/powerspectrum.h"
#include "art/music/scorefile.h"
#include "art/music/sequencer.h"

#include <algorithm>
#include <cstdio>

namespace {

using Art::Picture;
using Art::Rgba;

constexpr int kLeft = 90; // pixels for names
constexpr int kTop = 26;  // for titles
constexpr int kPixelsPerBar = 16;
constexpr int kRowHeight = 13;
const Rgba kPaper{0.06F, 0.07F, 0.10F, 1};
const Rgba kInk{0.80F, 0.84F, 0.90F, 1};
const Rgba kGrid{0.22F, 0.25F, 0.32F, 1};
const Rgba kCut{0.95F, 0.62F, 0.25F, 1};

/// A colour that goes from dark blue over magenta and orange to white for 0..1.
Rgba Heat(double value) {
    static const Rgba kStops[] = {{0.02F, 0.02F, 0.06F, 1},
                                  {0.13F, 0.08F, 0.36F, 1},
                                  {0.62F, 0.14F, 0.45F, 1},
                                  {0.96F, 0.50F, 0.20F, 1},
                                  {1.00F, 0.96F, 0.80F, 1}};
    const double place = std::clamp(value, 0.0, 0.9999) * 4;
    const int stop = static_cast<int>(place);
    const auto part = static_cast<float>(place - stop);
    return kStops[stop] * (1 - part) + kStops[stop + 1] * part;
}

Picture Sheet(int width, int height) {
    Picture picture(width, height);
    Music::FillBox(picture, 0, 0, width, height, kPaper);
    return picture;
}

int BarX(double bar) {
    return kLeft + static_cast<int>(std::lround((bar - 1) * kPixelsPerBar));
}

/// Section titles on top and a line through the sheet at each.
void DrawSections(Picture& picture, const Music::Score& score) {
    for (std::size_t i = 0; i < score.sections.size(); ++i) {
        const auto& [bar, title] = score.sections[i];
        Music::FillBox(picture, BarX(bar), 0, 1, picture.Height(), kCut);
        Music::WriteText(picture, BarX(bar) + 4, i % 2 == 0 ? 3 : 14, title, kInk);
    }
}

/// One row for each track, a mark for every note, as long as it sounds.
Picture Arrangement(const Music::Score& score) {
    const int rows = static_cast<int>(score.tracks.size());
    Picture picture = Sheet(BarX(score.bars + 1) + 10, kTop + rows * kRowHeight + 4);
    for (int row = 0; row < rows; ++row) {
        const Music::TrackText& track = score.tracks[static_cast<std::size_t>(row)];
        const int y = kTop + row * kRowHeight;
        Music::FillBox(picture, kLeft, y + kRowHeight - 1, picture.Width() - kLeft - 10, 1, kGrid);
        Music::WriteText(picture, 6, y + 3, track.name, kInk);
        for (const Music::Note& note : NotesOf(score, track, {})) {
            const double bar = 1 + note.start * score.tempo / 240.0;
            const int x = BarX(bar);
            const int end = BarX(bar + note.length * score.tempo / 240.0);
            Music::FillBox(picture, x, y + 2, std::max(1, end - x), kRowHeight - 4,
                           Heat(0.35 + 0.5 * row / rows + 0.15 * note.velocity));
        }
    }
    DrawSections(picture, score);
    return picture;
}

/// Power of a log-frequency row: the mean of the bins that fall into it, dB.
double RowLevel(const std::vector<double>& power, double from, double to, int size) {
    const double binsPerHertz = static_cast<double>(size) / Music::kSampleRate;
    const auto first = static_cast<std::size_t>(std::max(1.0, std::floor(from * binsPerHertz)));
    const auto last = std::min(power.size() - 1, static_cast<std::size_t>(to * binsPerHertz) + 1);
    double most = 1e-12;
    for (std::size_t k = first; k < last; ++k) {
        most = std::max(most, power[k]);
    }
    return 10.0 * std::log10(most);
}

Picture Spectrogram(const Music::Score& score, const Music::Stereo& signal) {
    constexpr int kHeight = 400;
    constexpr int kFft = 8192;
    constexpr double kLowest = 20.0;
    constexpr double kHighest = 20000.0;
    Picture picture = Sheet(BarX(score.bars + 1) + 10, kTop + kHeight);
    const auto hertz = [&](int row) {
        return kLowest * std::pow(kHighest / kLowest, 1.0 - row / static_cast<double>(kHeight));
    };
    for (int x = kLeft; x < BarX(score.bars + 1); ++x) {
        const double bar = 1 + (x - kLeft) / static_cast<double>(kPixelsPerBar);
        const std::size_t at = Music::FrameAt(score.TimeOfBar(bar));
        if (at + kFft > signal.Frames()) {
            break;
        }
        const auto power = Music::PowerSpectrum(signal.left.data() + at, kFft);
        for (int row = 0; row < kHeight; ++row) {
            // 3 dB an octave up: pink noise is even.
            const double tilt = 3.0 * std::log2(hertz(row) / 1000.0);
            const double level = RowLevel(power, hertz(row + 1), hertz(row), kFft) + tilt;
            picture.At(x, kTop + row) = Heat((level + 85.0) / 70.0);
        }
    }
    for (const auto& [name, value] : {std::pair{"20 kHz", 20000.0},
                                      {"5 kHz", 5000.0},
                                      {"1 kHz", 1000.0},
                                      {"200 Hz", 200.0},
                                      {"50 Hz", 50.0}}) {
        const double part = 1.0 - std::log(value / kLowest) / std::log(kHighest / kLowest);
        Music::WriteText(picture, 30, kTop + static_cast<int>(part * (kHeight - 8)), name, kInk);
    }
    DrawSections(picture, score);
    return picture;
}

/// Six beats of what the lowest band sees, with the threshold on both sides of zero.
Picture PulseLook(const Music::Score& score, const Music::Stereo& signal) {
    constexpr int kHalf = 110;
    constexpr int kWidth = 1000;
    constexpr double kFullScale = 0.7;
    std::string message;
    const Music::BeatPulse pulse = Music::PulseOf(score, message);
    const auto means = Music::LowestBandMean(signal.left);
    Picture picture = Sheet(kLeft + kWidth + 10, kTop + 2 * kHalf + 10);
    const double from = pulse.TimeOf(20) - 0.1;
    const double perPixel = 6.2 * pulse.secondsPerBeat / kWidth;
    const int middle = kTop + kHalf;
    const int threshold = static_cast<int>(std::lround(0.03 / kFullScale * kHalf));
    Music::FillBox(picture, kLeft, middle - threshold, kWidth, 2 * threshold + 1, kGrid);
    for (int beat = 20; beat < 26; ++beat) {
        const int x = kLeft + static_cast<int>((pulse.TimeOf(beat) - from) / perPixel);
        Music::FillBox(picture, x, kTop, 1, 2 * kHalf, kCut);
    }
    for (int x = 0; x < kWidth; ++x) {
        const std::size_t first = Music::FrameAt(from + x * perPixel);
        const std::size_t last =
            std::min(means.size(), Music::FrameAt(from + (x + 1) * perPixel) + 1);
        for (std::size_t i = first; i < last; ++i) {
            const int y = middle - static_cast<int>(std::lround(means[i] / kFullScale * kHalf));
            Music::FillBox(picture, kLeft + x, y, 1, 1, kInk);
        }
    }
    Music::WriteText(picture, kLeft, 8,
                     "mean of the left channel over 3 ms, grey below 0.03, "
                     "beats marked",
                     kInk);
    return picture;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: chart_music SCORE SOUND.wav FOLDER\n");
        return 2;
    }
    Music::Score score;
    Music::Stereo signal;
    if (!Music::ReadPiece(argv[1], argv[2], score, signal))
        return 1;
    const std::string folder = std::string(argv[3]) + "/";
    const bool written =
        Art::WritePng(folder + "arrangement.png", Arrangement(score), 3, Art::Depth::Rounded) &&
        Art::WritePng(folder + "spectrogram.png", Spectrogram(score, signal), 3,
                      Art::Depth::Rounded) &&
        Art::WritePng(folder + "pulse.png", PulseLook(score, signal), 3, Art::Depth::Rounded);
    return written ? 0 : 1;
}
