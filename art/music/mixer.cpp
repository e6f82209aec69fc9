#include "art/music/mixer.h"

#include "art/music/dynamics.h"
#include "art/music/effects.h"
#include "art/music/instrument.h"
#include "art/music/master.h"

#include <algorithm>

namespace Music {

namespace {

const std::vector<SettingDefault> trackDefaults{
    {"gain", 0},      // dB
    {"pan", 0},       // -1 left .. 1 right
    {"width", 1},     // factor of the difference between the sides
    {"duck", 0},      // part of the side-chain's gain reduction that reaches the track
    {"reverb", -100}, // dB sent to the hall
    {"delay", -100},  // dB sent to the echoes
    {"highpass", 0},  // Hz, 0 off
    {"lowpass", 0},   // Hz, 0 off
    {"resonance", 0.25}, {"chorus", 0}, // level of the copies
    {"lowest", 60},                     // least note of chords and degree 1
    {"gate", 0.9},                      // part of a written length that sounds
    {"strum", 0},                       // seconds between chord notes
    {"root", 0},                        // 1: step patterns play the bass note instead of the chord
    {"key", 0},   // 1: the kick that works the side-chain; kept apart from the body
    {"flip", 0},  // 1: polarity follows the picture's pulse
    {"orbit", 0}, // radians a second with which the sound swings from side to side
    {"orbit_depth", 0.6}};

constexpr std::size_t controlInterval = 32; // samples between filter changes
constexpr double longestEcho = 5.0;         // seconds

/// One track's values over time: its setting, or its curve where the score has one.
class Automation {
public:
    Automation(const Score& piece, const std::map<std::string, Curve>& all, const std::string& name,
               double otherwise)
        : score(piece), constant(otherwise), hertz(name == "lowpass" || name == "highpass") {
        const auto found = all.find(name);
        if (found != all.end())
            curve = found->second;
        // A cut-off moves by equal intervals, not by equal numbers of Hz.
        for (auto& point : curve.points)
            point.second = hertz ? std::log2(std::max(point.second, 1.0)) : point.second;
    }

    double At(std::size_t frame) const {
        if (!Moves())
            return constant;
        const double seconds = static_cast<double>(frame) / sampleRate;
        const double value = curve.At(1.0 + seconds * score.tempo / 240.0);
        return hertz ? std::exp2(value) : value;
    }

