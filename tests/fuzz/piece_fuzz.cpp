// The comments of films that are joined: one that is understood can be written down again and is
// then understood as the same.

#include "tools/movie/piece.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto piece = Movie::ParsePiece({reinterpret_cast<const char*>(bytes), size});
    if (!piece)
        return 0;
    const auto again = Movie::ParsePiece(piece->Comment());
    if (!again || again->first != piece->first || again->count != piece->count ||
        again->rate.frames != piece->rate.frames || again->rate.seconds != piece->rate.seconds)
        std::abort();
    return piece->Begin() > piece->End() ? std::abort(), 0 : 0;
}
