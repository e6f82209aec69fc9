#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Doctor {

/// How a check went.
enum class State {
    Ok,
    Warn,   ///< the demo plays, but less well than it should
    Fail,   ///< the demo cannot play
    Unknown ///< not looked at, since something before it failed
};

/// A number or a text of a row, for programs that read the JSON.
struct Value {
    std::string name;
    std::string text;
    bool number = false; ///< whether `text` is a number as JSON writes it
};

/// A value that is a number. Written with as few digits as tell it to four.
Value NumberValue(const std::string& name, double number);

/// One thing that was checked: the page and the JSON are both made of these alone.
struct Row {
    Row(std::string rowId, std::string rowTitle)
        : id(std::move(rowId)), title(std::move(rowTitle)) {}

    std::string id;    ///< stable, for programs: "texture_size"
    std::string title; ///< for people: "Largest picture"
    State state = State::Ok;
    std::string finding; ///< a phrase that can follow a colon, without a full stop
    std::string advice;  ///< what to do about it; empty when there is nothing to do
    std::vector<Value> values;
    bool detail = false; ///< one of many that another row sums up: not in the verdict

    /// Both in one go, for the checks that find something wrong.
    void Set(State newState, const std::string& newFinding, const std::string& newAdvice = "");
};

using Table = std::vector<Row>;

/// Puts the rows of `more` behind those of `table`.
void Append(Table& table, const Table& more);

} // namespace Doctor
