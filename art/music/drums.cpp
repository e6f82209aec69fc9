// Drums and noises, all synthesised.
#include "art/music/effects.h"
#include "art/music/envelope.h"
#include "art/music/filter.h"
#include "art/music/instrument.h"
#include "art/music/wavetable.h"

#include <algorithm>
#include <array>

namespace Music {

namespace {

/// An exponential fall by 60 dB in `seconds`.
class Fall {
public:
    explicit Fall(double seconds) : factor(std::pow(0.001, 1.0 / (seconds * sampleRate))) {}
    float Next() {
        level *= factor;
        return static_cast<float>(level);
    }
    bool Done() const { return level < 0.0002; }

private:
    double factor;
    double level = 1.0;
};

class Kick : public Instrument {
public:
    explicit Kick(const Settings& settings) : set(settings) {}

    void Render(const Note& note, Stereo& out) const override {
        const float gain = FromDb(static_cast<float>(set["level"])) * note.velocity;
        const auto drive = static_cast<float>(set["drive"]);
        const std::size_t begin = FrameAt(note.start);
        const std::size_t hold = FrameAt(set["hold"]);
        Fall body(set["decay"]);
        Fall click(0.012);
        Random random(7); // every stroke alike
        Biquad edge = Biquad::HighPass(1800, 0.7);
        double phase = 0;
        for (std::size_t i = 0; begin + i < out.Frames() && !body.Done(); ++i) {
            const double seconds = static_cast<double>(i) / sampleRate;
            const double pitch =
                set["to"] + (set["from"] - set["to"]) * std::exp(-seconds / set["bend"]);
            phase += pitch / sampleRate;
            const float level = i < hold ? 1.0F : body.Next();
            const auto tone = static_cast<float>(std::sin(2.0 * pi * phase));
            const auto snap =
                static_cast<float>(set["click"] * edge.Process(random.Bipolar()) * click.Next());
            const float value = gain * (SoftClip(tone * level, drive) + snap);
            out.left[begin + i] += value;
            out.right[begin + i] += value;
        }
    }

private:
    Settings set;
};

class Snare : public Instrument {
public:
    explicit Snare(const Settings& settings) : set(settings) {}

    void Render(const Note& note, Stereo& out) const override {
        const float gain = FromDb(static_cast<float>(set["level"])) * note.velocity;
        const auto toneLevel = static_cast<float>(set["tone_level"]);
        Random random(note.seed);
        Fall tone(set["tone_decay"]);
        Fall rattle(set["noise_decay"]);
        Biquad low[2] = {Biquad::HighPass(set["low_cut"], 0.7),
                         Biquad::HighPass(set["low_cut"], 0.7)};
        Biquad high[2] = {Biquad::LowPass(set["high_cut"], 0.7),
                          Biquad::LowPass(set["high_cut"], 0.7)};
        const std::size_t begin = FrameAt(note.start);
        double phase = 0;
        for (std::size_t i = 0; begin + i < out.Frames() && !rattle.Done(); ++i) {
            const double seconds = static_cast<double>(i) / sampleRate;
            phase += set["tone"] * (1.0 + 0.6 * std::exp(-seconds / 0.012)) / sampleRate;
            const float drum =
                toneLevel * tone.Next() * static_cast<float>(std::sin(2.0 * pi * phase));
            const float noise = rattle.Next();
            const float common = random.Bipolar();
            out.left[begin + i] +=
                gain * (drum + noise * Filtered(low[0], high[0], common, random));
            out.right[begin + i] +=
                gain * (drum + noise * Filtered(low[1], high[1], common, random));
        }
    }

private:
    /// Noise that is half the same on both sides: wide, yet still there in mono.
    static float Filtered(Biquad& low, Biquad& high, float common, Random& random) {
        const double noise = 0.7 * common + 0.5 * random.Bipolar();
        return static_cast<float>(high.Process(low.Process(noise)));
    }

    Settings set;
};

class Clap : public Instrument {
public:
    explicit Clap(const Settings& settings) : set(settings) {}

