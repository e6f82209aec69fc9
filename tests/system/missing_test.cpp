// The production with files missing: it plays to its end without them, and the log names them.

#include "tests/support/log_page.h"
#include "tests/system/datafiles.h"

#include <algorithm>

#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

constexpr double step = 3.0;      // seconds a frame: every part of the show gets four frames
constexpr double patience = 60.0; // for a run that draws forty frames

const std::string musicTrack = Assets::music; // not the engine's: no row, and no sound

class Missing : public NimbrelTest {
protected:
    /// Whether a row says ERROR and names exactly this file.
    static bool IsReported(const std::string& file) {
        const std::vector<LogRow> rows = ReadLogRows();
        return std::any_of(rows.begin(), rows.end(), [&](const LogRow& row) {
            return row.status == "ERROR" && row.file == file;
        });
    }

    /// Fails unless the run ends in order and only at the demo's own end.
    void ExpectPlaysToTheEnd() {
        StartStepped(step);
        WaitForOrderlyEnd(patience);
        EXPECT_GT(Reported("last_frame_time"), runningTime - step);
        EXPECT_EQ(Reported("errors"), 0)
            << report["first_error"] << " in frame " << report["first_error_frame"];
        EXPECT_NE(ReadLogText().find("</html>\n"), std::string::npos) << "the log has no footer";
    }
};

class MissingFile : public Missing, public ::testing::WithParamInterface<std::string> {};

} // namespace

TEST_P(MissingFile, Is_named_in_the_log_and_the_show_goes_on) {
    MakeDataFiles();
    fs::remove(GetParam());
    ExpectPlaysToTheEnd();
    EXPECT_EQ(IsReported(GetParam()), GetParam() != musicTrack);
}

INSTANTIATE_TEST_SUITE_P(EachOf, MissingFile, ::testing::ValuesIn(DataFiles()),
                         [](const auto& file) { return NameForTests(file.param); });

TEST_F(Missing, Files_that_are_pipes_are_named_in_the_log_and_not_waited_for) {
    for (const std::string& file : DemoFiles()) {
        fs::create_directories(fs::path(file).parent_path());
        ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    }
    ExpectPlaysToTheEnd();
    for (const std::string& file : DemoFiles())
        EXPECT_EQ(IsReported(file), file != musicTrack) << file;
}

TEST_F(Missing, Data_folder_is_no_reason_to_stop) {
    ExpectPlaysToTheEnd();
    for (const std::string& file : DemoFiles()) {
        if (file != musicTrack) {
            EXPECT_TRUE(IsReported(file)) << file;
        }
    }
}
