#include "art/common/palette.h"
#include "art/sky/clouds.h"
#include "art/sky/dusk.h"
#include "art/sky/faces.h"

#include "engine/core/core.h"
#include "engine/env/sky.h"
#include "engine/scene/camera.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"

#include <array>
#include <string>

#include <gmock/gmock.h>

namespace {

using Vell::vec3;

const std::string skyFolder = NIMBREL_SOURCE_DIR "/Data/Gfx/City/sky/";

// The corners that the sky box draws, as (s, t) then the direction, three per face: the fourth
// follows from them.
struct CornerRow {
    const char* file;
    float s, t;
    vec3 corner;
};

constexpr CornerRow corners[] = {
    {"zpos.jpg", 1, 0, {-1, -1, 1}},  {"zpos.jpg", 1, 1, {-1, 1, 1}},
    {"zpos.jpg", 0, 0, {1, -1, 1}},   {"zneg.jpg", 0, 0, {-1, -1, -1}},
    {"zneg.jpg", 1, 0, {1, -1, -1}},  {"zneg.jpg", 0, 1, {-1, 1, -1}},
    {"ypos.jpg", 1, 1, {-1, 1, -1}},  {"ypos.jpg", 0, 1, {1, 1, -1}},
    {"ypos.jpg", 1, 0, {-1, 1, 1}},   {"yneg.jpg", 1, 0, {-1, -1, -1}},
    {"yneg.jpg", 1, 1, {-1, -1, 1}},  {"yneg.jpg", 0, 0, {1, -1, -1}},
    {"xneg.jpg", 1, 0, {-1, -1, -1}}, {"xneg.jpg", 1, 1, {-1, 1, -1}},
    {"xneg.jpg", 0, 0, {-1, -1, 1}},  {"xpos.jpg", 0, 0, {1, -1, -1}},
    {"xpos.jpg", 1, 0, {1, -1, 1}},   {"xpos.jpg", 0, 1, {1, 1, -1}},
};

const Art::SkyFace& FaceNamed(const std::string& file) {
    for (const Art::SkyFace& face : Art::SkyFaces())
        if (file == face.file)
            return face;
    throw std::out_of_range(file);
}

/// The six stored pictures, looked up as the engine does.
class StoredSky {
public:
    StoredSky() {
        for (const Art::SkyFace& face : Art::SkyFaces())
            pictures.push_back(Art::ReadPicture(skyFolder + face.file));
    }

    int Size(std::size_t face) const { return pictures[face].Width(); }

    /// Texel (column, row) of the loaded texture, row 0 at t = 0. Loading turns a JPEG by 180
    /// degrees in memory: loaded texel k is stored pixel (count - 1 - k), counted from the top
    /// left. With k = row * size + column that is column size - 1 - column of row size - 1 - row.
    vec3 Texel(std::size_t face, int column, int row) const {
        const int last = Size(face) - 1;
        const Art::Rgba& pixel = pictures[face].At(last - column, last - row);
        return {pixel.r, pixel.g, pixel.b};
    }

    /// The texel nearest to a point of the cube that lies on the face.
    vec3 TexelTowards(std::size_t index, vec3 onCube) const {
        const Art::SkyFace& face = Art::SkyFaces()[index];
        const auto texel = [&](vec3 along) {
            const float share = Vell::Dot(onCube - face.origin, along) / Vell::Dot(along, along);
            return std::clamp(static_cast<int>(share * static_cast<float>(Size(index))), 0,
                              Size(index) - 1);
        };
        return Texel(index, texel(face.alongS), texel(face.alongT));
    }

private:
    std::vector<Art::Picture> pictures;
};

const StoredSky& Stored() {
    static const StoredSky sky;
    return sky;
}

bool LiesOn(const Art::SkyFace& face, vec3 onCube) {
    const vec3 outward = face.origin + face.alongS * 0.5f + face.alongT * 0.5f;
    return std::abs(Vell::Dot(onCube, outward) - 1) < 1e-5f;
}

/// The two faces that share the edge on which the point lies.
std::vector<std::size_t> FacesAt(vec3 onCube) {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < Art::SkyFaces().size(); ++i)
        if (LiesOn(Art::SkyFaces()[i], onCube))
            found.push_back(i);
    return found;
}

/// A point of one of the cube's twelve edges; `along` in -1..1.
vec3 OnEdge(int edge, float along) {
    const float a = edge % 2 == 0 ? -1.0f : 1.0f;
    const float b = edge / 2 % 2 == 0 ? -1.0f : 1.0f;
    switch (edge / 4) {
    case 0:
        return {along, a, b};
    case 1:
        return {a, along, b};
    default:
        return {a, b, along};
    }
}

float LargestPart(vec3 v) {
    return std::max({std::abs(v.x), std::abs(v.y), std::abs(v.z)});
}

