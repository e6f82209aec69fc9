#include "demo/post_water.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/fbo.h"
#include "engine/core/fullscreen.h"
#include "engine/core/textureunits.h"

using Vell::FBO;
namespace TextureUnit = Vell::TextureUnit;

namespace {

// Out: the picture bent sideways by a hundredth of the screen, 70 % dark blue, alpha 1.
const char fragmentSource[] = R"glsl(
#version 110

uniform sampler2D texture;
uniform float time; // seconds, which are radians of the wave as well

void main()
{
    vec2 st = gl_TexCoord[0].st;
    st.x += cos(st.x + st.y * 5.0 + time) * 0.01;
    gl_FragColor = mix(texture2D(texture, st), vec4(0.0, 0.0, 0.3, 1.0), 0.7);
}
)glsl";

} // namespace

PostWater::PostWater() {
    shader.LoadToChar(Vell::passThroughVertexShader, fragmentSource);
    shader.SetLabel("ripple");
    shader.Send("texture", TextureUnit::surface); // the new program is still bound
    shader.Disable();
}

void PostWater::Process(FBO* in, FBO* out) {
    out->Enable();
    if (enable) {
        shader.Enable();
        shader.Send("time", clock.GetElapsedTime());
    }
    DrawInput(*in);
    if (enable)
        shader.Disable();
    out->Disable();
}

void PostWater::DrawInput(FBO& in) {
    TextureUnit::Enable(TextureUnit::surface);
    Vell::DrawFullScreen(in.GetColor());
    glDisable(GL_TEXTURE_2D);
}
