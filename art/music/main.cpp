#include "art/music/master.h"
#include "art/music/mixer.h"
#include "art/music/scorefile.h"
#include "art/music/soundfile.h"
#include "art/music/stems.h"
#include "tools/options/commandline.h"
#include "tools/progress/progress.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace {

constexpr int kilobits = 256;

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
    if (!message.empty())
        return {};
    const std::size_t frames = Music::FrameAt(score.TimeOfBar(score.bars + 1));
    // The master takes about as long as a dozen tracks.
    constexpr int masterSteps = 12;
    Tools::Progress bar("steps of the mix", static_cast<int>(score.tracks.size()) + masterSteps);
    Music::Mix mix = PlayTracks(
        score, pulse, frames, [&](int, int) { bar.Add(); }, message, levels);
    if (!message.empty())
        return {};
    Music::MasterReport report;
    Music::Stereo piece = Master(score, pulse, std::move(mix), report);
    bar.Add(masterSteps);
    std::printf("%.3f s, %.1f LUFS, range %.1f LU, true peak %.1f dBTP, gain %.1f dB, "
                "limited by %.1f dB at most\n",
                static_cast<double>(frames) / Music::sampleRate, report.loudness.integrated,
                report.loudness.range, report.loudness.truePeak, report.gainDb, report.limitedDb);
    return piece;
}

int Make(const Tools::Arguments& arguments) {
    const std::vector<std::string>& files = arguments.operands;
    Music::Score score;
    if (!Music::ReadScore(files[0], score))
        return EXIT_FAILURE;
    std::string message;
    std::vector<Music::TrackLevel> levels;
    const Music::Stereo piece =
        Render(score, message, arguments.Has("--levels") ? &levels : nullptr);
    if (!message.empty())
        throw std::runtime_error(files[0] + ":" + message);
    PrintLevels(levels);
    if (!Music::WriteWav(files[1], piece))
        throw std::runtime_error(files[1] + ": cannot be written");
    std::printf("%s\n", files[1].c_str());
    if (files.size() < 3)
        return EXIT_SUCCESS;
    if (!Music::WriteMp3(files[2], piece, kilobits))
        throw std::runtime_error(files[2] + ": cannot be encoded or written");
    std::printf("%s\n", files[2].c_str());
    return EXIT_SUCCESS;
}

void WriteStem(const std::string& folder, const std::string& name, const Music::Stereo& stem) {
    const std::string path = folder + "/" + name + ".wav";
    if (!Music::WriteWav(path, stem))
        throw std::runtime_error(path + ": cannot be written");
    std::printf("%s\n", path.c_str());
}

int MakeStems(const Tools::Arguments& arguments) {
    const std::vector<std::string>& operands = arguments.operands;
    Music::Score score;
    if (!Music::ReadScore(operands[0], score))
        return EXIT_FAILURE;
    std::string message;
    const Music::BeatPulse pulse = Music::PulseOf(score, message);
    const std::size_t frames = Music::FrameAt(score.TimeOfBar(score.bars + 1));
    Music::Stems stems(frames);
    Tools::Progress bar("tracks", static_cast<int>(score.tracks.size()));
    const Music::Mix mix = PlayTracks(
        score, pulse, frames, [&](int, int) { bar.Add(); }, message, nullptr,
        [&](const std::string& name, const Music::Stereo& sound) {
            WriteStem(operands[1], name, stems.Next(sound));
        });
    if (!message.empty())
        throw std::runtime_error(operands[0] + ":" + message);
    WriteStem(operands[1], "room", stems.Rest(mix));
    return EXIT_SUCCESS;
}

const Tools::Program program = {
    .name = "make_music",
    .purpose =
        "Plays the score into a WAV file and encodes that.\n"
        "With --stems: into a WAV file for every track, NAME.wav, and room.wav, which holds\n"
        "hall and echoes; together they are the mix before the master, 12 dB lower.",
    .options = {{.name = "--levels", .meaning = "also prints how loud every track is in the mix"}},
    .modes = {
        {.operands = {{"SCORE", Tools::FileToRead("a score")},
                      {"OUT.wav", Tools::FileToWrite({".wav"})},
                      {"OUT.mp3", Tools::FileToWrite({".mp3"}), Tools::Count::AtMostOne}},
         .example = "art/music/quorrel.score music.wav music.mp3",
         .options = {"--levels"},
         .run = Make},
        {.name = "--stems",
         .operands = {{"SCORE", Tools::FileToRead("a score")}, {"FOLDER", Tools::FolderToFill()}},
         .example = "art/music/quorrel.score stems",
         .run = MakeStems}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
