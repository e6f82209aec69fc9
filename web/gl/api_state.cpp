// The functions of OpenGL that set state.

#include "web/gl/context.h"
#include "web/gl/es.h"

#include <algorithm>
#include <array>
#include <iterator>

using namespace WebGL;

namespace {

constexpr GLenum rememberedSwitches[] = {
    GL_LIGHTING,
    GL_LIGHT0,
    GL_COLOR_MATERIAL,
    GL_NORMALIZE,
    GL_LINE_SMOOTH,
    GL_POINT_SMOOTH,
    GL_POLYGON_SMOOTH,
    GL_LINE_STIPPLE,
    GL_MULTISAMPLE,
    GL_STENCIL_TEST,
    GL_COLOR_LOGIC_OP,
    GL_POLYGON_STIPPLE,
    GL_TEXTURE_1D,
    GL_TEXTURE_3D,
    GL_TEXTURE_CUBE_MAP,
    GL_TEXTURE_GEN_S,
    GL_TEXTURE_GEN_T,
    GL_TEXTURE_GEN_R,
    GL_TEXTURE_GEN_Q,
    GL_AUTO_NORMAL,
    GL_POINT_SPRITE,
    GL_RESCALE_NORMAL,
    GL_POLYGON_OFFSET_POINT,
    GL_COLOR_SUM,
    GL_VERTEX_PROGRAM_POINT_SIZE,
    GL_VERTEX_PROGRAM_TWO_SIDE,
    GL_INDEX_LOGIC_OP,
};

bool IsRemembered(GLenum capability) {
    return std::find(std::begin(rememberedSwitches), std::end(rememberedSwitches), capability) !=
           std::end(rememberedSwitches);
}

bool IsClipPlane(GLenum name) {
    return name >= GL_CLIP_PLANE0 && name < GL_CLIP_PLANE0 + FixedState::planes;
}

void SetSwitch(GLenum capability, bool on) {
    Context& context = Current();
    FixedState& fixed = context.fixed;
    if (bool* const known = context.pipeline.Switch(capability))
        *known = on;
    else if (capability == GL_TEXTURE_2D)
        context.textures.Active().enabled = on;
    else if (capability == GL_ALPHA_TEST)
        fixed.alphaTest = on;
    else if (capability == GL_FOG)
        fixed.fog.enabled = on;
    else if (capability == GL_POLYGON_OFFSET_LINE)
        fixed.offsetLine = on;
    else if (IsClipPlane(capability))
        fixed.clipEnabled = (fixed.clipEnabled & ~(1U << (capability - GL_CLIP_PLANE0))) |
                            static_cast<unsigned>(on) << (capability - GL_CLIP_PLANE0);
    else if (IsRemembered(capability))
        fixed.others[capability] = on;
    else
        context.errors.Raise(GL_INVALID_ENUM);
}

/// Does it, or keeps it for the display list that is being made.
template <class Action>
void Do(Action action) {
    Current().lists.Do(action);
}

void SetViewport(std::array<GLint, 4>& box, const std::array<GLint, 4>& wanted) {
    if (wanted[2] < 0 || wanted[3] < 0)
        Current().errors.Raise(GL_INVALID_VALUE);
    else
        box = wanted;
}

GLboolean Truth(GLboolean value) {
    return static_cast<GLboolean>(value != 0 ? GL_TRUE : GL_FALSE);
}

void SetFog(GLenum name, const Vector4& values) {
    Fog& fog = Current().fixed.fog;
    if (name == GL_FOG_DENSITY && values[0] < 0)
        Current().errors.Raise(GL_INVALID_VALUE);
    else if (name == GL_FOG_COLOR)
        fog.color = values;
    else if (name == GL_FOG_DENSITY)
        fog.density = values[0];
    else if (name == GL_FOG_START)
        fog.start = values[0];
    else if (name == GL_FOG_END)
        fog.end = values[0];
    else if (name == GL_FOG_MODE)
        fog.mode = static_cast<GLenum>(values[0]);
    else if (name != GL_FOG_COORD_SRC && name != GL_FOG_INDEX)
        Current().errors.Raise(GL_INVALID_ENUM);
}

void SetPolygonMode(GLenum face, GLenum mode) {
    Context& context = Current();
    if (mode != GL_FILL && mode != GL_LINE && mode != GL_POINT) {
        context.errors.Raise(GL_INVALID_ENUM);
        return;
    }
    if (face != GL_BACK)
        context.fixed.polygonMode[0] = mode;
    if (face != GL_FRONT)
        context.fixed.polygonMode[1] = mode;
}

// Planes are kept in eye coordinates, as OpenGL keeps them: given in those of the moment.
void SetClipPlane(GLenum plane, const Vector4& equation) {
    Context& context = Current();
    if (!IsClipPlane(plane)) {
        context.errors.Raise(GL_INVALID_ENUM);
        return;
    }
    const Matrix4& back =
        context.derived.Get(DerivedMatrices::Modelview, DerivedMatrices::Inverted);
    context.fixed.clipPlanes[plane - GL_CLIP_PLANE0] = RowProduct(equation, back);
}

} // namespace

