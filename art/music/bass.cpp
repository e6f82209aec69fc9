// The bass: rounded pulses for the low end, a driven pair of saws for the grain above it.
#include "art/music/effects.h"
#include "art/music/envelope.h"
#include "art/music/filter.h"
#include "art/music/instrument.h"
#include "art/music/wavetable.h"

#include <algorithm>

namespace Music {

namespace {

constexpr std::size_t controlInterval = 16;
constexpr double longestRelease = 2.0;

/// exp(k (cos x - 1)) without its mean: a pulse whose harmonics fall off like a bell curve of
/// width sqrt(k), all in phase, so that it never goes further below zero than about half of its
/// fundamental's amplitude. That is why this shape and not a filtered saw: little is needed
/// under it to keep the sum on one side of zero, and brightness changes without phase shifts.
class RoundedPulse {
public:
    void Set(double frequency, double bright) {
        step = frequency / sampleRate;
        k = bright;
        mean = std::exp(-k) * BesselI(0);
        scale = 1.0 / (2.0 * std::exp(-k) * BesselI(1)); // fundamental of amplitude 1
    }

    float Next() {
        const double value = (std::exp(k * (std::cos(2.0 * pi * phase) - 1.0)) - mean) * scale;
        phase += step;
        phase -= phase >= 1.0 ? 1.0 : 0.0;
        return static_cast<float>(value);
    }

private:
    /// Modified Bessel function of order 0 or 1 at k, by its power series (k is below 12).
    double BesselI(int order) const {
        double term = order == 0 ? 1.0 : k / 2.0;
        double sum = 0;
        for (int m = 1; m < 40; ++m) {
            sum += term;
            term *= (k / 2.0) * (k / 2.0) / (m * (m + order));
        }
        return sum;
    }

    double step = 0;
    double phase = 0.5; // the flat bottom: a note begins without a step
    double k = 1;
    double mean = 0;
    double scale = 1;
};

class Bass : public Instrument {
public:
    explicit Bass(const Settings& settings) : set(settings) {}

    void Render(const Note& note, Stereo& out) const override {
        Voice voice(set, note);
        const std::size_t begin = FrameAt(note.start);
        const std::size_t end =
            std::min(out.Frames(), begin + FrameAt(note.length + longestRelease));
        for (std::size_t i = begin; i < end && !voice.Done(); ++i)
            voice.Next(i - begin, out.left[i], out.right[i]);
    }

private:
    class Voice {
    public:
        Voice(const Settings& settings, const Note& what)
            : set(settings),
              note(what),
              random(what.seed),
              amplitude(AmplitudeTimes(set), note.length),
              brightness(
                  {.attack = 0.001, .decay = set["bright_decay"], .sustain = 0.0, .release = 0.1},
                  note.length),
              sweep({.attack = 0.001, .decay = set["filter_decay"], .sustain = 0.0, .release = 0.1},
                    note.length),
              saws{Oscillator(Wave::Saw, random.Unipolar()),
                   Oscillator(Wave::Saw, random.Unipolar())},
              sawLevel(static_cast<float>(set["saw"])),
              drive(static_cast<float>(set["drive"])),
              gain(FromDb(static_cast<float>(set["level"])) * note.velocity) {}

        bool Done() const { return amplitude.Done() || amplitude.Silent(); }

        void Next(std::size_t frame, float& left, float& right) {
            const float bright = brightness.Next();
            const float open = sweep.Next();
            if (frame % controlInterval == 0)
                Control(static_cast<double>(frame) / sampleRate, bright, open);
            const float level = amplitude.Next() * gain;
            const float low = pulse.Next() * level;
            left += low + level * Grain(0);
            right += low + level * Grain(1);
        }

    private:
        void Control(double seconds, float bright, float open) {
            const double glide = set["glide"];
            const double away = glide > 0 ? std::exp(-seconds / (glide / 4.0)) : 0.0;
            const double pitch = NoteFrequency(note.midi + (note.fromMidi - note.midi) * away);
            const double apart = std::exp2(set["detune"] / 2400.0);
            pulse.Set(pitch, set["bright"] + set["bright_env"] * bright);
            saws[0].SetFrequency(2.0 * pitch / apart); // an octave above the pulses
            saws[1].SetFrequency(2.0 * pitch * apart);
            for (int side = 0; side < 2; ++side) {
                lowPass[side].Set(set["cutoff"] * std::exp2(set["filter_env"] * open),
                                  set["resonance"]);
                highPass[side].Set(set["low_cut"], 0.3);
            }
        }

        /// The driven saw of one side, without the low end that belongs to the pulses.
        float Grain(int side) {
            lowPass[side].Process(saws[side].Next());
            highPass[side].Process(SoftClip(lowPass[side].Low(), drive));
            return sawLevel * highPass[side].High();
        }

        const Settings& set;
        Note note;
        Random random;
        Envelope amplitude;
        Envelope brightness;
        Envelope sweep;
        RoundedPulse pulse;
        Oscillator saws[2];
        StateVariableFilter lowPass[2];
        StateVariableFilter highPass[2];
        float sawLevel;
        float drive;
        float gain;
    };

    Settings set;
};

} // namespace

std::unique_ptr<Instrument> MakeBass(const Settings& settings) {
    return std::make_unique<Bass>(settings);
}

} // namespace Music