    void Render(const Note& note, Stereo& out) const override {
        const float gain = 2.0F * FromDb(static_cast<float>(set["level"])) * note.velocity;
        const auto hits = static_cast<std::size_t>(set["hits"]);
        const std::size_t gap = std::max<std::size_t>(1, FrameAt(set["gap"]));
        Random random(note.seed);
        StateVariableFilter filters[2];
        filters[0].Set(set["center"], set["resonance"]);
        filters[1].Set(set["center"] * 1.08, set["resonance"]);
        const std::size_t begin = FrameAt(note.start);
        const double shortFall = std::pow(0.001, 1.0 / (0.03 * sampleRate));
        const double longFall = std::pow(0.001, 1.0 / (set["decay"] * sampleRate));
        double level = 0;
        for (std::size_t i = 0; begin + i < out.Frames() && (i < hits * gap || level > 0.0002);
             ++i) {
            const bool strike = i % gap == 0 && i / gap < hits;
            level = strike ? 1.0 : level * (i / gap + 1 < hits ? shortFall : longFall);
            filters[0].Process(random.Bipolar());
            filters[1].Process(random.Bipolar());
            out.left[begin + i] += gain * static_cast<float>(level) * filters[0].Band();
            out.right[begin + i] += gain * static_cast<float>(level) * filters[1].Band();
        }
    }

private:
    Settings set;
};

/// Six square waves that share no common measure beat together like a cymbal's modes.
class Metal : public Instrument {
public:
    explicit Metal(const Settings& settings) : set(settings) {}

    void Render(const Note& note, Stereo& out) const override {
        static constexpr std::array<double, 6> modeRatios{1.0,    1.342,  1.6532,
                                                          1.9523, 2.1523, 2.4567};
        std::array<Oscillator, modeRatios.size()> modes;
        for (std::size_t m = 0; m < modes.size(); ++m) {
            modes.at(m) = Oscillator(Wave::Square, 0.37 * static_cast<double>(m));
            modes.at(m).SetFrequency(set["tone"] * modeRatios.at(m));
        }
        const float gain = FromDb(static_cast<float>(set["level"])) * note.velocity;
        const auto noise = static_cast<float>(set["noise"]);
        Random random(note.seed);
        Fall fall(set["decay"]);
        Biquad cut[2] = {Biquad::HighPass(set["low_cut"], 0.8),
                         Biquad::HighPass(set["low_cut"], 0.8)};
        const auto rise = static_cast<float>(1.0 / std::max(1.0, set["attack"] * sampleRate));
        float attack = 0.0F;
        const std::size_t begin = FrameAt(note.start);
        for (std::size_t i = begin; i < out.Frames() && !fall.Done(); ++i) {
            float ring[2] = {0.0F, 0.0F};
            for (std::size_t m = 0; m < modes.size(); ++m) {
                const float value = modes.at(m).Next() * (1.0F - noise) / 3.0F;
                ring[m % 2] += value;
                ring[(m + 1) % 2] += 0.5F * value;
            }
            attack = std::min(1.0F, attack + rise);
            const float level = gain * attack * fall.Next();
            out.left[i] +=
                level * static_cast<float>(cut[0].Process(ring[0] + noise * random.Bipolar()));
            out.right[i] +=
                level * static_cast<float>(cut[1].Process(ring[1] + noise * random.Bipolar()));
        }
    }

private:
    Settings set;
};

/// mode 0 low pass, 1 band pass, 2 high pass.
class Noise : public Instrument {
public:
    explicit Noise(const Settings& settings) : set(settings) {}

