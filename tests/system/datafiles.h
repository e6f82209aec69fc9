#pragma once

#include "demo/assets.h"
#include "tests/support/demo_data.h"
#include "tests/system/nimbrel_test.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

/// What the log can name: the kinds of file that the engine loads.
inline const std::set<std::string> loadedKinds = {".xt3dstatic", ".vert", ".frag", ".jpg", ".png"};

/// Every data file of the production, as "Data/..."; the tiny data's in the sanitizer build.
inline std::vector<std::string> DataFiles() {
    if (sanitized)
        return DemoFiles();
    const std::filesystem::path folder = RealData();
    const std::filesystem::path example =
        folder / "Gfx/Plain"; // to copy: the demo does not load it
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string kind = entry.path().extension();
        if (entry.is_regular_file() && entry.path().parent_path() != example &&
            (loadedKinds.count(kind) || kind == ".mp3"))
            files.push_back("Data" / std::filesystem::relative(entry.path(), folder));
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// Puts the data folder into the working directory, each file of its own: links to the real ones,
/// or the tiny ones, which have no music.
inline void MakeDataFiles() {
    if (sanitized) {
        MakeDemoData();
        return;
    }
    for (const std::string& name : DataFiles()) {
        std::filesystem::create_directories(std::filesystem::path(name).parent_path());
        std::filesystem::create_symlink(RealData() / std::filesystem::relative(name, "Data"), name);
    }
}

/// "Gfx_City_city_xt3dstatic" of "Data/Gfx/City/city.xt3dstatic", for the names of tests.
inline std::string NameForTests(const std::string& file) {
    std::string name = file.substr(std::string("Data/").size());
    std::replace_if(
        name.begin(), name.end(), [](char letter) { return !std::isalnum(letter); }, '_');
    return name;
}
