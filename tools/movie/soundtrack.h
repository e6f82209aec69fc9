#pragma once

#include <cstdint>
#include <string>

namespace Movie {

/// A stretch of the demo's music as the sound library plays it, in a file in memory: 16 bit stereo,
/// left and right in turn, no header.
class Soundtrack {
public:
    /// From `begin` to `end` seconds of demo time; behind the music's end there is silence. Without
    /// a readable track under Data/ all of it is silence, at 44,100 frames a second.
    Soundtrack(double begin, double end);
    ~Soundtrack();
    Soundtrack(const Soundtrack&) = delete;
    Soundtrack& operator=(const Soundtrack&) = delete;

    int Rate() const { return rate; } ///< frames per second
    bool Silent() const { return silent; }

    /// A path that this process and those it starts can open, as long as the object lives.
    std::string Path() const;

    /// Ends it after `seconds`, for whoever has not read that far.
    void CutAfter(double seconds);

private:
    int rate = 44100;
    bool silent = false;
    int file = -1;
};

} // namespace Movie
