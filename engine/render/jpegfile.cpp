#include "engine/render/jpegfile.h"

#include <algorithm>
#include <csetjmp>
#include <cstdint>
#include <cstring>
#include <limits>

#include <jpeglib.h>

namespace Vell {

namespace {

constexpr int rgbBytes = DecodedPicture::rgbBytes;

// A few bytes of a scan that has nothing new to say make libjpeg go over all the picture once more;
// cameras and programs make ten scans or so.
constexpr int mostScans = 100;

// libjpeg's own memory. It keeps 2 bytes for each sample of a picture of several scans, none of
// whose three components is finer than the picture; up to 24 MB go into filling it up to whole
// blocks of 32 pixels at the longest sides there are, 65,500; and there are rows and tables.
constexpr std::size_t bytesASample = 2;
constexpr std::size_t extraBytes = static_cast<std::size_t>(32) << 20;

/// libjpeg's standard error manager, which would end the program at a damaged file, with a way
/// back; and what counts the scans.
struct JpegControl {
    jpeg_error_mgr manager; // first, so that libjpeg's pointer to it is a pointer to this
    std::jmp_buf wayBack;
    jpeg_progress_mgr progress;
};

void LeaveDecoder(j_common_ptr jpeg) {
    std::longjmp(reinterpret_cast<JpegControl*>(jpeg->err)->wayBack, 1);
}

/// What there is to say stands in the log; the terminal is not ours to write on.
void SayNothing(j_common_ptr) {}

/// libjpeg asks this several times a scan.
void CountScans(j_common_ptr jpeg) {
    if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number > mostScans)
        LeaveDecoder(jpeg);
}

/// The least that a file spends on the picture: a bit for each block of 8 x 8 samples. Arithmetic
/// coding may need next to nothing for any number of flat ones, so there no length is enough.
std::size_t LeastBytes(const jpeg_decompress_struct& jpeg) {
    if (jpeg.arith_code)
        return std::numeric_limits<std::size_t>::max();
    std::size_t blocks = 0;
    for (int i = 0; i < jpeg.num_components; ++i)
        blocks += static_cast<std::size_t>(jpeg.comp_info[i].width_in_blocks) *
                  jpeg.comp_info[i].height_in_blocks;
    return blocks / 8;
}

/// Reads the header and makes room for what it promises.
DecodeOutcome Begin(FILE* file, FitsCheck fits, jpeg_decompress_struct& jpeg,
                    DecodedPicture& picture) {
    jpeg_stdio_src(&jpeg, file);
    jpeg_read_header(&jpeg, TRUE);
    if (jpeg.out_color_space != JCS_RGB) // grey or CMYK
        return DecodeOutcome::Refused;
    if (!fits(jpeg.image_width, jpeg.image_height))
        return DecodeOutcome::TooLarge;
    const std::size_t bytes =
        static_cast<std::size_t>(jpeg.image_width) * jpeg.image_height * rgbBytes;
    if (!IsCredible(file, bytes, LeastBytes(jpeg)))
        return DecodeOutcome::Refused;
    jpeg.mem->max_memory_to_use = static_cast<long>(bytes * bytesASample + extraBytes);
    return picture.MakeRoom(jpeg.image_width, jpeg.image_height, rgbBytes)
               ? DecodeOutcome::Decoded
               : DecodeOutcome::TooLarge;
}

/// Writes these bytes in reverse order, eight at a time: the last one to `to`.
void Reverse(const unsigned char* from, std::size_t count, unsigned char* to) {
    std::uint64_t piece = 0;
    for (; count >= sizeof piece; count -= sizeof piece, from += sizeof piece) {
        std::memcpy(&piece, from, sizeof piece);
        piece = __builtin_bswap64(piece);
        std::memcpy(to + count - sizeof piece, &piece, sizeof piece);
    }
    std::reverse_copy(from, from + count, to);
}

/// Puts a row of the file into the picture in reverse order of its pixels and of the rows, which
/// turns the picture by 180 degrees: flipped for OpenGL, and mirrored as well. PNG files are only
/// flipped; the difference is intended: the same picture looks mirrored as a JPEG. The row's
/// pixels are blue, green, red, so that with the order of all its bytes theirs is reversed too.
void PutTurned(const unsigned char* row, std::size_t number, const DecodedPicture& picture) {
    const std::size_t rowBytes = static_cast<std::size_t>(picture.size.x) * rgbBytes;
    const std::size_t rowsBelow = static_cast<std::size_t>(picture.size.y) - 1 - number;
    Reverse(row, rowBytes, picture.pixels.get() + rowsBelow * rowBytes);
}

/// Puts each row to its place at once, for a second pass over a large picture would take it through
/// the caches twice more. libjpeg may jump back into this function, so nothing in it has a
/// destructor to skip; the row is libjpeg's.
DecodeOutcome Decode(FILE* file, FitsCheck fits, jpeg_decompress_struct& jpeg, JpegControl& control,
                     DecodedPicture& picture) {
    if (setjmp(control.wayBack) != 0)
        return DecodeOutcome::Refused;
    jpeg_create_decompress(&jpeg);
    jpeg.progress = &control.progress;
    const DecodeOutcome begun = Begin(file, fits, jpeg, picture);
    if (begun != DecodeOutcome::Decoded)
        return begun;
    jpeg.out_color_space = JCS_EXT_BGR;
    jpeg_start_decompress(&jpeg);
    const JSAMPARRAY row = jpeg.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&jpeg),
                                                  JPOOL_IMAGE, jpeg.output_width * rgbBytes, 1);
    while (jpeg.output_scanline < jpeg.output_height) {
        const std::size_t number = jpeg.output_scanline;
        jpeg_read_scanlines(&jpeg, row, 1);
        PutTurned(row[0], number, picture);
    }
    jpeg_finish_decompress(&jpeg);
    return DecodeOutcome::Decoded;
}

} // namespace

DecodeOutcome DecodeJpeg(FILE* file, FitsCheck fits, DecodedPicture& picture) {
    jpeg_decompress_struct jpeg{};
    JpegControl control{};
    jpeg.err = jpeg_std_error(&control.manager);
    control.manager.error_exit = LeaveDecoder;
    control.manager.output_message = SayNothing;
    control.progress.progress_monitor = CountScans;
    const DecodeOutcome outcome = Decode(file, fits, jpeg, control, picture);
    jpeg_destroy_decompress(&jpeg);
    return outcome;
}

} // namespace Vell
