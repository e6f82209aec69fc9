#include "engine/core/fullscreen.h"

#include "engine/core/fast2dquad.h"

namespace Vell {

const char passThroughVertexShader[] = R"glsl(
#version 110

void main()
{
    gl_TexCoord[0] = gl_MultiTexCoord0;
    gl_Position = ftransform();
}
)glsl";

void PushUnitProjection() {
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0.0, 1.0, 0.0, 1.0, -1.0, 1.0);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
}

void PopProjection() {
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}

void DrawFullScreen(GLuint texture) {
    glBindTexture(GL_TEXTURE_2D, texture);
    Fast2DQuad::GetInstance().Draw(vec2(1.0f));
}

} // namespace Vell
