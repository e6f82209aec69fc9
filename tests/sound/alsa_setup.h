#pragma once

#include <string>

/// A configuration of ALSA for one test: while it lives, there are only the devices named in
/// `text`. Writes "alsa.conf" into the working directory. One at a time.
class AlsaSetup {
public:
    explicit AlsaSetup(const std::string& text);
    ~AlsaSetup();
    AlsaSetup(const AlsaSetup&) = delete;
    AlsaSetup& operator=(const AlsaSetup&) = delete;
};

/// The default device takes everything at once and drops it.
extern const char* const nullDevice;

/// The default device writes what it is given to "out.raw", and takes it at once.
extern const char* const fileDevice;

/// The default device is a sound card that is not there.
extern const char* const missingCard;
