#pragma once

#include "tools/stage/rate.h"

#include <string>

namespace Movie {

/// Tells on standard error how far the work has come: a bar on a terminal, elsewhere a line every
/// ten seconds.
class Progress {
public:
    /// `count` frames (1 or more) of a film of that rate.
    Progress(int count, const Stage::Rate& rate);
    ~Progress(); ///< ends the bar's line

    void Step(); ///< one frame is done

    /// "[####....] 1234/7096 frames  61.2 a second (1.02x)  time left 1:35", after `elapsed`
    /// seconds.
    std::string Line(double elapsed) const;

private:
    int count;
    int done = 0;
    Stage::Rate rate;
    bool terminal;
    double begin;
    double said;
};

} // namespace Movie
