#include "engine/core/logmanager.h"

#include "tests/support/log_page.h"
#include "tests/support/scratch.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <optional>
#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using Vell::Log;

namespace {

std::optional<std::time_t> fakeTime;

} // namespace

/// Takes the place of the C library's function, so that the date can be chosen.
extern "C" std::time_t time(std::time_t* result) noexcept {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const std::time_t seconds = fakeTime.value_or(now.tv_sec);
    if (result != nullptr)
        *result = seconds;
    return seconds;
}

namespace {

/// Runs `program` in a process of its own, up to the normal exit that destroys the log. The log is
/// never touched in this process, so that each run starts with a fresh one; the page lands in the
/// scratch directory of the test.
template <class Program>
void RunToExit(Program program) {
    EXPECT_EXIT(
        {
            program();
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

const std::string header =
    "<html>\n"
    "<head>\n"
    "    <meta http-equiv=\"Content-Type\" content=\"text/html; charset=UTF-8\"  />\n"
    "    <title>Vell Engine</title>\n"
    "</head>\n"
    "\n"
    "\n"
    "<body bgcolor=\"#000000\">\n"
    "    <center><b><font color=\"#FFFFFF\" size=\"+1\">Vell Engine - Logger "
    "</font></b></center><br>\n"
    "    <table border bgcolor=\"#666666\" cellspacing=\"0\" cellpadding=\"2\">\n"
    "    <tr align=LEFT valign=TOP>\n"
    "    <th><font color=\"#FFFFFF\">Section</font></th>\n"
    "    <th><font color=\"#FFFFFF\">Status</font></th>\n"
    "    <th><font color=\"#FFFFFF\">File</font></th>\n"
    "    </tr>\n";

const std::string footer = "    </table>\n"
                           "</body>\n"
                           "</html>\n";

class LogDeathTest : public ::testing::Test {
    ScratchDir scratch;
};

TEST_F(LogDeathTest, Writes_header_rows_and_footer_byte_for_byte) {
    RunToExit([] {
        Log::GetInstance().Write("Image", "LOADED", "Data/Gfx/sky.png");
        Log::GetInstance().Write("Shader", "ERROR", "Data/Gfx/city.vert");
        Log::GetInstance().Write("Demo", "STARTED", "100%");
    });
    const std::string rows =
        "    <tr>\n"
        "    <td bgcolor=\"#CCCCC\" width =\"15%\">Image</td>\n"
        "    <td bgcolor=\"#CCCCC\" width =\"5%\"><font color=\"#006600\">LOADED</font></td>\n"
        "    <td bgcolor=\"#CCCCC\" width =\"80%\">Data/Gfx/sky.png</td>\n"
        "    </tr>\n"
        "\n"
        "    <tr>\n"
        "    <td bgcolor=\"#999999\" width =\"15%\">Shader</td>\n"
        "    <td bgcolor=\"#999999\" width =\"5%\"><font color=\"#660000\">ERROR</font></td>\n"
        "    <td bgcolor=\"#999999\" width =\"80%\">Data/Gfx/city.vert</td>\n"
        "    </tr>\n"
        "\n"
        "    <tr>\n"
        "    <td bgcolor=\"#CCCCC\" width =\"15%\">Demo</td>\n"
        "    <td bgcolor=\"#CCCCC\" width =\"5%\"><font color=\"#000000\">STARTED</font></td>\n"
        "    <td bgcolor=\"#CCCCC\" width =\"80%\">100%</td>\n"
        "    </tr>\n"
        "\n";
    EXPECT_EQ(ReadLogText(), header + rows + footer);
}

TEST_F(LogDeathTest, Makes_an_empty_page_on_first_use_and_closes_it_at_exit) {
    RunToExit([] {
        Log::GetInstance();
        if (ReadLogText() != header)
            std::exit(1);
    });
    EXPECT_EQ(ReadLogText(), header + footer);
}

TEST_F(LogDeathTest, Has_every_row_on_disk_when_the_program_dies) {
    EXPECT_EXIT(
        {
            Log::GetInstance().Write("Image", "LOADED", "last.png");
            std::_Exit(3);
        },
        ::testing::ExitedWithCode(3), "");
    EXPECT_THAT(ReadLogRows(), ElementsAre(LogRow{"Image", "LOADED", "last.png"}));
    EXPECT_THAT(ReadLogText(), ::testing::EndsWith("</tr>\n\n"));
}

TEST_F(LogDeathTest, Truncates_the_page_of_an_earlier_run) {
    RunToExit([] { Log::GetInstance().Write("Run", "OK", "first"); });
    RunToExit([] { Log::GetInstance().Write("Run", "OK", "second"); });
    EXPECT_THAT(ReadLogRows(), ElementsAre(LogRow{"Run", "OK", "second"}));
    EXPECT_THAT(ReadLogText(), ::testing::StartsWith(header));
}

TEST_F(LogDeathTest, Colours_a_status_by_its_exact_word) {
    struct Case {
        const char* status;
        const char* colour;
    };
    static constexpr Case cases[] = {
        {"LOADED", "#006600"}, {"FREE", "#006600"},   {"OK", "#006600"},     {"ERROR", "#660000"},
        {"ok", "#000000"},     {"Loaded", "#000000"}, {"ERRORS", "#000000"}, {"", "#000000"},
    };
    RunToExit([] {
        for (const Case& c : cases)
            Log::GetInstance().Write("s", c.status, "f");
    });
    for (const Case& c : cases)
        EXPECT_THAT(ReadLogText(), HasSubstr(std::string("<font color=\"") + c.colour + "\">" +
                                             c.status + "</font>"));
}

TEST_F(LogDeathTest, Dumps_text_between_the_rows_without_changing_their_alternation) {
    RunToExit([] {
        Log& log = Log::GetInstance();
        log.Write("a", "OK", "1");
        log << "0:3: error: syntax error"
            << "second line";
        log.Write("b", "OK", "2");
    });
    EXPECT_THAT(ReadLogText(), HasSubstr("    </tr>\n"
                                         "\n"
                                         "0:3: error: syntax error\n"
                                         "second line\n"
                                         "    <tr>\n"
                                         "    <td bgcolor=\"#999999\" width =\"15%\">b</td>\n"));
}

TEST_F(LogDeathTest, Dumps_text_of_any_length) {
    RunToExit([] { Log::GetInstance() << "" << std::string(100000, 'm') << "end"; });
    EXPECT_EQ(ReadLogText(), header + "\n" + std::string(100000, 'm') + "\nend\n" + footer);
}

TEST_F(LogDeathTest, Writes_texts_as_they_are) {
    RunToExit([] { Log::GetInstance().Write("%s%n", "%d", "<b>100% & more</b>"); });
    EXPECT_THAT(ReadLogRows(), ElementsAre(LogRow{"%s%n", "%d", "<b>100% & more</b>"}));
}

TEST_F(LogDeathTest, Holds_1800_characters_in_one_row) {
    RunToExit([] {
        Log::GetInstance().Write(std::string(600, 's'), std::string(600, 't'),
                                 std::string(600, 'f'));
        Log::GetInstance().Write("", "", std::string(1800, 'f'));
    });
    EXPECT_THAT(ReadLogRows(), ElementsAre(LogRow{std::string(600, 's'), std::string(600, 't'),
                                                  std::string(600, 'f')},
                                           LogRow{"", "", std::string(1800, 'f')}));
}

TEST_F(LogDeathTest, Cuts_longer_texts_and_still_closes_the_row) {
    RunToExit([] {
        Log::GetInstance().Write("Image", "ERROR", std::string(100000, 'f'));
        Log::GetInstance().Write(std::string(100000, 's'), "OK", "lost");
    });
    // 1800 - 5 - 5 = 1790 characters are left for the file; the second row has none left after the
    // section, but keeps the colour of its status.
    EXPECT_THAT(ReadLogRows(), ElementsAre(LogRow{"Image", "ERROR", std::string(1790, 'f')},
                                           LogRow{std::string(1800, 's'), "", ""}));
    EXPECT_THAT(ReadLogText(), HasSubstr("<font color=\"#006600\"></font>"));
    EXPECT_THAT(ReadLogText(), ::testing::EndsWith("    </tr>\n\n" + footer));
}

TEST_F(LogDeathTest, Goes_on_silently_while_the_page_cannot_be_opened) {
    RunToExit([] {
        // A directory of the page's name is something no user, root included, can open for writing.
        std::filesystem::create_directory("Vell_log.html");
        Log& log = Log::GetInstance();
        log.Write("lost", "OK", "1");
        log << "lost";
        std::filesystem::remove("Vell_log.html");
        log.Write("kept", "OK", "2");
    });
    EXPECT_THAT(ReadLogRows(), ElementsAre(LogRow{"kept", "OK", "2"}));
    // Every row counts, the one that was lost as well: this is the second.
    EXPECT_THAT(ReadLogText(), HasSubstr("<td bgcolor=\"#999999\" width =\"15%\">kept</td>"));
}

TEST_F(LogDeathTest, Writes_where_the_program_works_at_that_moment) {
    RunToExit([] {
        std::filesystem::create_directory("elsewhere");
        Log::GetInstance().Write("here", "OK", "1");
        std::filesystem::current_path("elsewhere");
        Log::GetInstance().Write("there", "OK", "2");
        std::filesystem::current_path("..");
        Log::GetInstance().Write("here", "OK", "3");
    });
    EXPECT_THAT(ReadLogRows(), ElementsAre(LogRow{"here", "OK", "1"}, LogRow{"here", "OK", "3"}));
    std::filesystem::current_path("elsewhere");
    EXPECT_THAT(ReadLogRows(), ElementsAre(LogRow{"there", "OK", "2"}));
    std::filesystem::current_path("..");
}

TEST_F(LogDeathTest, Is_one_instance) {
    RunToExit([] {
        const Log* first = &Log::GetInstance();
        std::exit(first == &Log::GetInstance() ? 0 : 1);
    });
    static_assert(!std::is_polymorphic_v<Log>);
    static_assert(!std::is_copy_constructible_v<Log> && !std::is_copy_assignable_v<Log>);
}

TEST(LogDate, Is_the_local_day_month_and_year) {
    fakeTime = 1267790400; // 5 March 2010, 12:00 UTC
    struct Case {
        const char* zone;
        const char* date;
    };
    const Case cases[] = {
        {"UTC0", "05/03/2010"},
        {"EAST-14", "06/03/2010"}, // 14 hours ahead: 02:00 on the next day
        {"WEST+13", "04/03/2010"}, // 13 hours behind: 23:00 on the day before
    };
    for (const Case& c : cases) {
        setenv("TZ", c.zone, 1);
        tzset();
        EXPECT_EQ(Log::GetDate(), c.date) << c.zone;
    }
    unsetenv("TZ");
    tzset();
    fakeTime.reset();
}

} // namespace
