#include "engine/core/fbo.h"

#include "engine/core/core.h"
#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"

#include <algorithm>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <dlfcn.h>

#include <GL/glx.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Vell;
using ::testing::ElementsAre;

namespace {

/// One allocation of a texture as it was asked of OpenGL.
struct Allocation {
    GLint internalFormat;
    GLsizei width, height;
    GLenum format, type;
    const void* data;

    bool operator==(const Allocation&) const = default;
};

std::vector<Allocation> allocations;
std::vector<std::string> deletions;

template <class Function>
Function* Real(Function*, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

/// Takes the place of libGL's function in this executable: notes the call and passes it on.
extern "C" void glTexImage2D(GLenum target, GLint level, GLint internalFormat, GLsizei width,
                             GLsizei height, GLint border, GLenum format, GLenum type,
                             const GLvoid* data) {
    static const auto real = Real(&glTexImage2D, "glTexImage2D");
    allocations.push_back({internalFormat, width, height, format, type, data});
    real(target, level, internalFormat, width, height, border, format, type, data);
}

/// As above.
extern "C" void glDeleteTextures(GLsizei count, const GLuint* textures) {
    static const auto real = Real(&glDeleteTextures, "glDeleteTextures");
    for (GLsizei i = 0; i < count; ++i)
        deletions.push_back("texture " + std::to_string(textures[i]));
    real(count, textures);
}

namespace {

/// Entry points that the engine does not fetch.
template <class Function>
Function Fetch(const char* name) {
    return reinterpret_cast<Function>(glXGetProcAddress(reinterpret_cast<const GLubyte*>(name)));
}

GLint Integer(GLenum name) {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

GLint Parameter(GLuint texture, GLenum name) {
    GLint value = 0;
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
    return value;
}

GLint LevelParameter(GLuint texture, GLenum name, GLint level = 0) {
    GLint value = 0;
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, level, name, &value);
    return value;
}

GLint BoundRenderbuffer(GLenum name) {
    GLint value = 0;
    Fetch<PFNGLGETRENDERBUFFERPARAMETERIVEXTPROC>("glGetRenderbufferParameterivEXT")(
        GL_RENDERBUFFER_EXT, name, &value);
    return value;
}

/// What hangs at an attachment of the bound framebuffer.
GLint Attachment(GLenum attachment, GLenum what) {
    GLint value = 0;
    Fetch<PFNGLGETFRAMEBUFFERATTACHMENTPARAMETERIVEXTPROC>(
        "glGetFramebufferAttachmentParameterivEXT")(GL_FRAMEBUFFER_EXT, attachment, what, &value);
    return value;
}

std::vector<int> Viewport() {
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    return {viewport, viewport + 4};
}

// The fields of a target, which are private. An explicit instantiation may name them, and defines
// the function declared before it.
std::vector<const void*> FieldsOf(const FBO& target);

template <auto... fields>
struct Open {
    friend std::vector<const void*> FieldsOf(const FBO& target) { return {&(target.*fields)...}; }
};
template struct Open<&FBO::framebuffer, &FBO::renderbuffer, &FBO::color, &FBO::depth, &FBO::size>;

class FboTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        allocations.clear();
        deletions.clear();
    }

    static void ExpectFiltersAndWrap(const FBO& target) {
        for (GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T}) {
            EXPECT_EQ(Parameter(target.GetColor(), wrap), GL_CLAMP_TO_EDGE);
            EXPECT_EQ(Parameter(target.GetDepth(), wrap), GL_CLAMP_TO_EDGE);
        }
        for (GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER}) {
            EXPECT_EQ(Parameter(target.GetColor(), filter), GL_LINEAR);
            EXPECT_EQ(Parameter(target.GetDepth(), filter), GL_NEAREST);
        }
        EXPECT_EQ(Parameter(target.GetDepth(), GL_DEPTH_TEXTURE_MODE), GL_LUMINANCE);
    }

    static void ExpectTextureSizes(const FBO& target, int width, int height) {
        for (GLuint texture : {target.GetColor(), target.GetDepth()}) {
            EXPECT_EQ(LevelParameter(texture, GL_TEXTURE_WIDTH), width);
            EXPECT_EQ(LevelParameter(texture, GL_TEXTURE_HEIGHT), height);
        }
    }
};

