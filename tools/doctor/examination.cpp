#include "tools/doctor/examination.h"

#include "tools/doctor/datafiles.h"
#include "tools/doctor/graphics.h"
#include "tools/doctor/page.h"
#include "tools/doctor/sound.h"
#include "tools/doctor/xserver.h"

namespace Doctor {

namespace {

// Seconds that a part may take before it counts as hanging; all of them take less than one.
constexpr double serverPatience = 10.0;
constexpr double graphicsPatience = 20.0;
constexpr double soundPatience = 10.0;

/// The X server is asked by itself: it knows better why there is no OpenGL than OpenGL does.
Tools::IsolatedRun CollectScreenFacts() {
    const Tools::IsolatedRun server = Tools::RunIsolated(CollectServerFacts, serverPatience);
    Tools::IsolatedRun graphics = Tools::RunIsolated(CollectGraphicsFacts, graphicsPatience);
    graphics.facts.insert(server.facts.begin(), server.facts.end());
    return graphics;
}

} // namespace

Table Examine(const Programs& programs, double seconds) {
    Table table = {FolderRow()};
    Append(table, DataRows());
    Append(table, GraphicsRows(CollectScreenFacts(), DisplayIsNamed(), FindLargestPicture()));
    const bool canRun = Verdict(table) != State::Fail;
    table.push_back(SoundRow(Tools::RunIsolated(CollectSoundFacts, soundPatience)));
    Append(table, canRun ? RehearsalRows(Rehearse(programs, seconds))
                         : NoRehearsalRows("the demo cannot run"));
    return table;
}

} // namespace Doctor
