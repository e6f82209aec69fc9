#include "engine/render/shader.h"

#include "engine/core/textureunits.h"
#include "engine/math/vec3.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"
#include "tests/support/scratch.h"

#include <GL/glu.h>

#include <cmath>
#include <string>
#include <utility>

#include <gmock/gmock.h>

namespace {

const std::string vertexPath = NIMBREL_SOURCE_DIR "/Data/Gfx/City/shader.vert";
const std::string fragmentPath = NIMBREL_SOURCE_DIR "/Data/Gfx/City/shader.frag";
const Vell::vec3 parked(0, 1000, 0);

/// What one drawing shows: a square wall of 2 units that faces +z.
struct View {
    Vell::vec3 eye{0, 3, 4};
    Vell::vec3 wall{0, 3, 0}; ///< its middle
    Vell::vec3 red = parked;
    int marks = 0; ///< of the pictures that show it, bit 0 to 4
    bool shining = false;
    float normalZ = 1;
    bool mirrored = false;
};

/// The material on grey stone (half bright, not glowing unless `surface` says so) under a light
/// map of full white.
class CityMaterial : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        if (!loaded)
            shader.Load(vertexPath, fragmentPath);
        loaded = true;
        shader.Enable();
        shader.Send("texture0", 0);
        shader.Send("lightmap", lightmapUnit);
        shader.Send("time", 0.0f);
        for (const char* wisp : {"posred", "posgreen", "posblue"})
            shader.Send(wisp, parked);
        lightmap = Bind(lightmapUnit, {128, 128, 128, 255});
        surface = Bind(0, {128, 128, 128, 255});
    }

    void TearDown() override {
        shader.Disable();
        glDeleteTextures(1, &lightmap);
        glDeleteTextures(1, &surface);
        GlTest::TearDown();
    }

    /// The middle pixel of the picture; black when nothing is drawn there.
    Rgba Middle(const View& view) {
        shader.Send("posred", view.red);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(25, 1, 0.1, 1000);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        // In the mirror pass the eye stands above the water and the world hangs below it.
        const float up = view.mirrored ? -1.0f : 1.0f;
        gluLookAt(view.eye.x, view.eye.y, view.eye.z, view.wall.x, up * view.wall.y, view.wall.z, 0,
                  1, 0);
        glScalef(1, up, 1);
        DrawWall(view);
        return ReadScreen(screenSize, screenSize).At(screenSize / 2, screenSize / 2);
    }

    /// Where the curtain is drawn: a surface with marks beyond all others, here two triangles.
    static void DrawCurtain() {
        glBegin(GL_TRIANGLES);
        for (const auto& [x, y] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, -1}, {1, 1}, {-1, 1}}) {
            glNormal3f(0.70711f * static_cast<float>(x), 0.70711f * static_cast<float>(y), 0);
            glMultiTexCoord2f(GL_TEXTURE0, 64.0f * 32, 0);
            glMultiTexCoord2f(GL_TEXTURE1, 0, 0);
            glVertex3f(26, -1, 14);
        }
        glEnd();
    }

    /// How many of the pixels in the middle column the curtain covers in a picture of `rows` rows,
    /// seen from `eye`.
    static int CurtainedRows(int rows, const Vell::vec3& eye) {
        glViewport(0, 0, screenSize, rows);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        gluPerspective(25, 1, 0.1, 1000);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        gluLookAt(eye.x, eye.y, eye.z, 0, eye.y, 0, 0, 1, 0);
        glEnable(GL_ALPHA_TEST);
        glAlphaFunc(GL_GREATER, 0.5f);
        DrawCurtain();
        glDisable(GL_ALPHA_TEST);
        const Picture picture = ReadScreen(screenSize, screenSize);
        int covered = 0;
        for (int y = 0; y < rows; ++y)
            covered += picture.At(screenSize / 2, y).b > 0 ? 1 : 0;
        glViewport(0, 0, screenSize, screenSize);
        return covered;
    }

    /// Replaces the surface's one colour.
    void Paint(Rgba colour) {
        glDeleteTextures(1, &surface);
        surface = Bind(0, colour);
    }

