#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

/// A JSON value as it was read. Objects keep no order; a key that stands twice is refused.
struct Json {
    enum class Kind { Null, Truth, Number, Text, Array, Object };

    Kind kind = Kind::Null;
    bool truth = false;
    double number = 0.0;
    std::string text; ///< UTF-8
    std::vector<Json> items;
    std::map<std::string, Json> members;

    const Json& operator[](const std::string& key) const { return members.at(key); }
};

/// Reads JSON strictly: what the format does not allow is refused, trailing commas included.
class JsonReader {
public:
    /// Throws std::runtime_error when `text` is not one JSON value with white space around it.
    static Json Read(const std::string& text) {
        JsonReader reader(text);
        Json value = reader.Value();
        reader.SkipSpace();
        reader.Demand(reader.at == text.size(), "the end");
        return value;
    }

private:
    explicit JsonReader(const std::string& whole) : text(whole) {}

    void Demand(bool good, const std::string& expected) const {
        if (!good)
            throw std::runtime_error("byte " + std::to_string(at) + ": expected " + expected);
    }

    char Peek() const { return at < text.size() ? text[at] : '\0'; }

    bool Take(const std::string& word) {
        if (text.compare(at, word.size(), word) != 0)
            return false;
        at += word.size();
        return true;
    }

    void SkipSpace() {
        while (at < text.size() && std::string(" \t\r\n").find(text[at]) != std::string::npos)
            ++at;
    }

    Json Value() {
        SkipSpace();
        Json value;
        if (Peek() == '{')
            Object(value);
        else if (Peek() == '[')
            Array(value);
        else if (Peek() == '"')
            value = Text();
        else if (!Word(value))
            Number(value);
        return value;
    }

    bool Word(Json& value) {
        value.truth = Peek() == 't';
        if (Take("true") || Take("false"))
            value.kind = Json::Kind::Truth;
        else if (!Take("null"))
            return false;
        return true;
    }

    void Number(Json& value) {
        value.kind = Json::Kind::Number;
        const size_t begin = at;
        while (std::string("+-.0123456789eE").find(Peek()) != std::string::npos && Peek() != '\0')
            ++at;
        const std::string digits = text.substr(begin, at - begin);
        const size_t first = digits[0] == '-' ? 1 : 0;
        Demand(digits.size() > first && std::isdigit(digits[first]) != 0, "a value");
        Demand(digits[first] != '0' || digits.size() == first + 1 ||
                   std::isdigit(digits[first + 1]) == 0,
               "no leading zero");
        size_t used = 0;
        value.number = std::stod(digits, &used);
        Demand(used == digits.size() && digits.back() != '.', "a number");
    }

    Json Text() {
        Json value;
        value.kind = Json::Kind::Text;
        Demand(Take("\""), "a text");
        while (Peek() != '"') {
            Demand(static_cast<unsigned char>(Peek()) >= 0x20, "no control character");
            value.text += Take("\\") ? Escaped() : std::string(1, text[at++]);
        }
        ++at;
        return value;
    }

    std::string Escaped() {
        const char letter = Peek();
        ++at;
        static const std::map<char, std::string> plain = {{'"', "\""}, {'\\', "\\"}, {'/', "/"},
                                                          {'b', "\b"}, {'f', "\f"},  {'n', "\n"},
                                                          {'r', "\r"}, {'t', "\t"}};
        const auto found = plain.find(letter);
        if (found != plain.end())
            return found->second;
        // The doctor writes larger characters as they are: only control characters come this way.
        Demand(letter == 'u' && Take("00"), "an escape of a control character");
        const std::string code = text.substr(at, 2);
        at += 2;
        return {char(std::stoi(code, nullptr, 16))};
    }

    void Array(Json& value) {
        value.kind = Json::Kind::Array;
        Demand(Take("["), "[");
        SkipSpace();
        if (Take("]"))
            return;
        do {
            value.items.push_back(Value());
            SkipSpace();
        } while (Take(","));
        Demand(Take("]"), "]");
    }

    void Object(Json& value) {
        value.kind = Json::Kind::Object;
        Demand(Take("{"), "{");
        SkipSpace();
        if (Take("}"))
            return;
        do {
            SkipSpace();
            const std::string key = Text().text;
            SkipSpace();
            Demand(Take(":"), ":");
            Demand(value.members.count(key) == 0, "another key than " + key);
            value.members[key] = Value();
            SkipSpace();
        } while (Take(","));
        Demand(Take("}"), "}");
    }

    const std::string& text;
    size_t at = 0;
};
