#pragma once

#include "tools/doctor/row.h"

#include <string>

namespace Doctor {

/// What all rows come to: Ok, Warn or Fail. Details count through the row that sums them up, and
/// what could not be looked at has its reason in another row.
State Verdict(const Table& table);

/// The verdict as one sentence.
std::string Sentence(const Table& table);

/// The page for people, details left out.
std::string AsText(const Table& table);

/// The same for programs, every row of it: one JSON object and a line feed. Bytes that are no UTF-8
/// become U+FFFD, the sign for that.
std::string AsJson(const Table& table);

} // namespace Doctor
