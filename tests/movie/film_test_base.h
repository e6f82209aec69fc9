#pragma once

#include "tests/support/demo_data.h"
#include "tests/support/scratch.h"
#include "tools/stage/display.h"
#include "tools/stage/process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

/// True when this test, and with it the program it runs, is built with the address sanitizer.
#ifdef __SANITIZE_ADDRESS__
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

inline const std::string filmProgram = NIMBREL_BINARY_DIR "/tools/movie/nimbrel_film";

/// Runs the program behind ./movie in a scratch directory, on a display of its own. There is never
/// a sound device.
class FilmTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { display = std::make_unique<Tools::VirtualDisplay>(); }
    static void TearDownTestSuite() { display.reset(); }

    /// Puts a link "Data" to the published assets into the scratch directory; under the sanitizers,
    /// where loading them takes seconds, tiny ones.
    static void LinkData() {
        if (sanitized)
            MakeDemoData();
        else
            std::filesystem::create_directory_symlink(NIMBREL_SOURCE_DIR "/Data", "Data");
    }

    /// Starts it; Wait() for its end.
    static std::unique_ptr<Tools::Process> Start(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), filmProgram);
        return std::make_unique<Tools::Process>(Tools::Command{
            .arguments = arguments,
            .added = {{"DISPLAY", display->Name()}, {"ALSA_CONFIG_PATH", "/dev/null"}}});
    }

    /// Runs it to its end.
    static Tools::Ending Film(const std::vector<std::string>& arguments, double patience = 200.0) {
        return Start(arguments)->Wait(patience);
    }

    /// Runs it; the test fails unless it succeeds.
    static void MustFilm(const std::vector<std::string>& arguments, double patience = 200.0) {
        const Tools::Ending end = Film(arguments, patience);
        ASSERT_FALSE(end.timedOut);
        ASSERT_EQ(end.exitStatus, 0) << end.errors;
    }

    /// What another program writes; the test fails unless it succeeds.
    static std::string Output(const std::vector<std::string>& command) {
        const Tools::Ending end = Tools::Run({.arguments = command}, 100.0);
        EXPECT_EQ(end.exitStatus, 0) << command[0] << ": " << end.errors;
        return end.output;
    }

    /// Fingerprints of all frames of a film, one a line.
    static std::string FrameHashes(const std::string& film) {
        std::istringstream lines(
            Output({"/usr/bin/env", "ffmpeg", "-v", "error", "-i", film, "-map", "0:v", "-f",
                    "framemd5", "-pix_fmt", "rgb24", "-"}));
        std::string hashes;
        for (std::string line; std::getline(lines, line);)
            if (line.find('#') != 0)
                hashes += line.substr(line.rfind(' ') + 1) + '\n';
        return hashes;
    }

    /// The film's sound as numbers: left and right in turn, 16 bits.
    static std::string Samples(const std::string& film) {
        Output({"/usr/bin/env", "ffmpeg", "-v", "error", "-y", "-i", film, "-map", "0:a", "-f",
                "s16le", "sound.raw"});
        return ReadFile("sound.raw");
    }

    /// "name=value" lines that ffprobe tells of the picture or the sound ("v", "a") of a film.
    static std::map<std::string, std::string> Facts(const std::string& film,
                                                    const std::string& stream) {
        std::istringstream lines(
            Output({"/usr/bin/env", "ffprobe", "-v", "error", "-select_streams", stream,
                    "-count_packets", "-show_entries",
                    "stream=codec_name,width,height,pix_fmt,nb_read_packets,"
                    "r_frame_rate,start_time,duration",
                    "-of", "default=noprint_wrappers=1", film}));
        std::map<std::string, std::string> facts;
        for (std::string line; std::getline(lines, line);)
            if (const std::size_t equals = line.find('='); equals != std::string::npos)
                facts[line.substr(0, equals)] = line.substr(equals + 1);
        return facts;
    }

    static inline std::unique_ptr<Tools::VirtualDisplay> display;

private:
    ScratchDir scratch;
};
