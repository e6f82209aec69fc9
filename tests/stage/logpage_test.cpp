#include "tools/stage/logpage.h"

#include "engine/core/logmanager.h"
#include "tests/support/scratch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Tools::LogPage;
using Tools::LogRow;
using Tools::LogText;
using Tools::ParseLogPage;

namespace {

// Fifteen lines.
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

const std::string footer = "    </table>\n</body>\n</html>\n";

const char* const light = "#CCCCC";
const char* const dark = "#999999";
const char* const green = "#006600";
const char* const red = "#660000";
const char* const black = "#000000";

/// Six lines.
std::string Row(const std::string& grey, const std::string& section, const std::string& colour,
                const std::string& status, const std::string& file) {
    return "    <tr>\n    <td bgcolor=\"" + grey + "\" width =\"15%\">" + section +
           "</td>\n    <td bgcolor=\"" + grey + "\" width =\"5%\"><font color=\"" + colour + "\">" +
           status + "</font></td>\n    <td bgcolor=\"" + grey + "\" width =\"80%\">" + file +
           "</td>\n    </tr>\n\n";
}

const std::string first = Row(light, "InitEngine", green, "OK", "05/03/2010");
const std::string second = Row(dark, "Image", red, "ERROR", "Data/Gfx/a b.png");
const LogRow firstRow = {"InitEngine", "OK", "05/03/2010"};
const LogRow secondRow = {"Image", "ERROR", "Data/Gfx/a b.png"};

/// `text` with the one `old` in it replaced.
std::string Changed(std::string text, const std::string& old, const std::string& by) {
    return text.replace(text.find(old), old.size(), by);
}

} // namespace

TEST(LogPage, Is_read_row_by_row) {
    const LogPage page = ParseLogPage(header + first + second + footer);
    EXPECT_TRUE(page.hasHeader);
    EXPECT_TRUE(page.complete);
    EXPECT_THAT(page.rows, ElementsAre(firstRow, secondRow));
    EXPECT_THAT(page.texts, IsEmpty());
    EXPECT_EQ(page.problem, "");
    EXPECT_THAT(page.Errors(), ElementsAre(secondRow));
}

TEST(LogPage, Has_its_errors_told_each_once) {
    const std::string third = Row(light, "XT3DStatic", red, "ERROR", "b.xt3dstatic");
    EXPECT_EQ(Tools::ErrorsInWords(ParseLogPage(header + second + first + third + second + footer)),
              "The demo's log says ERROR: Image Data/Gfx/a b.png; XT3DStatic b.xt3dstatic (see "
              "./movie --doctor)\n");
    EXPECT_EQ(Tools::ErrorsInWords(ParseLogPage(header + first + footer)), "");
}

