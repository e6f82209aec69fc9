#pragma once

#include "engine/post/postprocess.h"

#include "engine/render/shader.h"

namespace Vell {

/// An effect of one pass that one fragment program makes: all that an effect of one's own needs
/// when it looks at nothing but the picture.
///
/// Texture: unit 0 the picture; texturing is off on it afterwards.
/// Needs:   a current context on which InitEngine() succeeded.
class PostShader : public PostEffect {
public:
    /// `fragmentSource`: GLSL, NUL-terminated, read here and not kept. It reads the picture at
    /// gl_TexCoord[0].st, 0 to 1 from the lower left, from `uniform sampler2D texture`. One that
    /// does not compile gets an "ERROR" row in the log, and the effect leaves the picture as it is.
    explicit PostShader(const char* fragmentSource);
    PostShader(const PostShader&) = delete;
    PostShader& operator=(const PostShader&) = delete;

    /// The program, to send what else it declares: Enable() it, Send(), Disable() it again.
    Shader& GetShader() { return shader; }

    void Process(FBO* in, FBO* out) override;

private:
    Shader shader;
};

} // namespace Vell
