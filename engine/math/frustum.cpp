#include "engine/math/frustum.h"

#include "engine/math/matrix.h"

#include <GL/gl.h>

namespace Vell {

namespace {

/// One plane from the clip matrix: its fourth column plus `sign` times another column.
struct Side {
    int column;
    float sign;
};

constexpr Side sides[6] = {
    {0, -1.0f}, // right
    {0, +1.0f}, // left
    {1, +1.0f}, // bottom
    {1, -1.0f}, // top
    {2, -1.0f}, // far
    {2, +1.0f}, // near
};

/// OpenGL's column-major arrays multiplied as row-major ones: model-view times projection is then
/// the transposed product projection * model-view, which is the clip matrix in OpenGL's element
/// order.
Matrix ReadClipMatrix() {
    Matrix modelView;
    Matrix projection;
    glGetFloatv(GL_MODELVIEW_MATRIX, modelView.Get());
    glGetFloatv(GL_PROJECTION_MATRIX, projection.Get());
    return modelView * projection;
}

} // namespace

Frustum& Frustum::GetInstance() {
    static Frustum instance;
    return instance;
}

void Frustum::MakePlane() {
    const Matrix clip = ReadClipMatrix();
    for (int i = 0; i < 6; ++i) {
        const Side& side = sides[i];
        const auto term = [&](int row) {
            return clip[4 * row + 3] + side.sign * clip[4 * row + side.column];
        };
        planes[i].Set(term(0), term(1), term(2), term(3));
        planes[i].Normalize();
    }
}

bool Frustum::PointIn(const vec3& p) const {
    for (const Plane& plane : planes)
        if (!plane.PointIn(p))
            return false;
    return true;
}

bool Frustum::BBoxIn(const vec3& min, const vec3& max) const {
    for (const Plane& plane : planes)
        if (!plane.AnyCornerIn(min, max))
            return false;
    return true;
}

} // namespace Vell
