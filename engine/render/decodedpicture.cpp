#include "engine/render/decodedpicture.h"

#include "engine/render/trust.h"

#include <new>

#include <sys/stat.h>

namespace Vell {

bool DecodedPicture::MakeRoom(unsigned width, unsigned height, int pixelBytes) {
    size = ivec2(static_cast<int>(width), static_cast<int>(height));
    format = pixelBytes == rgbaBytes ? GL_RGBA : GL_RGB;
    pixels.reset(
        new (std::nothrow) unsigned char[static_cast<std::size_t>(width) * height * pixelBytes]);
    return pixels != nullptr;
}

bool IsCredible(FILE* file, std::size_t pictureBytes, std::size_t least) {
    if (pictureBytes <= takenOnTrust)
        return true;
    struct stat status {};
    const bool measured = fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode);
    return !measured || static_cast<std::size_t>(status.st_size) >= least;
}

} // namespace Vell
