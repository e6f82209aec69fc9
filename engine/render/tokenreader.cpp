#include "engine/render/tokenreader.h"

#include "engine/core/regularfile.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <limits>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

namespace Vell {

namespace {

constexpr int nothing = -1; // no character: the file has ended

bool IsDigit(int c) {
    return c >= '0' && c <= '9';
}

/// std::from_chars takes a minus, but no plus.
std::string_view WithoutPlus(std::string_view number) {
    return number.substr(number.starts_with('+') ? 1 : 0);
}

/// Which of the two a number is that no float can hold: too large, or too close to 0. It lies so
/// far from 1 that the place of its first digit tells.
bool IsTooLarge(std::string_view number) {
    const std::size_t e = std::min(number.find('e'), number.size());
    const std::string_view digits = number.substr(0, e);
    const auto first = static_cast<long>(digits.find_first_of("123456789"));
    const auto point = static_cast<long>(std::min(digits.find('.'), e));
    const std::string_view power = WithoutPlus(number.substr(std::min(e + 1, number.size())));
    int exponent = 0;
    const auto error = std::from_chars(power.begin(), power.end(), exponent).ec;
    if (error == std::errc::result_out_of_range)
        return power.front() != '-';
    return point - first + exponent > 0;
}

struct Conversion {
    float value;
    bool failed;
};

Conversion ToFloat(std::string_view number) {
    number = WithoutPlus(number);
    float value = 0.0f;
    const auto [behind, error] = std::from_chars(number.begin(), number.end(), value);
    if (error == std::errc::invalid_argument || behind != number.end())
        return {0.0f, true};
    if (error == std::errc())
        return {value, false};
    const bool tooLarge = IsTooLarge(number);
    value = tooLarge ? std::numeric_limits<float>::max() : 0.0f;
    return {number.starts_with('-') ? -value : value, tooLarge};
}

} // namespace

TokenReader::TokenReader(const std::string& path)
    : file(OpenRegularFile(path)), cursor(chunk.data()), end(chunk.data()) {}

TokenReader::~TokenReader() {
    if (IsOpen())
        close(file);
}

std::size_t TokenReader::BytesLeft() const {
    struct stat status {};
    const off_t read = lseek(file, 0, SEEK_CUR);
    if (fstat(file, &status) != 0 || read < 0)
        return 0;
    const off_t here = read - (end - cursor);
    return status.st_size > here ? static_cast<std::size_t>(status.st_size - here) : 0;
}

TokenReader& TokenReader::operator>>(std::string& word) {
    if (!Begin())
        return *this;
    word.clear();
    for (int c = Peek(); c != nothing && !IsBlank(static_cast<char>(c)); c = Peek())
        Take(word);
    return *this;
}

TokenReader& TokenReader::operator>>(int& number) {
    if (!Begin())
        return *this;
    const long value = ReadLong();
    number = static_cast<int>(
        std::clamp<long>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
    failed = failed || number != value;
    return *this;
}

TokenReader& TokenReader::operator>>(bool& flag) {
    if (!Begin())
        return *this;
    const long value = ReadLong();
    flag = value != 0;
    failed = failed || (value != 0 && value != 1);
    return *this;
}

TokenReader& TokenReader::operator>>(std::span<float> numbers) {
    while (!numbers.empty() && !failed) {
        if (!ended)
            numbers = numbers.subspan(ReadDecimals(cursor, end, numbers));
        if (numbers.empty())
            break;
        ReadFloat(numbers.front());
        numbers = numbers.subspan(1);
    }
    return *this;
}

// The next character, or nothing.
int TokenReader::Peek() {
    if (cursor == end && !Refill()) {
        ended = true;
        return nothing;
    }
    return static_cast<unsigned char>(*cursor);
}

// False at the end of the file, and where it cannot be read any further.
bool TokenReader::Refill() {
    ssize_t count = 0;
    do
        count = read(file, chunk.data(), chunkBytes);
    while (count < 0 && errno == EINTR);
    char* behind = chunk.data() + std::max<ssize_t>(count, 0);
    std::fill_n(behind, bytesBehindText, '\0');
    cursor = chunk.data();
    end = behind;
    return count > 0;
}

// Goes to the next character that is no blank; what every extraction begins with.
bool TokenReader::Begin() {
    int c = failed || ended ? nothing : Peek();
    while (c != nothing && IsBlank(static_cast<char>(c))) {
        ++cursor;
        c = Peek();
    }
    failed = c == nothing;
    return !failed;
}

// Moves on, by a character that is there.
void TokenReader::Take(std::string& taken) {
    taken += *cursor;
    ++cursor;
}

void TokenReader::TakeSign(std::string& taken) {
    if (const int c = Peek(); c == '+' || c == '-')
        Take(taken);
}

void TokenReader::TakeDigits(std::string& taken) {
    while (IsDigit(Peek()))
        Take(taken);
}

// As many characters as could belong to a number, whether or not they make one.
std::string TokenReader::TakeFloat() {
    std::string taken;
    TakeSign(taken);
    TakeDigits(taken);
    if (Peek() == '.') {
        Take(taken);
        TakeDigits(taken);
    }
    const bool hasDigit = taken.find_first_of("0123456789") != std::string::npos;
    if (const int c = Peek(); hasDigit && (c == 'e' || c == 'E')) {
        ++cursor;
        taken += 'e';
        TakeSign(taken);
        TakeDigits(taken);
    }
    return taken;
}

void TokenReader::ReadFloat(float& number) {
    if (!Begin())
        return;
    const Conversion conversion = ToFloat(TakeFloat());
    number = conversion.value;
    failed = conversion.failed;
}

// Beyond the range: its end, and a failure.
long TokenReader::ReadLong() {
    std::string taken;
    TakeSign(taken);
    TakeDigits(taken);
    const std::string_view number = WithoutPlus(taken);
    long value = 0;
    const auto error = std::from_chars(number.begin(), number.end(), value).ec;
    failed = error != std::errc();
    if (error != std::errc::result_out_of_range)
        return value;
    return number.front() == '-' ? std::numeric_limits<long>::min()
                                 : std::numeric_limits<long>::max();
}

} // namespace Vell