float MeanPart(vec3 v) {
    return (std::abs(v.x) + std::abs(v.y) + std::abs(v.z)) / 3;
}

} // namespace

TEST(NatureSky, Faces_look_where_the_sky_box_puts_their_texture_coordinates) {
    for (const CornerRow& row : corners) {
        const Art::SkyFace& face = FaceNamed(row.file);
        const vec3 found = face.origin + face.alongS * row.s + face.alongT * row.t;
        EXPECT_EQ(found.x, row.corner.x) << row.file << " (" << row.s << ", " << row.t << ")";
        EXPECT_EQ(found.y, row.corner.y) << row.file << " (" << row.s << ", " << row.t << ")";
        EXPECT_EQ(found.z, row.corner.z) << row.file << " (" << row.s << ", " << row.t << ")";
    }
}

TEST(NatureSky, Stored_faces_agree_along_all_twelve_edges) {
    constexpr int samples = 1024;
    for (int edge = 0; edge < 12; ++edge) {
        double sum = 0;
        int far = 0;
        for (int i = 0; i < samples; ++i) {
            const vec3 point = OnEdge(edge, (2 * static_cast<float>(i) + 1) / samples - 1);
            const std::vector<std::size_t> faces = FacesAt(point);
            ASSERT_EQ(faces.size(), 2U);
            const vec3 difference =
                Stored().TexelTowards(faces[0], point) - Stored().TexelTowards(faces[1], point);
            sum += MeanPart(difference) * 255;
            far += LargestPart(difference) * 255 > 12 ? 1 : 0;
        }
        EXPECT_LT(sum / samples, 2.0) << "edge " << edge;
        // The two texels lie one texel apart, and each JPEG errs by a few steps: more than that may
        // only differ where the edge crosses the flank of a star, a coast or the sharp rim of a
        // cloud.
        EXPECT_LT(far, samples / 50) << "edge " << edge;
    }
}

TEST(NatureSky, Stored_texels_show_the_colour_of_their_direction) {
    for (std::size_t face = 0; face < Art::SkyFaces().size(); ++face) {
        const int size = Stored().Size(face);
        double sum = 0;
        int count = 0;
        for (int row = 5; row < size; row += 23)
            for (int column = 5; column < size; column += 23, ++count) {
                const vec3 direction = Art::FaceDirection(
                    Art::SkyFaces()[face],
                    (static_cast<float>(column) + 0.5f) / static_cast<float>(size),
                    (static_cast<float>(row) + 0.5f) / static_cast<float>(size));
                const vec3 difference =
                    Stored().Texel(face, column, row) - Art::DuskColour(direction);
                sum += MeanPart(difference) * 255;
                // Dither and JPEG together; a star or a coast sits on an eight pixel block's noise.
                EXPECT_LT(LargestPart(difference) * 255, 20.0f)
                    << Art::SkyFaces()[face].file << " texel " << column << ", " << row;
            }
        EXPECT_LT(sum / count, 1.5) << Art::SkyFaces()[face].file;
    }
}

TEST(NatureSky, Glows_where_the_light_comes_from_and_is_blue_on_the_other_side) {
    const vec3 light = Art::LightDirection();
    const vec3 towards = Vell::Normalized(Vell::vec3{light.x, 0.04f, light.z});
    const vec3 away = Vell::Normalized(Vell::vec3{-light.x, 0.04f, -light.z});
    const vec3 warm = Art::DuskColour(towards);
    const vec3 cold = Art::DuskColour(away);
    EXPECT_GT(warm.x, 2 * warm.z) << "red over blue towards the light";
    EXPECT_GT(cold.z, cold.x) << "blue over red away from it";
    EXPECT_GT(warm.x, 2 * cold.x);
}

/// How much brighter it gets in all, 0..3, on the way up from 1.5 to 10 degrees. A clear sky
/// towards the light only gets darker.
float RiseUpwards(float heading) {
    float rise = 0;
    float before = 3;
    for (int i = 0; i <= 34; ++i) {
        const float up = (1.5f + 0.25f * static_cast<float>(i)) * Art::pi / 180;
        const vec3 c = Art::DuskColour(
            {std::cos(heading) * std::cos(up), std::sin(up), std::sin(heading) * std::cos(up)});
        const float brightness = c.x + c.y + c.z;
        rise += std::max(brightness - before, 0.0f);
        before = brightness;
    }
    return rise;
}

TEST(NatureSky, Bars_of_cloud_burn_before_the_glow) {
    const vec3 light = Art::LightDirection();
    const float middle = std::atan2(light.z, light.x);
    float sum = 0;
    for (int degrees = -40; degrees <= 40; ++degrees)
        sum += RiseUpwards(middle + static_cast<float>(degrees) * Art::pi / 180);
    // One bar after the other: the rises of a heading add up to more than half of white, 3.
    EXPECT_GT(sum / 81, 1.6f);
}

