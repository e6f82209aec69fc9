// The whole production, once, as a viewer sees it: in real time, from the start to its own end.

#include "tests/support/demo_data.h"
#include "tests/support/log_page.h"
#include "tests/support/x11_events.h"
#include "tests/system/nimbrel_test.h"

#include <algorithm>

namespace {

long CountRows(const std::vector<LogRow>& rows, const LogRow& row) {
    return std::count(rows.begin(), rows.end(), row);
}

bool Contains(const std::vector<std::string>& list, const std::string& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

/// How often a loaded resource must be reported as freed.
long FreesExpected(const LogRow& loaded) {
    const std::string& file = loaded.file;
    // Each wisp's material frees the handles they share.
    if (loaded.section == "Shader")
        return file.rfind("Data/Gfx/Wisp/", 0) == 0 ? 3 : 1;
    // Textures of sub-meshes live in the registry, which owns nothing: they are never freed.
    const bool lightmap = file.size() >= 12 && file.substr(file.size() - 12) == "lightmap.jpg";
    if (loaded.section == "Image" && !lightmap)
        return Contains(DemoFiles(), file) ? 1 : 0;
    return 1;
}

/// One run for all the tests below.
struct Performance {
    int width = 0;
    int height = 0;
    Tools::Ending end;
    std::string page;
};

class FullRun : public NimbrelTest {
protected:
    void SetUp() override {
        if (!performance)
            Play();
        report = finalReport;
        rows = Tools::ParseLogPage(performance->page).rows;
    }

    void Play() {
        constexpr double patience = 240.0; // loading, 118.252 s, and a busy machine
        performance = std::make_unique<Performance>();
        LinkData();
        if (sanitized)
            StartStepped(0.25);
        else
            Start();
        const ForeignWindow window(display->Name(), caption, 30.0);
        performance->width = window.Width();
        performance->height = window.Height();
        performance->end = run->Wait(patience);
        performance->page = ReadLogText();
        finalReport = ReadReport(reportFile);
    }

    static inline std::unique_ptr<Performance> performance;
    static inline std::map<std::string, std::string> finalReport;
    std::vector<LogRow> rows;
};

} // namespace

TEST_F(FullRun, Ends_by_itself_with_exit_status_0) {
    EXPECT_FALSE(performance->end.timedOut);
    EXPECT_EQ(performance->end.signal, 0);
    EXPECT_EQ(StatusOf(performance->end), 0);
}

TEST_F(FullRun, Says_nothing_on_the_terminal) {
    EXPECT_EQ(performance->end.output, "");
    EXPECT_EQ(Complaint(performance->end), "");
}

TEST_F(FullRun, Lasts_118_252_seconds) {
    constexpr double clockDistance = 0.01; // the probe's zero is the first poll, not the demo clock
    EXPECT_LT(Reported("last_frame_time"), runningTime);
    EXPECT_GE(Reported("quit_time"), runningTime - clockDistance);
    if (!sanitized) {
        const double lastFrame = Reported("longest_ms") / 1000.0;
        constexpr double cleaningUp = 1.0;
        EXPECT_LT(Reported("quit_time"), runningTime + lastFrame + cleaningUp);
    }
}

TEST_F(FullRun, Plays_moving_pictures) {
    // A slide show would last 118 s too. A software renderer beside other tests still makes 9
    // frames a second on two cores; the stepped run draws 473 frames, whatever the machine.
    EXPECT_GT(Reported("frames"), 400);
    EXPECT_EQ(Reported("frames"), Reported("polls")) << "one event is polled in every frame";
}

TEST_F(FullRun, Opens_a_window_of_960_by_89_pixels_with_its_caption) {
    EXPECT_EQ(performance->width, 960);
    EXPECT_EQ(performance->height, 89);
    EXPECT_EQ(Reported("width"), 960);
    EXPECT_EQ(Reported("height"), 89);
    EXPECT_EQ(Reported("full_screen"), 0);
    EXPECT_EQ(report["caption"], caption);
}

TEST_F(FullRun, Hides_the_mouse_cursor) {
    EXPECT_EQ(Reported("cursor_shown"), 0);
}

TEST_F(FullRun, Makes_no_OpenGL_error_in_any_frame) {
    EXPECT_EQ(Reported("errors"), 0)
        << report["first_error"] << " in frame " << report["first_error_frame"];
}

TEST_F(FullRun, Leaves_a_complete_log_page_without_errors) {
    const std::string footer = "    </table>\n</body>\n</html>\n";
    const std::string& page = performance->page;
    EXPECT_EQ(page.rfind("<html>\n", 0), 0u);
    ASSERT_GE(page.size(), footer.size());
    EXPECT_EQ(page.substr(page.size() - footer.size()), footer);
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(rows.front().section, "InitEngine");
    EXPECT_EQ(rows.front().status, "OK");
    for (const LogRow& row : rows)
        EXPECT_NE(row.status, "ERROR") << row.section << ' ' << row.file;
}

TEST_F(FullRun, Loads_every_file_of_the_production) {
    for (const std::string& file : DemoFiles()) {
        if (file == "Data/Musics/Quorrel.mp3")
            continue; // the music has no row in the log
        const bool loaded = std::any_of(rows.begin(), rows.end(), [&](const LogRow& row) {
            return row.status == "LOADED" && row.file.find(file) != std::string::npos;
        });
        EXPECT_TRUE(loaded) << file;
    }
}

TEST_F(FullRun, Frees_what_it_loaded_as_often_as_it_should) {
    for (const LogRow& row : rows) {
        if (row.status == "LOADED") {
            EXPECT_EQ(CountRows(rows, {row.section, "FREE", row.file}), FreesExpected(row))
                << row.section << ' ' << row.file;
        }
        if (row.status == "FREE") {
            EXPECT_EQ(CountRows(rows, {row.section, "LOADED", row.file}), 1)
                << row.section << ' ' << row.file;
        }
    }
}
