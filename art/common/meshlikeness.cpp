#include "art/common/meshlikeness.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Art {

namespace {

using Numbers = std::vector<float>;
using Triangle = std::pair<std::string, Numbers>; ///< its texture, and what counts of its corners

void Append(const MeshVertex& vertex, Numbers& numbers) {
    const vec3& p = vertex.position;
    const vec3& n = vertex.normal;
    const vec2& t = vertex.texcoord;
    numbers.insert(numbers.end(), {p.x, p.y, p.z, n.x, n.y, n.z, t.x, t.y});
}

std::vector<Triangle> SortedTriangles(const MeshFile& mesh) {
    std::vector<Triangle> triangles;
    for (const SubMesh& subMesh : mesh.subMeshes)
        for (std::size_t v = 0; v + 2 < subMesh.vertices.size(); v += 3) {
            Triangle& triangle = triangles.emplace_back(subMesh.textures[0], Numbers());
            for (std::size_t corner = 0; corner < 3; ++corner)
                Append(subMesh.vertices[v + corner], triangle.second);
        }
    std::sort(triangles.begin(), triangles.end());
    return triangles;
}

} // namespace

double Likeness(const MeshFile& a, const MeshFile& b) {
    const std::vector<Triangle> ofA = SortedTriangles(a);
    const std::vector<Triangle> ofB = SortedTriangles(b);
    const std::size_t most = std::max(ofA.size(), ofB.size());
    if (most == 0)
        return 1.0;
    std::vector<Triangle> common;
    std::set_intersection(ofA.begin(), ofA.end(), ofB.begin(), ofB.end(),
                          std::back_inserter(common));
    return static_cast<double>(common.size()) / static_cast<double>(most);
}

} // namespace Art
