// The token reader against std::istream, on files made at random.

#include "engine/render/tokenreader.h"

#include "tests/render/text_file.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <sstream>

using Vell::TokenReader;

namespace {

constexpr float untouched = 7.25f;
constexpr float largest = std::numeric_limits<float>::max();

std::mt19937 chance(4711); // NOLINT(bugprone-random-generator-seed): the same files every time

std::size_t Any(std::size_t count) {
    return chance() % count;
}

std::string Digits(std::size_t most) {
    std::string digits(Any(most + 1), '0');
    for (char& digit : digits)
        digit = static_cast<char>('0' + (Any(4) == 0 ? 0 : Any(10)));
    return digits;
}

std::string Printed(const char* format, double value) {
    char text[400];
    return std::string(text,
                       static_cast<std::size_t>(std::snprintf(text, sizeof text, format, value)));
}

float AnyFloat() {
    const float number = std::bit_cast<float>(static_cast<std::uint32_t>(chance()));
    return std::isfinite(number) ? number : 0.5f;
}

/// The middle between a float and the next one, in full: some of up to eight digits on both sides,
/// most of many more.
std::string Middle() {
    const float low = Any(2) == 0 ? AnyFloat() : static_cast<float>(Any(1U << 28)) / 128.0f;
    const double middle = (static_cast<double>(low) + std::nextafter(low, largest)) / 2;
    return Printed("%.40f", middle).substr(0, 8 + Any(60));
}

const char* const oddities[] = {
    "1e",           "1e+",          "1.5.2", "+",      "-",   ".",  "+-1", "nan",  "inf",
    "0x1",          "0x1p3",        "1,5",   "NULL",   "-.",  "..", "e5",  "1e9",  "1-2",
    "1e40",         "-1e40",        "1e-46", "-1e-46", "+.5", "-0", "1.f", "\xff", "1\xa0",
    "3.4028235e38", "3.4028236e38", "7e-46"};

std::string AnyNumber() {
    const char* const signs[] = {"", "", "-", "+"};
    const std::string sign = signs[Any(4)];
    switch (Any(8)) {
    case 0:
        return sign + Digits(3);
    case 1:
        return sign + Digits(5) + "." + Digits(6);
    case 2:
        return sign + Digits(10) + "." + Digits(10);
    case 3:
        return sign + Digits(3) + "." + Digits(3) + "e" + signs[Any(4)] + Digits(2);
    case 4:
        return sign + Middle();
    case 5:
        return Printed(Any(2) == 0 ? "%.9g" : "%.17g", static_cast<double>(AnyFloat()));
    case 6:
        return Any(40) == 0 ? sign + Digits(400) + "." + Digits(400) : Printed("%f", Any(4096));
    default:
        return Printed("%.4f", static_cast<double>(Any(20000)) / 10000 - 1);
    }
}

std::string AnyBlank() {
    const char* const blanks[] = {" ", " ", " ", "\n", "\t", "\r\n", "  ", " \v\f "};
    return blanks[Any(8)];
}

/// A mesh of a few vertices, as an exporter could write it.
std::string AnyMesh() {
    const std::size_t blocks = Any(4);
    const bool lit = Any(2) == 0;
    std::string text = "XT3DSTATIC" + AnyBlank() + std::to_string(blocks) + AnyBlank() + "dir/" +
                       AnyBlank() + (lit ? "1" : "0");
    for (std::size_t block = 0; block < blocks; ++block) {
        const std::size_t vertices = Any(4);
        text += AnyBlank() + "a.png NULL NULL" + AnyBlank() + std::to_string(vertices);
        for (std::size_t i = 0; i < vertices * (lit ? 10 : 8); ++i)
            text += AnyBlank() + AnyNumber();
    }
    return text + (Any(2) == 0 ? "\n" : "");
}

/// Cuts it, or changes it in up to three places.
void Damage(std::string& text) {
    if (Any(4) == 0)
        text.resize(Any(text.size()));
    for (std::size_t i = Any(4); i > 0 && !text.empty(); --i) {
        const std::size_t at = Any(text.size());
        switch (Any(4)) {
        case 0:
            text[at] = static_cast<char>(Any(256));
            break;
        case 1:
            text[at] = "0123456789+-.eEx "[Any(17)];
            break;
        case 2:
            text.erase(at, 1 + Any(3));
            break;
        default:
            text.insert(at, oddities[Any(std::size(oddities))]);
            break;
        }
    }
}

std::size_t BytesLeft(const TokenReader& in) {
    return in.BytesLeft();
}
std::size_t BytesLeft(std::istream& in) {
    return static_cast<std::size_t>(std::max<std::streamsize>(in.rdbuf()->in_avail(), 0));
}

void ReadNumbers(TokenReader& in, std::span<float> numbers) {
    in >> numbers;
}
void ReadNumbers(std::istream& in, std::span<float> numbers) {
    for (float& number : numbers)
        in >> number;
}

/// Everything that is read of a mesh, and after each count what is left: in bytes, to be compared.
/// Reads on after a failure. Counts are bounded, for they may be damaged.
template <class In>
std::string Transcript(In& in) {
    std::string seen;
    const auto note = [&](const auto& value) {
        seen.append(reinterpret_cast<const char*>(&value), sizeof value);
    };
    const auto noteWord = [&] {
        std::string word = "untouched";
        in >> word;
        seen += word + '\n';
    };
    const auto readCount = [&] {
        int count = -5;
        in >> count;
        note(count);
        note(BytesLeft(in));
        return std::min(count, 4);
    };
    noteWord();
    const int blocks = readCount();
    noteWord();
    bool lit = true;
    in >> lit;
    note(lit);
    for (int block = 0; block < blocks; ++block) {
        for (int texture = 0; texture < 3; ++texture)
            noteWord();
        const int vertices = readCount();
        for (int i = 0; i < vertices; ++i) {
            float record[10];
            std::fill(std::begin(record), std::end(record), untouched);
            ReadNumbers(in, std::span(record).first(lit ? 10 : 8));
            note(record);
            note(static_cast<bool>(in));
        }
    }
    return seen;
}

#ifdef __SANITIZE_ADDRESS__
constexpr int files = 20000; // ten times as slow
#else
constexpr int files = 200000;
#endif

} // namespace

TEST(TokenReaderStream, Reads_every_file_as_a_stream_does) {
    const TextFile file;
    for (int i = 0; i < files; ++i) {
        std::string text = AnyMesh();
        if (Any(2) == 0)
            Damage(text);
        file.Set(text);
        TokenReader reader(file.Path());
        std::istringstream stream(text);
        ASSERT_EQ(Transcript(reader), Transcript(stream)) << "file " << i << ":\n" << text;
    }
}
