#pragma once

#include "engine/post/postprocess.h"

#include "engine/core/fbo.h"
#include "engine/render/shader.h"

namespace Vell {

/// Blurs the picture at a small size.
///
/// The picture is copied into a small square target, filtered back and forth between two such
/// targets with a box of nine samples, and stretched over the output. Both the softness of the
/// scaling and the distance of the samples shape the look.
///
/// Needs: a current context on which InitEngine() succeeded.
class PostBlur : public PostEffect {
public:
    /// 5 double passes at 128 x 128 with an offset of 0.01.
    PostBlur();
    PostBlur(const PostBlur&) = delete;
    PostBlur& operator=(const PostBlur&) = delete;

    /// Number of double passes: each applies the filter twice. 0 only scales down and up, and so
    /// does a negative number.
    void SetPass(int count);
    int GetPass() const { return passes; }

    /// Side of the two square work targets in pixels, at least 1; FBO::SetSize() says what happens
    /// beyond.
    void SetSizeRTT(int size);
    int GetSizeRTT() const { return SizeRTT; }

    /// Distance of the samples in texture coordinates of the small target: 0.01 at 128 pixels is
    /// about 1.3 texels.
    void SetOffset(float distance);
    float GetOffset() const { return offset; }

    void Process(FBO* in, FBO* out) override;

private:
    void ClampTargets();
    void Copy(FBO& from, FBO& to);
    void Filter(FBO& from, FBO& to);

    FBO first;
    FBO second;
    Shader shader;
    int passes = 5;
    int SizeRTT = 128;
    float offset = 0.01f;
};

} // namespace Vell
