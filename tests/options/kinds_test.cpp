#include "tools/options/kinds.h"

#include <gmock/gmock.h>

TEST(Kinds, Numbers_are_decimals_within_bounds_alone) {
    const Tools::Kind kind = Tools::NumberKind("a time", 1, 118.252);
    EXPECT_EQ(kind.name, "a time from 1 to 118.252");
    for (const char* text : {"1", "2.5", "118.252", "9.", "001"})
        EXPECT_TRUE(kind.fits(text)) << text;
    for (const char* text : {"", "0.9", "118.253", "-2", "2x", " 2", "+2", "1e1", "nan", "inf"})
        EXPECT_FALSE(kind.fits(text)) << text;
}

TEST(Kinds, Whole_numbers_have_no_point) {
    const Tools::Kind kind = Tools::WholeNumberKind(1, 9);
    EXPECT_EQ(kind.name, "a whole number from 1 to 9");
    EXPECT_EQ(Tools::WholeNumberKind(1, 2147483647).name, "a whole number from 1 to 2147483647");
    EXPECT_TRUE(kind.fits("9"));
    for (const char* text : {"0", "10", "2.5", "2.0"})
        EXPECT_FALSE(kind.fits(text)) << text;
}

TEST(Kinds, Files_to_write_are_known_by_their_ends) {
    const Tools::Kind kind = Tools::FileToWrite({".mp4", ".mov", ".mkv"});
    EXPECT_EQ(kind.name, "a .mp4, .mov or .mkv file");
    EXPECT_TRUE(kind.fits("a.mov"));
    EXPECT_FALSE(kind.fits("a.png"));
    EXPECT_FALSE(kind.fits(".mp4")) << "an end alone is no name";
}

TEST(Kinds, One_of_several_is_none_but_these) {
    const Tools::Kind kind = Tools::OneOf("a step", {"sort", "merge"});
    EXPECT_EQ(kind.name, "a step");
    EXPECT_TRUE(kind.fits("merge"));
    EXPECT_FALSE(kind.fits("mer"));
}

TEST(Kinds, Lists_read_as_sentences_do) {
    EXPECT_EQ(Tools::Listed({}, "or"), "");
    EXPECT_EQ(Tools::Listed({"a"}, "or"), "a");
    EXPECT_EQ(Tools::Listed({"a", "b"}, "or"), "a or b");
    EXPECT_EQ(Tools::Listed({"a", "b", "c"}, "and"), "a, b and c");
}
