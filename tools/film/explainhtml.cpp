#include "tools/film/explainhtml.h"

#include <cstdio>

namespace Film {

std::string Escape(const std::string& text) {
    std::string escaped;
    for (const char c : text)
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c;
        }
    return escaped;
}

std::string Element(const std::string& name, const std::string& content,
                    const std::string& attributes) {
    const std::string space = attributes.empty() ? "" : " ";
    return "<" + name + space + attributes + ">" + content + "</" + name + ">";
}

std::string LinkTo(const std::string& id, const std::string& content) {
    return Element("a", content, "href=\"#" + id + "\"");
}

std::string Grouped(long long number) {
    std::string digits = std::to_string(number);
    for (size_t i = digits.size(); i > 3 + (number < 0 ? 1 : 0);) {
        i -= 3;
        digits.insert(i, ",");
    }
    return digits;
}

std::string Number(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", number);
    return text;
}

std::string Numbers(const std::vector<float>& numbers) {
    if (numbers.size() == 1)
        return Number(numbers[0]);
    std::string text;
    for (const float number : numbers)
        text += (text.empty() ? "(" : ", ") + Number(number);
    return text + ")";
}

void Table::Row(const std::vector<std::string>& cells) {
    std::string row;
    for (size_t i = 0; i < cells.size(); ++i) {
        std::string attributes = IsNumber(i) ? "class=\"n\"" : "";
        const size_t rest = heads.size() - i;
        if (i + 1 == cells.size() && rest > 1)
            attributes = "colspan=\"" + std::to_string(rest) + "\"";
        row += Element("td", cells[i], attributes);
    }
    rows += Element("tr", row) + "\n";
}

std::string Table::Html() const {
    std::string head;
    for (size_t i = 0; i < heads.size(); ++i)
        head += IsNumber(i) ? Element("th", heads[i].substr(1), "class=\"n\"")
                            : Element("th", heads[i]);
    return Element("div",
                   Element("table", "\n" + Element("thead", Element("tr", head)) + "\n" +
                                        Element("tbody", "\n" + rows)),
                   "class=\"wide\"") +
           "\n";
}

} // namespace Film
