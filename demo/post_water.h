#pragma once

#include "engine/core/clock.h"
#include "engine/post/postprocess.h"
#include "engine/render/shader.h"

/// Lets the picture wobble sideways as if seen through water, and tints it dark blue.
///
/// The wobble runs on a clock that starts with the effect and is never reset, so its phase does
/// not follow the demo's timeline.
class PostWater : public Vell::PostEffect {
public:
    /// Switched on.
    PostWater();
    PostWater(const PostWater&) = delete;
    PostWater& operator=(const PostWater&) = delete;

    /// The effect's own switch, next to the chain's SetEnabled(): while off, Process() copies the
    /// picture unchanged, so the chain's back and forth between its targets stays the same.
    // NOLINTNEXTLINE(bugprone-virtual-near-miss): a switch of its own, not an override
    void SetEnable(bool on) { enable = on; }

    void Process(Vell::FBO* in, Vell::FBO* out) override;

private:
    void DrawInput(Vell::FBO& in);

    Vell::Shader shader;
    Vell::Clock clock;
    bool enable = true;
};
