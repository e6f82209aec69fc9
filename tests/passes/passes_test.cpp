// Frames of the real demo on tiny data, taken apart.

#include "tools/passes/passes.h"

#include "demo/timeline.h"
#include "tests/passes/isolation.h"
#include "tests/passes/recorded_frames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <memory>

namespace {

using Passes::Pass;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

// Frames at ten a second. With the flights and the tiny data, this is in view:
constexpr int first = 0;   // sky and water; no mirror yet, for no frame has seen the water before
constexpr int logo = 50;   // sky and water
constexpr int rise = 200;  // sky, water and city; the eye is above the water
constexpr int fish = 300;  // sky, water, city and 60 fish, from under water
constexpr int glow = 600;  // sky and water
constexpr int wisps = 970; // sky, water, city and three wisps, which lie below the mirror's view

const std::vector<int> moments = {first, logo, rise, fish, glow, wisps};

void LookOn() {
    std::ofstream file("seen.bin", std::ios::binary);
    Onlooker(moments, file);
}

std::string Summary(const FrameFound& frame) {
    std::string text;
    for (const Pass& pass : frame.passes) {
        text += pass.name + ' ' + std::to_string(pass.draws.size()) + ' ';
        text.append(pass.pixels.begin(), pass.pixels.end());
    }
    return text;
}

void RecordColours() {
    const Frames frames(Passes::Detail::Colours, moments);
    std::ofstream file("colours.bin", std::ios::binary);
    for (const auto& [number, frame] : frames.found)
        file << Summary(frame);
}

/// Recorded once, and played twice more beside it in other processes.
struct Recordings {
    ScratchDir scratch;
    std::unique_ptr<Frames> frames;
    std::string seen;    ///< windows of the moments, without recording
    std::string colours; ///< summaries, with the colours only

    Recordings() {
        MakeFilmData();
        InIsolation(LookOn);
        InIsolation(RecordColours);
        seen = ReadFile("seen.bin");
        colours = ReadFile("colours.bin");
        frames = std::make_unique<Frames>(Passes::Detail::Everything, moments);
    }
};

const Recordings& All() {
    static const Recordings recordings;
    return recordings;
}

const FrameFound& At(int number) {
    return All().frames->found.at(number);
}

std::vector<std::string> NamesAt(int number) {
    std::vector<std::string> names;
    for (const Pass& pass : At(number).passes)
        names.push_back(pass.name);
    return names;
}

const Pass& PassAt(int number, const std::string& name) {
    for (const Pass& pass : At(number).passes)
        if (pass.name == name)
            return pass;
    throw std::runtime_error("frame " + std::to_string(number) + " has no pass " + name);
}

const Passes::Uniform& UniformAt(int number, const std::string& passName,
                                 const std::string& program, const std::string& name) {
    for (const Passes::Program& known : PassAt(number, passName).programs)
        if (known.name == program)
            for (const Passes::Uniform& uniform : known.uniforms)
                if (uniform.name == name)
                    return uniform;
    throw std::runtime_error(passName + ": no " + name + " in " + program);
}

std::vector<std::string> StateOf(const Pass& pass, std::size_t draw) {
    return pass.draws.at(draw).state;
}

/// Whether a call of the pass was drawn with such state.
bool HasState(const Pass& pass, const std::string& beginning) {
    return std::any_of(pass.draws.begin(), pass.draws.end(), [&](const Passes::Draw& draw) {
        return std::any_of(draw.state.begin(), draw.state.end(),
                           [&](const auto& phrase) { return phrase.starts_with(beginning); });
    });
}

struct Size {
    int width, height;
    bool operator==(const Size&) const = default;
};

Size SizeOf(const Pass& pass) {
    return {pass.width, pass.height};
}

const char* const cityProgram = "Data/Gfx/City/shader.vert and .frag";
const char* const wispProgram = "Data/Gfx/Wisp/billboard.vert and .frag";

} // namespace

TEST(Passes, Come_in_the_order_in_which_the_engine_draws_them) {
    EXPECT_THAT(NamesAt(rise),
                ElementsAre("reflection", "refraction", "scene", "bright parts", "blur, shrunk",
                            "blur step 1", "blur step 2", "blur step 3", "blur step 4",
                            "blur step 5", "blur step 6", "blur step 7", "blur step 8",
                            "blur step 9", "blur step 10", "glow", "bloom", "colour split",
                            "ripple, off", "screen"));
}

TEST(Passes, Show_no_mirror_in_the_first_frame_and_the_logo_in_the_first_ten_seconds) {
    EXPECT_EQ(NamesAt(first).front(), "scene");
    EXPECT_EQ(NamesAt(first).back(), "logo");
    EXPECT_EQ(NamesAt(logo).front(), "reflection");
    EXPECT_EQ(NamesAt(logo).back(), "logo");
    EXPECT_THAT(NamesAt(rise), Not(Contains("logo")));
}

