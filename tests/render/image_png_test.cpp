#include "engine/render/image.h"

#include "tests/render/image_probe.h"

#include <cstdio>
#include <functional>
#include <stdexcept>

#include <png.h>
#include <zlib.h>

using namespace Vell;

namespace {

/// What a test asks libpng to write: rows as they stand in the file, top row first.
struct PngFile {
    int width, height, depth, type;
    Bytes rows;
    std::function<void(png_structp, png_infop)> more = nullptr; // palette, transparency
    int interlace = PNG_INTERLACE_NONE;
};

void Write(const std::string& name, const PngFile& picture) {
    FILE* file = std::fopen(name.c_str(), "wb");
    if (file == nullptr)
        throw std::runtime_error("cannot write " + name);
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width),
                 static_cast<png_uint_32>(picture.height), picture.depth, picture.type,
                 picture.interlace, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (picture.more)
        picture.more(png, info);
    png_write_info(png, info);
    const std::size_t rowBytes = picture.rows.size() / static_cast<std::size_t>(picture.height);
    std::vector<png_bytep> rows(static_cast<std::size_t>(picture.height));
    for (std::size_t y = 0; y < rows.size(); ++y)
        rows[y] = const_cast<png_bytep>(picture.rows.data()) + y * rowBytes;
    png_write_image(png, rows.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    std::fclose(file);
}

uint32_t BigEndian(const std::string& bytes, std::size_t at) {
    uint32_t value = 0;
    for (std::size_t i = at; i < at + 4; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
}

void SetBigEndian(std::string& bytes, std::size_t at, uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<char>(value >> (24 - 8 * i));
}

/// Gives every whole chunk (length, kind, data, checksum) the checksum of what it now holds:
/// libpng would otherwise refuse a changed one before it looks inside.
void MendChecksums(std::string& file) {
    std::size_t at = 8; // behind the signature
    while (at + 12 <= file.size() && BigEndian(file, at) <= file.size() - at - 12) {
        const std::size_t covered = 4 + static_cast<std::size_t>(BigEndian(file, at));
        const auto* bytes = reinterpret_cast<const Bytef*>(file.data() + at + 4);
        SetBigEndian(file, at + 4 + covered,
                     static_cast<uint32_t>(crc32(0, bytes, static_cast<uInt>(covered))));
        at += 8 + covered;
    }
}

/// Red, green, blue, white.
constexpr png_color colours[] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}};

void Palette(png_structp png, png_infop info) {
    png_set_PLTE(png, info, colours, 4);
}

/// The first two: all that one bit can choose from.
void SmallPalette(png_structp png, png_infop info) {
    png_set_PLTE(png, info, colours, 2);
}

/// The same, with red transparent and green half.
void PaletteWithAlpha(png_structp png, png_infop info) {
    Palette(png, info);
    const png_byte alpha[] = {0, 128};
    png_set_tRNS(png, info, alpha, 2, nullptr);
}

/// Makes one colour (or grey value) of the file transparent.
auto Transparent(png_uint_16 r, png_uint_16 g, png_uint_16 b) {
    return [=](png_structp png, png_infop info) {
        png_color_16 colour{};
        colour.red = r;
        colour.green = g;
        colour.blue = b;
        colour.gray = r;
        png_set_tRNS(png, info, nullptr, 0, &colour);
    };
}

/// The values are proportional to the light.
void Gamma(png_structp png, png_infop info) {
    png_set_gAMA(png, info, 1.0);
}

/// The picture is meant to lie on white.
void Background(png_structp png, png_infop info) {
    png_color_16 white{};
    white.red = white.green = white.blue = 255;
    png_set_bKGD(png, info, &white);
}

/// Five bits of each value count.
void SignificantBits(png_structp png, png_infop info) {
    png_color_8 five{};
    five.red = five.green = five.blue = five.alpha = 5;
    png_set_sBIT(png, info, &five);
}

class PngImageTest : public GlTest {
protected:
    static void ExpectLoads(const PngFile& picture, GLenum format, const Bytes& pixels) {
        const std::string name = NewName(".png");
        Write(name, picture);
        Image image;
        ASSERT_TRUE(image.Load(name));
        EXPECT_EQ(image.GetSize(), ivec2(picture.width, picture.height));
        EXPECT_EQ(ImageProbe::Format(image), format);
        EXPECT_EQ(Pixels(image, format == GL_RGBA ? 4 : 3), pixels);
    }
};

} // namespace

