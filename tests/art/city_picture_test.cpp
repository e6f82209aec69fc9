#include "art/common/picture.h"
#include "art/lightmap/baker.h"

#include "engine/render/image.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"

#include <gmock/gmock.h>

namespace {

/// Four plain corners of 16 x 16 pixels each, seen from the top: red, green / blue, white.
Art::Picture Chart() {
    Art::Picture chart(32, 32);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x)
            chart.At(x, y) = y < 16 ? (x < 16 ? Art::Rgba{1, 0, 0, 1} : Art::Rgba{0, 1, 0, 1})
                                    : (x < 16 ? Art::Rgba{0, 0, 1, 1} : Art::Rgba{1, 1, 1, 1});
    return chart;
}

using ArtPicture = GlTest;

/// GL's texture rows run from v = 0 upwards, columns from u = 0.
void ExpectChartWhereItsCoordinatesSay(const Vell::Image& image) {
    const Picture texture = ReadTexture(const_cast<Vell::Image&>(image).GetID());
    ASSERT_EQ(texture.Width(), 32);
    constexpr int jpegError = 3;
    EXPECT_TRUE(Near(texture.At(4, 28), {255, 0, 0}, jpegError)) << "u small, v large: red";
    EXPECT_TRUE(Near(texture.At(28, 28), {0, 255, 0}, jpegError)) << "u large, v large: green";
    EXPECT_TRUE(Near(texture.At(4, 4), {0, 0, 255}, jpegError)) << "u small, v small: blue";
    EXPECT_TRUE(Near(texture.At(28, 4), {255, 255, 255}, jpegError)) << "u large, v small: white";
}

TEST_F(ArtPicture, A_jpeg_for_the_engine_lies_where_texture_coordinates_say) {
    ASSERT_TRUE(Art::WriteEngineJpeg("chart.jpg", Chart(), 100, Art::Depth::Rounded));
    Vell::Image image;
    ASSERT_TRUE(image.Load("chart.jpg"));
    ExpectChartWhereItsCoordinatesSay(image);
}

TEST_F(ArtPicture, A_png_lies_where_texture_coordinates_say) {
    ASSERT_TRUE(Art::WritePng("chart.png", Chart(), 3, Art::Depth::Rounded));
    Vell::Image image;
    ASSERT_TRUE(image.Load("chart.png"));
    ExpectChartWhereItsCoordinatesSay(image);
}

TEST_F(ArtPicture, Reading_as_the_engine_does_undoes_the_mirroring) {
    ASSERT_TRUE(Art::WriteEngineJpeg("chart.jpg", Chart(), 100, Art::Depth::Rounded));
    const Art::Picture read = Art::ReadAsEngine("chart.jpg");
    EXPECT_GT(read.At(4, 4).r, 0.97f);
    EXPECT_LT(read.At(4, 4).g, 0.03f);
    const Art::Picture raw = Art::ReadPicture("chart.jpg");
    EXPECT_GT(raw.At(27, 4).r, 0.97f) << "in the file left and right are exchanged";
}

/// A square of 1 x 1 on the ground whose chart is `side` texels from (x, y), counted from the
/// light map's lower left.
Art::SubMesh Square(float at, int x, int y, int side, float size) {
    const auto corner = [&](float u, float v) {
        const auto place = [&](int from, float t) {
            return (static_cast<float>(from) + 0.5f + t * static_cast<float>(side - 1)) / size;
        };
        return Art::MeshVertex{{at + u, 0, -v}, {0, 1, 0}, {u, v}, {place(x, u), place(y, v)}};
    };
    Art::SubMesh sub;
    for (const Vell::vec2 p : {Vell::vec2{0, 0}, Vell::vec2{1, 0}, Vell::vec2{1, 1},
                               Vell::vec2{0, 0}, Vell::vec2{1, 1}, Vell::vec2{0, 1}})
        sub.vertices.push_back(corner(p.x, p.y));
    return sub;
}

TEST_F(ArtPicture, A_baked_chart_lies_where_its_coordinates_say) {
    // Two squares far apart; only the second is veiled. Its chart lies at the lower right, the
    // other's at the upper left.
    constexpr int pictureSize = 64;
    Art::BakeScene scene;
    scene.mesh = {
        "Data/", true, {Square(0, 4, 44, 16, pictureSize), Square(100, 40, 6, 16, pictureSize)}};
    scene.sky = [](Vell::vec3) { return Vell::vec3{1, 1, 1}; };
    scene.veil = [](Vell::vec3 p) { return p.x > 50 ? Vell::vec3{0, 1, 0} : Vell::vec3{1, 0, 0}; };
    const Art::Picture light = Art::BakeLight(scene, {pictureSize, 1, 16, 64, 0, 1});
    ASSERT_TRUE(Art::WriteEngineJpeg("lightmap.jpg", Art::EncodeLight(light), 95));
    Vell::Image image;
    ASSERT_TRUE(image.Load("lightmap.jpg"));
    const Picture texture = ReadTexture(image.GetID());
    // Full light is half of full scale.
    constexpr int jpegError = 5;
    EXPECT_TRUE(Near(texture.At(12, 52), {128, 0, 0, 255}, jpegError));
    EXPECT_TRUE(Near(texture.At(48, 14), {0, 128, 0, 255}, jpegError));
}

TEST(Picture, Keeps_alpha_in_a_png) {
    const ScratchDir scratch;
    Art::Picture picture(2, 1);
    picture.At(0, 0) = {0.2f, 0.4f, 0.6f, 0.8f};
    ASSERT_TRUE(Art::WritePng("a.png", picture, 4, Art::Depth::Rounded));
    const Art::Picture read = Art::ReadPicture("a.png");
    EXPECT_FLOAT_EQ(read.At(0, 0).a, 204.0f / 255);
    EXPECT_FLOAT_EQ(read.At(0, 0).b, 153.0f / 255);
}

TEST(Picture, Samples_between_pixels_and_round_the_edge) {
    Art::Picture picture(2, 2);
    picture.At(0, 0) = {1, 0, 0, 1};
    // The red pixel's middle is at u 0.25, v 0.75; half of it is left midway to its neighbour.
    EXPECT_FLOAT_EQ(picture.Sample(0.25f, 0.75f).r, 1);
    EXPECT_FLOAT_EQ(picture.Sample(0.5f, 0.75f).r, 0.5f);
    EXPECT_FLOAT_EQ(picture.Sample(0.0f, 0.75f).r, 0.5f);
    EXPECT_FLOAT_EQ(picture.Sample(1.25f, -0.25f).r, 1);
}

TEST(Picture, Dithering_keeps_the_mean_of_a_flat_tone) {
    // 100.3 / 255 cannot be held; 3 of 10 pixels must become 101.
    double sum = 0;
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            sum += Art::Dithered(100.3f / 255, x, y, 0);
    EXPECT_NEAR(sum / (64 * 64), 100.3, 0.02);
}

TEST(Picture, Refuses_what_cannot_be_written) {
    const ScratchDir scratch;
    EXPECT_FALSE(Art::WriteJpeg("no/such/folder/a.jpg", Chart(), 90));
    EXPECT_FALSE(Art::WritePng("a.png", Art::Picture(), 3));
    EXPECT_FALSE(Art::WritePng("a.png", Chart(), 2));
    EXPECT_EQ(Art::ReadPicture("missing.jpg").Width(), 0);
    WriteFile("broken.png", "no picture");
    EXPECT_EQ(Art::ReadPicture("broken.png").Width(), 0);
    WriteFile("broken.jpg", "no picture");
    EXPECT_EQ(Art::ReadPicture("broken.jpg").Width(), 0);
}

} // namespace
