#pragma once

#include <complex>
#include <vector>

namespace Music {

/// In-place discrete Fourier transform of a power-of-two length, e^(-i...) forward and without
/// scaling; the inverse divides by the length.
void Forward(std::vector<std::complex<double>>& values);
void Inverse(std::vector<std::complex<double>>& values);

/// Power of each of the size/2 + 1 bins of `size` samples from `samples`, seen through a Hann
/// window and scaled so that a full-scale sine on a bin's centre reads 1.0.
std::vector<double> PowerSpectrum(const float* samples, int size);

} // namespace Music
