// The water, call by call: above, at and under the surface.

#include "tests/recording/calls.h"

#include "engine/env/water.h"
#include "engine/math/frustum.h"
#include "engine/scene/camera.h"
#include "tests/support/fake_time.h"

#include <gmock/gmock.h>

#include <memory>

using ::testing::ElementsAre;
using Vell::Camera;
using Vell::ivec2;
using Vell::vec2;
using Vell::vec3;
using Vell::Water;

namespace {

class WaterCalls : public Calls {
protected:
    static std::unique_ptr<Water> Make() {
        gl.NameTarget("reflection");
        gl.NameTarget("refraction");
        gl.NameProgram("water");
        return std::make_unique<Water>();
    }

    /// A water in front of the view's frustum, which looks from (512, 100, 3000) along -z.
    static std::unique_ptr<Water> InView() {
        auto water = Make();
        LookFrom(3000);
        return water;
    }

    static void LookFrom(float z) {
        Camera camera;
        camera.Set(vec3(512, 100, z), vec3(512, 100, z - 1));
        glPushMatrix();
        camera.Draw();
        Vell::Frustum::GetInstance().MakePlane();
        glPopMatrix();
        Forget();
    }

    static std::string SetUniform(const std::string& uniform, const std::string& kind,
                                  const std::string& value) {
        return "glUseProgramObject(water)\n" + Send("water", uniform, kind, value) +
               "glUseProgramObject(0)\n";
    }

    static std::string SizeAndClamp(const std::string& target) {
        return SizeTarget(target, 512, 512) + BindTexture(target + " colour") + R"(
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)
            )";
    }

    static std::string Surface(const std::string& time, const std::string& debug) {
        return R"(
            -- matrix kept
            glPushMatrix()
            -- normal map, reflection and refraction
            glActiveTexture(GL_TEXTURE0); glEnable(GL_TEXTURE_2D)
            glBindTexture(GL_TEXTURE_2D, 0)
            glActiveTexture(GL_TEXTURE1); glEnable(GL_TEXTURE_2D)
            glBindTexture(GL_TEXTURE_2D, reflection colour)
            glActiveTexture(GL_TEXTURE2); glEnable(GL_TEXTURE_2D)
            glBindTexture(GL_TEXTURE_2D, refraction colour)
            -- the program and its time
            glUseProgramObject(water)
            )" +
               Send("water", "time", "1f", time) +
               R"(
            -- the quad
            glInterleavedArrays(GL_T2F_V3F, 0, memory); glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)
            -- program and textures off
            glUseProgramObject(0)
            glActiveTexture(GL_TEXTURE0); glDisable(GL_TEXTURE_2D)
            glActiveTexture(GL_TEXTURE1); glDisable(GL_TEXTURE_2D)
            glActiveTexture(GL_TEXTURE2); glDisable(GL_TEXTURE_2D)
            glActiveTexture(GL_TEXTURE0)
            )" +
               debug + "-- matrix back\nglPopMatrix()\n";
    }
};

} // namespace

TEST_F(WaterCalls, Construction_sends_every_default_and_sizes_both_targets) {
    const auto water = Make();
    EXPECT_TRUE(
        Made("-- both targets\n" + NewTarget("reflection") + NewTarget("refraction") +
             "-- the program and its samplers\n" + NewProgram("water") +
             "glUseProgramObject(water)\n" + Send("water", "noiseMap", "1i", "0") +
             Send("water", "reflectionMap", "1i", "1") + Send("water", "refractionMap", "1i", "2") +
             Send("water", "shadowmap", "1i", "6") + Send("water", "taille", "1f", "0.005") +
             "glUseProgramObject(0)\n" + "-- every default\n" + SetUniform("blend", "1f", "0.5") +
             SetUniform("deform", "1f", "0.035") + SetUniform("speed", "2f", "1, 1") +
             SetUniform("uvrep", "2f", "1, 1") + "-- both targets sized and clamped\n" +
             SizeAndClamp("reflection") + SizeAndClamp("refraction")));
}

TEST_F(WaterCalls, Every_parameter_is_sent_at_once_and_the_size_is_not) {
    const auto water = Make();
    Forget();
    water->SetBlend(0.25f);
    EXPECT_TRUE(Made(SetUniform("blend", "1f", "0.25")));
    water->SetDeform(0.75f);
    EXPECT_TRUE(Made(SetUniform("deform", "1f", "0.75")));
    water->SetSpeed(vec2(2, 3));
    EXPECT_TRUE(Made(SetUniform("speed", "2f", "2, 3")));
    water->SetUVRepeat(vec2(4, 5));
    EXPECT_TRUE(Made(SetUniform("uvrep", "2f", "4, 5")));
    water->SetSize(ivec2(100, 200));
    EXPECT_TRUE(Made(""));
}

