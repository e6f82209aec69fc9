#include "engine/post/postprocess.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/core.h"
#include "engine/core/fbo.h"
#include "engine/core/fullscreen.h"
#include "engine/core/textureunits.h"

#include <utility>

namespace Vell {

void PostEffect::SetEnabled(bool on) {
    enabled = on;
}

bool PostEffect::GetEnabled() const {
    return enabled;
}

PostProcess::PostProcess(FBO* sceneTarget) : scene(sceneTarget), spare(std::make_unique<FBO>()) {
    spare->SetLabel("spare target");
    spare->SetSize(GetScreen());
}

PostProcess::~PostProcess() = default;

void PostProcess::AddPostEffect(PostEffect* effect) {
    effects.push_back(effect);
}

void PostProcess::Draw() {
    PushUnitProjection();
    glDisable(GL_DEPTH_TEST);
    Show(*RunEffects());
    glEnable(GL_DEPTH_TEST);
    PopProjection();
}

// Returns the target that holds the last result: the scene's own when no effect ran.
FBO* PostProcess::RunEffects() {
    FBO* result = scene;
    FBO* other = spare.get();
    for (PostEffect* effect : effects) {
        if (!effect->GetEnabled())
            continue;
        effect->Process(result, other);
        std::swap(result, other);
    }
    return result;
}

void PostProcess::Show(FBO& result) {
    TextureUnit::Enable(TextureUnit::surface);
    DrawFullScreen(result.GetColor());
    glDisable(GL_TEXTURE_2D);
}

} // namespace Vell
