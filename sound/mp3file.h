#pragma once

#include "sound/mp3decoder.h"

#include <memory>
#include <string>

namespace Vell::Sound {

/// An MP3 that stays open, so that it can be played whatever becomes of its name. Nothing of it is
/// decoded or kept in memory. Any number of decoders may read it at a time.
class Mp3File {
public:
    /// Null when there is no such file, it is no regular one, or nothing in it can be played.
    /// Reads the file once. Throws std::bad_alloc.
    static std::shared_ptr<const Mp3File> Open(const std::string& path);

    ~Mp3File();
    Mp3File(const Mp3File&) = delete;
    Mp3File& operator=(const Mp3File&) = delete;

    int Descriptor() const { return descriptor; }
    int Rate() const { return rate; }                     ///< frames per second
    std::int64_t Frames() const { return length.frames; } ///< at least 1
    bool Damaged() const { return length.damaged; }       ///< see Mp3Length

private:
    /// Takes over the descriptor.
    explicit Mp3File(int opened) : descriptor(opened) {}

    void Measure();

    const int descriptor;
    int rate = 0;
    Mp3Length length;
};

} // namespace Vell::Sound
