#include "engine/render/jpegfile.h"

#include <csetjmp>

#include <jpeglib.h>

namespace Vell {

namespace {

constexpr int rgbBytes = DecodedPicture::rgbBytes;

// Each block of 8 x 8 samples costs a bit, and no component is coarser than a quarter of the
// picture in each direction.
constexpr std::size_t mostPixelsAJpegByte = 8192;

/// libjpeg's standard error manager, which would end the program at a damaged file, with a way
/// back.
struct JpegErrors {
    jpeg_error_mgr manager; // first, so that libjpeg's pointer to it is a pointer to this
    std::jmp_buf wayBack;
};

void LeaveDecoder(j_common_ptr jpeg) {
    std::longjmp(reinterpret_cast<JpegErrors*>(jpeg->err)->wayBack, 1);
}

/// What there is to say stands in the log; the terminal is not ours to write on.
void SayNothing(j_common_ptr) {}

/// Reads the header and makes room for what it promises.
DecodeOutcome Begin(FILE* file, FitsCheck fits, jpeg_decompress_struct& jpeg,
                    DecodedPicture& picture) {
    jpeg_stdio_src(&jpeg, file);
    jpeg_read_header(&jpeg, TRUE);
    if (jpeg.out_color_space != JCS_RGB) // grey or CMYK
        return DecodeOutcome::Refused;
    if (!fits(jpeg.image_width, jpeg.image_height))
        return DecodeOutcome::TooLarge;
    const std::size_t pixels = static_cast<std::size_t>(jpeg.image_width) * jpeg.image_height;
    // Arithmetic coding may need next to nothing for any number of flat blocks.
    if (!jpeg.arith_code && !IsCredible(file, pixels * rgbBytes, pixels / mostPixelsAJpegByte))
        return DecodeOutcome::Refused;
    return picture.MakeRoom(jpeg.image_width, jpeg.image_height, rgbBytes)
               ? DecodeOutcome::Decoded
               : DecodeOutcome::TooLarge;
}

/// libjpeg may jump back into this function, so nothing in it has a destructor to skip.
DecodeOutcome Decode(FILE* file, FitsCheck fits, jpeg_decompress_struct& jpeg, JpegErrors& errors,
                     DecodedPicture& picture) {
    if (setjmp(errors.wayBack) != 0)
        return DecodeOutcome::Refused;
    jpeg_create_decompress(&jpeg);
    const DecodeOutcome begun = Begin(file, fits, jpeg, picture);
    if (begun != DecodeOutcome::Decoded)
        return begun;
    jpeg_start_decompress(&jpeg);
    while (jpeg.output_scanline < jpeg.output_height) {
        JSAMPROW row = picture.pixels.get() + static_cast<std::size_t>(jpeg.output_scanline) *
                                                  jpeg.output_width * rgbBytes;
        jpeg_read_scanlines(&jpeg, &row, 1);
    }
    jpeg_finish_decompress(&jpeg);
    return DecodeOutcome::Decoded;
}

} // namespace

DecodeOutcome DecodeJpeg(FILE* file, FitsCheck fits, DecodedPicture& picture) {
    jpeg_decompress_struct jpeg{};
    JpegErrors errors{};
    jpeg.err = jpeg_std_error(&errors.manager);
    errors.manager.error_exit = LeaveDecoder;
    errors.manager.output_message = SayNothing;
    const DecodeOutcome outcome = Decode(file, fits, jpeg, errors, picture);
    jpeg_destroy_decompress(&jpeg);
    return outcome;
}

} // namespace Vell
