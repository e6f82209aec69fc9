#include "web/gl/glsl/tokens.h"

#include <algorithm>
#include <cctype>

namespace WebGL::Glsl {

namespace {

bool IsLetter(char c) {
    return c == '_' || std::isalpha(static_cast<unsigned char>(c)) != 0;
}

bool IsDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

bool IsBlank(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

/// Each of these answers how many characters from the beginning of `text` belong together.
std::size_t CommentLength(std::string_view text) {
    const bool line = text.starts_with("//");
    if (!line && !text.starts_with("/*"))
        return 0;
    const std::size_t end = line ? text.find('\n') : text.find("*/", 2);
    if (end == std::string_view::npos)
        return text.size();
    return line ? end : end + 2;
}

std::size_t SpaceLength(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size()) {
        const std::size_t comment = CommentLength(text.substr(length));
        if (comment == 0 && !IsBlank(text[length]))
            break;
        length += std::max<std::size_t>(comment, 1);
    }
    return length;
}

std::size_t IdentifierLength(std::string_view text) {
    const auto ends = [](char c) { return !IsLetter(c) && !IsDigit(c); };
    return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), ends) - text.begin());
}

bool BeginsNumber(std::string_view text) {
    return IsDigit(text[0]) || (text[0] == '.' && text.size() > 1 && IsDigit(text[1]));
}

// A sign belongs to the number right behind the e of an exponent, in "1e-3", but not in "0xe-3".
std::size_t NumberLength(std::string_view text) {
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    std::size_t length = 1;
    while (length < text.size()) {
        const char c = text[length];
        const char before = text[length - 1];
        const bool exponent = !hexadecimal && (before == 'e' || before == 'E');
        if (!IsLetter(c) && !IsDigit(c) && c != '.' && !(exponent && (c == '-' || c == '+')))
            break;
        ++length;
    }
    return length;
}

Token Next(std::string_view text, bool lineBegins) {
    const auto cut = [&](TokenKind kind, std::size_t length) {
        return Token{kind, std::string(text.substr(0, length))};
    };
    if (const std::size_t space = SpaceLength(text))
        return cut(TokenKind::Space, space);
    if (IsLetter(text[0]))
        return cut(TokenKind::Identifier, IdentifierLength(text));
    if (BeginsNumber(text))
        return cut(TokenKind::Number, NumberLength(text));
    return cut(text[0] == '#' && lineBegins ? TokenKind::Hash : TokenKind::Symbol, 1);
}

} // namespace

std::vector<Token> Tokenize(std::string_view text) {
    std::vector<Token> tokens;
    bool lineBegins = true;
    while (!text.empty()) {
        tokens.push_back(Next(text, lineBegins));
        const Token& token = tokens.back();
        if (token.kind == TokenKind::Space)
            lineBegins = lineBegins || token.text.find('\n') != std::string::npos;
        else
            lineBegins = false;
        text.remove_prefix(token.text.size());
    }
    return tokens;
}

} // namespace WebGL::Glsl
