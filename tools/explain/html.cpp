#include "tools/explain/html.h"

#include <cstdio>

namespace Explain {

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
    const std::string digits = std::to_string(number);
    std::string grouped;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const bool afterDigit = i > 0 && digits[i - 1] != '-';
        if (afterDigit && (digits.size() - i) % 3 == 0)
            grouped += ',';
        grouped += digits[i];
    }
    return grouped;
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
    for (std::size_t i = 0; i < cells.size(); ++i) {
        std::string attributes = IsNumber(i) ? "class=\"n\"" : "";
        const std::size_t rest = heads.size() - i;
        if (i + 1 == cells.size() && rest > 1)
            attributes = "colspan=\"" + std::to_string(rest) + "\"";
        row += Element("td", cells[i], attributes);
    }
    rows += Element("tr", row) + "\n";
}

std::string Table::Html() const {
    std::string head;
    for (std::size_t i = 0; i < heads.size(); ++i)
        head += IsNumber(i) ? Element("th", heads[i].substr(1), "class=\"n\"")
                            : Element("th", heads[i]);
    std::string table = "\n";
    table += Element("thead", Element("tr", head)) + "\n";
    std::string body = "\n";
    body += rows;
    table += Element("tbody", body);
    return Element("div", Element("table", table), "class=\"wide\"") + "\n";
}

} // namespace Explain
