#include "tools/film/explain.h"

#include "tools/film/explainpage.h"
#include "tools/film/newfile.h"
#include "tools/film/show.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace Film {

namespace {

[[noreturn]] void RefusePath(const std::string& path) {
    throw std::runtime_error("cannot write \"" + path + "\": " + std::strerror(errno));
}

void CheckTime(double time) {
    if (time >= 0.0 && time < showLength) // false for what is not a number as well
        return;
    throw std::runtime_error("the show has frames from 0 to " + std::to_string(showLength) +
                             " seconds, none at " + std::to_string(time));
}

} // namespace

void Explain(const Rate& rate, double time, const std::string& outPath, Measured measured) {
    CheckTime(time);
    const NewFile file(outPath);
    std::ofstream page(file.Path()); // before the work: a wrong path is told at once
    if (!page)
        RefusePath(outPath);
    page << PageOf(TakeApart(rate, rate.FrameAt(time)), measured);
    page.close();
    if (!page)
        RefusePath(outPath);
    file.Complete();
}

} // namespace Film
