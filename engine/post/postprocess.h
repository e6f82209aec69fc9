#pragma once

#include <memory>
#include <vector>

namespace Vell {

class FBO;

/// One full-screen effect of the chain.
///
/// Needs: those of this tree need a current context on which InitEngine() succeeded as soon as they
///        are made, since each has its program from then on.
class PostEffect {
public:
    virtual ~PostEffect() = default;

    /// Reads the colour texture of `in`, leaves the result in the colour texture of `out` and
    /// leaves no framebuffer bound. `in` may be read only, `out` may serve as scratch space; the
    /// two differ and belong to the chain. Runs inside PostProcess::Draw(): depth testing is off
    /// and a quad of Fast2DQuad::Draw(vec2(1)) covers the whole bound target.
    virtual void Process(FBO* in, FBO* out) = 0;

    /// A disabled effect is skipped by the chain. Effects are enabled when made.
    virtual void SetEnabled(bool on);
    virtual bool GetEnabled() const;

private:
    bool enabled = true;
};

/// The chain of full-screen effects between the rendered scene and the screen.
///
/// The picture goes back and forth between the scene target and a spare target of the same size,
/// one step per enabled effect, and the last result is drawn to the bound framebuffer. The scene
/// target is thus overwritten by every second effect.
///
/// Texture: unit 0; texturing is off on it afterwards.
/// Needs:   a current context on which InitEngine() succeeded, with the screen size final: the
///          spare target takes it at construction.
class PostProcess {
public:
    /// `scene`: the target that holds the rendered scene when Draw() is called. It stays the
    /// caller's and must outlive the chain.
    explicit PostProcess(FBO* scene);

    /// Deletes the spare target; the scene target and the effects belong to the caller.
    ~PostProcess();
    PostProcess(const PostProcess&) = delete;
    PostProcess& operator=(const PostProcess&) = delete;

    /// Appends an effect, which stays the caller's and must not be deleted before the last Draw().
    /// An effect that is added twice runs twice; there may be any number of them.
    void AddPostEffect(PostEffect* effect);

    /// Runs the enabled effects in the order they were added and shows the result over the whole
    /// viewport. Depth testing is on afterwards and the matrices are as before, with model-view
    /// current; vertex and texture-coordinate arrays stay enabled.
    void Draw();

private:
    FBO* RunEffects();
    void Show(FBO& result);

    FBO* scene;
    std::unique_ptr<FBO> spare;
    std::vector<PostEffect*> effects;
};

} // namespace Vell
