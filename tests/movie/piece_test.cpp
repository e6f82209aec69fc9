#include "tools/movie/piece.h"

#include <gmock/gmock.h>

#include <stdexcept>

using Movie::FilmRequest;
using Movie::ParsePiece;
using Movie::Piece;
using Movie::PieceOf;

namespace {

Piece From(double begin, double end, const Stage::Rate& rate = {}) {
    FilmRequest request;
    request.begin = begin;
    request.end = end;
    request.format.rate = rate;
    return PieceOf(request);
}

} // namespace

TEST(Piece, Holds_the_frames_from_its_beginning_to_before_its_end) {
    const Piece whole = From(0.0, 118.252);
    EXPECT_EQ(whole.first, 0);
    EXPECT_EQ(whole.count, 7096);
    const Piece second = From(1.0, 2.0);
    EXPECT_EQ(second.first, 60);
    EXPECT_EQ(second.count, 60);
    EXPECT_EQ(second.Begin(), 1.0);
    EXPECT_EQ(second.End(), 2.0);
}

// Machines that share the show must neither leave a frame out nor draw one twice.
TEST(Piece, Follows_without_gap_or_overlap_on_one_that_ends_where_it_begins) {
    for (const Stage::Rate& rate :
         {Stage::Rate{60, 1}, Stage::Rate{24000, 1001}, Stage::Rate{25, 1}})
        for (double cut = 0.5; cut < 118.0; cut += 0.377) {
            const Piece before = From(0.0, cut, rate);
            const Piece after = From(cut, 118.252, rate);
            ASSERT_EQ(before.first + before.count, after.first) << cut;
        }
}

TEST(Piece, Ends_with_the_show) {
    const Piece piece = From(118.0, 500.0);
    EXPECT_EQ(piece.first + piece.count, 7096);
}

TEST(Piece, Refuses_a_stretch_without_a_frame) {
    EXPECT_THROW(From(5.0, 5.0), std::runtime_error);
    EXPECT_THROW(From(5.001, 5.002), std::runtime_error);
    EXPECT_THROW(From(118.252, 120.0), std::runtime_error);
}

TEST(Piece, Is_read_from_the_comment_it_writes) {
    const Piece piece = {{60000, 1001}, 120, 45};
    EXPECT_EQ(piece.Comment(), "Nimbrel, frames 120 to 164 at 60000/1001 a second");
    const auto read = ParsePiece(piece.Comment());
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->first, 120);
    EXPECT_EQ(read->count, 45);
    EXPECT_EQ(read->rate.frames, 60000);
    EXPECT_EQ(read->rate.seconds, 1001);
}

TEST(Piece, Is_not_read_from_other_comments) {
    for (const char* comment :
         {"", "holidays", "Nimbrel, frames 9 to 8 at 60/1 a second",
          "Nimbrel, frames -1 to 8 at 60/1 a second", "Nimbrel, frames 0 to 8 at 60/0 a second",
          "Nimbrel, frames 0 to 8 at 60"})
        EXPECT_FALSE(ParsePiece(comment).has_value()) << comment;
}

// Such a file would ask for the sound of years.
TEST(Piece, Is_not_read_from_a_comment_that_tells_of_frames_beyond_the_show) {
    EXPECT_TRUE(ParsePiece("Nimbrel, frames 0 to 7095 at 60/1 a second").has_value());
    for (const char* comment : {"Nimbrel, frames 0 to 7096 at 60/1 a second",
                                "Nimbrel, frames 0 to 2147483647 at 60/1 a second",
                                "Nimbrel, frames 2147483646 to 2147483647 at 1000/1 a second"})
        EXPECT_FALSE(ParsePiece(comment).has_value()) << comment;
}

// Their products do not fit into 64 bits.
TEST(Piece, Is_not_read_from_a_comment_with_a_rate_that_no_film_has) {
    for (const char* comment : {"Nimbrel, frames 0 to 8 at 2555505540049119/1 a second",
                                "Nimbrel, frames 0 to 0 at 60/9223372036854775807 a second",
                                "Nimbrel, frames 0 to 0 at -60/-1 a second"})
        EXPECT_FALSE(ParsePiece(comment).has_value()) << comment;
}
