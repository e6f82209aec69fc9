// The statue and the wreck of the drowned quarter.
#include "art/city/quarter.h"

#include "art/city/parts.h"

#include <array>

namespace Art {

namespace {

const Paint marble = Plain(Material::Trim, {1.3f, 0.4f});
const Paint wood = Plain(Material::Roof, {1.3f, 2.1f});
const Finish carved{marble, marble};
const Finish planked{wood, wood};

/// One course of the figure: a ring of corners, wider across than deep.
struct Girth {
    float y;
    float across;
    float deep;
    float ahead; ///< how far its middle leans forward
};

// From the hem of the robe to the crown of the head, in units over the pedestal.
constexpr std::array<Girth, 9> figure = {{{0.0f, 0.56f, 0.50f, 0},
                                          {0.9f, 0.40f, 0.36f, 0.02f},
                                          {1.5f, 0.34f, 0.27f, 0.05f},
                                          {2.0f, 0.44f, 0.28f, 0.02f},
                                          {2.3f, 0.40f, 0.22f, 0.0f},
                                          {2.36f, 0.13f, 0.13f, 0.02f},
                                          {2.5f, 0.17f, 0.19f, 0.06f},
                                          {2.72f, 0.17f, 0.19f, 0.05f},
                                          {2.86f, 0.06f, 0.07f, 0.03f}}};

vec3 OnGirth(const Girth& girth, int corner, int corners) {
    const float angle = 2 * pi * static_cast<float>(corner) / static_cast<float>(corners);
    return {girth.across * std::cos(angle), girth.y, girth.ahead - girth.deep * std::sin(angle)};
}

void AddFigure(Builder& b) {
    constexpr int corners = 7;
    for (std::size_t i = 0; i + 1 < figure.size(); ++i)
        for (int c = 0; c < corners; ++c) {
            const vec3 p = OnGirth(figure[i], c, corners);
            const vec3 q = OnGirth(figure[i], c + 1, corners);
            const vec3 r = OnGirth(figure[i + 1], c + 1, corners);
            const vec3 s = OnGirth(figure[i + 1], c, corners);
            b.Facet({p, q, r}, marble);
            b.Facet({p, r, s}, marble);
        }
}

/// A round bar of four sides between two points, thinner towards the second.
void AddBar(Builder& b, vec3 from, vec3 to, float radius, const Paint& paint) {
    const vec3 along = Normalized(to - from);
    const vec3 other = std::abs(along.y) < 0.9f ? vec3{0, 1, 0} : vec3{1, 0, 0};
    const vec3 u = Normalized(Cross(along, other)) * radius;
    const vec3 v = Cross(along, u);
    const std::array<vec3, 4> ring = {u, v, u * -1.0f, v * -1.0f};
    for (std::size_t i = 0; i < 4; ++i) {
        const vec3 p = ring[i];
        const vec3 q = ring[(i + 1) % 4];
        b.Facet({from + p, from + q, to + q * 0.7f}, paint);
        b.Facet({from + p, to + q * 0.7f, to + p * 0.7f}, paint);
    }
}

/// A section of the hull at a share of its length: half the beam, and the heights of keel and rail.
struct Frame {
    float along; ///< -1 at the stern, 1 at the bow
    float beam;
    float keel;
    float rail;
};

constexpr std::array<Frame, 8> frames = {{{-1.0f, 0.62f, 0.42f, 2.5f},
                                          {-0.8f, 1.05f, 0.14f, 2.1f},
                                          {-0.5f, 1.32f, 0.0f, 1.7f},
                                          {-0.15f, 1.42f, 0.0f, 1.5f},
                                          {0.2f, 1.36f, 0.0f, 1.5f},
                                          {0.55f, 1.12f, 0.08f, 1.7f},
                                          {0.82f, 0.62f, 0.3f, 2.05f},
                                          {1.05f, 0.02f, 1.0f, 2.5f}}};

// Across the hull from rail to rail over the keel, in shares of the beam and of the height.
constexpr std::array<vec2, 7> ribs = {
    {{1, 1}, {0.96f, 0.55f}, {0.6f, 0.14f}, {0, 0}, {-0.6f, 0.14f}, {-0.96f, 0.55f}, {-1, 1}}};

// How far the ship leans over.
constexpr float list = 0.5f;

/// A point of the ship as it lies: along, across, up.
vec3 Listed(vec3 p) {
    return {p.x, p.y * std::cos(list) + p.z * std::sin(list) + 0.4f,
            p.z * std::cos(list) - p.y * std::sin(list)};
}

vec3 OnHull(const Frame& frame, vec2 rib, float half) {
    return Listed(
        {frame.along * half, frame.keel + (frame.rail - frame.keel) * rib.y, frame.beam * rib.x});
}

/// Both sides of a plank are seen: from without and, where the deck is gone, from within.
void AddPlank(Builder& b, const std::array<vec3, 4>& c) {
    for (const auto& [i, j, k] : {std::array{0, 1, 2}, std::array{0, 2, 3}}) {
        const vec3 p = c[static_cast<std::size_t>(i)];
        const vec3 q = c[static_cast<std::size_t>(j)];
        const vec3 r = c[static_cast<std::size_t>(k)];
        if (Length(Cross(q - p, r - p)) < 1e-4f)
            continue;
        b.Facet({p, q, r}, wood);
        b.Facet({r, q, p}, wood);
    }
}

/// The hull; some of its upper planks have rotted away.
void AddHull(Builder& b, float half) {
    for (std::size_t i = 0; i + 1 < frames.size(); ++i)
        for (std::size_t r = 0; r + 1 < ribs.size(); ++r) {
            const bool upper = r == 0 || r + 2 == ribs.size();
            if (upper && (i + r) % 3 == 1)
                continue;
            AddPlank(b, {OnHull(frames[i], ribs[r], half), OnHull(frames[i + 1], ribs[r], half),
                         OnHull(frames[i + 1], ribs[r + 1], half),
                         OnHull(frames[i], ribs[r + 1], half)});
        }
}

} // namespace

void AddStatue(Builder& b, vec3 at, vec2 ahead) {
    const vec2 across{ahead.y, -ahead.x};
    b.SetPlace({at, across});
    AddBox(b, {{-1.9f, 1.9f}, {0, 0.3f}, {-1.9f, 1.9f}}, carved);
    AddBox(b, {{-1.3f, 1.3f}, {0.3f, 0.7f}, {-1.3f, 1.3f}}, carved);
    AddBox(b, {{-0.75f, 0.75f}, {0.7f, 2.0f}, {-0.75f, 0.75f}}, carved);
    AddBox(b, {{-0.9f, 0.9f}, {2.0f, 2.2f}, {-0.9f, 0.9f}}, carved, true);
    b.SetPlace({at + vec3{0, 2.2f, 0}, across});
    AddFigure(b);
    AddBar(b, {-0.36f, 2.15f, 0}, {-0.72f, 2.75f, 0.22f}, 0.14f, marble);
    AddBar(b, {-0.72f, 2.75f, 0.22f}, {-0.66f, 3.45f, 0.3f}, 0.11f, marble);
    AddTaper(b, Ring({-0.66f, 0.3f}, 0.16f, 4), {-0.66f, 0.3f}, 3.4f, 3.75f, 1.5f, carved);
    AddBar(b, {0.4f, 2.15f, 0}, {0.52f, 1.4f, 0.1f}, 0.13f, marble);
    AddBar(b, {0.52f, 1.4f, 0.1f}, {0.2f, 1.15f, 0.42f}, 0.1f, marble);
    b.SetPlace({});
}

void AddWreck(Builder& b, vec3 at, vec2 along, float length) {
    const float half = length / 2;
    b.SetPlace({at, along});
    AddHull(b, half);
    for (const float share : {-0.45f, 0.35f}) {
        const vec3 step = Listed({share * half, 0.2f, 0});
        const vec3 head = Listed({share * half + 0.4f, share < 0 ? 4.6f : 5.6f, 0.2f});
        AddBar(b, step, head, 0.14f, wood);
        const vec3 yard = step + (head - step) * 0.72f;
        AddBar(b, yard + vec3{-1.5f, 0.5f, 0.2f}, yard + vec3{1.6f, -0.35f, -0.1f}, 0.08f, wood);
    }
    AddBar(b, Listed({half * 0.98f, 2.3f, 0}), Listed({half * 1.4f, 3.2f, 0}), 0.1f, wood);
    for (const std::size_t i : {2UL, 4UL})
        AddBar(b, OnHull(frames[i], ribs.front(), half), OnHull(frames[i], ribs.back(), half), 0.1f,
               wood);
    b.SetPlace({});
}

} // namespace Art
