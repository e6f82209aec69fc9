#pragma once

#include "art/city/builder.h"

namespace Art {

/// The outline of a solid in the order in which its walls face outwards.
std::vector<vec2> Outwards(std::vector<vec2> outline);

/// Paints of a solid: its walls and what covers it.
struct Finish {
    Paint wall;
    Paint top;
};

/// From one coordinate to a greater one.
struct Range {
    float low, high;
};

/// An upright box of the current place.
struct Box {
    Box(Range x, Range y, Range z)
        : x0(x.low), x1(x.high), y0(y.low), y1(y.high), z0(z.low), z1(z.high) {}

    float x0, x1, y0, y1, z0, z1;
};
/// Walls and top of a box, and with `bottom` its underside. Split at the water.
void AddBox(Builder& b, const Box& box, const Finish& finish, bool bottom = false);

/// The four walls of a box as a facade: whole bays of about one unit and storeys of one unit
/// that start at the box's foot. `seed` picks which windows are lit, and of facades seen from far,
/// who lives there. Without `front` the wall that looks along local +z is left out.
void AddFacadeBox(Builder& b, const Box& box, Material material, const Paint& top, unsigned seed,
                  bool front = true);

/// The paint of a facade on wall number `side` of a house: whole bays, storeys from the wall's
/// foot. `size` is the wall's, in units. Of a house that has a part of the picture to itself, each
/// wall shows some of that.
Paint FacadePaint(Material material, vec2 size, unsigned house, unsigned side);

/// A vertical wall between two ground points, facing Cross(direction, up). Split at the water.
void AddWall(Builder& b, vec2 from, vec2 to, float y0, float y1, const Paint& paint);

/// A flat horizontal polygon facing up, from ground points in either order.
void AddFloor(Builder& b, std::vector<vec2> outline, float y, const Paint& paint);

/// An upright prism over ground points (either order), without a bottom.
void AddPrism(Builder& b, std::vector<vec2> outline, float y0, float y1, const Finish& finish);

/// Between a polygon at y0 and the same one scaled about `centre` by `scale` at y1; a scale
/// of 0 makes a point. With `cap` the upper end is closed.
void AddTaper(Builder& b, std::vector<vec2> outline, vec2 centre, float y0, float y1, float scale,
              const Finish& finish, bool cap = true);

/// Corners of a regular polygon of `sides` with the given distance to its corners.
std::vector<vec2> Ring(vec2 centre, float radius, int sides, float rotation = 0);

/// Pitched roofs over a rectangle at height y, `rise` high, eaves reaching out by `eaves`.
void AddGableAlongX(Builder& b, const Box& base, float rise, float eaves, const Finish& finish);
void AddGableAlongZ(Builder& b, const Box& base, float rise, float eaves, const Finish& finish);
void AddHip(Builder& b, const Box& base, float rise, float eaves, const Paint& roof);
/// A dome of `rings` rings over a ring of corners.
void AddDome(Builder& b, vec2 centre, float radius, float y, float height, int sides, int rings,
             const Paint& paint);

/// One round arch in a wall: opening between x0 and x1, straight up to `spring`, then round.
struct Arch {
    float x0, x1, spring;
};
/// A wall of the given thickness behind z, from x0..x1 and y0..y1, pierced by arches that
/// start at y0. Front, back, arch linings and (with `ends`) the two ends and the top.
struct ArchWall {
    float x0, x1, y0, y1, z, thickness;
    std::vector<Arch> arches{};
    bool back = true;
    bool ends = true;
    int segments = 6;
};
void AddArchWall(Builder& b, const ArchWall& wall, const Paint& face, const Paint& lining);

/// A flight of steps that comes down along +z from (x0..x1, y1, z) to y0.
void AddStairs(Builder& b, float x0, float x1, float z, float y1, float y0, int steps,
               const Paint& paint);
/// A street lamp: post and glowing head at a local ground point, `height` over `y`.
void AddLampPost(Builder& b, vec3 foot, float height);
/// A glowing point with its light, for what is never seen closely.
void AddSpark(Builder& b, vec3 centre, float size, float power = 1);
/// Only the glazed head of a lamp with its light.
void AddLantern(Builder& b, vec3 centre, float size, float power = 1);
/// A moored boat, along x about the local point on the water.
void AddBoat(Builder& b, vec3 at, float length);
/// A round column with base and capital.
void AddColumn(Builder& b, vec2 at, float y0, float y1, float radius, int sides,
               const Paint& paint);

} // namespace Art
