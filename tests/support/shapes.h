#pragma once

#include "engine/core/GLExtensions.h"
#include "engine/math/vec3.h"
#include "engine/scene/mesh.h"
#include "tests/support/pixels.h"

#include <string>

/// Simple things to draw in tests, with the fixed pipeline and immediate mode.

/// A corner of a rectangle and its two sides, in world space.
struct Rectangle {
    Vell::vec3 corner;
    Vell::vec3 u;
    Vell::vec3 v;
};

/// The rectangle without any colour of its own.
inline void DrawRectangle(const Rectangle& r) {
    const Vell::vec3 corners[] = {r.corner, r.corner + r.u, r.corner + r.u + r.v, r.corner + r.v};
    glBegin(GL_QUADS);
    for (const Vell::vec3& c : corners)
        glVertex3f(c.x, c.y, c.z);
    glEnd();
}

/// The rectangle in one colour; leaves the colour white.
inline void DrawRectangle(const Rectangle& r, Rgba colour) {
    glColor4ub(static_cast<GLubyte>(colour.r), static_cast<GLubyte>(colour.g),
               static_cast<GLubyte>(colour.b), static_cast<GLubyte>(colour.a));
    DrawRectangle(r);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
}

/// A rectangle as a mesh with its bounding box, in either pass.
class RectangleMesh : public Vell::Mesh {
public:
    RectangleMesh(const Rectangle& r, Rgba fill) : rectangle(r), colour(fill) {
        bbox.Set(r.corner, r.corner + r.u + r.v);
    }

    void Draw() override { DrawRectangle(rectangle, colour); }
    void DrawShadow() override { DrawRectangle(rectangle); }

private:
    Rectangle rectangle;
    Rgba colour;
};

/// A file name that no test of this process has used: the registry of loaded files never forgets a
/// path, not even when what was loaded from it is gone.
inline std::string FreshName(const std::string& base, const std::string& ending) {
    static int count = 0;
    return base + std::to_string(count++) + ending;
}
