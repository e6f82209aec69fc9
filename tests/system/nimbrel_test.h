#pragma once

#include "demo/show.h"
#include "tests/support/probe_report.h"
#include "tests/support/scratch.h"
#include "tools/probe/preload.h"
#include "tools/stage/display.h"
#include "tools/stage/process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <thread>

/// True when this test, and with it the program it runs, is built with the address sanitizer:
/// such runs are stepped and use small data, so that they end in time.
#ifdef __SANITIZE_ADDRESS__
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

/// The folder of the real assets; the environment variable NIMBREL_TEST_DATA names another.
inline std::filesystem::path RealData() {
    const char* other = std::getenv("NIMBREL_TEST_DATA");
    return other ? other : NIMBREL_SOURCE_DIR "/Data";
}

/// Runs the real program, as a viewer does, in a scratch directory on a display of its own, with
/// the probe of tools/probe preloaded. There is never a sound device.
class NimbrelTest : public ::testing::Test {
protected:
    static constexpr const char* caption = "Halvorn :: Nimbrel";
    static constexpr const char* reportFile = "report.txt";
    static constexpr double runningTime = Show::runningTime; // seconds

    static void SetUpTestSuite() { display = std::make_unique<Tools::VirtualDisplay>(); }
    static void TearDownTestSuite() { display.reset(); }

    /// Puts a link "Data" to the real assets into the scratch directory.
    static void LinkData() { std::filesystem::create_directory_symlink(RealData(), "Data"); }

    /// Starts the program on the display; `probe` adds the probe's own variables.
    void Start(Tools::Environment probe = {}) {
        probe.insert({"DISPLAY", display->Name()});
        StartAnywhere(probe);
    }

    /// Starts the program with these variables more and those fewer, DISPLAY among either.
    void StartAnywhere(Tools::Environment surroundings,
                       const std::vector<std::string>& removed = {}) {
        surroundings.insert(
            {{"LD_PRELOAD",
              Tools::Preloadable(NIMBREL_BINARY_DIR "/tools/probe/libnimbrel_probe.so")},
             {"NIMBREL_PROBE_REPORT", reportFile},
             {"ALSA_CONFIG_PATH", "/dev/null"},
             {"ASAN_OPTIONS", Extended("ASAN_OPTIONS", "verify_asan_link_order=0")},
             {"LSAN_OPTIONS",
              std::getenv("LSAN_OPTIONS") ? std::getenv("LSAN_OPTIONS") : suppressions}});
        run = std::make_unique<Tools::Process>(
            Tools::Command{.arguments = {NIMBREL_BINARY_DIR "/demo/nimbrel"},
                           .added = surroundings,
                           .removed = removed});
    }

    /// Starts it with time moving `step` seconds a frame.
    void StartStepped(double step) { Start({{"NIMBREL_PROBE_STEP", std::to_string(step)}}); }

    /// Waits until the first frame has been shown.
    void WaitForPlaying() {
        constexpr int patience = 60; // seconds for loading
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(patience);
        while (run->Running() && ReadReport(reportFile).empty() &&
               std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        ASSERT_TRUE(run->Running()) << "ended before it played: " << run->Wait(0).errors;
        ASSERT_FALSE(ReadReport(reportFile).empty()) << "does not play";
    }

    /// Waits for the end, fails unless it is an orderly one, and returns it.
    Tools::Ending WaitForOrderlyEnd(double seconds) {
        Tools::Ending end = run->Wait(seconds);
        report = ReadReport(reportFile);
        EXPECT_FALSE(end.timedOut) << "still running after " << seconds << " s";
        EXPECT_EQ(end.signal, 0);
        EXPECT_EQ(StatusOf(end), 0);
        EXPECT_EQ(end.output, "");
        EXPECT_EQ(Complaint(end), "");
        return end;
    }

    /// Whether the leak checker of the sanitizer build fell over a thread of the driver that was
    /// just ending, which happens now and then. By that time the program had ended in order; what
    /// it leaks, its other runs tell.
    static bool LeakCheckerFell(const Tools::Ending& end) {
        return sanitized &&
               end.errors.find("LeakSanitizer has encountered a fatal error") != std::string::npos;
    }

    /// The program's own exit status: 0, an orderly end's, where the leak checker fell after it.
    static int StatusOf(const Tools::Ending& end) {
        return LeakCheckerFell(end) ? 0 : end.exitStatus;
    }

    /// What the program said on standard error, without what the sanitizer build says there of
    /// itself: its line counters when they meet the counts of an older build, and its leak checker
    /// when that fell.
    static std::string Complaint(const Tools::Ending& end) {
        if (!sanitized)
            return end.errors;
        std::istringstream lines(end.errors);
        std::string kept;
        const bool fell = LeakCheckerFell(end);
        for (std::string line; std::getline(lines, line);)
            if (line.rfind("libgcov profiling error", 0) != 0 &&
                !(fell && (line.rfind("Tracer caught signal", 0) == 0 || line.rfind("==", 0) == 0)))
                kept += line + "\n";
        return kept;
    }

    /// A number of the probe's final report.
    double Reported(const std::string& name) const {
        const auto found = report.find(name);
        if (found != report.end())
            return std::stod(found->second);
        ADD_FAILURE() << "the report has no \"" << name << '"';
        return 0.0;
    }

    static inline std::unique_ptr<Tools::VirtualDisplay> display;
    std::unique_ptr<Tools::Process> run;
    std::map<std::string, std::string> report;

private:
    static constexpr const char* suppressions =
        "print_suppressions=0:suppressions='" NIMBREL_SOURCE_DIR "/tests/support/lsan.supp'";

    static std::string Extended(const char* variable, const std::string& addition) {
        const char* value = std::getenv(variable);
        return value ? std::string(value) + ":" + addition : addition;
    }

    ScratchDir scratch;
};
