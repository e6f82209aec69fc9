#pragma once

#include "sound/mp3file.h"
#include "sound/samplewindow.h"
#include "sound/track.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace Vell::Sound {

/// An MP3 that is decoded while it plays, by a thread of this object's own, a second ahead of what
/// was read last. Four seconds of it are in memory, however long it is.
///
/// Reading on from the start, or a little before or behind the last read, finds the frames ready.
/// What lies further ahead is decoded up to there, in a few milliseconds for each second of music;
/// for what lies further back decoding begins again at the start.
class StreamedTrack : public Track {
public:
    /// Decoding begins at once. Throws std::bad_alloc, and std::system_error when no thread can be
    /// had.
    explicit StreamedTrack(std::shared_ptr<const Mp3File> toPlay);
    ~StreamedTrack() override;

private:
    /// What the reader and the decoding thread share.
    struct Shared {
        explicit Shared(std::int64_t size) : window(size) {}

        std::mutex readers; ///< held by the one who reads: others wait for their turn

        std::mutex mutex; ///< guards all below
        SampleWindow window;
        std::int64_t wanted = 0;      ///< first frame of the last read ...
        std::int64_t wantedEnd = 0;   ///< ... and the one behind its last
        bool stop = false;            ///< whether the thread is to end
        std::condition_variable work; ///< tells the thread that one of these three changed
        std::condition_variable done; ///< tells the reader that frames were appended
    };

    void ReadInside(std::int64_t first, std::span<std::int16_t> samples) const override;
    void ReadPiece(std::int64_t first, std::span<std::int16_t> samples) const;
    void Await(std::unique_lock<std::mutex>& lock, std::int64_t first, std::int64_t count) const;
    bool IsBehind() const;
    bool MustRestart() const;

    std::thread Start();
    void Run();
    void DecodeBlock(std::unique_lock<std::mutex>& lock);
    void Fill(std::int64_t first);

    const std::shared_ptr<const Mp3File> file;
    const std::unique_ptr<Shared> shared;

    // Used by the thread alone:
    Mp3Decoder decoder;
    std::vector<std::int16_t> block; ///< what was decoded last

    std::thread thread; // last: it uses all of the above
};

} // namespace Vell::Sound
