#include "tools/movie/piece.h"

#include "demo/show.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string_view>

namespace Movie {

namespace {

/// Takes these words off the front of the text; false where it begins otherwise.
bool Take(std::string_view& text, std::string_view words) {
    if (!text.starts_with(words))
        return false;
    text.remove_prefix(words.size());
    return true;
}

/// Likewise a number, which must fit its type.
template <class Number>
bool TakeNumber(std::string_view& text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, number);
    text.remove_prefix(static_cast<std::size_t>(behind - text.data()));
    return error == std::errc();
}

} // namespace

double Piece::Begin() const {
    return rate.Seconds(first);
}

double Piece::End() const {
    return rate.Seconds(first + count);
}

std::string Piece::Comment() const {
    return "Nimbrel, frames " + std::to_string(first) + " to " + std::to_string(first + count - 1) +
           " at " + std::to_string(rate.frames) + "/" + std::to_string(rate.seconds) + " a second";
}

Piece PieceOf(const FilmRequest& request) {
    const Stage::Rate& rate = request.format.rate;
    const int first = rate.FrameFrom(request.begin);
    const int end = rate.FrameFrom(std::min(request.end, Show::runningTime));
    if (first >= end)
        throw std::runtime_error("there is no frame from " + std::to_string(request.begin) +
                                 " to " + std::to_string(request.end) + " seconds");
    return {rate, first, end - first};
}

void TellFilm(const std::string& path, const Piece& piece) {
    constexpr double megabyte = 1e6;
    const double seconds = static_cast<double>(piece.count) *
                           static_cast<double>(piece.rate.seconds) /
                           static_cast<double>(piece.rate.frames);
    char text[64];
    std::snprintf(text, sizeof text, ": %.1f s, %.1f MB\n", seconds,
                  static_cast<double>(std::filesystem::file_size(path)) / megabyte);
    std::cerr << path << text;
}

std::optional<Piece> ParsePiece(const std::string& comment) {
    Piece piece;
    int last = 0;
    std::string_view text = comment;
    if (!Take(text, "Nimbrel, frames ") || !TakeNumber(text, piece.first) || !Take(text, " to ") ||
        !TakeNumber(text, last) || !Take(text, " at ") || !TakeNumber(text, piece.rate.frames) ||
        !Take(text, "/") || !TakeNumber(text, piece.rate.seconds) || !Take(text, " a second") ||
        !piece.rate.Usable() || piece.first < 0 || last < piece.first ||
        last >= piece.rate.FrameFrom(Show::runningTime))
        return std::nullopt;
    piece.count = last - piece.first + 1;
    return piece;
}

} // namespace Movie
