#include "tools/options/kinds.h"

#include "tools/options/places.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <sstream>

namespace Tools {

namespace {

/// " from 0.1 to 600"
std::string Range(double least, double most) {
    constexpr int digits = 12; // that whole numbers of 32 bits have no exponent
    std::ostringstream text;
    text.precision(digits);
    text << " from " << least << " to " << most;
    return text.str();
}

} // namespace

double ParseNumber(const std::string& text) {
    double number = 0.0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, std::chars_format::fixed);
    return error == std::errc() && stop == end ? number : std::numeric_limits<double>::quiet_NaN();
}

std::string Listed(const std::vector<std::string>& texts, const std::string& last) {
    const std::string beforeLast = ' ' + last + ' ';
    std::string list;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (i > 0)
            list += i + 1 == texts.size() ? beforeLast : ", ";
        list += texts[i];
    }
    return list;
}

Kind AnyText(const std::string& name) {
    return {.name = name, .fits = {}, .prepare = {}};
}

Kind NumberKind(const std::string& what, double least, double most) {
    return {.name = what + Range(least, most),
            .fits =
                [least, most](const std::string& text) {
                    const double number = ParseNumber(text);
                    return number >= least && number <= most; // false for what is not a number
                },
            .prepare = {}};
}

Kind WholeNumberKind(int least, int most) {
    const Kind number = NumberKind("a whole number", least, most);
    return {.name = number.name,
            .fits =
                [number](const std::string& text) {
                    return number.fits(text) && text.find('.') == std::string::npos;
                },
            .prepare = {}};
}

Kind OneOf(const std::string& name, const std::vector<std::string>& texts) {
    return {.name = name,
            .fits =
                [texts](const std::string& text) {
                    return std::find(texts.begin(), texts.end(), text) != texts.end();
                },
            .prepare = {}};
}

Kind FileToWrite(const std::vector<std::string>& ends) {
    return {.name = "a " + Listed(ends, "or") + " file",
            .fits =
                [ends](const std::string& text) {
                    return std::any_of(ends.begin(), ends.end(), [&](const std::string& end) {
                        return text.ends_with(end) && text.size() > end.size();
                    });
                },
            .prepare = CheckFileToWrite};
}

Kind FileToRead(const std::string& name) {
    return {.name = name, .fits = {}, .prepare = CheckFileToRead};
}

Kind FolderToRead() {
    return {.name = "a folder", .fits = {}, .prepare = CheckFolder};
}

Kind FolderToFill() {
    return {.name = "a folder", .fits = {}, .prepare = MakeFolder};
}

} // namespace Tools
