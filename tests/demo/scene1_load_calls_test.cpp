// The life of the demo's scene, call by call: construction, loading, end. In a file of its own, for
// the registry knows the scene's paths for good: it can be loaded once a process.

#include "tests/recording/calls.h"

#include "demo/scene1.h"
#include "tests/support/demo_data.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <vector>

using ::testing::ElementsAreArray;

namespace {

class SceneLife : public Calls {
protected:
    void SetUp() override {
        Calls::SetUp();
        MakeDemoData();
        NameConstruction();
        NameLoading();
    }

    static void NameConstruction() {
        for (const char* target : {"scene", "spare", "glow", "first", "second"})
            gl.NameTarget(target);
        for (const char* program : {"blur", "threshold", "split", "ripple"})
            gl.NameProgram(program);
    }

    static void NameLoading() {
        const std::string faces[] = {"xpos", "xneg", "ypos", "yneg", "zpos", "zneg"};
        gl.Name("texture", faces);
        gl.NameTarget("reflection");
        gl.NameTarget("refraction");
        const std::string pictures[] = {"waves", "logo"};
        gl.Name("texture", pictures);
        for (const char* program : {"city", "wisp", "water"})
            gl.NameProgram(program);
        for (const std::string mesh : {"city", "green", "red", "blue", "fish"}) {
            const std::string buffers[] = {mesh + " positions", mesh + " texcoords",
                                           mesh + " lightmap texcoords", mesh + " normals"};
            gl.Name("buffer", buffers);
        }
    }

    /// Of the calls since the last question, those that tell which step is at work.
    static std::vector<std::string> Landmarks() {
        std::vector<std::string> calls = gl.Take();
        const char* const kept[] = {"glUseProgramObject", "glUniform", "glGenTextures", "glNewList",
                                    "gluPerspective"};
        std::erase_if(calls, [&](const std::string& call) {
            return std::none_of(std::begin(kept), std::end(kept),
                                [&](const char* name) { return call.starts_with(name); });
        });
        return calls;
    }

    // Construction.

    static std::string Manager() {
        return NewTarget("scene") + SizeTarget("scene", 640, 480) + NewTarget("spare") +
               SizeTarget("spare", 640, 480) +
               "glFogf(GL_FOG_DENSITY, 0); glFogfv(GL_FOG_COLOR, 1 1 1 1)\n";
    }

    static std::string Clamp(const std::string& target) {
        return BindTexture(target + " colour") + R"(
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)
            )";
    }

    static std::string SetUniform(const std::string& program, const std::string& uniform,
                                  const std::string& value) {
        return "glUseProgramObject(" + program + ")\n" + Send(program, uniform, "1f", value) +
               "glUseProgramObject(0)\n";
    }

    static std::string Bloom() {
        return NewTarget("glow") + NewTarget("first") + NewTarget("second") + NewProgram("blur") +
               SizeTarget("first", 128, 128) + SizeTarget("second", 128, 128) + Clamp("first") +
               Clamp("second") + SetUniform("blur", "offset", "0.01") + NewProgram("threshold") +
               SizeTarget("glow", 640, 480) + SetUniform("threshold", "threshold", "0.9");
    }

    static std::string OneSampler(const std::string& program) {
        return NewProgram(program) + Send(program, "texture", "1i", "0") +
               "glUseProgramObject(0)\n";
    }

    // End.

    static std::string DeleteMesh(const std::string& mesh) {
        return "glDeleteBuffers(1, " + mesh + " positions)\n" + "glDeleteBuffers(1, " + mesh +
               " texcoords)\n" + "glDeleteBuffers(1, " + mesh + " normals)\n";
    }

    static std::string DeleteTexture(const std::string& label) {
        return "glDeleteTextures(1, " + label + ")\n";
    }
};