TEST_F(FboTest, Cannot_be_copied) {
    EXPECT_FALSE(std::is_copy_constructible_v<FBO>);
    EXPECT_FALSE(std::is_copy_assignable_v<FBO>);
}

TEST_F(FboTest, Is_four_names_and_a_size_in_this_order) {
    const FBO target;
    const std::vector<const void*> fields = FieldsOf(target);
    EXPECT_EQ(fields.front(), &target) << "nothing stands before them, no virtual table either";
    EXPECT_TRUE(std::is_sorted(fields.begin(), fields.end()));
    EXPECT_EQ(sizeof(FBO), 4 * sizeof(GLuint) + sizeof(ivec2));
}

TEST_F(FboTest, Starts_with_256_by_256_textures_for_colour_and_depth) {
    const FBO target;
    EXPECT_EQ(target.GetSize(), ivec2(256, 256));
    EXPECT_NE(target.GetColor(), target.GetDepth());
    ExpectTextureSizes(target, 256, 256);
    EXPECT_EQ(LevelParameter(target.GetColor(), GL_TEXTURE_ALPHA_SIZE), 8);
    EXPECT_EQ(LevelParameter(target.GetDepth(), GL_TEXTURE_DEPTH_SIZE), 24);
    ExpectFiltersAndWrap(target);
}

TEST_F(FboTest, Has_no_mipmaps_and_no_depth_comparison) {
    const FBO target;
    EXPECT_EQ(LevelParameter(target.GetColor(), GL_TEXTURE_WIDTH, 1), 0);
    EXPECT_EQ(LevelParameter(target.GetDepth(), GL_TEXTURE_WIDTH, 1), 0);
    EXPECT_EQ(Parameter(target.GetDepth(), GL_TEXTURE_COMPARE_MODE), GL_NONE);
}

TEST_F(FboTest, Allocates_depth_as_floats_first_and_as_bytes_in_SetSize) {
    FBO target;
    target.SetSize(ivec2(64, 32));
    EXPECT_THAT(allocations,
                ElementsAre(Allocation{GL_RGBA, 256, 256, GL_RGBA, GL_UNSIGNED_BYTE, nullptr},
                            Allocation{GL_DEPTH_COMPONENT24, 256, 256, GL_DEPTH_COMPONENT, GL_FLOAT,
                                       nullptr},
                            Allocation{GL_RGBA, 64, 32, GL_RGBA, GL_UNSIGNED_BYTE, nullptr},
                            Allocation{GL_DEPTH_COMPONENT24, 64, 32, GL_DEPTH_COMPONENT,
                                       GL_UNSIGNED_BYTE, nullptr}));
}

TEST_F(FboTest, Leaves_its_depth_texture_and_renderbuffer_bound_when_made) {
    const FBO target;
    EXPECT_EQ(Integer(GL_TEXTURE_BINDING_2D), static_cast<GLint>(target.GetDepth()));
    EXPECT_NE(Integer(GL_RENDERBUFFER_BINDING_EXT), 0);
    EXPECT_EQ(Integer(GL_FRAMEBUFFER_BINDING_EXT), 0);
    EXPECT_EQ(BoundRenderbuffer(GL_RENDERBUFFER_WIDTH_EXT), 256);
    EXPECT_EQ(BoundRenderbuffer(GL_RENDERBUFFER_HEIGHT_EXT), 256);
    EXPECT_EQ(BoundRenderbuffer(GL_RENDERBUFFER_INTERNAL_FORMAT_EXT), GL_DEPTH_COMPONENT24);
}

TEST_F(FboTest, Attaches_its_renderbuffer_to_the_framebuffer_that_is_bound_when_it_is_made) {
    FBO enabled;
    enabled.Enable();
    const FBO made;
    EXPECT_EQ(Attachment(GL_DEPTH_ATTACHMENT_EXT, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE_EXT),
              GL_RENDERBUFFER_EXT);
    EXPECT_EQ(Attachment(GL_DEPTH_ATTACHMENT_EXT, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME_EXT),
              Integer(GL_RENDERBUFFER_BINDING_EXT));
    enabled.Disable();
    enabled.Enable(); // brings its own depth texture back
    EXPECT_EQ(Attachment(GL_DEPTH_ATTACHMENT_EXT, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME_EXT),
              static_cast<GLint>(enabled.GetDepth()));
    enabled.Disable();
}

