#pragma once

#include "demo/assets.h"
#include "tests/support/demo_data.h"
#include "tests/support/scratch.h"
#include "tools/doctor/datafiles.h"
#include "tools/doctor/sha256.h"

#include <filesystem>
#include <fstream>
#include <string>

/// Data folders for the doctor to look at, made in the working directory, with their sums.

inline const char* const waterPicture = Assets::waterNormals;
inline const char* const musicTrack = Assets::music;

inline std::string SumOfFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return Doctor::SumOf(in);
}

/// Writes the sums of what lies in "Data" now.
inline void PublishData() {
    std::string sums;
    for (const Doctor::DataFile& file : Doctor::DataFiles())
        sums += SumOfFile(file.path) + "  " + file.path + "\n";
    WriteFile(Doctor::sumsFile, sums);
}

/// The tiny data, with a track that nobody can play.
inline void PublishTinyData() {
    MakeDemoData();
    WriteFile(musicTrack, "no music");
    PublishData();
}

/// The real data as it is at this moment, file by file, so that one of them can be changed.
inline void PublishRealData() {
    namespace fs = std::filesystem;
    const fs::path real = NIMBREL_SOURCE_DIR "/Data";
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(real)) {
        const fs::path place = "Data" / fs::relative(entry.path(), real);
        fs::create_directories(place.parent_path());
        if (entry.is_regular_file() && place != Doctor::sumsFile)
            fs::create_symlink(entry.path(), place);
    }
    PublishData();
}

/// Changes one bit in the middle of a file of the folder; what a link leads to stays as it is.
inline void Damage(const std::string& path) {
    std::string bytes = ReadFile(path);
    bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 1);
    std::filesystem::remove(path);
    WriteFile(path, bytes);
}
