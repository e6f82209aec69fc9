// The subtractive voice: unison oscillators, a sub oscillator and noise into a resonant filter.
#include "art/music/envelope.h"
#include "art/music/filter.h"
#include "art/music/instrument.h"
#include "art/music/wavetable.h"

#include <algorithm>

namespace Music {

namespace {

constexpr std::size_t controlInterval = 16; // samples between changes of pitch and cut-off
constexpr int mostVoices = 32;
constexpr double longestRelease = 8.0; // seconds a note may ring after its end

struct UnisonVoice {
    Oscillator oscillator;
    double ratio = 1; // of its pitch to the note's
    float left = 0;
    float right = 0;
};

class Synth : public Instrument {
public:
    explicit Synth(const Settings& settings) : set(settings) {}

    void Render(const Note& note, Stereo& out) const override {
        Voice voice(set, note);
        const std::size_t first = FrameAt(note.start);
        const std::size_t last =
            std::min(out.Frames(), first + FrameAt(note.length + longestRelease));
        for (std::size_t i = first; i < last && !voice.Done(); ++i)
            voice.Next(i - first, out.left[i], out.right[i]);
    }

private:
    /// One note while it sounds.
    class Voice {
    public:
        Voice(const Settings& settings, const Note& what)
            : set(settings),
              note(what),
              random(what.seed),
              amplitude(AmplitudeTimes(set), note.length),
              sweep({.attack = set["filter_attack"],
                     .decay = set["filter_decay"],
                     .sustain = set["filter_sustain"],
                     .release = std::max(set["release"], 0.05)},
                    note.length),
              wide(set["spread"] > 0 && set["voices"] > 1),
              fourPoles(set["poles"] > 2),
              pulse(set["pulse_width"] > 0),
              filterEnv(set["filter_env"]),
              baseCutoff(set["cutoff"] * std::exp2(set["keytrack"] * (note.midi - 60) / 12.0 +
                                                   set["velocity_cutoff"] * (note.velocity - 0.8))),
              resonance(set["resonance"]),
              subLevel(static_cast<float>(set["sub"])),
              octaveLevel(static_cast<float>(set["octave"])),
              noiseLevel(static_cast<float>(set["noise"])),
              gain(FromDb(static_cast<float>(set["level"])) * note.velocity * note.velocity) {
            MakeUnison();
            sub = Oscillator(Wave::Sine, 0.0);
            above = Oscillator(WaveOf(set["wave"]), 0.25);
        }

        bool Done() const { return amplitude.Done() || amplitude.Silent(); }

        void Next(std::size_t frame, float& left, float& right) {
            const float bright = sweep.Next();
            if (frame % controlInterval == 0)
                Control(static_cast<double>(frame) / sampleRate, bright);
            float sumLeft = 0.0F;
            float sumRight = 0.0F;
            for (UnisonVoice& voice : unison) {
                const float value =
                    pulse ? voice.oscillator.NextPulse(width) : voice.oscillator.Next();
                sumLeft += value * voice.left;
                sumRight += value * voice.right;
            }
            const float centre = subLevel * (subLevel > 0 ? sub.Next() : 0.0F) +
                                 octaveLevel * (octaveLevel > 0 ? above.Next() : 0.0F);
            sumLeft += centre + noiseLevel * (noiseLevel > 0 ? random.Bipolar() : 0.0F);
            sumRight += centre + noiseLevel * (noiseLevel > 0 ? random.Bipolar() : 0.0F);
            const float level = amplitude.Next() * gain;
            const float filtered = Filter(first[0], second[0], sumLeft);
            left += level * filtered;
            right +=
                level * (wide || noiseLevel > 0 ? Filter(first[1], second[1], sumRight) : filtered);
        }

    private:
        void MakeUnison() {
            const int count = std::clamp(static_cast<int>(set["voices"]), 1, mostVoices);
            const auto wave = WaveOf(set["wave"]);
            const float each = 1.0F / std::sqrt(static_cast<float>(count));
            for (int i = 0; i < count; ++i) {
                // -1..1 from the lowest to the highest voice; sides alternate with the pitch.
                const double place = count == 1 ? 0.0 : 2.0 * i / (count - 1.0) - 1.0;
                const double side = (i % 2 == 0 ? 1.0 : -1.0) * std::fabs(place) * set["spread"];
                UnisonVoice voice;
                voice.oscillator = Oscillator(wave, count == 1 ? 0.0 : random.Unipolar());
                voice.ratio = std::exp2(place * set["detune"] / 1200.0);
                voice.left =
                    each * static_cast<float>(std::sqrt(0.5 * (1.0 - side)) * std::sqrt(2.0));
                voice.right =
                    each * static_cast<float>(std::sqrt(0.5 * (1.0 + side)) * std::sqrt(2.0));
                unison.push_back(voice);
            }
        }

        /// Pitch, pulse width and cut-off for the next few samples.
        void Control(double seconds, float bright) {
            const double glide = set["glide"];
            const double away = glide > 0 ? std::exp(-seconds / (glide / 4.0)) : 0.0;
            const double vibrato = set["vibrato"] / 100.0 *
                                   std::clamp((seconds - set["vibrato_delay"]) * 4.0, 0.0, 1.0) *
                                   std::sin(2.0 * pi * set["vibrato_rate"] * seconds);
            const double pitch =
                NoteFrequency(note.midi + (note.fromMidi - note.midi) * away + vibrato);
            for (UnisonVoice& voice : unison)
                voice.oscillator.SetFrequency(pitch * voice.ratio);
            sub.SetFrequency(pitch * 0.5);
            above.SetFrequency(pitch * 2.0);
            width = std::clamp(set["pulse_width"] +
                                   set["pwm_depth"] * std::sin(2.0 * pi * set["pwm_rate"] *
                                                               (seconds + note.start)),
                               0.05, 0.95);
            const double cutoff = baseCutoff * std::exp2(filterEnv * bright);
            for (int side = 0; side < 2; ++side) {
                // Two second-order filters in a row share the resonance.
                first[side].Set(cutoff, fourPoles ? resonance * 0.6 : resonance);
                second[side].Set(cutoff, 0.2);
            }
        }

        float Filter(StateVariableFilter& one, StateVariableFilter& two, float value) const {
            one.Process(value);
            if (!fourPoles)
                return one.Low();
            two.Process(one.Low());
            return two.Low();
        }

        const Settings& set;
        Note note;
        Random random;
        Envelope amplitude;
        Envelope sweep;
        bool wide;
        bool fourPoles;
        bool pulse;
        double filterEnv; // octaves
        double baseCutoff;
        double resonance;
        float subLevel;
        float octaveLevel;
        float noiseLevel;
        float gain;
        double width = 0.5;
        std::vector<UnisonVoice> unison;
        Oscillator sub;
        Oscillator above;
        StateVariableFilter first[2];
        StateVariableFilter second[2];
    };

    Settings set;
};

} // namespace

std::unique_ptr<Instrument> MakeSynth(const Settings& settings) {
    return std::make_unique<Synth>(settings);
}

} // namespace Music
