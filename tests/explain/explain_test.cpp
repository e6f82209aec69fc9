// The page about one frame, as a browser and a reader get it.

#include "tools/explain/explain.h"

#include "tests/explain/page.h"
#include "tests/passes/isolation.h"
#include "tests/passes/recorded_frames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr double moment = 97.0; // the wisps; at ten frames a second this is frame 970

/// A page about the demo on tiny data, made once.
struct Made {
    ScratchDir scratch;
    std::string page;

    Made() {
        MakeFilmData();
        InIsolation([] {
            Explain::MakePage({10, 1}, moment, "page.html", Explain::Measured::Shown);
        });
        page = ReadFile("page.html");
    }
};

const std::string& ThePage() {
    static const Made made;
    return made.page;
}

/// The text between `begin` and the next `end` after it; empty when there is none.
std::string Between(const std::string& page, const std::string& begin, const std::string& end) {
    const std::size_t from = page.find(begin);
    if (from == std::string::npos)
        return "";
    const std::size_t start = from + begin.size();
    return page.substr(start, page.find(end, start) - start);
}

std::string SectionOf(int pass) {
    return Between(ThePage(), "<section id=\"pass-" + std::to_string(pass) + "\">", "</section>");
}

/// The cells after the head of a table's row, as HTML.
std::string RowOf(const std::string& html, const std::string& head) {
    return Between(html, "<td>" + head + "</td>", "</tr>");
}

std::string WhatItSays(double time, const std::string& path) {
    try {
        Explain::MakePage({}, time, path, Explain::Measured::LeftOut);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing";
}

} // namespace

TEST(WellFormed, Finds_what_is_wrong_with_a_page) {
    const std::string head = "<!DOCTYPE html>\n";
    EXPECT_EQ(WhatIsWrong(head + "<html lang=\"en\"><p>a &amp; b<br/></p></html>\n"), "");
    EXPECT_EQ(WhatIsWrong(head + "<html><p>a</html>"), "</html> closes <p>");
    EXPECT_EQ(WhatIsWrong(head + "<html>"), "<html> is not closed");
    EXPECT_EQ(WhatIsWrong(head + "<html a=b></html>"), "attributes of <html>:  a=b");
    EXPECT_EQ(WhatIsWrong(head + "<html>a & b</html>"), "a bare &");
    EXPECT_EQ(WhatIsWrong("<html></html>"), "no document type");
}

TEST(Explain, Writes_a_page_that_is_well_formed) {
    EXPECT_EQ(WhatIsWrong(ThePage()), "");
}

TEST(Explain, Needs_nothing_but_the_page) {
    EXPECT_EQ(WhatItNeeds(ThePage()), "");
    EXPECT_NE(WhatItNeeds("<img src=\"a.png\"/>"), "");
    EXPECT_NE(WhatItNeeds("<a href=\"page.html\">b</a>"), "");
    EXPECT_NE(WhatItNeeds("<style>.a { background-image: url(a.png); }</style>"), "");
}

TEST(Explain, Suits_light_and_dark) {
    EXPECT_THAT(ThePage(), HasSubstr("color-scheme: light dark"));
    EXPECT_THAT(ThePage(), HasSubstr("@media (prefers-color-scheme: dark)"));
}

TEST(Explain, Says_which_frame_it_is) {
    EXPECT_THAT(ThePage(), HasSubstr("<h1>Nimbrel at 97.000 s, pass by pass</h1>"));
    EXPECT_THAT(RowOf(ThePage(), "Frame"), HasSubstr("970, counted from 0, at 10 a second"));
    EXPECT_THAT(RowOf(ThePage(), "Timeline"), HasSubstr("the three wisps circle in the basin"));
    // Flights of 13.912 s, the fifth one of 20.868 s: the seventh begins at 90.428 s, and
    // (97 - 90.428) / 13.912 = 0.472.
    EXPECT_THAT(RowOf(ThePage(), "Flight"),
                HasSubstr("7 of 8, over the roofs: from (5, 8, 12) to (25, 5, 12) in 13.912 s; "
                          "47 % flown"));
    EXPECT_THAT(RowOf(ThePage(), "Effects"), HasSubstr("colour split by 0; glow weighs 0"));
    EXPECT_THAT(RowOf(ThePage(), "Music"), HasSubstr("lowest band of the spectrum 0<"));
    EXPECT_THAT(RowOf(ThePage(), "Drawn by"), HasSubstr("OpenGL"));
}

TEST(Explain, Has_a_section_for_every_pass_in_order) {
    const struct {
        int number;
        const char* title;
    } rows[] = {
        {1, "1. reflection <small>→ reflection target, 512 × 512</small>"},
        {2, "2. refraction <small>→ refraction target, 512 × 512</small>"},
        {3, "3. scene <small>→ scene target, 960 × 89</small>"},
        {4, "4. bright parts <small>→ spare target, 960 × 89</small>"},
        {5, "5. blur, shrunk <small>→ first blur target, 128 × 128</small>"},
        {6, "6. blur step 1 <small>→ second blur target, 128 × 128</small>"},
        {15, "15. blur step 10 <small>→ first blur target, 128 × 128</small>"},
        {16, "16. glow <small>→ glow target, 960 × 89</small>"},
        {17, "17. bloom <small>→ spare target, 960 × 89</small>"},
        {18, "18. colour split <small>→ scene target, 960 × 89</small>"},
        {19, "19. ripple, off <small>→ spare target, 960 × 89</small>"},
        {20, "20. screen <small>→ screen, 960 × 89</small>"},
    };
    for (const auto& row : rows)
        EXPECT_THAT(SectionOf(row.number), HasSubstr(std::string("<h2>") + row.title + "</h2>"));
    EXPECT_EQ(SectionOf(21), "");
}

