#include "art/logo/letters.h"

#include <stdexcept>

namespace Art {
namespace {

// One pen for all letters: stems are wide, what joins them is thin, as with a broad nib.
constexpr float wideHalf = 0.078f;
constexpr float thinHalf = 0.030f;
constexpr float runOn = 0.10f; // slanted strokes run on past the letter and are cut level

/// A straight stroke, a little narrower in the middle than at its ends.
Stroke Line(vec2 from, vec2 to, float half) {
    constexpr int pieceCount = 10;
    Stroke stroke;
    for (int i = 0; i <= pieceCount; ++i) {
        const float t = static_cast<float>(i) / pieceCount;
        const float waist = (2 * t - 1) * (2 * t - 1);
        stroke.points.push_back({from + (to - from) * t, half * (0.86f + 0.26f * waist)});
    }
    return stroke;
}

/// A slanted stroke between baseline and cap height, lengthened so that it can be cut level.
Stroke Slant(vec2 from, vec2 to, float half) {
    const vec2 along = to - from;
    return Line(from - along * runOn, to + along * runOn, half);
}

/// Part of an ellipse, wide where it runs upright and thin where it lies. Angles in degrees,
/// counted from +x towards +y.
Stroke Arc(vec2 middle, vec2 radius, float from, float to) {
    constexpr int pieceCount = 40;
    Stroke stroke;
    for (int i = 0; i <= pieceCount; ++i) {
        const float angle = Lerp(from, to, static_cast<float>(i) / pieceCount) * pi / 180;
        const float upright = std::abs(std::cos(angle));
        stroke.points.push_back(
            {{middle.x + radius.x * std::cos(angle), middle.y + radius.y * std::sin(angle)},
             Lerp(thinHalf, wideHalf * 1.04f, upright * upright)});
    }
    return stroke;
}

/// A bowl between two heights that springs from the stem at x = 0.1 and reaches `right`.
std::vector<Stroke> Bowl(float low, float high, float right) {
    const float radius = (high - low) / 2;
    const float straight = right - radius * 1.05f;
    return {Line({0.10f, high}, {straight, high}, thinHalf),
            Arc({straight, low + radius}, {radius * 1.05f, radius}, -90, 90),
            Line({0.10f, low}, {straight, low}, thinHalf)};
}

Letter WithBowls(Letter letter, std::initializer_list<std::vector<Stroke>> bowls) {
    for (const std::vector<Stroke>& bowl : bowls)
        letter.strokes.insert(letter.strokes.end(), bowl.begin(), bowl.end());
    return letter;
}

std::vector<Letter> DrawLetters() {
    constexpr float barHeight = 1 - thinHalf;
    const Stroke stem = Line({0.08f, 0}, {0.08f, 1}, wideHalf);
    return {
        {'A',
         0.86f,
         0,
         {Slant({0.045f, 0}, {0.40f, 1}, thinHalf), Slant({0.40f, 1}, {0.775f, 0}, wideHalf),
          Line({0.14f, 0.27f}, {0.66f, 0.27f}, thinHalf)}},
        WithBowls({'B', 0.64f, 0, {stem}},
                  {Bowl(0.53f, barHeight, 0.50f), Bowl(thinHalf, 0.53f, 0.56f)}),
        {'E',
         0.56f,
         0,
         {stem, Line({0.08f, barHeight}, {0.54f, barHeight}, thinHalf),
          Line({0.08f, 0.53f}, {0.44f, 0.53f}, thinHalf),
          Line({0.08f, thinHalf}, {0.56f, thinHalf}, thinHalf)}},
        {'H',
         0.74f,
         0,
         {stem, Line({0.68f, 0}, {0.68f, 1}, thinHalf * 1.35f),
          Line({0.08f, 0.47f}, {0.68f, 0.47f}, thinHalf)}},
        {'I', 0.16f, 0, {stem}},
        {'L', 0.54f, 0, {stem, Line({0.08f, thinHalf}, {0.54f, thinHalf}, thinHalf)}},
        {'M',
         0.98f,
         0,
         {Slant({0.04f, 0}, {0.14f, 1}, thinHalf), Slant({0.14f, 1}, {0.47f, 0.02f}, wideHalf),
          Slant({0.47f, 0.02f}, {0.80f, 1}, thinHalf), Slant({0.80f, 1}, {0.90f, 0}, wideHalf)}},
        {'N',
         0.78f,
         0,
         {Line({0.05f, 0}, {0.05f, 1}, thinHalf * 1.35f), Slant({0.07f, 1}, {0.71f, 0}, wideHalf),
          Line({0.73f, 0}, {0.73f, 1}, thinHalf * 1.35f)}},
        {'O', 1.0f, 0.02f, {Arc({0.50f, 0.5f}, {0.425f, 0.49f}, 0, 360)}},
        WithBowls({'R', 0.72f, 0, {stem, Slant({0.30f, 0.47f}, {0.63f, 0}, wideHalf * 0.95f)}},
                  {Bowl(0.45f, barHeight, 0.54f)}),
        {'V',
         0.86f,
         0,
         {Slant({0.085f, 1}, {0.46f, 0}, wideHalf), Slant({0.46f, 0}, {0.815f, 1}, thinHalf)}},
    };
}

} // namespace

bool Stroke::Contains(vec2 p) const {
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const Point& a = points[i];
        const Point& b = points[i + 1];
        const vec2 along = b.at - a.at;
        const float t = Dot(p - a.at, along) / Dot(along, along);
        const float reach = Lerp(a.half, b.half, Clamp01(t));
        if (t >= 0 && t <= 1 && std::abs(Cross(along, p - a.at)) <= reach * Length(along))
            return true;
        // A disc at the joint closes the wedge that a bend leaves open on its outer side.
        if (i > 0 && Length(p - a.at) <= a.half)
            return true;
    }
    return false;
}

bool Letter::Contains(vec2 p) const {
    if (p.x < -0.05f || p.x > width + 0.05f || p.y < -overshoot || p.y > 1 + overshoot)
        return false;
    return std::any_of(strokes.begin(), strokes.end(),
                       [&](const Stroke& stroke) { return stroke.Contains(p); });
}

const Letter& LetterNamed(char name) {
    static const std::vector<Letter> letters = DrawLetters();
    for (const Letter& letter : letters)
        if (letter.name == name)
            return letter;
    throw std::out_of_range(std::string("no letter is drawn for '") + name + "'");
}

bool PlacedLetter::Contains(vec2 p) const {
    return letter->Contains((p - origin) * (1 / height));
}

std::vector<PlacedLetter> SetWord(const std::string& word, float left, float right, float y,
                                  float height) {
    float ink = 0;
    for (const char name : word)
        ink += LetterNamed(name).width * height;
    const auto gaps = static_cast<float>(std::max<std::size_t>(word.size(), 2) - 1);
    const float gap = (right - left - ink) / gaps;
    std::vector<PlacedLetter> line;
    float x = left;
    for (const char name : word) {
        line.push_back({&LetterNamed(name), {x, y}, height});
        x += LetterNamed(name).width * height + gap;
    }
    return line;
}

} // namespace Art
