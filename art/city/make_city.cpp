// make_city FOLDER: writes city.xt3dstatic into FOLDER and says what it holds.
#include "art/city/meshing.h"
#include "art/city/plan.h"

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_city FOLDER\n");
        return 2;
    }
    const Art::Builder city = Art::BuildCity(Art::kCitySeed);
    Art::MeshReport report;
    const Art::MeshFile mesh = Art::MeshCity(city, report);
    const std::string path = std::string(argv[1]) + "/city.xt3dstatic";
    if (!Art::WriteMesh(path, mesh))
        return 1;
    std::printf("%s: %zu buildings, %zu lamps, %zu surfaces (%zu hidden ones dropped), "
                "%zu sub-meshes, %zu vertices, %.1f light-map texels a unit\n",
                path.c_str(), city.buildings.size(), city.lamps.size(), report.surfaces,
                report.hidden, mesh.subMeshes.size(), report.vertices,
                static_cast<double>(report.density));
    return 0;
}
