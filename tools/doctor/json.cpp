#include "tools/doctor/json.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <string_view>

namespace Doctor {

namespace {

/// The lead bytes of UTF-8 and what may follow: a character of `length` bytes, the second of which
/// lies within `low` and `high`; this leaves out overlong forms, surrogates and what is too large.
struct Lead {
    unsigned char first, last, length, low, high;
};
constexpr Lead leads[] = {
    {0x00, 0x7F, 1, 0, 0},       {0xC2, 0xDF, 2, 0x80, 0xBF}, {0xE0, 0xE0, 3, 0xA0, 0xBF},
    {0xE1, 0xEC, 3, 0x80, 0xBF}, {0xED, 0xED, 3, 0x80, 0x9F}, {0xEE, 0xEF, 3, 0x80, 0xBF},
    {0xF0, 0xF0, 4, 0x90, 0xBF}, {0xF1, 0xF3, 4, 0x80, 0xBF}, {0xF4, 0xF4, 4, 0x80, 0x8F},
};
constexpr const char* noCharacter = "\xEF\xBF\xBD"; // U+FFFD

bool Within(unsigned char byte, unsigned char low, unsigned char high) {
    return byte >= low && byte <= high;
}

bool Continues(std::string_view text, const Lead& lead) {
    if (text.size() < lead.length)
        return false;
    for (size_t i = 1; i < lead.length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (i == 1 ? !Within(byte, lead.low, lead.high) : !Within(byte, 0x80, 0xBF))
            return false;
    }
    return true;
}

/// Bytes of the character that `text` begins with; 0 when that is none.
size_t CharacterLength(std::string_view text) {
    for (const Lead& lead : leads)
        if (Within(static_cast<unsigned char>(text[0]), lead.first, lead.last))
            return Continues(text, lead) ? lead.length : 0;
    return 0;
}

struct Escape {
    char letter;
    const char* written;
};
constexpr Escape escapes[] = {
    {'"', "\\\""}, {'\\', "\\\\"}, {'\n', "\\n"}, {'\r', "\\r"}, {'\t', "\\t"},
};

std::string Escaped(char letter) {
    for (const Escape& escape : escapes)
        if (escape.letter == letter)
            return escape.written;
    const auto byte = static_cast<unsigned char>(letter);
    if (byte >= 0x20 && byte != 0x7F)
        return {letter};
    std::array<char, 8> code{};
    std::snprintf(code.data(), code.size(), "\\u%04x", unsigned(byte));
    return code.data();
}

} // namespace

std::string JsonText(const std::string& text) {
    std::string written = "\"";
    for (std::string_view rest = text; !rest.empty();) {
        const size_t length = CharacterLength(rest);
        if (length == 0)
            written += noCharacter;
        else if (length == 1)
            written += Escaped(rest[0]);
        else
            written += rest.substr(0, length);
        rest.remove_prefix(length == 0 ? 1 : length);
    }
    return written + '"';
}

void JsonWriter::Key(const std::string& name) {
    BeforeValue();
    result += JsonText(name) + ": ";
    afterKey = true;
}

void JsonWriter::Text(const std::string& text) {
    BeforeValue();
    result += JsonText(text);
}

void JsonWriter::Number(const std::string& text) {
    BeforeValue();
    result += text;
}

void JsonWriter::Truth(bool value) {
    BeforeValue();
    result += value ? "true" : "false";
}

void JsonWriter::Begin(char bracket) {
    BeforeValue();
    result += bracket;
    ++depth;
    empty = true;
}

void JsonWriter::End(char bracket) {
    --depth;
    if (!empty)
        NewLine();
    result += bracket;
    empty = false; // what is around it holds at least this
}

void JsonWriter::BeforeValue() {
    if (afterKey) {
        afterKey = false;
        return;
    }
    if (depth == 0)
        return;
    if (!empty)
        result += ',';
    empty = false;
    NewLine();
}

void JsonWriter::NewLine() {
    result += '\n' + std::string(size_t(depth) * 2, ' ');
}

} // namespace Doctor
