#include "art/common/foldertofill.h"
#include "art/music/lettering.h"
#include "art/music/loudness.h"
#include "art/music/mixer.h"
#include "art/music/powerspectrum.h"
#include "art/music/scorefile.h"
#include "art/music/sequencer.h"
#include "tools/options/commandline.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

using Art::Picture;
using Art::Rgba;

constexpr int leftMargin = 90; // pixels for names
constexpr int topMargin = 26;  // for titles
constexpr int pixelsPerBar = 16;
constexpr int rowHeight = 13;
const Rgba paperColour{0.06F, 0.07F, 0.10F, 1};
const Rgba inkColour{0.80F, 0.84F, 0.90F, 1};
const Rgba gridColour{0.22F, 0.25F, 0.32F, 1};
const Rgba cutColour{0.95F, 0.62F, 0.25F, 1};

/// A colour that goes from dark blue over magenta and orange to white for 0..1.
Rgba Heat(double value) {
    static const Rgba stops[] = {{0.02F, 0.02F, 0.06F, 1},
                                 {0.13F, 0.08F, 0.36F, 1},
                                 {0.62F, 0.14F, 0.45F, 1},
                                 {0.96F, 0.50F, 0.20F, 1},
                                 {1.00F, 0.96F, 0.80F, 1}};
    const double place = std::clamp(value, 0.0, 0.9999) * 4;
    const int stop = static_cast<int>(place);
    const auto part = static_cast<float>(place - stop);
    return stops[stop] * (1 - part) + stops[stop + 1] * part;
}

Picture Sheet(int width, int height) {
    Picture picture(width, height);
    Music::FillBox(picture, 0, 0, width, height, paperColour);
    return picture;
}

int BarX(double bar) {
    return leftMargin + static_cast<int>(std::lround((bar - 1) * pixelsPerBar));
}

/// Section titles on top and a line through the sheet at each.
void DrawSections(Picture& picture, const Music::Score& score) {
    for (std::size_t i = 0; i < score.sections.size(); ++i) {
        const auto& [bar, title] = score.sections[i];
        Music::FillBox(picture, BarX(bar), 0, 1, picture.Height(), cutColour);
        Music::WriteText(picture, BarX(bar) + 4, i % 2 == 0 ? 3 : 14, title, inkColour);
    }
}

/// One row for each track, a mark for every note, as long as it sounds.
Picture Arrangement(const Music::Score& score) {
    const int rows = static_cast<int>(score.tracks.size());
    Picture picture = Sheet(BarX(score.bars + 1) + 10, topMargin + rows * rowHeight + 4);
    for (int row = 0; row < rows; ++row) {
        const Music::TrackText& track = score.tracks[static_cast<std::size_t>(row)];
        const int y = topMargin + row * rowHeight;
        Music::FillBox(picture, leftMargin, y + rowHeight - 1, picture.Width() - leftMargin - 10, 1,
                       gridColour);
        Music::WriteText(picture, 6, y + 3, track.name, inkColour);
        for (const Music::Note& note : NotesOf(score, track, {})) {
            const double bar = 1 + note.start * score.tempo / 240.0;
            const int x = BarX(bar);
            const int end = BarX(bar + note.length * score.tempo / 240.0);
            Music::FillBox(picture, x, y + 2, std::max(1, end - x), rowHeight - 4,
                           Heat(0.35 + 0.5 * row / rows + 0.15 * note.velocity));
        }
    }
    DrawSections(picture, score);
    return picture;
}

/// Power of a log-frequency row: the mean of the bins that fall into it, dB.
double RowLevel(const std::vector<double>& power, double from, double to, int size) {
    const double binsPerHertz = static_cast<double>(size) / Music::sampleRate;
    const auto first = static_cast<std::size_t>(std::max(1.0, std::floor(from * binsPerHertz)));
    const auto last = std::min(power.size() - 1, static_cast<std::size_t>(to * binsPerHertz) + 1);
    double most = 1e-12;
    for (std::size_t k = first; k < last; ++k)
        most = std::max(most, power[k]);
    return 10.0 * std::log10(most);
}

