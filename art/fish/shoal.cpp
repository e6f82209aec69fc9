#include "art/fish/shoal.h"

#include "art/common/noise.h"

namespace Art {
namespace {

constexpr unsigned seed = 5;
constexpr float meshUnitsPerWorldUnit = 10; // the scene scales by 0.1

/// A shoal that turns: its fish follow an arc, from one heading to another.
struct Shoal {
    int fish;
    FishDetail detail;
    vec3 middle;    ///< of the arc, from the cell
    vec3 spread;    ///< how far the fish stand apart along x, y and z
    float from, to; ///< headings at the first and the last fish, radians
    float length;   ///< of a fish of middle size
};

// The scene sets cells on a grid of 4 x 3, two units apart and five on one spot, 50 units deep in
// the flight, and lets them drift by two units a second to the right of the picture. So every fish
// appears twelve times. What hides that is that a shoal is small, about as long as the grid, and
// its fish stand nearer to others than to their own likenesses, at other depths and heights; the
// uppermost row leaves through the surface. Where a shoal is seen follows from its place: the eye
// comes nearer by 3.6 units a second and passes a depth of 50 + z units at its end.
constexpr std::array<Shoal, 4> shoals = {{
    // Round the statue in the square; the largest of all where they pass the eye on the right.
    {8, FishDetail::Round, {54.5f, -0.9f, -22.0f}, {5.4f, 2.3f, 4.6f}, -1.1f, 0.9f, 0.62f},
    // Seen through the gate, and after it on the right.
    {7, FishDetail::Round, {65.5f, -0.9f, -1.5f}, {5.2f, 2.2f, 3.6f}, 1.1f, -0.8f, 0.60f},
    // On the left of the forecourt.
    {5, FishDetail::Flat, {93.5f, -1.1f, 2.0f}, {4.6f, 2.1f, 3.6f}, -0.9f, 1.0f, 0.66f},
    // Over the stairs, to the end.
    {6, FishDetail::Round, {79.0f, -1.1f, 4.8f}, {4.8f, 1.9f, 2.4f}, 1.0f, -1.1f, 0.46f},
}};

/// A number from -0.5 to 0.5 that is spread evenly over the fish of a shoal.
float Spread(int i, float step, float start) {
    const float x = start + step * static_cast<float>(i);
    return x - std::floor(x) - 0.5f;
}

/// The shade for a heading: bright where the flank that is seen looks up the street, from where the
/// light comes, darker the more the fish turns away.
int ShadeOf(float heading) {
    const float away = std::abs(heading + 0.35f);
    return std::min(static_cast<int>(away * 2.6f), skinShades - 1);
}

Swimmer SwimmerOf(const Shoal& shoal, int i, unsigned number) {
    const float share = (static_cast<float>(i) + 0.5f) / static_cast<float>(shoal.fish) - 0.5f;
    const float bow = 4 * share * share - 0.5f; // the arc bends away from the eye at its ends
    const float heading =
        Lerp(shoal.from, shoal.to, share + 0.5f) + 0.22f * (HashUnit(seed, number, 1) - 0.5f);
    Swimmer swimmer;
    swimmer.offset =
        shoal.middle + vec3{shoal.spread.x * share, shoal.spread.y * Spread(i, 0.618034f, 0.1f),
                            shoal.spread.z * (0.5f * bow + 0.5f * Spread(i, 0.754878f, 0.4f))};
    swimmer.length = shoal.length * (0.74f + 0.52f * HashUnit(seed, number, 2));
    swimmer.heading = heading;
    swimmer.pitch = 0.5f * (HashUnit(seed, number, 3) - 0.5f);
    const float bend =
        (shoal.to > shoal.from ? 0.16f : -0.16f) + 0.22f * (HashUnit(seed, number, 4) - 0.5f);
    swimmer.pose = {shoal.detail, bend, 1, ShadeOf(heading)};
    return swimmer;
}

vec3 Rotated(vec3 p, const Swimmer& swimmer) {
    const float pitch = -swimmer.pitch;
    const float yaw = swimmer.heading;
    const vec3 tipped = {p.x * std::cos(pitch) - p.y * std::sin(pitch),
                         p.x * std::sin(pitch) + p.y * std::cos(pitch), p.z};
    return {tipped.x * std::cos(yaw) + tipped.z * std::sin(yaw), tipped.y,
            tipped.z * std::cos(yaw) - tipped.x * std::sin(yaw)};
}

} // namespace

std::vector<Swimmer> Swimmers() {
    std::vector<Swimmer> swimmers;
    for (const Shoal& shoal : shoals)
        for (int i = 0; i < shoal.fish; ++i)
            swimmers.push_back(SwimmerOf(shoal, i, static_cast<unsigned>(swimmers.size())));
    return swimmers;
}

MeshFile FishMesh() {
    SubMesh school{{"fish.png", "", ""}, {}};
    for (const Swimmer& swimmer : Swimmers())
        for (MeshVertex vertex : OneFish(swimmer.pose)) {
            const vec3 middled = vertex.position - vec3{0.5f, 0, 0};
            vertex.position = (Rotated(middled * swimmer.length, swimmer) + swimmer.offset) *
                              meshUnitsPerWorldUnit;
            vertex.normal = Rotated(vertex.normal, swimmer);
            school.vertices.push_back(vertex);
        }
    return {"Data/Gfx/Fish/", false, {school}};
}

} // namespace Art
