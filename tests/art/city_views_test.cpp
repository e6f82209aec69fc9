// How the city's material knows which flight it is seen from: its own function, asked on real
// OpenGL.

#include "art/city/viewblock.h"
#include "art/city/views.h"
#include "demo/camera.h"
#include "demo/timeline.h"
#include "engine/render/shader.h"
#include "tests/support/fake_time.h"
#include "tests/support/gl_test.h"
#include "tests/support/pixels.h"
#include "tests/support/scratch.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include <gmock/gmock.h>

namespace {

using ::testing::HasSubstr;
using Vell::vec3;

std::string ShaderText() {
    return ReadFile(NIMBREL_SOURCE_DIR "/Data/Gfx/City/shader.vert");
}

// ---------------------------------------------------------------------------------------- the eyes

constexpr double longestFrame = 0.25; // seconds; the slowest the show may be to look right

/// An eye of the show, as it really flies, in the city's coordinates.
struct RealEye {
    vec3 position;
    float waterHeight;
};

float CityHeight(const Show::Flight& flight, double t) {
    if (flight.city == Show::City::Rising)
        return Timeline::CityHeight(
            static_cast<float>(std::min(t, flight.begin + flight.duration)));
    return flight.city == Show::City::Sunken ? Show::sunkenHeight : Show::risenHeight;
}

/// The eye that the demo's player of flights gives `elapsed` seconds after the cut, while the
/// timeline is `lead` seconds ahead of it.
RealEye EyeOf(const Show::Flight& flight, double elapsed, double lead) {
    Camera player;
    player.AddPath(flight.start, flight.end, flight.duration);
    SetFakeTime(0);
    player.Reset();
    SetFakeTime(elapsed);
    const float city = CityHeight(flight, flight.begin + elapsed + lead);
    return {player.GetPos() - vec3{0, city, 0}, -city};
}

/// A question to the material, and the answer that it should give.
struct Question {
    vec3 eye;
    bool mirrored;
    unsigned view;
};

/// All eyes of a flight, the last ones past its end, plain and as the water mirrors them.
std::vector<Question> QuestionsOf(const Show::Flight& flight, const Art::FlightView& view) {
    constexpr int eyeCount = 800;
    std::vector<Question> questions;
    for (int i = 0; i <= eyeCount; ++i)
        for (const double lead : {0.0, longestFrame}) {
            const RealEye eye =
                EyeOf(flight, (flight.duration + longestFrame) * i / eyeCount, lead);
            questions.push_back({eye.position, false, view.plain});
            vec3 mirrored = eye.position;
            mirrored.y = 2 * eye.waterHeight - mirrored.y;
            if (eye.position.y > eye.waterHeight) // from below, the water is drawn unmirrored
                questions.push_back({mirrored, true, view.mirror});
        }
    ClearFakeTime();
    return questions;
}

// ------------------------------------------------------------------------------------ the material

struct Answer {
    int view;
    float exposure;
};

/// The material's text up to its main(), with another main() that draws what its functions return.
std::string AskingVertexStage() {
    const std::string text = ShaderText();
    const std::size_t end = text.find("\nvoid main()\n");
    EXPECT_NE(end, std::string::npos);
    return text.substr(0, end) + R"(
varying float answer;
varying float exposure;
void main()
{
    answer = View(gl_Vertex.xyz, gl_MultiTexCoord0.z > 0.5);
    exposure = Exposure(answer);
    gl_Position = vec4(gl_MultiTexCoord0.xy, 0.0, 1.0);
})";
}

// A view of -1 is black, the others are 1, 2, ... of 255; exposures are in hundredths of 255.
const char* const askingFragmentStage = R"(#version 110
varying float answer;
varying float exposure;
void main()
{
    gl_FragColor = vec4((answer + 1.0) / 255.0, exposure * 100.0 / 255.0, 0.0, 1.0);
})";