TEST_F(PngImageTest, Keeps_left_and_right) {
    ExpectLoads({2, 1, 8, PNG_COLOR_TYPE_RGB, {10, 20, 30, 40, 50, 60}}, GL_RGB,
                {10, 20, 30, 40, 50, 60});
}

TEST_F(PngImageTest, Is_kept_bottom_row_first) {
    ExpectLoads({1, 3, 8, PNG_COLOR_TYPE_RGB, {1, 2, 3, 4, 5, 6, 7, 8, 9}}, GL_RGB,
                {7, 8, 9, 4, 5, 6, 1, 2, 3});
}

TEST_F(PngImageTest, Keeps_alpha) {
    ExpectLoads({1, 2, 8, PNG_COLOR_TYPE_RGBA, {1, 2, 3, 4, 5, 6, 7, 8}}, GL_RGBA,
                {5, 6, 7, 8, 1, 2, 3, 4});
}

TEST_F(PngImageTest, Becomes_the_same_texture_whatever_its_width) {
    // Three bytes a pixel: only every fourth width ends its rows on a multiple of 4 bytes.
    for (int width = 1; width <= 9; ++width) {
        SCOPED_TRACE(width);
        const Picture expected = MakePicture(width, 3, [](int x, int y) {
            return Rgba{20 * x, 50 * y, 255 - 10 * x - y, 255};
        });
        Bytes rows;
        for (int y = 2; y >= 0; --y) // top row first
            for (int x = 0; x < width; ++x)
                for (const int c : {expected.At(x, y).r, expected.At(x, y).g, expected.At(x, y).b})
                    rows.push_back(static_cast<unsigned char>(c));
        const std::string name = NewName(".png");
        WritePng(name, width, 3, 3, rows);
        Image image;
        ASSERT_TRUE(image.Load(name));
        EXPECT_TRUE(Matches(ReadTexture(image.GetID()), expected));
    }
}

TEST_F(PngImageTest, Turns_a_palette_into_colours) {
    ExpectLoads({3, 1, 8, PNG_COLOR_TYPE_PALETTE, {3, 1, 0}, Palette}, GL_RGB,
                {255, 255, 255, 0, 255, 0, 255, 0, 0});
}

TEST_F(PngImageTest, Unpacks_small_palettes) {
    // Indices 3, 1, 0, most significant bits first: 11 01 00 in two bits each, 3 1 and 0 in four.
    const Bytes pixels{255, 255, 255, 0, 255, 0, 255, 0, 0};
    ExpectLoads({3, 1, 2, PNG_COLOR_TYPE_PALETTE, {0b11010000}, Palette}, GL_RGB, pixels);
    ExpectLoads({3, 1, 4, PNG_COLOR_TYPE_PALETTE, {0x31, 0x00}, Palette}, GL_RGB, pixels);
    ExpectLoads({3, 1, 1, PNG_COLOR_TYPE_PALETTE, {0b10000000}, SmallPalette}, GL_RGB,
                {0, 255, 0, 255, 0, 0, 255, 0, 0});
}

TEST_F(PngImageTest, Turns_a_palette_with_transparency_into_RGBA) {
    ExpectLoads({3, 1, 8, PNG_COLOR_TYPE_PALETTE, {0, 1, 2}, PaletteWithAlpha}, GL_RGBA,
                {255, 0, 0, 0, 0, 255, 0, 128, 0, 0, 255, 255});
}

TEST_F(PngImageTest, Turns_a_transparent_colour_into_alpha) {
    ExpectLoads({2, 1, 8, PNG_COLOR_TYPE_RGB, {1, 2, 3, 4, 5, 6}, Transparent(4, 5, 6)}, GL_RGBA,
                {1, 2, 3, 255, 4, 5, 6, 0});
}

