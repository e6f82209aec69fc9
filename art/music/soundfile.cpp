#include "art/music/soundfile.h"

#include <lame/lame.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>

namespace Music {

namespace {

constexpr std::size_t headerBytes = 44;
constexpr int channelCount = 2;
constexpr int bytesPerSample = 3;

using Bytes = std::vector<unsigned char>;

void Put(Bytes& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

void PutText(Bytes& bytes, const char* text) {
    bytes.insert(bytes.end(), text, text + 4);
}

std::uint32_t Get(const Bytes& bytes, std::size_t at, int count) {
    std::uint32_t value = 0;
    for (int i = 0; i < count; ++i)
        value |= static_cast<std::uint32_t>(bytes[at + static_cast<std::size_t>(i)]) << (8 * i);
    return value;
}

void PutSample(Bytes& bytes, float value) {
    const double limited = std::clamp<double>(value, -1.0, 1.0);
    const auto whole = static_cast<std::int32_t>(std::lround(limited * 8388607.0));
    Put(bytes, static_cast<std::uint32_t>(whole), bytesPerSample);
}

float SampleAt(const Bytes& bytes, std::size_t at, int size) {
    const std::uint32_t raw = Get(bytes, at, size) << (32 - 8 * size);
    return static_cast<float>(static_cast<std::int32_t>(raw)) / 2147483648.0F;
}

bool WriteBytes(const std::string& path, const Bytes& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return file.good();
}

struct LameDeleter {
    void operator()(lame_global_flags* flags) const { lame_close(flags); }
};
using Encoder = std::unique_ptr<lame_global_flags, LameDeleter>;

Encoder MakeEncoder(std::size_t frames, int kilobits) {
    Encoder encoder(lame_init());
    lame_global_flags* flags = encoder.get();
    lame_set_num_samples(flags, static_cast<unsigned long>(frames));
    lame_set_in_samplerate(flags, sampleRate);
    lame_set_out_samplerate(flags, sampleRate);
    lame_set_num_channels(flags, channelCount);
    lame_set_mode(flags, JOINT_STEREO);
    lame_set_brate(flags, kilobits);
    lame_set_VBR(flags, vbr_off);
    lame_set_quality(flags, 2);
    lame_set_highpassfreq(flags, -1);
    lame_set_bWriteVbrTag(flags, 1);
    return lame_init_params(flags) < 0 ? Encoder() : std::move(encoder);
}

/// Appends the encoder's output for the whole signal; false when LAME reports an error.
bool Encode(lame_global_flags* flags, const Stereo& signal, Bytes& bytes) {
    constexpr std::size_t blockFrames = 1152 * 64;
    Bytes buffer(blockFrames * 5 / 4 + 7200);
    for (std::size_t at = 0; at < signal.Frames(); at += blockFrames) {
        const std::size_t count = std::min(blockFrames, signal.Frames() - at);
        const int written = lame_encode_buffer_ieee_float(
            flags, signal.left.data() + at, signal.right.data() + at, static_cast<int>(count),
            buffer.data(), static_cast<int>(buffer.size()));
        if (written < 0)
            return false;
        bytes.insert(bytes.end(), buffer.begin(), buffer.begin() + written);
    }
    const int rest = lame_encode_flush(flags, buffer.data(), static_cast<int>(buffer.size()));
    if (rest < 0)
        return false;
    bytes.insert(bytes.end(), buffer.begin(), buffer.begin() + rest);
    return true;
}

} // namespace

bool WriteWav(const std::string& path, const Stereo& signal) {
    constexpr int frameBytes = channelCount * bytesPerSample;
    const auto size = static_cast<std::uint32_t>(signal.Frames() * frameBytes);
    Bytes bytes;
    bytes.reserve(size + headerBytes);
    PutText(bytes, "RIFF");
    Put(bytes, size + headerBytes - 8, 4);
    PutText(bytes, "WAVE");
    PutText(bytes, "fmt ");
    Put(bytes, 16, 4);
    Put(bytes, 1, 2); // plain PCM
    Put(bytes, channelCount, 2);
    Put(bytes, sampleRate, 4);
    Put(bytes, sampleRate * frameBytes, 4);
    Put(bytes, frameBytes, 2);
    Put(bytes, 8 * bytesPerSample, 2);
    PutText(bytes, "data");
    Put(bytes, size, 4);
    for (std::size_t i = 0; i < signal.Frames(); ++i) {
        PutSample(bytes, signal.left[i]);
        PutSample(bytes, signal.right[i]);
    }
    return WriteBytes(path, bytes);
}

bool ReadWav(const std::string& path, Stereo& signal) {
    signal = Stereo();
    std::ifstream file(path, std::ios::binary);
    const Bytes bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (bytes.size() < headerBytes || std::memcmp(bytes.data(), "RIFF", 4) != 0 ||
        Get(bytes, 22, 2) != channelCount || Get(bytes, 24, 4) != sampleRate)
        return false;
    const int size = static_cast<int>(Get(bytes, 34, 2) / 8);
    std::size_t at = 12;
    while (at + 8 <= bytes.size() && std::memcmp(bytes.data() + at, "data", 4) != 0)
        at += 8 + Get(bytes, at + 4, 4);
    if (at + 8 > bytes.size() || (size != 2 && size != 3))
        return false;
    const std::size_t step = channelCount * static_cast<std::size_t>(size);
    const std::size_t length = std::min<std::size_t>(Get(bytes, at + 4, 4), bytes.size() - at - 8);
    for (std::size_t sample = at + 8; sample + step <= at + 8 + length; sample += step) {
        signal.left.push_back(SampleAt(bytes, sample, size));
        signal.right.push_back(SampleAt(bytes, sample + static_cast<std::size_t>(size), size));
    }
    return true;
}

bool WriteMp3(const std::string& path, const Stereo& signal, int kilobits) {
    const Encoder encoder = MakeEncoder(signal.Frames(), kilobits);
    Bytes bytes;
    if (!encoder || !Encode(encoder.get(), signal, bytes))
        return false;
    // LAME left room for the tag in the first frame; it is known only now.
    const std::size_t tag = lame_get_lametag_frame(encoder.get(), nullptr, 0);
    if (tag == 0 || tag > bytes.size())
        return false;
    lame_get_lametag_frame(encoder.get(), bytes.data(), tag);
    return WriteBytes(path, bytes);
}

} // namespace Music
