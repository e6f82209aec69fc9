#pragma once

#include "engine/math/vec2.h"
#include "engine/render/image.h"
#include "engine/scene/object2d.h"

#include <string>

namespace Vell {

/// A picture drawn flat over the scene, blended by its alpha and by the current colour's.
///
/// Space: the rectangle reaches from (0, 0) to its size; with a 0..1 projection a picture as large
///        as the screen covers it.
/// Needs: a current context on which InitEngine() succeeded.
class Sprite : public Object2D {
public:
    Sprite();

    /// Loads the picture, which also becomes the name, and takes its size as a fraction of the
    /// screen (size 0 when it fails to load: the sprite then draws nothing). Once a sprite.
    void SetTexture(const std::string& path);

    /// Sets the size. Of the rectangle itself only the width follows: the second value goes to the
    /// depth of the upper corners, so the drawn height stays what SetTexture made it. That is
    /// intended; a scale changes it.
    void SetSize(const vec2& extent);
    vec2 GetSize() const { return size; }

    /// Draws over everything, without depth test, multiplied by the current colour.
    /// Leaves depth testing on, the colour opaque white, blending off, and texturing on unit 0 on.
    void Draw() override;

private:
    struct Corner {
        float s, t;    // texture coordinates
        float x, y, z; // position
    };

    Corner quad[4]; // GL_T2F_V3F triangle strip: upper right, upper left, lower right, lower left
    Image texture;
    vec2 size;
};

} // namespace Vell
