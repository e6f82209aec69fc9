#include "tools/doctor/meshtextures.h"

#include <istream>

namespace Doctor {

namespace {

constexpr int texturesPerPart = 3;
constexpr int numbersPerVertex = 8;
constexpr int numbersWithLightmap = 10;

/// Leaves out words; numbers are not looked at.
void Skip(std::istream& in, long long words) {
    std::string word;
    for (long long i = 0; i < words && in >> word; ++i) {
    }
}

} // namespace

std::vector<std::string> MeshTextures(std::istream& in) {
    std::vector<std::string> textures;
    std::string magic;
    std::string folder;
    int parts = 0;
    bool lightmap = false;
    in >> magic >> parts >> folder >> lightmap;
    if (!in || magic != "XT3DSTATIC")
        return textures;
    if (lightmap)
        textures.push_back(folder + "lightmap.jpg");
    for (int part = 0; part < parts && in; ++part) {
        std::string file;
        for (int i = 0; i < texturesPerPart && in >> file; ++i)
            if (file != "NULL")
                textures.push_back(folder + file);
        int vertices = 0; // as the engine reads it: a larger number ends the reading
        in >> vertices;
        Skip(in, static_cast<long long>(vertices) *
                     (lightmap ? numbersWithLightmap : numbersPerVertex));
    }
    return textures;
}

} // namespace Doctor
