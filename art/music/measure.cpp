#include "art/music/loudness.h"
#include "art/music/mixer.h"
#include "art/music/powerspectrum.h"
#include "art/music/scorefile.h"
#include "tools/options/commandline.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int fftSize = 8192;

/// Mean power of the octaves around 31.5 Hz .. 16 kHz from one time to another, dB.
std::vector<double> OctaveLevels(const Music::Stereo& signal, double from, double to) {
    std::vector<double> octaves(10, 1e-12);
    int blocks = 0;
    const std::size_t end = std::min(Music::FrameAt(to), signal.Frames());
    for (std::size_t at = Music::FrameAt(from); at + fftSize <= end; at += fftSize / 2, ++blocks) {
        for (const std::vector<float>* channel : {&signal.left, &signal.right}) {
            const std::vector<double> power = Music::PowerSpectrum(channel->data() + at, fftSize);
            for (std::size_t bin = 1; bin < power.size(); ++bin) {
                const double hertz = static_cast<double>(bin) * Music::sampleRate / fftSize;
                const auto octave = std::lround(std::log2(hertz / 31.5));
                if (octave >= 0 && octave < 10)
                    octaves[static_cast<std::size_t>(octave)] += power[bin];
            }
        }
    }
    for (double& level : octaves)
        level = 10.0 * std::log10(level / std::max(blocks, 1));
    return octaves;
}

/// Straight line through the octaves from 63 Hz to 8 kHz, dB an octave. Pink noise, which has
/// the same power in every octave, gives 0; this piece aims at -1.5 to -2.
double Slope(const std::vector<double>& octaves) {
    constexpr int firstOctave = 1;
    constexpr int lastOctave = 8;
    constexpr double centre = (firstOctave + lastOctave) / 2.0;
    double products = 0;
    double squares = 0;
    for (int octave = firstOctave; octave <= lastOctave; ++octave) {
        products += (octave - centre) * octaves[static_cast<std::size_t>(octave)];
        squares += (octave - centre) * (octave - centre);
    }
    return products / squares;
}

Music::Stereo Part(const Music::Stereo& signal, double from, double to) {
    Music::Stereo part;
    const auto begin = static_cast<std::ptrdiff_t>(std::min(Music::FrameAt(from), signal.Frames()));
    const auto end = static_cast<std::ptrdiff_t>(std::min(Music::FrameAt(to), signal.Frames()));
    part.left.assign(signal.left.begin() + begin, signal.left.begin() + end);
    part.right.assign(signal.right.begin() + begin, signal.right.begin() + end);
    return part;
}

/// How alike the sides are, -1..1, and how much louder the middle is than the sum of both.
double Correlation(const Music::Stereo& signal) {
    double both = 0;
    double left = 1e-12;
    double right = 1e-12;
    for (std::size_t i = 0; i < signal.Frames(); ++i) {
        both += static_cast<double>(signal.left[i]) * signal.right[i];
        left += static_cast<double>(signal.left[i]) * signal.left[i];
        right += static_cast<double>(signal.right[i]) * signal.right[i];
    }
    return both / std::sqrt(left * right);
}

float GreatestStep(const Music::Stereo& signal) {
    float step = 0;
    for (const std::vector<float>* channel : {&signal.left, &signal.right})
        for (std::size_t i = 1; i < channel->size(); ++i)
            step = std::max(step, std::fabs((*channel)[i] - (*channel)[i - 1]));
    return step;
}

