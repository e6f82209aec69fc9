// Put under a program, holds its time: what it draws first is the same in every run.

#include <sys/time.h>

extern "C" int gettimeofday(timeval* time, void*) noexcept {
    *time = {1000, 0};
    return 0;
}
