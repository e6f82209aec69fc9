// What the doctor reads of files by itself: a mesh's textures, a picture's size, a list of sums.

#include "tests/fuzz/memoryfile.h"
#include "tools/doctor/datafiles.h"
#include "tools/doctor/meshtextures.h"
#include "tools/doctor/picturesize.h"

#include <sstream>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    std::istringstream mesh(text);
    Doctor::MeshTextures(mesh);
    std::istringstream picture(text);
    const Doctor::PictureSize pixels = Doctor::ReadPictureSize(picture);
    if (pixels.width < 0 || pixels.height < 0)
        std::abort();
    const MemoryFile file(bytes, size);
    for (const auto& [name, sum] : Doctor::ReadSums(file.Path()))
        if (name.empty() || sum.size() != 64)
            std::abort();
    return 0;
}