    bool Moves() const { return !curve.points.empty(); }

private:
    const Score& score;
    Curve curve;
    double constant;
    bool hertz;
};

enum class Pass { Low, High };

/// A 24 dB filter whose cut-off follows an automation; 0 Hz leaves the sound alone.
void AutomateFilter(Stereo& signal, const Automation& cutoff, double resonance, Pass pass) {
    if (!cutoff.Moves() && cutoff.At(0) <= 0)
        return;
    for (std::vector<float>* channel : {&signal.left, &signal.right}) {
        StateVariableFilter first;
        StateVariableFilter second;
        for (std::size_t i = 0; i < channel->size(); ++i) {
            if (i % controlInterval == 0) {
                const double off = pass == Pass::Low ? 20000.0 : 10.0;
                const double hertz = cutoff.At(i) > 0 ? cutoff.At(i) : off;
                first.Set(hertz, resonance);
                second.Set(hertz, 0.15);
            }
            first.Process((*channel)[i]);
            second.Process(pass == Pass::Low ? first.Low() : first.High());
            (*channel)[i] = pass == Pass::Low ? second.Low() : second.High();
        }
    }
}

/// Places the sound: width, then pan with constant power, turning if it orbits.
void Pan(Stereo& signal, const Automation& pan, const Automation& gain, const Settings& set) {
    const auto width = static_cast<float>(set["width"]);
    float left = 1.0F;
    float right = 1.0F;
    for (std::size_t i = 0; i < signal.Frames(); ++i) {
        if (i % controlInterval == 0) {
            const double seconds = static_cast<double>(i) / sampleRate;
            const double swing =
                set["orbit"] > 0 ? set["orbit_depth"] * std::sin(set["orbit"] * seconds) : 0.0;
            const double angle = (std::clamp(pan.At(i) + swing, -1.0, 1.0) + 1.0) * pi / 4.0;
            const double level = FromDb(static_cast<float>(gain.At(i))) * std::sqrt(2.0);
            left = static_cast<float>(level * std::cos(angle));
            right = static_cast<float>(level * std::sin(angle));
        }
        const float middle = 0.5F * (signal.left[i] + signal.right[i]);
        const float side = 0.5F * (signal.left[i] - signal.right[i]) * width;
        signal.left[i] = (middle + side) * left;
        signal.right[i] = (middle - side) * right;
    }
}

void AddSend(Stereo& bus, const Stereo& signal, const Automation& level) {
    if (!level.Moves() && level.At(0) <= -90.0)
        return;
    float gain = 0.0F;
    for (std::size_t i = 0; i < bus.Frames(); ++i) {
        if (i % controlInterval == 0)
            gain = level.At(i) <= -90.0 ? 0.0F : FromDb(static_cast<float>(level.At(i)));
        bus.left[i] += signal.left[i] * gain;
        bus.right[i] += signal.right[i] * gain;
    }
}

/// Turns the whole mix up and down along a curve in dB.
void AutomateGain(Stereo& signal, const Automation& gainDb) {
    for (std::size_t i = 0; gainDb.Moves() && i < signal.Frames(); ++i) {
        const float gain = FromDb(static_cast<float>(gainDb.At(i)));
        signal.left[i] *= gain;
        signal.right[i] *= gain;
    }
}

/// All buses while the tracks are played.
class Mixer {
public:
    Mixer(const Score& piece, const BeatPulse& pictureBeat, std::size_t frames,
          std::vector<TrackLevel>* measured, const TrackSink& trackSink)
        : score(piece),
          pulse(pictureBeat),
          levels(measured),
          sink(trackSink),
          track(frames),
          reverbBus(frames),
          delayBus(frames) {
        mix.body = Stereo(frames);
        mix.kick = Stereo(frames);
    }

    bool Play(const TrackText& text, std::string& message) {
        const Settings set(trackDefaults, text.settings, message);
        if (!message.empty())
            return false;
        const auto instrument = MakeInstrument(score.instruments.at(text.instrument), message);
        if (!instrument)
            return false;
        const PlayStyle style{.lowest = static_cast<int>(set["lowest"]),
                              .gate = set["gate"],
                              .strum = set["strum"],
                              .rootOnly = set["root"] > 0};
        track.Clear();
        for (const Note& note : NotesOf(score, text, style))
            instrument->Render(note, track);
        Process(text, set);
        return true;
    }

    /// Hall and echoes are added last; both breathe with the kick.
    Mix MixDown(const Settings& master) {
        PingPong echoes;
        echoes.time = std::min(master["delay_beats"] * score.SecondsPerBeat(), longestEcho);
        echoes.feedback = static_cast<float>(master["delay_feedback"]);
        const Stereo repeats = echoes.Process(delayBus);
        reverbBus.Add(repeats, 0.35F);
        Reverb hall;
        hall.time = master["reverb_time"];
        hall.damping = master["reverb_damping"];
        Stereo room = hall.Process(reverbBus);
        room.Add(repeats, 1.0F);
        if (!duckDb.empty())
            ApplyGainDb(room, duckDb, static_cast<float>(master["room_duck"]));
        mix.body.Add(room, 1.0F);
        FollowMaster(mix.body);
        return std::move(mix);
    }

private:
    /// The master's curves leave the kick alone.
    void FollowMaster(Stereo& signal) const {
        AutomateFilter(signal, MasterCurve("lowpass"), 0.3, Pass::Low);
        AutomateFilter(signal, MasterCurve("highpass"), 0.3, Pass::High);
        AutomateGain(signal, MasterCurve("gain"));
    }

