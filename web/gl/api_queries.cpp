// The functions of OpenGL that tell state.

#include "web/gl/context.h"
#include "web/gl/es.h"
#include "web/gl/queries.h"
#include "web/gl/textureformats.h"

#include <algorithm>
#include <cmath>

using namespace WebGL;

namespace {

// What the engine asks for, under the names by which desktop drivers list it.
constexpr char extensions[] =
    "GL_ARB_depth_texture GL_ARB_fragment_shader GL_ARB_multitexture GL_ARB_point_sprite "
    "GL_ARB_shader_objects GL_ARB_shading_language_100 GL_ARB_texture_non_power_of_two "
    "GL_ARB_vertex_buffer_object GL_ARB_vertex_program GL_ARB_vertex_shader GL_EXT_bgra "
    "GL_EXT_framebuffer_object GL_SGIS_generate_mipmap ";

/// Writes the values of a name as another type.
template <class T, class Convert>
void Answer(GLenum name, T* values, Convert convert) {
    const std::vector<double> found = Query(name);
    if (found.empty())
        Current().errors.Raise(GL_INVALID_ENUM);
    for (std::size_t i = 0; i < found.size(); ++i)
        values[i] = convert(found[i]);
}

GLint ToInteger(double value, bool fraction) {
    return static_cast<GLint>(std::llround(fraction ? value * 2147483647.0 : value));
}

GLint LevelParameter(const TextureLevel& level, GLenum name) {
    switch (name) {
    case GL_TEXTURE_WIDTH:
        return level.width;
    case GL_TEXTURE_HEIGHT:
        return level.height;
    case GL_TEXTURE_INTERNAL_FORMAT:
        return level.internalFormat;
    case GL_TEXTURE_DEPTH_SIZE:
        return level.base == GL_DEPTH_COMPONENT ? 24 : 0;
    case GL_TEXTURE_RED_SIZE:
    case GL_TEXTURE_GREEN_SIZE:
    case GL_TEXTURE_BLUE_SIZE:
        return level.base == GL_RGB || level.base == GL_RGBA ? 8 : 0;
    case GL_TEXTURE_ALPHA_SIZE:
        return level.base == GL_RGBA || level.base == GL_ALPHA ? 8 : 0;
    default:
        return 0;
    }
}

const char* Text(GLenum name) {
    if (!Current().begun)
        return nullptr;
    switch (name) {
    case GL_VENDOR:
        return "Halvorn";
    case GL_VERSION:
        return "2.1 Vell on OpenGL ES 3";
    case GL_SHADING_LANGUAGE_VERSION:
        return "1.10";
    case GL_EXTENSIONS:
        return extensions;
    case GL_RENDERER:
        return reinterpret_cast<const char*>(Es::GetString(GL_RENDERER));
    default:
        Current().errors.Raise(GL_INVALID_ENUM);
        return nullptr;
    }
}

} // namespace

extern "C" {

void glGetIntegerv(GLenum pname, GLint* params) {
    const bool fraction = IsFraction(pname);
    Answer(pname, params, [=](double value) { return ToInteger(value, fraction); });
}

void glGetFloatv(GLenum pname, GLfloat* params) {
    Answer(pname, params, [](double value) { return static_cast<GLfloat>(value); });
}

void glGetDoublev(GLenum pname, GLdouble* params) {
    Answer(pname, params, [](double value) { return value; });
}

void glGetBooleanv(GLenum pname, GLboolean* params) {
    Answer(pname, params,
           [](double value) { return static_cast<GLboolean>(value != 0.0 ? GL_TRUE : GL_FALSE); });
}

GLboolean glIsEnabled(GLenum cap) {
    const int value = QuerySwitch(cap);
    if (value < 0)
        Current().errors.Raise(GL_INVALID_ENUM);
    return static_cast<GLboolean>(value > 0 ? GL_TRUE : GL_FALSE);
}

const GLubyte* glGetString(GLenum name) {
    return reinterpret_cast<const GLubyte*>(Text(name));
}

void glGetTexLevelParameteriv(GLenum target, GLint level, GLenum pname, GLint* params) {
    const Texture& texture = Current().textures.Bound();
    const auto place = static_cast<std::size_t>(level);
    if (target != GL_TEXTURE_2D || level < 0) {
        Current().errors.Raise(target != GL_TEXTURE_2D ? GL_INVALID_ENUM : GL_INVALID_VALUE);
        return;
    }
    *params = place < texture.levels.size() ? LevelParameter(texture.levels[place], pname) : 0;
}

void glGetTexParameteriv(GLenum, GLenum pname, GLint* params) {
    Texture& texture = Current().textures.Bound();
    if (pname == GL_GENERATE_MIPMAP)
        *params = texture.generateMipmap ? 1 : 0;
    else if (const GLint* const value = ParameterOf(texture, pname))
        *params = *value;
    else if (const GLint* const fixed = FixedParameter(pname))
        *params = *fixed;
    else
        Current().errors.Raise(GL_INVALID_ENUM);
}

void glGetClipPlane(GLenum plane, GLdouble* equation) {
    const std::size_t number = plane - GL_CLIP_PLANE0;
    if (number >= FixedState::planes)
        Current().errors.Raise(GL_INVALID_ENUM);
    else
        std::copy_n(Current().fixed.clipPlanes[number].begin(), 4, equation);
}

void glGetPointerv(GLenum pname, GLvoid** params) {
    const Context& context = Current();
    const std::size_t slot = pname == GL_VERTEX_ARRAY_POINTER   ? Slot::vertex
                             : pname == GL_NORMAL_ARRAY_POINTER ? Slot::normal
                             : pname == GL_COLOR_ARRAY_POINTER  ? Slot::color
                             : pname == GL_TEXTURE_COORD_ARRAY_POINTER
                                 ? Slot::texCoord + context.clientUnit
                                 : Slot::count;
    if (slot == Slot::count)
        Current().errors.Raise(GL_INVALID_ENUM);
    else
        *params = const_cast<void*>(context.arrays[slot].pointer);
}

} // extern "C"
