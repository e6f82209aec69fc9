// What a picture may cost, whatever its file says: memory and time, measured in a process of its
// own. OpenGL is the one that records, for that a driver takes memory of its own.

#include "engine/render/image.h"

#include "tests/recording/calls.h"
#include "tests/support/cost.h"
#include "tests/support/log_page.h"
#include "tests/support/measured.h"

#include <gmock/gmock.h>
#include <jpeglib.h>
#include <zlib.h>

#include <array>
#include <cstdio>
#include <utility>

#include <dlfcn.h>

using ::testing::ElementsAre;
using Vell::Image;
using Vell::ivec2;

namespace {

long jpegMemory = 0; // that libjpeg may take for the picture it was last told to begin

} // namespace

/// Takes the place of libjpeg's in this executable: the linker finds it first.
extern "C" boolean jpeg_start_decompress(j_decompress_ptr jpeg) {
    static const auto real = reinterpret_cast<decltype(&jpeg_start_decompress)>(
        dlsym(RTLD_NEXT, "jpeg_start_decompress"));
    jpegMemory = jpeg->mem->max_memory_to_use;
    return real(jpeg);
}

namespace {

constexpr std::size_t mebibyte = 1 << 20;
constexpr std::size_t aside = 64 * mebibyte; // what a picture may take beside its pixels' fourfold
constexpr double patience = 60.0;            // seconds; a test machine may be busy

using Bytes = std::vector<unsigned char>;

/// What became of a picture that was loaded in a process of its own.
struct Outcome {
    bool loaded;
    ivec2 size;
    int rows; ///< that it was given on the log page
    Cost cost;
};

class ImageLimits : public Calls {
protected:
    static Outcome Load(const std::string& name) {
        Cost cost = CostOf(
            [&](const Tools::Report& report) {
                const LogWatch log;
                Image image;
                report.Add("loaded", image.Load(name) ? 1 : 0);
                report.Add("width", image.GetSize().x);
                report.Add("height", image.GetSize().y);
                report.Add("rows", static_cast<int>(log.NewRows().size()));
            },
            patience);
        EXPECT_TRUE(cost.ending.InOrder()) << name << ' ' << cost.ending.InWords();
        EXPECT_EQ(cost.ending.errors, "");
        TellMeasured(name + " of " + std::to_string(ReadFile(name).size()) + " bytes",
                     InWords(cost));
        const auto number = [&](const char* what) { return Tools::FactNumber(cost.facts, what); };
        return {number("loaded") == 1, ivec2(number("width"), number("height")), number("rows"),
                std::move(cost)};
    }

    static void ExpectCheap(const Outcome& outcome) {
        const std::size_t decoded =
            static_cast<std::size_t>(outcome.size.x) * static_cast<std::size_t>(outcome.size.y) * 3;
        EXPECT_TRUE(!memoryCounts || outcome.cost.bytes <= 4 * decoded + aside)
            << outcome.cost.bytes << " bytes for a picture of " << decoded;
    }
};

// ---------------------------------------------------------------------------------------- PNG

std::string BigEndian(unsigned long value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes += static_cast<char>(value >> shift);
    return bytes;
}

std::string Chunk(const std::string& kind, const std::string& data) {
    const std::string covered = kind + data;
    const auto* bytes = reinterpret_cast<const Bytef*>(covered.data());
    return BigEndian(data.size()) + covered +
           BigEndian(crc32(0, bytes, static_cast<uInt>(covered.size())));
}

std::string Compressed(const std::string& data) {
    uLongf size = compressBound(data.size());
    std::string packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(packed.data()), &size,
             reinterpret_cast<const Bytef*>(data.data()), data.size());
    packed.resize(size);
    return packed;
}

/// A PNG of one pixel with something between its header and its pixels.
std::string PngWith(const std::string& between) {
    WritePng("one.png", 1, 1, 3, {10, 20, 30});
    const std::string bytes = ReadFile("one.png");
    const std::size_t behindHeader = 33; // signature 8, length 4, kind 4, data 13, checksum 4
    return bytes.substr(0, behindHeader) + between + bytes.substr(behindHeader);
}

