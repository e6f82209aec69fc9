#include "tools/stage/rate.h"

#include "tools/stage/time.h"

#include <charconv>
#include <cmath>
#include <stdexcept>

namespace Stage {

namespace {

constexpr std::int64_t slowest = 1; // frames a second
constexpr std::int64_t fastest = 1000;
constexpr int decimals = 6; // that a rate may have, so that it stays an exact fraction

[[noreturn]] void Refuse(const std::string& text) {
    throw std::runtime_error("expected a frame rate from 1 to 1000, such as 60, 23.976 or "
                             "60000/1001, found \"" +
                             text + "\"");
}

/// All of `digits` as a whole number.
std::int64_t Whole(const std::string& digits, const std::string& text) {
    std::int64_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (digits.empty() || digits[0] == '-' || error != std::errc() || stop != end)
        Refuse(text);
    return value;
}

/// "23.976" as 23976 / 1000.
Rate FromDecimal(const std::string& text, std::size_t point) {
    const std::string fraction = text.substr(point + 1);
    if (fraction.size() > decimals)
        Refuse(text);
    Rate rate;
    for (std::size_t i = 0; i < fraction.size(); ++i)
        rate.seconds *= 10;
    rate.frames = Whole(text.substr(0, point) + fraction, text);
    return rate;
}

Rate FromFraction(const std::string& text, std::size_t slash) {
    return {Whole(text.substr(0, slash), text), Whole(text.substr(slash + 1), text)};
}

} // namespace

bool Rate::Usable() const {
    constexpr std::int64_t largest = 1000000000; // keeps every product within 64 bits
    return seconds >= 1 && seconds <= largest && frames <= largest && frames >= slowest * seconds &&
           frames <= fastest * seconds;
}

std::int64_t Rate::Microseconds(int number) const {
    const std::int64_t dividend = number * seconds * microsecondsPerSecond;
    return (dividend + frames / 2) / frames;
}

double Rate::Seconds(int number) const {
    return SecondsOf(Microseconds(number));
}

int Rate::FrameAt(double time) const {
    int number = FrameFrom(time);
    while (number > 0 && Seconds(number) > time)
        --number;
    return number;
}

int Rate::FrameFrom(double time) const {
    int number = static_cast<int>(
        std::floor(time * static_cast<double>(frames) / static_cast<double>(seconds)));
    while (number > 0 && Seconds(number - 1) >= time)
        --number;
    while (Seconds(number) < time)
        ++number;
    return number;
}

Rate ParseRate(const std::string& text) {
    Rate rate;
    const std::size_t slash = text.find('/');
    const std::size_t point = text.find('.');
    if (slash != std::string::npos)
        rate = FromFraction(text, slash);
    else if (point != std::string::npos)
        rate = FromDecimal(text, point);
    else
        rate.frames = Whole(text, text);
    if (!rate.Usable())
        Refuse(text);
    return rate;
}

} // namespace Stage
