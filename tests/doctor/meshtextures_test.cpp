#include "tools/doctor/meshtextures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

std::vector<std::string> TexturesOf(const std::string& mesh) {
    std::istringstream in(mesh);
    return Doctor::MeshTextures(in);
}

const std::string vertex = "0 0 0  0 0 1  0 0 ";
const std::string vertexWithLightmap = vertex + "0.5 0.5 ";

} // namespace

TEST(MeshTextures, Stand_behind_the_folder_and_in_the_order_of_the_parts) {
    EXPECT_THAT(TexturesOf("XT3DSTATIC 2 Data/X/ 0 a.png NULL c.jpg 1 " + vertex +
                           "NULL b.png NULL 2 " + vertex + vertex),
                ElementsAre("Data/X/a.png", "Data/X/c.jpg", "Data/X/b.png"));
}

TEST(MeshTextures, Begin_with_the_light_map_of_a_mesh_that_has_one) {
    EXPECT_THAT(TexturesOf("XT3DSTATIC 2 Data/X/ 1 a.png NULL NULL 1 " + vertexWithLightmap +
                           "b.png NULL NULL 0"),
                ElementsAre("Data/X/lightmap.jpg", "Data/X/a.png", "Data/X/b.png"));
}

TEST(MeshTextures, Of_what_is_no_mesh_are_none) {
    EXPECT_THAT(TexturesOf(""), IsEmpty());
    EXPECT_THAT(TexturesOf("XT3DSTATICS 1 Data/X/ 0 a.png NULL NULL 0"), IsEmpty());
    EXPECT_THAT(TexturesOf("XT3DSTATIC many Data/X/ 0 a.png NULL NULL 0"), IsEmpty());
}

TEST(MeshTextures, Of_a_mesh_that_breaks_off_are_those_before_the_break) {
    EXPECT_THAT(TexturesOf("XT3DSTATIC 2 Data/X/ 0 a.png b.png"),
                ElementsAre("Data/X/a.png", "Data/X/b.png"));
    EXPECT_THAT(TexturesOf("XT3DSTATIC 2 Data/X/ 0 a.png NULL NULL 3 " + vertex),
                ElementsAre("Data/X/a.png"));
    EXPECT_THAT(TexturesOf("XT3DSTATIC 2000000000 Data/X/ 0 a.png NULL NULL -7 b.png NULL NULL 1"),
                ElementsAre("Data/X/a.png", "Data/X/b.png"));
}

// 2^61: times the eight numbers of a vertex it is 2^64, which 64 bits hold as none at all.
TEST(MeshTextures, Of_a_mesh_with_more_vertices_than_can_be_are_those_before_them) {
    EXPECT_THAT(TexturesOf("XT3DSTATIC 2 Data/X/ 0 a.png NULL NULL 2305843009213693952 "
                           "b.png NULL NULL 0"),
                ElementsAre("Data/X/a.png"));
}
