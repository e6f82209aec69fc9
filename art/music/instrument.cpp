#include "art/music/instrument.h"

#include "art/music/patterntext.h"
#include "art/music/wavetable.h"

#include <array>

namespace Music {

namespace {

using Defaults = std::vector<SettingDefault>;

/// Subtractive voice: unison oscillators into a filter with its own envelope.
const Defaults synthDefaults{{"wave", 1},
                             {"voices", 1},
                             {"detune", 0},
                             {"spread", 0.7}, // detune: cents, outermost voices
                             {"pulse_width", 0},
                             {"pwm_rate", 0.3},
                             {"pwm_depth", 0}, // width 0: the wave as it is
                             {"sub", 0},
                             {"octave", 0},
                             {"noise", 0}, // levels against the main wave
                             {"attack", 0.005},
                             {"decay", 0.3},
                             {"sustain", 0.7},
                             {"release", 0.2},
                             {"cutoff", 18000},
                             {"resonance", 0.2},
                             {"poles", 2},
                             {"keytrack", 0},
                             {"filter_env", 0},
                             {"filter_attack", 0.002},
                             {"filter_decay", 0.3},
                             {"filter_sustain", 0},
                             {"velocity_cutoff", 0},
                             {"vibrato", 0},
                             {"vibrato_rate", 5.2},
                             {"vibrato_delay", 0.25},
                             {"glide", 0},
                             {"level", 0}};

/// Two pairs of carrier and modulator: bells, glass, electric pianos, sonar.
const Defaults fmDefaults{
    {"ratio", 1},     {"mod", 3.5},       {"index", 3},   {"index_decay", 0.6},
    {"ratio2", 1},    {"mod2", 7},        {"index2", 1},  {"index2_decay", 0.1},
    {"level2", 0},    {"attack", 0.002},  {"decay", 1.5}, {"sustain", 0},
    {"release", 0.6}, {"detune", 4},      {"vibrato", 0}, {"vibrato_rate", 5},
    {"bend", 0},      {"bend_time", 0.1}, {"level", 0}};

/// Bass of rounded pulses that lean to one side of zero, under a driven pair of saws.
const Defaults bassDefaults{
    {"bright", 2.5},     {"bright_env", 3}, {"bright_decay", 0.12}, {"saw", 0.35},
    {"detune", 9},       {"cutoff", 500},   {"filter_env", 2.5},    {"filter_decay", 0.12},
    {"resonance", 0.35}, {"low_cut", 180},  {"drive", 1.6},         {"attack", 0.004},
    {"decay", 0.4},      {"sustain", 0.6},  {"release", 0.06},      {"glide", 0},
    {"level", 0}};

const Defaults kickDefaults{{"from", 230},  {"to", 49},      {"bend", 0.03}, {"hold", 0.03},
                            {"decay", 0.2}, {"click", 0.35}, {"drive", 1.4}, {"level", 0}};

const Defaults snareDefaults{{"tone", 190},         {"tone_decay", 0.12}, {"tone_level", 0.6},
                             {"noise_decay", 0.22}, {"low_cut", 900},     {"high_cut", 11000},
                             {"level", 0}};

const Defaults clapDefaults{{"hits", 4},      {"gap", 0.011},      {"decay", 0.24},
                            {"center", 1500}, {"resonance", 0.35}, {"level", 0}};

/// Hats, rides and cymbals: beating square waves and noise through a high pass.
const Defaults metalDefaults{{"tone", 420},     {"decay", 0.06}, {"attack", 0.0005},
                             {"low_cut", 7000}, {"noise", 0.5},  {"level", 0}};

/// Filtered noise whose pitch moves from `from` to `to` over the note: risers, waves, shakers.
const Defaults noiseDefaults{{"from", 400},    {"to", 8000},     {"curve", 1},   {"resonance", 0.3},
                             {"mode", 1},      {"attack", 0.01}, {"decay", 0.1}, {"sustain", 1},
                             {"release", 0.1}, {"swell", 0},     {"tone", 0},    {"level", 0}};

/// A sine that falls (or rises) from one pitch to another: toms, impacts, bubbles.
const Defaults dropDefaults{{"from", 160},     {"to", 40},          {"time", 0.2},
                            {"attack", 0.002}, {"decay", 0.8},      {"keytrack", 0},
                            {"noise", 0},      {"noise_cut", 2000}, {"noise_decay", 0.5},
                            {"jitter", 0},     {"level", 0}};

struct Kind {
    const char* name;
    const Defaults& defaults;
    std::unique_ptr<Instrument> (*make)(const Settings&);
};

const std::array<Kind, 9> kinds{{{"synth", synthDefaults, MakeSynth},
                                 {"fm", fmDefaults, MakeFm},
                                 {"bass", bassDefaults, MakeBass},
                                 {"kick", kickDefaults, MakeKick},
                                 {"snare", snareDefaults, MakeSnare},
                                 {"clap", clapDefaults, MakeClap},
                                 {"metal", metalDefaults, MakeMetal},
                                 {"noise", noiseDefaults, MakeNoise},
                                 {"drop", dropDefaults, MakeDrop}}};

/// A number, a wave's or a note's name.
bool ReadValue(const std::string& text, double& value) {
    if (ParseNumber(text, value))
        return true;
    Wave wave = Wave::Sine;
    int midi = 0;
    if (FindWave(text, wave)) {
        value = static_cast<double>(wave);
        return true;
    }
    if (ParseNote(text, midi)) {
        value = midi;
        return true;
    }
    return false;
}

} // namespace

Settings::Settings(const std::vector<SettingDefault>& defaults,
                   const std::vector<SettingText>& texts, std::string& message) {
    for (const SettingDefault& entry : defaults)
        values[entry.name] = entry.value;
    for (const SettingText& text : texts) {
        const auto found = values.find(text.name);
        if (found == values.end()) {
            message = std::to_string(text.line) + ": unknown setting '" + text.name + "'";
        } else if (!ReadValue(text.value, found->second)) {
            message = std::to_string(text.line) + ": setting '" + text.name + "' cannot be '" +
                      text.value + "'";
        }
    }
}

EnvelopeTimes AmplitudeTimes(const Settings& settings) {
    return {.attack = settings["attack"],
            .decay = settings["decay"],
            .sustain = settings["sustain"],
            .release = settings["release"]};
}

std::vector<InstrumentKind> InstrumentKinds() {
    std::vector<InstrumentKind> named;
    for (const Kind& kind : kinds)
        named.push_back({kind.name, kind.defaults});
    return named;
}

std::unique_ptr<Instrument> MakeInstrument(const InstrumentText& text, std::string& message) {
    for (const Kind& kind : kinds) {
        if (text.kind == kind.name) {
            std::string problem;
            const Settings settings(kind.defaults, text.settings, problem);
            if (problem.empty())
                return kind.make(settings);
            message = problem;
            return nullptr;
        }
    }
    message = std::to_string(text.line) + ": unknown kind of instrument '" + text.kind + "'";
    return nullptr;
}

} // namespace Music