TEST_F(PngImageTest, Compares_a_transparent_colour_of_sixteen_bits_before_it_cuts_them) {
    ExpectLoads({2,
                 1,
                 16,
                 PNG_COLOR_TYPE_RGB,
                 {10, 99, 20, 99, 30, 99, 10, 98, 20, 99, 30, 99},
                 Transparent(10 * 256 + 99, 20 * 256 + 99, 30 * 256 + 99)},
                GL_RGBA, {10, 20, 30, 0, 10, 20, 30, 255});
}

TEST_F(PngImageTest, Keeps_the_upper_byte_of_sixteen_bits) {
    ExpectLoads({1, 1, 16, PNG_COLOR_TYPE_RGB, {10, 99, 20, 99, 30, 99}}, GL_RGB, {10, 20, 30});
    ExpectLoads({1, 1, 16, PNG_COLOR_TYPE_RGBA, {10, 99, 20, 99, 30, 99, 40, 99}}, GL_RGBA,
                {10, 20, 30, 40});
}

TEST_F(PngImageTest, Takes_the_stored_values_whatever_else_the_file_says_about_them) {
    const PngFile files[] = {
        {1, 1, 8, PNG_COLOR_TYPE_RGBA, {10, 100, 200, 40}, Gamma},
        {1, 1, 8, PNG_COLOR_TYPE_RGBA, {10, 100, 200, 40}, Background},
        {1, 1, 8, PNG_COLOR_TYPE_RGBA, {10, 100, 200, 40}, SignificantBits},
    };
    for (const PngFile& file : files)
        ExpectLoads(file, GL_RGBA, file.rows);
}

TEST_F(PngImageTest, Cuts_the_lower_byte_of_sixteen_bits_off_without_rounding) {
    // Rounded to the nearest of 255 steps, 0x00ff would be 1 and 0x01ff 2.
    ExpectLoads({1, 1, 16, PNG_COLOR_TYPE_RGB, {0x00, 0xff, 0x01, 0xff, 0xff, 0x00}}, GL_RGB,
                {0x00, 0x01, 0xff});
}

TEST_F(PngImageTest, Reads_interlaced_files_like_any_other) {
    PngFile picture{5, 5, 8, PNG_COLOR_TYPE_RGB, {}};
    Bytes pixels;
    for (int row = 0; row < 5; ++row)
        for (int i = 0; i < 15; ++i) {
            picture.rows.push_back(static_cast<unsigned char>(row * 15 + i));
            pixels.push_back(static_cast<unsigned char>((4 - row) * 15 + i));
        }
    picture.interlace = PNG_INTERLACE_ADAM7;
    ExpectLoads(picture, GL_RGB, pixels);
}

TEST_F(PngImageTest, Refuses_grey_without_a_row) {
    const PngFile files[] = {
        {2, 1, 8, PNG_COLOR_TYPE_GRAY, {1, 2}},
        {2, 1, 1, PNG_COLOR_TYPE_GRAY, {0x80}},
        {2, 1, 16, PNG_COLOR_TYPE_GRAY, {1, 2, 3, 4}},
        {1, 1, 8, PNG_COLOR_TYPE_GRAY_ALPHA, {1, 2}},
        {2, 1, 8, PNG_COLOR_TYPE_GRAY, {1, 2}, Transparent(1, 1, 1)},
        {2, 1, 4, PNG_COLOR_TYPE_GRAY, {0x12}, Transparent(1, 1, 1)},
    };
    for (const PngFile& file : files) {
        SCOPED_TRACE(testing::Message() << "type " << file.type << ", depth " << file.depth
                                        << (file.more ? ", transparency" : ""));
        const std::string name = NewName(".png");
        Write(name, file);
        const LogWatch log;
        Image image;
        EXPECT_FALSE(image.Load(name));
        ExpectEmpty(image);
        EXPECT_EQ(log.NewRows(), Rows());
    }
}

TEST_F(PngImageTest, Logs_a_file_without_the_signature) {
    for (const char* text : {"", "\x89PNG", "no picture at all", "\x89PNG\r\n\x1a\r"}) {
        SCOPED_TRACE(text);
        const std::string name = NewName(".png");
        WriteFile(name, text);
        const LogWatch log;
        Image image;
        EXPECT_FALSE(image.Load(name));
        ExpectEmpty(image);
        EXPECT_EQ(log.NewRows(), (Rows{{"Image", "ERROR", name}}));
    }
}

