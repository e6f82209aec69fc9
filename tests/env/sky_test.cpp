#include "engine/env/sky.h"

#include "engine/core/core.h"
#include "engine/scene/camera.h"
#include "tests/support/gl_state.h"
#include "tests/support/gl_test.h"
#include "tests/support/log_page.h"
#include "tests/support/pixels.h"
#include "tests/support/private_member.h"
#include "tests/support/shapes.h"

#include <algorithm>
#include <map>
#include <memory>
#include <ostream>

#include <gmock/gmock.h>

using Vell::vec3;

OPEN_PRIVATE(skyBoxList, &Vell::SkyBox::list);
OPEN_PRIVATE(skyBoxFaces, &Vell::SkyBox::faces);

namespace Vell {

struct SkyBoxProbe {
    static GLuint List(const SkyBox& sky) { return sky.*skyBoxList; }
    static Image& Face(SkyBox& sky, int face) { return (sky.*skyBoxFaces)[face]; }
    static GLuint Texture(SkyBox& sky, int face) { return Face(sky, face).GetID(); }
};

} // namespace Vell

namespace {

using Vell::SkyBoxProbe;

constexpr int size = 128;

// How to look at a face so that its picture stands upright and unmirrored. Derived from the
// corners: s grows towards +z on xpos, -z on xneg, -x on zpos, ypos and yneg, +x on zneg; t grows
// with y on the sides, towards -z above and +z below; and right is forward x up.
struct View {
    const char* face;
    vec3 forward;
    vec3 up;
    int blue; // tells the pictures apart
};

const View views[] = {
    {"xpos", vec3(1, 0, 0), vec3(0, 1, 0), 10},  {"xneg", vec3(-1, 0, 0), vec3(0, 1, 0), 50},
    {"ypos", vec3(0, 1, 0), vec3(0, 0, -1), 90}, {"yneg", vec3(0, -1, 0), vec3(0, 0, 1), 130},
    {"zpos", vec3(0, 0, 1), vec3(0, 1, 0), 170}, {"zneg", vec3(0, 0, -1), vec3(0, 1, 0), 210},
};

// A picture that shows where each of its pixels belongs.
Picture FacePicture(int blue) {
    return MakePicture(size, size, [blue](int x, int y) { return Rgba{2 * x, 2 * y, blue, 255}; });
}

Picture UpsideDown(const Picture& picture) {
    return MakePicture(size, size, [&](int x, int y) { return picture.At(x, size - 1 - y); });
}

void PrintTo(const View& view, std::ostream* out) {
    *out << view.face;
}

// Each face is exactly as large as the view, so pictures are met texel by texel; the division by
// depth may still round a channel the other way.
constexpr Thresholds rounding{.max = 1.0, .mean = 0.001};

} // namespace

class SkyBox : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        Vell::SetFovy(90.0f); // one face fills the view
        for (const View& view : views) {
            paths[view.face] = FreshName(view.face, ".png");
            WritePicture(paths[view.face], FacePicture(view.blue));
        }
        sky = std::make_unique<Vell::SkyBox>(paths["xpos"], paths["xneg"], paths["ypos"],
                                             paths["yneg"], paths["zpos"], paths["zneg"]);
    }

    void TearDown() override {
        glDisable(GL_CLIP_PLANE0);
        sky.reset();
        GlTest::TearDown();
    }

    // Loads the view from `position` and gives a camera that stands there.
    Vell::Camera LookFrom(const vec3& p, const vec3& forward, const vec3& up = vec3(0, 1, 0)) {
        const vec3 t = p + forward;
        glLoadIdentity();
        gluLookAt(p.x, p.y, p.z, t.x, t.y, t.z, up.x, up.y, up.z);
        Vell::Camera camera;
        camera.Set(p, t);
        return camera;
    }

    // What the reflection pass has set up when it asks for the sky.
    void MirrorAndClip() {
        const GLdouble above[] = {0.0, 1.0, 0.0, 0.0};
        glScalef(1.0f, -1.0f, 1.0f);
        glClipPlane(GL_CLIP_PLANE0, above);
        glEnable(GL_CLIP_PLANE0);
    }

    std::map<std::string, std::string> paths;
    std::unique_ptr<Vell::SkyBox> sky;
};

