// Whether two meshes are the same city, as far as processors agree about it.
//
// What the eyes see first is measured with rays. Embree refines a reciprocal that the processor
// estimates, and Intel's and AMD's estimates differ; where a ray just grazes an edge, or meets two
// faces at one place, the other face may so come first. Some fifteen triangles of nineteen thousand
// are then left out, or marked for another flight, and the charts of the light map move together.
#include "art/common/meshlikeness.h"
#include "art/common/options.h"

#include <cstdio>
#include <cstdlib>

namespace {

constexpr double leastLikeness = 0.997; // what a change of the plan or of a flight does is far less

constexpr int different = 1;

bool Read(const std::string& path, Art::MeshFile& mesh) {
    std::string error;
    if (Art::ReadMesh(path, mesh, error))
        return true;
    std::fprintf(stderr, "%s\n", error.c_str());
    return false;
}

} // namespace

int main(int count, char** arguments) {
    int status = 0;
    const auto meshes = Art::ReadArguments(
        {.program = "compare_city",
         .purpose = "Says how many triangles two meshes share; fails when they are not one city.",
         .operands = {"A", "B"}},
        count, arguments, status);
    if (!meshes)
        return status;
    Art::MeshFile a;
    Art::MeshFile b;
    if (!Read(meshes->front(), a) || !Read(meshes->back(), b))
        return different;
    const double likeness = Art::Likeness(a, b);
    std::printf("%.2f %% of the triangles are the same\n", likeness * 100);
    return likeness >= leastLikeness ? EXIT_SUCCESS : different;
}
