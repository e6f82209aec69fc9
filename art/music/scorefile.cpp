#include "art/music/scorefile.h"

#include "art/music/soundfile.h"

#include <cstdio>
#include <fstream>
#include <sstream>

namespace Music {

bool ReadScore(const std::string& path, Score& score) {
    const std::ifstream file(path);
    if (!file.is_open()) {
        std::fprintf(stderr, "%s: cannot be read\n", path.c_str());
        return false;
    }
    std::ostringstream text;
    text << file.rdbuf();
    std::string message;
    if (!ParseScore(text.str(), score, message)) {
        std::fprintf(stderr, "%s:%s\n", path.c_str(), message.c_str());
        return false;
    }
    return true;
}

bool ReadPiece(const std::string& scorePath, const std::string& wavPath, Score& score,
               Stereo& signal) {
    if (!ReadScore(scorePath, score))
        return false;
    if (!ReadWav(wavPath, signal)) {
        std::fprintf(stderr, "%s: no stereo WAV of 44.1 kHz\n", wavPath.c_str());
        return false;
    }
    return true;
}

} // namespace Music
