#include "sound/mp3decoder.h"

#include <mpg123.h>

#include <array>

namespace Vell::Sound {

namespace {

struct HandleDeleter {
    void operator()(mpg123_handle* handle) const { mpg123_delete(handle); }
};
using Handle = std::unique_ptr<mpg123_handle, HandleDeleter>;

/// What every decoder is told: to print nothing, to cut the encoder's padding away, to read over
/// ID3v2 tags, and to take no notice of frames that do not fit the first one, which are either
/// damage or another track glued to this one.
constexpr long flags = MPG123_QUIET | MPG123_GAPLESS | MPG123_SKIP_ID3V2 | MPG123_NO_FRANKENSTEIN;

/// A decoder that gives 16 bit stereo at whatever rate the file has.
Handle NewDecoder() {
    if (mpg123_init() != MPG123_OK)
        return nullptr;
    Handle handle(mpg123_new(nullptr, nullptr));
    if (!handle || mpg123_param(handle.get(), MPG123_ADD_FLAGS, flags, 0.0) != MPG123_OK ||
        mpg123_format_none(handle.get()) != MPG123_OK)
        return nullptr;
    const long* rates = nullptr;
    std::size_t count = 0;
    mpg123_rates(&rates, &count);
    for (std::size_t i = 0; i < count; ++i)
        mpg123_format(handle.get(), rates[i], MPG123_STEREO, MPG123_ENC_SIGNED_16);
    return handle;
}

/// Opens the file and returns its rate; 0 when there is no MPEG audio in it.
int OpenFile(mpg123_handle* handle, const std::string& path) {
    long rate = 0;
    int channels = 0;
    int encoding = 0;
    if (mpg123_open(handle, path.c_str()) != MPG123_OK ||
        mpg123_getformat(handle, &rate, &channels, &encoding) != MPG123_OK)
        return 0;
    return static_cast<int>(rate);
}

/// The length that the encoder noted, in frames; 0 when it noted none: without it the length is a
/// guess from the size of the file, against which nothing can be held.
std::int64_t PromisedFrames(mpg123_handle* handle) {
    long delay = -1;
    if (mpg123_getstate(handle, MPG123_ENC_DELAY, &delay, nullptr) != MPG123_OK || delay < 0)
        return 0;
    return mpg123_length(handle);
}

/// Appends everything that can be decoded; returns whether the stream came to its proper end.
bool ReadAll(mpg123_handle* handle, std::vector<std::int16_t>& samples) {
    std::array<std::int16_t, 16384> block{};
    int result = MPG123_OK;
    // The format was fixed, so its announcement before the first block says nothing new.
    while (result == MPG123_OK || result == MPG123_NEW_FORMAT) {
        std::size_t bytes = 0;
        result = mpg123_read(handle, reinterpret_cast<unsigned char*>(block.data()), sizeof(block),
                             &bytes);
        const auto count = static_cast<std::ptrdiff_t>(bytes / sizeof(block[0]));
        samples.insert(samples.end(), block.begin(), block.begin() + count);
    }
    return result == MPG123_DONE;
}

} // namespace

DecodedMp3 DecodeMp3(const std::string& path) {
    const Handle handle = NewDecoder();
    if (!handle)
        return {};
    auto track = std::make_shared<Track>();
    track->rate = OpenFile(handle.get(), path);
    if (track->rate == 0)
        return {};
    const std::int64_t promised = PromisedFrames(handle.get());
    const bool ended = ReadAll(handle.get(), track->samples);
    if (track->Frames() == 0)
        return {};
    track->samples.shrink_to_fit();
    const bool damaged = !ended || (promised > 0 && track->Frames() != promised);
    return {std::move(track), damaged};
}

} // namespace Vell::Sound
