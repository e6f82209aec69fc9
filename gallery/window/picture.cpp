#include "gallery/window/picture.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <GL/gl.h>
#include <sys/time.h>

namespace Gallery {

namespace {

double now = 0.0; // seconds, while a picture is made

const char* PictureFile() {
    return std::getenv("GALLERY_PICTURE");
}

std::vector<unsigned char> ReadPixels(int width, int height) {
    std::vector<unsigned char> pixels(static_cast<std::size_t>(width * height) * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
    return pixels;
}

bool WritePpm(const char* path, int width, int height, const std::vector<unsigned char>& pixels) {
    std::FILE* file = std::fopen(path, "wb");
    if (file == nullptr)
        return false;
    std::fprintf(file, "P6 %d %d 255\n", width, height);
    const std::size_t row = static_cast<std::size_t>(width) * 3;
    bool good = true;
    for (int y = height - 1; y >= 0; --y) // OpenGL counts rows from below
        good = std::fwrite(&pixels[static_cast<std::size_t>(y) * row], 1, row, file) == row && good;
    return std::fclose(file) == 0 && good;
}

const char* Text(GLenum name) {
    return reinterpret_cast<const char*>(glGetString(name));
}

} // namespace

// Made at the first call, for music asks before main() does.
std::function<void(double)>& MomentListener() {
    static std::function<void(double)> listener;
    return listener;
}

bool MakesPicture() {
    return PictureFile() != nullptr;
}

void GoToMoment() {
    const char* const moment = std::getenv("GALLERY_MOMENT");
    now = moment == nullptr ? 0.0 : std::strtod(moment, nullptr);
    if (MomentListener())
        MomentListener()(now);
}

void SavePicture(int width, int height) {
    if (!WritePpm(PictureFile(), width, height, ReadPixels(width, height))) {
        std::perror(PictureFile());
        std::exit(1); // NOLINT(concurrency-mt-unsafe): no thread is left that would notice
    }
    std::printf("%s, %s\n", Text(GL_RENDERER), Text(GL_VERSION));
}

} // namespace Gallery

// The linker sends the program's own calls of gettimeofday() here, and with them every Vell::Clock,
// but not those of other libraries.
// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
extern "C" {

int __real_gettimeofday(timeval* time, void* zone);

int __wrap_gettimeofday(timeval* time, void* zone) {
    if (!Gallery::MakesPicture())
        return __real_gettimeofday(time, zone);
    time->tv_sec = static_cast<time_t>(Gallery::now);
    time->tv_usec = static_cast<suseconds_t>(std::fmod(Gallery::now, 1.0) * 1e6);
    return 0;
}
}
// NOLINTEND(bugprone-reserved-identifier)