    Automation MasterCurve(const char* name) const {
        return {score, score.masterCurves, name, 0.0};
    }

    void Process(const TrackText& text, const Settings& set) {
        const auto curve = [&](const char* name) {
            return Automation(score, text.curves, name, set[name]);
        };
        AutomateFilter(track, curve("highpass"), 0.3, Pass::High);
        AutomateFilter(track, curve("lowpass"), set["resonance"], Pass::Low);
        if (set["chorus"] > 0) {
            Chorus chorus;
            chorus.mix = static_cast<float>(set["chorus"]);
            chorus.Apply(track);
        }
        Pan(track, curve("pan"), curve("gain"), set);
        if (set["key"] > 0) {
            duckDb = Compressor{.threshold = -26.0F,
                                .ratio = 8.0F,
                                .attack = 0.0008,
                                .release = 0.11,
                                .knee = 6.0F}
                         .GainDb(track);
        } else if (set["duck"] > 0 && !duckDb.empty()) {
            ApplyGainDb(track, duckDb, static_cast<float>(set["duck"]));
        }
        if (set["flip"] > 0)
            pulse.FollowPolarity(track);
        AddSend(reverbBus, track, curve("reverb"));
        AddSend(delayBus, track, curve("delay"));
        (set["key"] > 0 ? mix.kick : mix.body).Add(track, 1.0F);
        if (levels != nullptr)
            levels->push_back({text.name, MeasureLoudness(track)});
        if (sink && set["key"] <= 0)
            FollowMaster(track);
        if (sink)
            sink(text.name, track);
    }

    const Score& score;
    const BeatPulse& pulse;
    std::vector<TrackLevel>* levels;
    const TrackSink& sink;
    Mix mix;
    Stereo track;
    Stereo reverbBus;
    Stereo delayBus;
    std::vector<float> duckDb; // of the side-chain, once the kick has been played
};

bool IsKey(const TrackText& track) {
    return std::any_of(track.settings.begin(), track.settings.end(),
                       [](const SettingText& s) { return s.name == "key" && s.value != "0"; });
}

/// The kick first, because the others breathe with it.
std::vector<const TrackText*> InOrder(const Score& score) {
    std::vector<const TrackText*> order;
    for (const TrackText& track : score.tracks)
        order.push_back(&track);
    std::stable_partition(order.begin(), order.end(),
                          [](const TrackText* track) { return IsKey(*track); });
    return order;
}

} // namespace

const std::vector<SettingDefault>& TrackDefaults() {
    return trackDefaults;
}

BeatPulse PulseOf(const Score& score, std::string& message) {
    const Settings set(MasterDefaults(), score.masterSettings, message);
    BeatPulse pulse;
    pulse.secondsPerBeat = score.SecondsPerBeat();
    if (set["pulse_first"] > 0) {
        pulse.firstBeat = score.TimeOfBar(set["pulse_first"]);
        pulse.beats = static_cast<int>(
            4 * (std::min<double>(set["pulse_last"], score.bars) - set["pulse_first"] + 1));
        pulse.sceneBeats = {0, static_cast<int>(4 * (set["pulse_scene"] - set["pulse_first"]))};
    }
    return pulse;
}

Mix PlayTracks(const Score& score, const BeatPulse& pulse, std::size_t frames,
               const MixProgress& progress, std::string& message, std::vector<TrackLevel>* levels,
               const TrackSink& sink) {
    const Settings master(MasterDefaults(), score.masterSettings, message);
    Mixer mixer(score, pulse, frames, levels, sink);
    int done = 0;
    for (const TrackText* track : InOrder(score)) {
        if (!message.empty() || !mixer.Play(*track, message))
            return {};
        progress(++done, static_cast<int>(score.tracks.size()));
    }
    return mixer.MixDown(master);
}

} // namespace Music
