// What the token reader reads, worked out by hand.

#include "engine/render/tokenreader.h"

#include "tests/render/text_file.h"
#include "tests/support/scratch.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <vector>

#include <sys/stat.h>

using Vell::TokenReader;

namespace {

constexpr std::size_t chunkBytes = 65536; // read at a time
constexpr float untouched = 7.25f;
constexpr float largest = std::numeric_limits<float>::max();

/// What one extraction of a float gives, and the word that is next; "" where there is none.
struct Extraction {
    std::uint32_t bits;
    bool good;
    std::string rest;
};

template <class In>
Extraction ExtractFloat(In& in, bool behindWord) {
    std::string word;
    if (behindWord)
        in >> word;
    float number = untouched;
    in >> number;
    const bool good = static_cast<bool>(in);
    std::string rest;
    in >> rest;
    return {std::bit_cast<std::uint32_t>(number), good, rest};
}

/// The number at the front, before any of the file is there to be read the quick way, and behind a
/// word; by the reader and by a stream.
std::vector<Extraction> Extractions(const std::string& text) {
    std::vector<Extraction> all;
    for (const bool behindWord : {false, true}) {
        const std::string whole = behindWord ? "word " + text : text;
        const TextFile file(whole);
        TokenReader reader(file.Path());
        std::istringstream stream(whole);
        all.push_back(ExtractFloat(reader, behindWord));
        all.push_back(ExtractFloat(stream, behindWord));
    }
    return all;
}

} // namespace

// ---------------------------------------------------------------------------- Worked out by hand

struct FloatCase {
    const char* text;
    float value;
    bool good = true;
    const char* rest = "";
};

class Float : public ::testing::TestWithParam<FloatCase> {};

TEST_P(Float, Is_what_a_stream_reads) {
    const FloatCase& c = GetParam();
    for (const Extraction& got : Extractions(c.text)) {
        EXPECT_EQ(got.bits, std::bit_cast<std::uint32_t>(c.value)) << c.text;
        EXPECT_EQ(got.good, c.good) << c.text;
        EXPECT_EQ(got.rest, c.rest) << c.text;
    }
}