TEST(NatureSky, Falls_into_dark_water_below_the_horizon) {
    float before = 1;
    for (const float down : {-0.05f, -0.2f, -0.5f, -1.0f}) {
        const vec3 colour = Art::DuskColour(Vell::Normalized(Vell::vec3{0.3f, down, 1}));
        const float brightness = (colour.x + colour.y + colour.z) / 3;
        EXPECT_LT(brightness, before) << "at y = " << down;
        EXPECT_GT(colour.z, colour.x) << "at y = " << down;
        before = brightness;
    }
}

TEST(NatureSky, Lets_no_water_shine_through_above_the_far_rim_of_the_sea) {
    // From ten units up the sea's rim, 1024 units away, lies atan(10 / 1024) = 0.56 degrees low.
    for (int i = 0; i < 36; ++i) {
        const float angle = static_cast<float>(i) * Art::pi / 18;
        const auto at = [&](float degrees) {
            const float up = degrees * Art::pi / 180;
            return Art::DuskColour(
                {std::cos(angle) * std::cos(up), std::sin(up), std::sin(angle) * std::cos(up)});
        };
        // -0.4 degrees is below the dark hair of the horizon and still its colour.
        EXPECT_LT(LargestPart(at(-0.56f) - at(-0.4f)) * 255, 0.5f) << "azimuth " << i * 10;
        EXPECT_GT(LargestPart(at(-0.4f) - at(-3)) * 255, 20.0f) << "azimuth " << i * 10;
    }
}

TEST(NatureSky, Draws_a_hair_of_dark_sea_along_the_horizon) {
    for (int i = 0; i < 36; ++i) {
        const float angle = static_cast<float>(i) * Art::pi / 18;
        const auto brightness = [&](float y) {
            const vec3 c =
                Art::DuskColour(Vell::Normalized(Vell::vec3{std::cos(angle), y, std::sin(angle)}));
            return c.x + c.y + c.z;
        };
        // 0.45 degrees, as a height over distance 1: tan(0.45 degrees) = 0.0079.
        EXPECT_LT(brightness(0), 0.95f * brightness(-0.0079f)) << "azimuth " << i * 10;
    }
}

TEST(NatureSky, Clouds_only_ever_hide_what_lies_behind) {
    for (int i = 0; i < 500; ++i) {
        const float angle = static_cast<float>(i) * 0.77f;
        const float up = 0.002f * static_cast<float>(i);
        const Art::SkyPoint point =
            Art::MakeSkyPoint(Vell::Normalized(Vell::vec3{std::cos(angle), up, std::sin(angle)}));
        const Art::Clouded dark = Art::AddClouds(point, {0, 0, 0});
        const Art::Clouded light = Art::AddClouds(point, {1, 1, 1});
        ASSERT_GE(dark.open, 0.0f);
        ASSERT_LE(dark.open, 1.0f);
        // What shows through is exactly the open share of the background.
        EXPECT_NEAR(light.colour.y - dark.colour.y, dark.open, 1e-4f);
    }
}

class NatureSkyBox : public GlTest {};

TEST_F(NatureSkyBox, Shows_the_painted_colour_in_every_direction) {
    Vell::SkyBox sky(skyFolder + "xpos.jpg", skyFolder + "xneg.jpg", skyFolder + "ypos.jpg",
                     skyFolder + "yneg.jpg", skyFolder + "zpos.jpg", skyFolder + "zneg.jpg");
    Vell::SetFovy(4.0f); // 128 pixels over 4 degrees: each texel covers several pixels
    // Straight up and down the view's up vector would lie along the view: look a little aside.
    const vec3 directions[] = {{1, 0.1f, 0.2f},  {-1, 0.1f, 0.2f}, {0.1f, 1, 0.2f},
                               {0.1f, -1, 0.2f}, {0.1f, 0.2f, 1},  {0.3f, 0.1f, -1}};
    for (const vec3& direction : directions) {
        Vell::Camera camera;
        const vec3 eye(7, 3, -2);
        camera.Set(eye, eye + direction);
        glLoadIdentity();
        camera.Draw();
        sky.Draw(&camera, false);
        const vec3 expected = Art::DuskColour(Vell::Normalized(direction)) * 255;
        const Rgba colour{static_cast<int>(std::lround(expected.x)),
                          static_cast<int>(std::lround(expected.y)),
                          static_cast<int>(std::lround(expected.z)), 255};
        // Dither and JPEG keep a texel within a few steps of its colour.
        EXPECT_TRUE(Near(ReadScreen(screenSize, screenSize).At(64, 64), colour, 8))
            << direction.x << " " << direction.y << " " << direction.z;
    }
}
