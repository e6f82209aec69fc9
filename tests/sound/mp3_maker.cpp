#include "tests/sound/mp3_maker.h"

#include <lame/lame.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <stdexcept>

namespace {

struct Closer {
    void operator()(lame_global_flags* encoder) const { lame_close(encoder); }
};
using Encoder = std::unique_ptr<lame_global_flags, Closer>;

Encoder NewEncoder(const Music& music, bool infoTag) {
    Encoder encoder(lame_init());
    lame_set_in_samplerate(encoder.get(), music.rate);
    lame_set_out_samplerate(encoder.get(), music.rate);
    lame_set_num_channels(encoder.get(), music.channels);
    lame_set_mode(encoder.get(), music.channels == 1 ? MONO : STEREO);
    lame_set_brate(encoder.get(), music.rate < 32000 ? 160 : 320);
    lame_set_lowpassfreq(encoder.get(), -1);
    lame_set_highpassfreq(encoder.get(), -1);
    lame_set_bWriteVbrTag(encoder.get(), infoTag ? 1 : 0);
    if (lame_init_params(encoder.get()) < 0)
        throw std::runtime_error("the MP3 encoder refuses its settings");
    return encoder;
}

/// Appends what `count` says was written to `buffer`.
void Append(std::string& mp3, const std::vector<unsigned char>& buffer, int count) {
    if (count < 0)
        throw std::runtime_error("the MP3 encoder failed: " + std::to_string(count));
    mp3.append(buffer.begin(), buffer.begin() + count);
}

} // namespace

std::string EncodeMp3(const Music& music, bool infoTag) {
    const Encoder encoder = NewEncoder(music, infoTag);
    const int frames = static_cast<int>(music.samples.size()) / music.channels;
    std::vector<unsigned char> buffer(static_cast<std::size_t>(frames) * 2 + 65536);
    const int size = static_cast<int>(buffer.size());
    std::vector<std::int16_t> samples = music.samples; // the encoder's interface lacks the const
    std::string mp3;
    Append(mp3, buffer,
           music.channels == 1 ? lame_encode_buffer(encoder.get(), samples.data(), samples.data(),
                                                    frames, buffer.data(), size)
                               : lame_encode_buffer_interleaved(encoder.get(), samples.data(),
                                                                frames, buffer.data(), size));
    Append(mp3, buffer, lame_encode_flush(encoder.get(), buffer.data(), size));
    if (infoTag) {
        // The encoder left an empty frame at the start for it.
        const std::size_t length =
            lame_get_lametag_frame(encoder.get(), buffer.data(), buffer.size());
        mp3.replace(0, length,
                    std::string(buffer.begin(), buffer.begin() + static_cast<long>(length)));
    }
    return mp3;
}

std::string WithId3Tags(const std::string& mp3) {
    std::string content;
    while (content.size() < 1000)
        content += "\xFF\xFB\xE0\x64";
    // The size is written seven bits to the byte: 1000 = 7 * 128 + 104.
    const std::string header = std::string("ID3\x04\0\0\0\0", 8) + '\x07' + '\x68';
    return header + content + mp3 + "TAG" + std::string(125, 'x');
}

Music Silence(int frames, int rate, int channels) {
    return {rate, channels, std::vector<std::int16_t>(static_cast<std::size_t>(frames * channels))};
}

Music Sine(int frames, double frequency, double amplitude, int rate, int channels) {
    Music music = Silence(frames, rate, channels);
    const auto step = static_cast<std::size_t>(channels);
    for (std::size_t i = 0; i < music.samples.size(); ++i) {
        const std::size_t frame = i / step;
        const double phase = 2.0 * std::numbers::pi * frequency * static_cast<double>(frame) / rate;
        music.samples[i] = static_cast<std::int16_t>(std::lround(amplitude * std::sin(phase)));
    }
    return music;
}
