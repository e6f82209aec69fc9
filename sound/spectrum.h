#pragma once

#include "sound/track.h"

#include <memory>
#include <span>

namespace Vell::Sound {

/// The usual ways to weight a block before its transform, from the narrowest peaks to the least
/// leakage. The numbers are those that the C interface takes.
enum class Window { Rectangle = 0, Triangle = 1, Hamming = 2, Hann = 3, Blackman = 4 };

/// Takes spectra from a track. Keeps its tables between calls, so that only a change in the number
/// of values or of the window takes memory; one object belongs to one thread at a time.
class Spectrum {
public:
    static constexpr int smallest = 2;   ///< values
    static constexpr int largest = 8192; ///< values

    Spectrum();
    ~Spectrum();

    /// Whether a spectrum of `count` values can be taken: powers of two from 2 to 8192, the sizes
    /// that the transform does without memory of its own.
    static bool Offers(int count);

    /// Fills `values` (of a size on offer) with the spectrum of one side of `track` (0 or 1) over
    /// the last 2 * values.size() frames before frame `heard`, weighted with `window`.
    ///
    /// Linear, whatever the window: a sine of amplitude a (1 is full scale) on the centre of bin k
    /// makes value k read a, and a constant a makes value 0 read a. Bin k is centred on k * rate /
    /// (2 * size) Hz. All zero when nothing is heard yet (heard <= 0) or no longer (heard >=
    /// length). Throws std::bad_alloc; the tables of the call before are then still there.
    void Measure(const Track& track, std::int64_t heard, int side, std::span<float> values,
                 Window window = Window::Triangle);

    /// Whether `number` is one of Window's.
    static bool OffersWindow(int number);

private:
    struct Tables;

    void Prepare(std::size_t count, Window window);

    std::unique_ptr<Tables> tables; ///< of the last size and window asked for; null at first
};

} // namespace Vell::Sound
