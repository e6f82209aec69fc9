#include "art/music/master.h"

#include "art/music/dynamics.h"
#include "art/music/filter.h"

#include <algorithm>

namespace Music {

namespace {

/// Takes the difference of the sides away below `frequency`: the bass is the same on both.
void CentreBass(Stereo& signal, double frequency) {
    std::vector<float> side(signal.Frames());
    for (std::size_t i = 0; i < side.size(); ++i)
        side[i] = 0.5F * (signal.left[i] - signal.right[i]);
    std::vector<float> high = side;
    Biquad::HighPass(frequency, 0.5).ApplyZeroPhase(high);
    for (std::size_t i = 0; i < side.size(); ++i) {
        signal.left[i] += high[i] - side[i];
        signal.right[i] -= high[i] - side[i];
    }
}

void ToneShape(Stereo& signal, const Settings& set) {
    const Biquad bands[] = {
        Biquad::HighPass(set["low_cut"], 0.7), Biquad::LowShelf(110.0, set["low_shelf"]),
        Biquad::Peak(330.0, 0.8, set["mud"]), Biquad::Peak(3200.0, 0.7, set["presence"]),
        Biquad::HighShelf(8000.0, set["air"])};
    for (const Biquad& band : bands) {
        band.Apply(signal.left);
        band.Apply(signal.right);
    }
}

/// Silence from `end` seconds on, reached smoothly from `begin` on.
void FadeOut(Stereo& signal, double begin, double end) {
    for (std::size_t i = FrameAt(begin); i < signal.Frames(); ++i) {
        const double part = (static_cast<double>(i) / sampleRate - begin) / (end - begin);
        const auto gain = static_cast<float>(0.5 + 0.5 * std::cos(pi * std::min(part, 1.0)));
        signal.left[i] *= part >= 1.0 ? 0.0F : gain;
        signal.right[i] *= part >= 1.0 ? 0.0F : gain;
    }
}

} // namespace

const std::vector<SettingDefault>& MasterDefaults() {
    static const std::vector<SettingDefault> table{
        {"loudness", -14},
        {"ceiling", -1.3}, // LUFS, dBTP
        {"low_cut", 28},
        {"low_shelf", 0}, // Hz, dB
        {"mud", 0},
        {"presence", 0}, // dB at 330 Hz and 3.2 kHz
        {"air", 0},
        {"bass_centre", 140}, // dB from 8 kHz; Hz
        {"glue_threshold", -14},
        {"glue_ratio", 2}, // bus compressor: dBFS
        {"delay_beats", 0.75},
        {"delay_feedback", 0.42},
        {"reverb_time", 2.6},
        {"reverb_damping", 5000}, // seconds, Hz
        {"room_duck", 0.5},       // part of the side-chain on hall and echoes
        {"pulse_first", 0},
        {"pulse_last", 0},
        {"pulse_scene", 0}, // bars; 0 none
        {"fade_from", 0},
        {"fade_to", 0}}; // seconds; 0 none
    return table;
}

Stereo Master(const Score& score, const BeatPulse& pulse, Mix mix, MasterReport& report) {
    std::string unused; // the settings were read without fault for the mix
    const Settings set(MasterDefaults(), score.masterSettings, unused);
    CentreBass(mix.body, set["bass_centre"]);
    // Everything that rings on comes before the gaps; behind them only gains may follow.
    ToneShape(mix.body, set);
    ToneShape(mix.kick, set);
    pulse.OpenGaps(mix.body);
    pulse.OpenSceneGaps(mix.kick);
    Stereo sum = std::move(mix.body);
    sum.Add(mix.kick, 1.0F);
    const Compressor glue{.threshold = static_cast<float>(set["glue_threshold"]),
                          .ratio = static_cast<float>(set["glue_ratio"]),
                          .attack = 0.02,
                          .release = 0.2,
                          .knee = 8.0F};
    ApplyGainDb(sum, glue.GainDb(sum), 1.0F);
    if (set["fade_to"] > 0)
        FadeOut(sum, set["fade_from"], set["fade_to"]);
    // The limiter takes some of the loudness it is given, so the gain is found in a few rounds.
    report.gainDb = static_cast<float>(set["loudness"] - MeasureLoudness(sum).integrated);
    Stereo result;
    constexpr int rounds = 3;
    for (int round = 0; round < rounds; ++round) {
        result = sum;
        result.Scale(FromDb(report.gainDb));
        pulse.AddCarrier(result);
        const Limiter limiter{static_cast<float>(set["ceiling"]), 0.003, 0.09};
        report.limitedDb = limiter.Apply(result);
        report.loudness = MeasureLoudness(result);
        if (round + 1 < rounds)
            report.gainDb += static_cast<float>(set["loudness"] - report.loudness.integrated);
    }
    return result;
}

} // namespace Music
