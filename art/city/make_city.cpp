// make_city FOLDER [--without STEP]...: writes city.xt3dstatic into FOLDER and says what it holds.
#include "art/city/meshing.h"
#include "art/city/plan.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>

namespace {

struct Order {
    std::string folder;
    Art::Steps steps = Art::allSteps;
};

void PrintUsage() {
    std::fprintf(stderr, "usage: make_city FOLDER [--without STEP]...\n"
                         "       make_city --steps    names the steps, one a line\n"
                         "Steps that make the mesh cheap to draw:\n");
    for (const Art::StepRow& row : Art::stepRows)
        std::fprintf(stderr, "  %-8s %s\n", row.name, row.what);
}

void PrintSteps() {
    for (const Art::StepRow& row : Art::stepRows)
        std::printf("%s\n", row.name);
}

/// Takes a step away; false when none is called so.
bool Leave(Art::Steps& steps, const std::string& name) {
    const auto row = std::find_if(Art::stepRows.begin(), Art::stepRows.end(),
                                  [&](const Art::StepRow& r) { return r.name == name; });
    if (row == Art::stepRows.end())
        return false;
    steps.reset(static_cast<std::size_t>(row - Art::stepRows.begin()));
    return true;
}

std::optional<Order> Understand(int argc, char** argv) {
    Order order;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (word == "--without") {
            if (++i == argc || !Leave(order.steps, argv[i]))
                return std::nullopt;
        } else if (!order.folder.empty() || word.starts_with("-"))
            return std::nullopt;
        else
            order.folder = word;
    }
    if (order.folder.empty())
        return std::nullopt;
    return order;
}

int Make(const Order& order) {
    const Art::Builder city = Art::BuildCity(Art::citySeed);
    Art::MeshReport report;
    const Art::MeshFile mesh = Art::MeshCity(city, Art::MeasureCity(city), report, order.steps);
    const std::string path = order.folder + "/city.xt3dstatic";
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

int main(int argc, char** argv) {
    if (argc == 2 && argv[1] == std::string("--steps")) {
        PrintSteps();
        return 0;
    }
    const std::optional<Order> order = Understand(argc, argv);
    if (!order) {
        PrintUsage();
        return 2;
    }
    return Make(*order);
}
