#pragma once

#include "art/music/audio.h"
#include "art/music/envelope.h"
#include "art/music/score.h"
#include "art/music/sequencer.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Music {

/// A setting an instrument or track knows, with the value it has when the score is silent.
struct SettingDefault {
    const char* name;
    double value;
};

/// Values by name: the defaults of a kind, overridden by the score.
class Settings {
public:
    /// Takes the defaults, then the score's values: numbers, wave names or note names.
    /// A name without default or an unreadable value puts "LINE: what is wrong" into `message`.
    Settings(const std::vector<SettingDefault>& defaults, const std::vector<SettingText>& texts,
             std::string& message);

    /// The value of a name that has a default.
    double operator[](const char* name) const { return values.at(name); }

private:
    std::map<std::string, double> values;
};

/// How loud a note of an instrument with the settings attack, decay, sustain and release is.
EnvelopeTimes AmplitudeTimes(const Settings& settings);

/// Turns notes into sound.
class Instrument {
public:
    virtual ~Instrument() = default;

    /// Adds the note to `out` from its start on; what would come after the end is dropped.
    /// Every sample depends on the note and the settings alone.
    virtual void Render(const Note& note, Stereo& out) const = 0;
};

/// Makes the instrument that the score describes. Null, and "LINE: what is wrong" in `message`,
/// for an unknown kind or setting.
std::unique_ptr<Instrument> MakeInstrument(const InstrumentText& text, std::string& message);

/// What kinds of instruments there are, and what a score may set of each, with the defaults.
struct InstrumentKind {
    const char* name;
    const std::vector<SettingDefault>& defaults;
};
std::vector<InstrumentKind> InstrumentKinds();

/// Kinds of instruments; one file each.
std::unique_ptr<Instrument> MakeSynth(const Settings& settings);
std::unique_ptr<Instrument> MakeFm(const Settings& settings);
std::unique_ptr<Instrument> MakeBass(const Settings& settings);
std::unique_ptr<Instrument> MakeKick(const Settings& settings);
std::unique_ptr<Instrument> MakeSnare(const Settings& settings);
std::unique_ptr<Instrument> MakeClap(const Settings& settings);
std::unique_ptr<Instrument> MakeMetal(const Settings& settings);
std::unique_ptr<Instrument> MakeNoise(const Settings& settings);
std::unique_ptr<Instrument> MakeDrop(const Settings& settings);

} // namespace Music
