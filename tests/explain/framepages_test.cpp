// The pages of docs/frames: what ./movie --explain makes of the published data.

#include "tests/explain/page.h"
#include "tests/movie/film_test_base.h"

#include <gmock/gmock.h>

#include <sstream>

using ::testing::HasSubstr;
using ::testing::Not;

namespace {

struct FramePage {
    const char* time; // seconds
    const char* name;
};

const FramePage pages[] = {{"20", "rise"}, {"35", "underwater"}, {"97", "wisps"}};

std::string Published(const FramePage& page) {
    return ReadFile(NIMBREL_SOURCE_DIR "/docs/frames/" + std::string(page.name) + ".html");
}

/// What follows `begin` in the line, up to the next `end`, is taken out, as often as it is there.
void TakeOut(const std::string& begin, const std::string& end, std::string& line) {
    for (std::size_t at = line.find(begin); at != std::string::npos;
         at = line.find(begin, at + 1)) {
        at += begin.size();
        line.erase(at, line.find(end, at) - at);
    }
}

/// A page without the pictures in its style sheet, and without what was measured in them: another
/// driver may round a colour or a depth differently.
std::string WithoutPictures(const std::string& page) {
    std::istringstream lines(page);
    std::string kept;
    for (std::string line; std::getline(lines, line);) {
        TakeOut("base64,", ")", line);
        TakeOut("Depth it left: ", "(", line);
        TakeOut(" untouched (", ")", line);
        kept += line + '\n';
    }
    return kept;
}

} // namespace

TEST(FramePages, Are_whole_and_small) {
    for (const FramePage& page : pages) {
        SCOPED_TRACE(page.name);
        const std::string text = Published(page);
        EXPECT_EQ(WhatIsWrong(text), "");
        EXPECT_EQ(WhatItNeeds(text), "");
        EXPECT_LT(text.size(), 750000u);
    }
}

TEST_F(FilmTest, Explains_the_published_frames_as_their_pages_do) {
    if (sanitized)
        GTEST_SKIP() << "the same in the other build, in a tenth of the time";
    LinkData();
    MustFilm({"--explain", pages[0].time, "timed.html", "--times"});
    const bool sameDriver =
        ReadFile("timed.html").find("llvmpipe (LLVM 15.0.6, 256 bits)") != std::string::npos;
    for (const FramePage& page : pages) {
        SCOPED_TRACE(page.name);
        MustFilm({"--explain", page.time, "page.html"});
        const std::string made = ReadFile("page.html");
        EXPECT_EQ(WithoutPictures(made), WithoutPictures(Published(page)));
        if (sameDriver) {
            EXPECT_TRUE(made == Published(page)) << "the pictures differ";
        }
    }
}

TEST_F(FilmTest, Says_how_long_each_pass_took_only_when_asked) {
    MakeDemoData();
    MustFilm({"--explain", "20", "plain.html"});
    MustFilm({"--explain", "20", "timed.html", "--times"});
    const std::string plain = ReadFile("plain.html");
    EXPECT_THAT(plain, Not(HasSubstr(" ms")));
    EXPECT_THAT(plain, Not(HasSubstr("Drawn by")));
    EXPECT_THAT(ReadFile("timed.html"), HasSubstr("<td>Drawn by</td>"));
    EXPECT_THAT(ReadFile("timed.html"), HasSubstr(" triangles, "));
    MustFilm({"--explain", "20", "again.html"});
    EXPECT_EQ(ReadFile("again.html"), plain);
}
