#pragma once

#include "engine/render/decimals.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>

namespace Vell {

/// Reads words and numbers from a text file: what std::ifstream's formatted extraction reads in the
/// "C" locale, value for value and failure for failure, but many times as fast (bench/mesh).
///
/// As there, a number is as many characters as could belong to one ("1.5.2" is 1.5 and .2, "0x10"
/// is 0 and then no number), what makes none ("1e", "nan") reads as 0 and fails, and what is too
/// large reads as the largest there is and fails. After a failure, and after the end of the file,
/// every extraction leaves its target as it is and fails.
///
/// Memory: 64 KiB in the object itself, whatever the size of the file; beside that only the word or
/// number at hand where it is no usual one.
class TokenReader {
public:
    /// Opens the file. Only a regular one: a pipe or a device is not waited for, see IsOpen().
    explicit TokenReader(const std::string& path);
    ~TokenReader();

    TokenReader(const TokenReader&) = delete;
    TokenReader& operator=(const TokenReader&) = delete;

    /// False for what is missing, may not be read or is no regular file; it then reads as empty.
    bool IsOpen() const { return file >= 0; }
    /// False once an extraction has failed.
    explicit operator bool() const { return !failed; }
    /// Bytes from here to the end that the file has now; 0 where it has shrunk to less.
    std::size_t BytesLeft() const;

    /// The next word, up to a blank or the end.
    TokenReader& operator>>(std::string& word);
    /// The next number.
    TokenReader& operator>>(int& number);
    /// 0 or 1; any other number is true and a failure.
    TokenReader& operator>>(bool& flag);
    TokenReader& operator>>(float& number) { return *this >> std::span(&number, 1); }
    /// One after the other; the quick way to read many.
    TokenReader& operator>>(std::span<float> numbers);

private:
    int Peek();
    bool Refill();
    bool Begin();
    void Take(std::string& taken);
    void TakeSign(std::string& taken);
    void TakeDigits(std::string& taken);
    std::string TakeFloat();
    void ReadFloat(float& number);
    long ReadLong();

    static constexpr std::size_t chunkBytes = static_cast<std::size_t>(1) << 16;

    int file; // descriptor; negative without one
    bool failed = false;
    bool ended = false; // the end was met, by looking for a character behind the last
    const char* cursor;
    const char* end; // of what was read so far; zeros follow
    std::array<char, chunkBytes + bytesBehindText> chunk{};
};

} // namespace Vell
