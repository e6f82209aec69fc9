#include "tools/doctor/page.h"

#include "tools/doctor/json.h"

#include <algorithm>

namespace Doctor {

namespace {

constexpr size_t stateColumn = 6; // letters
constexpr size_t titleColumn = 22;

/// Raised when a key is renamed or removed, not when one is added.
constexpr const char* jsonFormat = "1";

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

std::string Padded(const std::string& text, size_t width) {
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

void WriteValues(const Row& row, JsonWriter& json) {
    json.Key("values");
    json.BeginObject();
    for (const Value& value : row.values) {
        json.Key(value.name);
        if (value.number)
            json.Number(value.text);
        else
            json.Text(value.text);
    }
    json.EndObject();
}

void WriteRow(const Row& row, JsonWriter& json) {
    json.BeginObject();
    json.Key("id");
    json.Text(row.id);
    json.Key("title");
    json.Text(row.title);
    json.Key("state");
    json.Text(NameOf(row.state).word);
    json.Key("finding");
    json.Text(row.finding);
    json.Key("advice");
    json.Text(row.advice);
    json.Key("detail");
    json.Truth(row.detail);
    WriteValues(row, json);
    json.EndObject();
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
    JsonWriter json;
    json.BeginObject();
    json.Key("format");
    json.Number(jsonFormat);
    json.Key("verdict");
    json.Text(NameOf(Verdict(table)).word);
    json.Key("sentence");
    json.Text(Sentence(table));
    json.Key("advice");
    json.BeginArray();
    for (const std::string& text : Advice(table))
        json.Text(text);
    json.EndArray();
    json.Key("rows");
    json.BeginArray();
    for (const Row& row : table)
        WriteRow(row, json);
    json.EndArray();
    json.EndObject();
    return json.Result() + '\n';
}

} // namespace Doctor
