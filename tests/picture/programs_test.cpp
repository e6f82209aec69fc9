// The programs that make single pictures: the unfolded sky, and the gallery's sheet.

#include "tests/support/scratch.h"
#include "tools/picture/picture.h"
#include "tools/stage/process.h"

#include <gmock/gmock.h>

#include <array>
#include <set>
#include <utility>

using ::testing::HasSubstr;
using Tools::Picture;

namespace {

using Colour = std::array<int, 3>;

Colour At(const Picture& picture, int x, int y) {
    const unsigned char* pixel = picture.At(x, y);
    return {pixel[0], pixel[1], pixel[2]};
}

Tools::Ending Call(const std::string& program, std::vector<std::string> words) {
    words.insert(words.begin(), NIMBREL_BINARY_DIR "/tools/picture/" + program);
    return Tools::Run({.arguments = std::move(words)}, 60.0);
}

/// A PPM of one colour.
void WritePlain(const std::string& name, int width, int height, const std::string& pixel) {
    std::string bytes = "P6\n" + std::to_string(width) + ' ' + std::to_string(height) + "\n255\n";
    for (int i = 0; i < width * height; ++i)
        bytes += pixel;
    WriteFile(name, bytes);
}

int Count(const Picture& picture, const Colour& colour) {
    int count = 0;
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            count += At(picture, x, y) == colour ? 1 : 0;
    return count;
}

class PicturePrograms : public ::testing::Test {
    ScratchDir scratch;
};

} // namespace

// Four faces of 160 pixels beside each other, the upper and the lower one at the second.
TEST_F(PicturePrograms, Unfold_a_sky_so_that_faces_lie_beside_those_they_share_an_edge_with) {
    ASSERT_EQ(Call("nimbrel_skyfaces", {"sky.png"}).exitStatus, 0);
    const Picture sky = Tools::ReadPng("sky.png");
    EXPECT_EQ(sky.width, 4 * 160);
    EXPECT_EQ(sky.height, 3 * 160);
    const Colour paper = At(sky, 0, 0);
    for (const auto& [x, y] : {std::pair(2, 0), {3, 0}, {0, 2}, {2, 2}, {3, 2}})
        EXPECT_EQ(At(sky, x * 160 + 80, y * 160 + 10), paper) << "nothing in column " << x;
    std::set<Colour> faces;
    for (const auto& [x, y] : {std::pair(0, 1), {1, 1}, {2, 1}, {3, 1}, {1, 0}, {1, 2}})
        faces.insert(At(sky, x * 160 + 80, y * 160 + 10));
    EXPECT_EQ(faces.size(), 6U) << "each has a colour of its own";
    EXPECT_EQ(faces.count(paper), 0U);
}

TEST_F(PicturePrograms, Mark_shared_edges_alike_on_both_sides) {
    ASSERT_EQ(Call("nimbrel_skyfaces", {"sky.png"}).exitStatus, 0);
    const Picture sky = Tools::ReadPng("sky.png");
    const Colour light = {255, 255, 255};
    const Colour dark = {0, 0, 0};
    for (const int edge : {160, 320, 480}) // upright ones: quarters of the face are 40 pixels
        for (const int side : {-10, 10}) {
            EXPECT_EQ(At(sky, edge + side, 160 + 40), light);
            EXPECT_EQ(At(sky, edge + side, 160 + 120), dark);
        }
    for (const int edge : {160, 320})
        for (const int side : {-10, 10}) {
            EXPECT_EQ(At(sky, 160 + 40, edge + side), light);
            EXPECT_EQ(At(sky, 160 + 120, edge + side), dark);
        }
}

TEST_F(PicturePrograms, Put_pictures_on_a_sheet_at_half_their_size) {
    WritePlain("red.ppm", 64, 32, {'\xf0', '\x10', '\x10'});
    WritePlain("blue.ppm", 32, 32, {'\x10', '\x10', '\xf0'});
    ASSERT_EQ(Call("gallery_sheet", {"sheet.png", "red", "blue"}).exitStatus, 0);
    const Picture sheet = Tools::ReadPng("sheet.png");
    EXPECT_EQ(Count(sheet, {0xf0, 0x10, 0x10}), 32 * 16);
    EXPECT_EQ(Count(sheet, {0x10, 0x10, 0xf0}), 16 * 16);
}

TEST_F(PicturePrograms, Say_which_picture_of_a_sheet_is_missing) {
    const Tools::Ending end = Call("gallery_sheet", {"sheet.png", "green"});
    EXPECT_EQ(end.exitStatus, 1);
    EXPECT_THAT(end.errors, HasSubstr("green.ppm"));
}
