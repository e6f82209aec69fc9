#pragma once

#include <vector>

namespace Music {

/// Power of each of the size/2 + 1 bins of `size` samples from `samples`, seen through a Hann
/// window and scaled so that a full-scale sine on a bin's centre reads 1.0. `size` is 2 or more.
std::vector<double> PowerSpectrum(const float* samples, int size);

} // namespace Music