TEST_F(PngImageTest, Refuses_every_beginning_of_a_file) {
    const std::string name = NewName(".png");
    WritePng(name, 3, 2, 4, Bytes(24, 77));
    const ExpectSilence silence;
    EXPECT_EQ(LoadEveryBeginning(ReadFile(name), ".png"), 0);
    const std::string real = ReadFile(NIMBREL_SOURCE_DIR "/Data/Gfx/City/lamp.png");
    EXPECT_EQ(LoadEveryBeginning(real, ".png"), 0);
    EXPECT_TRUE(LoadsOrStaysEmpty(real, ".png")) << "all of it";
}

TEST_F(PngImageTest, Survives_any_changed_byte_even_under_a_right_checksum) {
    const PngFile files[] = {
        {5, 3, 8, PNG_COLOR_TYPE_RGBA, Bytes(60, 77)},
        {5, 3, 16, PNG_COLOR_TYPE_RGB, Bytes(90, 77)},
        {5, 3, 8, PNG_COLOR_TYPE_RGB, Bytes(45, 77), Transparent(77, 77, 77)},
        {5, 3, 8, PNG_COLOR_TYPE_PALETTE, Bytes(15, 2), PaletteWithAlpha},
        {5, 3, 2, PNG_COLOR_TYPE_PALETTE, Bytes(6, 0x1b), PaletteWithAlpha},
        {5, 3, 8, PNG_COLOR_TYPE_RGB, Bytes(45, 77), nullptr, PNG_INTERLACE_ADAM7},
    };
    const ExpectSilence silence;
    for (const PngFile& file : files) {
        const std::string good = NewName(".png");
        Write(good, file);
        const std::string whole = ReadFile(good);
        for (std::size_t i = 0; i < whole.size(); ++i)
            for (const int change : {0x01, 0x04, 0x24, 0xff}) {
                SCOPED_TRACE(testing::Message() << "type " << file.type << ", depth " << file.depth
                                                << ", byte " << i << " ^ " << change);
                std::string damaged = whole;
                damaged[i] = static_cast<char>(damaged[i] ^ change);
                LoadsOrStaysEmpty(damaged, ".png");
                MendChecksums(damaged);
                LoadsOrStaysEmpty(damaged, ".png");
            }
    }
}

TEST_F(PngImageTest, Refuses_damaged_pixels_without_a_row) {
    const std::string name = NewName(".png");
    WritePng(name, 3, 2, 4, Bytes(24, 77));
    std::string bytes = ReadFile(name);
    bytes[bytes.find("IDAT") + 6] ^= 0x55; // inside the compressed pixels: their checksum is wrong
    WriteFile(name, bytes);
    const LogWatch log;
    const ExpectSilence silence;
    Image image;
    EXPECT_FALSE(image.Load(name));
    ExpectEmpty(image);
    EXPECT_EQ(log.NewRows(), Rows());
}

TEST_F(PngImageTest, Loads_a_picture_as_wide_or_high_as_a_texture_can_be) {
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    for (const ivec2& size : {ivec2(largest, 1), ivec2(1, largest)}) {
        const std::string name = NewName(".png");
        WritePng(name, size.x, size.y, 3, Bytes(static_cast<std::size_t>(largest) * 3, 9));
        Image image;
        EXPECT_TRUE(image.Load(name));
        EXPECT_EQ(image.GetSize(), size);
    }
}

TEST_F(PngImageTest, Logs_a_picture_that_no_texture_can_hold) {
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    const std::string wide = NewName(".png");
    const std::string high = NewName(".png");
    WritePng(wide, largest + 1, 1, 3, Bytes(static_cast<std::size_t>(largest + 1) * 3, 9));
    WritePng(high, 1, largest + 1, 3, Bytes(static_cast<std::size_t>(largest + 1) * 3, 9));
    for (const std::string& name : {wide, high}) {
        const LogWatch log;
        Image image;
        EXPECT_FALSE(image.Load(name));
        ExpectEmpty(image);
        EXPECT_EQ(log.NewRows(), (Rows{{"Image", "ERROR", name}}));
    }
}
