#include "engine/render/decimals.h"

#include <bit>
#include <cfloat>
#include <charconv>
#include <cstdint>
#include <cstring>

// Numbers of a mesh are short, of all lengths, and there are hundreds of thousands of them. A loop
// over their digits ends where the processor does not expect it, once or twice a number, and that
// costs more than the digits. So eight characters are looked at together, without a branch.

namespace Vell {

namespace {

// The two quick ways load the first character into the lowest byte, and count on a division of
// floats that rounds to a float. Elsewhere every number goes the general way.
constexpr bool hasQuickWays = std::endian::native == std::endian::little && FLT_EVAL_METHOD == 0;

constexpr std::uint64_t everyByte = 0x0101010101010101;

/// Eight characters, less '0' each: a digit becomes its value, anything else more than 9.
std::uint64_t LoadEight(const char* text) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, text, sizeof eight);
    return eight ^ (everyByte * '0');
}

/// The top bit of every byte that is no digit, up to the first that is neither digit nor point;
/// carries may spoil what is above.
std::uint64_t MarkOthers(std::uint64_t eight) {
    return ((eight + everyByte * (0x80 - 10)) | eight) & (everyByte * 0x80);
}

/// Bytes below the lowest mark; 8 without any.
std::size_t CountBelow(std::uint64_t marks) {
    return static_cast<std::size_t>(std::countr_zero(marks)) / 8;
}

/// The number that eight digits make, the lowest byte its first. Neighbours are joined to two
/// digits each, and the four pairs weighed by two multiplications; the sum is in the upper half.
std::int64_t Join(std::uint64_t digits) {
    constexpr std::uint64_t pair = 0x000000ff000000ff;
    digits = digits * 10 + (digits >> 8);
    const std::uint64_t outer = (digits & pair) * (100 + (std::uint64_t{1000000} << 32));
    const std::uint64_t inner = ((digits >> 16) & pair) * (1 + (std::uint64_t{10000} << 32));
    return static_cast<std::int64_t>((outer + inner) >> 32);
}

/// Without a branch, for signs follow no pattern.
float WithSign(float magnitude, bool negative) {
    return std::bit_cast<float>(std::bit_cast<std::uint32_t>(magnitude) |
                                static_cast<std::uint32_t>(negative) << 31);
}

constexpr std::size_t mostShortDigits = 7;
constexpr float floatPowers[] = {1, 1e1f, 1e2f, 1e3f, 1e4f, 1e5f, 1e6f, 1e7f};

/// At most seven digits, with the point in eight characters. Such a number without its point, and
/// the power of ten to divide it by, are both less than 2^24 and so exact: the one rounding is that
/// of the division. Returns behind the blank, or null when this is no such number.
const char* ReadShort(const char* text, float& number) {
    const bool negative = *text == '-';
    text += negative;
    const std::uint64_t eight = LoadEight(text);
    const std::uint64_t others = MarkOthers(eight);
    const std::size_t whole = CountBelow(others);
    const bool point = text[whole] == '.';
    const std::size_t length = point ? CountBelow(others & (others - 1)) : whole;
    const std::size_t digits = length - point;
    if (!IsBlank(text[length]) || digits - 1 >= mostShortDigits) // none is too many as well
        return nullptr;
    // What is in front of the point, or of the blank, moves up into its byte; then all of it up to
    // the top.
    const std::uint64_t wholeBytes = (std::uint64_t{1} << 8 * whole) - 1;
    const std::uint64_t fractionBytes = ~(wholeBytes << 8 | 0xff);
    const std::uint64_t joined = (eight & wholeBytes) << 8 | (eight & fractionBytes);
    const auto value = static_cast<float>(Join(joined << 8 * (mostShortDigits - digits)));
    number = WithSign(value / floatPowers[digits - whole], negative);
    return text + length + 1;
}

struct Digits {
    std::int64_t value;
    std::size_t count; // at most 8
};

Digits LeadingDigits(const char* text) {
    const std::uint64_t eight = LoadEight(text);
    const std::size_t count = CountBelow(MarkOthers(eight));
    const std::size_t half = 4 * (8 - count); // all 64 bits at once is no shift
    return {Join(eight << half << half), count};
}

constexpr std::size_t mostLongDigits = 15;
constexpr std::int64_t wholePowers[] = {1,      10,      100,      1000,     10000,
                                        100000, 1000000, 10000000, 100000000};

/// A point, with at most eight digits on each side and fifteen together: less than 2^53, and so
/// exact as a double. It is rounded twice, which is rounding once: only a double in the middle
/// between two floats would hide on which side of it the number was. From 2^e on, such middles are
/// odd multiples of 2^(e-24), so eight decimals that are none keep away by 10^-8 x 2^(e-24), more
/// than the 2^(e-53) by which rounding to a double moves them.
/// Returns behind the blank, or null when this is no such number.
const char* ReadLong(const char* text, float& number) {
    const bool negative = *text == '-';
    text += negative;
    const Digits whole = LeadingDigits(text);
    text += whole.count;
    if (*text != '.')
        return nullptr;
    const Digits fraction = LeadingDigits(++text);
    text += fraction.count;
    if (!IsBlank(*text) || whole.count + fraction.count - 1 >= mostLongDigits)
        return nullptr;
    const std::int64_t power = wholePowers[fraction.count];
    const double value =
        static_cast<double>(whole.value * power + fraction.value) / static_cast<double>(power);
    number = WithSign(static_cast<float>(value), negative);
    return text + 1;
}

/// Any length, with or without an exponent. Words such as "nan" are none: no stream takes them.
const char* ReadGeneral(const char* text, const char* end, float& number) {
    const char first = *text == '-' ? text[1] : *text;
    if (first != '.' && (first < '0' || first > '9'))
        return nullptr;
    const auto [behind, error] = std::from_chars(text, end, number);
    return error == std::errc() && IsBlank(*behind) ? behind + 1 : nullptr;
}

const char* ReadDecimal(const char* text, const char* end, float& number) {
    while (IsBlank(*text))
        ++text;
    if constexpr (hasQuickWays) {
        if (const char* behind = ReadShort(text, number))
            return behind;
        if (const char* behind = ReadLong(text, number))
            return behind;
    }
    return ReadGeneral(text, end, number);
}

} // namespace

std::size_t ReadDecimals(const char*& text, const char* end, std::span<float> numbers) {
    std::size_t count = 0;
    while (count < numbers.size()) {
        const char* behind = ReadDecimal(text, end, numbers[count]);
        if (behind == nullptr)
            break;
        text = behind;
        ++count;
    }
    return count;
}

} // namespace Vell