class CityViews : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        shader.LoadToChar(AskingVertexStage().c_str(), askingFragmentStage);
    }

    void TearDown() override {
        shader.Disable();
        GlTest::TearDown();
    }

    /// One pixel a question, screen by screen.
    std::vector<Answer> Ask(const std::vector<Question>& questions) {
        std::vector<Answer> answers;
        for (std::size_t first = 0; first < questions.size(); first += atOnce) {
            const std::size_t last = std::min(first + atOnce, questions.size());
            Draw(questions, first, last);
            const Picture picture = ReadScreen(screenSize, screenSize);
            for (std::size_t i = 0; i < last - first; ++i) {
                const Rgba pixel =
                    picture.At(static_cast<int>(i) % screenSize, static_cast<int>(i) / screenSize);
                answers.push_back({pixel.r - 1, static_cast<float>(pixel.g) / 100});
            }
        }
        return answers;
    }

    /// The first question with a wrong answer, in words; empty when all are right.
    std::string FirstWrong(const std::vector<Question>& questions) {
        const std::vector<Answer> answers = Ask(questions);
        for (std::size_t i = 0; i < questions.size(); ++i) {
            const Question& q = questions[i];
            if (answers[i].view == static_cast<int>(q.view))
                continue;
            std::ostringstream text;
            text << (q.mirrored ? "mirrored" : "plain") << " eye (" << q.eye.x << ", " << q.eye.y
                 << ", " << q.eye.z << ") of question " << i << ": expected view " << q.view
                 << ", found " << answers[i].view;
            return text.str();
        }
        return "";
    }

    std::string FirstWrong(const Show::Flight& flight, Show::FlightNumber number) {
        return FirstWrong(QuestionsOf(flight, Art::flightViews[number]));
    }

private:
    static constexpr std::size_t atOnce = static_cast<std::size_t>(screenSize) * screenSize;

    static void Draw(const std::vector<Question>& questions, std::size_t first, std::size_t last) {
        const auto middle = [](std::size_t pixel) {
            return (static_cast<float>(pixel) + 0.5f) / screenSize * 2 - 1;
        };
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glBegin(GL_POINTS);
        for (std::size_t i = first; i < last; ++i) {
            const Question& q = questions[i];
            glMultiTexCoord3f(GL_TEXTURE0, middle((i - first) % screenSize),
                              middle((i - first) / screenSize), q.mirrored ? 1.0f : 0.0f);
            glVertex3f(q.eye.x, q.eye.y, q.eye.z);
        }
        glEnd();
    }

    Vell::Shader shader;
};

class CityViewsOfFlight : public CityViews,
                          public ::testing::WithParamInterface<Show::FlightNumber> {};

TEST_P(CityViewsOfFlight, Are_those_of_the_flight_for_each_of_its_eyes) {
    EXPECT_EQ(FirstWrong(Show::flights[GetParam()], GetParam()), "");
}

TEST_P(CityViewsOfFlight, Are_wrong_once_the_flight_is_moved_by_a_few_units) {
    for (const vec3& step :
         {vec3(4, 0, 0), vec3(-4, 0, 0), vec3(0, 4, 0), vec3(0, 0, 4), vec3(0, 0, -4)}) {
        Show::Flight moved = Show::flights[GetParam()];
        moved.start += step;
        moved.end += step;
        EXPECT_THAT(FirstWrong(moved, GetParam()), HasSubstr("expected view"))
            << step.x << " " << step.y << " " << step.z;
    }
}

INSTANTIATE_TEST_SUITE_P(All, CityViewsOfFlight,
                         ::testing::Values(Show::OpenSea, Show::CityRise, Show::UnderWater,
                                           Show::BetweenTowers, Show::Canal, Show::ToBasin,
                                           Show::OverRoofs, Show::Basin),
                         [](const auto& row) { return "flight_" + std::to_string(row.param + 1); });

TEST_F(CityViews, Are_none_away_from_all_flights) {
    const std::vector<Answer> answers =
        Ask({{{0, 3, 4}, false, 0}, {{50, 50, 50}, false, 0}, {{0, -3, 4}, true, 0}});
    for (const Answer& answer : answers)
        EXPECT_EQ(answer.view, -1);
}

