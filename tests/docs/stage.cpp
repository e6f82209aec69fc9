#include "tests/docs/stage.h"

#include <cstdlib>
#include <set>

namespace fs = std::filesystem;

namespace Docs {

namespace {

const fs::path source = NIMBREL_SOURCE_DIR;
const fs::path binaries = NIMBREL_BINARY_DIR;

} // namespace

Stage::Stage() : root(scratch.Path() / "tree") {
    CopyTree();
    LinkBuilds();
    CopyStandIns();
    for (const char* folder : {"home", "temporary"})
        fs::create_directory(scratch.Path() / folder);
}

Tools::Ending Stage::Run(const std::string& line, double patience) const {
    const fs::path outside = scratch.Path();
    const Tools::Environment around = {
        {"PATH", (outside / "bin").string() + ":" + std::getenv("PATH")},
        {"HOME", outside / "home"},
        {"TMPDIR", outside / "temporary"},
        {"DISPLAY", display.Name()},
        {"ALSA_CONFIG_PATH", "/dev/null"},
        {"CMAKE", DOCS_CMAKE},
        {"BINARIES", binaries},
    };
    // timeout(1) ends what the line has started, too.
    return Tools::Run({.arguments = {"/usr/bin/timeout", "-k", "5", std::to_string(patience),
                                     "/bin/bash", "-c", "set -euo pipefail; " + line},
                       .added = around,
                       .folder = root},
                      patience + 10.0);
}

void Stage::CopyTree() const {
    const std::set<std::string> left = {".git", "build", ".cache"};
    fs::create_directory(root);
    for (const fs::directory_entry& entry : fs::directory_iterator(source))
        if (!left.contains(entry.path().filename()))
            fs::copy(entry.path(), root / entry.path().filename(), fs::copy_options::recursive);
}

// Folders alone: without what is in the root of a build folder no script takes it for configured.
void Stage::LinkBuilds() const {
    for (const char* name : {"release", "art"}) {
        const fs::path build = root / "build" / name;
        fs::create_directories(build);
        for (const fs::directory_entry& entry : fs::directory_iterator(binaries))
            if (entry.is_directory())
                fs::create_directory_symlink(entry.path(), build / entry.path().filename());
    }
}

void Stage::CopyStandIns() const {
    const fs::path folder = scratch.Path() / "bin";
    fs::create_directory(folder);
    for (const fs::directory_entry& entry :
         fs::directory_iterator(source / "tests/docs/stand_ins")) {
        const fs::path program = folder / entry.path().stem();
        fs::copy(entry.path(), program);
        fs::permissions(program, fs::perms::owner_all);
    }
    for (const char* name : {"apt-get", "sudo"})
        fs::create_symlink("refuse", folder / name);
}

bool ArtIsBuilt() {
    return fs::exists(binaries / "art");
}

} // namespace Docs