// Floats from 2^24 to 2^25 are 2 apart: 16777217 and 16777219 lie in the middle, and go to the even
// of their neighbours. The largest float is (2^24 - 1) x 2^104 = 3.40282346...e38, and half a step
// beyond it, 3.40282356...e38, nothing fits any more. The smallest is 2^-149 = 1.4...e-45.
INSTANTIATE_TEST_SUITE_P(
    Each, Float,
    ::testing::Values(
        FloatCase{"1", 1.0f}, FloatCase{" \t\n\v\f\r-2 x", -2.0f, true, "x"},
        FloatCase{"-0", -0.0f}, FloatCase{"-0.0 ", -0.0f}, FloatCase{"+1.5 a", 1.5f, true, "a"},
        FloatCase{"5. b", 5.0f, true, "b"}, FloatCase{".5 c", 0.5f, true, "c"},
        FloatCase{"-.25 ", -0.25f}, FloatCase{"0000000000012.5 ", 12.5f},
        FloatCase{"1234567 ", 1234567.0f}, FloatCase{"12345678 ", 12345678.0f},
        FloatCase{"1234567. ", 1234567.0f}, FloatCase{"12345678. ", 12345678.0f},
        FloatCase{".1234567 ", .1234567f}, FloatCase{".12345678 ", .12345678f},
        FloatCase{"123456789 ", 123456789.0f}, FloatCase{"1234567.12345678 ", 1234567.125f},
        FloatCase{"12345678.12345678 ", 12345678.0f}, FloatCase{"1.123456789 ", 1.12345679f},
        FloatCase{"16777217 ", 16777216.0f}, FloatCase{"16777217.0 ", 16777216.0f},
        FloatCase{"16777219.0 ", 16777220.0f}, FloatCase{"16777217.0000001 ", 16777218.0f},
        FloatCase{"16777217.000000000000000000001 ", 16777218.0f}, FloatCase{"1e3 ", 1000.0f},
        FloatCase{"1E3 ", 1000.0f}, FloatCase{"1e+3 ", 1000.0f}, FloatCase{"25e-1 ", 2.5f},
        FloatCase{"1e3.5 ", 1000.0f, true, ".5"}, FloatCase{"1e3e5 ", 1000.0f, true, "e5"},
        FloatCase{"1.5.2 ", 1.5f, true, ".2"}, FloatCase{"1-2 ", 1.0f, true, "-2"},
        FloatCase{"1,5 ", 1.0f, true, ",5"}, FloatCase{"0x10 ", 0.0f, true, "x10"},
        FloatCase{"3f ", 3.0f, true, "f"}, FloatCase{"3.40282346e38 ", largest},
        FloatCase{"3.40282356e38 ", largest}, FloatCase{"3.40282357e38 ", largest, false},
        FloatCase{"-1e39 ", -largest, false}, FloatCase{"1e99999999999999999999 ", largest, false},
        FloatCase{"1e-45 ", std::numeric_limits<float>::denorm_min()}, FloatCase{"1e-46 ", 0.0f},
        FloatCase{"-1e-46 ", -0.0f}, FloatCase{"1e-99999999999999999999 ", 0.0f},
        FloatCase{"0e99999 ", 0.0f}, FloatCase{"1e ", 0.0f, false}, FloatCase{"1e", 0.0f, false},
        FloatCase{"1e+ ", 0.0f, false}, FloatCase{"1e999e ", largest, false},
        FloatCase{"+ 1", 0.0f, false}, FloatCase{"- 1", 0.0f, false}, FloatCase{". 1", 0.0f, false},
        FloatCase{"-. ", 0.0f, false}, FloatCase{"+-1 ", 0.0f, false},
        FloatCase{"--1 ", 0.0f, false}, FloatCase{"e5 ", 0.0f, false},
        FloatCase{".e5 ", 0.0f, false}, FloatCase{"nan ", 0.0f, false},
        FloatCase{"-inf ", 0.0f, false}, FloatCase{"abc ", 0.0f, false},
        FloatCase{"", untouched, false}, FloatCase{" \n ", untouched, false}));

TEST(TokenReader, Takes_numbers_of_400_digits) {
    const std::string zeros(400, '0');
    const struct {
        std::string text;
        float value;
        bool good;
    } cases[] = {{"1" + zeros + "e-400 ", 1.0f, true},
                 {"0." + zeros + "1e401 ", 1.0f, true},
                 {zeros + "5.5 ", 5.5f, true},
                 {"1" + zeros + " ", largest, false},
                 {"0." + zeros + "1 ", 0.0f, true},
                 {"1" + zeros + "e-500 ", 0.0f, true},
                 {"-0." + zeros + "1e500", -largest, false}};
    for (const auto& [text, value, good] : cases)
        for (const Extraction& got : Extractions(text)) {
            EXPECT_EQ(got.bits, std::bit_cast<std::uint32_t>(value)) << text;
            EXPECT_EQ(got.good, good) << text;
        }
}

TEST(TokenReader, Takes_a_zero_byte_for_a_character_like_any_other) {
    for (const Extraction& got : Extractions(std::string("1\0 2", 4))) {
        EXPECT_EQ(got.bits, std::bit_cast<std::uint32_t>(1.0f));
        EXPECT_EQ(got.rest, std::string("\0", 1));
    }
}

TEST(TokenReader, Reads_whole_numbers_into_their_range) {
    const struct {
        const char* text;
        int value;
        bool good;
    } cases[] = {{"12", 12, true},
                 {"-0012x", -12, true},
                 {"+3", 3, true},
                 {"2147483647", 2147483647, true},
                 {"2147483648", 2147483647, false},
                 {"-2147483649", -2147483647 - 1, false},
                 {"99999999999999999999", 2147483647, false},
                 {"-99999999999999999999", -2147483647 - 1, false},
                 {"0x10", 0, true},
                 {"x", 0, false},
                 {"-", 0, false},
                 {"", 5, false}};
    for (const auto& [text, value, good] : cases) {
        const TextFile file(text);
        TokenReader reader(file.Path());
        int number = 5;
        reader >> number;
        EXPECT_EQ(number, value) << text;
        EXPECT_EQ(static_cast<bool>(reader), good) << text;
    }
}

