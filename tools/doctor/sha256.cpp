#include "tools/doctor/sha256.h"

#include <bit>
#include <istream>
#include <vector>

namespace Doctor {

namespace {

constexpr int rounds = 64;
constexpr size_t pieceBytes = size_t(1) << 16; // of a file, read at once
constexpr size_t lengthBytes = 8;              // the length at the end of the last block

// The first 32 bits of the fractional parts of the cube roots of the first 64 primes.
constexpr std::uint32_t constants[rounds] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

std::uint32_t Mix(std::uint32_t word, int first, int second, int third) {
    return std::rotr(word, first) ^ std::rotr(word, second) ^ std::rotr(word, third);
}

using Schedule = std::array<std::uint32_t, rounds>;

Schedule Expand(const unsigned char* block) {
    Schedule words{};
    for (size_t i = 0; i < 16; ++i)
        for (size_t byte = 0; byte < 4; ++byte)
            words[i] = words[i] << 8 | block[i * 4 + byte];
    for (size_t i = 16; i < rounds; ++i) {
        const std::uint32_t near = words[i - 2];
        const std::uint32_t far = words[i - 15];
        words[i] = words[i - 16] + words[i - 7] +
                   (std::rotr(near, 17) ^ std::rotr(near, 19) ^ (near >> 10)) +
                   (std::rotr(far, 7) ^ std::rotr(far, 18) ^ (far >> 3));
    }
    return words;
}

} // namespace

void Sha256::Add(const unsigned char* bytes, size_t count) {
    for (size_t i = 0; i < count; ++i)
        AddByte(bytes[i]);
}

void Sha256::AddByte(unsigned char byte) {
    block[length++ % blockBytes] = byte;
    if (length % blockBytes == 0)
        Compress();
}

void Sha256::Compress() {
    const Schedule words = Expand(block.data());
    auto [a, b, c, d, e, f, g, h] = state;
    for (size_t i = 0; i < rounds; ++i) {
        const std::uint32_t choice = (e & f) ^ (~e & g);
        const std::uint32_t majority = (a & b) ^ (a & c) ^ (b & c);
        const std::uint32_t first = h + Mix(e, 6, 11, 25) + choice + constants[i] + words[i];
        const std::uint32_t second = Mix(a, 2, 13, 22) + majority;
        h = g;
        g = f;
        f = e;
        e = d + first;
        d = c;
        c = b;
        b = a;
        a = first + second;
    }
    const std::array<std::uint32_t, 8> worked = {a, b, c, d, e, f, g, h};
    for (size_t i = 0; i < state.size(); ++i)
        state[i] += worked[i];
}

void Sha256::Pad() {
    const std::uint64_t bits = length * 8;
    AddByte(0x80);
    while (length % blockBytes != blockBytes - lengthBytes)
        AddByte(0);
    for (size_t i = 0; i < lengthBytes; ++i)
        AddByte(static_cast<unsigned char>(bits >> (8 * (lengthBytes - 1 - i))));
}

std::string Sha256::Finish() {
    Pad();
    std::string digits;
    for (const std::uint32_t word : state)
        for (int shift = 28; shift >= 0; shift -= 4)
            digits += "0123456789abcdef"[word >> shift & 15];
    return digits;
}

std::string SumOf(std::istream& in) {
    Sha256 sum;
    std::vector<char> piece(pieceBytes);
    while (in.read(piece.data(), std::streamsize(piece.size())), in.gcount() > 0)
        sum.Add(reinterpret_cast<const unsigned char*>(piece.data()), size_t(in.gcount()));
    return sum.Finish();
}

} // namespace Doctor
