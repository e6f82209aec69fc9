#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What goes into an MP3: 16 bit samples, interleaved when there are two channels.
struct Music {
    int rate = 44100;
    int channels = 2;
    std::vector<std::int16_t> samples;
};

/// Encodes `music` at the highest bit rate there is for its rate. With `infoTag` the file starts
/// with the frame that tells the music's exact place and length. Throws std::runtime_error when
/// the encoder refuses.
std::string EncodeMp3(const Music& music, bool infoTag = true);

/// `mp3` between an ID3v2 tag full of bytes that look like frame headers and an ID3v1 tag.
std::string WithId3Tags(const std::string& mp3);

/// Stereo music of `frames` frames, all silent.
Music Silence(int frames, int rate = 44100, int channels = 2);

/// A sine on every channel: amplitude in samples (32767 is full scale), frequency in Hz, starting
/// at phase 0.
Music Sine(int frames, double frequency, double amplitude, int rate = 44100, int channels = 2);
