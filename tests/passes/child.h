#pragma once

#include <exception>
#include <stdexcept>

#include <cstdio>
#include <sys/wait.h>
#include <unistd.h>

/// Takes a step in a process of its own, which has a show of its own to play: there is one a
/// process. Only what the step leaves in files is there afterwards. Throws std::runtime_error when
/// it fails; what it threw stands on standard error.
template <class Step>
void InChild(Step step) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        try {
            step();
            _exit(0);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
        }
        _exit(1);
    }
    int status = -1;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
        throw std::runtime_error("the step in a process of its own failed");
}