void PrintSections(const Music::Score& score, const Music::Stereo& signal) {
    std::printf("%-22s %6s %6s %5s |  31   63  125  250  500   1k   2k   4k   8k  16k\n", "section",
                "LUFS", "dBTP", "corr");
    for (std::size_t i = 0; i < score.sections.size(); ++i) {
        const double from = score.TimeOfBar(score.sections[i].first);
        const int next =
            i + 1 < score.sections.size() ? score.sections[i + 1].first : score.bars + 1;
        const double to = score.TimeOfBar(next);
        const Music::Stereo part = Part(signal, from, to);
        const Music::Loudness loudness = Music::MeasureLoudness(part);
        std::printf("%-22s %6.1f %6.1f %5.2f |", score.sections[i].second.c_str(),
                    loudness.integrated, loudness.truePeak, Correlation(part));
        const std::vector<double> octaves = OctaveLevels(signal, from, to);
        for (double level : octaves)
            std::printf(" %4.0f", level);
        std::printf("  slope %.1f step %.2f\n", Slope(octaves), GreatestStep(part));
    }
}

/// Counts the frames at which the picture would flash, as the frame loop sees them.
void PrintPulse(const Music::BeatPulse& pulse, const Music::Stereo& signal, double phase) {
    constexpr double secondsPerFrame = 1.0 / 60.0;
    constexpr float threshold = 0.03F;
    constexpr double nearBeat = 0.060;
    std::vector<bool> hit(static_cast<std::size_t>(pulse.beats) + 1, false);
    int elsewhere = 0;
    double closest = 1.0;
    const double end = pulse.TimeOf(pulse.beats);
    const auto first = std::lround(std::floor(pulse.firstBeat / secondsPerFrame));
    const auto last = std::lround(std::floor(end / secondsPerFrame));
    for (long frame = first; frame < last; ++frame) {
        const double time = (static_cast<double>(frame) + phase) * secondsPerFrame;
        const float reading = Music::LowestBand(signal.left, Music::FrameAt(time));
        const int beat =
            static_cast<int>(std::lround((time - pulse.firstBeat) / pulse.secondsPerBeat));
        const bool near = std::fabs(time - pulse.TimeOf(beat)) <= nearBeat;
        if (time < pulse.firstBeat - 0.003)
            continue; // the picture's stretch begins 3 ms before its first beat
        // Heard through either scale: the gap by the one that reads double.
        if (2 * reading < threshold && near) {
            hit[static_cast<std::size_t>(std::max(beat, 0))] = true;
        } else if (reading < threshold && !near) {
            ++elsewhere;
            std::printf("  false at %.3f (beat %d%+.0f ms)\n", time, beat,
                        1000 * (time - pulse.TimeOf(beat)));
        } else if (!near) {
            closest = std::min<double>(closest, reading);
        }
    }
    hit.pop_back();
    std::printf("frame phase %.2f: %d of %d beats, %d false, least between beats %.3f\n", phase,
                static_cast<int>(std::count(hit.begin(), hit.end(), true)), pulse.beats, elsewhere,
                closest);
}

int Measure(const Tools::Arguments& arguments) {
    Music::Score score;
    Music::Stereo signal;
    if (!Music::ReadPiece(arguments.operands[0], arguments.operands[1], score, signal))
        return EXIT_FAILURE;
    const Music::Loudness all = Music::MeasureLoudness(signal);
    std::printf("%zu frames, %.2f LUFS, range %.1f LU, true peak %.2f dBTP\n", signal.Frames(),
                all.integrated, all.range, all.truePeak);
    const double seconds = static_cast<double>(signal.Frames()) / Music::sampleRate;
    std::printf("slope against pink noise %.2f dB an octave\n",
                Slope(OctaveLevels(signal, 0.0, seconds)));
    PrintSections(score, signal);
    std::string message;
    const Music::BeatPulse pulse = Music::PulseOf(score, message);
    for (double phase : {0.0, 0.25, 0.5, 0.75})
        PrintPulse(pulse, signal, phase);
    return EXIT_SUCCESS;
}

const Tools::Program program = {
    .name = "measure_music",
    .purpose = "Prints loudness, octaves and the beats that the picture would see in a piece.",
    .modes = {{.operands = {{"SCORE", Tools::FileToRead("a score")},
                            {"SOUND.wav", Tools::FileToRead("a sound")}},
               .example = "art/music/quorrel.score music.wav",
               .run = Measure}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
