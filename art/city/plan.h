#pragma once

#include "art/city/builder.h"

namespace Art {

/// The city: every surface and lamp, from the ground plan that follows the eight flights.
/// The same seed gives the same city.
Builder BuildCity(unsigned seed);

/// The seed the shipped data is made with.
inline constexpr unsigned citySeed = 2011;

} // namespace Art
