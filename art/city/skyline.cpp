#include "art/city/skyline.h"

#include "art/city/houses.h"

#include <cmath>
#include <vector>

namespace Art {

namespace {

const Paint trim = Plain(Material::Trim);
const Paint roof = Plain(Material::Roof);
const Finish trimmed{trim, trim};
const Finish iron{roof, roof};

/// Glass with a light behind it: the middle of a landing's window.
const Paint litGlass{Material::Town, {2.5f / 16, 1.5f / 16}, {0, 0}};

struct GlassDome {
    vec2 at;
    float radius;
    float foot; ///< where its drum begins
    float eaves;
};

// The first two stand out of the north town's front, the third on the low roofs beside the basin.
const std::vector<GlassDome> domes = {
    {.at = {13.5f, -30.0f}, .radius = 2.4f, .foot = quayHeight, .eaves = 13.2f},
    {.at = {31.0f, -25.0f}, .radius = 1.9f, .foot = quayHeight, .eaves = 11.6f},
    {.at = {26.4f, 1.5f}, .radius = 1.05f, .foot = 2.4f, .eaves = 3.5f},
};

/// A dome of lead over a ring of lit glass between dark bars, with a lantern at its top.
void AddGlassDome(Builder& b, const GlassDome& dome) {
    constexpr int sides = 8;
    b.SetPlace({{dome.at.x, 0, dome.at.y}, {1, 0}});
    AddPrism(b, Ring({}, dome.radius, sides), dome.foot, dome.eaves,
             {{Material::Palace, {0, 2.0f / 16}, {1.0f / 8, 1.0f / 16}}, trim});
    AddPrism(b, Ring({}, dome.radius * 1.1f, sides), dome.eaves, dome.eaves + 0.16f, trimmed);
    const float foot = dome.eaves + 0.16f;
    const float spring = foot + dome.radius * 0.5f;
    const float height = dome.radius * 0.8f;
    AddPrism(b, Ring({}, dome.radius * 0.86f, sides), foot, spring, {litGlass, trim});
    for (const vec2 p : Ring({}, dome.radius * 0.92f, sides)) // bars before the light
        AddTaper(b, Ring(p, 0.12f * dome.radius, 3), p, foot, spring, 1, trimmed, false);
    AddDome(b, {}, dome.radius, spring, height, sides, 3, roof);
    AddPrism(b, Ring({}, dome.radius * 0.2f, 6), spring + height * 0.9f, spring + height * 1.3f,
             {litGlass, roof});
    AddTaper(b, Ring({}, dome.radius * 0.28f, 6), {}, spring + height * 1.3f, spring + height * 2,
             0, iron, false);
    b.Lamp({0, spring + height * 1.4f, 0}, dome.radius * 0.5f);
}

struct Terrace {
    vec2 at;
    float foot; ///< within the roof it stands on
    float deck;
    vec2 size;
    float rotation;
};

const std::vector<Terrace> terraces = {
    {.at = {18.6f, 27.2f}, .foot = 4.5f, .deck = 8.3f, .size = {1.9f, 1.4f}, .rotation = 0.0f},
    {.at = {34.6f, 23.4f}, .foot = 6.0f, .deck = 10.6f, .size = {1.8f, 1.4f}, .rotation = 0.78f},
    {.at = {44.8f, 2.0f}, .foot = 1.5f, .deck = 4.6f, .size = {1.9f, 1.5f}, .rotation = 0.2f},
};

/// A wooden terrace on posts over a roof, a rail round it, lanterns at two of its corners.
void AddTerraceOnPosts(Builder& b, const Terrace& t) {
    b.SetPlace({{t.at.x, 0, t.at.y}, {std::cos(t.rotation), std::sin(t.rotation)}});
    const vec2 half = t.size * 0.5f;
    const float rail = t.deck + 0.5f;
    AddBox(b, {{-half.x, half.x}, {t.deck - 0.1f, t.deck}, {-half.y, half.y}}, iron, true);
    for (const float side : {-1.0f, 1.0f}) {
        const float x = side * (half.x - 0.04f);
        const float z = side * (half.y - 0.04f);
        AddBox(b, {{-half.x, half.x}, {rail - 0.12f, rail}, {z - 0.03f, z + 0.03f}}, iron, true);
        AddBox(b, {{x - 0.03f, x + 0.03f}, {rail - 0.12f, rail}, {-half.y, half.y}}, iron, true);
        for (const float along : {-x, x})
            AddBox(b, {{along - 0.05f, along + 0.05f}, {t.foot, rail}, {z - 0.05f, z + 0.05f}},
                   iron);
        AddLantern(b, {x, rail + 0.22f, z}, 0.12f, 0.7f);
    }
}

struct Garden {
    vec2 from, to; ///< a row of cypresses
    int count;
    float roof; ///< where they stand
};

const std::vector<Garden> gardens = {
    {.from = {12.9f, 10.9f}, .to = {12.9f, 13.6f}, .count = 3, .roof = 2.5f},
    {.from = {41.0f, 8.6f}, .to = {45.6f, 8.6f}, .count = 5, .roof = 2.4f},
    {.from = {41.6f, 15.6f}, .to = {45.8f, 15.6f}, .count = 4, .roof = 2.4f},
    {.from = {33.4f, 4.2f}, .to = {35.6f, 6.6f}, .count = 3, .roof = 2.4f},
    {.from = {-8.0f, -39.6f}, .to = {40.0f, -39.6f}, .count = 16, .roof = quayHeight},
};

void AddCypress(Builder& b, vec2 at, float foot, float height) {
    const float radius = height * 0.15f;
    AddTaper(b, Ring(at, radius * 0.7f, 5), at, foot, foot + height * 0.35f, 1.43f, iron, false);
    AddTaper(b, Ring(at, radius, 5), at, foot + height * 0.35f, foot + height, 0, iron, false);
}

void AddGarden(Builder& b, const Garden& garden) {
    for (int i = 0; i < garden.count; ++i) {
        const float t = static_cast<float>(i) / static_cast<float>(garden.count - 1);
        const float height = 1.3f + 0.5f * std::abs(std::sin(static_cast<float>(i) * 2.3f));
        AddCypress(b, Lerp(garden.from, garden.to, t), garden.roof, height);
    }
}

} // namespace

void AddSkyline(Builder& b) {
    for (const GlassDome& dome : domes)
        AddGlassDome(b, dome);
    for (const Terrace& terrace : terraces)
        AddTerraceOnPosts(b, terrace);
    b.SetPlace({});
    for (const Garden& garden : gardens)
        AddGarden(b, garden);
}

} // namespace Art
