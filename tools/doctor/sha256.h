#pragma once

#include <iosfwd>
#include <string>

namespace Doctor {

/// The checksum SHA-256 of everything that the stream still holds, as 64 hexadecimal digits. Throws
/// std::runtime_error when libcrypto has no such sum to offer, as its configuration may demand.
std::string SumOf(std::istream& in);

} // namespace Doctor
