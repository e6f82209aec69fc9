// web/gl takes shaders apart without losing a byte.

#include "web/gl/glsl/tokens.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

using ::testing::ElementsAre;
using WebGL::Glsl::Token;
using WebGL::Glsl::Tokenize;
using WebGL::Glsl::TokenKind;

namespace {

std::vector<std::string> Texts(const std::string& text) {
    std::vector<std::string> texts;
    for (const Token& token : Tokenize(text))
        if (token.kind != TokenKind::Space)
            texts.push_back(token.text);
    return texts;
}

} // namespace

TEST(Tokens, Keep_every_byte_of_the_text) {
    for (const std::string text :
         {"", " ", "a/*b*/c", "x // to the end", "/* never ended", "1.5e-3+.5*0x1F",
          "#version 110\n", "\xc3\xa9 @ $ \\", "a\r\nb"}) {
        std::string joined;
        for (const Token& token : Tokenize(text))
            joined += token.text;
        EXPECT_EQ(joined, text);
    }
}

TEST(Tokens, Are_names_numbers_and_single_signs) {
    EXPECT_THAT(Texts("vec4 a=b2*(1.5e-3+.5);"),
                ElementsAre("vec4", "a", "=", "b2", "*", "(", "1.5e-3", "+", ".5", ")", ";"));
}

TEST(Tokens, Take_a_sign_for_a_part_of_a_number_in_an_exponent_only) {
    EXPECT_THAT(Texts("1e+2 0xe-3 2-1"), ElementsAre("1e+2", "0xe", "-", "3", "2", "-", "1"));
}

TEST(Tokens, Leave_out_names_within_comments) {
    EXPECT_THAT(Texts("a /* texture */ b // texture2D\nc"), ElementsAre("a", "b", "c"));
}

TEST(Tokens, Know_a_directive_by_its_place_at_the_beginning_of_a_line) {
    const auto kinds = [](const std::string& text) {
        int hashes = 0;
        for (const Token& token : Tokenize(text))
            hashes += token.kind == TokenKind::Hash ? 1 : 0;
        return hashes;
    };
    EXPECT_EQ(kinds("#if 1\n  #define A\na # b"), 2);
}
