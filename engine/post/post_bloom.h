#pragma once

#include "engine/post/post_blur.h"
#include "engine/post/postprocess.h"

#include "engine/core/fbo.h"
#include "engine/render/shader.h"

namespace Vell {

/// Makes the bright parts of the picture glow.
///
/// Pixels whose mean of red, green and blue reaches the threshold are kept, blurred at a small size
/// and added to the picture with the given intensity.
///
/// Needs: a current context on which InitEngine() succeeded, with the screen size final: the glow
///        target takes it at construction.
class PostBloom : public PostEffect {
public:
    /// Intensity 1, threshold 0.9, and the blur's own defaults.
    PostBloom();
    PostBloom(const PostBloom&) = delete;
    PostBloom& operator=(const PostBloom&) = delete;

    /// Weight of the glow, which is also weighted by its own blurred alpha; 0 leaves the picture
    /// unchanged, values outside 0..1 act as the nearest of them.
    void SetIntensity(float weight);
    float GetIntensity() const { return intensity; }

    /// Smallest brightness that glows, 0..1; 0 lets every pixel glow, above 1 none does.
    void SetThreshold(float brightness);
    float GetThreshold() const { return threshold; }

    /// The blur's parameters, see PostBlur.
    void SetPass(int count) { blur.SetPass(count); }
    int GetPass() const { return blur.GetPass(); }
    void SetSizeRTT(int size) { blur.SetSizeRTT(size); }
    int GetSizeRTT() const { return blur.GetSizeRTT(); }
    void SetOffset(float distance) { blur.SetOffset(distance); }
    float GetOffset() const { return blur.GetOffset(); }

    void Process(FBO* in, FBO* out) override;

private:
    void KeepBright(FBO& in, FBO& out);
    void AddGlow();

    // Declared in this order so that the blur goes first, then the shader, then the target.
    FBO glow;
    Shader thresholdShader;
    PostBlur blur;
    float intensity = 1.0f;
    float threshold = 0.9f;
};

} // namespace Vell
