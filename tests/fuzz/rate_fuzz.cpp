// Frame rates as they are typed: refused by an exception, or one that frames can be counted with.

#include "tools/stage/rate.h"

#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    try {
        const Stage::Rate rate = Stage::ParseRate({reinterpret_cast<const char*>(bytes), size});
        if (rate.frames < rate.seconds || rate.seconds < 1 || rate.FrameAt(118.0) < 118)
            std::abort();
    } catch (const std::runtime_error&) { // refused
    }
    return 0;
}
