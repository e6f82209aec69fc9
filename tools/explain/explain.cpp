#include "tools/explain/explain.h"

#include "demo/show.h"
#include "tools/explain/page.h"
#include "tools/options/places.h"
#include "tools/stage/logpage.h"
#include "tools/stage/newfile.h"
#include "tools/stage/scratch.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <system_error>

namespace Explain {

namespace {

[[noreturn]] void RefusePath(const std::string& path) {
    throw std::runtime_error("cannot write \"" + path +
                             "\": " + std::generic_category().message(errno));
}

void CheckTime(double time) {
    if (time >= 0.0 && time < Show::runningTime) // false for what is not a number as well
        return;
    throw std::runtime_error("the show has frames from 0 to " + std::to_string(Show::runningTime) +
                             " seconds, none at " + std::to_string(time));
}

/// Writes the file whole; throws unless that goes well.
void WritePage(const std::string& path, const std::string& text) {
    const Stage::NewFile file(path);
    std::ofstream page(file.Path());
    page << text;
    page.close();
    if (!page)
        RefusePath(path);
    file.Complete();
}

} // namespace

void MakePage(const Stage::Rate& rate, double time, const std::string& outPath, Measured measured) {
    CheckTime(time);
    Tools::CheckFileToWrite(outPath); // before the work, so that a wrong path is told at once
    const std::filesystem::path path = std::filesystem::absolute(outPath);
    Tools::EnterDemoFolder();
    const FrameRecord record = RecordFrame(rate, rate.FrameAt(time));
    std::cerr << Tools::ErrorsInWords(Tools::ReadLogPage());
    WritePage(path, PageOf(record, measured));
    std::cerr << outPath << ": how the frame of " << record.time << " s came about\n";
}

} // namespace Explain
