#pragma once

#include "art/city/parts.h"
#include "art/common/fittings.h"
#include "art/common/noise.h"

namespace Art {

/// The fitting's patch stretched over `size` units from the surface's local (0, 0).
Paint FittingPaint(Fitting fitting, int variant, vec2 size);
/// The patch at its natural size, for what is no larger than it.
Paint FittingPaint(Fitting fitting, int variant = 0);
/// One even colour, for thin things of any length.
Paint EvenPaint(Fitting fitting);

/// A rectangle in a wall that looks along local +z, whose face lies at `z`.
struct Opening {
    float x0, x1, y0, y1, z;
};

/// The inner sides of a hole `depth` deep, and what fills it at its back.
void AddReveal(Builder& b, const Opening& o, float depth, const Paint& lining, const Paint& back);
/// A sill under the opening and a lintel or a small roof over it.
void AddSill(Builder& b, const Opening& o);
void AddLintel(Builder& b, const Opening& o, float reach);
/// Two leaves, each open as far as chance has it.
void AddShutters(Builder& b, const Opening& o, int variant, Random& random);
/// A box on the sill, full of flowers.
void AddFlowerBox(Builder& b, const Opening& o, int variant, Random& random);
/// A striped roof of cloth over a shop, and the shop's name on a board.
void AddAwning(Builder& b, const Opening& o, int variant);
void AddSignBoard(Builder& b, const Opening& o, int variant);
/// A sign that hangs from an iron bar over the street at (x, y).
void AddHangingSign(Builder& b, float x, float y, float z);
/// A pipe from the eaves to the pavement, with its brackets.
void AddDrainPipe(Builder& b, float x, float y0, float y1, float z);
/// Washing on a line along the wall, between two brackets.
void AddWashingLine(Builder& b, float x0, float x1, float y, float z, Random& random);
/// A lantern on an iron arm.
void AddWallLantern(Builder& b, vec3 at, float reach, float power);
/// A striped pole in the water at a local ground point, with a light on its top or a golden cap.
void AddMooringPole(Builder& b, vec2 at, float height, bool lit);

} // namespace Art