extern "C" {

void glEnable(GLenum cap) {
    Do([=] { SetSwitch(cap, true); });
}

void glDisable(GLenum cap) {
    Do([=] { SetSwitch(cap, false); });
}

void glAlphaFunc(GLenum func, GLclampf ref) {
    Do([=] {
        Current().fixed.alphaFunction = func;
        Current().fixed.alphaReference = std::clamp(ref, 0.0f, 1.0f);
    });
}

void glBlendFunc(GLenum sfactor, GLenum dfactor) {
    Do([=] {
        PipelineState& state = Current().pipeline.wanted;
        state.blendSource = sfactor;
        state.blendDestination = dfactor;
    });
}

void glBlendEquation(GLenum mode) {
    Do([=] { Current().pipeline.wanted.blendEquation = mode; });
}

void glDepthFunc(GLenum func) {
    Do([=] { Current().pipeline.wanted.depthFunction = func; });
}

void glDepthMask(GLboolean flag) {
    Do([=] { Current().pipeline.wanted.depthMask = Truth(flag); });
}

void glDepthRange(GLclampd near_val, GLclampd far_val) {
    Do([=] {
        Current().pipeline.wanted.depthRange = {static_cast<float>(near_val),
                                                static_cast<float>(far_val)};
    });
}

void glColorMask(GLboolean red, GLboolean green, GLboolean blue, GLboolean alpha) {
    Do([=] {
        Current().pipeline.wanted.colorMask = {Truth(red), Truth(green), Truth(blue), Truth(alpha)};
    });
}

void glClearColor(GLclampf red, GLclampf green, GLclampf blue, GLclampf alpha) {
    Do([=] { Current().pipeline.wanted.clearColor = {red, green, blue, alpha}; });
}

void glClearDepth(GLclampd depth) {
    Do([=] { Current().pipeline.wanted.clearDepth = static_cast<float>(depth); });
}

void glViewport(GLint x, GLint y, GLsizei width, GLsizei height) {
    Do([=] { SetViewport(Current().pipeline.wanted.viewport, {x, y, width, height}); });
}

void glScissor(GLint x, GLint y, GLsizei width, GLsizei height) {
    Do([=] { SetViewport(Current().pipeline.wanted.scissor, {x, y, width, height}); });
}

void glCullFace(GLenum mode) {
    Do([=] { Current().pipeline.wanted.culledFace = mode; });
}

void glFrontFace(GLenum mode) {
    Do([=] { Current().pipeline.wanted.frontFace = mode; });
}

void glLineWidth(GLfloat width) {
    Do([=] {
        if (width > 0)
            Current().pipeline.wanted.lineWidth = width;
        else
            Current().errors.Raise(GL_INVALID_VALUE);
    });
}

void glPointSize(GLfloat size) {
    Do([=] {
        if (size > 0)
            Current().fixed.pointSize = size;
        else
            Current().errors.Raise(GL_INVALID_VALUE);
    });
}

void glPolygonMode(GLenum face, GLenum mode) {
    Do([=] { SetPolygonMode(face, mode); });
}

void glPolygonOffset(GLfloat factor, GLfloat units) {
    Do([=] {
        Current().pipeline.wanted.offsetFactor = factor;
        Current().pipeline.wanted.offsetUnits = units;
    });
}

void glClipPlane(GLenum plane, const GLdouble* equation) {
    Vector4 values{};
    std::transform(equation, equation + 4, values.begin(),
                   [](GLdouble value) { return static_cast<float>(value); });
    Do([=] { SetClipPlane(plane, values); });
}

void glFogf(GLenum pname, GLfloat param) {
    Do([=] { SetFog(pname, {param, 0, 0, 0}); });
}

void glFogi(GLenum pname, GLint param) {
    glFogf(pname, static_cast<GLfloat>(param));
}

void glFogfv(GLenum pname, const GLfloat* params) {
    Vector4 values{};
    std::copy_n(params, pname == GL_FOG_COLOR ? 4 : 1, values.begin());
    Do([=] { SetFog(pname, values); });
}

void glFogiv(GLenum pname, const GLint* params) {
    glFogf(pname, static_cast<GLfloat>(*params));
}

void glHint(GLenum, GLenum) {}

void glShadeModel(GLenum) {}

void glFlush(void) {
    Es::Flush();
}

void glFinish(void) {
    Es::Finish();
}

GLenum glGetError(void) {
    return Current().errors.Take();
}

} // extern "C"
