#pragma once

#include "tools/doctor/rehearsal.h"
#include "tools/doctor/row.h"

namespace Doctor {

/// Looks at everything, for the demo in the working directory, and plays it for `seconds`.
Table Examine(const Programs& programs, double seconds);

} // namespace Doctor
