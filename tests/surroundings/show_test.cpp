// The real program in surroundings that are not as they should be: each row of show.table.

#include "tests/support/log_page.h"
#include "tests/surroundings/steps.h"
#include "tests/surroundings/table.h"
#include "tests/system/datafiles.h"
#include "tools/picture/picture.h"

#include <X11/keysym.h>

#include <algorithm>
#include <ostream>
#include <set>

namespace fs = std::filesystem;

using Tools::Picture;

namespace Surroundings {

/// For the test's messages.
std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << row.what;
}

} // namespace Surroundings

namespace {

using Surroundings::Row;
using Surroundings::Stage;

constexpr const char* page = "Vell_log.html";
constexpr double patience = 120.0; // seconds; loading, and what a queue still holds
constexpr unsigned char dark = 8;  // of 255

/// "ERROR" and the sections that say so, or "no ERROR"; "no page" where the page is none.
std::string LogInWords() {
    if (!fs::is_regular_file(page) || !Tools::ReadLogPage().complete)
        return "no page";
    std::set<std::string> sections;
    for (const LogRow& row : Tools::ReadLogPage().Errors())
        sections.insert(row.section);
    std::string words;
    for (const std::string& section : sections)
        words += (words.empty() ? "ERROR " : ", ") + section;
    return words.empty() ? "no ERROR" : words;
}

bool IsDark(const Picture& picture) {
    return std::all_of(picture.bytes.begin(), picture.bytes.end(),
                       [](unsigned char value) { return value < dark; });
}

class Surrounded : public NimbrelTest, public ::testing::WithParamInterface<Row> {
protected:
    static constexpr const char* steppedShot = "frame_0060.000.ppm";
    static constexpr const char* realShot = "frame_0000.500.ppm";

    /// The music would be heard in real time, whatever the frames' time is, and seen in the
    /// picture.
    static void MakeData() {
        MakeDataFiles();
        fs::remove(Assets::music);
    }

    bool EndsByEscape() const { return GetParam().ends == "by Escape"; }

    void StartShow(const Stage& stage) {
        Tools::Environment added = stage.added;
        std::string libraries =
            Tools::Preloadable(NIMBREL_BINARY_DIR "/tools/probe/libnimbrel_probe.so");
        for (const std::string& library : stage.preloaded)
            libraries += ':' + library;
        added.insert({{"LD_PRELOAD", libraries}, {"NIMBREL_PROBE_SHOT_DIR", "."}});
        if (EndsByEscape())
            added["NIMBREL_PROBE_SHOTS"] = "0.5";
        else
            added.insert({{"NIMBREL_PROBE_TIMES", stage.times}, {"NIMBREL_PROBE_SHOTS", "60"}});
        Start(added);
    }

    /// Plays a show that nothing disturbs, for its picture, unless that has been done.
    void PlayUndisturbed() {
        if (!undisturbed.bytes.empty())
            return;
        const Tools::ScratchWorkingFolder folder;
        MakeData();
        StartShow(Stage());
        WaitForOrderlyEnd(patience);
        undisturbed = Tools::ReadPpm(steppedShot);
    }

    /// What the viewer has seen of it, as far as a single picture tells.
    std::string SeenInWords() const {
        const char* shot = EndsByEscape() ? realShot : steppedShot;
        if (!fs::exists(shot) || fs::file_size(shot) == 0)
            return "nothing";
        const Picture picture = Tools::ReadPpm(shot);
        if (IsDark(picture))
            return "darkness";
        return EndsByEscape() || picture == undisturbed ? "the show" : "less";
    }

    /// Lets happen what the row tells, and ends the show. A key that meets a full queue is lost, so
    /// it is pressed until the show ends.
    void DoEvents(const Stage& stage) {
        ASSERT_NO_FATAL_FAILURE(WaitForPlaying());
        ForeignWindow window(display->Name(), caption, patience);
        for (const auto& event : stage.events)
            event(*run, window);
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!fs::exists(realShot) && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        while (run->Running() && std::chrono::steady_clock::now() < end) {
            window.PressKey(XK_Escape);
            std::this_thread::sleep_for(std::chrono::milliseconds(200));
        }
    }

    /// Starts further shows, each in a folder of its own.
    void StartBeside(const Stage& stage) {
        const fs::path here = fs::current_path();
        for (int i = 0; i < stage.beside; ++i) {
            fs::create_directory("beside" + std::to_string(i));
            fs::current_path("beside" + std::to_string(i));
            MakeData();
            StartShow(stage);
            others.push_back(std::move(run));
            fs::current_path(here);
        }
    }

    /// Fails unless they end as the first one does.
    void ExpectSameOfOthers() {
        const fs::path here = fs::current_path();
        for (std::size_t i = 0; i < others.size(); ++i) {
            run = std::move(others[i]);
            fs::current_path("beside" + std::to_string(i));
            ExpectWhatTheRowSays();
            fs::current_path(here);
        }
    }

    void ExpectWhatTheRowSays() {
        const Tools::Ending end = WaitForOrderlyEnd(patience);
        EXPECT_EQ(Reported("quit_time") < runningTime, EndsByEscape());
        EXPECT_EQ(SeenInWords(), GetParam().sees);
        EXPECT_EQ(LogInWords(), GetParam().log);
    }

    static inline Picture undisturbed;
    std::vector<std::unique_ptr<Tools::Process>> others;
};

} // namespace

TEST_P(Surrounded, Show_is_what_the_table_says) {
    if (!EndsByEscape())
        PlayUndisturbed();
    MakeData();
    const Stage stage = Surroundings::Make(GetParam().made);
    StartBeside(stage);
    StartShow(stage);
    if (EndsByEscape()) {
        ASSERT_NO_FATAL_FAILURE(DoEvents(stage));
    }
    ExpectWhatTheRowSays();
    ExpectSameOfOthers();
    if (GetParam().made.starts_with("sound")) {
        EXPECT_TRUE(fs::exists("heard.raw")) << "the device was not even opened";
    }
}

INSTANTIATE_TEST_SUITE_P(Where, Surrounded, ::testing::ValuesIn(Surroundings::ReadTable()),
                         [](const auto& row) {
                             std::string name = row.param.what;
                             std::erase(name, ',');
                             std::erase(name, '.');
                             std::replace(name.begin(), name.end(), ' ', '_');
                             return name;
                         });
