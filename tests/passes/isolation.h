#pragma once

#include "tools/stage/isolated.h"

#include <stdexcept>

/// Takes a step in a process of its own, which has a show of its own to play: there is one a
/// process. Only what the step leaves in files is there afterwards. Throws std::runtime_error, with
/// how it ended, when it fails.
template <class Step>
void InIsolation(Step step) {
    constexpr double patience = 250.0; // seconds
    const Tools::IsolatedRun run =
        Tools::RunIsolated([&](const Tools::Report&) { step(); }, patience);
    if (!run.ending.InOrder())
        throw std::runtime_error("the step in isolation " + run.ending.InWords());
}
