#include "engine/core/textureunits.h"

#include "engine/core/GLExtensions.h"

namespace Vell::TextureUnit {

void Enable(int unit) {
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    glEnable(GL_TEXTURE_2D);
}

void Disable(int unit) {
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    glDisable(GL_TEXTURE_2D);
}

} // namespace Vell::TextureUnit
