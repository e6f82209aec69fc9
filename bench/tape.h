#pragma once

#include <cstddef>
#include <cstring>
#include <memory_resource>
#include <span>
#include <tuple>
#include <type_traits>
#include <vector>

namespace Replay {

/// Calls of OpenGL and GLU, written down while they are made, to be made again.
///
/// A program that links tape.cpp calls its functions in the place of libGL's and libGLU's; each
/// goes on to the real one. Buffers, textures, programs and lists are those of the program that was
/// recorded, and so are arrays in memory that it draws from: they must be there and unchanged.
/// Numbers behind pointers are copied; what calls answer goes nowhere.
class Tape {
public:
    /// From here on each call is kept, behind those kept before. One tape records at a time.
    void Record();
    static void Stop();

    /// Makes all calls in their order.
    void Play() const {
        for (const Call* call : calls)
            call->Make();
    }

    std::size_t Count() const { return calls.size(); }

    /// Whether milliseconds of the processor within calls are added up, and what they are; at first
    /// they are not. No tape need record.
    static void TakeTime(bool take);
    static double TimeTaken();

    // For the functions that stand in.

    template <class Result, class... Parameters>
    void Keep(Result (*function)(Parameters...), std::type_identity_t<Parameters>... arguments) {
        using Kept = CallOf<Result, Parameters...>;
        void* const place = memory.allocate(sizeof(Kept), alignof(Kept));
        calls.push_back(new (place) Kept(function, arguments...));
    }

    /// A copy that lives as long as the tape.
    template <class Value>
    const Value* Copy(std::span<const Value> values) {
        void* const place = memory.allocate(values.size_bytes(), alignof(Value));
        return static_cast<const Value*>(std::memcpy(place, values.data(), values.size_bytes()));
    }

private:
    struct Call {
        virtual void Make() const = 0;

    protected:
        ~Call() = default; // their memory goes as a whole
    };

    template <class Result, class... Parameters>
    struct CallOf final : Call {
        CallOf(Result (*real)(Parameters...), Parameters... values)
            : function(real), arguments(values...) {}
        void Make() const override { std::apply(function, arguments); }

        Result (*function)(Parameters...);
        std::tuple<Parameters...> arguments;
    };

    std::pmr::monotonic_buffer_resource memory;
    std::vector<const Call*> calls;
};

} // namespace Replay