private:
    static constexpr int lightmapUnit = 6;

    static GLuint Bind(int unit, Rgba colour) {
        glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
        const GLuint texture = UploadTexture(Picture(1, 1, colour));
        glBindTexture(GL_TEXTURE_2D, texture);
        glActiveTexture(GL_TEXTURE0);
        return texture;
    }

    static void DrawWall(const View& view) {
        glBegin(GL_TRIANGLE_STRIP);
        for (int i = 0; i < 4; ++i) {
            const float x = i % 2 == 0 ? -1.0f : 1.0f;
            const float y = i < 2 ? -1.0f : 1.0f;
            glNormal3f(0, 0, view.normalZ);
            glMultiTexCoord2f(GL_TEXTURE0, 0.5f + 64.0f * static_cast<float>(view.marks),
                              0.5f + (view.shining ? 64.0f * 32 : 0));
            glMultiTexCoord2f(GL_TEXTURE1, 0.5f, 0.5f);
            glVertex3f(view.wall.x + x, view.wall.y + y, view.wall.z);
        }
        glEnd();
    }

    // One for all tests, as for all frames of the demo: a second Load would share the first one's
    // program, which must then outlive it.
    static inline Vell::Shader shader;
    static inline bool loaded = false;
    GLuint lightmap = 0;
    GLuint surface = 0;
};

/// What the compiler says about a source; empty when it has nothing to say.
std::string CompilerMessages(GLenum kind, const std::string& path) {
    const std::string source = ReadFile(path);
    const char* text = source.c_str();
    const GLuint object = glCreateShaderObject(kind);
    glShaderSource(object, 1, &text, nullptr);
    glCompileShader(object);
    char messages[2048] = "";
    glGetShaderInfoLog(object, sizeof messages, nullptr, messages);
    glDeleteObject(object);
    return messages;
}

TEST_F(CityMaterial, Compiles_without_a_word_from_the_compiler) {
    EXPECT_EQ(CompilerMessages(GL_VERTEX_SHADER, vertexPath), "");
    EXPECT_EQ(CompilerMessages(GL_FRAGMENT_SHADER, fragmentPath), "");
}

TEST_F(CityMaterial, Shows_surface_times_light_near_the_eye) {
    // 0.5 x (2 x 0.5) = 0.5, then the grade at level 0.5: halfway from the cold to the warm
    // tint, (0.97, 0.975, 1.02). At 4 units the haze takes 1.2 % of it and adds a little.
    EXPECT_TRUE(Near(Middle({}), {124, 124, 130, 255}, 3));
}

TEST_F(CityMaterial, A_parked_wisp_changes_nothing) {
    View far;
    far.red = Vell::vec3(0, 100000, 0);
    EXPECT_EQ(Middle({}), Middle(far));
}

TEST_F(CityMaterial, A_wisp_in_front_of_a_wall_reddens_it_and_one_behind_hardly_does) {
    View near;
    near.red = Vell::vec3(0, 3, 3);
    View behind;
    behind.red = Vell::vec3(0, 3, -3);
    const Rgba plain = Middle({});
    EXPECT_GT(Middle(near).r, plain.r + 60);
    EXPECT_LT(Middle(near).b, plain.b + 20);
    EXPECT_LT(Middle(behind).r, plain.r + 3);
}

TEST_F(CityMaterial, What_glows_shows_its_own_light_alone_and_is_still_opaque) {
    // 1.15 x 0.5 = 0.58, graded by (0.98, 0.98, 1.005), less 1 % by the haze. With the light map's
    // white besides, it would be 1.08.
    Paint({128, 128, 128, 0});
    EXPECT_TRUE(Near(Middle({}), {144, 142, 147, 255}, 3));
}

TEST_F(CityMaterial, A_pane_that_is_marked_as_shining_is_brighter_though_its_texture_has_no_alpha) {
    // Near the eye it adds 1.15 of its colour: 1.15 x 0.5 x 255 = 147, more than the 131 that there
    // are from 124 up to white.
    View pane;
    pane.shining = true;
    EXPECT_GT(Middle(pane).g, Middle({}).g + 100);
}

TEST_F(CityMaterial, A_wall_that_looks_away_is_not_drawn) {
    View away;
    away.normalZ = -1;
    EXPECT_EQ(Middle(away), (Rgba{0, 0, 0, Middle(away).a}));
    EXPECT_NE(Middle({}).r, 0);
}

TEST_F(CityMaterial, What_lies_under_water_shows_only_to_an_eye_under_water) {
    View drowned;
    drowned.marks = 1 << 1; // seen in the flight under water
    drowned.wall = Vell::vec3(0, -5, 0);
    drowned.eye = Vell::vec3(0, 1, 10);
    EXPECT_EQ(Middle(drowned).b, 0);
    drowned.eye = Vell::vec3(0, -4, 10);
    EXPECT_GT(Middle(drowned).b, 60);
}

