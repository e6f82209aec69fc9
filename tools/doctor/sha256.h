#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

namespace Doctor {

/// The checksum SHA-256 (FIPS 180-4), fed piece by piece.
class Sha256 {
public:
    void Add(const unsigned char* bytes, size_t count);

    /// The sum of all that was added, as 64 hexadecimal digits; to be called once, at the end.
    std::string Finish();

private:
    static constexpr size_t blockBytes = 64;

    void Pad();
    void AddByte(unsigned char byte);
    void Compress();

    std::array<std::uint32_t, 8> state = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                          0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    std::array<unsigned char, blockBytes> block{};
    std::uint64_t length = 0; ///< bytes added
};

/// The sum of everything that the stream still holds.
std::string SumOf(std::istream& in);

} // namespace Doctor
