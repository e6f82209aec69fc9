// Frequency modulation: two pairs of a carrier and a modulator.
#include "art/music/envelope.h"
#include "art/music/instrument.h"

#include <algorithm>

namespace Music {

namespace {

constexpr double highestPartial = 19000.0;

/// A carrier with its modulator.
class OperatorPair {
public:
    OperatorPair(double carrier, double modulator, double index, double decay)
        : carrierStep(carrier / sampleRate),
          modulatorStep(modulator / sampleRate),
          depth(Bounded(carrier, modulator, index)),
          fade(std::pow(0.001, 1.0 / (decay * sampleRate))) {}

    float Next(double pitchFactor) {
        const double value =
            std::sin(2.0 * pi * carrierPhase + depth * std::sin(2.0 * pi * modulatorPhase));
        carrierPhase = Wrapped(carrierPhase + carrierStep * pitchFactor);
        modulatorPhase = Wrapped(modulatorPhase + modulatorStep * pitchFactor);
        depth = depth < 1e-9 ? 0.0 : depth * fade;
        return static_cast<float>(value);
    }

private:
    /// The index at which the furthest side band worth hearing (index + 2 modulator steps away)
    /// still lies below the audible limit, so that none is mirrored at half the sample rate.
    static double Bounded(double carrier, double modulator, double index) {
        const double room = (highestPartial - carrier) / std::max(modulator, 1.0) - 2.0;
        return std::clamp(index, 0.0, std::max(room, 0.0));
    }

    static double Wrapped(double phase) { return phase >= 1.0 ? phase - 1.0 : phase; }

    double carrierStep;
    double modulatorStep;
    double carrierPhase = 0;
    double modulatorPhase = 0;
    double depth; // radians
    double fade;
};

class Fm : public Instrument {
public:
    explicit Fm(const Settings& settings) : set(settings) {}

    void Render(const Note& note, Stereo& out) const override {
        const double pitch = NoteFrequency(note.midi);
        const double apart = std::exp2(set["detune"] / 2400.0);
        // A little brighter when played louder, as everything struck is.
        const double brightness = 0.5 + 0.6 * note.velocity;
        OperatorPair first[2] = {FirstPair(pitch / apart, brightness),
                                 FirstPair(pitch * apart, brightness)};
        OperatorPair second[2] = {SecondPair(pitch * apart, brightness),
                                  SecondPair(pitch / apart, brightness)};
        Envelope envelope(AmplitudeTimes(set), note.length);
        const float gain = 0.5F * FromDb(static_cast<float>(set["level"])) * note.velocity;
        const auto level2 = static_cast<float>(set["level2"]);
        const std::size_t begin = FrameAt(note.start);
        for (std::size_t i = begin; i < out.Frames(); ++i) {
            const double bent = PitchFactor(static_cast<double>(i - begin) / sampleRate);
            const float level = envelope.Next() * gain;
            out.left[i] += level * (first[0].Next(bent) + level2 * second[0].Next(bent));
            out.right[i] += level * (first[1].Next(bent) + level2 * second[1].Next(bent));
            if (envelope.Done() || envelope.Silent())
                return;
        }
    }

private:
    OperatorPair FirstPair(double pitch, double brightness) const {
        return {pitch * set["ratio"], pitch * set["mod"], set["index"] * brightness,
                set["index_decay"]};
    }
    OperatorPair SecondPair(double pitch, double brightness) const {
        return {pitch * set["ratio2"], pitch * set["mod2"], set["index2"] * brightness,
                set["index2_decay"]};
    }

    /// Vibrato and the bend from `bend` semitones away to the note.
    double PitchFactor(double seconds) const {
        if (set["vibrato"] == 0 && set["bend"] == 0)
            return 1.0;
        const double semitones = set["bend"] * std::exp(-seconds / set["bend_time"]) +
                                 set["vibrato"] / 100.0 *
                                     std::sin(2.0 * pi * set["vibrato_rate"] * seconds) *
                                     std::min(1.0, seconds * 3.0);
        return std::exp2(semitones / 12.0);
    }

    Settings set;
};

} // namespace

std::unique_ptr<Instrument> MakeFm(const Settings& settings) {
    return std::make_unique<Fm>(settings);
}

} // namespace Music
