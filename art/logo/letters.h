#pragma once

#include "art/common/math.h"

#include <string>
#include <vector>

namespace Art {

/// A pen stroke: points along its middle, each with the half width of the pen there. Its ends are
/// cut square.
struct Stroke {
    struct Point {
        vec2 at;
        float half;
    };
    std::vector<Point> points;

    bool Contains(vec2 p) const;
};

/// A drawn capital. The baseline is y = 0 and the cap height 1; x runs from 0 to `width`.
struct Letter {
    char name;
    float width;
    float overshoot; ///< how far ink may reach below the baseline and above the cap height
    std::vector<Stroke> strokes;

    bool Contains(vec2 p) const;
};

/// The capital called `name`; one of the eleven that the title needs (A B E H I L M N O R V).
/// Throws std::out_of_range for any other.
const Letter& LetterNamed(char name);

/// A letter put somewhere: its origin and cap height in the units of the line.
struct PlacedLetter {
    const Letter* letter;
    vec2 origin;
    float height;

    bool Contains(vec2 p) const;
};

/// `word` set so that its ink begins at `left` and ends at `right` on the baseline `y`, with the
/// same gap between all letters.
std::vector<PlacedLetter> SetWord(const std::string& word, float left, float right, float y,
                                  float height);

} // namespace Art