TEST_F(WaterCalls, Reflection_is_mirrored_and_clipped_only_above_the_surface) {
    const auto water = Make();
    struct {
        float y;
        const char* eye;
    } const cases[] = {{2.0f, "1, 2, 3"},
                       {0.25f, "1, 0.25, 3"},
                       {1.0f / 1024, "1, 0.0009765625, 3"},
                       {0.0f, "1, 0, 3"},
                       {-1.0f / 1024, "1, -0.0009765625, 3"},
                       {-2.0f, "1, -2, 3"}};
    for (const auto& [y, eye] : cases) {
        Camera camera;
        camera.Set(vec3(1, y, 3), vec3(4, 5, 6));
        Forget();
        water->BeginReflection(camera);
        const std::string mirror = R"(
            -- mirror before the clip plane
            glScalef(1, -1, 1)
            glClipPlane(GL_CLIP_PLANE0, 0 1 0 0)
            glEnable(GL_CLIP_PLANE0)
            )";
        EXPECT_TRUE(Made("-- the target, cleared\n" + EnableTarget("reflection", 512, 512) +
                         "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT); glPushMatrix()\n" +
                         "-- the camera's view\ngluLookAt(" + std::string(eye) +
                         ", 4, 5, 6, 0, 1, 0)\n" + (y > 0 ? mirror : "")));
        water->EndReflection();
        EXPECT_TRUE(Made("glDisable(GL_CLIP_PLANE0); glPopMatrix()\n" + DisableTarget()));
    }
}

TEST_F(WaterCalls, Refraction_is_the_plain_view) {
    const auto water = Make();
    for (const char* eye : {"1, 2, 3", "1, -2, 3"}) {
        Camera camera;
        camera.Set(vec3(1, std::string(eye) == "1, 2, 3" ? 2 : -2, 3), vec3(4, 5, 6));
        Forget();
        water->BeginRefraction(camera);
        EXPECT_TRUE(Made(EnableTarget("refraction", 512, 512) +
                         "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT); glPushMatrix()\n" +
                         "gluLookAt(" + eye + ", 4, 5, 6, 0, 1, 0)\n"));
        water->EndRefraction();
        EXPECT_TRUE(Made("glPopMatrix()\n" + DisableTarget()));
    }
}

TEST_F(WaterCalls, Surface_in_view_is_drawn_with_its_images_and_its_time) {
    const auto water = InView(); // made at 0
    for (const auto& [time, sent] : {std::pair{1.5, "1.5"}, {4000.5, "4000.5"}}) {
        SetFakeTime(time);
        water->Draw();
        EXPECT_TRUE(Made(Surface(sent, "")));
    }
    EXPECT_TRUE(water->GetInFrustum());
    EXPECT_THAT(gl.Drawn(), ElementsAre(1, 1, 1024, 0, 1024,  // s, t, x, y, z
                                        0, 1, -1024, 0, 1024, //
                                        1, 0, 1024, 0, -1024, //
                                        0, 0, -1024, 0, -1024));
}

TEST_F(WaterCalls, Debug_box_is_drawn_before_the_matrix_is_restored) {
    const auto water = InView();
    water->SetDebug(true);
    water->Draw();
    // From (0, -0.1, 0) to (1024, 0.1, 1024): centre (512, 0, 512), size = min + centre.
    EXPECT_TRUE(Made(Surface("0", "-- the box\n" + BlueBox("512, 0, 512", "512, -0.1, 512"))));
}

TEST_F(WaterCalls, Surface_out_of_view_calls_nothing) {
    const auto water = InView();
    water->SetDebug(true);
    LookFrom(-10); // the box begins at z = 0, behind
    water->Draw();
    EXPECT_TRUE(Made(""));
    EXPECT_FALSE(water->GetInFrustum());
}

TEST_F(WaterCalls, New_size_moves_the_positive_corners_only) {
    const auto water = InView();
    LookFrom(-10);
    // As they are given: more than 16 bits, or negative.
    for (const ivec2& size : {ivec2(100, 200), ivec2(100000, 70000), ivec2(-5, -7)}) {
        water->SetSize(size);
        water->DrawShadow(); // whatever the frustum says
        EXPECT_TRUE(Made(R"(
            glInterleavedArrays(GL_T2F_V3F, 0, memory)
            glDrawArrays(GL_TRIANGLE_STRIP, 0, 4)
            )"));
        const auto x = static_cast<float>(size.x);
        const auto z = static_cast<float>(size.y);
        EXPECT_THAT(gl.Drawn(), ElementsAre(1, 1, x, 0, z,     //
                                            0, 1, -1024, 0, z, //
                                            1, 0, x, 0, -1024, //
                                            0, 0, -1024, 0, -1024));
        EXPECT_EQ(water->GetBBox()->GetMin(), vec3(-x, -0.1f, -z));
        EXPECT_EQ(water->GetBBox()->GetMax(), vec3(2 * x, 0.1f, 2 * z));
    }
}

TEST_F(WaterCalls, Show_flag_counts_neither_for_the_surface_nor_for_its_shadow) {
    const auto water = InView();
    water->SetShow(false);
    water->Draw();
    EXPECT_TRUE(Made(Surface("0", "")));
    water->DrawShadow();
    EXPECT_TRUE(Made(Quad()));
}

TEST_F(WaterCalls, End_releases_picture_shader_and_both_targets) {
    auto water = Make();
    Forget();
    water.reset();
    EXPECT_TRUE(Made("glDeleteTextures(1, 0)\n" + DeleteProgram("water") +
                     DeleteTarget("refraction") + DeleteTarget("reflection")));
}
