#include "tools/doctor/sound.h"

#include "sound/device_alsa.h"
#include "sound/track.h"

#include <alsa/asoundlib.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <vector>

namespace Doctor {

namespace {

using Vell::Sound::Device;

constexpr const char* deviceName = "default"; // the one that the demo plays on
constexpr int rate = 44100;                   // frames per second, as the music has
constexpr double longest = 0.4;               // seconds of silence, four times the demo's buffer

const char* const soundAdvice =
    "the show is complete without sound. For sound: switch the card on; under PulseAudio install "
    "libasound2-plugins, under PipeWire pipewire-alsa; elsewhere see alsamixer in alsa-utils";

/// ALSA's own messages stay off the terminal.
// NOLINTNEXTLINE(cert-dcl50-cpp): ALSA calls it so
void Ignore(const char*, int, const char*, int, const char*, ...) {}

struct Closer {
    void operator()(snd_pcm_t* pcm) const { snd_pcm_close(pcm); }
    void operator()(snd_output_t* output) const { snd_output_close(output); }
};

/// What ALSA tells about the chain of plug-ins behind the name.
std::string Describe(snd_pcm_t* pcm) {
    snd_output_t* opened = nullptr;
    if (snd_output_buffer_open(&opened) < 0)
        return "";
    const std::unique_ptr<snd_output_t, Closer> output(opened);
    snd_pcm_dump(pcm, output.get());
    char* text = nullptr;
    const std::size_t length = snd_output_buffer_string(output.get(), &text);
    return {text, length};
}

/// The name of the card behind the device; empty when that is no card of this machine's own.
std::string CardName(snd_pcm_t* pcm) {
    snd_pcm_info_t* info = nullptr;
    snd_pcm_info_alloca(&info);
    if (snd_pcm_info(pcm, info) < 0 || snd_pcm_info_get_card(info) < 0)
        return "";
    char* name = nullptr;
    if (snd_card_get_name(snd_pcm_info_get_card(info), &name) < 0)
        return "";
    const std::unique_ptr<char, void (*)(void*)> owned(name, std::free);
    return name;
}

/// Whether there is a device; notes what it is, or why there is none.
bool ReportRoute(const Tools::Report& report) {
    snd_pcm_t* opened = nullptr;
    const int result = snd_pcm_open(&opened, deviceName, SND_PCM_STREAM_PLAYBACK, SND_PCM_NONBLOCK);
    if (result < 0) {
        report.Add("no_device", snd_strerror(result));
        report.Add("busy", result == -EBUSY ? 1 : 0);
        return false;
    }
    const std::unique_ptr<snd_pcm_t, Closer> pcm(opened);
    report.Add("type", snd_pcm_type_name(snd_pcm_type(pcm.get())));
    report.Add("chain", Describe(pcm.get()));
    report.Add("card", CardName(pcm.get()));
    return true;
}

/// The longest time, in frames, that the device held back what it was given.
std::int64_t LongestDelay(Device& device) {
    const std::vector<std::int16_t> silence(
        static_cast<std::size_t>(device.PeriodFrames() * Vell::Sound::sides), 0);
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(longest);
    std::int64_t given = 0;
    std::int64_t delay = 0;
    // A device that takes everything at once would take this without an end: both are limits.
    while (std::chrono::steady_clock::now() < end && static_cast<double>(given) < longest * rate) {
        const Device::Answer answer = device.Write(silence.data(), device.PeriodFrames());
        if (answer.outcome == Device::Outcome::Lost)
            break;
        if (answer.outcome == Device::Outcome::Full)
            device.Wait();
        given += answer.taken;
        delay = std::max(delay, device.Delay());
    }
    return delay;
}

struct Route {
    const char* word;  ///< stands in the chain
    const char* plain; ///< what that is
};
// The first that fits tells the most.
const Route routes[] = {
    {"PulseAudio", "the sound server PulseAudio"},
    {"PipeWire", "the sound server PipeWire"},
    {"JACK", "the sound server JACK"},
    {"File PCM", "a file"},
    {"Null PCM", "nothing"},
    {"Direct Stream Mixing", "a card shared by mixing"},
    {"Hardware PCM", "a card"},
};

std::string PlainRoute(const Tools::Facts& facts) {
    const std::string chain = Tools::Fact(facts, "chain");
    for (const Route& route : routes)
        if (chain.find(route.word) != std::string::npos)
            return route.plain;
    return "a device of the kind " + Tools::Fact(facts, "type");
}

void DescribeDevice(const Tools::Facts& facts, Row& row) {
    const std::string card = Tools::Fact(facts, "card");
    const std::string delay = Tools::Fact(facts, "delay_ms");
    const std::string route = PlainRoute(facts) + (card.empty() ? "" : " (" + card + ")");
    row.values = {{"route", route}, {"card", card}};
    if (delay.empty())
        row.Set(State::Warn,
                route + " takes no 16 bit stereo at 44.1 kHz: the demo plays in silence",
                soundAdvice);
    else if (PlainRoute(facts) == "nothing")
        row.Set(State::Warn, "ALSA's default drops what it is given: the demo plays in silence",
                soundAdvice);
    else
        row.Set(State::Ok, route + ", heard " + delay + " ms after it is handed over");
    if (!delay.empty())
        row.values.push_back({"delay_ms", delay, true});
}

void DescribeNone(const Tools::Facts& facts, Row& row) {
    const bool busy = Tools::FactNumber(facts, "busy") != 0;
    row.values = {{"route", "none"}, {"reason", Tools::Fact(facts, "no_device")}};
    row.Set(State::Warn,
            busy ? "another program holds the sound device: the demo plays in silence"
                 : "there is no sound device: the demo plays in silence",
            soundAdvice);
}

} // namespace

void CollectSoundFacts(const Tools::Report& report) {
    snd_lib_error_set_handler(Ignore);
    if (!ReportRoute(report))
        return;
    Vell::Sound::AlsaDevice device;
    if (!device.Open(rate))
        return;
    const std::int64_t delay = LongestDelay(device);
    report.Add("delay_ms", static_cast<int>(delay * 1000 / rate));
}

Row SoundRow(const Tools::IsolatedRun& run) {
    Row row{"sound", "Sound"};
    if (!run.ending.InOrder())
        row.Set(State::Warn, "looking at the sound device " + run.ending.InWords(), soundAdvice);
    else if (run.facts.count("no_device") != 0)
        DescribeNone(run.facts, row);
    else
        DescribeDevice(run.facts, row);
    return row;
}

} // namespace Doctor