TEST(Passes, Ripple_under_water_only) {
    EXPECT_THAT(NamesAt(fish), Contains("ripple"));
    EXPECT_THAT(NamesAt(fish), Not(Contains("ripple, off")));
    EXPECT_THAT(NamesAt(glow), Contains("ripple, off"));
    EXPECT_THAT(NamesAt(glow), Not(Contains("ripple")));
}

TEST(Passes, Have_the_sizes_of_their_targets) {
    for (const Pass& pass : At(rise).passes) {
        SCOPED_TRACE(pass.name);
        const bool mirror = pass.name == "reflection" || pass.name == "refraction";
        const bool blur = pass.name.starts_with("blur");
        const Size expected = mirror ? Size{512, 512} : blur ? Size{128, 128} : Size{960, 89};
        EXPECT_EQ(SizeOf(pass), expected);
        EXPECT_EQ(std::ssize(pass.pixels), pass.width * pass.height * 4);
    }
}

TEST(Passes, Go_back_and_forth_between_two_targets_of_the_blur_and_two_of_the_chain) {
    EXPECT_EQ(PassAt(rise, "blur, shrunk").target, "first blur target");
    EXPECT_EQ(PassAt(rise, "blur step 1").target, "second blur target");
    EXPECT_EQ(PassAt(rise, "blur step 10").target, "first blur target");
    EXPECT_EQ(PassAt(rise, "scene").target, "scene target");
    EXPECT_EQ(PassAt(rise, "bloom").target, "spare target");
    EXPECT_EQ(PassAt(rise, "colour split").target, "scene target");
    EXPECT_EQ(PassAt(rise, "ripple, off").target, "spare target");
    EXPECT_EQ(PassAt(rise, "screen").target, "screen");
}

TEST(Passes, Draw_what_the_frustum_lets_through) {
    const struct {
        int frame;
        std::size_t reflection, refraction, scene;
    } rows[] = {
        {logo, 1, 1, 2},              // the water is not in its own mirror
        {rise, 2, 2, 3},              // and the city
        {fish, 62, 62, 63},           // and the school
        {glow, 1, 1, 2},              //
        {wisps, 2, 2 + 3, 2 + 3 + 1}, //
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.frame);
        EXPECT_EQ(PassAt(row.frame, "reflection").draws.size(), row.reflection);
        EXPECT_EQ(PassAt(row.frame, "refraction").draws.size(), row.refraction);
        EXPECT_EQ(PassAt(row.frame, "scene").draws.size(), row.scene);
    }
    EXPECT_EQ(PassAt(rise, "bloom").draws.size(), 2u); // the scene and the glow
    EXPECT_EQ(PassAt(rise, "screen").draws.size(), 1u);
}

TEST(Passes, Count_vertices_and_triangles) {
    // The sky: six strips of four. The water: one. The city: a triangle.
    EXPECT_EQ(Vertices(PassAt(rise, "reflection")), 6 * 4 + 3);
    EXPECT_EQ(Triangles(PassAt(rise, "reflection")), 6 * 2 + 1);
    EXPECT_EQ(Vertices(PassAt(rise, "scene")), 6 * 4 + 4 + 3);
    EXPECT_EQ(Triangles(PassAt(rise, "scene")), 6 * 2 + 2 + 1);
    EXPECT_EQ(Vertices(PassAt(fish, "scene")), 6 * 4 + 4 + 3 + 60 * 3);
}

TEST(Passes, Know_their_clears) {
    EXPECT_THAT(PassAt(rise, "reflection").clears, ElementsAre("colour and depth"));
    EXPECT_THAT(PassAt(rise, "scene").clears, ElementsAre("depth")); // the sky covers the rest
    EXPECT_TRUE(PassAt(rise, "colour split").clears.empty());
}

TEST(Passes, Know_which_pass_wrote_what_they_read) {
    const Pass& scene = PassAt(rise, "scene");
    const auto byReader = [&](const Pass& pass, const std::string& reader) {
        for (const Passes::Input& input : pass.inputs)
            if (input.reader == reader)
                return input;
        throw std::runtime_error(pass.name + ": nothing reads by " + reader);
    };
    EXPECT_EQ(byReader(scene, "reflectionMap, unit 1").name, "colour of the reflection target");
    EXPECT_EQ(byReader(scene, "reflectionMap, unit 1").pass, 0);
    EXPECT_EQ(byReader(scene, "refractionMap, unit 2").pass, 1);
    EXPECT_EQ(byReader(scene, "noiseMap, unit 0").name, "Data/Gfx/water.jpg");
    EXPECT_EQ(byReader(scene, "noiseMap, unit 0").width, 4);
    EXPECT_EQ(byReader(scene, "display list").name, "Data/Gfx/City/sky/zpos.jpg");

    const Pass& bloom = PassAt(rise, "bloom");
    ASSERT_EQ(bloom.inputs.size(), 2u);
    EXPECT_EQ(bloom.inputs[0].pass, 2);                          // scene
    EXPECT_EQ(bloom.inputs[1].pass, 15);                         // glow
    EXPECT_EQ(PassAt(rise, "blur step 3").inputs.at(0).pass, 6); // blur step 2
    EXPECT_EQ(byReader(PassAt(logo, "logo"), "unit 0").name, "Data/Gfx/Logo/logo.jpg");
}

