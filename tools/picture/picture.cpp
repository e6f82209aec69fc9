#include "tools/picture/picture.h"

#include "tools/picture/decode.h"
#include "tools/picture/encode.h"

#include <fstream>
#include <stdexcept>
#include <utility>

namespace Tools {

Picture::Picture(int newWidth, int newHeight)
    : width(newWidth),
      height(newHeight),
      bytes(static_cast<std::size_t>(newWidth) * static_cast<std::size_t>(newHeight) * channels) {}

Picture ReadPpm(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string magic;
    int largest = 0;
    int width = 0;
    int height = 0;
    file >> magic >> width >> height >> largest;
    file.get(); // the one white space before the pixels
    if (!file || magic != "P6" || largest != 255 || width <= 0 || height <= 0)
        throw std::runtime_error(path + ": expected a binary PPM of 8 bits, found \"" + magic +
                                 "\"");
    Picture picture(width, height);
    file.read(reinterpret_cast<char*>(picture.bytes.data()),
              static_cast<std::streamsize>(picture.bytes.size()));
    if (static_cast<std::size_t>(file.gcount()) != picture.bytes.size())
        throw std::runtime_error(path + ": expected " + std::to_string(picture.bytes.size()) +
                                 " bytes of pixels, found " + std::to_string(file.gcount()));
    return picture;
}

Picture ReadPng(const std::string& path) {
    DecodedPicture read = DecodePng(path, Picture::channels);
    Picture picture;
    picture.width = read.width;
    picture.height = read.height;
    picture.bytes = std::move(read.bytes);
    return picture;
}

std::vector<unsigned char> PngOf(const Picture& picture) {
    return PngOf({picture.width, picture.height, Picture::channels, picture.bytes.data()});
}

void WritePng(const Picture& picture, const std::string& path) {
    const std::vector<unsigned char> bytes = PngOf(picture);
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path);
}

} // namespace Tools
