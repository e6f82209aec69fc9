#include "tools/movie/soundtrack.h"

#include "demo/assets.h"

#include "sound/mp3decoder.h"
#include "sound/track.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <vector>

#include <cerrno>
#include <sys/mman.h>
#include <unistd.h>

namespace Movie {

namespace {

void WriteAll(int file, const std::vector<std::int16_t>& samples) {
    const char* from = reinterpret_cast<const char*>(samples.data());
    std::size_t left = samples.size() * sizeof(std::int16_t);
    while (left > 0) {
        const ssize_t written = write(file, from, left);
        if (written < 0 && errno != EINTR)
            throw std::runtime_error(std::string("no memory for the sound: ") +
                                     std::strerror(errno));
        from += std::max<ssize_t>(written, 0);
        left -= static_cast<std::size_t>(std::max<ssize_t>(written, 0));
    }
}

} // namespace

Soundtrack::Soundtrack(double begin, double end) {
    const auto track = Vell::Sound::DecodeMp3(Assets::music).track;
    silent = !track;
    if (track)
        rate = track->rate;
    const auto first = static_cast<std::size_t>(std::llround(begin * rate)) * Vell::Sound::sides;
    const auto last = static_cast<std::size_t>(std::llround(end * rate)) * Vell::Sound::sides;
    std::vector<std::int16_t> samples(last - first);
    if (track && first < track->samples.size())
        std::copy(track->samples.begin() + static_cast<std::ptrdiff_t>(first),
                  track->samples.begin() +
                      static_cast<std::ptrdiff_t>(std::min(last, track->samples.size())),
                  samples.begin());
    file = memfd_create("soundtrack", 0); // inherited by the encoder
    if (file < 0)
        throw std::runtime_error(std::string("no memory for the sound: ") + std::strerror(errno));
    WriteAll(file, samples);
}

Soundtrack::~Soundtrack() {
    close(file);
}

std::string Soundtrack::Path() const {
    return "/dev/fd/" + std::to_string(file);
}

void Soundtrack::CutAfter(double seconds) {
    const auto frames = static_cast<off_t>(std::llround(seconds * rate));
    if (ftruncate(file, frames * static_cast<off_t>(Vell::Sound::sides * sizeof(std::int16_t))) !=
        0)
        throw std::runtime_error(std::string("cannot cut the sound: ") + std::strerror(errno));
}

} // namespace Movie
