#include "art/sky/faces.h"

#include "art/common/parallel.h"

namespace Art {

const std::array<SkyFace, 6>& SkyFaces() {
    // Each row follows from the corners that the sky box gives its texture coordinates: on zpos,
    // for one, (0,0) lies at x = +1 and (1,0) at x = -1, so that s runs along -x.
    static const std::array<SkyFace, 6> faces = {{
        {"xpos.jpg", {1, -1, -1}, {0, 0, 2}, {0, 2, 0}},
        {"xneg.jpg", {-1, -1, 1}, {0, 0, -2}, {0, 2, 0}},
        {"ypos.jpg", {1, 1, 1}, {-2, 0, 0}, {0, 0, -2}},
        {"yneg.jpg", {1, -1, -1}, {-2, 0, 0}, {0, 0, 2}},
        {"zpos.jpg", {1, -1, 1}, {-2, 0, 0}, {0, 2, 0}},
        {"zneg.jpg", {-1, -1, -1}, {2, 0, 0}, {0, 2, 0}},
    }};
    return faces;
}

vec3 FaceDirection(const SkyFace& face, float s, float t) {
    return Normalized(face.origin + face.alongS * s + face.alongT * t);
}

Picture PaintFace(const SkyFace& face, int size, const std::function<vec3(vec3)>& colour) {
    Picture picture(size, size);
    ForEachIndex(size, 0, [&](int row) {
        const float t = 1 - (static_cast<float>(row) + 0.5f) / static_cast<float>(size);
        for (int column = 0; column < size; ++column) {
            const float s = (static_cast<float>(column) + 0.5f) / static_cast<float>(size);
            const vec3 painted = colour(FaceDirection(face, s, t));
            picture.At(column, row) = {painted.x, painted.y, painted.z, 1};
        }
    });
    return picture;
}

} // namespace Art
