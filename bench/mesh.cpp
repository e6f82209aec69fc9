// How fast the token reader reads meshes, beside formatted extraction and a loop over fast_float.
// What it measures with, it makes too: meshes whose numbers have six decimals.

#include "bench/cost.h"
#include "engine/math/vec2.h"
#include "engine/math/vec3.h"
#include "engine/render/decimals.h"
#include "engine/render/tokenreader.h"
#include "tools/options/commandline.h"

#include <fast_float/fast_float.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int usualRounds = 21;
constexpr int mostRounds = 1000;
constexpr int mostVertices = 10000000;

struct SubMesh {
    std::vector<Vell::vec3> positions;
    std::vector<Vell::vec3> normals;
    std::vector<Vell::vec2> texcoords;
    std::vector<Vell::vec2> lightmapTexcoords;
};
using Mesh = std::vector<SubMesh>;

/// The usual way to read fast: the whole file, and fast_float for its numbers. Forgives nothing.
class FastFloatReader {
public:
    explicit FastFloatReader(const std::string& path)
        : text(std::filesystem::file_size(path), '\0'), cursor(text.data()) {
        std::ifstream(path).read(text.data(), static_cast<std::streamsize>(text.size()));
    }
    FastFloatReader& operator>>(std::string& word) {
        SkipBlanks();
        const char* begin = cursor;
        while (cursor != End() && !Vell::IsBlank(*cursor))
            ++cursor;
        word.assign(begin, cursor);
        return *this;
    }
    FastFloatReader& operator>>(int& number) {
        SkipBlanks();
        cursor = std::from_chars(cursor, End(), number).ptr;
        return *this;
    }
    FastFloatReader& operator>>(float& number) {
        SkipBlanks();
        cursor = fast_float::from_chars(cursor, End(), number).ptr;
        return *this;
    }

private:
    const char* End() const { return text.data() + text.size(); }
    void SkipBlanks() {
        while (cursor != End() && Vell::IsBlank(*cursor))
            ++cursor;
    }

    std::string text;
    const char* cursor;
};

class StreamReader : public std::ifstream {
public:
    explicit StreamReader(const std::string& path) : buffer(1 << 18) {
        rdbuf()->pubsetbuf(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        open(path);
    }

private:
    std::vector<char> buffer;
};

template <class In>
void ReadNumbers(In& in, std::span<float> numbers) {
    for (float& number : numbers)
        in >> number;
}

void ReadNumbers(Vell::TokenReader& in, std::span<float> numbers) {
    in >> numbers;
}

template <class In>
void ReadSubMesh(In& in, bool lit, SubMesh& part) {
    std::string texture;
    int count = 0;
    in >> texture >> texture >> texture >> count;
    const auto vertices = static_cast<std::size_t>(std::max(count, 0));
    part.positions.resize(vertices);
    part.normals.resize(vertices);
    part.texcoords.resize(vertices);
    part.lightmapTexcoords.resize(vertices);
    for (std::size_t i = 0; i < vertices; ++i) {
        std::array<float, 10> record{};
        ReadNumbers(in, std::span(record).first(lit ? 10 : 8));
        part.positions[i] = Vell::vec3(record[0], record[1], record[2]);
        part.normals[i] = Vell::vec3(record[3], record[4], record[5]);
        part.texcoords[i] = Vell::vec2(record[6], record[7]);
        part.lightmapTexcoords[i] = Vell::vec2(record[8], record[9]);
    }
}

template <class In>
Mesh ReadMesh(const std::string& path) {
    In in(path);
    std::string word;
    int count = 0;
    int lit = 0;
    in >> word >> count >> word >> lit;
    Mesh mesh(static_cast<std::size_t>(std::max(count, 0)));
    for (SubMesh& part : mesh)
        ReadSubMesh(in, lit != 0, part);
    return mesh;
}

double Time(Mesh (*read)(const std::string&), const std::string& path, Mesh& mesh) {
    const double begin = Bench::Milliseconds();
    mesh = read(path);
    return Bench::Milliseconds() - begin;
}

template <class Vector>
bool SameBytes(const std::vector<Vector>& a, const std::vector<Vector>& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(Vector)) == 0);
}

bool IsSame(const Mesh& a, const Mesh& b) {
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(), [](const SubMesh& x, const SubMesh& y) {
            return SameBytes(x.positions, y.positions) && SameBytes(x.normals, y.normals) &&
                   SameBytes(x.texcoords, y.texcoords) &&
                   SameBytes(x.lightmapTexcoords, y.lightmapTexcoords);
        });
}

