// The logo that the demo draws over its frame, call by call.

#include "tests/scene/sprite_calls.h"

#include "demo/scene1.h"
#include "tests/support/fake_time.h"

namespace {

/// The demo's scene without a single file of it: everything that draws it is still called.
class LogoCalls : public SpriteCalls {
protected:
    /// The last step of the chain of effects, after which only the logo may come.
    static std::string EndOfChain() {
        return "glDisable(GL_TEXTURE_2D); glEnable(GL_DEPTH_TEST)\n" + PopUnitSquare();
    }

    /// Draws the frame at demo time `t` and asks whether it ends with these calls.
    static ::testing::AssertionResult EndsWith(Scene1& scene, double t,
                                               const std::string& expected) {
        SetFakeTime(t);
        Forget();
        scene.Draw(0.02f);
        return MadeLast(expected);
    }
};

} // namespace

// One test, for the registry knows the scene's paths for good: it can be loaded once a process.
TEST_F(LogoCalls, Fades_over_the_first_ten_seconds_and_is_gone_from_then_on) {
    Scene1 scene;
    scene.Load(); // at demo time 0
    struct {
        double t;
        const char* alpha; // 1 - t / 10
    } const cases[] = {{0.0, "1"}, {2.5, "0.75"}, {5.0, "0.5"}};
    for (const auto& [t, alpha] : cases) {
        EXPECT_TRUE(EndsWith(scene, t,
                             EndOfChain() + R"(
            glMatrixMode(GL_PROJECTION); glPushMatrix(); glLoadIdentity()
            glOrtho(0, 1, 0, 1, -1, 1)
            glMatrixMode(GL_MODELVIEW); glLoadIdentity()
            glDisable(GL_DEPTH_TEST)
            glColor4f(1, 1, 1, )" +
                                 alpha + ")\n" + Drawing(identity, "0") + R"(
            glColor4f(1, 1, 1, 1)
            glMatrixMode(GL_PROJECTION); glPopMatrix()
            glMatrixMode(GL_MODELVIEW)
            glEnable(GL_DEPTH_TEST)
            )"));
    }
    for (const double t : {10.0, 12.0, 20.0})
        EXPECT_TRUE(EndsWith(scene, t, EndOfChain()));
}
