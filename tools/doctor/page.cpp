#include "tools/doctor/page.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace Doctor {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t stateColumn = 6; // letters
constexpr std::size_t titleColumn = 22;

/// Raised when a key is renamed or removed, not when one is added.
constexpr int jsonFormat = 1;

struct StateName {
    State state;
    const char* word; ///< in the JSON
    const char* mark; ///< on the page
};
const StateName stateNames[] = {
    {State::Ok, "ok", "ok"},
    {State::Warn, "warn", "!"},
    {State::Fail, "fail", "FAIL"},
    {State::Unknown, "unknown", "?"},
};

const StateName& NameOf(State state) {
    return *std::find_if(std::begin(stateNames), std::end(stateNames),
                         [&](const StateName& name) { return name.state == state; });
}

std::string Padded(const std::string& text, std::size_t width) {
    return text + std::string(text.size() < width ? width - text.size() : 1, ' ');
}

std::string Line(State state, const std::string& title, const std::string& finding) {
    return Padded(NameOf(state).mark, stateColumn) + Padded(title, titleColumn) + finding + '\n';
}

/// Behind a failure there are many of these, and all for its reason: one line for them.
std::string TitlesOfUnknown(const Table& table) {
    std::string list;
    for (const Row& row : table)
        if (!row.detail && row.state == State::Unknown)
            list += (list.empty() ? "" : ", ") + row.title;
    return list;
}

/// The findings of the rows that the verdict is about.
std::string Findings(const Table& table, State state) {
    std::string list;
    for (const Row& row : table)
        if (!row.detail && row.state == state)
            list += (list.empty() ? "" : "; ") + row.finding;
    return list;
}

/// Each advice once, in the order of the rows, what stops the demo first.
std::vector<std::string> Advice(const Table& table) {
    std::vector<std::string> list;
    for (const State state : {State::Fail, State::Warn})
        for (const Row& row : table)
            if (row.state == state && !row.advice.empty() &&
                std::find(list.begin(), list.end(), row.advice) == list.end())
                list.push_back(row.advice);
    return list;
}

/// Null where a number has no form in JSON: infinities and what is no number.
Json JsonOf(const Value& value) {
    if (!value.number)
        return value.text;
    const Json number = Json::parse(value.text, nullptr, false);
    return number.is_number() ? number : Json();
}

Json JsonOf(const Row& row) {
    Json values = Json::object();
    for (const Value& value : row.values)
        values[value.name] = JsonOf(value);
    return {{"id", row.id},           {"title", row.title},   {"state", NameOf(row.state).word},
            {"finding", row.finding}, {"advice", row.advice}, {"detail", row.detail},
            {"values", values}};
}

} // namespace

State Verdict(const Table& table) {
    State worst = State::Ok;
    for (const Row& row : table)
        if (!row.detail && row.state != State::Unknown)
            worst = std::max(worst, row.state);
    return worst;
}

std::string Sentence(const Table& table) {
    const State verdict = Verdict(table);
    if (verdict == State::Ok)
        return "Nimbrel can run here.";
    const char* begin =
        verdict == State::Warn ? "Nimbrel runs here, but: " : "Nimbrel cannot run here: ";
    return begin + Findings(table, verdict) + '.';
}

std::string AsText(const Table& table) {
    std::string page;
    for (const Row& row : table)
        if (!row.detail && row.state != State::Unknown)
            page += Line(row.state, row.title, row.finding);
    const std::string unknown = TitlesOfUnknown(table);
    if (!unknown.empty())
        page += Line(State::Unknown, "Not looked at", unknown);
    page += '\n' + Sentence(table) + '\n';
    const std::vector<std::string> advice = Advice(table);
    if (!advice.empty())
        page += "What to do:\n";
    for (const std::string& text : advice)
        page += "  - " + text + ".\n";
    return page;
}

std::string AsJson(const Table& table) {
    Json rows = Json::array();
    for (const Row& row : table)
        rows.push_back(JsonOf(row));
    const Json page = {{"format", jsonFormat},
                       {"verdict", NameOf(Verdict(table)).word},
                       {"sentence", Sentence(table)},
                       {"advice", Advice(table)},
                       {"rows", rows}};
    constexpr int indent = 2;
    return page.dump(indent, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace Doctor
