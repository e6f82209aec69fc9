// The pieces of a page.

#include "tools/explain/html.h"

#include <gtest/gtest.h>

TEST(PageText, Takes_apart_what_means_something_in_a_page) {
    EXPECT_EQ(Explain::Escape("a < b && \"c\" > d"), "a &lt; b &amp;&amp; &quot;c&quot; &gt; d");
}

TEST(PageText, Groups_thousands) {
    EXPECT_EQ(Explain::Grouped(0), "0");
    EXPECT_EQ(Explain::Grouped(999), "999");
    EXPECT_EQ(Explain::Grouped(1000), "1,000");
    EXPECT_EQ(Explain::Grouped(1234567), "1,234,567");
    EXPECT_EQ(Explain::Grouped(-123), "-123");
}

TEST(PageText, Writes_numbers_and_vectors) {
    EXPECT_EQ(Explain::Numbers({0.02f}), "0.02");
    EXPECT_EQ(Explain::Numbers({30.0f, -3.5f, 15.0f}), "(30, -3.5, 15)");
}

TEST(PageTable, Sets_numbers_to_the_right_and_stretches_a_short_row) {
    Explain::Table table({"#n", "name", "more"});
    table.Row({"1", "a", "b"});
    table.Row({"2", "c"});
    const std::string html = table.Html();
    EXPECT_NE(html.find("<th class=\"n\">n</th><th>name</th>"), std::string::npos);
    EXPECT_NE(html.find("<td class=\"n\">1</td><td>a</td><td>b</td>"), std::string::npos);
    EXPECT_NE(html.find("<td class=\"n\">2</td><td colspan=\"2\">c</td>"), std::string::npos);
}