class SkyBoxFace : public SkyBox, public ::testing::WithParamInterface<View> {};

TEST_P(SkyBoxFace, Shows_its_picture_upright_in_its_direction) {
    const View& view = GetParam();
    Vell::Camera camera = LookFrom(vec3(0), view.forward, view.up);
    sky->Draw(&camera, false);
    EXPECT_TRUE(Matches(ReadScreen(size, size), FacePicture(view.blue), rounding));
}

INSTANTIATE_TEST_SUITE_P(Sky, SkyBoxFace, ::testing::ValuesIn(views),
                         ::testing::PrintToStringParamName());

TEST_F(SkyBox, Shows_new_pixels_under_the_old_texture_name_at_once) {
    Vell::Image& face = SkyBoxProbe::Face(*sky, 5);
    const Picture changed = FacePicture(77);
    ASSERT_EQ(face.GetSize(), Vell::ivec2(size, size));
    std::copy(changed.Data(), changed.Data() + size * size * 4, face.GetData());
    face.Update();
    Vell::Camera camera = LookFrom(vec3(0), vec3(1, 0, 0));
    sky->Draw(&camera, false);
    EXPECT_TRUE(Matches(ReadScreen(size, size), changed, rounding));
}

TEST_F(SkyBox, Follows_the_camera_wherever_it_goes) {
    for (const vec3& place : {vec3(512, 16, -256), vec3(-2048, -64, 4096)}) {
        glClear(GL_COLOR_BUFFER_BIT);
        Vell::Camera camera = LookFrom(place, vec3(1, 0, 0));
        sky->Draw(&camera, false);
        EXPECT_TRUE(Matches(ReadScreen(size, size), FacePicture(10), rounding));
    }
}

TEST_F(SkyBox, Is_whole_in_the_depth_range_even_at_its_corners) {
    // A corner is sqrt(3) * 1000 = 1732 units away: in front of the far plane, behind the near one.
    Vell::Camera camera = LookFrom(vec3(0), vec3(1, 1, 1));
    sky->Draw(&camera, false);
    const Picture screen = ReadScreen(size, size);
    for (int y = 0; y < size; y += 8)
        for (int x = 0; x < size; x += 8)
            EXPECT_NE(screen.At(x, y).b, 0) << x << ", " << y;
}

TEST_F(SkyBox, Is_mirrored_past_the_clip_plane_in_the_reflection_of_a_camera_above_water) {
    Vell::Camera camera = LookFrom(vec3(0, 256, 0), vec3(1, 0, 0));
    MirrorAndClip();
    sky->Draw(&camera, true);
    EXPECT_TRUE(Matches(ReadScreen(size, size), UpsideDown(FacePicture(10)), rounding));
    EXPECT_TRUE(glIsEnabled(GL_CLIP_PLANE0));
}

TEST_F(SkyBox, Stays_unmirrored_and_clipped_when_the_camera_is_at_the_surface_or_below) {
    // The plane y = 0 cuts the box at the height of the eye: only the upper half is left. From 2
    // units below, the cut is 64 * 2 / 1000 of a pixel higher, which is no whole pixel.
    const Picture face = FacePicture(10);
    for (float height : {0.0f, -2.0f}) {
        SCOPED_TRACE(height);
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
        Vell::Camera camera = LookFrom(vec3(0, height, 0), vec3(1, 0, 0));
        const GLdouble above[] = {0.0, 1.0, 0.0, 0.0};
        glClipPlane(GL_CLIP_PLANE0, above);
        glEnable(GL_CLIP_PLANE0);
        sky->Draw(&camera, true);
        const Picture actual = ReadScreen(size, size);
        for (int x = 0; x < size; x += 9) {
            EXPECT_TRUE(Near(actual.At(x, 100), face.At(x, 100), 1));
            EXPECT_EQ(actual.At(x, 20).b, 0);
        }
        EXPECT_TRUE(glIsEnabled(GL_CLIP_PLANE0));
    }
}