TEST(Passes, Say_when_a_target_that_they_read_is_of_an_earlier_frame) {
    std::vector<std::string> names;
    for (const Passes::Input& input : PassAt(first, "scene").inputs)
        names.push_back(input.name);
    EXPECT_THAT(names, Contains(testing::EndsWith(" target, not drawn in this frame")).Times(2));
}

TEST(Passes, Hold_the_uniforms_of_the_timeline) {
    const float t = 97.0f;
    const auto& red = UniformAt(wisps, "scene", cityProgram, "posred");
    EXPECT_EQ(red.type, "vec3");
    ASSERT_EQ(red.values.size(), 1u);
    EXPECT_NEAR(red.values[0][0], 30 + 2.5 * std::sin(0.5 * t), 1e-5);
    EXPECT_EQ(red.values[0][1], 3.0f);
    EXPECT_EQ(red.values[0][2], 15.0f);
    const auto& green = UniformAt(wisps, "scene", cityProgram, "posgreen");
    EXPECT_NEAR(green.values[0][1], 2.5 + 2.5 * std::sin(t), 1e-5);
    EXPECT_EQ(UniformAt(rise, "scene", cityProgram, "posred").values[0],
              (std::vector<float>{0.0f, 1000.0f, 1.0f})); // parked
}

TEST(Passes, Hold_the_uniforms_of_the_effects) {
    // Time stands still while the demo loads, so every clock shows demo time.
    EXPECT_EQ(UniformAt(rise, "scene", "water", "time").values[0][0], 20.0f);
    EXPECT_EQ(UniformAt(rise, "scene", "water", "deform").values[0][0], 0.02f);
    EXPECT_EQ(UniformAt(rise, "scene", "water", "refractionMap").values[0][0], 2.0f);
    EXPECT_EQ(UniformAt(rise, "scene", "water", "refractionMap").type, "sampler2D");
    EXPECT_EQ(UniformAt(rise, "bright parts", "bloom: bright parts", "threshold").values[0][0],
              0.0f);
    EXPECT_EQ(UniformAt(rise, "blur step 3", "blur", "offset").values[0][0], 0.01f);
    EXPECT_EQ(UniformAt(rise, "colour split", "colour split", "offset").values[0][0], 0.0f);
    EXPECT_EQ(UniformAt(fish, "ripple", "ripple", "time").values[0][0], 30.0f);
}

TEST(Passes, Say_when_a_uniform_was_sent) {
    EXPECT_EQ(UniformAt(rise, "scene", "water", "time").sent, "in this pass");
    EXPECT_EQ(UniformAt(rise, "scene", "water", "deform").sent, "before this frame");
    EXPECT_EQ(UniformAt(rise, "scene", cityProgram, "posred").sent, "before this frame");
    EXPECT_EQ(UniformAt(wisps, "scene", cityProgram, "posred").sent, "earlier in this frame");
    EXPECT_EQ(UniformAt(rise, "colour split", "colour split", "offset").sent, "in this pass");
}

TEST(Passes, Say_what_is_unusual_about_the_state) {
    const Pass& reflection = PassAt(rise, "reflection");
    EXPECT_THAT(StateOf(reflection, 0), ElementsAre("mirrored view", "writes no depth"));
    EXPECT_TRUE(HasState(reflection, "cut at clip plane")); // but not the sky
    EXPECT_FALSE(HasState(PassAt(rise, "refraction"), "cut at clip plane"));
    EXPECT_FALSE(HasState(PassAt(fish, "reflection"), "mirrored")); // under water
    EXPECT_FALSE(HasState(PassAt(fish, "reflection"), "cut at clip plane"));
    EXPECT_THAT(
        StateOf(PassAt(rise, "bloom"), 1),
        ElementsAre("no depth test", "added to what is there, by alpha", "colour (1, 1, 1, 0.25)"));
    // At 5 s the logo is half gone.
    EXPECT_THAT(StateOf(PassAt(logo, "logo"), 0),
                ElementsAre("no depth test", "mixed with what is there, by alpha",
                            "colour (1, 1, 1, 0.5)"));
}

