// The sky box, call by call.

#include "tests/recording/calls.h"

#include "engine/env/sky.h"
#include "engine/scene/camera.h"

#include <memory>

using Vell::Camera;
using Vell::SkyBox;
using Vell::vec3;

namespace {

class SkyCalls : public Calls {
protected:
    /// A box of six pictures, the textures labelled as they are loaded: by path.
    static std::unique_ptr<SkyBox> Make() {
        static int count = 0; // the registry knows every path for good
        const std::string folder = "sky" + std::to_string(++count) + "/";
        const std::vector<std::string> names = {"xpos", "xneg", "ypos", "yneg", "zpos", "zneg"};
        for (const std::string& name : names)
            WritePng(folder + name + ".png", 1, 1, 3, {1, 2, 3});
        gl.Name("texture", names);
        const auto path = [&](int i) {
            return folder + names[static_cast<std::size_t>(i)] + ".png";
        };
        return std::make_unique<SkyBox>(path(0), path(1), path(2), path(3), path(4), path(5));
    }

    static std::string LoadFace(const std::string& label) {
        return "glGetIntegerv(GL_MAX_TEXTURE_SIZE)\n"
               "glGenTextures(1, " +
               label + ")\n" + BindTexture(label) + BindTexture(label) + R"(
               glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, 1)
               glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR)
               glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)
               glPixelStorei(GL_UNPACK_ALIGNMENT, 1)
               glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 1, 1, 0, GL_RGB, GL_UNSIGNED_BYTE, memory)
               glPixelStorei(GL_UNPACK_ALIGNMENT, 4)
               )";
    }

    static std::string ClampFace(const std::string& label) {
        return BindTexture(label) + R"(
               glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, 0)
               glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR)
               glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR)
               glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE)
               glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE)
               )";
    }

    /// The list over faces of those labels, in face order.
    static std::string Record(const std::vector<std::string>& faces) {
        static const char* const strips[] = {
            R"(
            glMultiTexCoord2f(GL_TEXTURE0, 1, 0); glVertex3f(-1000, -1000, 1000)
            glMultiTexCoord2f(GL_TEXTURE0, 1, 1); glVertex3f(-1000, 1000, 1000)
            glMultiTexCoord2f(GL_TEXTURE0, 0, 0); glVertex3f(1000, -1000, 1000)
            glMultiTexCoord2f(GL_TEXTURE0, 0, 1); glVertex3f(1000, 1000, 1000)
            )",
            R"(
            glMultiTexCoord2f(GL_TEXTURE0, 0, 0); glVertex3f(-1000, -1000, -1000)
            glMultiTexCoord2f(GL_TEXTURE0, 1, 0); glVertex3f(1000, -1000, -1000)
            glMultiTexCoord2f(GL_TEXTURE0, 0, 1); glVertex3f(-1000, 1000, -1000)
            glMultiTexCoord2f(GL_TEXTURE0, 1, 1); glVertex3f(1000, 1000, -1000)
            )",
            R"(
            glMultiTexCoord2f(GL_TEXTURE0, 1, 1); glVertex3f(-1000, 1000, -1000)
            glMultiTexCoord2f(GL_TEXTURE0, 0, 1); glVertex3f(1000, 1000, -1000)
            glMultiTexCoord2f(GL_TEXTURE0, 1, 0); glVertex3f(-1000, 1000, 1000)
            glMultiTexCoord2f(GL_TEXTURE0, 0, 0); glVertex3f(1000, 1000, 1000)
            )",
            R"(
            glMultiTexCoord2f(GL_TEXTURE0, 1, 0); glVertex3f(-1000, -1000, -1000)
            glMultiTexCoord2f(GL_TEXTURE0, 1, 1); glVertex3f(-1000, -1000, 1000)
            glMultiTexCoord2f(GL_TEXTURE0, 0, 0); glVertex3f(1000, -1000, -1000)
            glMultiTexCoord2f(GL_TEXTURE0, 0, 1); glVertex3f(1000, -1000, 1000)
            )",
            R"(
            glMultiTexCoord2f(GL_TEXTURE0, 1, 0); glVertex3f(-1000, -1000, -1000)
            glMultiTexCoord2f(GL_TEXTURE0, 1, 1); glVertex3f(-1000, 1000, -1000)
            glMultiTexCoord2f(GL_TEXTURE0, 0, 0); glVertex3f(-1000, -1000, 1000)
            glMultiTexCoord2f(GL_TEXTURE0, 0, 1); glVertex3f(-1000, 1000, 1000)
            )",
            R"(
            glMultiTexCoord2f(GL_TEXTURE0, 0, 0); glVertex3f(1000, -1000, -1000)
            glMultiTexCoord2f(GL_TEXTURE0, 1, 0); glVertex3f(1000, -1000, 1000)
            glMultiTexCoord2f(GL_TEXTURE0, 0, 1); glVertex3f(1000, 1000, -1000)
            glMultiTexCoord2f(GL_TEXTURE0, 1, 1); glVertex3f(1000, 1000, 1000)
            )"};
        std::string calls = "-- the list begins\nglGenLists(1); glNewList(list 1, GL_COMPILE)\n-- "
                            "each face by its picture\n" +
                            UnitOn(0);
        for (std::size_t i = 0; i < faces.size(); ++i)
            calls +=
                BindTexture(faces[i]) + "glBegin(GL_TRIANGLE_STRIP)\n" + strips[i] + "glEnd()\n";
        return calls + "-- the list ends\nglDisable(GL_TEXTURE_2D); glEndList()\n";
    }

    static std::string Init(const std::vector<std::string>& faces) {
        std::string calls = "-- no seams between the faces\n";
        for (const std::string& face : faces)
            calls += ClampFace(face);
        return calls + Record(faces);
    }

    static void Draw(SkyBox& sky, const vec3& eye, bool reflection) {
        Camera camera;
        camera.Set(eye, vec3(0, 0, 0));
        sky.Draw(&camera, reflection);
    }
};

} // namespace

