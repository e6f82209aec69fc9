#include "tools/movie/soundtrack.h"

#include "demo/assets.h"

#include "sound/streamedtrack.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <stdexcept>
#include <system_error>
#include <vector>

#include <cerrno>
#include <sys/mman.h>
#include <unistd.h>

namespace Movie {

namespace {

void WriteAll(int file, std::span<const std::int16_t> samples) {
    const char* from = reinterpret_cast<const char*>(samples.data());
    std::size_t left = samples.size_bytes();
    while (left > 0) {
        const ssize_t written = write(file, from, left);
        if (written < 0 && errno != EINTR)
            throw std::runtime_error(std::string("no memory for the sound: ") +
                                     std::generic_category().message(errno));
        from += std::max<ssize_t>(written, 0);
        left -= static_cast<std::size_t>(std::max<ssize_t>(written, 0));
    }
}

void SetFrames(int file, std::int64_t frames) {
    if (ftruncate(file, frames * static_cast<off_t>(Vell::Sound::sides * sizeof(std::int16_t))) !=
        0)
        throw std::runtime_error("cannot cut the sound: " + std::generic_category().message(errno));
}

/// The frames from `first` up to `last`, which is not among them.
void WriteMusic(int file, const Vell::Sound::Track& track, std::int64_t first, std::int64_t last) {
    constexpr std::int64_t framesAtOnce = 16'384;
    std::vector<std::int16_t> samples;
    for (; first < last; first += framesAtOnce) {
        const std::int64_t count = std::min(framesAtOnce, last - first);
        samples.resize(static_cast<std::size_t>(count * Vell::Sound::sides));
        track.Read(first, samples);
        WriteAll(file, samples);
    }
}

} // namespace

Soundtrack::Soundtrack(double begin, double end) {
    const auto music = Vell::Sound::Mp3File::Open(Assets::music);
    silent = !music;
    if (music)
        rate = music->Rate();
    file = memfd_create("soundtrack", 0); // inherited by the encoder
    if (file < 0)
        throw std::runtime_error("no memory for the sound: " +
                                 std::generic_category().message(errno));
    const std::int64_t first = std::llround(begin * rate);
    const std::int64_t last = std::llround(end * rate);
    if (music)
        WriteMusic(file, Vell::Sound::StreamedTrack(music), first, last);
    SetFrames(file, last - first); // which are zeros where there is no music
}

Soundtrack::~Soundtrack() {
    close(file);
}

std::string Soundtrack::Path() const {
    return "/dev/fd/" + std::to_string(file);
}

void Soundtrack::CutAfter(double seconds) {
    SetFrames(file, std::llround(seconds * rate));
}

} // namespace Movie
