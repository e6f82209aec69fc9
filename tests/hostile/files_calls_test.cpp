// Files that somebody may put in the place of the show's: each row of files.table, loaded in a
// process of its own. OpenGL is the one that records, for that a driver takes memory of its own.

#include "engine/render/image.h"
#include "engine/render/shader.h"
#include "engine/render/xt3dstatic.h"

#include "sound/fmod.h"
#include "tests/hostile/recipe.h"
#include "tests/recording/calls.h"
#include "tests/support/cost.h"
#include "tests/support/log_page.h"
#include "tests/support/measured.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr double patience = 20.0; // seconds of the clock: a loader that hangs is told so
constexpr double mebibyte = 1024.0 * 1024.0;
constexpr std::size_t leastRows = 150;

struct Row {
    int line = 0;
    std::string kind, what, file, comes;
    double mebibytes = 0.0;
    double seconds = 0.0;
};

std::vector<Row> ReadTable() {
    std::vector<Row> rows;
    std::ifstream table(NIMBREL_SOURCE_DIR "/tests/hostile/files.table");
    int number = 0;
    for (std::string line; std::getline(table, line);) {
        ++number;
        if (line.empty() || line[0] == '#')
            continue;
        std::vector<std::string> fields(1);
        for (std::size_t at = 0; at < line.size(); ++at)
            if (line.compare(at, 3, " | ") == 0) {
                fields.emplace_back();
                at += 2;
            } else {
                fields.back() += line[at];
            }
        if (fields.size() != 6)
            throw std::runtime_error("files.table:" + std::to_string(number) + ": six fields");
        rows.push_back({number, fields[0], fields[1], fields[2], fields[3], std::stod(fields[4]),
                        std::stod(fields[5])});
    }
    return rows;
}

/// The seeds of the parsers' attempts, "mesh/plain" and so on.
Hostile::Bases ReadBases() {
    const fs::path seeds = NIMBREL_SOURCE_DIR "/tests/fuzz/seeds";
    Hostile::Bases bases;
    for (const auto& entry : fs::recursive_directory_iterator(seeds))
        if (entry.is_regular_file())
            bases[fs::relative(entry.path(), seeds)] = ReadFile(entry.path());
    return bases;
}

/// Puts something else there than a file.
void MakeOther(const std::string& what, const std::string& path) {
    if (what == "pipe" && mkfifo(path.c_str(), 0600) == 0)
        return;
    if (what == "folder")
        fs::create_directory(path);
    else if (what == "device")
        fs::create_symlink("/dev/zero", path);
    else if (what == "circle")
        fs::create_symlink(path, path);
    else if (what == "unreadable") {
        WriteFile(path, "something");
        fs::permissions(path, fs::perms::none);
    } else if (what != "missing")
        throw std::runtime_error("nothing is " + what);
}

void Make(const Row& row, const std::string& path, const Hostile::Bases& bases) {
    const std::string other = "is ";
    if (row.file.starts_with(other)) {
        MakeOther(row.file.substr(other.size()), path);
        return;
    }
    const Hostile::Content content = Hostile::MakeContent(row.file, bases);
    WriteFile(path, content.bytes);
    fs::resize_file(path, content.bytes.size() + content.hole);
}

/// Permissions count for root as well from then on.
void ObeyPermissions() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct none[2]{};
    syscall(SYS_capset, &header, none);
}

/// Section and status of each, equal ones behind each other once.
std::string InWords(const std::vector<LogRow>& rows) {
    std::vector<std::string> words;
    for (const LogRow& row : rows)
        if (const std::string one = row.section + ' ' + row.status;
            words.empty() || words.back() != one)
            words.push_back(one);
    std::string all = words.empty() ? "-" : "";
    for (const std::string& one : words)
        all += (all.empty() ? "" : ", ") + one;
    return all;
}

void LoadMesh(const std::string& path) {
    auto* mesh = new Vell::XT3DStatic; // its end would be a row
    mesh->Load(path);
    mesh->Draw();
}

void LoadImage(const std::string& path) {
    auto* image = new Vell::Image;
    image->Load(path);
    image->Bind();
}

void LoadShader(const std::string& path) {
    WriteFile("good.frag", "void main() {}");
    auto* shader = new Vell::Shader;
    shader->Load(path, "good.frag");
    shader->Enable();
}

std::string LoadTrack(const std::string& path) {
    constexpr const char* answers[] = {
        "FMOD_OK",          "FMOD_FAILED_ARGUMENT", "FMOD_FAILED_ORDER",
        "FMOD_FAILED_FILE", "FMOD_FAILED_DAMAGED",  "FMOD_FAILED_RESOURCES"};
    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_System_Create(&system);
    FMOD_System_Init(system, 1, FMOD_INIT_NORMAL, nullptr);
    const FMOD_RESULT answer =
        FMOD_System_CreateStream(system, path.c_str(), FMOD_SOFTWARE, nullptr, &sound);
    FMOD_Sound_Release(sound);
    FMOD_System_Release(system);
    return answers[answer];
}

/// What comes of the file.
std::string Load(const std::string& kind, const std::string& path) {
    if (kind == "mp3")
        return LoadTrack(path);
    const LogWatch log;
    if (kind == "mesh")
        LoadMesh(path);
    else if (kind == "vert")
        LoadShader(path);
    else
        LoadImage(path);
    return InWords(log.NewRows());
}

class HostileFiles : public Calls {};

} // namespace

TEST_F(HostileFiles, Come_to_what_their_table_says_in_its_time_and_memory) {
    const std::vector<Row> rows = ReadTable();
    const Hostile::Bases bases = ReadBases();
    EXPECT_GE(rows.size(), leastRows);
    double seconds = 0.0;
    for (const Row& row : rows) {
        SCOPED_TRACE("files.table:" + std::to_string(row.line) + ": " + row.kind + ", " + row.what);
        const std::string path = std::to_string(row.line) + '.' + row.kind;
        Make(row, path, bases);
        const Cost cost = CostOf(
            [&](const Tools::Report& report) {
                ObeyPermissions();
                report.Add("comes", Load(row.kind, path));
            },
            patience);
        EXPECT_TRUE(cost.ending.InOrder()) << cost.ending.InWords();
        EXPECT_EQ(cost.ending.errors, "");
        EXPECT_EQ(Tools::Fact(cost.facts, "comes"), row.comes);
        EXPECT_LE(cost.seconds, row.seconds);
        seconds += cost.seconds;
        EXPECT_TRUE(!memoryCounts || static_cast<double>(cost.bytes) <= row.mebibytes * mebibyte)
            << InWords(cost);
    }
    TellMeasured(std::to_string(rows.size()) + " files",
                 std::to_string(seconds) + " s of the processor");
}
