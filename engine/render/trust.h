#pragma once

#include <cstddef>

namespace Vell {

/// Bytes that a loader takes on a file's word, 256 MiB. A file that promises more has to be long
/// enough to hold it; otherwise a few damaged digits would take all the memory there is.
constexpr std::size_t takenOnTrust = static_cast<std::size_t>(1) << 28;

} // namespace Vell
