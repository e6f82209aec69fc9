#pragma once

#include "tools/stage/frames.h"

#include <string>

#include <semaphore.h>

namespace Stage {

/// A few frames in memory that two processes share: one draws into it, the other takes them out in
/// the same order. Made before the process forks; each side then uses its own half.
///
/// The pixels are read back straight into it and handed to the encoder straight out of it.
class FrameRing {
public:
    FrameRing();
    ~FrameRing();
    FrameRing(const FrameRing&) = delete;
    FrameRing& operator=(const FrameRing&) = delete;

    // The drawing side.

    /// The next place to draw into; waits until it is free.
    std::span<unsigned char> BeginWrite();
    void EndWrite();
    FrameCost& Cost();

    /// Says why there will be no more frames.
    void Fail(const std::string& reason);

    // The taking side.

    enum class Wait { Ready, Nothing, Failed };

    /// Waits for the next frame, a tenth of a second at most.
    Wait WaitForFrame();
    FramePixels Frame() const;
    void Release();
    const FrameCost& Cost() const;
    std::string Failure() const;

private:
    static constexpr int places = 8;
    static constexpr std::size_t reasonSize = 1024;

    struct Shared {
        sem_t free;
        sem_t ready;
        FrameCost cost;
        bool failed;
        char reason[reasonSize];
    };

    unsigned char* Place(int number) const;

    Shared* shared;
    int writing = 0; // frames begun and ended so far, on either side
    int reading = 0;
};

} // namespace Stage
