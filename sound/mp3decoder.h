#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include <sys/types.h>

struct mpg123_handle_struct;

namespace Vell::Sound {

/// How long the music in a file is.
struct Mp3Length {
    std::int64_t frames = 0;
    bool damaged = false; ///< it breaks off, or is not as long as the file promised
};

/// Decodes an open file to 16 bit stereo: MPEG audio of any rate, mono or stereo, with or without
/// tags.
///
/// Gapless: where the encoder noted how much silence it put before and behind the music, exactly
/// that is cut away, so that frame 0 and the length are those of the music.
/// Damage is read over where the music goes on behind it. A track of another kind glued to the
/// first one is left out. Prints nothing. One object belongs to one thread at a time.
class Mp3Decoder {
public:
    /// `file`: the descriptor of a file that can be read anywhere; it stays the caller's, outlives
    /// the decoder, and may be read by others meanwhile. Throws std::bad_alloc.
    explicit Mp3Decoder(int file);
    Mp3Decoder(const Mp3Decoder&) = delete;
    Mp3Decoder& operator=(const Mp3Decoder&) = delete;

    /// Frames per second; 0 when there is no MPEG audio in the file.
    int Rate() const { return rate; }

    /// Looks at every frame's header and decodes none, so that what a file says of its own length
    /// need not be believed. To be called before any other; nothing can be read afterwards.
    Mp3Length Measure();

    /// Goes back to frame 0. There is no way to other places: from there on, libmpg123 would give
    /// samples that are rounded a little differently.
    void Restart();

    /// Decodes the next frames; returns how many, fewer than there is room for only at the end.
    std::int64_t Read(std::span<std::int16_t> samples);

private:
    /// What the decoder reads: a place in the file of its own.
    struct Source {
        int file;
        off_t offset;
    };
    struct Closer {
        void operator()(mpg123_handle_struct* handle) const;
    };

    static ssize_t ReadSource(void* source, void* bytes, std::size_t count);
    static off_t SeekSource(void* source, off_t offset, int origin);

    void Configure();
    int Open();

    Source source;
    std::unique_ptr<mpg123_handle_struct, Closer> handle;
    int rate;
};

} // namespace Vell::Sound
