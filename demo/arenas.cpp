// The C library gives each thread that allocates 64 MiB of addresses of its own, and a driver that
// draws on the processor starts several: where addresses are rationed (ulimit -v), 700 MB were too
// few for it to start. Two such arenas are as quick here, for these threads hardly allocate. Set
// before main(), because threads keep the arena that they began with.

#include <malloc.h>

namespace {

constexpr int mostArenas = 2;

// NOLINTNEXTLINE(concurrency-mt-unsafe): there are no threads yet
[[maybe_unused]] const bool arenasAreFew = mallopt(M_ARENA_MAX, mostArenas) == 1;

} // namespace
