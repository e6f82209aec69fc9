// compare_city A B: whether two meshes are the same city, as far as processors agree about it.
//
// What the eyes see first is measured with rays. Embree refines a reciprocal that the processor
// estimates, and Intel's and AMD's estimates differ; where a ray just grazes an edge, or meets two
// faces at one place, the other face may so come first. Some fifteen triangles of nineteen thousand
// are then left out, or marked for another flight, and the charts of the light map move together.
#include "art/common/meshlikeness.h"

#include <cstdio>
#include <cstdlib>

namespace {

constexpr double leastLikeness = 0.997; // what a change of the plan or of a flight does is far less

constexpr int different = 1;
constexpr int wrongUsage = 2;

bool Read(const char* path, Art::MeshFile& mesh) {
    std::string error;
    if (Art::ReadMesh(path, mesh, error))
        return true;
    std::fprintf(stderr, "%s\n", error.c_str());
    return false;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: compare_city A B\n");
        return wrongUsage;
    }
    Art::MeshFile a;
    Art::MeshFile b;
    if (!Read(argv[1], a) || !Read(argv[2], b))
        return different;
    const double likeness = Art::Likeness(a, b);
    std::printf("%.2f %% of the triangles are the same\n", likeness * 100);
    return likeness >= leastLikeness ? EXIT_SUCCESS : different;
}
