#include "art/music/wavetable.h"

#include "art/music/audio.h"

#include <kissfft.hh>

#include <algorithm>
#include <array>
#include <complex>

namespace Music {

namespace {

constexpr int tableSize = 2048;
constexpr int mostHarmonics = 600; // enough for the lowest bass note, 34 Hz, up to 20 kHz
constexpr double highestPartial = 20500.0;

struct WaveName {
    const char* name;
    Wave wave;
};
constexpr std::array<WaveName, 7> waveNames{{{"sine", Wave::Sine},
                                             {"saw", Wave::Saw},
                                             {"square", Wave::Square},
                                             {"triangle", Wave::Triangle},
                                             {"hollow", Wave::Hollow},
                                             {"organ", Wave::Organ},
                                             {"reed", Wave::Reed}}};

double OddOnly(int n, double amplitude) {
    return n % 2 == 1 ? amplitude : 0.0;
}

double OrganStop(int n) {
    switch (n) {
    case 1:
        return 0.8;
    case 2:
        return 0.5;
    case 3:
        return 0.3;
    case 4:
        return 0.25;
    case 6:
        return 0.12;
    case 8:
        return 0.1;
    default:
        return 0.0;
    }
}

/// Amplitude of the n-th sine harmonic, n >= 1.
double Harmonic(Wave wave, int n) {
    switch (wave) {
    case Wave::Sine:
        return n == 1 ? 1.0 : 0.0;
    case Wave::Saw:
        return 2.0 / pi / n;
    case Wave::Square:
        return OddOnly(n, 4.0 / pi / n);
    case Wave::Triangle:
        return OddOnly(n, 8.0 / (pi * pi) / (n * n)) * (n % 4 == 3 ? -1 : 1);
    case Wave::Hollow:
        return OddOnly(n, (n == 3 ? 0.15 : 1.0) * 0.9 / std::pow(n, 1.6));
    case Wave::Organ:
        return OrganStop(n);
    case Wave::Reed:
        return 0.55 / n * (1.0 + 2.5 * std::exp(-0.25 * (n - 5) * (n - 5)));
    }
    return 0.0;
}

std::vector<float> Version(Wave wave, int harmonics) {
    std::vector<std::complex<double>> bins(tableSize);
    for (int n = 1; n <= harmonics; ++n) {
        // A sine of amplitude a is a/2i at +n and -a/2i at -n.
        const std::complex<double> half(0.0, -0.5 * Harmonic(wave, n));
        bins[static_cast<std::size_t>(n)] = half;
        bins[static_cast<std::size_t>(tableSize - n)] = std::conj(half);
    }
    std::vector<std::complex<double>> period(tableSize);
    kissfft<double>(tableSize, true).transform(bins.data(), period.data());
    std::vector<float> samples;
    for (int i = -1; i < tableSize + 2; ++i) {
        const auto at = static_cast<std::size_t>((i + tableSize) % tableSize);
        samples.push_back(static_cast<float>(period[at].real()));
    }
    return samples;
}

} // namespace

bool FindWave(const std::string& name, Wave& wave) {
    for (const WaveName& entry : waveNames) {
        if (name == entry.name) {
            wave = entry.wave;
            return true;
        }
    }
    return false;
}

Wave WaveOf(double number) {
    return waveNames.at(static_cast<std::size_t>(std::clamp(number, 0.0, waveNames.size() - 1.0)))
        .wave;
}

WaveTable::WaveTable(Wave wave) {
    // A third of an octave between versions: at worst the top third octave is missing.
    int count = 1;
    while (count < mostHarmonics) {
        harmonics.push_back(count);
        versions.push_back(Music::Version(wave, count));
        count = std::max(count + 1, static_cast<int>(count * 1.26));
    }
}

const WaveTable& WaveTable::Of(Wave wave) {
    static const std::array<WaveTable, 7> tables{WaveTable(Wave::Sine),   WaveTable(Wave::Saw),
                                                 WaveTable(Wave::Square), WaveTable(Wave::Triangle),
                                                 WaveTable(Wave::Hollow), WaveTable(Wave::Organ),
                                                 WaveTable(Wave::Reed)};
    return tables.at(static_cast<std::size_t>(wave));
}

const float* WaveTable::Version(double frequency) const {
    const int most = static_cast<int>(highestPartial / frequency);
    const auto above = std::upper_bound(harmonics.begin(), harmonics.end(), most);
    const auto index = above == harmonics.begin() ? 0 : above - harmonics.begin() - 1;
    return versions[static_cast<std::size_t>(index)].data();
}

float WaveTable::Read(const float* version, double phase) {
    const double position = phase * tableSize;
    const int index = static_cast<int>(position);
    const float t = static_cast<float>(position - index);
    const float* p = version + index; // p[1] is the sample at `index`
    const float a = 0.5F * (p[2] - p[0]);
    const float b = p[0] - 2.5F * p[1] + 2.0F * p[2] - 0.5F * p[3];
    const float c = 0.5F * (p[3] - p[0]) + 1.5F * (p[1] - p[2]);
    return p[1] + t * (a + t * (b + t * c));
}

Oscillator::Oscillator(Wave wave, double startPhase)
    : table(&WaveTable::Of(wave)), phase(startPhase - std::floor(startPhase)) {}

void Oscillator::SetFrequency(double frequency) {
    // The phase may grow by less than one cycle a sample, or it would leave the table.
    const double limited = std::clamp(frequency, 0.1, 0.49 * sampleRate);
    step = limited / sampleRate;
    version = table->Version(limited);
}

float Oscillator::Next() {
    const float value = WaveTable::Read(version, phase);
    phase += step;
    if (phase >= 1.0)
        phase -= 1.0;
    return value;
}

float Oscillator::NextPulse(double width) {
    double shifted = phase + width;
    if (shifted >= 1.0)
        shifted -= 1.0;
    const float inverse = WaveTable::Read(version, shifted);
    return Next() - inverse;
}

} // namespace Music
