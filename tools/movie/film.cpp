#include "tools/movie/film.h"

#include "demo/show.h"
#include "tools/movie/piece.h"
#include "tools/movie/soundtrack.h"
#include "tools/picture/sheet.h"
#include "tools/progress/progress.h"
#include "tools/stage/logpage.h"
#include "tools/stage/newfile.h"
#include "tools/stage/show.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <iostream>
#include <numeric>
#include <stdexcept>

namespace Movie {

namespace {

using Tools::MakeSheet;
using Tools::SheetEntry;

volatile std::sig_atomic_t interrupted = 0;

/// Ctrl-C is remembered instead of ending the program, as long as the object lives.
class Interruption {
public:
    Interruption() {
        interrupted = 0;
        for (int signal : signals)
            std::signal(signal, [](int) { interrupted = 1; });
    }
    ~Interruption() {
        for (int signal : signals)
            std::signal(signal, SIG_DFL);
    }
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

private:
    static constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP};
};

class ToEncoder : public Stage::FrameSink {
public:
    ToEncoder(Encoder& target, Tools::Progress& bar) : encoder(target), progress(bar) {}

    bool Stopped() override { return interrupted != 0; }

    void Put(int, Stage::FramePixels pixels) override {
        encoder.Write(pixels);
        progress.Add();
        ++count;
    }

    int Count() const { return count; }

private:
    Encoder& encoder;
    Tools::Progress& progress;
    int count = 0;
};

class ToEntries : public Stage::FrameSink {
public:
    explicit ToEntries(const Stage::Rate& frameRate) : rate(frameRate) {}

    void Put(int number, Stage::FramePixels pixels) override {
        char label[32];
        std::snprintf(label, sizeof label, "%.3f", rate.Seconds(number));
        entries.push_back({Stage::ToPicture(pixels), label});
    }

    const std::vector<SheetEntry>& Entries() const { return entries; }

private:
    Stage::Rate rate;
    std::vector<SheetEntry> entries;
};

std::vector<SheetEntry> DrawEntries(const Stage::Rate& rate, std::vector<int> frames, int jobs) {
    ToEntries entries(rate);
    std::string log;
    Stage::DrawFrames({rate, std::move(frames), jobs}, entries, &log);
    std::cerr << Tools::ErrorsInWords(Tools::ParseLogPage(log));
    return entries.Entries();
}

/// Whatever goes wrong, an older picture stays.
void WriteWhole(const Tools::Picture& picture, const std::string& path) {
    const Stage::NewFile file(path);
    WritePng(picture, file.Path());
    file.Complete();
}

double ProcessSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// `giving`: seconds that this process has spent on taking frames and giving them to ffmpeg.
void TellCost(const Stage::FrameCost& cost, double giving, int count) {
    const double handover = cost.handover + giving;
    char text[160];
    std::snprintf(text, sizeof text,
                  "A frame took %.1f ms to draw; handing it to the encoder %.2f ms, %.1f %% of it.",
                  cost.drawing / count * 1000.0, handover / count * 1000.0,
                  handover / (cost.drawing + giving) * 100.0);
    std::cerr << text << '\n';
}

} // namespace

int MakeFilm(const FilmRequest& request) {
    const Piece piece = PieceOf(request);
    const Stage::NewFile file(request.path);
    Soundtrack sound(piece.Begin(), piece.End());
    if (sound.Silent())
        std::cerr << "The music cannot be read: the film is silent.\n";
    FilmFormat format = request.format;
    format.comment = piece.Comment();
    Encoder encoder(file.Path(), format, sound.Path(), sound.Rate());

    const Interruption interruption;
    Stage::FrameCost cost;
    std::string log;
    double giving = ProcessSeconds();
    int count = 0;
    {
        const Stage::Rate& rate = piece.rate;
        Tools::Progress progress("frames", piece.count,
                                 static_cast<double>(rate.frames) /
                                     static_cast<double>(rate.seconds));
        ToEncoder sink(encoder, progress);
        std::vector<int> frames(static_cast<std::size_t>(piece.count));
        std::iota(frames.begin(), frames.end(), piece.first);
        cost = Stage::DrawFrames({request.format.rate, frames, request.jobs}, sink, &log);
        count = sink.Count();
    }
    giving = ProcessSeconds() - giving;
    if (count == 0)
        throw std::runtime_error("interrupted before the first frame: no film was made");
    const Piece drawn = {piece.rate, piece.first, count};
    encoder.Finish();
    if (count < piece.count) {
        sound.CutAfter(drawn.End() - drawn.Begin());
        EndWithPictures(file.Path(), drawn, format, sound);
    }
    file.Complete();
    TellFilm(request.path, drawn);
    TellCost(cost, giving, count);
    std::cerr << Tools::ErrorsInWords(Tools::ParseLogPage(log));
    if (count < piece.count)
        std::cerr << "Interrupted: " << request.path << " plays up to there.\n";
    return count < piece.count ? 130 : 0; // as shells say of a program ended by Ctrl-C
}

void MakePicture(const Stage::Rate& rate, double time, const std::string& path) {
    const int frame = rate.FrameAt(time);
    WriteWhole(DrawEntries(rate, {frame}, 1).front().picture, path);
    std::cerr << path << ": the frame of " << rate.Seconds(frame) << " s\n";
}

void MakeContactSheet(const Stage::Rate& rate, double begin, double end, double step, int jobs,
                      const std::string& path) {
    std::vector<int> frames;
    for (int i = 0; begin + i * step <= end; ++i)
        frames.push_back(rate.FrameAt(begin + i * step));
    frames.erase(std::unique(frames.begin(), frames.end()), frames.end());
    constexpr std::size_t longColumn = 60;
    WriteWhole(MakeSheet(DrawEntries(rate, frames, jobs), frames.size() > longColumn ? 2 : 1),
               path);
    std::cerr << path << ": " << frames.size() << " frames\n";
}

void MakeCutSheet(const Stage::Rate& rate, int jobs, const std::string& path) {
    std::vector<int> frames;
    for (std::size_t i = 1; i < Show::flightCount; ++i) {
        const int after = rate.FrameFrom(Show::flights[i].begin);
        for (const int frame : {after - 1, after})
            frames.push_back(frame);
    }
    const std::vector<SheetEntry> drawn = DrawEntries(rate, frames, jobs);
    std::vector<SheetEntry> columns; // the sheet is filled column by column
    for (const std::size_t side : {0u, 1u})
        for (std::size_t i = side; i < drawn.size(); i += 2)
            columns.push_back(drawn[i]);
    WriteWhole(MakeSheet(columns, 2), path);
    std::cerr << path << ": " << Show::flightCount - 1 << " cuts\n";
}

} // namespace Movie
