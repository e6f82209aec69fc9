#include "sound/spectrum.h"

#include <kiss_fftr.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>
#include <new>
#include <numbers>
#include <numeric>
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
    std::vector<float> weights(length);
    const float half = static_cast<float>(length) / 2.0f;
    for (std::size_t n = 0; n < length; ++n)
        weights[n] = 1.0f - std::abs(static_cast<float>(n) - half) / half;
    return weights;
}

/// w(n) = a - b cos(2 pi n / L) + c cos(4 pi n / L), which sums to a L.
struct CosineSum {
    Window window;
    double a, b, c;
};

constexpr CosineSum cosineSums[] = {
    {Window::Rectangle, 1.0, 0.0, 0.0},
    {Window::Hamming, 0.54, 0.46, 0.0},
    {Window::Hann, 0.5, 0.5, 0.0},
    {Window::Blackman, 0.42, 0.5, 0.08},
};

std::vector<float> Weights(Window window, std::size_t length) {
    const auto* sum = std::find_if(std::begin(cosineSums), std::end(cosineSums),
                                   [=](const CosineSum& entry) { return entry.window == window; });
    if (sum == std::end(cosineSums))
        return Triangle(length);
    std::vector<float> weights(length);
    for (std::size_t n = 0; n < length; ++n) {
        const double turn =
            2.0 * std::numbers::pi * static_cast<double>(n) / static_cast<double>(length);
        weights[n] =
            static_cast<float>(sum->a - sum->b * std::cos(turn) + sum->c * std::cos(2.0 * turn));
    }
    return weights;
}

} // namespace

/// All that depends on the number of values and on the window.
struct Spectrum::Tables {
    Tables(std::size_t count, Window kind)
        : window(kind),
          plan(NewPlan(2 * count)),
          weights(Weights(kind, 2 * count)),
          sum(std::accumulate(weights.begin(), weights.end(), 0.0f)),
          samples(2 * count * static_cast<std::size_t>(sides)),
          block(2 * count),
          bins(count + 1) {}

    void Fill(const Track& track, std::int64_t heard, int side);

    Window window;
    Plan plan;
    std::vector<float> weights;        ///< of each sample
    float sum;                         ///< of the weights
    std::vector<std::int16_t> samples; ///< both sides
    std::vector<float> block;          ///< the weighted samples of one side
    std::vector<kiss_fft_cpx> bins;    ///< one more than there are values: the last is left out
};

/// Takes the frames before `heard`, which lies inside the track; before frame 0 there is silence.
void Spectrum::Tables::Fill(const Track& track, std::int64_t heard, int side) {
    track.Read(heard - std::ssize(block), samples);
    for (std::size_t n = 0; n < block.size(); ++n) {
        const std::int16_t sample = samples[n * sides + static_cast<std::size_t>(side)];
        block[n] = weights[n] * static_cast<float>(sample) / fullScale;
    }
}

Spectrum::Spectrum() = default;
Spectrum::~Spectrum() = default;

bool Spectrum::Offers(int count) {
    return count >= smallest && count <= largest &&
           std::has_single_bit(static_cast<unsigned>(count));
}

void Spectrum::Measure(const Track& track, std::int64_t heard, int side, std::span<float> values,
                       Window window) {
    if (heard <= 0 || heard >= track.Frames()) {
        std::fill(values.begin(), values.end(), 0.0f);
        return;
    }
    Prepare(values.size(), window);
    tables->Fill(track, heard, side);
    kiss_fftr(tables->plan.get(), tables->block.data(), tables->bins.data());

    // A sine's amplitude is shared by a bin and its mirror image, hence twice; the constant part
    // has no mirror image.
    const float constantScale = 1.0f / tables->sum;
    const float sineScale = 2.0f * constantScale;
    for (std::size_t k = 0; k < values.size(); ++k)
        values[k] = sineScale * std::hypot(tables->bins[k].r, tables->bins[k].i);
    values[0] = constantScale * std::abs(tables->bins[0].r);
}

bool Spectrum::OffersWindow(int number) {
    return number >= static_cast<int>(Window::Rectangle) &&
           number <= static_cast<int>(Window::Blackman);
}

void Spectrum::Prepare(std::size_t count, Window window) {
    if (!tables || tables->bins.size() != count + 1 || tables->window != window)
        tables = std::make_unique<Tables>(count, window);
}

} // namespace Vell::Sound
