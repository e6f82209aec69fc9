#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace WebGL::Glsl {

enum class TokenKind {
    Space,      ///< blanks, line ends and comments, kept so that lines keep their numbers
    Identifier, ///< keywords included
    Number,     ///< with its suffix
    Symbol,     ///< one character of punctuation
    Hash,       ///< the # that begins a directive
};

struct Token {
    TokenKind kind;
    std::string text;
};

/// Takes a shader's text apart. The texts of all tokens together are the text, byte for byte; what
/// is no GLSL at all comes out as symbols, for the driver to complain about.
std::vector<Token> Tokenize(std::string_view text);

} // namespace WebGL::Glsl
