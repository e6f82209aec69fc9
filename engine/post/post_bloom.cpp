#include "engine/post/post_bloom.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/core.h"
#include "engine/core/fullscreen.h"
#include "engine/core/textureunits.h"

namespace Vell {

namespace {

// Out: the picture where it is bright enough, opaque black elsewhere.
const char fragmentSource[] = R"glsl(
#version 110

uniform sampler2D texture; // never set, so it reads unit 0
uniform float threshold;   // smallest brightness that passes, 0 to 1

void main()
{
    vec4 color = texture2D(texture, gl_TexCoord[0].st);
    float brightness = (color.r+color.g+color.b)/3.0;
    if (brightness < threshold)
        color = vec4(0.0, 0.0, 0.0, 1.0);
    gl_FragColor = color;
}
)glsl";

} // namespace

PostBloom::PostBloom() {
    thresholdShader.LoadToChar(passThroughVertexShader, fragmentSource);
    thresholdShader.SetLabel("bloom: bright parts");
    glow.SetLabel("glow target");
    glow.SetSize(GetScreen());
    SetIntensity(intensity);
    SetThreshold(threshold);
}

void PostBloom::SetIntensity(float weight) {
    intensity = weight;
}

void PostBloom::SetThreshold(float brightness) {
    threshold = brightness;
    thresholdShader.Enable();
    thresholdShader.Send("threshold", brightness);
    thresholdShader.Disable();
}

void PostBloom::Process(FBO* in, FBO* out) {
    KeepBright(*in, *out); // `out` as scratch space
    blur.Process(out, &glow);

    TextureUnit::Enable(TextureUnit::surface);
    out->Enable();
    DrawFullScreen(in->GetColor());
    AddGlow();
    out->Disable();
    glDisable(GL_TEXTURE_2D);
}

// in -> out: only what is at least as bright as the threshold.
void PostBloom::KeepBright(FBO& in, FBO& out) {
    out.Enable();
    thresholdShader.Enable();
    TextureUnit::Enable(TextureUnit::surface);
    DrawFullScreen(in.GetColor());
    glDisable(GL_TEXTURE_2D);
    thresholdShader.Disable();
    out.Disable();
}

// glow -> bound target: added with weight intensity x glow alpha, which is the source alpha that
// the default texture environment makes of colour and texture.
void PostBloom::AddGlow() {
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    glColor4f(1.0f, 1.0f, 1.0f, intensity);
    DrawFullScreen(glow.GetColor());
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    glDisable(GL_BLEND);
}

} // namespace Vell
