#include "tests/sound/alsa_setup.h"

#include "tests/support/scratch.h"

#include <alsa/asoundlib.h>

#include <cstdlib>
#include <filesystem>

const char* const nullDevice = "pcm.!default { type null }";
const char* const fileDevice =
    "pcm.!default { type file slave.pcm { type null } file out.raw format raw }";
const char* const missingCard = "pcm.!default { type hw card 29 device 0 }";

namespace {
constexpr const char* variable = "ALSA_CONFIG_PATH";
}

AlsaSetup::AlsaSetup(const std::string& text) {
    WriteFile("alsa.conf", text + "\n");
    setenv(variable, (std::filesystem::current_path() / "alsa.conf").c_str(), 1);
    snd_config_update_free_global();
}

AlsaSetup::~AlsaSetup() {
    unsetenv(variable);
    snd_config_update_free_global();
}
