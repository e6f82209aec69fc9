#include "tests/hostile/recipe.h"

#include <zlib.h>

#include <functional>
#include <sstream>
#include <stdexcept>

namespace Hostile {

namespace {

constexpr std::size_t signatureBytes = 8; // of a PNG
constexpr std::size_t aroundChunk = 12;   // length 4, kind 4, checksum 4

/// Takes a recipe apart.
class Reader {
public:
    explicit Reader(const std::string& recipe) : text(recipe) {}

    bool Ended() {
        at = text.find_first_not_of(' ', at);
        return at == std::string::npos;
    }

    std::string Word() {
        if (Ended())
            throw std::runtime_error("a step lacks something: " + text);
        const std::size_t begin = at;
        at = std::min(text.find(' ', at), text.size());
        return text.substr(begin, at - begin);
    }

    std::size_t Number() { return std::stoul(Word()); }

    std::string Quoted() {
        if (Ended() || text[at] != '"')
            throw std::runtime_error("expected quotes: " + text.substr(at));
        const std::string bytes = Until('"', ++at);
        ++at;
        return bytes;
    }

    /// A place in the bytes so far.
    std::size_t Place(const std::string& bytes) {
        if (Ended() || text[at] != '"')
            return Number();
        const std::size_t mark = bytes.find(Quoted());
        if (mark == std::string::npos)
            throw std::runtime_error("the mark is not there: " + text);
        if (at < text.size() && text[at] == '+')
            ++at;
        return mark + Number();
    }

private:
    char Escaped() {
        const std::string names = "nrt0";
        const std::string meant("\n\r\t\0", 4);
        const char name = text.at(at++);
        if (const std::size_t known = names.find(name); known != std::string::npos)
            return meant[known];
        if (name != 'x')
            return name;
        at += 2;
        return static_cast<char>(std::stoi(text.substr(at - 2, 2), nullptr, 16));
    }

    std::string Repeated() {
        const std::size_t star = text.find('*', at);
        const std::size_t times = std::stoul(text.substr(at, star - at));
        at = star + 1;
        const std::string piece = Until('}', at);
        ++at;
        std::string all;
        all.reserve(times * piece.size());
        for (std::size_t i = 0; i < times; ++i)
            all += piece;
        return all;
    }

    std::string Until(char end, std::size_t from) {
        std::string bytes;
        for (at = from; text.at(at) != end;) {
            const char letter = text[at++];
            if (letter == '\\')
                bytes += Escaped();
            else if (letter == '{')
                bytes += Repeated();
            else
                bytes += letter;
        }
        return bytes;
    }

    const std::string text;
    std::size_t at = 0;
};

std::size_t EndOfWord(const std::string& bytes, std::size_t count) {
    const char* const blanks = " \n\r\t";
    std::size_t end = 0;
    for (std::size_t i = 0; i < count; ++i)
        end = std::min(bytes.find_first_of(blanks, bytes.find_first_not_of(blanks, end)),
                       bytes.size());
    return end;
}

std::size_t BigEndian(const std::string& bytes, std::size_t at) {
    std::size_t value = 0;
    for (std::size_t i = at; i < at + 4; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
}

void MendChecksums(std::string& png) {
    std::size_t at = signatureBytes;
    while (at + aroundChunk <= png.size() && BigEndian(png, at) <= png.size() - at - aroundChunk) {
        const std::size_t covered = 4 + BigEndian(png, at);
        const auto* bytes = reinterpret_cast<const Bytef*>(png.data() + at + 4);
        const auto sum = crc32(0, bytes, static_cast<uInt>(covered));
        at += 4 + covered;
        for (int shift = 24; shift >= 0; shift -= 8)
            png[at++] = static_cast<char>(sum >> shift);
    }
}

using Step = std::function<void(Reader&, Content&, const Bases&)>;

const std::map<std::string, Step> steps = {
    {"base", [](Reader& in, Content& content,
                const Bases& bases) { content.bytes += bases.at(in.Word()); }},
    {"text", [](Reader& in, Content& content, const Bases&) { content.bytes += in.Quoted(); }},
    {"cut", [](Reader& in, Content& content, const Bases&) { content.bytes.resize(in.Number()); }},
    {"tokens", [](Reader& in, Content& content,
                  const Bases&) { content.bytes.resize(EndOfWord(content.bytes, in.Number())); }},
    {"put",
     [](Reader& in, Content& content, const Bases&) {
         const std::size_t at = in.Place(content.bytes);
         const std::string with = in.Quoted();
         content.bytes.replace(at, with.size(), with);
     }},
    {"drop",
     [](Reader& in, Content& content, const Bases&) {
         const std::size_t at = in.Place(content.bytes);
         content.bytes.erase(at, in.Number());
     }},
    {"insert",
     [](Reader& in, Content& content, const Bases&) {
         const std::size_t at = in.Place(content.bytes);
         content.bytes.insert(at, in.Quoted());
     }},
    {"mend", [](Reader&, Content& content, const Bases&) { MendChecksums(content.bytes); }},
    {"hole", [](Reader& in, Content& content, const Bases&) { content.hole = in.Number(); }},
};

} // namespace

Content MakeContent(const std::string& recipe, const Bases& bases) {
    Reader in(recipe);
    Content content;
    while (!in.Ended()) {
        const std::string name = in.Word();
        const auto step = steps.find(name);
        if (step == steps.end())
            throw std::runtime_error("there is no step '" + name + "': " + recipe);
        step->second(in, content, bases);
    }
    return content;
}

} // namespace Hostile
