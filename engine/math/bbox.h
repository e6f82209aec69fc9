#pragma once

#include "engine/math/vec3.h"
#include "engine/math/vec4.h"

namespace Vell {

/// Axis-aligned box, in the space of whatever carries it. All zero until Set().
class BoundingBox {
public:
    BoundingBox() = default;
    BoundingBox(const BoundingBox&) = default;
    BoundingBox& operator=(const BoundingBox&) = default;
    ~BoundingBox() = default;

    /// Stores the corners as given, unsorted, and from them the centre and the size.
    void Set(const vec3& corner, const vec3& opposite);

    /// What Set() stored, to read or to change; a change reaches no other of the four.
    vec3& GetMin() { return min; }
    vec3& GetMax() { return max; }
    vec3& GetCenter() { return center; }
    /// min + center. That is intended: it is the half-extent only of a box that starts at the
    /// origin, and minus the half-extent of one that is symmetric about it; any other box draws too
    /// large.
    vec3& GetSize() { return size; }

    /// Whether `p` lies strictly between the corners in x and y. z is not tested, which is
    /// intended: it answers for the whole column above and below the box as well.
    bool Hit(const vec3& p) const;

    /// Draws the box as lines of one colour, pulled a little toward the eye so that they show on
    /// the faces they outline. Leaves the colour at (1, 1, 1, 1), filled polygons, the vertex array
    /// enabled and texturing disabled. Needs a current context and no bound vertex buffer.
    void Draw(const vec4& colour) const;

private:
    vec3 min;
    vec3 max;
    vec3 center; ///< (min + max) / 2
    vec3 size;   ///< min + center, see GetSize()
};

} // namespace Vell
