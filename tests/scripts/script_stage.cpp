#include "tests/scripts/script_stage.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

namespace fs = std::filesystem;

namespace {

const fs::path source = NIMBREL_SOURCE_DIR;

bool IsScript(const fs::directory_entry& entry) {
    const auto mayRun = fs::perms::owner_exec;
    if (!entry.is_regular_file() || (entry.status().permissions() & mayRun) != mayRun)
        return false;
    std::string first;
    std::ifstream file(entry.path());
    std::getline(file, first);
    return first == "#!/usr/bin/env bash";
}

void CopyInto(const fs::path& root, const fs::path& name) {
    fs::create_directories((root / name).parent_path());
    fs::copy(source / name, root / name,
             fs::copy_options::recursive | fs::copy_options::skip_existing);
}

} // namespace

std::vector<std::string> AllScripts() {
    std::vector<std::string> scripts;
    for (const fs::directory_entry& entry : fs::directory_iterator(source))
        if (IsScript(entry))
            scripts.push_back(entry.path().filename());
    for (const char* folder :
         {"art", "bench", "docs", "gallery", "packaging", "tests", "tools", "web"})
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(source / folder))
            if (IsScript(entry) && entry.path().extension() != ".sh") // those are tests themselves
                scripts.push_back(fs::relative(entry.path(), source));
    std::erase(scripts, "docs/api/filter"); // which Doxygen calls
    std::sort(scripts.begin(), scripts.end());
    return scripts;
}

ScriptStage::ScriptStage(const std::string& root)
    : standIns(scratch.Path() / "bin"), calls(scratch.Path() / "calls.txt") {
    fs::create_directory(root);
    fs::current_path(root);
    CopyInto(".", "packaging");
    for (const char* table : {"art/city/steps.h", "gallery/programs"}) // which scripts read
        CopyInto(".", table);
    for (const std::string& script : AllScripts())
        CopyInto(".", script);
    StandIn("cmake");
    StandIn("dpkg-query", "shift 2; printf '%s=ii  ' \"$@\""); // all is installed
    WriteFile(calls, "");
}

void ScriptStage::WriteScript(const fs::path& path, const std::string& text) {
    WriteFile(path, "#!/bin/bash\n" + text + "\n");
    fs::permissions(path, fs::perms::owner_all);
}

void ScriptStage::StandIn(const std::string& name, const std::string& text) {
    WriteScript(standIns / name, "echo \"" + name + " $*\" >>'" + calls.string() + "'\n" + text);
}

std::string ScriptStage::Calls(const std::string& name) const {
    std::string matching;
    std::ifstream lines(calls);
    for (std::string line; std::getline(lines, line);)
        if (name.empty() || line.starts_with(name + " "))
            matching += line + "\n";
    return matching;
}

Tools::Environment ScriptStage::Around(Tools::Environment more) const {
    more.insert({{"PATH", standIns.string() + ":" + std::getenv("PATH")},
                 {"DISPLAY", ""},
                 {"ALSA_CONFIG_PATH", "/dev/null"}});
    return more;
}

Tools::Ending ScriptStage::Run(const std::string& script, std::vector<std::string> words,
                               const Tools::Environment& more) const {
    words.insert(words.begin(), fs::absolute(script).string());
    return Tools::Run({.arguments = words, .added = Around(more)}, 60.0);
}

void ScriptStage::Await(const fs::path& file) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    std::error_code none;
    while (!fs::exists(file) || fs::file_size(file, none) == 0) {
        ASSERT_LT(std::chrono::steady_clock::now(), end) << file << " does not come";
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}
