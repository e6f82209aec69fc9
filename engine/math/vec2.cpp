#include "engine/math/vec2.h"

namespace Vell {

float vec2::Distance(const vec2& other) const {
    return (*this - other).Length();
}

float ivec2::Distance(const ivec2& other) const {
    return (*this - other).Length();
}

} // namespace Vell
