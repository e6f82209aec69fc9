#include "sound/spectrum.h"

#include <kiss_fftr.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <new>
#include <vector>

namespace Vell::Sound {

namespace {

constexpr float fullScale = 32768.0f;

struct PlanDeleter {
    void operator()(kiss_fftr_state* plan) const { kiss_fftr_free(plan); }
};
using Plan = std::unique_ptr<kiss_fftr_state, PlanDeleter>;

Plan NewPlan(std::size_t length) {
    Plan plan(kiss_fftr_alloc(static_cast<int>(length), 0, nullptr, nullptr));
    if (!plan)
        throw std::bad_alloc();
    return plan;
}

/// w(n) = 1 - |n - L/2| / (L/2): periodic in L, so that its sum is exactly L/2 and its transform
/// is zero at every even distance from a bin's centre.
std::vector<float> Triangle(std::size_t length) {
    std::vector<float> window(length);
    const float half = static_cast<float>(length) / 2.0f;
    for (std::size_t n = 0; n < length; ++n)
        window[n] = 1.0f - std::abs(static_cast<float>(n) - half) / half;
    return window;
}

} // namespace

/// All that depends on the number of values.
struct Spectrum::Tables {
    explicit Tables(std::size_t count)
        : plan(NewPlan(2 * count)),
          window(Triangle(2 * count)),
          block(2 * count),
          bins(count + 1) {}

    void Fill(const Track& track, std::int64_t heard, int side);

    Plan plan;
    std::vector<float> window;      ///< weight of each sample
    std::vector<float> block;       ///< the weighted samples
    std::vector<kiss_fft_cpx> bins; ///< one more than there are values: the last is left out
};

/// Takes the frames before `heard`, which lies inside the track; before frame 0 there is silence.
void Spectrum::Tables::Fill(const Track& track, std::int64_t heard, int side) {
    const auto length = static_cast<std::int64_t>(block.size());
    const std::int64_t first = heard - length;
    const std::int64_t silent = std::clamp<std::int64_t>(-first, 0, length);
    std::fill_n(block.begin(), silent, 0.0f);
    for (std::int64_t n = silent; n < length; ++n) {
        const auto sample = track.samples[static_cast<std::size_t>((first + n) * sides + side)];
        const auto index = static_cast<std::size_t>(n);
        block[index] = window[index] * static_cast<float>(sample) / fullScale;
    }
}

Spectrum::Spectrum() = default;
Spectrum::~Spectrum() = default;

bool Spectrum::Offers(int count) {
    return count >= smallest && count <= largest &&
           std::has_single_bit(static_cast<unsigned>(count));
}

void Spectrum::Measure(const Track& track, std::int64_t heard, int side, std::span<float> values) {
    if (heard <= 0 || heard >= track.Frames()) {
        std::fill(values.begin(), values.end(), 0.0f);
        return;
    }
    Prepare(values.size());
    tables->Fill(track, heard, side);
    kiss_fftr(tables->plan.get(), tables->block.data(), tables->bins.data());

    // The window's weights sum to the number of values. A sine's amplitude is shared by a bin and
    // its mirror image, hence twice; the constant part has no mirror image.
    const float constantScale = 1.0f / static_cast<float>(values.size());
    const float sineScale = 2.0f * constantScale;
    for (std::size_t k = 0; k < values.size(); ++k)
        values[k] = sineScale * std::hypot(tables->bins[k].r, tables->bins[k].i);
    values[0] = constantScale * std::abs(tables->bins[0].r);
}

void Spectrum::Prepare(std::size_t count) {
    if (!tables || tables->bins.size() != count + 1)
        tables = std::make_unique<Tables>(count);
}

} // namespace Vell::Sound