TEST(LogPage, Of_the_engine_itself_is_read) {
    const ScratchDir scratch;
    EXPECT_EXIT(
        {
            Vell::Log& log = Vell::Log::GetInstance();
            log.Write("Image", "LOADED", "Data/Gfx/sky.png");
            log.Write("Vertex Shader", "ERROR", "city.vert");
            log << "\n\n0:1(1): error: no\n";
            log.Write("", "ok", "100%");
            log.Write("Long", "FREE", std::string(3000, 'x')); // the engine cuts it
            log.Write(std::string(1797, 's'), "ERROR", "lost");
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
    const LogPage page = Tools::ReadLogPage();
    EXPECT_TRUE(page.complete);
    EXPECT_EQ(page.problem, "");
    // "Long" and "FREE" leave 1792 of 1800 bytes.
    EXPECT_THAT(page.rows,
                ElementsAre(LogRow{"Image", "LOADED", "Data/Gfx/sky.png"},
                            LogRow{"Vertex Shader", "ERROR", "city.vert"}, LogRow{"", "ok", "100%"},
                            LogRow{"Long", "FREE", std::string(1792, 'x')},
                            LogRow{std::string(1797, 's'), "ERR", ""}));
    EXPECT_THAT(page.texts, ElementsAre(LogText{2, "\n\n0:1(1): error: no"}));
}

TEST(LogPage, Nothing_and_no_file_are_an_empty_page) {
    const ScratchDir scratch;
    for (const LogPage& page : {ParseLogPage(""), Tools::ReadLogPage()}) {
        EXPECT_FALSE(page.hasHeader);
        EXPECT_FALSE(page.complete);
        EXPECT_THAT(page.rows, IsEmpty());
        EXPECT_EQ(page.problem, "");
    }
}

TEST(LogPage, That_breaks_off_anywhere_has_the_rows_before_and_no_problem) {
    const std::string whole = header + first + second + footer;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const LogPage page = ParseLogPage(whole.substr(0, size));
        const std::size_t rows = size < (header + first).size()            ? 0
                                 : size < (header + first + second).size() ? 1
                                                                           : 2;
        ASSERT_EQ(page.hasHeader, size >= header.size()) << size;
        ASSERT_EQ(page.rows.size(), rows) << size;
        ASSERT_THAT(page.texts, IsEmpty()) << size;
        ASSERT_EQ(page.problem, "") << size;
        ASSERT_FALSE(page.complete) << size;
    }
}

TEST(LogPage, Text_between_the_rows_stays_between_them) {
    const LogPage page = ParseLogPage(header + "before\n" + first + "\n\nmiddle\n\n<b>\n\n\n" +
                                      second + "behind\n" + footer);
    EXPECT_THAT(page.rows, ElementsAre(firstRow, secondRow));
    EXPECT_THAT(page.texts, ElementsAre(LogText{0, "before"}, LogText{1, "\n\nmiddle\n\n<b>"},
                                        LogText{2, "behind"}));
    EXPECT_TRUE(page.complete);
    EXPECT_EQ(page.problem, "");
}

TEST(LogPage, Other_status_is_black) {
    const LogPage page = ParseLogPage(header + Row(light, "Demo", black, "STARTED", "") + footer);
    EXPECT_THAT(page.rows, ElementsAre(LogRow{"Demo", "STARTED", ""}));
    EXPECT_THAT(page.Errors(), IsEmpty());
}

TEST(LogPage, Row_that_is_not_as_the_engine_writes_it_is_none) {
    const std::string rows[] = {
        Row(light, "Image", green, "ERROR", "x"),           // a red word in green
        Row(light, "Image", red, "error", "x"),             // a black word in red
        Row(light, std::string(1799, 's'), red, "X", ""),   // what no word begins with
        Row(light, std::string(1796, 's'), red, "ERR", ""), // cut without need
        Row("#CCCCCC", "Image", green, "OK", "x"),          // six digits
        Changed(first, "#CCCCC\" width =\"80%", "#999999\" width =\"80%"), // two greys in a row
        Changed(first, "width =", "width="),                               // without the blank
        Changed(first, "80%", "81%"),
        Changed(first, "</font>", ""),
        Changed(first, "    </tr>\n\n", "    </tr>\n"), // without the empty line
        Row(light, "Image", green, "OK", "a\nb"),       // two lines in a cell
        Row(light, "Image", green, "OK", std::string("a\0b", 3)),
        Row(light, "Image", green, "OK",
            "a\x7F"
            "b"),
        Row(light, "Im\tage", green, "OK", "x"),
        Row(light, "Image", green, "OK", "x</td>\ny"),
        Row(light, "Image", green, "OK", std::string(2048, 'x')), // too long
    };
    for (const std::string& row : rows) {
        const LogPage page = ParseLogPage(header + row + first + footer);
        EXPECT_THAT(page.rows, ElementsAre(firstRow)) << row;
        EXPECT_EQ(page.problem.substr(0, 9), "line 16: ") << row << page.problem;
        EXPECT_TRUE(page.complete);
    }
}

TEST(LogPage, Row_has_at_most_2048_bytes) {
    const std::size_t frame = Row(light, "", green, "OK", "").size();
    const auto rows = [&](std::size_t bytes) {
        const std::string file(bytes - frame, 'x');
        return ParseLogPage(header + Row(light, "", green, "OK", file) + footer).rows.size();
    };
    EXPECT_EQ(rows(2048), 1u);
    EXPECT_EQ(rows(2049), 0u);
}

TEST(LogPage, Colours_that_do_not_take_turns_show_that_a_row_is_missing) {
    EXPECT_EQ(ParseLogPage(header + second + footer).problem,
              "line 16: a row of the other colour: one is missing before it");
    const LogPage page = ParseLogPage(header + first + first + footer);
    EXPECT_THAT(page.rows, ElementsAre(firstRow, firstRow));
    EXPECT_EQ(page.problem, "line 22: a row of the other colour: one is missing before it");
}

TEST(LogPage, Without_its_header_is_not_the_engines) {
    const LogPage page = ParseLogPage("<p>hello</p>\n" + first + footer);
    EXPECT_FALSE(page.hasHeader);
    EXPECT_FALSE(page.complete);
    EXPECT_EQ(page.problem, "line 1: expected the header of a page");
    EXPECT_THAT(page.rows, ElementsAre(firstRow)) << "read all the same";
    EXPECT_FALSE(ParseLogPage(Changed(header, "  />", " />") + footer).hasHeader);
}

TEST(LogPage, Footer_is_one_only_at_the_end) {
    const LogPage page = ParseLogPage(header + footer + first);
    EXPECT_FALSE(page.complete);
    EXPECT_EQ(page.problem, "line 16: a footer that is not the end");
    EXPECT_THAT(page.rows, ElementsAre(firstRow));
}

TEST(LogPage, Control_characters_in_a_text_are_a_problem_but_those_of_a_layout_are_not) {
    EXPECT_EQ(ParseLogPage(header + "a\tb\r\n" + footer).problem, "");
    EXPECT_EQ(ParseLogPage(header + "Größe \xFF\n" + footer).problem, "") << "compilers' words";
    EXPECT_EQ(ParseLogPage(header + "a\n\x1B[2J\n" + footer).problem,
              "line 17: a control character");
    EXPECT_EQ(ParseLogPage(header + std::string("\0", 1) + "\n" + footer).problem,
              "line 16: a control character");
}

TEST(LogPage, First_problem_is_the_one_that_is_told) {
    EXPECT_EQ(ParseLogPage(header + "\x01\n\x02\n" + second + first).problem,
              "line 16: a control character");
}

TEST(LogPage, Bytes_of_any_kind_are_read_to_their_end) {
    std::string all;
    for (int i = 0; i < 256; ++i)
        all += static_cast<char>(i);
    for (int i = 0; i < 256; ++i) {
        const std::string byte(1, static_cast<char>(i));
        for (const std::string& page :
             {byte, header + byte, header + first + byte, header + byte + footer, byte + first,
              header + "    <tr>\n" + byte + all, header + first.substr(0, 60) + byte + all})
            ParseLogPage(page);
    }
}

// Every byte of a good page changed to what means something in it, one at a time.
TEST(LogPage, Any_changed_byte_is_noticed_or_stands_in_a_text) {
    const std::string whole = header + first + second + footer;
    for (std::size_t i = 0; i < whole.size(); ++i)
        for (const char byte : {'<', '\n', '\0', '#'}) {
            std::string page = whole;
            page[i] = byte;
            const LogPage read = ParseLogPage(page);
            ASSERT_LE(read.rows.size(), 2u);
            ASSERT_TRUE(page == whole || read.problem != "" || !read.complete ||
                        read.rows != ParseLogPage(whole).rows || !read.texts.empty())
                << "byte " << i;
        }
}

TEST(LogPage, Hostile_megabytes_are_read_within_seconds) {
    const std::string pieces[] = {"    <tr>\n",
                                  "    <tr>\n    <td bgcolor=\"#CCCCC\" width =\"15%\">",
                                  first.substr(0, first.size() - 1),
                                  footer,
                                  "<",
                                  "\n"};
    for (const std::string& piece : pieces) {
        std::string page = header;
        while (page.size() < Tools::mostLogBytes / 4)
            page += piece;
        ParseLogPage(page + "</tr>\n\n"); // the test's time limit is what this is about
    }
}

TEST(LogPage, Has_its_limits) {
    const ScratchDir scratch;
    std::string page = header;
    for (std::size_t i = 0; i < Tools::mostLogRows / 2; ++i)
        page += first + second;
    EXPECT_EQ(ParseLogPage(page + footer).rows.size(), 50000u);
    EXPECT_EQ(ParseLogPage(page + footer).problem, "");
    const LogPage more = ParseLogPage(page + first + footer);
    EXPECT_EQ(more.rows.size(), 50000u);
    EXPECT_EQ(more.problem, "line 300016: more rows than a page can have"); // 15 + 6 x 50000 + 1

    std::string text = header + std::string(Tools::mostLogBytes - header.size() - 1, 'x') + "\n";
    ASSERT_EQ(text.size(), 16777216u); // 16 x 2^20
    WriteFile("page", text);
    EXPECT_EQ(Tools::ReadLogPage("page").problem, "");
    WriteFile("page", text + footer);
    EXPECT_EQ(Tools::ReadLogPage("page").problem, "line 17: longer than a page can be");
    EXPECT_FALSE(Tools::ReadLogPage("page").complete);
}

TEST(LogPage, Folder_in_its_place_is_no_page) {
    const ScratchDir scratch;
    std::filesystem::create_directory("Vell_log.html");
    EXPECT_THAT(Tools::ReadLogPage().rows, IsEmpty());
}

TEST(LogRow, Is_printed_for_people) {
    std::ostringstream out;
    out << secondRow;
    EXPECT_EQ(out.str(), "(Image | ERROR | Data/Gfx/a b.png)");
}
