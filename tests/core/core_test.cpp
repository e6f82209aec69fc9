#include "engine/core/core.h"

#include "engine/core/GLExtensions.h"
#include "engine/core/logmanager.h"
#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"

#include <cmath>
#include <cstdlib>
#include <numbers>
#include <string>
#include <vector>

#include <dlfcn.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Vell;
using ::testing::ElementsAre;

namespace {

struct PerspectiveCall {
    double fovy, ratio, nearPlane, farPlane;
};

std::vector<PerspectiveCall> perspectiveCalls;

/// An extension that the driver is made not to list; empty for none.
std::string hiddenExtension;

} // namespace

/// Takes the place of libGL's function: the driver's answer without the hidden extension.
extern "C" const GLubyte* glGetString(GLenum name) {
    static const auto real =
        reinterpret_cast<decltype(&glGetString)>(dlsym(RTLD_NEXT, "glGetString"));
    const auto* const answer = reinterpret_cast<const char*>(real(name));
    if (name != GL_EXTENSIONS || answer == nullptr || hiddenExtension.empty())
        return reinterpret_cast<const GLubyte*>(answer);
    static std::string list;
    list = answer;
    for (auto at = list.find(hiddenExtension); at != list.npos; at = list.find(hiddenExtension))
        list.erase(at, hiddenExtension.size());
    return reinterpret_cast<const GLubyte*>(list.c_str());
}

/// Takes the place of GLU's function: notes what the projection is built from and goes on to GLU.
extern "C" void gluPerspective(GLdouble fovy, GLdouble ratio, GLdouble nearPlane,
                               GLdouble farPlane) {
    perspectiveCalls.push_back({fovy, ratio, nearPlane, farPlane});
    static const auto real = reinterpret_cast<decltype(&gluPerspective)>(
        dlsym(dlopen("libGLU.so.1", RTLD_LAZY), "gluPerspective"));
    real(fovy, ratio, nearPlane, farPlane);
}

namespace {

/// Runs `checks` in a fresh process, in which nothing of the engine has run yet; their failures are
/// printed there and fail the test here.
template <class Checks>
void RunInFreshProcess(Checks checks) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // starts the executable anew
    EXPECT_EXIT(
        {
            checks();
            std::exit(::testing::Test::HasFailure() ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(CoreDeathTest, Has_a_field_of_view_of_70_and_no_screen_before_SetScreen) {
    RunInFreshProcess([] {
        EXPECT_EQ(GetFov(), 70.0f);
        EXPECT_EQ(GetScreen(), ivec2(0, 0));
        EXPECT_EQ(GetRatio(), 0.0f);
    });
}

TEST(CoreDeathTest, Reports_failure_without_a_context_instead_of_crashing) {
    RunInFreshProcess([] {
        const ScratchDir scratch;
        EXPECT_EQ(CheckForExtension("GL_ARB"), 0);
        EXPECT_FALSE(InitEngine(ivec2(1600, 600)));
        EXPECT_EQ(GetScreen(), ivec2(1600, 600));
        EXPECT_THAT(ReadLogRows(), ElementsAre(LogRow{"InitEngine", "ERROR", "GLExtentions"}));
    });
}

TEST(CoreDeathTest, Fails_and_logs_it_when_the_driver_lacks_point_sprites) {
    RunInFreshProcess([] {
        const ScratchDir scratch;
        OpenTestWindow(ivec2(128, 128));
        hiddenExtension = "GL_ARB_point_sprite";
        ASSERT_EQ(CheckForExtension("GL_ARB_point_sprite"), 0);
        ASSERT_EQ(CheckForExtension("EXT_framebuffer_object"), 1);
        ASSERT_EQ(ReadLogText(), "") << "nothing before it makes the page";
        EXPECT_FALSE(InitEngine(ivec2(128, 128)));
        EXPECT_THAT(ReadLogRows(), ElementsAre(LogRow{"InitEngine", "ERROR", "GLExtentions"}));
        // The groups before the missing one are there, it and the one after it are not.
        EXPECT_NE(glUniform1f, nullptr);
        EXPECT_NE(glDeleteBuffers, nullptr);
        EXPECT_EQ(glPointParameterf, nullptr);
        EXPECT_EQ(glBindFramebufferEXT, nullptr);
        EXPECT_EQ(glDeleteRenderbuffersEXT, nullptr);
        EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST)) << "set before the extensions are fetched";
    });
}

class CoreTest : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        perspectiveCalls.clear();
    }

    static std::vector<float> MatrixOf(GLenum name) {
        std::vector<float> elements(16);
        glGetFloatv(name, elements.data());
        return elements;
    }
};

