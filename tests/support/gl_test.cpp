#include "tests/support/gl_test.h"

#include "engine/core/core.h"

#include <stdexcept>
#include <string>

#include <SDL.h>

namespace {

constexpr int stateUnits = 8; // the engine uses units 0 to 6

void ResetMatrices() {
    for (GLenum mode : {GL_TEXTURE, GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(mode);
        glLoadIdentity();
    }
}

void ResetTextureUnits() {
    for (int unit = stateUnits - 1; unit >= 0; --unit) {
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
        glDisable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, 0);
        glClientActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    }
}

void ResetState() {
    glUseProgramObject(0);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    for (GLenum cap : {GL_BLEND, GL_ALPHA_TEST, GL_CLIP_PLANE0, GL_CULL_FACE, GL_FOG, GL_LIGHTING,
                       GL_POLYGON_OFFSET_LINE})
        glDisable(cap);
    for (GLenum array : {GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
        glDisableClientState(array);
    glBlendFunc(GL_ONE, GL_ZERO);
    glDepthMask(GL_TRUE);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    glFogf(GL_FOG_DENSITY, 0.0f);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    ResetTextureUnits();
    ResetMatrices();
}

} // namespace

void OpenTestWindow(const Vell::ivec2& size) {
    static Vell::ivec2 opened;
    if (opened == size)
        return;
    if (SDL_Init(SDL_INIT_VIDEO) != 0)
        throw std::runtime_error(std::string("SDL_Init: ") + SDL_GetError());
    if (SDL_SetVideoMode(size.x, size.y, 32, SDL_OPENGL) == nullptr)
        throw std::runtime_error(std::string("SDL_SetVideoMode: ") + SDL_GetError());
    opened = size;
}

void GlTest::SetUp() {
    OpenTestWindow(Vell::ivec2(screenSize, screenSize));
    ASSERT_TRUE(Vell::InitEngine(Vell::ivec2(screenSize, screenSize)));
    ResetState();
    Vell::SetFovy(70.0f);
    ResetMatrices();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    while (glGetError() != GL_NO_ERROR) {
    }
}

void GlTest::TearDown() {
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR))
        << "the test left an OpenGL error behind";
}

void GlTest::UseUnitOrtho() {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0.0, 1.0, 0.0, 1.0, -1.0, 1.0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}
