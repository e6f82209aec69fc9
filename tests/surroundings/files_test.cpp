// The real program with one of its data files spoilt, and with a driver that lacks one of the entry
// points that the engine fetches.

#include "engine/core/GLExtensions.h"
#include "tests/support/log_page.h"
#include "tests/surroundings/steps.h"
#include "tests/system/datafiles.h"
#include "tests/system/expected_page.h"
#include "tools/probe/preload.h"

namespace {

constexpr double patience = 60.0; // seconds, for four frames

class Spoilt : public NimbrelTest {
protected:
    void ExpectPlaysToTheEnd() {
        Start({{"NIMBREL_PROBE_TIMES", "0,30,60,119"}});
        WaitForOrderlyEnd(patience);
        EXPECT_GE(Reported("quit_time"), runningTime);
        EXPECT_EQ(Reported("errors"), 0) << report["first_error"];
        EXPECT_TRUE(Tools::ReadLogPage().complete);
    }

    static bool IsReported(const std::string& file) {
        const std::vector<LogRow> errors = Tools::ReadLogPage().Errors();
        return std::any_of(errors.begin(), errors.end(),
                           [&](const LogRow& row) { return row.file == file; });
    }
};

class SpoiltFile : public Spoilt, public ::testing::WithParamInterface<std::string> {
protected:
    void SetUp() override { MakeDataFiles(); }
};

class Driver : public NimbrelTest {
protected:
    void ExpectRefusalWithout(const std::string& entryPoint) {
        const Surroundings::Stage stage = Surroundings::Make("beneath " + entryPoint);
        Tools::Environment added = stage.added;
        added["LD_PRELOAD"] = stage.preloaded.front();
        Start(added);
        WaitForOrderlyEnd(patience);
        EXPECT_TRUE(
            Same(ReadLogText(), OpenPage({{"InitEngine", "ERROR", "GLExtentions"}}) + footer));
    }
};

} // namespace

TEST_P(SpoiltFile, Without_a_byte_is_named_in_the_log_and_the_show_goes_on) {
    if (!std::filesystem::exists(GetParam()))
        GTEST_SKIP() << "the tiny data has no music";
    Surroundings::SpoilFile("empty", GetParam());
    ExpectPlaysToTheEnd();
    std::filesystem::path named = GetParam();
    if (named.extension() == ".frag") // a program goes by the name of its vertex shader
        named.replace_extension(".vert");
    EXPECT_EQ(IsReported(named), GetParam() != Assets::music);
}

TEST_P(SpoiltFile, That_nobody_may_read_is_named_in_the_log_and_the_show_goes_on) {
    if (!std::filesystem::exists(GetParam()))
        GTEST_SKIP() << "the tiny data has no music";
    Surroundings::SpoilFile("unreadable", GetParam());
    ExpectPlaysToTheEnd();
    EXPECT_EQ(IsReported(GetParam()), GetParam() != Assets::music);
}

// What is left of it is shown, or its error stands in the log: which, tests/hostile tells.
TEST_P(SpoiltFile, That_is_cut_in_half_lets_the_show_go_on) {
    if (!std::filesystem::exists(GetParam()))
        GTEST_SKIP() << "the tiny data has no music";
    Surroundings::SpoilFile("half", GetParam());
    ExpectPlaysToTheEnd();
}

INSTANTIATE_TEST_SUITE_P(EachOf, SpoiltFile, ::testing::ValuesIn(DataFiles()),
                         [](const auto& file) { return NameForTests(file.param); });

TEST_F(Driver, Without_any_one_entry_point_ends_the_show_at_once_and_the_log_says_so) {
    for (const ExtensionGroup& group : extensionGroups)
        for (const char** name = group.names; *name != nullptr; ++name) {
            SCOPED_TRACE(*name);
            ExpectRefusalWithout(*name);
        }
}
