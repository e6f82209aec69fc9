#pragma once

#include "art/city/builder.h"

namespace Art {

/// What stands on the roofs of the town and over them: domes over rings of lit glass, terraces on
/// posts, gardens of cypresses. It has its places in the plan, where the flights pass or look.
void AddSkyline(Builder& b);

} // namespace Art
