#include "art/common/options.h"
#include "art/common/progress.h"
#include "art/music/master.h"
#include "art/music/mixer.h"
#include "art/music/scorefile.h"
#include "art/music/soundfile.h"

#include <cstdio>

namespace {

constexpr int kilobits = 256;

int Complain(const std::string& path, const std::string& message) {
    std::fprintf(stderr, "%s:%s\n", path.c_str(), message.c_str());
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

int main(int count, char** arguments) {
    bool wantLevels = false;
    int status = 0;
    const auto operands = Art::ReadArguments(
        {.program = "make_music",
         .purpose = "Plays the score into a WAV file and encodes that.",
         .operands = {"SCORE", "OUT.wav", "[OUT.mp3]"},
         .options = {{.name = "--levels",
                      .help = "also prints how loud every track is in the mix",
                      .apply = [&](const std::string&) { return wantLevels = true; }}}},
        count, arguments, status);
    if (!operands)
        return status;
    const std::vector<std::string>& files = *operands;
    Music::Score score;
    if (!Music::ReadScore(files[0], score)) {
        return 1;
    }
    std::string message;
    std::vector<Music::TrackLevel> levels;
    const Music::Stereo piece = Render(score, message, wantLevels ? &levels : nullptr);
    if (!message.empty()) {
        return Complain(files[0], message);
    }
    PrintLevels(levels);
    if (!Music::WriteWav(files[1], piece)) {
        return Complain(files[1], " cannot be written");
    }
    if (files.size() == 3 && !Music::WriteMp3(files[2], piece, kilobits)) {
        return Complain(files[2], " cannot be encoded or written");
    }
    return 0;
}