    void Render(const Note& note, Stereo& out) const override {
        Random random(note.seed * 31 + 5);
        Envelope envelope(AmplitudeTimes(set), note.length);
        StateVariableFilter filters[2];
        Oscillator tones[2] = {Oscillator(Wave::Saw, 0.0), Oscillator(Wave::Saw, 0.5)};
        const auto tone = static_cast<float>(set["tone"]);
        const float gain = FromDb(static_cast<float>(set["level"])) * note.velocity;
        const std::size_t begin = FrameAt(note.start);
        for (std::size_t i = begin; i < out.Frames() && !envelope.Done(); ++i) {
            const double part =
                std::min(1.0, static_cast<double>(i - begin) / (note.length * sampleRate));
            if ((i - begin) % 16 == 0)
                Move(part, note.midi, filters, tones);
            // A swell grows by `swell` dB over the note.
            const float swell = FromDb(static_cast<float>(set["swell"] * (part - 1.0)));
            const float level = gain * swell * envelope.Next();
            out.left[i] += level * Filtered(filters[0], random.Bipolar() + tone * tones[0].Next());
            out.right[i] += level * Filtered(filters[1], random.Bipolar() + tone * tones[1].Next());
        }
    }

private:
    void Move(double part, double midi, StateVariableFilter* filters, Oscillator* tones) const {
        const double ratio = set["to"] / set["from"];
        const double way = std::pow(part, set["curve"]);
        const double centre = set["from"] * std::pow(ratio, way);
        filters[0].Set(centre, set["resonance"]);
        filters[1].Set(centre * 1.04, set["resonance"]);
        // The tone climbs (or sinks) an octave on the way.
        const double pitch = NoteFrequency(midi) * std::exp2(ratio > 1 ? way : -way);
        tones[0].SetFrequency(pitch * 0.997);
        tones[1].SetFrequency(pitch * 1.003);
    }

    float Filtered(StateVariableFilter& filter, float value) const {
        filter.Process(value);
        const double mode = set["mode"];
        return mode == 0 ? filter.Low() : (mode == 1 ? filter.Band() : filter.High());
    }

    Settings set;
};

class Drop : public Instrument {
public:
    explicit Drop(const Settings& settings) : set(settings) {}

    void Render(const Note& note, Stereo& out) const override {
        Random random(note.seed * 17 + 3);
        const double shift = std::exp2(set["keytrack"] * (note.midi - 60) / 12.0 +
                                       set["jitter"] * random.Bipolar() / 12.0);
        const float gain = FromDb(static_cast<float>(set["level"])) * note.velocity;
        const auto noiseLevel = static_cast<float>(set["noise"]);
        Fall tone(set["decay"]);
        Fall rush(set["noise_decay"]);
        Biquad cut[2] = {Biquad::LowPass(set["noise_cut"], 0.7),
                         Biquad::LowPass(set["noise_cut"], 0.7)};
        const std::size_t begin = FrameAt(note.start);
        double phase = 0;
        for (std::size_t i = 0; begin + i < out.Frames() && !(tone.Done() && rush.Done()); ++i) {
            const double seconds = static_cast<double>(i) / sampleRate;
            const double pitch =
                set["to"] + (set["from"] - set["to"]) * std::exp(-3.0 * seconds / set["time"]);
            phase += pitch * shift / sampleRate;
            const auto rise = static_cast<float>(std::min(1.0, seconds / set["attack"]));
            const float sine = rise * tone.Next() * static_cast<float>(std::sin(2.0 * pi * phase));
            const float noise = noiseLevel * rise * rush.Next();
            out.left[begin + i] += gain * (sine + noise * Next(cut[0], random));
            out.right[begin + i] += gain * (sine + noise * Next(cut[1], random));
        }
    }

private:
    static float Next(Biquad& cut, Random& random) {
        return static_cast<float>(cut.Process(random.Bipolar()));
    }

    Settings set;
};

} // namespace

std::unique_ptr<Instrument> MakeKick(const Settings& settings) {
    return std::make_unique<Kick>(settings);
}
std::unique_ptr<Instrument> MakeSnare(const Settings& settings) {
    return std::make_unique<Snare>(settings);
}
std::unique_ptr<Instrument> MakeClap(const Settings& settings) {
    return std::make_unique<Clap>(settings);
}
std::unique_ptr<Instrument> MakeMetal(const Settings& settings) {
    return std::make_unique<Metal>(settings);
}
std::unique_ptr<Instrument> MakeNoise(const Settings& settings) {
    return std::make_unique<Noise>(settings);
}
std::unique_ptr<Instrument> MakeDrop(const Settings& settings) {
    return std::make_unique<Drop>(settings);
}

} // namespace Music
