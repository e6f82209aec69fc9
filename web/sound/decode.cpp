#include "sound/mp3file.h"
#include "sound/track.h"
#include "web/shell/page.h"

#include <emscripten.h>

#include <array>
#include <exception>

namespace {

constexpr std::size_t framesAtOnce = 16'384;

void Decode(const Vell::Sound::Mp3File& file) {
    Vell::Sound::Mp3Decoder decoder(file.Descriptor());
    std::array<std::int16_t, framesAtOnce * Vell::Sound::sides> samples{};
    while (const std::int64_t frames = decoder.Read(samples))
        page_take_samples(samples.data(), static_cast<int>(frames * Vell::Sound::sides),
                          static_cast<int>(file.Frames()), file.Rate());
}

} // namespace

/// Decodes the whole track and hands it over piece by piece. The page calls it in a worker of its
/// own, beside the one that loads the scene. 0 when nothing in the file can be played.
extern "C" EMSCRIPTEN_KEEPALIVE int web_decode(const char* path) {
    try {
        const auto file = Vell::Sound::Mp3File::Open(path);
        if (!file)
            return 0;
        Decode(*file);
        return 1;
    } catch (const std::exception&) { // no memory
        return 0;
    }
}
