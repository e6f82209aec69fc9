#include "engine/post/post_shader.h"

#include "engine/core/fbo.h"
#include "engine/core/fullscreen.h"
#include "engine/core/textureunits.h"

namespace Vell {

PostShader::PostShader(const char* fragmentSource) {
    shader.LoadToChar(passThroughVertexShader, fragmentSource);
    shader.SetLabel("effect of one pass");
    shader.Disable(); // the sampler keeps unit 0, which uniforms begin with
}

void PostShader::Process(FBO* in, FBO* out) {
    out->Enable();
    shader.Enable();
    TextureUnit::Enable(TextureUnit::surface);
    DrawFullScreen(in->GetColor());
    TextureUnit::Disable(TextureUnit::surface);
    shader.Disable();
    out->Disable();
}

} // namespace Vell