/// The chunks that libpng would keep in memory.
const std::array<const char*, 6> greedyChunks = {"tEXt", "zTXt", "iTXt", "iCCP", "sPLT", "eXIf"};

// --------------------------------------------------------------------------------------- JPEG

/// All three constant parts, then one frequency of one component in each scan: at most 190.
std::vector<jpeg_scan_info> ManyScans(int count) {
    std::vector<jpeg_scan_info> scans = {{3, {0, 1, 2, 0}, 0, 0, 0, 0}};
    for (int i = 0; i < count - 1; ++i)
        scans.push_back({1, {i / 63, 0, 0, 0}, i % 63 + 1, i % 63 + 1, 0, 0});
    return scans;
}

enum class Coding { Huffman, Arithmetic };

/// A grey square as a progressive JPEG, its three components of one resolution.
void WriteScans(const std::string& name, int side, const std::vector<jpeg_scan_info>& scans,
                Coding coding = Coding::Huffman) {
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errors{};
    FILE* file = std::fopen(name.c_str(), "wb");
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    jpeg_stdio_dest(&jpeg, file);
    jpeg.image_width = jpeg.image_height = static_cast<JDIMENSION>(side);
    jpeg.input_components = 3;
    jpeg.in_color_space = JCS_RGB;
    jpeg_set_defaults(&jpeg);
    jpeg.comp_info[0].h_samp_factor = jpeg.comp_info[0].v_samp_factor = 1;
    jpeg.scan_info = scans.data();
    jpeg.num_scans = static_cast<int>(scans.size());
    jpeg.arith_code = coding == Coding::Arithmetic;
    jpeg_start_compress(&jpeg, TRUE);
    Bytes row(static_cast<std::size_t>(side) * 3, 90);
    for (int y = 0; y < side; ++y) {
        JSAMPROW rows[] = {row.data()};
        jpeg_write_scanlines(&jpeg, rows, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    std::fclose(file);
}

/// The file with its last scan repeated.
std::string WithScanRepeated(const std::string& bytes, int times) {
    const std::size_t scan = bytes.rfind("\xff\xda");
    const std::size_t end = bytes.size() - 2; // the mark of the end
    std::string result = bytes.substr(0, end);
    for (int i = 0; i < times; ++i)
        result += bytes.substr(scan, end - scan);
    return result + bytes.substr(end);
}

/// The file with other sides in its header.
std::string WithSide(std::string bytes, const std::string& marker, unsigned side) {
    const std::size_t frame = bytes.find(marker); // marker, length, depth, height, width
    for (const std::size_t at : {frame + 5, frame + 7}) {
        bytes[at] = static_cast<char>(side >> 8);
        bytes[at + 1] = static_cast<char>(side);
    }
    return bytes;
}

constexpr int mostScans = 100;

} // namespace

TEST_F(ImageLimits, Png_whose_chunk_says_that_it_holds_two_gigabytes_takes_none_of_them) {
    for (const char* kind : greedyChunks) {
        SCOPED_TRACE(kind);
        // Without a checksum of its own: nobody gets that far.
        WriteFile("greedy.png", PngWith(BigEndian(0x7fffffff) + kind + "Title"));
        const Outcome outcome = Load("greedy.png");
        EXPECT_FALSE(outcome.loaded) << "its pixels are inside the chunk";
        ExpectCheap(outcome);
    }
}

TEST_F(ImageLimits, Png_loads_beside_any_length_of_text_that_nobody_asked_for) {
    const std::string text = std::string("Title") + '\0' + std::string(64 * mebibyte, 'a');
    WriteFile("text.png", PngWith(Chunk("tEXt", text)));
    const Outcome outcome = Load("text.png");
    EXPECT_TRUE(outcome.loaded);
    ExpectCheap(outcome);
}

TEST_F(ImageLimits, Png_still_has_its_palette_and_the_transparency_of_that) {
    // Every other chunk is stepped over.
    WriteFile("palette.png",
              std::string("\x89PNG\r\n\x1a\n") +
                  Chunk("IHDR", BigEndian(2) + BigEndian(1) + std::string("\x8\x3\0\0\0", 5)) +
                  Chunk("PLTE", "\x10\x20\x30\x40\x50\x60") + Chunk("tRNS", "\x80") +
                  Chunk("IDAT", Compressed(std::string("\0\0\1", 3))) + Chunk("IEND", ""));
    Image image;
    ASSERT_TRUE(image.Load("palette.png"));
    EXPECT_THAT(gl.Pixels(), ElementsAre(0x10, 0x20, 0x30, 0x80, 0x40, 0x50, 0x60, 0xff));
}

TEST_F(ImageLimits, Jpeg_of_100_scans_loads_and_one_of_101_is_refused_with_a_row) {
    WriteScans("most.jpg", 16, ManyScans(mostScans));
    WriteScans("more.jpg", 16, ManyScans(mostScans + 1));
    Image image;
    EXPECT_TRUE(image.Load("most.jpg"));
    const Outcome outcome = Load("more.jpg");
    EXPECT_FALSE(outcome.loaded);
    EXPECT_EQ(outcome.rows, 1);
}

TEST_F(ImageLimits, Jpeg_of_ten_thousand_scans_is_given_up_at_once) {
    WriteScans("scans.jpg", 2048, ManyScans(3));
    WriteFile("scans.jpg", WithScanRepeated(ReadFile("scans.jpg"), 10000));
    const Outcome outcome = Load("scans.jpg");
    EXPECT_FALSE(outcome.loaded);
    EXPECT_EQ(outcome.rows, 1);
    EXPECT_LT(outcome.cost.seconds, 2.0) << "all of them take more than ten";
    ExpectCheap(outcome);
}

TEST_F(ImageLimits, Jpeg_of_many_scans_takes_no_more_than_four_times_its_pixels) {
    WriteScans("large.jpg", 4096, ManyScans(3));
    const Outcome outcome = Load("large.jpg");
    EXPECT_TRUE(outcome.loaded);
    EXPECT_EQ(outcome.size, ivec2(4096, 4096));
    ExpectCheap(outcome);
}

TEST_F(ImageLimits, Jpeg_allows_its_library_twice_the_pixels_and_32_mebibytes) {
    WriteJpeg("jpeg.jpg", 100, 50, Bytes(100 * 50 * 3, 9));
    Image image;
    ASSERT_TRUE(image.Load("jpeg.jpg"));
    EXPECT_EQ(jpegMemory, 2 * 100 * 50 * 3 + 32 * 1024 * 1024);
}

TEST_F(ImageLimits, Jpeg_that_a_bit_a_block_could_not_hold_is_given_no_memory) {
    // 16,384 x 16,384 pixels in three components: 12,582,912 blocks, 1,572,864 bytes at the least.
    gl.largestTexture = 16384;
    WriteScans("boast.jpg", 16, ManyScans(3));
    std::string bytes = WithSide(ReadFile("boast.jpg"), "\xff\xc2", 16384);
    for (const std::size_t length : {std::size_t{40'000}, std::size_t{1'572'863}}) {
        bytes.resize(length);
        WriteFile("boast.jpg", bytes);
        const Outcome outcome = Load("boast.jpg");
        EXPECT_FALSE(outcome.loaded);
        EXPECT_EQ(outcome.rows, 1);
        ExpectCheap(outcome);
    }
}

TEST_F(ImageLimits, Jpeg_of_arithmetic_coding_is_taken_on_trust_no_further_than_others) {
    gl.largestTexture = 16384;
    // 9460 x 9460 x 3 bytes are 37 KB more than 256 MiB.
    WriteScans("arithmetic.jpg", 16, ManyScans(3), Coding::Arithmetic);
    WriteFile("arithmetic.jpg", WithSide(ReadFile("arithmetic.jpg"), "\xff\xca", 9460));
    const Outcome outcome = Load("arithmetic.jpg");
    EXPECT_FALSE(outcome.loaded);
    EXPECT_EQ(outcome.rows, 1);
    ExpectCheap(outcome);
}
