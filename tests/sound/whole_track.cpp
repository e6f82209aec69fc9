#include "tests/sound/whole_track.h"

#include "sound/streamedtrack.h"

#include <mpg123.h>

#include <algorithm>
#include <array>

namespace {

using Handle = std::unique_ptr<mpg123_handle, void (*)(mpg123_handle*)>;

Handle NewDecoder() {
    mpg123_init();
    Handle handle(mpg123_new(nullptr, nullptr), mpg123_delete);
    mpg123_param(handle.get(), MPG123_ADD_FLAGS,
                 MPG123_QUIET | MPG123_GAPLESS | MPG123_SKIP_ID3V2 | MPG123_NO_FRANKENSTEIN, 0.0);
    mpg123_format_none(handle.get());
    const long* rates = nullptr;
    std::size_t count = 0;
    mpg123_rates(&rates, &count);
    for (std::size_t i = 0; i < count; ++i)
        mpg123_format(handle.get(), rates[i], MPG123_STEREO, MPG123_ENC_SIGNED_16);
    return handle;
}

/// Returns whether the stream came to its proper end.
bool ReadAll(mpg123_handle* handle, std::vector<std::int16_t>& samples) {
    std::array<std::int16_t, 16384> block{};
    int result = MPG123_OK;
    while (result == MPG123_OK || result == MPG123_NEW_FORMAT) {
        std::size_t bytes = 0;
        result = mpg123_read(handle, reinterpret_cast<unsigned char*>(block.data()), sizeof(block),
                             &bytes);
        samples.insert(samples.end(), block.begin(),
                       block.begin() + static_cast<std::ptrdiff_t>(bytes / sizeof(block[0])));
    }
    return result == MPG123_DONE;
}

/// The length that the encoder noted; 0 when it noted none.
std::int64_t PromisedFrames(mpg123_handle* handle) {
    long delay = -1;
    if (mpg123_getstate(handle, MPG123_ENC_DELAY, &delay, nullptr) != MPG123_OK || delay < 0)
        return 0;
    return mpg123_length(handle);
}

} // namespace

void WholeTrack::ReadInside(std::int64_t first, std::span<std::int16_t> part) const {
    std::copy_n(samples.begin() + first * Vell::Sound::sides, part.size(), part.begin());
}

DecodedMp3 DecodeMp3(const std::string& path) {
    const auto file = Vell::Sound::Mp3File::Open(path);
    if (!file)
        return {};
    std::vector<std::int16_t> samples(
        static_cast<std::size_t>(file->Frames() * Vell::Sound::sides));
    Vell::Sound::StreamedTrack(file).Read(0, samples);
    return {std::make_shared<const WholeTrack>(file->Rate(), std::move(samples)), file->Damaged()};
}

DecodedMp3 DecodeInOneGo(const std::string& path) {
    const Handle handle = NewDecoder();
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    if (mpg123_open(handle.get(), path.c_str()) != MPG123_OK ||
        mpg123_getformat(handle.get(), &rate, &channels, &encoding) != MPG123_OK)
        return {};
    const std::int64_t promised = PromisedFrames(handle.get());
    std::vector<std::int16_t> samples;
    const bool ended = ReadAll(handle.get(), samples);
    if (samples.empty())
        return {};
    auto track = std::make_shared<const WholeTrack>(static_cast<int>(rate), std::move(samples));
    const bool damaged = !ended || (promised > 0 && track->Frames() != promised);
    return {std::move(track), damaged};
}
