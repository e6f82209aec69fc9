#pragma once

#include <cstddef>
#include <span>

namespace Vell {

/// Zero bytes that must follow a text that ReadDecimals() is given, for it loads eight at a time.
constexpr int bytesBehindText = 8;

/// Reads numbers that are parted by blanks, lines or tabs, as long as they are usual ones: decimal,
/// with or without a minus, a point and an exponent, small enough for a float, and with a blank
/// behind them before the text ends. Each is the float nearest to what is written.
///
/// Fills `numbers` from the front and returns how many it read. `text` then stands behind the last
/// of them and its blank. What stops it early, if anything, is for the caller to read: a plus, a
/// word, a number that the end of the text may have cut. The number after the last may be changed.
std::size_t ReadDecimals(const char*& text, const char* end, std::span<float> numbers);

/// What formatted extraction takes for a blank in the "C" locale.
constexpr bool IsBlank(char c) {
    return c <= ' ' && (c == ' ' || (c >= '\t' && c <= '\r'));
}

} // namespace Vell