TEST(Passes, Know_the_colour_of_each_call) {
    EXPECT_EQ(PassAt(rise, "bloom").draws[0].colour, (std::array<float, 4>{1, 1, 1, 1}));
    EXPECT_EQ(PassAt(rise, "bloom").draws[1].colour, (std::array<float, 4>{1, 1, 1, 0.25f}));
    // Silence is below the band that counts as quiet, so the glow stands at its peak.
    EXPECT_EQ(PassAt(glow, "bloom").draws[1].colour[3],
              static_cast<float>(Timeline::glowPulse.peak));
}

TEST(Passes, Add_the_wisps_to_the_picture_without_depth) {
    const Pass& scene = PassAt(wisps, "scene");
    int added = 0;
    for (const Passes::Draw& draw : scene.draws)
        if (scene.programs[static_cast<std::size_t>(draw.program)].name == wispProgram) {
            ++added;
            EXPECT_THAT(draw.state, ElementsAre("writes no depth", "alpha test against 0.5",
                                                "added to what is there"));
        }
    EXPECT_EQ(added, 3);
}

TEST(Passes, Keep_depth_where_it_was_written_and_nowhere_else) {
    for (const Pass& pass : At(rise).passes) {
        const bool kept =
            pass.name == "reflection" || pass.name == "refraction" || pass.name == "scene";
        EXPECT_EQ(std::ssize(pass.depth), kept ? pass.width * pass.height : 0) << pass.name;
    }
    const Pass& reflection = PassAt(rise, "reflection");
    EXPECT_NEAR(reflection.nearPlane, 0.1, 1e-4);
    EXPECT_GT(reflection.farPlane, 20000.0); // 25000 but for what floats lose
    EXPECT_LT(reflection.farPlane, 30000.0);
}

TEST(Passes, Leave_in_depth_how_far_the_city_is) {
    // The only thing with depth in this pass is the city's triangle, all of it in view.
    const Passes::View& view = At(rise).view;
    double way[3];
    double length = 0.0;
    for (int axis = 0; axis < 3; ++axis) {
        way[axis] = view.centre[axis] - view.eye[axis];
        length += way[axis] * way[axis];
    }
    const double height = Timeline::CityHeight(20.0f);
    const double corners[][3] = {{40, height, 15}, {60, height, 15}, {50, height + 10, 15}};
    double nearest = 1e9;
    double farthest = 0.0;
    for (const auto& corner : corners) {
        double along = 0.0;
        for (int axis = 0; axis < 3; ++axis)
            along += (corner[axis] - view.eye[axis]) * way[axis] / std::sqrt(length);
        nearest = std::min(nearest, along);
        farthest = std::max(farthest, along);
    }
    const Pass& pass = PassAt(rise, "refraction");
    const auto depthAt = [&](double distance) {
        const double f = pass.farPlane, n = pass.nearPlane;
        return (f - n * f / distance) / (f - n);
    };
    const auto [low, high] = [&] {
        float least = 1.0f, most = 0.0f;
        for (const float depth : pass.depth)
            if (depth < 1.0f) {
                least = std::min(least, depth);
                most = std::max(most, depth);
            }
        return std::pair(least, most);
    }();
    // A pixel's middle lies up to half a pixel inside of a corner: 0.1 units at that distance.
    EXPECT_GE(low, depthAt(nearest - 0.01));
    EXPECT_LE(low, depthAt(nearest + 0.3));
    EXPECT_GE(high, depthAt(farthest - 0.3));
    EXPECT_LE(high, depthAt(farthest + 0.01));
}

TEST(Passes, End_with_the_picture_in_the_window) {
    for (const int number : moments)
        EXPECT_EQ(At(number).passes.back().pixels, At(number).window) << number;
    EXPECT_EQ(PassAt(rise, "ripple, off").pixels, PassAt(rise, "colour split").pixels);
    EXPECT_NE(PassAt(fish, "ripple").pixels, PassAt(fish, "colour split").pixels);
}

TEST(Passes, Are_recorded_without_a_change_to_any_pixel) {
    std::string recorded;
    for (const int number : moments) {
        const Bytes& window = At(number).window;
        recorded.append(window.begin(), window.end());
    }
    EXPECT_EQ(recorded.size(), moments.size() * 960 * 89 * 4);
    EXPECT_TRUE(recorded == All().seen);
}

TEST(Passes, Are_recorded_without_a_trace_in_the_state) {
    for (const int number : moments) {
        EXPECT_EQ(At(number).leftState, "") << number;
        EXPECT_EQ(At(number).error, static_cast<GLenum>(GL_NO_ERROR)) << number;
    }
}

TEST(Passes, Have_the_same_names_and_pixels_when_only_colours_are_kept) {
    std::string expected;
    for (const int number : moments) {
        FrameFound frame = At(number);
        for (Pass& pass : frame.passes)
            pass.draws.clear();
        expected += Summary(frame);
    }
    EXPECT_TRUE(expected == All().colours);
}
