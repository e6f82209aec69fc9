#pragma once

#include "tools/movie/encoder.h"

#include <string>
#include <vector>

namespace Movie {

/// A stretch of the show as a film.
struct FilmRequest {
    std::string path; ///< ends in .mp4, .mov or .mkv
    FilmFormat format;
    double begin = 0.0; ///< seconds of demo time; the first frame is the first at or after it
    double end = 0.0;   ///< seconds; the last frame is the last before it
    int jobs = 1;
};

/// Makes the film, with progress and a last word on standard error. The file appears under its name
/// when it is complete; if the user ends the program (Ctrl-C), it plays up to there.
/// Answers the exit status. Throws std::runtime_error when something fails; a file that was there
/// before is then untouched.
int MakeFilm(const FilmRequest& request);

/// Writes the frame that the film shows at `time` seconds as a PNG.
void MakePicture(const Stage::Rate& rate, double time, const std::string& path);

/// Writes a contact sheet as a PNG: a frame every `step` seconds from `begin` to `end`, times
/// beside them.
void MakeContactSheet(const Stage::Rate& rate, double begin, double end, double step, int jobs,
                      const std::string& path);

/// Writes a contact sheet as a PNG: beside the last frame before each cut the first one after it.
void MakeCutSheet(const Stage::Rate& rate, int jobs, const std::string& path);

/// Joins films of stretches that follow each other, made with equal settings, into one. The sound
/// is made anew over the whole length. Throws std::runtime_error when they do not fit.
void JoinFilms(const std::vector<std::string>& pieces, const std::string& path);

} // namespace Movie
