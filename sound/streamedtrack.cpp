#include "sound/streamedtrack.h"

#include <algorithm>
#include <utility>

namespace Vell::Sound {

namespace {

constexpr std::int64_t secondsHeld = 4;
// The longest spectrum looks back over 16,384 frames, two seconds at the lowest rate there is.
constexpr std::int64_t leastHeld = 65'536;
// What is read at once at the most. What is decoded at once: the first block is soon there.
constexpr std::int64_t mostRead = 16'384;
constexpr std::int64_t blockFrames = 1'152;

} // namespace

StreamedTrack::StreamedTrack(std::shared_ptr<const Mp3File> toPlay)
    : Track(toPlay->Rate(), toPlay->Frames()),
      file(std::move(toPlay)),
      shared(std::make_unique<Shared>(std::max(secondsHeld * Rate(), leastHeld))),
      decoder(file->Descriptor()),
      thread(Start()) {}

StreamedTrack::~StreamedTrack() {
    {
        const std::lock_guard lock(shared->mutex);
        shared->stop = true;
    }
    shared->work.notify_one();
    if (thread.joinable())
        thread.join();
}

void StreamedTrack::ReadInside(std::int64_t first, std::span<std::int16_t> samples) const {
    const std::lock_guard turn(shared->readers);
    while (!samples.empty()) {
        const auto count = std::min<std::int64_t>(std::ssize(samples) / sides, mostRead);
        const auto length = static_cast<std::size_t>(count * sides);
        ReadPiece(first, samples.first(length));
        samples = samples.subspan(length);
        first += count;
    }
}

void StreamedTrack::ReadPiece(std::int64_t first, std::span<std::int16_t> samples) const {
    const std::int64_t count = std::ssize(samples) / sides;
    std::unique_lock lock(shared->mutex);
    shared->wanted = first;
    shared->wantedEnd = first + count;
    if (MustRestart() || IsBehind())
        shared->work.notify_one();
    Await(lock, first, count);
    shared->window.Copy(first, samples);
}

/// Whether the thread is to decode on.
bool StreamedTrack::IsBehind() const {
    return shared->window.End() < std::min(shared->wantedEnd + Rate(), Frames());
}

/// Whether what is wanted is gone.
bool StreamedTrack::MustRestart() const {
    return shared->wanted < shared->window.Begin();
}

/// The thread.
void StreamedTrack::Run() {
    block.resize(static_cast<std::size_t>(blockFrames * sides));
    std::unique_lock lock(shared->mutex);
    while (!shared->stop) {
        if (MustRestart() || IsBehind())
            DecodeBlock(lock);
        else
            shared->work.wait(lock);
    }
}

/// Decodes without the lock, for nobody is to wait longer than a copy takes for what is there.
void StreamedTrack::DecodeBlock(std::unique_lock<std::mutex>& lock) {
    if (MustRestart()) {
        decoder.Restart();
        shared->window.Restart();
    }
    const std::int64_t first = shared->window.End();
    lock.unlock();
    Fill(first);
    lock.lock();
    shared->window.Append(block);
    shared->done.notify_one();
}

/// The block that begins with this frame. What cannot be decoded, such as of a file that has become
/// shorter, is silent.
void StreamedTrack::Fill(std::int64_t first) {
    const std::int64_t count = std::min(blockFrames, Frames() - first);
    block.resize(static_cast<std::size_t>(count * sides));
    const std::int64_t decoded = decoder.Read(block);
    std::fill(block.begin() + decoded * sides, block.end(), std::int16_t{0});
}

} // namespace Vell::Sound
