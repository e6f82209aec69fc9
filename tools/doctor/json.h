#pragma once

#include <string>

namespace Doctor {

/// Writes one JSON value, piece by piece, indented by two blanks.
///
/// Inside an object every value is preceded by Key(). Texts may be any bytes: what JSON demands is
/// escaped, and bytes that are no UTF-8 become U+FFFD, the sign for that.
class JsonWriter {
public:
    void BeginObject() { Begin('{'); }
    void EndObject() { End('}'); }
    void BeginArray() { Begin('['); }
    void EndArray() { End(']'); }

    void Key(const std::string& name);

    void Text(const std::string& text);
    /// `text` is a number as JSON writes it.
    void Number(const std::string& text);
    void Truth(bool value);

    /// What was written so far.
    const std::string& Result() const { return result; }

private:
    void Begin(char bracket);
    void End(char bracket);
    void BeforeValue();
    void NewLine();

    std::string result;
    int depth = 0;         ///< open brackets
    bool empty = true;     ///< whether the innermost bracket holds nothing yet
    bool afterKey = false; ///< whether a key waits for its value
};

/// `text` between double quotes, as JSON writes it.
std::string JsonText(const std::string& text);

} // namespace Doctor