struct Spread {
    double low;
    double median;
    double high;
};

Spread SpreadOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return {values.front(), values[values.size() / 2], values.back()};
}

/// One line. False when the readers do not read the same.
bool Measure(const std::string& path, int rounds) {
    std::vector<double> ours;
    std::vector<double> overStreams;
    std::vector<double> overFastFloat;
    for (int round = 0; round < rounds; ++round) {
        Mesh byStreams;
        Mesh byFastFloat;
        Mesh byOurs;
        const double streams = Time(ReadMesh<StreamReader>, path, byStreams);
        const double fastFloat = Time(ReadMesh<FastFloatReader>, path, byFastFloat);
        ours.push_back(Time(ReadMesh<Vell::TokenReader>, path, byOurs));
        overStreams.push_back(streams / ours.back());
        overFastFloat.push_back(fastFloat / ours.back());
        if (!IsSame(byOurs, byStreams) || !IsSame(byOurs, byFastFloat)) {
            std::fprintf(stderr, "%s: the readers differ\n", path.c_str());
            return false;
        }
    }
    const double megabytes = static_cast<double>(std::filesystem::file_size(path)) * 1e-6;
    const double time = SpreadOf(ours).median;
    const Spread streams = SpreadOf(overStreams);
    const Spread fastFloat = SpreadOf(overFastFloat);
    const std::string name = std::filesystem::path(path).filename().string();
    std::printf("%-22s %5.1f %8.2f %6.0f %7.1f (%.1f to %.1f) %8.2f (%.2f to %.2f)\n", name.c_str(),
                megabytes, time, megabytes / time * 1e3, streams.median, streams.low, streams.high,
                fastFloat.median, fastFloat.low, fastFloat.high);
    return true;
}

/// Coordinates of a town two kilometres wide, as an exporter prints them.
bool WriteTown(int vertices, const std::string& path) {
    std::ofstream file(path);
    file << "XT3DSTATIC\n1\ndir/\n1\nNULL\nNULL\nNULL\n" << vertices << "\n";
    unsigned state = 12345;
    const auto between = [&state](double low, double high) {
        state = state * 1664525 + 1013904223;
        return low + (high - low) * (state >> 8) / 16777216;
    };
    for (int i = 0; i < vertices; ++i) {
        char line[200];
        std::snprintf(line, sizeof line, "%f %f %f %f %f %f %f %f %f %f\n", between(-2000, 2000),
                      between(-40, 320), between(-2000, 2000), between(-1, 1), between(-1, 1),
                      between(-1, 1), between(0, 2), between(0, 2), between(0, 1), between(0, 1));
        file << line;
    }
    return static_cast<bool>(file.flush());
}

int Make(const Tools::Arguments& arguments) {
    const std::string& path = arguments.operands[1];
    if (!WriteTown(static_cast<int>(Tools::ParseNumber(arguments.operands[0])), path))
        throw std::runtime_error(path + " cannot be written");
    return EXIT_SUCCESS;
}

int MeasureAll(const Tools::Arguments& arguments) {
    std::puts("file                      MB       ms   MB/s   x streams             x fast_float");
    bool same = true;
    for (const std::string& path : arguments.operands)
        same = Measure(path, arguments.WholeNumber("--rounds", usualRounds)) && same;
    return same ? EXIT_SUCCESS : EXIT_FAILURE;
}

const Tools::Program program = {
    .name = "nimbrel_mesh_bench",
    .purpose =
        "Reads each mesh by three readers, and prints how long each takes. With --make, writes a "
        "mesh of\nN vertices instead.",
    .options = {{.name = "--rounds",
                 .value = "N",
                 .kind = Tools::WholeNumberKind(1, mostRounds),
                 .example = "21",
                 .meaning = "reads each N times (21)"}},
    .modes = {{.operands = {{"FILE", Tools::FileToRead("meshes"), Tools::Count::OneOrMore}},
               .example = "Data/Gfx/City/city.xt3dstatic",
               .options = {"--rounds"},
               .run = MeasureAll},
              {.name = "--make",
               .operands = {{"N", Tools::WholeNumberKind(3, mostVertices)},
                            {"FILE", Tools::FileToWrite({".xt3dstatic"})}},
               .example = "60000 town.xt3dstatic",
               .run = Make}}};

} // namespace

int main(int count, char** arguments) {
    return program.Run(count, arguments);
}
