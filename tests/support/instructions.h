#pragma once

#include <functional>

/// Functions that lie in one stretch of the program: from `begin` up to `end`, which is not among
/// them.
struct Stretch {
    const void* begin;
    const void* end;
};

/// How many instructions `work` takes. What is done in functions of `others` is not counted, nor is
/// what these call; no exception may leave them.
///
/// The processor is told to stop behind every single one, so the number is the same each time, on a
/// busy machine too; a hundred thousand take about a tenth of a second. Not for several threads at
/// a time. Negative where processors are stopped in another way than ours knows.
long InstructionsOf(const std::function<void()>& work, const Stretch& others);
