// Loaders when memory is short, when a file asks for far more of it than it can fill, and when
// libpng cannot begin.

#include "engine/render/image.h"
#include "engine/render/trust.h"
#include "engine/render/xt3dstatic.h"

#include "tests/render/image_probe.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include <dlfcn.h>
#include <png.h>
#include <zlib.h>

using namespace Vell;

namespace {

int allocationsLeft = -1;          // before one fails; below 0: none does
std::size_t largestAllocation = 0; // in bytes, since a test set it to 0

bool readStructFails = false;
bool infoStructFails = false;

} // namespace

/// The allocations that loaders make room for the content of a file with.
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    largestAllocation = std::max(largestAllocation, size);
    if (allocationsLeft == 0)
        return nullptr;
    --allocationsLeft;
    try {
        return operator new[](size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// These two take the place of libpng's in this executable: the linker finds them first.
extern "C" png_structp png_create_read_struct(png_const_charp version, png_voidp data,
                                              png_error_ptr error, png_error_ptr warning) {
    static const auto real = reinterpret_cast<decltype(&png_create_read_struct)>(
        dlsym(RTLD_NEXT, "png_create_read_struct"));
    return readStructFails ? nullptr : real(version, data, error, warning);
}

extern "C" png_infop png_create_info_struct(png_const_structrp png) {
    static const auto real = reinterpret_cast<decltype(&png_create_info_struct)>(
        dlsym(RTLD_NEXT, "png_create_info_struct"));
    return infoStructFails ? nullptr : real(png);
}

namespace {

class OutOfMemoryTest : public GlTest {
protected:
    void TearDown() override {
        allocationsLeft = -1;
        readStructFails = infoStructFails = false;
        GlTest::TearDown();
    }

    static void ExpectRefused(const std::string& name, const Rows& rows) {
        SCOPED_TRACE(name);
        const LogWatch log;
        {
            Image image;
            EXPECT_FALSE(image.Load(name));
            ExpectEmpty(image);
            EXPECT_EQ(log.NewRows(), rows);
        }
    }

    static std::string SmallPng() {
        std::string name = NewName(".png");
        WritePng(name, 2, 1, 3, {1, 2, 3, 4, 5, 6});
        return name;
    }
};

void SetBigEndian(std::string& bytes, std::size_t at, unsigned long value, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        bytes[at + i] = static_cast<char>(value >> (8 * (count - 1 - i)));
}

/// Files whose headers promise side x side pixels; there are a few hundred bytes of them.
std::string BoastfulPng(unsigned side) {
    std::string name = NewName(".png");
    WritePng(name, 16, 16, 3, Bytes(16 * 16 * 3, 9));
    std::string bytes = ReadFile(name);
    SetBigEndian(bytes, 16, side, 4); // the header's data: width, height, ...
    SetBigEndian(bytes, 20, side, 4);
    const auto* header = reinterpret_cast<const Bytef*>(bytes.data() + 12); // kind and 13 bytes
    SetBigEndian(bytes, 29, crc32(0, header, 17), 4);
    WriteFile(name, bytes);
    return name;
}

std::string BoastfulJpeg(unsigned side) {
    std::string name = NewName(".jpg");
    WriteJpeg(name, 16, 16, Bytes(16 * 16 * 3, 9));
    std::string bytes = ReadFile(name);
    const std::size_t frame = bytes.find("\xff\xc0"); // marker, length, depth, height, width
    SetBigEndian(bytes, frame + 5, side, 2);
    SetBigEndian(bytes, frame + 7, side, 2);
    WriteFile(name, bytes);
    return name;
}

constexpr std::size_t oneMegabyte = 1 << 20;
constexpr unsigned beyondTrust = 9460; // its square times 3 bytes is 37 KB more than 256 MiB
static_assert(static_cast<std::size_t>(beyondTrust) * beyondTrust * 3 > takenOnTrust);

} // namespace

TEST_F(OutOfMemoryTest, Picture_without_room_for_its_pixels_is_refused_with_a_row) {
    const std::string png = SmallPng();
    allocationsLeft = 0;
    ExpectRefused(png, {{"Image", "ERROR", png}});
    allocationsLeft = -1;
    const std::string jpeg = NewName(".jpg");
    WriteJpeg(jpeg, 2, 1, {1, 2, 3, 4, 5, 6});
    allocationsLeft = 0;
    ExpectRefused(jpeg, {{"Image", "ERROR", jpeg}});
}

TEST_F(OutOfMemoryTest, Picture_is_refused_without_a_row_when_libpng_cannot_begin) {
    const std::string first = SmallPng();
    const std::string second = SmallPng();
    readStructFails = true;
    ExpectRefused(first, {});
    readStructFails = false;
    infoStructFails = true;
    ExpectRefused(second, {});
}

TEST_F(OutOfMemoryTest, Small_file_that_promises_a_large_picture_is_given_no_memory) {
    const ExpectSilence silence;
    const std::string png = BoastfulPng(beyondTrust);
    const std::string jpeg = BoastfulJpeg(beyondTrust);
    largestAllocation = 0;
    ExpectRefused(png, {});
    ExpectRefused(jpeg, {{"Image", "ERROR", jpeg}});
    EXPECT_LT(largestAllocation, oneMegabyte);
}

TEST_F(OutOfMemoryTest, Jpeg_that_breaks_off_early_loads_however_little_there_is_of_it) {
    // As it is, a file of its size would hold far fewer pixels.
    const std::string jpeg = BoastfulJpeg(4096);
    const ExpectSilence silence;
    const LogWatch log;
    Image image;
    EXPECT_TRUE(image.Load(jpeg));
    EXPECT_EQ(image.GetSize(), ivec2(4096, 4096));
    EXPECT_EQ(log.NewRows(), (Rows{{"Image", "LOADED", jpeg}}));
}

TEST_F(OutOfMemoryTest, Large_picture_that_packs_well_is_still_given_its_memory) {
    // As small as files of their size become: one colour all over.
    constexpr int side = 1024;
    const std::string png = NewName(".png");
    WritePng(png, side, side, 4, Bytes(static_cast<std::size_t>(side) * side * 4, 9));
    const std::string jpeg = NewName(".jpg");
    WriteJpeg(jpeg, side, side, Bytes(static_cast<std::size_t>(side) * side * 3, 128), 1);
    for (const std::string& name : {png, jpeg}) {
        Image image;
        EXPECT_TRUE(image.Load(name)) << name;
        EXPECT_EQ(image.GetSize(), ivec2(side, side));
    }
}

TEST_F(OutOfMemoryTest, Mesh_without_room_for_its_content_is_refused_with_a_row) {
    // Its sub-meshes, then four arrays.
    for (int before = 0; before < 5; ++before) {
        SCOPED_TRACE(before);
        const std::string name = NewName(".xt3dstatic");
        WriteFile(name, "XT3DSTATIC 1 ./ 0 NULL NULL NULL 1 0 0 0 0 0 1 0 0");
        const LogWatch log;
        XT3DStatic mesh;
        allocationsLeft = before;
        mesh.Load(name);
        allocationsLeft = -1;
        EXPECT_EQ(log.NewRows(), (Rows{{"XT3DStatic", "ERROR", name}}));
        mesh.Draw();
    }
}

TEST_F(OutOfMemoryTest, Mesh_is_given_less_than_a_gigabyte_whatever_its_counts_say) {
    for (const char* counts :
         {"XT3DSTATIC 2147483647 ./ 0 ", "XT3DSTATIC 1 ./ 0 NULL NULL NULL 2147483647 ",
          "XT3DSTATIC 65536 ./ 0 NULL NULL NULL 6710886 "}) {
        SCOPED_TRACE(counts);
        const std::string name = NewName(".xt3dstatic");
        WriteFile(name, counts);
        largestAllocation = 0;
        XT3DStatic mesh;
        mesh.Load(name);
        EXPECT_LT(largestAllocation, 128 * oneMegabyte); // of the five
        mesh.Draw();
    }
}
