#include "tools/doctor/rehearsal.h"

#include "tools/probe/preload.h"

#include "demo/show.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include <unistd.h>

namespace fs = std::filesystem;

namespace Doctor {

namespace {

constexpr double showSeconds = Show::runningTime; // how long the demo lasts
constexpr double loadingPatience = 60.0;          // seconds

const char* const framesFile = "frames.txt";
const char* const reportFile = "report.txt";
const char* const logFile = "Vell_log.html";

/// A temporary folder that is removed with all that is in it.
class Scratch {
public:
    Scratch() : path(fs::temp_directory_path() / "nimbrel_doctor_XXXXXX") {
        std::string name = path.string();
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no folder can be made in " + path.parent_path().string());
        path = name;
    }
    ~Scratch() {
        std::error_code ignored; // what stays behind does no harm
        fs::remove_all(path, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    fs::path File(const char* name) const { return path / name; }
    const fs::path& Path() const { return path; }

private:
    fs::path path;
};

/// Puts `text` in front of what the variable holds.
void Prepend(const char* variable, const std::string& text) {
    const char* before = std::getenv(variable);
    setenv(variable, (before ? text + ':' + before : text).c_str(), 1);
}

void SetUp(const Programs& programs, double seconds, const Scratch& scratch) {
    Prepend("LD_PRELOAD", Tools::Preloadable(programs.probe));
    setenv("NIMBREL_PROBE_SPEED", std::to_string(showSeconds / seconds).c_str(), 1);
    setenv("NIMBREL_PROBE_FRAMES", scratch.File(framesFile).c_str(), 1);
    setenv("NIMBREL_PROBE_REPORT", scratch.File(reportFile).c_str(), 1);
    setenv("ALSA_CONFIG_PATH", "/dev/null", 1); // no device: nothing is heard
#ifdef __SANITIZE_ADDRESS__
    Prepend("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0");
#endif
}

[[noreturn]] void BecomeDemo(const Programs& programs, double seconds, const Scratch& scratch) {
    SetUp(programs, seconds, scratch);
    fs::current_path(scratch.Path());
    const std::string demo = programs.demo.string();
    execl(demo.c_str(), demo.c_str(), static_cast<char*>(nullptr));
    throw std::runtime_error(demo + " cannot be started");
}

std::string ReadText(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<Frame> ReadFrames(const fs::path& path) {
    std::vector<Frame> frames;
    std::ifstream file(path);
    for (Frame frame{}; file >> frame.time >> frame.milliseconds;)
        frames.push_back(frame);
    return frames;
}

void ReadReport(const fs::path& path, Rehearsal& rehearsal) {
    std::ifstream file(path);
    for (std::string name, value; file >> name >> value;) {
        if (name == "errors")
            rehearsal.errors = std::atoi(value.c_str());
        if (name == "first_error")
            rehearsal.firstError = value;
    }
}

/// The text of the table cell in a line of the page; empty when its width is another.
std::string Cell(const std::string& line, const char* width) {
    if (line.find(std::string("width =\"") + width + '"') == std::string::npos)
        return "";
    std::string text;
    bool inTag = false;
    for (const char letter : line) {
        if (letter == '<')
            inTag = true;
        else if (letter == '>')
            inTag = false;
        else if (!inTag)
            text += letter;
    }
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

} // namespace

Programs Programs::In(const fs::path& build) {
    return {build / "demo/nimbrel", build / "tools/probe/libnimbrel_probe.so"};
}

Rehearsal Rehearse(const Programs& programs, double seconds) {
    const Scratch scratch;
    fs::create_directory_symlink(fs::absolute("Data"), scratch.File("Data"));
    Rehearsal rehearsal;
    rehearsal.seconds = seconds;
    rehearsal.end = RunApart([&](const Notebook&) { BecomeDemo(programs, seconds, scratch); },
                             loadingPatience + seconds);
    rehearsal.frames = ReadFrames(scratch.File(framesFile));
    ReadReport(scratch.File(reportFile), rehearsal);
    rehearsal.rows = ErrorRows(ReadText(scratch.File(logFile)));
    return rehearsal;
}

std::vector<std::string> ErrorRows(const std::string& page) {
    std::vector<std::string> rows;
    std::istringstream lines(page);
    std::string section;
    bool error = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.find("<tr>") != std::string::npos)
            error = false;
        if (const std::string text = Cell(line, "15%"); !text.empty())
            section = text;
        if (Cell(line, "5%") == "ERROR")
            error = true;
        if (const std::string file = Cell(line, "80%"); error && !file.empty())
            rows.push_back(std::string(section).append(" ").append(file));
    }
    return rows;
}

} // namespace Doctor
