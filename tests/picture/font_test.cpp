#include "tools/picture/font.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

/// The text as it looks, a row a string.
std::vector<std::string> Drawn(const std::string& text) {
    std::vector<std::string> rows(
        Tools::glyphRows,
        std::string(text.size() * static_cast<std::size_t>(Tools::glyphAdvance), ' '));
    Tools::ForEachDot(text, [&](int column, int row) {
        rows.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column)) = '#';
    });
    return rows;
}

} // namespace

TEST(Font, Draws_letters_from_left_to_right_and_from_the_top_down) {
    // Each letter has five columns and one of space.
    const std::vector<std::string> expected = {"#       ##  ", //
                                               "#      #    ", //
                                               "#     #     ", //
                                               "#     ####  ", //
                                               "#     #   # ", //
                                               "#     #   # ", //
                                               "#####  ###  "};
    EXPECT_EQ(Drawn("L6"), expected);
}

TEST(Font, Makes_small_letters_capitals_and_leaves_a_gap_for_what_it_lacks) {
    EXPECT_EQ(Drawn("abz"), Drawn("ABZ"));
    EXPECT_EQ(Drawn("1?2"), Drawn("1 2"));
    EXPECT_EQ(Drawn(std::string(1, '\0')), Drawn(" "));
}
