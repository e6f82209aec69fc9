#include "art/music/loudness.h"

#include <ebur128.h>

#include <algorithm>
#include <memory>
#include <new>

namespace Music {

namespace {

constexpr unsigned channelCount = 2;

struct MeterDeleter {
    void operator()(ebur128_state* meter) const { ebur128_destroy(&meter); }
};
using Meter = std::unique_ptr<ebur128_state, MeterDeleter>;

void Demand(int result) {
    if (result != EBUR128_SUCCESS) // the modes fit what is asked, so it is memory that lacks
        throw std::bad_alloc();
}

Meter NewMeter() {
    constexpr int modes = EBUR128_MODE_I | EBUR128_MODE_LRA | EBUR128_MODE_TRUE_PEAK;
    Meter meter(ebur128_init(channelCount, sampleRate, modes));
    Demand(meter ? EBUR128_SUCCESS : EBUR128_ERROR_NOMEM);
    return meter;
}

std::vector<float> Interleaved(const Stereo& signal) {
    std::vector<float> samples;
    samples.reserve(channelCount * signal.Frames());
    for (std::size_t i = 0; i < signal.Frames(); ++i) {
        samples.push_back(signal.left[i]);
        samples.push_back(signal.right[i]);
    }
    return samples;
}

} // namespace

Loudness MeasureLoudness(const Stereo& signal) {
    const Meter meter = NewMeter();
    Demand(ebur128_add_frames_float(meter.get(), Interleaved(signal).data(), signal.Frames()));
    Loudness result;
    double integrated = 0.0; // minus infinity where nothing is above the gate
    Demand(ebur128_loudness_global(meter.get(), &integrated));
    result.integrated = std::max(result.integrated, integrated);
    Demand(ebur128_loudness_range(meter.get(), &result.range));
    for (unsigned side = 0; side < channelCount; ++side) {
        double peak = 0.0;
        Demand(ebur128_true_peak(meter.get(), side, &peak));
        result.truePeak = std::max<double>(result.truePeak, ToDb(static_cast<float>(peak)));
    }
    return result;
}

} // namespace Music