TEST(TokenReader, Reads_flags_that_are_0_or_1_and_fails_at_others) {
    const struct {
        const char* text;
        bool value;
        bool good;
    } cases[] = {{"0", false, true}, {"1", true, true},     {"01", true, true}, {"-0", false, true},
                 {"2", true, false}, {"yes", false, false}, {"", true, false}};
    for (const auto& [text, value, good] : cases) {
        const TextFile file(text);
        TokenReader reader(file.Path());
        bool flag = true;
        reader >> flag;
        EXPECT_EQ(flag, value) << text;
        EXPECT_EQ(static_cast<bool>(reader), good) << text;
    }
}

TEST(TokenReader, Leaves_everything_as_it_is_after_a_failure) {
    const TextFile file("x 1 2 3 4");
    TokenReader reader(file.Path());
    float numbers[2] = {untouched, untouched};
    int whole = 5;
    bool flag = true;
    std::string word = "word";
    reader >> numbers >> whole >> flag >> word;
    EXPECT_EQ(numbers[0], 0.0f) << "the failure itself";
    EXPECT_EQ(numbers[1], untouched);
    EXPECT_EQ(whole, 5);
    EXPECT_TRUE(flag);
    EXPECT_EQ(word, "word");
}

// ------------------------------------------------------------------------------------ Kinds of
// file

TEST(TokenReader, Reads_a_token_wherever_the_file_is_parted) {
    const std::string text = "-123.4567e+02 word 12.5 99 .25 0000.5 ";
    TextFile file;
    for (std::size_t front = 0; front <= text.size(); ++front) {
        SCOPED_TRACE(front);
        file.Set(std::string(chunkBytes - front, ' ') + text);
        TokenReader reader(file.Path());
        float first = 0;
        std::string word;
        float numbers[4] = {};
        reader >> first >> word >> numbers;
        EXPECT_EQ(first, -12345.67f);
        EXPECT_EQ(word, "word");
        EXPECT_EQ(numbers[0], 12.5f);
        EXPECT_EQ(numbers[1], 99.0f);
        EXPECT_EQ(numbers[2], 0.25f);
        EXPECT_EQ(numbers[3], 0.5f);
        EXPECT_TRUE(static_cast<bool>(reader));
    }
}

TEST(TokenReader, Opens_regular_files_only_and_waits_for_no_other) {
    ScratchDir folder;
    const std::string pipe = (folder.Path() / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path :
         {pipe, folder.Path().string(), std::string("/dev/null"), pipe + ".missing"}) {
        TokenReader reader(path);
        EXPECT_FALSE(reader.IsOpen()) << path;
        std::string word = "before";
        reader >> word;
        EXPECT_EQ(word, "before") << path;
        EXPECT_EQ(reader.BytesLeft(), 0u) << path;
    }
}

TEST(TokenReader, Ends_where_a_file_was_cut_while_it_was_read) {
    ScratchDir folder;
    const std::string path = (folder.Path() / "file").string();
    std::ofstream(path) << "first " << std::string(2 * chunkBytes, ' ') << "second";
    TokenReader reader(path);
    std::string word;
    reader >> word;
    EXPECT_EQ(word, "first");
    EXPECT_EQ(reader.BytesLeft(), 1 + 2 * chunkBytes + 6);
    std::filesystem::resize_file(path, 3);
    EXPECT_EQ(reader.BytesLeft(), 0u);
    reader >> word;
    EXPECT_FALSE(static_cast<bool>(reader));
    EXPECT_EQ(word, "first");
}

TEST(TokenReader, Stays_at_the_end_that_it_met_when_the_file_grows) {
    const TextFile file("12");
    TokenReader reader(file.Path());
    int number = 0;
    reader >> number;
    file.Set("12 34");
    reader >> number;
    EXPECT_EQ(number, 12);
    EXPECT_FALSE(static_cast<bool>(reader));
}
