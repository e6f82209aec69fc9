// The published city and the show's flights: what a flight sees must be marked for it, or the
// material leaves it out.

#include "art/city/sightlines.h"
#include "art/city/views.h"
#include "art/common/meshwriter.h"
#include "art/common/noise.h"

#include <gmock/gmock.h>

namespace {

using namespace Art;

/// The published mesh without its curtain: its triangles and the view marks of each.
struct PublishedCity {
    std::vector<Surface> triangles;
    std::vector<unsigned> marks;
};

/// Marks are whole repeats of the texture, 64 to a count, five bits in x and five in y.
unsigned MarksOf(vec2 texcoord) {
    const auto half = [](float x) { return static_cast<unsigned>(std::floor(x / 64 + 0.5f)); };
    return half(texcoord.x) + 32 * half(texcoord.y);
}

PublishedCity ReadCity() {
    PublishedCity city;
    MeshFile mesh;
    std::string error;
    EXPECT_TRUE(ReadMesh(NIMBREL_SOURCE_DIR "/Data/Gfx/City/city.xt3dstatic", mesh, error))
        << error;
    Builder builder;
    for (std::size_t s = 1; s < mesh.subMeshes.size(); ++s) {
        const std::vector<MeshVertex>& v = mesh.subMeshes[s].vertices;
        for (std::size_t i = 0; i < v.size(); i += 3) {
            builder.Facet({v[i].position, v[i + 1].position, v[i + 2].position}, {});
            city.marks.push_back(MarksOf(v[i].texcoord));
        }
    }
    city.triangles = builder.surfaces;
    return city;
}

const PublishedCity& City() {
    static const PublishedCity city = ReadCity();
    return city;
}

/// The triangles that have this bit among their marks, to be looked at.
SightLines MarkedWith(unsigned bit) {
    std::vector<Surface> marked;
    for (std::size_t i = 0; i < City().triangles.size(); ++i)
        if ((City().marks[i] >> bit & 1) != 0)
            marked.push_back(City().triangles[i]);
    return SightLines(marked);
}

const SightLines& Whole() {
    static const SightLines lines(City().triangles);
    return lines;
}

/// What a flight looks at: the triangles marked for what is in plain sight and in the mirror.
struct Marked {
    explicit Marked(const FlightView& view)
        : plain(MarkedWith(view.plain)), mirror(MarkedWith(view.mirror)) {}

    SightLines plain;
    SightLines mirror;
};

/// How many rays met the city, and how many of these see something else when only that is drawn
/// which is marked.
struct Count {
    int met = 0;
    int wrong = 0;

    void Note(float whole, float marked) {
        constexpr float samePlace = 0.05f; // some walls have a second one in the same place
        if (whole >= SightLines::sightEnd)
            return;
        ++met;
        wrong += marked > whole + samePlace ? 1 : 0;
    }

    double WrongShare() const { return met > 0 ? static_cast<double>(wrong) / met : 0; }
};

/// Keeps how far the first surface is.
auto Keep(float& first) {
    return [&first](int, float way) {
        first = way;
        return false;
    };
}

float WayInSight(const SightLines& lines, const Eye& eye, vec3 direction, float reach) {
    float way = SightLines::sightEnd;
    lines.Follow(eye.position, direction, reach, Keep(way));
    return way;
}

float WayInMirror(const SightLines& lines, const Eye& eye, vec3 direction, float toWater) {
    float way = SightLines::sightEnd;
    lines.FollowMirrored(eye, direction, toWater, Keep(way));
    return way;
}

/// Follows one ray of the picture to what it shows in plain sight or, over open water, in the
/// water's mirror.
void FollowRay(const Eye& eye, vec3 direction, const Marked& marked, Count& count) {
    const bool over = eye.position.y > eye.waterHeight;
    const float toWater = SightLines::ToWater(eye, direction);
    const float reach = over ? toWater : SightLines::sightEnd;
    const float plain = WayInSight(Whole(), eye, direction, reach);
    if (plain < SightLines::sightEnd)
        count.Note(plain, WayInSight(marked.plain, eye, direction, reach));
    else if (over && toWater < SightLines::sightEnd)
        count.Note(WayInMirror(Whole(), eye, direction, toWater),
                   WayInMirror(marked.mirror, eye, direction, toWater));
}

/// Looks at the city all along a flight.
Count LookFrom(const Show::Flight& flight, const FlightView& view) {
    constexpr int eyesPerFlight = 16;
    constexpr int raysPerEye = 4000; // of each eye
    const Marked marked(view);
    Random random(7);
    Count count;
    for (int e = 0; e < eyesPerFlight; ++e) {
        const Eye eye = EyeAt(flight, (static_cast<float>(e) + random.Unit()) / eyesPerFlight);
        for (int i = 0; i < raysPerEye; ++i) {
            const float x = random.Range(-1, 1);
            FollowRay(eye, RayThrough(eye, x, random.Range(-1, 1)), marked, count);
        }
    }
    return count;
}

// Some slivers are seen only between two of the eyes from which the marks were measured, most of
// them in the reliefs along the canal: half a pixel in a thousand.
constexpr double sliverShare = 0.0005;

class CityMarks : public ::testing::TestWithParam<Show::FlightNumber> {};

TEST_P(CityMarks, Stand_on_what_the_flight_sees) {
    const Count count = LookFrom(Show::flights[GetParam()], flightViews[GetParam()]);
    EXPECT_GT(count.met, 4000) << "the city is hardly in sight";
    EXPECT_LT(count.WrongShare(), sliverShare);
}

TEST_P(CityMarks, Are_missing_once_the_flight_is_moved_by_a_few_units) {
    double most = 0;
    for (const Vell::vec3& step : {Vell::vec3(4, 0, 0), Vell::vec3(-4, 0, 0), Vell::vec3(0, 4, 0),
                                   Vell::vec3(0, 0, 4), Vell::vec3(0, 0, -4)}) {
        Show::Flight moved = Show::flights[GetParam()];
        moved.start += step;
        moved.end += step;
        most = std::max(most, LookFrom(moved, flightViews[GetParam()]).WrongShare());
    }
    EXPECT_GT(most, sliverShare);
}

INSTANTIATE_TEST_SUITE_P(All, CityMarks,
                         ::testing::Values(Show::OpenSea, Show::CityRise, Show::UnderWater,
                                           Show::BetweenTowers, Show::Canal, Show::ToBasin,
                                           Show::OverRoofs, Show::Basin),
                         [](const auto& row) { return "flight_" + std::to_string(row.param + 1); });

} // namespace