TEST_F(SkyCalls, Six_pictures_are_loaded_clamped_and_recorded) {
    const auto sky = Make();
    EXPECT_TRUE(Made(LoadFace("xpos") + LoadFace("xneg") + LoadFace("ypos") + LoadFace("yneg") +
                     LoadFace("zpos") + LoadFace("zneg") +
                     Init({"zpos", "zneg", "ypos", "yneg", "xneg", "xpos"})));
}

TEST_F(SkyCalls, Empty_box_is_recorded_over_no_pictures) {
    const SkyBox sky;
    EXPECT_TRUE(Made(Init({"0", "0", "0", "0", "0", "0"})));
}

TEST_F(SkyCalls, Drawn_around_the_camera_without_depth) {
    SkyBox sky;
    Forget();
    struct {
        vec3 eye;
        bool reflection;
        const char* place;
    } const cases[] = {{vec3(1, 2, 3), false, "1, 2, 3"},
                       {vec3(1, -2, 3), false, "1, -2, 3"},
                       {vec3(1, 0, 3), true, "1, 0, 3"}, // at the surface: not mirrored
                       {vec3(1, -1.0f / 1024, 3), true, "1, -0.0009765625, 3"},
                       {vec3(1, -2, 3), true, "1, -2, 3"}};
    for (const auto& [eye, reflection, place] : cases) {
        Draw(sky, eye, reflection);
        EXPECT_TRUE(Made(R"(
            -- matrix kept
            glPushMatrix()
            -- round the camera
            glTranslatef()" +
                         std::string(place) + R"()
            -- behind everything
            glDepthMask(GL_FALSE)
            glCallList(list 1)
            glDepthMask(GL_TRUE)
            -- matrix back
            glPopMatrix()
            )"));
    }
}

TEST_F(SkyCalls, Mirrored_in_the_reflection_and_not_clipped) {
    SkyBox sky;
    Forget();
    struct {
        float height;
        const char* place;
    } const cases[] = {
        {2.0f, "1, -2, 3"}, {0.25f, "1, -0.25, 3"}, {1.0f / 1024, "1, -0.0009765625, 3"}};
    for (const auto& [height, place] : cases) {
        Draw(sky, vec3(1, height, 3), true);
        EXPECT_TRUE(Made(R"(
            -- matrix kept
            glPushMatrix()
            -- round the mirrored camera, not clipped
            glDisable(GL_CLIP_PLANE0)
            glTranslatef()" +
                         std::string(place) + R"()
            -- behind everything
            glDepthMask(GL_FALSE)
            glCallList(list 1)
            glDepthMask(GL_TRUE)
            -- clipped again
            glEnable(GL_CLIP_PLANE0)
            -- matrix back
            glPopMatrix()
            )"));
    }
}

TEST_F(SkyCalls, Second_recording_replaces_the_first) {
    SkyBox sky;
    Forget();
    sky.Init();
    std::string calls = Init({"0", "0", "0", "0", "0", "0"});
    calls.replace(calls.find("glGenLists"), 0, "glDeleteLists(list 1, 1)\n");
    calls.replace(calls.find("list 1, GL_COMPILE"), 6, "list 2");
    EXPECT_TRUE(Made(calls));
}

TEST_F(SkyCalls, End_deletes_the_list_and_then_the_pictures) {
    auto sky = Make();
    Forget();
    sky.reset();
    EXPECT_TRUE(Made(R"(
        glDeleteLists(list 1, 1)
        glDeleteTextures(1, xpos)
        glDeleteTextures(1, xneg)
        glDeleteTextures(1, yneg)
        glDeleteTextures(1, ypos)
        glDeleteTextures(1, zneg)
        glDeleteTextures(1, zpos)
        )"));
}
