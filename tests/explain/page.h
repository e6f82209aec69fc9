#pragma once

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <string>
#include <vector>

// What a test asks of a page.

/// A page's tags: finds out whether each is closed in its turn.
class TagReader {
public:
    explicit TagReader(const std::string& text) : page(text) {}

    /// What is wrong, or nothing.
    std::string Read() {
        const std::string type = "<!DOCTYPE html>\n";
        if (!page.starts_with(type))
            return "no document type";
        std::size_t at = type.size();
        while (wrong.empty() && at < page.size())
            at = page[at] == '<' ? ReadTag(at) : ReadText(at);
        if (wrong.empty() && !open.empty())
            wrong = "<" + open.back() + "> is not closed";
        return wrong;
    }

private:
    std::size_t ReadText(std::size_t at) {
        const std::size_t end = std::min(page.find('<', at), page.size());
        for (std::size_t sign = page.find('&', at); sign < end; sign = page.find('&', sign + 1))
            if (!StartsEntity(sign))
                wrong = "a bare &";
        return end;
    }

    bool StartsEntity(std::size_t at) const {
        for (const std::string entity : {"&amp;", "&lt;", "&gt;", "&quot;"})
            if (page.compare(at, entity.size(), entity) == 0)
                return true;
        return false;
    }

    std::size_t ReadTag(std::size_t at) {
        const std::size_t end = page.find('>', at);
        if (end == std::string::npos) {
            wrong = "a tag without an end";
            return page.size();
        }
        const std::string tag = page.substr(at + 1, end - at - 1);
        if (tag[0] == '/')
            Close(tag.substr(1));
        else
            Open(tag);
        return end + 1;
    }

    void Open(const std::string& tag) {
        const bool empty = tag.back() == '/';
        const std::string whole = empty ? tag.substr(0, tag.size() - 1) : tag;
        std::size_t name = 0;
        while (name < whole.size() && std::isalnum(static_cast<unsigned char>(whole[name])))
            ++name;
        if (!AreAttributes(whole.substr(name)))
            wrong = "attributes of <" + whole.substr(0, name) + ">: " + whole.substr(name);
        if (!empty)
            open.push_back(whole.substr(0, name));
    }

    /// Any number of: a space, a name, an equals sign and a text in double quotes.
    static bool AreAttributes(const std::string& text) {
        std::size_t at = 0;
        while (at < text.size() && text.find_first_not_of(' ', at) != std::string::npos) {
            const std::size_t equals = text.find("=\"", at);
            const std::size_t end =
                equals == std::string::npos ? equals : text.find('"', equals + 2);
            if (text[at] != ' ' || end == std::string::npos ||
                text.find_first_of(" \"", at + 1) < equals)
                return false;
            at = end + 1;
        }
        return true;
    }

    void Close(const std::string& name) {
        if (open.empty() || open.back() != name)
            wrong =
                "</" + name + "> closes " + (open.empty() ? "nothing" : "<" + open.back() + ">");
        else
            open.pop_back();
    }

    const std::string& page;
    std::vector<std::string> open;
    std::string wrong;
};

inline std::string WhatIsWrong(const std::string& page) {
    return TagReader(page).Read();
}

/// What the page would fetch or lead to, other than itself: the first such word, or nothing.
inline std::string WhatItNeeds(const std::string& page) {
    // How each way out of a page begins, and the only way on that stays inside.
    const struct {
        const char* begin;
        const char* inside;
    } ways[] = {{"href=\"", "#"}, {"url(", "data:image/png;base64,"},
                {"src=", ""},     {"@import", ""},
                {"http:", ""},    {"https:", ""},
                {"<script", ""}};
    for (const auto& way : ways) {
        const std::string begin = way.begin;
        const std::string inside = way.inside;
        for (std::size_t at = page.find(begin); at != std::string::npos;
             at = page.find(begin, at + 1))
            if (inside.empty() || page.compare(at + begin.size(), inside.size(), inside) != 0)
                return page.substr(at, 60);
    }
    return "";
}

struct PngSize {
    int width = 0;
    int height = 0;
};

/// Of a PNG in base 64, from its head.
inline PngSize SizeOfPng(const std::string& base64) {
    const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::vector<std::uint32_t> bytes;
    for (std::size_t i = 0; i + 4 <= base64.size() && bytes.size() < 24; i += 4) {
        std::uint32_t bits = 0;
        for (std::size_t k = 0; k < 4; ++k)
            bits = bits << 6 | static_cast<std::uint32_t>(digits.find(base64[i + k]));
        for (const int shift : {16, 8, 0})
            bytes.push_back(bits >> shift & 255);
    }
    if (bytes.size() < 24 || bytes[1] != 'P' || bytes[2] != 'N' || bytes[3] != 'G')
        return {};
    const auto whole = [&](std::size_t at) {
        return static_cast<int>(bytes[at] << 24 | bytes[at + 1] << 16 | bytes[at + 2] << 8 |
                                bytes[at + 3]);
    };
    return {whole(16), whole(20)};
}
