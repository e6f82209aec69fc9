#include "demo/post_rgb.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/fbo.h"
#include "engine/core/fullscreen.h"
#include "engine/core/textureunits.h"

using Vell::FBO;
namespace TextureUnit = Vell::TextureUnit;

namespace {

// Out: the picture with red and blue shifted apart along the diagonal and green faded, alpha 1.
const char fragmentSource[] = R"glsl(
#version 110

uniform sampler2D texture;
uniform float offset; // hundredths of the screen

void main()
{
    vec2 st = gl_TexCoord[0].st;
    vec2 shift = vec2(offset * 0.01);
    vec3 color = texture2D(texture, st).rgb;
    // Each look-up is kept inside on one side only, on purpose: beyond the other, the texture's own
    // edge goes on.
    float red = texture2D(texture, min(st - shift, vec2(1.0, 1.0))).r;
    float blue = texture2D(texture, max(st + shift, vec2(0.0, 0.0))).b;
    color.r = red;
    color.g = color.g * (1.0 - offset * 0.1);
    color.b = blue;
    gl_FragColor = vec4(color, 1.0);
}
)glsl";

} // namespace

PostRGB::PostRGB() {
    shader.LoadToChar(Vell::passThroughVertexShader, fragmentSource);
    shader.SetLabel("colour split");
    shader.Send("texture", TextureUnit::surface); // the new program is still bound
    shader.Disable();
}

void PostRGB::Process(FBO* in, FBO* out) {
    out->Enable();
    shader.Enable();
    shader.Send("offset", offset);
    TextureUnit::Enable(TextureUnit::surface);
    Vell::DrawFullScreen(in->GetColor());
    glDisable(GL_TEXTURE_2D);
    shader.Disable();
    out->Disable();
}