TEST_F(SkyBox, Leaves_a_disabled_clip_plane_disabled_at_the_surface) {
    Vell::Camera camera = LookFrom(vec3(0, 0, 0), vec3(1, 0, 0));
    sky->Draw(&camera, true);
    EXPECT_FALSE(glIsEnabled(GL_CLIP_PLANE0));
}

TEST_F(SkyBox, Writes_no_depth) {
    Vell::Camera camera = LookFrom(vec3(0), vec3(0, 0, -1));
    sky->Draw(&camera, false);
    float depth = 0.0f;
    glReadPixels(size / 2, size / 2, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &depth);
    EXPECT_EQ(depth, 1.0f);
}

TEST_F(SkyBox, Changes_no_state_but_what_is_bound_to_unit_0) {
    Vell::Camera camera = LookFrom(vec3(5, 3, 1), vec3(0, 0, -1));
    MirrorAndClip();
    glBindTexture(GL_TEXTURE_2D, SkyBoxProbe::Texture(*sky, 5)); // what it leaves there
    const GlState before = CaptureGlState();
    sky->Draw(&camera, false);
    sky->Draw(&camera, true);
    EXPECT_EQ(Differences(before, CaptureGlState()), "");
}

TEST_F(SkyBox, Clamps_its_pictures_and_uses_no_mip_maps) {
    for (int face = 0; face < 6; ++face) {
        glBindTexture(GL_TEXTURE_2D, SkyBoxProbe::Texture(*sky, face));
        const auto parameter = [](GLenum name) {
            GLint value = 0;
            glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
            return value;
        };
        EXPECT_EQ(parameter(GL_TEXTURE_WRAP_S), GL_CLAMP_TO_EDGE);
        EXPECT_EQ(parameter(GL_TEXTURE_WRAP_T), GL_CLAMP_TO_EDGE);
        EXPECT_EQ(parameter(GL_TEXTURE_MIN_FILTER), GL_LINEAR);
        EXPECT_EQ(parameter(GL_TEXTURE_MAG_FILTER), GL_LINEAR);
        EXPECT_EQ(parameter(GL_GENERATE_MIPMAP), GL_FALSE);
    }
}

TEST_F(SkyBox, Draws_white_without_pictures_and_takes_new_ones_at_the_next_init) {
    const std::string path = FreshName("late", ".png");
    WritePicture(path, FacePicture(33));
    Vell::SkyBox empty;
    Vell::Camera camera = LookFrom(vec3(0), vec3(1, 0, 0));

    empty.Draw(&camera, false);
    EXPECT_TRUE(Near(ReadScreen(size, size).At(64, 64), {255, 255, 255, 255}));
    empty.SetXPOS(path); // the recorded list still binds the old texture name
    empty.Draw(&camera, false);
    EXPECT_TRUE(Near(ReadScreen(size, size).At(64, 64), {255, 255, 255, 255}));
    empty.Init();
    empty.Draw(&camera, false);
    EXPECT_TRUE(Matches(ReadScreen(size, size), FacePicture(33), rounding));
}

TEST_F(SkyBox, Reports_a_missing_face_and_draws_the_others) {
    const std::string missing = FreshName("missing", ".png");
    const LogWatch log;
    Vell::SkyBox partly(missing, paths["xneg"], paths["ypos"], paths["yneg"], paths["zpos"],
                        paths["zneg"]);
    EXPECT_THAT(log.NewRows(), ::testing::ElementsAre(LogRow{"Image", "ERROR", missing}));

    Vell::Camera camera = LookFrom(vec3(0), vec3(-1, 0, 0));
    partly.Draw(&camera, false);
    EXPECT_TRUE(Matches(ReadScreen(size, size), FacePicture(50), rounding));
}

TEST_F(SkyBox, Releases_its_list_and_its_pictures) {
    const GLuint list = SkyBoxProbe::List(*sky);
    const GLuint texture = SkyBoxProbe::Texture(*sky, 0);
    ASSERT_TRUE(glIsList(list));
    const LogWatch log;
    sky.reset();
    EXPECT_FALSE(glIsList(list));
    EXPECT_FALSE(glIsTexture(texture));
    EXPECT_EQ(log.NewRows().size(), 6u);
}
