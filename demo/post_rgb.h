#pragma once

#include "engine/post/postprocess.h"
#include "engine/render/shader.h"

/// Splits the picture's colours: red slides to the upper right, blue to the lower left, green
/// fades.
///
/// One unit of offset is a hundredth of the screen and a tenth of the green; 0 leaves the picture
/// as it is, with its alpha set to 1.
class PostRGB : public Vell::PostEffect {
public:
    PostRGB();
    PostRGB(const PostRGB&) = delete;
    PostRGB& operator=(const PostRGB&) = delete;

    /// In hundredths of the screen, 0 at first; reaches the picture with the next Process().
    void SetOffset(float hundredths) { offset = hundredths; }
    float GetOffset() const { return offset; }

    void Process(Vell::FBO* in, Vell::FBO* out) override;

private:
    Vell::Shader shader;
    float offset = 0.0f;
};
