#include "tools/doctor/row.h"

#include <sstream>

namespace Doctor {

Value NumberValue(const std::string& name, double number) {
    std::ostringstream text;
    // Whole numbers, such as bytes, to the last digit.
    text.precision(number == static_cast<double>(static_cast<long long>(number)) ? 15 : 4);
    text << number;
    return {name, text.str(), true};
}

void Row::Set(State newState, const std::string& newFinding, const std::string& newAdvice) {
    state = newState;
    finding = newFinding;
    advice = newAdvice;
}

void Append(Table& table, const Table& more) {
    table.insert(table.end(), more.begin(), more.end());
}

} // namespace Doctor
