#include "engine/render/image.h"

#include "tests/render/image_probe.h"

#include <cstdio>
#include <stdexcept>

#include <jpeglib.h>

using namespace Vell;

namespace {

// JPEG stores colours as rounded brightness and colour differences: at quality 100 that costs up to
// two steps a channel.
constexpr int jpegRounding = 2;

constexpr Rgba red{250, 10, 10, 255};
constexpr Rgba green{10, 250, 10, 255};
constexpr Rgba blue{10, 10, 250, 255};
constexpr Rgba white{250, 250, 250, 255};

Bytes Rgb(const std::vector<Rgba>& colours) {
    Bytes bytes;
    for (const Rgba& colour : colours)
        for (const int channel : {colour.r, colour.g, colour.b})
            bytes.push_back(static_cast<unsigned char>(channel));
    return bytes;
}

/// A picture of square tiles, so that the codec's blocks do not mix colours.
std::string TiledJpeg(int columns, const std::vector<Rgba>& tiles) {
    constexpr int tile = 16;
    const int rows = static_cast<int>(tiles.size()) / columns;
    std::vector<Rgba> pixels;
    for (int y = 0; y < rows * tile; ++y)
        for (int x = 0; x < columns * tile; ++x)
            pixels.push_back(
                tiles[static_cast<std::size_t>(y / tile) * static_cast<std::size_t>(columns) +
                      static_cast<std::size_t>(x / tile)]);
    std::string name = NewName(".jpg");
    WriteJpeg(name, columns * tile, rows * tile, Rgb(pixels));
    return name;
}

using Choice = void (*)(j_compress_ptr);

/// A file of one flat colour whose encoding `choose` decides.
std::string ChosenJpeg(int side, J_COLOR_SPACE space, Choice choose) {
    std::string name = NewName(".jpg");
    FILE* file = std::fopen(name.c_str(), "wb");
    if (file == nullptr)
        throw std::runtime_error("cannot write " + name);
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    jpeg_stdio_dest(&jpeg, file);
    jpeg.image_width = jpeg.image_height = static_cast<JDIMENSION>(side);
    jpeg.input_components = space == JCS_CMYK ? 4 : 3;
    jpeg.in_color_space = space;
    jpeg_set_defaults(&jpeg); // colours at half the resolution
    choose(&jpeg);
    jpeg_start_compress(&jpeg, TRUE);
    Bytes row(static_cast<std::size_t>(side) * static_cast<std::size_t>(jpeg.input_components), 90);
    for (int y = 0; y < side; ++y) {
        row[0] = static_cast<unsigned char>(9 * y); // something to store
        JSAMPROW rows[] = {row.data()};
        jpeg_write_scanlines(&jpeg, rows, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    std::fclose(file);
    return name;
}

/// The file's pixels, the last one first, as libjpeg decodes it by default.
Bytes PixelsBackwards(const std::string& name) {
    jpeg_decompress_struct jpeg{};
    jpeg_error_mgr errors{};
    FILE* file = std::fopen(name.c_str(), "rb");
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&jpeg);
    jpeg_stdio_src(&jpeg, file);
    jpeg_read_header(&jpeg, TRUE);
    jpeg_start_decompress(&jpeg);
    Bytes backwards;
    Bytes row(static_cast<std::size_t>(jpeg.output_width) * 3);
    while (jpeg.output_scanline < jpeg.output_height) {
        JSAMPROW rows[] = {row.data()};
        jpeg_read_scanlines(&jpeg, rows, 1);
        for (std::size_t i = 0; i < row.size(); i += 3)
            backwards.insert(backwards.begin(), {row[i], row[i + 1], row[i + 2]});
    }
    jpeg_finish_decompress(&jpeg);
    jpeg_destroy_decompress(&jpeg);
    std::fclose(file);
    return backwards;
}

void AsUsual(j_compress_ptr) {}

void Progressive(j_compress_ptr jpeg) {
    jpeg_simple_progression(jpeg);
}

void WithRestarts(j_compress_ptr jpeg) {
    jpeg->restart_interval = 1;
}

void Arithmetic(j_compress_ptr jpeg) {
    jpeg->arith_code = TRUE;
}

struct Encoding {
    const char* what;
    Choice choose;
};
constexpr Encoding encodings[] = {{"baseline", AsUsual},
                                  {"progressive", Progressive},
                                  {"restarts", WithRestarts},
                                  {"arithmetic", Arithmetic}};

class JpegImageTest : public GlTest {
protected:
    static void ExpectRefused(const std::string& name) {
        SCOPED_TRACE(name);
        const LogWatch log;
        Image image;
        EXPECT_FALSE(image.Load(name));
        ExpectEmpty(image);
        EXPECT_EQ(log.NewRows(), (Rows{{"Image", "ERROR", name}}));
    }
};

Rgba PixelAt(const Image& image, int index) {
    const unsigned char* pixel = image.GetData() + index * 3;
    return {pixel[0], pixel[1], pixel[2], 255};
}

} // namespace

TEST_F(JpegImageTest, Swaps_left_and_right_of_two_pixels) {
    const std::string name = NewName(".jpg");
    // Two greys: a block of so few pixels cannot hold two colours apart.
    WriteJpeg(name, 2, 1, {40, 40, 40, 200, 200, 200});
    Image image;
    ASSERT_TRUE(image.Load(name));
    EXPECT_EQ(image.GetSize(), ivec2(2, 1));
    EXPECT_EQ(ImageProbe::Format(image), static_cast<GLenum>(GL_RGB));
    EXPECT_TRUE(Near(PixelAt(image, 0), {200, 200, 200, 255}, jpegRounding));
    EXPECT_TRUE(Near(PixelAt(image, 1), {40, 40, 40, 255}, jpegRounding));
}

TEST_F(JpegImageTest, Is_turned_by_half_a_turn_and_so_mirrored) {
    Image image;
    ASSERT_TRUE(image.Load(TiledJpeg(2, {red, green, /* below */ blue, white})));
    // Bottom row first, each from right to left: the reverse of the file's order.
    const int lastRow = 31 * 32;
    EXPECT_TRUE(Near(PixelAt(image, 0), white, jpegRounding));
    EXPECT_TRUE(Near(PixelAt(image, 31), blue, jpegRounding));
    EXPECT_TRUE(Near(PixelAt(image, lastRow), green, jpegRounding));
    EXPECT_TRUE(Near(PixelAt(image, lastRow + 31), red, jpegRounding));
}

TEST_F(JpegImageTest, Becomes_a_texture_of_the_same_pixels) {
    Image image;
    ASSERT_TRUE(image.Load(TiledJpeg(2, {red, green, blue, white})));
    const Picture texture = ReadTexture(image.GetID());
    ASSERT_EQ(texture.Width(), 32);
    ASSERT_EQ(texture.Height(), 32);
    EXPECT_TRUE(Near(texture.At(0, 0), white, jpegRounding));
    EXPECT_TRUE(Near(texture.At(31, 0), blue, jpegRounding));
    EXPECT_TRUE(Near(texture.At(0, 31), green, jpegRounding));
    EXPECT_TRUE(Near(texture.At(31, 31), red, jpegRounding));
}

TEST_F(JpegImageTest, Becomes_the_same_texture_whatever_its_width) {
    for (int width = 1; width <= 5; ++width) {
        SCOPED_TRACE(width);
        const std::string name = NewName(".jpg");
        // Brightness by row: with rows read askew the colours would shift from row to row.
        std::vector<Rgba> pixels;
        for (const int grey : {30, 120, 210})
            pixels.insert(pixels.end(), static_cast<std::size_t>(width),
                          Rgba{grey, grey, grey, 255});
        WriteJpeg(name, width, 3, Rgb(pixels));
        Image image;
        ASSERT_TRUE(image.Load(name));
        const Picture expected = MakePicture(width, 3, [](int, int y) {
            const int grey = 210 - 90 * y; // bottom-up
            return Rgba{grey, grey, grey, 255};
        });
        EXPECT_TRUE(Matches(ReadTexture(image.GetID()), expected,
                            {.max = jpegRounding, .mean = jpegRounding}));
    }
}

TEST_F(JpegImageTest, Has_the_pixels_that_the_library_gives_when_nothing_is_asked_of_it) {
    for (const Encoding& encoding : encodings) {
        SCOPED_TRACE(encoding.what);
        const std::string name = ChosenJpeg(24, JCS_RGB, encoding.choose);
        Image image;
        ASSERT_TRUE(image.Load(name));
        EXPECT_EQ(Pixels(image, 3), PixelsBackwards(name));
    }
}

TEST_F(JpegImageTest, Takes_red_green_and_blue_for_what_they_are) {
    // Most files store brightness and two differences of colour; some store the colours themselves.
    Image image;
    ASSERT_TRUE(image.Load(ChosenJpeg(8, JCS_RGB, [](j_compress_ptr jpeg) {
        jpeg_set_quality(jpeg, 100, TRUE);
        jpeg_set_colorspace(jpeg, JCS_RGB);
    })));
    // The last row of the file is the first: its last pixels are (90, 90, 90), its first (63, 90,
    // 90).
    EXPECT_TRUE(Near(PixelAt(image, 0), {90, 90, 90, 255}, 1)) << "rounded coefficients";
    EXPECT_TRUE(Near(PixelAt(image, 7), {63, 90, 90, 255}, 1)) << "rounded coefficients";
}

TEST_F(JpegImageTest, Refuses_grey_with_a_row) {
    const std::string name = NewName(".jpg");
    WriteGreyJpeg(name, 2, 1, {1, 2});
    ExpectRefused(name);
}

TEST_F(JpegImageTest, Refuses_ink_colours_with_a_row) {
    ExpectRefused(ChosenJpeg(1, JCS_CMYK, AsUsual));
}

TEST_F(JpegImageTest, Refuses_what_is_no_JPEG_with_a_row_and_goes_on) {
    const std::string empty = NewName(".jpg");
    WriteFile(empty, "");
    ExpectRefused(empty);
    const std::string text = NewName(".jpg");
    WriteFile(text, "no picture at all");
    ExpectRefused(text);
    const std::string png = NewName(".jpg");
    WritePng(png, 1, 1, 3, {1, 2, 3});
    ExpectRefused(png);
}

TEST_F(JpegImageTest, Refuses_damaged_headers_with_a_row) {
    const std::string good = TiledJpeg(1, {red});
    const std::string bytes = ReadFile(good);
    const std::size_t frame =
        bytes.find("\xff\xc0"); // start of frame: length, depth, height, width
    ASSERT_NE(frame, std::string::npos);
    struct Case {
        const char* what;
        std::size_t offset;
        char value;
    };
    for (const Case& c : {Case{"12 bits a channel", 4, 12}, Case{"99 components", 9, 99},
                          Case{"too short a segment", 3, 1}}) {
        SCOPED_TRACE(c.what);
        std::string damaged = bytes;
        damaged[frame + c.offset] = c.value;
        const std::string name = NewName(".jpg");
        WriteFile(name, damaged);
        ExpectRefused(name);
    }
}

TEST_F(JpegImageTest, Survives_every_beginning_of_a_file) {
    // libjpeg fills up pixels that are missing, so a file that breaks off there still loads; one
    // without a whole header does not.
    const ExpectSilence silence;
    for (const Encoding& encoding : encodings) {
        SCOPED_TRACE(encoding.what);
        const std::string bytes = ReadFile(ChosenJpeg(24, JCS_RGB, encoding.choose));
        EXPECT_TRUE(LoadsOrStaysEmpty(bytes, ".jpg")) << "all of it";
        const int loaded = LoadEveryBeginning(bytes, ".jpg");
        EXPECT_GT(loaded, 0);
        EXPECT_LT(loaded, static_cast<int>(bytes.size()));
    }
}

TEST_F(JpegImageTest, Survives_every_beginning_of_a_real_file) {
    const std::string bytes = ReadFile(NIMBREL_SOURCE_DIR "/Data/Gfx/Logo/logo.jpg");
    const ExpectSilence silence;
    const int headers = LoadEveryBeginning(bytes.substr(0, bytes.find("\xff\xda")), ".jpg");
    EXPECT_EQ(headers, 0) << "before the first scan there is no picture";
    const int loaded = LoadEveryBeginning(bytes, ".jpg", 64); // each takes a millisecond
    EXPECT_GT(loaded, 0);
}

TEST_F(JpegImageTest, Survives_any_changed_byte) {
    const ExpectSilence silence;
    for (const Encoding& encoding : encodings) {
        const std::string bytes = ReadFile(ChosenJpeg(24, JCS_RGB, encoding.choose));
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            SCOPED_TRACE(testing::Message() << encoding.what << ", byte " << i);
            std::string damaged = bytes;
            damaged[i] ^= 0x24;
            LoadsOrStaysEmpty(damaged, ".jpg");
        }
    }
}

TEST_F(JpegImageTest, Loads_a_picture_as_wide_or_high_as_a_texture_can_be) {
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    for (const ivec2& size : {ivec2(largest, 1), ivec2(1, largest)}) {
        const std::string name = NewName(".jpg");
        WriteJpeg(name, size.x, size.y, Bytes(static_cast<std::size_t>(largest) * 3, 9));
        Image image;
        EXPECT_TRUE(image.Load(name));
        EXPECT_EQ(image.GetSize(), size);
    }
}

TEST_F(JpegImageTest, Logs_a_picture_that_no_texture_can_hold) {
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    for (const ivec2& size : {ivec2(largest + 1, 1), ivec2(1, largest + 1)}) {
        const std::string name = NewName(".jpg");
        WriteJpeg(name, size.x, size.y, Bytes(static_cast<std::size_t>(largest + 1) * 3, 9));
        ExpectRefused(name);
    }
}
