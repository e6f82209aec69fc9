// ./movie --verify: the published frames, two runs against each other, and what it says of a show
// that has changed.

#include "tests/movie/film_test_base.h"

#include <gmock/gmock.h>

using ::testing::HasSubstr;

namespace {

constexpr const char* published = NIMBREL_SOURCE_DIR "/tools/verify/reference";

} // namespace

TEST_F(FilmTest, Draws_the_published_frames_and_the_same_bits_in_every_run) {
    if (sanitized)
        GTEST_SKIP() << "the same in the other build, in a tenth of the time";
    LinkData();
    const Tools::Ending first = Film({"--verify", "--references", published});
    EXPECT_EQ(first.exitStatus, 0) << first.output << first.errors;
    EXPECT_THAT(first.output, HasSubstr("60 frames: "));
    EXPECT_THAT(first.output, HasSubstr("Fingerprint of what was drawn: "));
    const Tools::Ending second = Film({"--verify", "--references", published});
    EXPECT_EQ(second.output, first.output);
}

TEST_F(FilmTest, Names_the_moment_and_the_pass_in_which_the_show_differs_first) {
    MakeDemoData();
    ASSERT_NO_FATAL_FAILURE(MustFilm({"--verify", "--renew", "--references", "reference"}));
    const Tools::Ending same = Film({"--verify", "--references", "reference"});
    EXPECT_EQ(same.exitStatus, 0) << same.output;
    EXPECT_THAT(same.output, HasSubstr("60 frames: 60 identical, 0 within the tolerance"));

    // Another sky: it is in every frame, and first of all in the water's reflection.
    std::vector<unsigned char> grey(16 * 16 * 3, 77);
    for (const char* face : {"xpos", "xneg", "ypos", "yneg", "zpos", "zneg"})
        WriteJpeg("Data/Gfx/City/sky/" + std::string(face) + ".jpg", 16, 16, grey);
    const Tools::Ending other = Film({"--verify", "--references", "reference", "contrast.png"});
    EXPECT_EQ(other.exitStatus, 1);
    // The middle of the first of 60 parts is at 118.252 / 120 = 0.985 s, in frame 59.
    EXPECT_THAT(other.output, HasSubstr("differs first at 0.983 s (frame 59) in the pass"));
    EXPECT_THAT(other.output, HasSubstr("differs\n"));
    EXPECT_TRUE(std::filesystem::exists("contrast.png"));
}

TEST_F(FilmTest, Says_when_there_is_nothing_to_compare_with) {
    MakeDemoData();
    const Tools::Ending end = Film({"--verify", "--references", "nowhere"});
    EXPECT_EQ(end.exitStatus, 2) << "refused before the show is played";
    EXPECT_THAT(end.errors, HasSubstr("cannot read nowhere: there is no such folder"));
    std::filesystem::create_directory("empty");
    const Tools::Ending late = Film({"--verify", "--references", "empty"});
    EXPECT_EQ(late.exitStatus, 1);
    EXPECT_THAT(late.errors, HasSubstr("cannot read empty/passes.txt"));
}
