#include "tests/support/instructions.h"

#if defined(__x86_64__)

#include <csignal>
#include <cstdint>

#include <ucontext.h>
#include <x86intrin.h>

// Functions that are not counted return to here, where the processor stops again.
asm(R"(
    .text
    .globl instructions_go_on
    instructions_go_on:
    int3
)");
extern "C" const char instructions_go_on;

namespace {

constexpr std::uint64_t stopBehindEach = 0x100; // the processor's trap flag

long count = 0;
std::uint64_t othersBegin = 0;
std::uint64_t othersEnd = 0;
std::uint64_t wayBack = 0; // from the function that is not counted

std::uint64_t Address(const void* place) {
    return reinterpret_cast<std::uint64_t>(place);
}

/// Called behind each instruction; a function that is not counted is left alone from its first
/// instruction on until it returns.
void Step(int, siginfo_t*, void* context) {
    auto& registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    const auto next = static_cast<std::uint64_t>(registers[REG_RIP]);
    if (next == Address(&instructions_go_on) + 1) {
        registers[REG_RIP] = static_cast<greg_t>(wayBack);
        registers[REG_EFL] |= stopBehindEach;
        return;
    }
    ++count;
    if (next < othersBegin || next >= othersEnd)
        return;
    auto* const top = reinterpret_cast<std::uint64_t*>(registers[REG_RSP]);
    wayBack = *top;
    *top = Address(&instructions_go_on);
    registers[REG_EFL] &= ~static_cast<greg_t>(stopBehindEach);
}

} // namespace

long InstructionsOf(const std::function<void()>& work, const Stretch& others) {
    othersBegin = Address(others.begin);
    othersEnd = Address(others.end);
    count = 0;
    struct sigaction step {};
    struct sigaction before {};
    step.sa_sigaction = Step;
    step.sa_flags = SA_SIGINFO;
    sigaction(SIGTRAP, &step, &before);
    __writeeflags(__readeflags() | stopBehindEach);
    work();
    __writeeflags(__readeflags() & ~stopBehindEach);
    sigaction(SIGTRAP, &before, nullptr);
    return count;
}

#else

long InstructionsOf(const std::function<void()>&, const Stretch&) {
    return -1;
}

#endif
