#include "engine/scene/sprite.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/core.h"
#include "engine/core/textureunits.h"

namespace Vell {

Sprite::Sprite()
    : quad{{1.0f, 1.0f, 0.0f, 0.0f, 0.0f},
           {0.0f, 1.0f, 0.0f, 0.0f, 0.0f},
           {1.0f, 0.0f, 0.0f, 0.0f, 0.0f},
           {0.0f, 0.0f, 0.0f, 0.0f, 0.0f}} {}

void Sprite::SetTexture(const std::string& path) {
    name = path;
    texture.Load(path);
    const ivec2 picture = texture.GetSize();
    const ivec2 screen = GetScreen();
    size = vec2(static_cast<float>(picture.x), static_cast<float>(picture.y)) /
           vec2(static_cast<float>(screen.x), static_cast<float>(screen.y));
    quad[0].x = size.x;
    quad[0].y = size.y;
    quad[1].y = size.y;
    quad[2].x = size.x;
}

// The height goes to z, not to y, and is to stay so: overlays keep the height of their picture.
void Sprite::SetSize(const vec2& extent) {
    size = extent;
    quad[0].x = size.x;
    quad[0].z = size.y;
    quad[1].z = size.y;
    quad[2].x = size.x;
}

void Sprite::Draw() {
    glPushMatrix();
    ApplyMatrix();
    glDisable(GL_DEPTH_TEST);
    TextureUnit::Enable(TextureUnit::surface);
    texture.Bind();
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glInterleavedArrays(GL_T2F_V3F, 0, quad);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisable(GL_BLEND);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    glEnable(GL_DEPTH_TEST);
    glPopMatrix();
}

} // namespace Vell
