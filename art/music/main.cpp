// make_music SCORE WAV [MP3]: plays the score into a WAV file and encodes it.
#include "art/common/progress.h"
#include "art/music/master.h"
#include "art/music/mixer.h"
#include "art/music/scorefile.h"
#include "art/music/soundfile.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr int kilobits = 256;

int Usage() {
    std::fprintf(stderr, "usage: make_music [--levels] SCORE OUT.wav [OUT.mp3]\n"
                         "  --levels  also print how loud every track is in the mix\n");
    return 2;
}

int Complain(const char* path, const std::string& message) {
    std::fprintf(stderr, "%s:%s\n", path, message.c_str());
    return 1;
}

void PrintLevels(const std::vector<Music::TrackLevel>& levels) {
    for (const Music::TrackLevel& level : levels) {
        std::printf("%-14s %6.1f LUFS  peak %6.1f dB\n", level.name.c_str(),
                    level.loudness.integrated, level.loudness.truePeak);
    }
}

/// Mixes and masters; an empty result and a message when the score is at fault.
Music::Stereo Render(const Music::Score& score, std::string& message,
                     std::vector<Music::TrackLevel>* levels) {
    const Music::BeatPulse pulse = Music::PulseOf(score, message);
    if (!message.empty()) {
        return {};
    }
    const std::size_t frames = Music::FrameAt(score.TimeOfBar(score.bars + 1));
    // The master takes about as long as a dozen tracks.
    constexpr int masterSteps = 12;
    Art::Progress bar("music", static_cast<int>(score.tracks.size()) + masterSteps);
    Music::Mix mix = PlayTracks(
        score, pulse, frames, [&](int, int) { bar.Add(1); }, message, levels);
    if (!message.empty()) {
        return {};
    }
    Music::MasterReport report;
    Music::Stereo piece = Master(score, pulse, std::move(mix), report);
    bar.Add(masterSteps);
    std::printf("%.3f s, %.1f LUFS, range %.1f LU, true peak %.1f dBTP, gain %.1f dB, "
                "limited by %.1f dB at most\n",
                static_cast<double>(frames) / Music::sampleRate, report.loudness.integrated,
                report.loudness.range, report.loudness.truePeak, report.gainDb, report.limitedDb);
    return piece;
}

} // namespace

int main(int argc, char** argv) {
    const bool wantLevels = argc > 1 && std::strcmp(argv[1], "--levels") == 0;
    const int first = wantLevels ? 2 : 1;
    if (argc - first < 2 || argc - first > 3) {
        return Usage();
    }
    Music::Score score;
    if (!Music::ReadScore(argv[first], score)) {
        return 1;
    }
    std::string message;
    std::vector<Music::TrackLevel> levels;
    const Music::Stereo piece = Render(score, message, wantLevels ? &levels : nullptr);
    if (!message.empty()) {
        return Complain(argv[first], message);
    }
    PrintLevels(levels);
    if (!Music::WriteWav(argv[first + 1], piece)) {
        return Complain(argv[first + 1], " cannot be written");
    }
    if (argc - first == 3 && !Music::WriteMp3(argv[first + 2], piece, kilobits)) {
        return Complain(argv[first + 2], " cannot be encoded or written");
    }
    return 0;
}
