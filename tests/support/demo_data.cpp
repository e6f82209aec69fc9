#include "tests/support/demo_data.h"

#include "demo/assets.h"
#include "tests/support/scratch.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <iterator>

namespace {

using Colour = std::array<unsigned char, 3>;

constexpr Colour skyBlue = {0, 0, 80};
constexpr Colour flatNormal = {128, 128, 255};
constexpr Colour white = {255, 255, 255};

constexpr int tiny = 4;
constexpr int logoSize = 128;

// One triangle, no texture, no light map.
const char* const triangleMesh = "XT3DSTATIC 1 Data/Gfx/ 0\n"
                                 "NULL NULL NULL 3\n"
                                 "-1 0 0  0 0 1  0 0\n"
                                 " 1 0 0  0 0 1  1 0\n"
                                 " 0 1 0  0 0 1  0 1\n";

const char* const vertexShader = "void main()\n"
                                 "{\n"
                                 "    gl_Position = ftransform();\n"
                                 "}\n";

const char* const cityFragmentShader = "uniform vec3 posred, posgreen, posblue;\n"
                                       "void main()\n"
                                       "{\n"
                                       "    vec3 sum = posred + posgreen + posblue;\n"
                                       "    gl_FragColor = vec4(sum * 0.001, 1.0);\n"
                                       "}\n";

const char* const wispFragmentShader = "void main()\n"
                                       "{\n"
                                       "    gl_FragColor = vec4(1.0);\n"
                                       "}\n";

const char* const realFolder = "NIMBREL_TEST_DATA";

void WriteFlatJpeg(const std::string& path, int size, const Colour& colour) {
    std::vector<unsigned char> bytes;
    for (int pixel = 0; pixel < size * size; ++pixel)
        bytes.insert(bytes.end(), colour.begin(), colour.end());
    WriteJpeg(path, size, size, bytes);
}

void WriteTinyFiles() {
    WriteFile("Data/Gfx/City/city.xt3dstatic", triangleMesh);
    WriteFile("Data/Gfx/City/shader.vert", vertexShader);
    WriteFile("Data/Gfx/City/shader.frag", cityFragmentShader);
    for (const char* colour : {"green", "red", "blue"})
        WriteFile(std::string("Data/Gfx/Wisp/") + colour + ".xt3dstatic", triangleMesh);
    WriteFile("Data/Gfx/Wisp/billboard.vert", vertexShader);
    WriteFile("Data/Gfx/Wisp/billboard.frag", wispFragmentShader);
    WriteFile("Data/Gfx/Fish/fish.xt3dstatic", triangleMesh);
    for (const char* face : {"xpos", "xneg", "ypos", "yneg", "zpos", "zneg"})
        WriteFlatJpeg(std::string("Data/Gfx/City/sky/") + face + ".jpg", tiny, skyBlue);
    WriteFlatJpeg("Data/Gfx/water.jpg", tiny, flatNormal);
    WriteFlatJpeg("Data/Gfx/Logo/logo.jpg", logoSize, white);
}

} // namespace

const std::vector<std::string>& DemoFiles() {
    static const std::vector<std::string> files(std::begin(Assets::loaded),
                                                std::end(Assets::loaded));
    return files;
}

void MakeDemoData() {
    if (DemoDataIsReal())
        std::filesystem::create_directory_symlink(std::getenv(realFolder), "Data");
    else
        WriteTinyFiles();
}

bool DemoDataIsReal() {
    return std::getenv(realFolder) != nullptr;
}
