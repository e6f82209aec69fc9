#pragma once

#include "tools/passes/passes.h"
#include "tools/picture/picture.h"
#include "tools/stage/frames.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace Verify {

using Tools::Picture;

/// Stands for the bytes: other bytes have another fingerprint, but for one chance in 2^64.
std::uint64_t Fingerprint(std::span<const unsigned char> bytes);

/// What is kept of a pass: its fingerprint, and mean colours by which passes can be compared that
/// were drawn on different machines.
struct PassTrace {
    static constexpr int columns = 8;
    static constexpr int rows = 4;

    std::string name; ///< without white space
    int width = 0;    ///< pixels
    int height = 0;
    std::uint64_t fingerprint = 0;
    /// Mean red, green and blue of each field of a grid, from the bottom left to the right.
    std::array<unsigned char, columns* rows* 3> means = {};
};

PassTrace TraceOf(const Passes::Pass& pass);

/// The largest difference between two means of two traces; 255 when they differ in name or size.
int Distance(const PassTrace& a, const PassTrace& b);

/// What is kept of a frame.
struct Reference {
    int frame = 0;
    std::uint64_t fingerprint = 0; ///< of the picture in full
    Picture half;                  ///< each pixel the mean of two by two
    std::vector<PassTrace> passes; ///< in the order they were drawn in
};

Reference ReferenceOf(int frame, const Picture& picture, const std::vector<Passes::Pass>& passes);

/// Reads "frames.png" and "passes.txt" in `folder`; throws std::runtime_error saying what is wrong.
std::vector<Reference> ReadReferences(const std::string& folder);

/// Writes them; the folder is made. Throws std::runtime_error when it cannot.
void WriteReferences(const std::vector<Reference>& references, const std::string& folder);

} // namespace Verify
