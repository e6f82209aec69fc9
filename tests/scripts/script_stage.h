#pragma once

#include "tests/support/scratch.h"
#include "tools/stage/process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

/// The real scripts, copied into a scratch folder, among stand-ins for programs that would take
/// minutes or change the machine: cmake does nothing, dpkg-query knows every package, and a test
/// may add others. The working directory is the copy's root.
class ScriptStage : public ::testing::Test {
protected:
    /// `root`: the copy's name within the scratch folder.
    explicit ScriptStage(const std::string& root = "nimbrel");

    /// Writes a shell script.
    static void WriteScript(const std::filesystem::path& path, const std::string& text);

    /// A stand-in for the program of this name. First of all it notes its name and words in the
    /// file `calls`.
    void StandIn(const std::string& name, const std::string& text = "");

    /// What was called so far, a line for each call: of all stand-ins, or of that of this name.
    std::string Calls(const std::string& name = "") const;

    /// The environment in which stand-ins are found first and there is no display; `more` goes
    /// before everything else.
    Tools::Environment Around(Tools::Environment more = {}) const;

    /// Runs one of the copied scripts to its end.
    Tools::Ending Run(const std::string& script, std::vector<std::string> words = {},
                      const Tools::Environment& more = {}) const;

    /// Waits until the file is there and not empty; fails the test after ten seconds.
    static void Await(const std::filesystem::path& file);

    ScratchDir scratch;
    const std::filesystem::path standIns; ///< their folder
    const std::filesystem::path calls;
};

/// Every script that a user may call, as seen from the repository's root.
std::vector<std::string> AllScripts();