const std::vector<std::string> script = {
    // the city's material: linked, then enabled for its samplers
    "glUseProgramObject(city)", "glUseProgramObject(city)", "glUniform1i(texture0, 0)",
    "glUniform1i(texture1, 1)", "glUniform1i(texture2, 2)", "glUniform1i(texture3, 3)",
    "glUniform1i(lightmap, 6)", "glUseProgramObject(0)",
    // the wisps' material, which the green one makes and all three set
    "glUseProgramObject(wisp)", "glUseProgramObject(wisp)", "glUniform1i(texture0, 0)",
    "glUniform1i(texture1, 1)", "glUniform1i(texture2, 2)", "glUniform1i(texture3, 3)",
    "glUniform1i(lightmap, 6)", "glUseProgramObject(0)", //
    "glUseProgramObject(wisp)", "glUniform1i(texture0, 0)", "glUniform1i(texture1, 1)",
    "glUniform1i(texture2, 2)", "glUniform1i(texture3, 3)", "glUniform1i(lightmap, 6)",
    "glUseProgramObject(0)", //
    "glUseProgramObject(wisp)", "glUniform1i(texture0, 0)", "glUniform1i(texture1, 1)",
    "glUniform1i(texture2, 2)", "glUniform1i(texture3, 3)", "glUniform1i(lightmap, 6)",
    "glUseProgramObject(0)",
    // the lights
    "glUseProgramObject(city)", "glUniform3f(posred, 0, 1000, 1)",
    "glUniform3f(posgreen, 0, 1000, 0)", "glUniform3f(posblue, 0, 1000, 0)",
    "glUseProgramObject(0)",
    // the sky
    "glGenTextures(1, xpos)", "glGenTextures(1, xneg)", "glGenTextures(1, ypos)",
    "glGenTextures(1, yneg)", "glGenTextures(1, zpos)", "glGenTextures(1, zneg)",
    "glNewList(list 1, GL_COMPILE)",
    // the water: made with its defaults ...
    "glGenTextures(1, reflection colour)", "glGenTextures(1, reflection depth)",
    "glGenTextures(1, refraction colour)", "glGenTextures(1, refraction depth)",
    "glUseProgramObject(water)", "glUseProgramObject(water)", "glUniform1i(noiseMap, 0)",
    "glUniform1i(reflectionMap, 1)", "glUniform1i(refractionMap, 2)", "glUniform1i(shadowmap, 6)",
    "glUniform1f(taille, 0.005)", "glUseProgramObject(0)", //
    "glUseProgramObject(water)", "glUniform1f(blend, 0.5)", "glUseProgramObject(0)",
    "glUseProgramObject(water)", "glUniform1f(deform, 0.035)", "glUseProgramObject(0)",
    "glUseProgramObject(water)", "glUniform2f(speed, 1, 1)", "glUseProgramObject(0)",
    "glUseProgramObject(water)", "glUniform2f(uvrep, 1, 1)", "glUseProgramObject(0)",
    // ... and given the scene's
    "glGenTextures(1, waves)", //
    "glUseProgramObject(water)", "glUniform1f(blend, 0)", "glUseProgramObject(0)",
    "glUseProgramObject(water)", "glUniform1f(deform, 0.02)", "glUseProgramObject(0)",
    "glUseProgramObject(water)", "glUniform2f(uvrep, 10, 10)", "glUseProgramObject(0)",
    "glUseProgramObject(water)", "glUniform2f(speed, 0.01, 0)", "glUseProgramObject(0)",
    // the logo
    "glGenTextures(1, logo)",
    // the field of view
    "gluPerspective(25, 1, 0.10000000149011612, 25000)"};

} // namespace

TEST_F(SceneLife, Builds_its_effects_then_follows_the_script_then_frees_all_but_the_ripple) {
    if (DemoDataIsReal())
        GTEST_SKIP() << "needs meshes and pictures whose objects are known";
    auto scene = std::make_unique<Scene1>();
    EXPECT_TRUE(Made("-- the scene manager\n" + Manager() + "-- bloom\n" + Bloom() +
                     SetUniform("threshold", "threshold", "0") + "-- colour split\n" +
                     OneSampler("split") + "-- ripple\n" + OneSampler("ripple")));
    scene->Load();
    EXPECT_THAT(Landmarks(), ElementsAreArray(script));
    scene.reset();
    EXPECT_TRUE(Made("-- the scene manager\n" + DeleteMesh("city") + DeleteProgram("city") +
                     DeleteMesh("green") + DeleteProgram("wisp") + DeleteMesh("red") +
                     DeleteProgram("wisp") + DeleteMesh("blue") + DeleteProgram("wisp") +
                     DeleteMesh("fish") + "glDeleteLists(list 1, 1)\n" + DeleteTexture("xpos") +
                     DeleteTexture("xneg") + DeleteTexture("yneg") + DeleteTexture("ypos") +
                     DeleteTexture("zneg") + DeleteTexture("zpos") + DeleteTexture("waves") +
                     DeleteProgram("water") + DeleteTarget("refraction") +
                     DeleteTarget("reflection") + DeleteTarget("spare") + DeleteTarget("scene") +
                     "-- bloom, colour split\n" + DeleteProgram("blur") + DeleteTarget("second") +
                     DeleteTarget("first") + DeleteProgram("threshold") + DeleteTarget("glow") +
                     DeleteProgram("split") + "-- logo\n" + DeleteTexture("logo")));
}
