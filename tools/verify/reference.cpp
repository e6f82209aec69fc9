#include "tools/verify/reference.h"

#include "tools/picture/tiles.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace Verify {

namespace {

constexpr const char* picturesName = "/frames.png"; // all pictures under each other
constexpr const char* passesName = "/passes.txt";
constexpr std::size_t rgba = 4;

/// Mean of one colour over the fields [x0, x1) x [y0, y1).
unsigned char Mean(const Passes::Pass& pass, std::size_t colour, int x0, int x1, int y0, int y1) {
    std::uint64_t sum = 0;
    for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x)
            sum += pass.pixels[(static_cast<std::size_t>(y) * static_cast<std::size_t>(pass.width) +
                                static_cast<std::size_t>(x)) *
                                   rgba +
                               colour];
    const auto count = std::max<std::uint64_t>(
        static_cast<std::uint64_t>(x1 - x0) * static_cast<std::uint64_t>(y1 - y0), 1);
    return static_cast<unsigned char>((sum + count / 2) / count);
}

std::string Hex(std::span<const unsigned char> bytes) {
    std::string text;
    for (unsigned char byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", byte);
        text += digits;
    }
    return text;
}

std::string Hex(std::uint64_t number) {
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(number));
    return digits;
}

/// False when the text is not that of so many bytes.
bool FromHex(const std::string& text, std::span<unsigned char> bytes) {
    if (text.size() != bytes.size() * 2)
        return false;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        char* end = nullptr;
        const std::string digits = text.substr(i * 2, 2);
        bytes[i] = static_cast<unsigned char>(std::strtoul(digits.c_str(), &end, 16));
        if (*end != '\0')
            return false;
    }
    return true;
}

/// "frame 59 0123456789abcdef"
bool ReadFrame(std::istringstream& words, std::vector<Reference>& references) {
    Reference reference;
    words >> reference.frame >> std::hex >> reference.fingerprint;
    references.push_back(reference);
    return !words.fail();
}

/// "pass scene 960 89 0123456789abcdef 0a0b0c..."
bool ReadPass(std::istringstream& words, std::vector<Reference>& references) {
    PassTrace trace;
    std::string means;
    words >> trace.name >> trace.width >> trace.height >> std::hex >> trace.fingerprint >> means;
    if (words.fail() || references.empty() || !FromHex(means, trace.means))
        return false;
    references.back().passes.push_back(trace);
    return true;
}

std::vector<Reference> ReadPasses(const std::string& path) {
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    std::vector<Reference> references;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        std::istringstream words(line);
        std::string kind;
        words >> kind;
        const bool good = kind == "frame"  ? ReadFrame(words, references)
                          : kind == "pass" ? ReadPass(words, references)
                                           : false;
        if (!good)
            throw std::runtime_error(path + ", line " + std::to_string(number) +
                                     ": not understood: " + line.substr(0, 60));
    }
    return references;
}

void WritePasses(const std::vector<Reference>& references, const std::string& path) {
    std::ofstream file(path);
    for (const Reference& reference : references) {
        file << "frame " << reference.frame << ' ' << Hex(reference.fingerprint) << '\n';
        for (const PassTrace& pass : reference.passes)
            file << "pass " << pass.name << ' ' << pass.width << ' ' << pass.height << ' '
                 << Hex(pass.fingerprint) << ' ' << Hex(pass.means) << '\n';
    }
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
}

} // namespace

std::uint64_t Fingerprint(std::span<const unsigned char> bytes) {
    std::uint64_t hash = 0xcbf29ce484222325; // FNV-1a
    for (unsigned char byte : bytes)
        hash = (hash ^ byte) * 0x100000001b3;
    return hash;
}

PassTrace TraceOf(const Passes::Pass& pass) {
    PassTrace trace{pass.name, pass.width, pass.height, Fingerprint(pass.pixels), {}};
    std::replace(trace.name.begin(), trace.name.end(), ' ', '-');
    std::size_t next = 0;
    for (int row = 0; row < PassTrace::rows; ++row)
        for (int column = 0; column < PassTrace::columns; ++column)
            for (std::size_t colour = 0; colour < 3; ++colour)
                trace.means[next++] = Mean(pass, colour, pass.width * column / PassTrace::columns,
                                           pass.width * (column + 1) / PassTrace::columns,
                                           pass.height * row / PassTrace::rows,
                                           pass.height * (row + 1) / PassTrace::rows);
    return trace;
}

int Distance(const PassTrace& a, const PassTrace& b) {
    constexpr int apart = 255;
    if (a.name != b.name || a.width != b.width || a.height != b.height)
        return apart;
    int largest = 0;
    for (std::size_t i = 0; i < a.means.size(); ++i)
        largest = std::max(largest,
                           std::abs(static_cast<int>(a.means[i]) - static_cast<int>(b.means[i])));
    return largest;
}

Reference ReferenceOf(int frame, const Picture& picture, const std::vector<Passes::Pass>& passes) {
    Reference reference{frame, Fingerprint(picture.bytes), Tools::Halved(picture), {}};
    for (const Passes::Pass& pass : passes)
        reference.passes.push_back(TraceOf(pass));
    return reference;
}

std::vector<Reference> ReadReferences(const std::string& folder) {
    std::vector<Reference> references = ReadPasses(folder + passesName);
    const Picture all = Tools::ReadPng(folder + picturesName);
    if (references.empty() || all.height % static_cast<int>(references.size()) != 0)
        throw std::runtime_error(folder +
                                 ": the pictures and the passes are not of the same frames");
    const int height = all.height / static_cast<int>(references.size());
    for (std::size_t i = 0; i < references.size(); ++i) {
        references[i].half = Picture(all.width, height);
        std::copy_n(all.At(0, static_cast<int>(i) * height), references[i].half.bytes.size(),
                    references[i].half.bytes.begin());
    }
    return references;
}

void WriteReferences(const std::vector<Reference>& references, const std::string& folder) {
    std::filesystem::create_directories(folder);
    const Picture& first = references.front().half;
    Picture all(first.width, first.height * static_cast<int>(references.size()));
    for (std::size_t i = 0; i < references.size(); ++i)
        std::copy(references[i].half.bytes.begin(), references[i].half.bytes.end(),
                  all.At(0, static_cast<int>(i) * first.height));
    WritePng(all, folder + picturesName);
    WritePasses(references, folder + passesName);
}

} // namespace Verify
