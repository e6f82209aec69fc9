#include "art/city/drift.h"

#include "art/city/quarter.h"
#include "art/common/noise.h"

#include <array>

namespace Art {

namespace {

constexpr float axis = 30; // the flight's x
constexpr unsigned seed = 77;
// Weed begins below the hollows of the ground between the streets.
constexpr float weedSunkIn = 0.65f;

/// Collects triangles of one kind.
struct Strand {
    std::vector<MeshVertex>& out;
    vec2 mark;
    vec3 normal; ///< two of its numbers are phases of the motion

    void Add(vec3 p, float v) const { out.push_back({p, normal, mark + vec2{0.25f, v}, {0, 0}}); }
};

/// A unit vector whose x and y are not what they seem: phases from -0.5 to 0.5.
vec3 Phases(unsigned number) {
    return Normalized(
        vec3{HashUnit(seed, number, 50) - 0.5f, HashUnit(seed, number, 51) - 0.5f, -1});
}

/// A blade that leans and narrows to its tip, in `parts` pieces.
void AddBlade(const Strand& strand, vec3 root, float height, float width, vec2 lean, int parts) {
    const auto at = [&](float share, float side) {
        const float bow = share * share;
        return root + vec3{lean.x * bow + side * width * (1 - 0.75f * share), height * share,
                           lean.y * bow};
    };
    for (int i = 0; i < parts; ++i) {
        const float low = static_cast<float>(i) / static_cast<float>(parts);
        const float high = static_cast<float>(i + 1) / static_cast<float>(parts);
        strand.Add(at(low, -1), low);
        strand.Add(at(low, 1), low);
        strand.Add(at(high, 0), high);
        if (i + 1 < parts) {
            strand.Add(at(low, 1), low);
            strand.Add(at(high, 1), high);
            strand.Add(at(high, -1), high);
        }
    }
}

/// Where weed grows: round a point, so many blades of about this height.
struct Bed {
    vec2 at;
    float radius;
    int blades;
    float height;
    int parts;
};

// Tall kelp beside the flight, which its eye passes; grass at the feet of walls.
constexpr std::array<Bed, 20> beds = {{
    {{24.6f, -92.5f}, 1.0f, 5, 3.6f, 3},  {{35.6f, -89.0f}, 1.0f, 5, 4.2f, 3},
    {{24.0f, -81.5f}, 1.1f, 5, 4.4f, 3},  {{36.4f, -83.4f}, 0.9f, 4, 3.4f, 3},
    {{36.8f, -71.0f}, 1.1f, 5, 4.8f, 3},  {{21.4f, -69.0f}, 1.0f, 5, 4.0f, 3},
    {{37.6f, -60.0f}, 1.2f, 6, 5.0f, 3},  {{21.8f, -58.6f}, 1.2f, 6, 4.6f, 3},
    {{39.6f, -50.6f}, 1.2f, 6, 5.2f, 3},  {{19.8f, -50.0f}, 1.2f, 6, 5.2f, 3},
    {{17.4f, -76.0f}, 2.2f, 9, 1.6f, 2},  {{25.2f, -71.5f}, 2.0f, 10, 1.0f, 2},
    {{42.5f, -73.6f}, 2.6f, 11, 1.8f, 2}, {{45.5f, -81.0f}, 2.4f, 9, 2.2f, 2},
    {{33.8f, -64.0f}, 1.4f, 7, 1.2f, 2},  {{26.0f, -64.0f}, 1.4f, 7, 1.4f, 2},
    {{14.0f, -58.0f}, 3.5f, 12, 3.0f, 2}, {{47.0f, -57.0f}, 3.5f, 12, 3.2f, 2},
    {{10.0f, -46.5f}, 3.5f, 10, 3.4f, 2}, {{50.0f, -46.5f}, 3.5f, 10, 3.4f, 2},
}};

void AddWeed(std::vector<MeshVertex>& out, vec2 mark) {
    unsigned number = 0;
    for (const Bed& bed : beds)
        for (int i = 0; i < bed.blades; ++i) {
            ++number;
            const float angle = 2 * pi * HashUnit(seed, number, 1);
            const float away = bed.radius * std::sqrt(HashUnit(seed, number, 2));
            const float size = bed.height * (0.55f + 0.45f * HashUnit(seed, number, 3));
            const vec2 lean{(HashUnit(seed, number, 4) - 0.5f) * size * 0.5f,
                            (HashUnit(seed, number, 5) - 0.5f) * size * 0.3f};
            AddBlade({out, mark, Phases(number)},
                     {bed.at.x + away * std::cos(angle), quarterFloor - weedSunkIn,
                      bed.at.y + away * std::sin(angle)},
                     size + weedSunkIn, 0.05f + 0.022f * size, lean, bed.parts);
        }
}

/// A speck: one triangle that faces the flight.
void AddSpeck(const Strand& strand, vec3 at, float size) {
    strand.Add(at + vec3{-size, -0.6f * size, 0}, 0.5f);
    strand.Add(at + vec3{size, -0.6f * size, 0}, 0.5f);
    strand.Add(at + vec3{0, 1.1f * size, 0}, 0.5f);
}

void AddMotes(std::vector<MeshVertex>& out, vec2 mark) {
    constexpr unsigned motes = 260;
    for (unsigned i = 0; i < motes; ++i) {
        const float spread = HashUnit(seed, i, 11) - 0.5f;
        const vec3 at{axis + 46 * spread * std::abs(spread) * 2 + (spread < 0 ? -0.5f : 0.5f),
                      Lerp(-6.2f, -0.4f, HashUnit(seed, i, 12)),
                      Lerp(-97.0f, -43.0f, HashUnit(seed, i, 13))};
        AddSpeck({out, mark, Phases(i)}, at, 0.014f + 0.018f * HashUnit(seed, i, 14));
    }
}

/// Strings of bubbles that rise from gaps in the paving and from the wreck.
void AddBubbles(std::vector<MeshVertex>& out, vec2 mark) {
    constexpr std::array<vec2, 8> springs = {{{33.2f, -88.5f},
                                              {26.0f, -84.0f},
                                              {40.0f, -78.5f},
                                              {27.4f, -74.6f},
                                              {34.6f, -67.6f},
                                              {25.0f, -59.0f},
                                              {35.0f, -55.0f},
                                              {26.4f, -50.5f}}};
    constexpr unsigned each = 11;
    for (unsigned s = 0; s < springs.size(); ++s)
        for (unsigned i = 0; i < each; ++i) {
            const unsigned number = 1000 + s * each + i;
            const vec3 at{springs[s].x + 0.5f * (HashUnit(seed, number, 21) - 0.5f),
                          quarterFloor + 0.4f * HashUnit(seed, number, 23),
                          springs[s].y + 0.5f * (HashUnit(seed, number, 22) - 0.5f)};
            AddSpeck({out, mark, Phases(number)}, at, 0.03f + 0.05f * HashUnit(seed, number, 24));
        }
}

} // namespace

std::vector<MeshVertex> DriftingThings(float markU, float markV) {
    const auto mark = [&](Drift kind) { return vec2{markU, markV * static_cast<float>(kind)}; };
    std::vector<MeshVertex> out;
    AddWeed(out, mark(Drift::Weed));
    AddBubbles(out, mark(Drift::Bubble));
    AddMotes(out, mark(Drift::Mote));
    return out;
}

} // namespace Art
