// Whether two meshes are the same city, as far as processors agree about it.
//
// What the eyes see first is measured with rays. Embree refines a reciprocal that the processor
// estimates, and Intel's and AMD's estimates differ; where a ray just grazes an edge, or meets two
// faces at one place, the other face may so come first. Some fifteen triangles of nineteen thousand
// are then left out, or marked for another flight, and the charts of the light map move together.
#include "art/common/meshlikeness.h"
#include "tools/options/commandline.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace {

constexpr double leastLikeness = 0.997; // what a change of the plan or of a flight does is far less

constexpr int different = 1;

Art::MeshFile Read(const std::string& path) {
    Art::MeshFile mesh;
    std::string error;
    if (!Art::ReadMesh(path, mesh, error))
        throw std::runtime_error(error);
    return mesh;
}

int Compare(const Tools::Arguments& arguments) {
    const double likeness = Art::Likeness(Read(arguments.operands[0]), Read(arguments.operands[1]));
    std::printf("%.2f %% of the triangles are the same\n", likeness * 100);
    return likeness >= leastLikeness ? EXIT_SUCCESS : different;
}

const Tools::Program program = {
    .name = "compare_city",
    .purpose = "Says how many triangles two meshes share; fails when they are not one city.",
    .modes = {{.operands = {{"A", Tools::FileToRead("a mesh")}, {"B", Tools::FileToRead("a mesh")}},
               .example = "a.xt3dstatic b.xt3dstatic",
               .run = Compare}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