TEST_F(CityViews, Have_the_exposures_of_their_flights) {
    for (std::size_t i = 0; i < Show::flightCount; ++i) {
        const Art::FlightView& view = Art::flightViews[i];
        const RealEye eye = EyeOf(Show::flights[i], 1.0, 0.0);
        ClearFakeTime();
        const Answer answer = Ask({{eye.position, false, view.plain}})[0];
        EXPECT_EQ(answer.view, static_cast<int>(view.plain)) << Show::flights[i].name;
        EXPECT_FLOAT_EQ(answer.exposure, view.exposure) << Show::flights[i].name;
    }
}

TEST(CityViewTable, Gives_flights_that_share_a_bit_the_same_exposure) {
    std::map<unsigned, float> exposures;
    for (const Art::FlightView& view : Art::flightViews)
        for (const unsigned bit : {view.plain, view.mirror})
            EXPECT_EQ(exposures.emplace(bit, view.exposure).first->second, view.exposure) << bit;
}

// ---------------------------------------------------------------------------------- the generator

TEST(CityViewBlock, Stands_in_the_material_as_the_shows_flights_make_it) {
    const auto made = Art::WithViewFunctions(ShaderText(), Art::ViewFunctions(Show::flights));
    ASSERT_TRUE(made.has_value()) << "no block of generated lines";
    EXPECT_EQ(*made, ShaderText()) << "remake it with: art/make views";
}

TEST(CityViewBlock, Follows_a_flight_that_is_moved) {
    std::vector<Show::Flight> moved(std::begin(Show::flights), std::end(Show::flights));
    moved[Show::ToBasin].start += vec3(0, 0, -3);
    const auto made = Art::WithViewFunctions(ShaderText(), Art::ViewFunctions(moved));
    ASSERT_TRUE(made.has_value());
    EXPECT_NE(*made, ShaderText());
}

TEST(CityViewBlock, Is_not_made_where_the_material_does_not_mark_its_place) {
    const std::string text = ShaderText();
    EXPECT_FALSE(Art::WithViewFunctions("void main() {}\n", "x").has_value());
    EXPECT_FALSE(Art::WithViewFunctions(text + text, "x").has_value());
}

TEST(EyeBox, Holds_the_flight_with_a_margin_of_a_unit) {
    // (7, 2, -5) to (17, 2, 4), and 0.25 s = 0.018 of the flight further: (17.18, 2, 4.16); the
    // margin of 1 on every side, outwards to tenths.
    const Art::EyeBox box = Art::BoxOf(Show::flights[Show::ToBasin]);
    EXPECT_TRUE(box.folded);
    EXPECT_TRUE(box.low == (vec3{6, 1, -6}));
    EXPECT_FLOAT_EQ(box.high.x, 18.2f);
    EXPECT_FLOAT_EQ(box.high.y, 3.0f);
    EXPECT_FLOAT_EQ(box.high.z, 5.2f);
}

TEST(EyeBox, Holds_the_mirrored_eyes_as_well_while_the_city_is_low) {
    // World y 1 over a city at -20: 21, and mirrored -1 + 20 = 19; a margin of 1.
    const Art::EyeBox box = Art::BoxOf(Show::flights[Show::OpenSea]);
    EXPECT_FALSE(box.folded);
    EXPECT_FLOAT_EQ(box.low.y, 18.0f);
    EXPECT_FLOAT_EQ(box.high.y, 22.0f);
}

TEST(ArtEyes, Are_the_shows) {
    for (const Show::Flight& flight : Show::flights)
        for (const double part : {0.0, 0.1, 0.5, 0.77, 1.0}) {
            const RealEye real = EyeOf(flight, flight.duration * part, 0);
            const Art::Eye eye = Art::EyeAt(flight, static_cast<float>(part));
            EXPECT_LT(Length(eye.position - real.position), 1e-3f) << flight.name << " " << part;
            EXPECT_NEAR(eye.waterHeight, real.waterHeight, 1e-3f) << flight.name << " " << part;
        }
    ClearFakeTime();
}

} // namespace