TEST_F(FboTest, Renders_256_by_256_when_it_was_never_sized) {
    FBO target;
    target.Enable();
    EXPECT_THAT(Viewport(), ElementsAre(0, 0, 256, 256));
    glClearColor(0.0f, 1.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    target.Disable();
    EXPECT_TRUE(Matches(ReadTexture(target.GetColor()), Picture(256, 256, {0, 255, 0, 255})));
    EXPECT_TRUE(Matches(ReadScreen(screenSize, screenSize),
                        Picture(screenSize, screenSize, {0, 0, 0, 255})))
        << "the screen must not be drawn to";
}

TEST_F(FboTest, Keeps_colour_and_depth_of_what_is_drawn_for_later) {
    FBO target;
    target.SetSize(ivec2(16, 16));
    UseUnitOrtho();
    glEnable(GL_DEPTH_TEST);
    target.Enable();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glColor4f(1.0f, 0.0f, 0.0f, 1.0f);
    // The lower half at z = 0.5. The orthographic depth of 1..-1 is 0..1: (1 - 0.5) / 2 = 0.25.
    glBegin(GL_QUADS);
    glVertex3f(0.0f, 0.0f, 0.5f);
    glVertex3f(1.0f, 0.0f, 0.5f);
    glVertex3f(1.0f, 0.5f, 0.5f);
    glVertex3f(0.0f, 0.5f, 0.5f);
    glEnd();
    target.Disable();

    EXPECT_TRUE(Matches(ReadTexture(target.GetColor()), MakePicture(16, 16, [](int, int y) {
                            return y < 8 ? Rgba{255, 0, 0, 255} : Rgba{0, 0, 0, 0};
                        })));
    const std::vector<float> depth = ReadDepthTexture(target.GetDepth());
    ASSERT_EQ(depth.size(), 256u);
    constexpr float depthStep = 1.0f / 16777215.0f; // 24 bits
    EXPECT_NEAR(depth[0], 0.25f, depthStep);
    EXPECT_NEAR(depth[16 * 7 + 15], 0.25f, depthStep);
    EXPECT_EQ(depth[16 * 8], 1.0f);
}

TEST_F(FboTest, Attaches_both_textures_at_every_Enable) {
    FBO target;
    for (int round = 0; round < 2; ++round) {
        target.Enable();
        EXPECT_EQ(Attachment(GL_COLOR_ATTACHMENT0_EXT, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME_EXT),
                  static_cast<GLint>(target.GetColor()));
        EXPECT_EQ(Attachment(GL_DEPTH_ATTACHMENT_EXT, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME_EXT),
                  static_cast<GLint>(target.GetDepth()));
        EXPECT_NE(Integer(GL_RENDERBUFFER_BINDING_EXT), 0);
        glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT, GL_TEXTURE_2D, 0,
                                  0);
        target.Disable();
    }
}

TEST_F(FboTest, Pushes_the_current_matrix_and_pops_it_again) {
    FBO target;
    for (GLenum mode : {GL_MODELVIEW, GL_PROJECTION}) {
        const GLenum depth =
            mode == GL_MODELVIEW ? GL_MODELVIEW_STACK_DEPTH : GL_PROJECTION_STACK_DEPTH;
        glMatrixMode(mode);
        target.Enable();
        EXPECT_EQ(Integer(depth), 2);
        glTranslatef(1, 2, 3);
        target.Disable();
        EXPECT_EQ(Integer(depth), 1);
    }
    const GLenum matrices[] = {GL_MODELVIEW_MATRIX, GL_PROJECTION_MATRIX};
    for (GLenum name : matrices) {
        GLfloat matrix[16] = {};
        glGetFloatv(name, matrix);
        EXPECT_EQ(matrix[12], 0.0f) << "what was done in between must be gone";
    }
}

TEST_F(FboTest, Returns_to_the_screen_size_whatever_the_viewport_was_before) {
    FBO target;
    glViewport(1, 2, 3, 4);
    target.Enable();
    target.Disable();
    EXPECT_THAT(Viewport(), ElementsAre(0, 0, screenSize, screenSize));
    SetScreen(ivec2(96, 48));
    target.Enable();
    target.Disable();
    EXPECT_THAT(Viewport(), ElementsAre(0, 0, 96, 48));
}

