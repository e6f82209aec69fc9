#include "tools/movie/encoder.h"
#include "tools/movie/piece.h"
#include "tools/movie/soundtrack.h"
#include "tools/stage/newfile.h"

#include <cstdio>
#include <filesystem>
#include <map>
#include <sstream>
#include <stdexcept>

namespace Movie {

namespace {

namespace fs = std::filesystem;

/// What ffprobe tells about a film, by name; "TAG:comment" among it.
using Facts = std::map<std::string, std::string>;

// What all pieces must have in common for their pictures to be put behind each other as they are.
const char* const commonFacts[] = {"codec_name", "width", "height", "pix_fmt"};

struct JoinedPiece {
    std::string path;
    Facts facts;
    Piece piece;
};

Facts Probe(const std::string& path) {
    Tools::Process ffprobe(
        {.arguments = {"ffprobe", "-v", "error", "-select_streams", "v:0", "-show_entries",
                       "stream=codec_name,width,height,pix_fmt:format_tags=comment", "-of",
                       "default=noprint_wrappers=1", "file:" + path}});
    ffprobe.Finish();
    Facts facts;
    std::istringstream lines(ffprobe.Output());
    for (std::string line; std::getline(lines, line);)
        if (const std::size_t equals = line.find('='); equals != std::string::npos)
            facts[line.substr(0, equals)] = line.substr(equals + 1);
    return facts;
}

JoinedPiece Read(const std::string& path) {
    Facts facts = Probe(path);
    const auto piece = ParsePiece(facts["TAG:comment"]);
    if (!piece)
        throw std::runtime_error(path + ": not made by this program: its comment is \"" +
                                 facts["TAG:comment"] + "\"");
    return {fs::absolute(path), facts, *piece};
}

constexpr const char* losslessPixels = "gbrp"; // as ffprobe calls them

/// Throws unless `next` can stand behind `before`.
void CheckFollows(const JoinedPiece& before, JoinedPiece& next) {
    const int expected = before.piece.first + before.piece.count;
    if (next.piece.first != expected)
        throw std::runtime_error(next.path + ": expected to begin with frame " +
                                 std::to_string(expected) + ", begins with frame " +
                                 std::to_string(next.piece.first));
    if (next.piece.rate.frames * before.piece.rate.seconds !=
        before.piece.rate.frames * next.piece.rate.seconds)
        throw std::runtime_error(next.path + ": its frame rate is not that of the piece before");
    for (const char* name : commonFacts)
        if (next.facts[name] != before.facts.at(name))
            throw std::runtime_error(next.path + ": its " + name + " is " + next.facts[name] +
                                     ", that of the piece before is " + before.facts.at(name));
}

/// "it's" -> "'it'\''s'", as ffmpeg's lists want it.
std::string Quoted(const std::string& path) {
    std::string quoted = "'";
    for (char letter : path)
        quoted += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
    return quoted + "'";
}

/// The pieces with the exact lengths of their pictures: a file as a whole lasts as long as its
/// sound, which ends somewhat later.
std::string List(const std::vector<JoinedPiece>& pieces) {
    std::string list = "ffconcat version 1.0\n";
    for (const JoinedPiece& each : pieces) {
        const Piece& piece = each.piece;
        char duration[64];
        std::snprintf(duration, sizeof duration, "duration %.6f\n",
                      static_cast<double>(piece.count) * static_cast<double>(piece.rate.seconds) /
                          static_cast<double>(piece.rate.frames));
        list += "file " + Quoted("file:" + each.path) + "\n" + duration;
    }
    return list;
}

/// The pictures of the pieces as they are, with this sound. Takes the path when it is complete.
void PutTogether(const std::vector<JoinedPiece>& pieces, const FilmFormat& format,
                 const Soundtrack& sound, const std::string& path) {
    const Stage::NewFile file(path);
    Tools::Process ffmpeg(
        FfmpegCommand(JoinCommand(file.Path(), format, sound.Path(), sound.Rate())));
    ffmpeg.Write(List(pieces));
    ffmpeg.Finish();
    file.Complete();
}

} // namespace

void EndWithPictures(const std::string& path, const Piece& piece, const FilmFormat& format,
                     const Soundtrack& sound) {
    FilmFormat whole = format;
    whole.comment = piece.Comment();
    PutTogether({{fs::absolute(path), {}, piece}}, whole, sound, path);
}

void JoinFilms(const std::vector<std::string>& paths, const std::string& path) {
    std::vector<JoinedPiece> pieces;
    for (const std::string& each : paths) {
        pieces.push_back(Read(each));
        if (pieces.size() > 1)
            CheckFollows(pieces[pieces.size() - 2], pieces.back());
    }
    Piece whole = pieces.front().piece;
    whole.count = pieces.back().piece.first + pieces.back().piece.count - whole.first;

    const bool lossless = pieces.front().facts.at("pix_fmt") == losslessPixels;
    PutTogether(pieces, {whole.rate, 1, lossless, whole.Comment()},
                Soundtrack(whole.Begin(), whole.End()), path);
    TellFilm(path, whole);
}

} // namespace Movie
