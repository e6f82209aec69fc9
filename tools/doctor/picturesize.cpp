#include "tools/doctor/picturesize.h"

#include <istream>
#include <string>

namespace Doctor {

namespace {

constexpr int none = -1; // what is read behind the end

int Byte(std::istream& in) {
    const int byte = in.get();
    return in ? byte : none;
}

/// The highest byte first, as both formats write numbers; none at the end of the file.
int Number(std::istream& in, int bytes) {
    int number = 0;
    for (int i = 0; i < bytes; ++i) {
        const int byte = Byte(in);
        if (byte == none || number > 0x7FFFFF)
            return none;
        number = number << 8 | byte;
    }
    return number;
}

// After the signature of 8 bytes: the header's length (4), its name (4), width (4), height (4).
PictureSize ReadPng(std::istream& in) {
    in.seekg(16);
    PictureSize size;
    size.width = Number(in, 4);
    size.height = Number(in, 4);
    return size.width > 0 && size.height > 0 ? size : PictureSize();
}

/// Whether a frame header, which holds the size, follows this marker: C0 to CF, but for the
/// tables (C4), the reserved one (C8) and arithmetic conditioning (CC).
bool BeginsFrame(int marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

// After the first marker of 2 bytes: segments of a marker (2), a length (2) that counts itself, and
// content. A frame header's content: precision (1), height (2), width (2).
PictureSize ReadJpeg(std::istream& in) {
    in.seekg(2);
    while (Byte(in) == 0xFF) {
        const int marker = Byte(in);
        const int length = Number(in, 2);
        if (BeginsFrame(marker)) {
            in.ignore(1);
            PictureSize size;
            size.height = Number(in, 2);
            size.width = Number(in, 2);
            return size.width > 0 && size.height > 0 ? size : PictureSize();
        }
        if (length < 2)
            break;
        in.ignore(length - 2);
    }
    return {};
}

} // namespace

PictureSize ReadPictureSize(std::istream& in) {
    std::string signature(8, '\0');
    in.read(signature.data(), static_cast<std::streamsize>(signature.size()));
    if (signature == "\x89PNG\r\n\x1A\n")
        return ReadPng(in);
    if (signature.compare(0, 2, "\xFF\xD8") == 0)
        return ReadJpeg(in);
    return {};
}

} // namespace Doctor
