#include "tools/doctor/sha256.h"

#include <openssl/evp.h>

#include <array>
#include <istream>
#include <memory>
#include <stdexcept>
#include <vector>

namespace Doctor {

namespace {

constexpr std::size_t pieceBytes = static_cast<std::size_t>(1) << 16; // of a file, read at once

struct ContextDeleter {
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

void Demand(bool good) {
    if (!good)
        throw std::runtime_error("libcrypto cannot take the sum SHA-256");
}

std::string Hexadecimal(const unsigned char* bytes, std::size_t count) {
    std::string digits;
    for (std::size_t i = 0; i < count; ++i) {
        digits += "0123456789abcdef"[bytes[i] >> 4];
        digits += "0123456789abcdef"[bytes[i] & 15];
    }
    return digits;
}

} // namespace

std::string SumOf(std::istream& in) {
    const std::unique_ptr<EVP_MD_CTX, ContextDeleter> context(EVP_MD_CTX_new());
    Demand(context && EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) == 1);
    std::vector<char> piece(pieceBytes);
    while (in.read(piece.data(), static_cast<std::streamsize>(piece.size())), in.gcount() > 0)
        Demand(EVP_DigestUpdate(context.get(), piece.data(),
                                static_cast<std::size_t>(in.gcount())) == 1);
    std::array<unsigned char, EVP_MAX_MD_SIZE> sum{};
    unsigned length = 0;
    Demand(EVP_DigestFinal_ex(context.get(), sum.data(), &length) == 1);
    return Hexadecimal(sum.data(), length);
}

} // namespace Doctor