TEST_F(FboTest, Leaves_the_state_as_it_was_after_Enable_and_Disable) {
    FBO target;
    glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, 0);
    const GlState before = CaptureGlState();
    target.Enable();
    EXPECT_NE(Differences(before, CaptureGlState()), "");
    target.Disable();
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
    EXPECT_EQ(Integer(GL_RENDERBUFFER_BINDING_EXT), 0);
}

TEST_F(FboTest, Keeps_names_filters_and_wrap_modes_when_it_is_sized_anew) {
    FBO target;
    const GLuint color = target.GetColor();
    const GLuint depth = target.GetDepth();
    target.SetSize(ivec2(512, 64));
    EXPECT_EQ(target.GetColor(), color);
    EXPECT_EQ(target.GetDepth(), depth);
    EXPECT_EQ(target.GetSize(), ivec2(512, 64));
    ExpectTextureSizes(target, 512, 64);
    ExpectFiltersAndWrap(target);
}

TEST_F(FboTest, Sizes_its_own_renderbuffer_and_leaves_its_depth_texture_bound) {
    FBO target;
    const GLint own = Integer(GL_RENDERBUFFER_BINDING_EXT);
    const FBO other; // binds another renderbuffer
    target.SetSize(ivec2(48, 24));
    EXPECT_EQ(Integer(GL_TEXTURE_BINDING_2D), static_cast<GLint>(target.GetDepth()));
    EXPECT_EQ(Integer(GL_RENDERBUFFER_BINDING_EXT), own);
    EXPECT_EQ(BoundRenderbuffer(GL_RENDERBUFFER_WIDTH_EXT), 48);
    EXPECT_EQ(BoundRenderbuffer(GL_RENDERBUFFER_HEIGHT_EXT), 24);
    EXPECT_EQ(other.GetSize(), ivec2(256, 256));
}

TEST_F(FboTest, Renders_at_its_new_size) {
    FBO target;
    target.SetSize(ivec2(40, 20));
    target.Enable();
    EXPECT_THAT(Viewport(), ElementsAre(0, 0, 40, 20));
    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    target.Disable();
    EXPECT_TRUE(Matches(ReadTexture(target.GetColor()), Picture(40, 20, {0, 0, 255, 255})));
}

PFNGLDELETEFRAMEBUFFERSEXTPROC realDeleteFramebuffers = nullptr;
PFNGLDELETERENDERBUFFERSEXTPROC realDeleteRenderbuffers = nullptr;

void APIENTRY NoteDeleteFramebuffers(GLsizei count, const GLuint* names) {
    deletions.push_back("framebuffer " + std::to_string(names[0]));
    realDeleteFramebuffers(count, names);
}

void APIENTRY NoteDeleteRenderbuffers(GLsizei count, const GLuint* names) {
    deletions.push_back("renderbuffer " + std::to_string(names[0]));
    realDeleteRenderbuffers(count, names);
}

TEST_F(FboTest, Deletes_colour_depth_framebuffer_and_renderbuffer_in_this_order) {
    auto target = std::make_unique<FBO>();
    target->Enable();
    const std::string framebuffer = std::to_string(Integer(GL_FRAMEBUFFER_BINDING_EXT));
    const std::string renderbuffer = std::to_string(Integer(GL_RENDERBUFFER_BINDING_EXT));
    target->Disable();
    const GLuint color = target->GetColor();
    const GLuint depth = target->GetDepth();

    realDeleteFramebuffers = glDeleteFramebuffersEXT;
    realDeleteRenderbuffers = glDeleteRenderbuffersEXT;
    glDeleteFramebuffersEXT = &NoteDeleteFramebuffers;
    glDeleteRenderbuffersEXT = &NoteDeleteRenderbuffers;
    target.reset();
    glDeleteFramebuffersEXT = realDeleteFramebuffers;
    glDeleteRenderbuffersEXT = realDeleteRenderbuffers;

    EXPECT_THAT(deletions,
                ElementsAre("texture " + std::to_string(color), "texture " + std::to_string(depth),
                            "framebuffer " + framebuffer, "renderbuffer " + renderbuffer));
    EXPECT_FALSE(glIsTexture(color));
    EXPECT_FALSE(glIsTexture(depth));
}

} // namespace
