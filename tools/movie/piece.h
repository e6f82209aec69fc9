#pragma once

#include "tools/movie/film.h"

#include <optional>
#include <string>

namespace Movie {

/// Which frames of the show a film holds. Written into the file as its comment, so that pieces that
/// were made apart can be joined.
struct Piece {
    Stage::Rate rate;
    int first = 0; ///< number of its first frame
    int count = 0; ///< 1 or more

    double Begin() const; ///< demo time of its beginning, in seconds
    double End() const;   ///< of its end: when its last frame would give way to the next

    /// "Nimbrel, frames 0 to 7095 at 60/1 a second"
    std::string Comment() const;
};

/// The frames at `begin` seconds and later, but before `end`. Throws std::runtime_error when there
/// are none.
Piece PieceOf(const FilmRequest& request);

class Soundtrack;

/// Gives the film at `path`, which was ended early and holds the pictures of `piece`, this sound
/// and the comment of `piece`: its encoder had read the sound ahead of the pictures.
void EndWithPictures(const std::string& path, const Piece& piece, const FilmFormat& format,
                     const Soundtrack& sound);

/// Says on standard error what was written: "nimbrel.mp4: 118.3 s, 61.2 MB".
void TellFilm(const std::string& path, const Piece& piece);

/// Reads such a comment; nothing when it is another text, or tells of frames that the show does not
/// have.
std::optional<Piece> ParsePiece(const std::string& comment);

} // namespace Movie
