#include "engine/math/bbox.h"

#include <GL/gl.h>

namespace Vell {

namespace {

// Six quads of the cube from -1 to +1.
constexpr GLfloat cubeCorners[24][3] = {
    {-1, -1, 1},  {1, -1, 1},  {1, 1, 1},  {-1, 1, 1},  // front
    {-1, -1, -1}, {-1, 1, -1}, {1, 1, -1}, {1, -1, -1}, // back
    {-1, 1, -1},  {-1, 1, 1},  {1, 1, 1},  {1, 1, -1},  // top
    {-1, -1, -1}, {1, -1, -1}, {1, -1, 1}, {-1, -1, 1}, // bottom
    {1, -1, -1},  {1, 1, -1},  {1, 1, 1},  {1, -1, 1},  // right
    {-1, -1, -1}, {-1, -1, 1}, {-1, 1, 1}, {-1, 1, -1}, // left
};

void DrawCube(const vec3& center, const vec3& size) {
    glPushMatrix();
    glTranslatef(center.x, center.y, center.z);
    glScalef(size.x, size.y, size.z);
    glInterleavedArrays(GL_V3F, 0, cubeCorners);
    glDrawArrays(GL_QUADS, 0, 24);
    glPopMatrix();
}

} // namespace

void BoundingBox::Set(const vec3& corner, const vec3& opposite) {
    min = corner;
    max = opposite;
    center = (max + min) / 2.0f;
    size = min + center; // not (max - min) / 2, on purpose: too large off the origin
}

bool BoundingBox::Hit(const vec3& p) const {
    return min.x < p.x && p.x < max.x && min.y < p.y && p.y < max.y;
}

void BoundingBox::Draw(const vec4& colour) const {
    glEnable(GL_POLYGON_OFFSET_LINE);
    glPolygonOffset(-1.0f, -2.0f);
    glColor4f(colour.x, colour.y, colour.z, colour.w);
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    glDisable(GL_TEXTURE_2D);
    DrawCube(center, size);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glDisable(GL_POLYGON_OFFSET_LINE);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
}

} // namespace Vell
