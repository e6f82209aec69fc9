#include "art/city/meshing.h"
#include "art/city/plan.h"
#include "art/common/foldertofill.h"
#include "tools/options/commandline.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

std::vector<std::string> StepNames() {
    std::vector<std::string> names;
    names.reserve(Art::stepRows.size());
    for (const Art::StepRow& row : Art::stepRows)
        names.emplace_back(row.name);
    return names;
}

/// What the program does, with the steps that make the mesh cheap to draw.
std::string Purpose() {
    std::string text = "Writes city.xt3dstatic into FOLDER and says what it holds. Its steps:";
    for (const Art::StepRow& row : Art::stepRows)
        text += "\n  " + std::string(row.name) + ": " + row.what;
    return text;
}

/// All steps but those named.
Art::Steps StepsWithout(const std::vector<std::string>& left) {
    Art::Steps steps = Art::allSteps;
    for (std::size_t i = 0; i < Art::stepRows.size(); ++i)
        if (std::find(left.begin(), left.end(), Art::stepRows[i].name) != left.end())
            steps.reset(i);
    return steps;
}

int Make(const Tools::Arguments& arguments) {
    Art::FolderToFill folder(arguments.operands[0]);
    const Art::Builder city = Art::BuildCity(Art::citySeed);
    Art::MeshReport report;
    const Art::MeshFile mesh = Art::MeshCity(city, Art::MeasureCity(city), report,
                                             StepsWithout(arguments.Texts("--without")));
    if (const bool written = Art::WriteMesh(folder.File("city.xt3dstatic"), mesh);
        const int status = folder.Finish(written))
        return status;
    std::printf("%zu buildings, %zu lamps, %zu surfaces (%zu hidden ones dropped), "
                "%zu sub-meshes, %zu vertices, %.1f light-map texels a unit\n",
                city.buildings.size(), city.lamps.size(), report.surfaces, report.hidden,
                mesh.subMeshes.size(), report.vertices, static_cast<double>(report.density));
    return EXIT_SUCCESS;
}

} // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> names = StepNames();
    const Tools::Program program = {
        .name = "make_city",
        .purpose = Purpose(),
        .options = {{.name = "--without",
                     .value = "STEP",
                     .kind = Tools::OneOf("a step (" + Tools::Listed(names, "or") + ")", names),
                     .example = names.front(),
                     .meaning = "leaves a step out; may be given several times"}},
        .modes = {{.operands = {{"FOLDER", Tools::FolderToFill()}},
                   .example = "Data/Gfx/City",
                   .run = Make}}};
    return program.Run(count, arguments);
}
