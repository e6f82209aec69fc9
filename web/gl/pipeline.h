#pragma once

#include <array>

#include <GL/gl.h>

namespace WebGL {

/// State that OpenGL ES has as well.
struct PipelineState {
    bool blend = false;
    bool depthTest = false;
    bool cullFace = false;
    bool scissorTest = false;
    bool offsetFill = false;
    bool dither = true;
    GLenum blendSource = GL_ONE;
    GLenum blendDestination = GL_ZERO;
    GLenum blendEquation = GL_FUNC_ADD;
    GLenum depthFunction = GL_LESS;
    GLenum culledFace = GL_BACK;
    GLenum frontFace = GL_CCW;
    GLboolean depthMask = GL_TRUE;
    std::array<GLboolean, 4> colorMask = {GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE};
    std::array<GLint, 4> viewport{};
    std::array<GLint, 4> scissor{};
    std::array<GLfloat, 4> clearColor{};
    std::array<GLfloat, 2> depthRange = {0, 1};
    GLfloat clearDepth = 1;
    GLfloat lineWidth = 1;
    GLfloat offsetFactor = 0;
    GLfloat offsetUnits = 0;
};

/// Keeps what the program wants and what OpenGL ES was told last. Programs switch things on and off
/// between draws; what is back where it was by the next draw is never sent.
class Pipeline {
public:
    PipelineState wanted;

    /// Of a new context, whose viewport and scissor box are its whole picture.
    void Begin(int width, int height);

    /// To be called before anything is drawn, cleared or read.
    void Send();

    /// The switch of this name; null for a name that is none of these.
    bool* Switch(GLenum capability);

private:
    PipelineState sent;

    void SendSwitches();
    void SendFragmentState();
    void SendPlaces();
    void SendValues();
};

} // namespace WebGL
