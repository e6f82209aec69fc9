#include "art/music/patterntext.h"

#include <cmath>
#include <cstdlib>

namespace Music {

namespace {

constexpr double largestNumber = 1e6; // nothing in a score is larger
constexpr double longestNote = 1024;  // sixteenths

} // namespace

bool ParseNumber(const std::string& text, double& value) {
    char* end = nullptr;
    const double parsed = std::strtod(text.c_str(), &end);
    // Written so that "nan" is refused too.
    if (text.empty() || *end != '\0' || !(std::fabs(parsed) <= largestNumber))
        return false;
    value = parsed;
    return true;
}

bool AddSteps(const std::string& signs, Pattern& pattern) {
    for (char sign : signs) {
        const int at = pattern.length++;
        if (sign == '-') {
            if (!pattern.events.empty())
                ++pattern.events.back().length;
            continue;
        }
        if (sign == '.')
            continue;
        PatternEvent event;
        event.start = at;
        if (pattern.kind == PatternKind::Line) {
            int unused = 0;
            if (!DegreeNote(Chord{0, 0, {0, 4, 7}}, sign, 36, unused))
                return false;
            event.degree = sign;
            event.velocity = 0.85F;
        } else if (sign == 'x' || sign == 'X' || sign == 'o') {
            event.velocity = sign == 'x' ? 0.8F : (sign == 'X' ? 1.0F : 0.5F);
        } else {
            return false;
        }
        pattern.events.push_back(event);
    }
    return true;
}

bool AddTuneNote(std::string word, Pattern& pattern) {
    PatternEvent event;
    event.velocity = 0.85F;
    if (!word.empty() && word.back() == '!') {
        event.velocity = 1.0F;
        word.pop_back();
    }
    const std::size_t colon = word.find(':');
    double length = 0;
    if (colon == std::string::npos || !ParseNumber(word.substr(colon + 1), length) || length < 1 ||
        length > longestNote)
        return false;
    event.start = pattern.length;
    event.length = static_cast<int>(length);
    pattern.length += event.length;
    const std::string name = word.substr(0, colon);
    if (name == "-")
        return true;
    if (!ParseNote(name, event.midi))
        return false;
    pattern.events.push_back(event);
    return true;
}

} // namespace Music