TEST_F(CityMaterial, A_flight_shows_what_is_marked_for_it_and_no_other) {
    // Bit 2 speaks of the fourth flight, which starts at (40, 8, 5) and looks towards +x; here at a
    // wall that faces it.
    View wall;
    wall.eye = Vell::vec3(40, 8, 9);
    wall.wall = Vell::vec3(40, 8, 5);
    wall.marks = 1 << 2;
    EXPECT_NE(Middle(wall).b, 0);
    wall.marks = 31 - (1 << 2);
    EXPECT_EQ(Middle(wall).b, 0);
}

TEST_F(CityMaterial, Away_from_all_flights_marks_mean_nothing) {
    for (const int marks : {0, 1, 30}) {
        View wall;
        wall.marks = marks;
        EXPECT_NE(Middle(wall).b, 0) << marks;
    }
}

TEST_F(CityMaterial, Marks_leave_the_look_of_a_surface_alone) {
    View marked;
    marked.marks = 30;
    EXPECT_EQ(Middle(marked), Middle({}));
}

TEST_F(CityMaterial, The_curtain_hangs_in_high_pictures_of_the_flights_where_it_pays) {
    const Vell::vec3 alongTheCanal(17, 2, 46);
    const Vell::vec3 onTheFourthFlight(40, 9, 10);
    // A row is covered when it lies over 100 times its share of the height plus 1: from
    // y + 0.5 >= 100 (y + 0.5) / 128 + 1, y >= 4.07 on, so all but five of 128.
    EXPECT_EQ(CurtainedRows(128, alongTheCanal), 123);
    EXPECT_EQ(CurtainedRows(89, alongTheCanal), 0);
    EXPECT_EQ(CurtainedRows(128, onTheFourthFlight), 0);
    EXPECT_EQ(CurtainedRows(128, Vell::vec3(0, 3, 4)), 0);
}

TEST_F(CityMaterial, Distance_under_water_fades_into_the_colour_of_the_sea) {
    View far;
    far.marks = 1 << 1; // seen in the flight under water
    far.wall = Vell::vec3(0, -3, -90);
    far.eye = Vell::vec3(0, -3, 4);
    const Rgba colour = Middle(far);
    EXPECT_GT(colour.b, colour.r + 50);
    EXPECT_GT(colour.g, colour.r + 60);
}

TEST_F(CityMaterial, The_mirror_image_is_the_thing_with_a_quarter_of_it_lost_in_the_water) {
    View mirrored;
    mirrored.mirrored = true;
    mirrored.eye = Vell::vec3(0, 0.5f, 6);
    mirrored.wall = Vell::vec3(0, 1.5f, 0);
    View plain = mirrored;
    plain.mirrored = false;
    // Nearly the same distance, so nearly the same haze; the colour of the sea would be blue. Of
    // each colour 0.74 comes back, and 0.26 of (0.13, 0.12, 0.25) are added: 8.6, 8.0 and 16.6 of
    // 255.
    const Rgba thing = Middle(plain);
    const auto back = [](int colour, double water) {
        return static_cast<int>(std::lround(0.74 * colour + water));
    };
    const Rgba expected{back(thing.r, 8.6), back(thing.g, 8.0), back(thing.b, 16.6), 255};
    EXPECT_TRUE(Near(Middle(mirrored), expected, 2));
}

TEST_F(CityMaterial, The_mirror_pass_clips_what_is_under_water) {
    const GLdouble above[] = {0, 1, 0, 0};
    View mirrored;
    mirrored.mirrored = true;
    mirrored.eye = Vell::vec3(0, 2, 6);
    // Half the wall stands in the water; the middle of the picture is just below it.
    mirrored.wall = Vell::vec3(0, -0.03f, 0);
    EXPECT_NE(Middle(mirrored).b, 0);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    gluLookAt(0, 2, 6, 0, 0.03, 0, 0, 1, 0);
    glScalef(1, -1, 1);
    glClipPlane(GL_CLIP_PLANE0, above);
    glEnable(GL_CLIP_PLANE0);
    EXPECT_EQ(Middle(mirrored).b, 0);
    glDisable(GL_CLIP_PLANE0);
}

} // namespace
