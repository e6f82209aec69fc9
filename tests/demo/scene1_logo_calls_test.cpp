// Sprites, and the logo that the demo draws over its frame, call by call.

#include "tests/recording/calls.h"

#include "demo/scene1.h"
#include "engine/scene/sprite.h"
#include "tests/support/fake_time.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using Vell::Sprite;
using Vell::vec2;

namespace {

class SpriteCalls : public Calls {
protected:
    static std::string Drawing(const std::string& matrix, const std::string& picture) {
        return "-- 1.\nglPushMatrix(); glMultMatrixf(" + matrix + ")\n" + R"(
            -- 2.
            glDisable(GL_DEPTH_TEST)
            glActiveTexture(GL_TEXTURE0); glEnable(GL_TEXTURE_2D)
            )" +
               BindTexture(picture) +
               R"(
            -- 3.
            glEnable(GL_BLEND); glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)
            -- 4.
            glInterleavedArrays(GL_T2F_V3F, 0, memory); glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)
            -- 5.
            glDisable(GL_BLEND)
            glColor4f(1, 1, 1, 1)
            glEnable(GL_DEPTH_TEST)
            glPopMatrix()
            )";
    }

    static constexpr const char* identity = "1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1";
};

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

TEST_F(SpriteCalls, Drawn_blended_over_the_picture_under_its_matrix) {
    WritePng("logo.png", 320, 120, 3, std::vector<unsigned char>(320 * 120 * 3));
    const std::string labels[] = {"logo"};
    gl.Name("texture", labels);
    Sprite sprite;
    sprite.SetTexture("logo.png"); // 320 / 640 = 0.5, 120 / 480 = 0.25
    sprite.SetPosition(vec2(0.5f, 0.75f));
    Forget();
    sprite.Draw();
    EXPECT_TRUE(Made(Drawing("1 0 0 0 0 1 0 0 0 0 1 0 0.5 0.75 0 1", "logo")));
    EXPECT_THAT(gl.Drawn(), ElementsAre(1, 1, 0.5f, 0.25f, 0, // s, t, x, y, z
                                        0, 1, 0, 0.25f, 0,    //
                                        1, 0, 0.5f, 0, 0,     //
                                        0, 0, 0, 0, 0));
    sprite.SetSize(vec2(0.125f, 0.375f)); // the height goes to z
    sprite.SetScale(vec2(2, 3));
    Forget();
    sprite.Draw();
    EXPECT_TRUE(Made(Drawing("2 0 0 0 0 3 0 0 0 0 0 0 0.5 0.75 0 1", "logo")));
    EXPECT_THAT(gl.Drawn(), ElementsAre(1, 1, 0.125f, 0.25f, 0.375f, //
                                        0, 1, 0, 0.25f, 0.375f,      //
                                        1, 0, 0.125f, 0, 0,          //
                                        0, 0, 0, 0, 0));
}

TEST_F(SpriteCalls, Without_a_picture_it_is_drawn_all_the_same) {
    Sprite sprite;
    EXPECT_TRUE(Made(""));
    sprite.Draw();
    EXPECT_TRUE(Made(Drawing(identity, "0")));
}

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
