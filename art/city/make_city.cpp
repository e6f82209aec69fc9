#include "art/city/meshing.h"
#include "art/city/plan.h"
#include "art/common/options.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

std::string StepNames() {
    std::string names;
    for (const Art::StepRow& row : Art::stepRows)
        names += std::string(names.empty() ? "" : "\n") + row.name;
    return names;
}

/// What the program does, with the steps that make the mesh cheap to draw.
std::string Purpose() {
    std::string text = "Writes city.xt3dstatic into FOLDER and says what it holds. Its steps:";
    for (const Art::StepRow& row : Art::stepRows)
        text += "\n  " + std::string(row.name) + ": " + row.what;
    return text;
}

/// Takes a step away; false when none is called so.
bool Remove(Art::Steps& steps, const std::string& name) {
    const auto row = std::find_if(Art::stepRows.begin(), Art::stepRows.end(),
                                  [&](const Art::StepRow& r) { return r.name == name; });
    if (row == Art::stepRows.end())
        return false;
    steps.reset(static_cast<std::size_t>(row - Art::stepRows.begin()));
    return true;
}

int Make(const std::string& folder, const Art::Steps& steps) {
    const Art::Builder city = Art::BuildCity(Art::citySeed);
    Art::MeshReport report;
    const Art::MeshFile mesh = Art::MeshCity(city, Art::MeasureCity(city), report, steps);
    const std::string path = folder + "/city.xt3dstatic";
    if (!Art::WriteMesh(path, mesh))
        return 1;
    std::printf("%s: %zu buildings, %zu lamps, %zu surfaces (%zu hidden ones dropped), "
                "%zu sub-meshes, %zu vertices, %.1f light-map texels a unit\n",
                path.c_str(), city.buildings.size(), city.lamps.size(), report.surfaces,
                report.hidden, mesh.subMeshes.size(), report.vertices,
                static_cast<double>(report.density));
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    Art::Steps steps = Art::allSteps;
    bool namesOnly = false;
    const std::string purpose = Purpose();
    const Art::CommandLine line{
        .program = "make_city",
        .purpose = purpose.c_str(),
        .operands = {"[FOLDER]"},
        .options = {{.name = "--without",
                     .value = "STEP",
                     .help = "leaves a step out; may be given several times",
                     .apply = [&](const std::string& name) { return Remove(steps, name); }},
                    {.name = "--steps",
                     .help = "only names the steps, one a line",
                     .apply = [&](const std::string&) { return namesOnly = true; }}}};
    int status = 0;
    const auto operands = Art::ReadArguments(line, count, arguments, status);
    if (!operands)
        return status;
    if (namesOnly) {
        std::printf("%s\n", StepNames().c_str());
        return 0;
    }
    return operands->empty() ? Art::Refuse(line, "FOLDER is missing")
                             : Make(operands->front(), steps);
}