Picture Spectrogram(const Music::Score& score, const Music::Stereo& signal) {
    constexpr int plotHeight = 400;
    constexpr int fftSize = 8192;
    constexpr double lowestHz = 20.0;
    constexpr double highestHz = 20000.0;
    Picture picture = Sheet(BarX(score.bars + 1) + 10, topMargin + plotHeight);
    const auto hertz = [&](int row) {
        return lowestHz *
               std::pow(highestHz / lowestHz, 1.0 - row / static_cast<double>(plotHeight));
    };
    for (int x = leftMargin; x < BarX(score.bars + 1); ++x) {
        const double bar = 1 + (x - leftMargin) / static_cast<double>(pixelsPerBar);
        const std::size_t at = Music::FrameAt(score.TimeOfBar(bar));
        if (at + fftSize > signal.Frames())
            break;
        const auto power = Music::PowerSpectrum(signal.left.data() + at, fftSize);
        for (int row = 0; row < plotHeight; ++row) {
            // 3 dB an octave up: pink noise is even.
            const double tilt = 3.0 * std::log2(hertz(row) / 1000.0);
            const double level = RowLevel(power, hertz(row + 1), hertz(row), fftSize) + tilt;
            picture.At(x, topMargin + row) = Heat((level + 85.0) / 70.0);
        }
    }
    for (const auto& [name, value] : {std::pair{"20 kHz", 20000.0},
                                      {"5 kHz", 5000.0},
                                      {"1 kHz", 1000.0},
                                      {"200 Hz", 200.0},
                                      {"50 Hz", 50.0}}) {
        const double part = 1.0 - std::log(value / lowestHz) / std::log(highestHz / lowestHz);
        Music::WriteText(picture, 30, topMargin + static_cast<int>(part * (plotHeight - 8)), name,
                         inkColour);
    }
    DrawSections(picture, score);
    return picture;
}

/// Six beats of what the lowest band sees, with the threshold on both sides of zero.
Picture PulseLook(const Music::Score& score, const Music::Stereo& signal) {
    constexpr int halfHeight = 110;
    constexpr int plotWidth = 1000;
    constexpr double fullScale = 0.7;
    std::string message;
    const Music::BeatPulse pulse = Music::PulseOf(score, message);
    const auto means = Music::LowestBandMean(signal.left);
    Picture picture = Sheet(leftMargin + plotWidth + 10, topMargin + 2 * halfHeight + 10);
    const double from = pulse.TimeOf(20) - 0.1;
    const double perPixel = 6.2 * pulse.secondsPerBeat / plotWidth;
    const int middle = topMargin + halfHeight;
    const int threshold = static_cast<int>(std::lround(0.03 / fullScale * halfHeight));
    Music::FillBox(picture, leftMargin, middle - threshold, plotWidth, 2 * threshold + 1,
                   gridColour);
    for (int beat = 20; beat < 26; ++beat) {
        const int x = leftMargin + static_cast<int>((pulse.TimeOf(beat) - from) / perPixel);
        Music::FillBox(picture, x, topMargin, 1, 2 * halfHeight, cutColour);
    }
    for (int x = 0; x < plotWidth; ++x) {
        const std::size_t first = Music::FrameAt(from + x * perPixel);
        const std::size_t last =
            std::min(means.size(), Music::FrameAt(from + (x + 1) * perPixel) + 1);
        for (std::size_t i = first; i < last; ++i) {
            const int y = middle - static_cast<int>(std::lround(means[i] / fullScale * halfHeight));
            Music::FillBox(picture, leftMargin + x, y, 1, 1, inkColour);
        }
    }
    Music::WriteText(picture, leftMargin, 8,
                     "mean of the left channel over 3 ms, grey below 0.03, "
                     "beats marked",
                     inkColour);
    return picture;
}

int Draw(const Tools::Arguments& arguments) {
    Music::Score score;
    Music::Stereo signal;
    if (!Music::ReadPiece(arguments.operands[0], arguments.operands[1], score, signal))
        return EXIT_FAILURE;
    Art::FolderToFill folder(arguments.operands[2]);
    const auto write = [&](const char* name, const Picture& picture) {
        return Art::WritePng(folder.File(name), picture, 3, Art::Depth::Rounded);
    };
    return folder.Finish(write("arrangement.png", Arrangement(score)) &&
                         write("spectrogram.png", Spectrogram(score, signal)) &&
                         write("pulse.png", PulseLook(score, signal)));
}

const Tools::Program program = {
    .name = "chart_music",
    .purpose = "Draws the charts of the documentation into FOLDER.",
    .modes = {{.operands = {{"SCORE", Tools::FileToRead("a score")},
                            {"SOUND.wav", Tools::FileToRead("a sound")},
                            {"FOLDER", Tools::FolderToFill()}},
               .example = "art/music/quorrel.score music.wav docs/music",
               .run = Draw}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