TEST_F(CoreTest, Truncates_the_ratio_of_the_screen_to_a_whole_number) {
    struct Case {
        ivec2 size;
        float ratio;
    };
    const Case cases[] = {
        {ivec2(800, 600), 1.0f},   {ivec2(1600, 600), 2.0f}, {ivec2(1280, 720), 1.0f},
        {ivec2(1920, 1080), 1.0f}, {ivec2(640, 480), 1.0f},  {ivec2(1199, 600), 1.0f},
        {ivec2(1200, 600), 2.0f},  {ivec2(960, 89), 10.0f},  {ivec2(600, 800), 0.0f},
    };
    for (const Case& c : cases) {
        SetScreen(c.size);
        EXPECT_EQ(GetRatio(), c.ratio) << c.size.x << " x " << c.size.y;
        EXPECT_EQ(GetScreen(), c.size);
        EXPECT_EQ(perspectiveCalls.back().ratio, c.ratio);
    }
}

TEST_F(CoreTest, Hands_out_a_copy_of_the_screen_size) {
    SetScreen(ivec2(64, 32));
    ivec2 copy = GetScreen();
    copy.x = 1;
    EXPECT_EQ(GetScreen(), ivec2(64, 32));
}

TEST_F(CoreTest, Sets_the_viewport_to_the_screen) {
    SetScreen(ivec2(96, 48));
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_THAT(viewport, ElementsAre(0, 0, 96, 48));
}

TEST_F(CoreTest, Builds_the_projection_from_near_0_1_as_a_float_to_far_25000) {
    SetScreen(ivec2(128, 64));
    ASSERT_EQ(perspectiveCalls.size(), 1u);
    EXPECT_EQ(perspectiveCalls[0].fovy, 70.0);
    EXPECT_EQ(perspectiveCalls[0].ratio, 2.0);
    EXPECT_EQ(perspectiveCalls[0].nearPlane, 0.10000000149011612);
    EXPECT_EQ(perspectiveCalls[0].farPlane, 25000.0);
}

TEST_F(CoreTest, Replaces_the_projection_and_leaves_the_model_view_alone) {
    glMatrixMode(GL_PROJECTION);
    glTranslatef(5, 6, 7); // must be gone afterwards
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(1, 2, 3);
    glMatrixMode(GL_TEXTURE);
    SetScreen(ivec2(128, 64));

    // Cotangent of 35 degrees, divided by the ratio 2 in x; the depth rows follow from near and
    // far:
    // -(25000 + 0.1) / (25000 - 0.1) and -2 * 25000 * 0.1 / (25000 - 0.1).
    const double cotangent = 1.0 / std::tan(35.0 * std::numbers::pi / 180.0);
    const std::vector<float> projection = MatrixOf(GL_PROJECTION_MATRIX);
    EXPECT_NEAR(projection[0], cotangent / 2, 1e-6);
    EXPECT_NEAR(projection[5], cotangent, 1e-6);
    EXPECT_NEAR(projection[10], -25000.1 / 24999.9, 1e-6);
    EXPECT_NEAR(projection[14], -5000.0 / 24999.9, 1e-6);
    EXPECT_EQ(projection[11], -1.0f);
    EXPECT_EQ(projection[12], 0.0f);

    EXPECT_THAT(MatrixOf(GL_MODELVIEW_MATRIX),
                ElementsAre(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1));
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(mode, GL_MODELVIEW);
}

TEST_F(CoreTest, Keeps_the_truncated_ratio_when_the_field_of_view_changes) {
    SetScreen(ivec2(800, 600));
    SetFovy(45.0f);
    EXPECT_EQ(GetFov(), 45.0f);
    EXPECT_EQ(GetRatio(), 1.0f);
    EXPECT_EQ(perspectiveCalls.back().fovy, 45.0);
    EXPECT_EQ(perspectiveCalls.back().ratio, 1.0);
}

TEST_F(CoreTest, Takes_a_true_ratio_until_the_next_screen) {
    SetScreen(ivec2(800, 600));
    SetFovy(50.0f);
    SetRatio(1.25f);
    EXPECT_EQ(GetRatio(), 1.25f);
    EXPECT_EQ(perspectiveCalls.back().ratio, 1.25);
    EXPECT_EQ(perspectiveCalls.back().fovy, 50.0);
    SetScreen(ivec2(800, 600));
    EXPECT_EQ(GetRatio(), 1.0f);
}

TEST_F(CoreTest, Leaves_the_viewport_alone_when_ratio_or_field_of_view_change) {
    glViewport(1, 2, 3, 4);
    SetRatio(1.5f);
    SetFovy(60.0f);
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_THAT(viewport, ElementsAre(1, 2, 3, 4));
}

TEST_F(CoreTest, Starts_with_depth_testing_and_touches_no_other_switch) {
    SetScreen(ivec2(128, 128));
    const GlState before = CaptureGlState();
    glDisable(GL_DEPTH_TEST);
    EXPECT_TRUE(InitEngine(ivec2(128, 128)));
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
}

TEST_F(CoreTest, Logs_its_start_with_the_date) {
    const LogWatch log;
    EXPECT_TRUE(InitEngine(ivec2(128, 128)));
    EXPECT_THAT(log.NewRows(), ElementsAre(LogRow{"InitEngine", "OK", Log::GetDate()}));
}

} // namespace
