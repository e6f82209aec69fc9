#pragma once

#include "engine/math/matrix.h"
#include "engine/math/vec2.h"

#include <string>

namespace Vell {

/// Something drawn flat over the 3D picture, with a transform of its own.
///
/// Space: whatever the caller's projection makes of it; the demo uses 0..1 in both directions.
/// Needs: a current context, for Draw() alone.
class Object2D {
public:
    Object2D();
    virtual ~Object2D();

    /// Moves the object's origin there; the scale stays.
    virtual void SetPosition(const vec2& position);
    /// Does nothing: flat objects do not turn.
    virtual void SetRotation(const vec2& angles);
    /// Scales by the two factors and flattens z to 0; the position stays.
    virtual void SetScale(const vec2& factors);
    /// Stored for those who want to show an outline; nothing here draws one.
    virtual void ShowDebug(bool on);

    /// Draws the object under its transform.
    virtual void Draw() = 0;

    /// What the object shows, as its class defines it; empty at first.
    std::string GetName() const { return name; }

protected:
    /// Multiplies `matrix` onto OpenGL's current matrix.
    void ApplyMatrix();

    Matrix matrix;    ///< the object's transform
    std::string name; ///< what GetName() answers
    bool debug;       ///< what ShowDebug() stored
};

} // namespace Vell
