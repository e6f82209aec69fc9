#include "sound/mp3decoder.h"

#include "sound/track.h"

#include <mpg123.h>

#include <cerrno>
#include <new>
#include <unistd.h>

namespace Vell::Sound {

namespace {

/// What every decoder is told: to print nothing, to cut the encoder's padding away, to read over
/// ID3v2 tags, and to take no notice of frames that do not fit the first one, which are either
/// damage or another track glued to this one.
constexpr long flags = MPG123_QUIET | MPG123_GAPLESS | MPG123_SKIP_ID3V2 | MPG123_NO_FRANKENSTEIN;

/// The length that the encoder noted, in frames; 0 when it noted none: without it the length is a
/// guess from the size of the file, against which nothing can be held.
std::int64_t PromisedFrames(mpg123_handle* handle) {
    long delay = -1;
    if (mpg123_getstate(handle, MPG123_ENC_DELAY, &delay, nullptr) != MPG123_OK || delay < 0)
        return 0;
    return mpg123_length(handle);
}

/// Whether a call went well. The format was fixed, so its announcement says nothing new.
bool GoesOn(int result) {
    return result == MPG123_OK || result == MPG123_NEW_FORMAT;
}

} // namespace

void Mp3Decoder::Closer::operator()(mpg123_handle_struct* decoder) const {
    mpg123_delete(decoder);
}

Mp3Decoder::Mp3Decoder(int file)
    : source{file, 0},
      handle(mpg123_init() == MPG123_OK ? mpg123_new(nullptr, nullptr) : nullptr),
      rate(0) {
    if (!handle)
        throw std::bad_alloc();
    Configure();
    rate = Open();
}

/// 16 bit stereo at whatever rate the file has.
void Mp3Decoder::Configure() {
    mpg123_param(handle.get(), MPG123_ADD_FLAGS, flags, 0.0);
    mpg123_format_none(handle.get());
    const long* rates = nullptr;
    std::size_t count = 0;
    mpg123_rates(&rates, &count);
    for (std::size_t i = 0; i < count; ++i)
        mpg123_format(handle.get(), rates[i], MPG123_STEREO, MPG123_ENC_SIGNED_16);
}

/// Returns the file's rate; 0 when there is no MPEG audio in it.
int Mp3Decoder::Open() {
    long framesPerSecond = 0;
    int channels = 0;
    int encoding = 0;
    if (mpg123_replace_reader_handle(handle.get(), ReadSource, SeekSource, nullptr) != MPG123_OK ||
        mpg123_open_handle(handle.get(), &source) != MPG123_OK ||
        mpg123_getformat(handle.get(), &framesPerSecond, &channels, &encoding) != MPG123_OK)
        return 0;
    return static_cast<int>(framesPerSecond);
}

ssize_t Mp3Decoder::ReadSource(void* place, void* bytes, std::size_t count) {
    auto& [file, offset] = *static_cast<Source*>(place);
    ssize_t taken = -1;
    do
        taken = pread(file, bytes, count, offset);
    while (taken < 0 && errno == EINTR);
    offset += taken > 0 ? taken : 0;
    return taken;
}

off_t Mp3Decoder::SeekSource(void* place, off_t offset, int origin) {
    auto& from = *static_cast<Source*>(place);
    if (origin == SEEK_END) // moves the descriptor's own place, which nobody uses
        offset = lseek(from.file, offset, SEEK_END);
    else if (origin == SEEK_CUR)
        offset += from.offset;
    if (offset >= 0)
        from.offset = offset;
    return offset;
}

Mp3Length Mp3Decoder::Measure() {
    const std::int64_t promised = PromisedFrames(handle.get());
    int result = MPG123_OK;
    while (GoesOn(result))
        result = mpg123_framebyframe_next(handle.get());
    // Where the music stands behind the last frame, the padding cut away, is how long it is.
    const std::int64_t frames = mpg123_tell(handle.get());
    return {frames, result != MPG123_DONE || (promised > 0 && frames != promised)};
}

void Mp3Decoder::Restart() {
    source.offset = 0;
    Open();
}

std::int64_t Mp3Decoder::Read(std::span<std::int16_t> samples) {
    std::size_t filled = 0; // bytes
    int result = MPG123_OK;
    while (GoesOn(result) && filled < samples.size_bytes()) {
        std::size_t bytes = 0;
        result =
            mpg123_read(handle.get(), reinterpret_cast<unsigned char*>(samples.data()) + filled,
                        samples.size_bytes() - filled, &bytes);
        filled += bytes;
    }
    return static_cast<std::int64_t>(filled / (sides * sizeof(std::int16_t)));
}

} // namespace Vell::Sound