TEST(Explain, Counts_calls_vertices_and_triangles) {
    // Sky of six strips, water, city of a triangle, three wisps of one.
    EXPECT_THAT(SectionOf(3), HasSubstr("<p>6 calls, 40 vertices, 18 triangles, "));
    EXPECT_THAT(SectionOf(3), HasSubstr("<summary>The 6 calls that draw</summary>"));
    EXPECT_THAT(SectionOf(20), HasSubstr("<p>1 call, 4 vertices, 2 triangles, "));
    // 27 + 36 + 40 of the three passes of the scene, and 18 quads of the effects and the screen.
    EXPECT_THAT(RowOf(ThePage(), "In all"), HasSubstr("175 vertices, 83 triangles in 31 calls "));
}

TEST(Explain, Shows_the_uniforms_that_the_timeline_sends) {
    char red[32];
    std::snprintf(red, sizeof red, "(%.6g, 3, 15)", 30 + 2.5 * std::sin(0.5 * moment));
    EXPECT_THAT(RowOf(SectionOf(3), "posred"), HasSubstr(std::string("<td>") + red + "</td>"));
    EXPECT_THAT(RowOf(SectionOf(3), "posred"), HasSubstr("earlier in this frame"));
    EXPECT_THAT(RowOf(SectionOf(3), "time"), HasSubstr("<td>97</td><td>in this pass</td>"));
    EXPECT_THAT(RowOf(SectionOf(6), "offset"), HasSubstr("<td>0.01</td>"));
    EXPECT_THAT(RowOf(SectionOf(3), "reflectionMap"), HasSubstr("<td>unit 1</td>"));
}

TEST(Explain, Links_what_a_pass_reads_to_the_pass_that_wrote_it) {
    EXPECT_THAT(SectionOf(3), HasSubstr("<a href=\"#pass-1\">colour of the reflection target</a>"));
    EXPECT_THAT(SectionOf(17), HasSubstr("<a href=\"#pass-3\">colour of the scene target</a>"));
    EXPECT_THAT(SectionOf(17), HasSubstr("<a href=\"#pass-16\">colour of the glow target</a>"));
    EXPECT_THAT(SectionOf(3), HasSubstr("<td>Data/Gfx/water.jpg</td>"));
}

TEST(Explain, Shows_depth_with_its_range_where_there_is_depth) {
    EXPECT_THAT(SectionOf(3), HasSubstr("Depth it left: white at "));
    EXPECT_THAT(SectionOf(4), Not(HasSubstr("Depth it left")));
    // But for the city nothing here has depth: it stands at 40 to 60, seen from about 14, along x.
    const std::string range = Between(SectionOf(2), "Depth it left: white at ", ", by");
    double nearest = 0.0;
    double farthest = 0.0;
    ASSERT_EQ(
        std::sscanf(range.c_str(), "%lf units from the eye, darkest at %lf", &nearest, &farthest),
        2)
        << range;
    EXPECT_GT(nearest, 24.0);
    EXPECT_LT(farthest, 48.0);
    EXPECT_LT(nearest, farthest);
}

TEST(Explain, Shows_the_final_picture_pixel_by_pixel) {
    const std::string kind = Between(ThePage(), "<span class=\"pic ", "\"");
    const std::string png =
        Between(ThePage(), "." + kind + " { background-image: url(data:image/png;base64,", ")");
    const PngSize size = SizeOfPng(png);
    EXPECT_EQ(size.width, 960);
    EXPECT_EQ(size.height, 89);
}

TEST(Explain, Draws_the_flow_with_a_dot_for_each_pass) {
    const std::string drawing = Between(ThePage(), "<svg", "</svg>");
    std::size_t dots = 0;
    for (std::size_t at = drawing.find("\"dot\""); at != std::string::npos;
         at = drawing.find("\"dot\"", at + 1))
        ++dots;
    EXPECT_EQ(dots, 20u);
    EXPECT_THAT(drawing, HasSubstr("<a href=\"#pass-15\">"));
}

TEST(Explain, Refuses_times_that_the_show_has_no_frame_at) {
    const ScratchDir scratch;
    const char* const range = "the show has frames from 0 to 118.252000 seconds, none at ";
    EXPECT_EQ(WhatItSays(-1.0, "page.html"), std::string(range) + "-1.000000");
    EXPECT_EQ(WhatItSays(118.252, "page.html"), std::string(range) + "118.252000");
    const double nothing = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THAT(WhatItSays(nothing, "page.html"), HasSubstr(range));
    EXPECT_TRUE(std::filesystem::is_empty("."));
}

TEST(Explain, Refuses_a_path_that_cannot_be_written_before_it_plays) {
    const ScratchDir scratch;
    EXPECT_EQ(WhatItSays(1.0, "missing/page.html"),
              "cannot write missing/page.html: there is no folder missing; make it first, or name "
              "another");
    EXPECT_TRUE(std::filesystem::is_empty("."));
}
