#include "tools/doctor/json.h"

#include "tests/doctor/json_reader.h"

#include <gtest/gtest.h>

using Doctor::JsonText;
using Doctor::JsonWriter;

TEST(Json, Values_are_separated_and_indented) {
    JsonWriter json;
    json.BeginObject();
    json.Key("list");
    json.BeginArray();
    json.Number("1");
    json.Text("two");
    json.BeginObject();
    json.EndObject();
    json.EndArray();
    json.Key("good");
    json.Truth(true);
    json.EndObject();
    EXPECT_EQ(json.Result(), "{\n"
                             "  \"list\": [\n"
                             "    1,\n"
                             "    \"two\",\n"
                             "    {}\n"
                             "  ],\n"
                             "  \"good\": true\n"
                             "}");
}

TEST(Json, Nothing_but_a_value_is_written_as_such) {
    JsonWriter json;
    json.Truth(false);
    EXPECT_EQ(json.Result(), "false");
}

TEST(Json, Quotes_backslashes_and_control_characters_are_escaped) {
    EXPECT_EQ(JsonText("say \"a\\b\""), R"("say \"a\\b\"")");
    EXPECT_EQ(JsonText("a\nb\rc\td"), R"("a\nb\rc\td")");
    EXPECT_EQ(JsonText(std::string("\0\x1f\x7f", 3)), R"("\u0000\u001f\u007f")");
}

TEST(Json, Keys_are_escaped_as_texts_are) {
    JsonWriter json;
    json.BeginObject();
    json.Key("a\"b");
    json.Number("0");
    json.EndObject();
    EXPECT_EQ(JsonReader::Read(json.Result())["a\"b"].number, 0.0);
}

TEST(Json, Characters_of_every_length_stay) {
    // One to four bytes, and the last one there is: U+10FFFF.
    const std::string text = "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x90\x9F\xF4\x8F\xBF\xBF";
    EXPECT_EQ(JsonText(text), '"' + text + '"');
}

struct Broken {
    const char* what;
    std::string bytes;
    std::string written; ///< with ? for U+FFFD
};

class JsonOfBrokenText : public ::testing::TestWithParam<Broken> {};

TEST_P(JsonOfBrokenText, Replaces_bytes_that_are_no_character) {
    std::string expected = "\"";
    for (const char letter : GetParam().written)
        expected += letter == '?' ? std::string("\xEF\xBF\xBD") : std::string(1, letter);
    EXPECT_EQ(JsonText(GetParam().bytes), expected + '"') << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Each, JsonOfBrokenText,
    ::testing::Values(Broken{"Latin-1", "caf\xE9!", "caf?!"},
                      Broken{"a continuation alone", "a\x80z", "a?z"},
                      Broken{"cut off at the end", "a\xE2\x82", "a??"},
                      Broken{"an overlong slash", "\xC0\xAFz", "??z"},
                      Broken{"an overlong form of three bytes", "\xE0\x80\xAF", "???"},
                      Broken{"a surrogate", "\xED\xA0\x80", "???"},
                      Broken{"beyond the last character", "\xF4\x90\x80\x80", "????"},
                      Broken{"a lead followed by a letter", "\xC3z", "?z"}));

TEST(Json, Reader_of_these_tests_refuses_what_is_none) {
    for (const char* text : {"", "{", "[1,]", "{\"a\": 1,}", "{\"a\" 1}", "{a: 1}", "01", "1.",
                             "\"a\nb\"", "nul", "[1] 2", "{\"a\": 1, \"a\": 2}", "\"\\x\""})
        EXPECT_THROW(JsonReader::Read(text), std::exception) << text;
    EXPECT_EQ(JsonReader::Read(" [ -1.5e1 , null ] ").items.front().number, -15.0);
}
