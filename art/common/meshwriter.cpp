#include "art/common/meshwriter.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace Art {

namespace {

constexpr const char* fileMagic = "XT3DSTATIC";
constexpr const char* noTextureName = "NULL";
// How far a normal's length may be from 1: what rounding to four digits can do.
constexpr float normalTolerance = 0.001f;

bool IsOneToken(const std::string& name) {
    for (const char c : name)
        if (std::isspace(static_cast<unsigned char>(c)) != 0)
            return false;
    return true;
}

std::string At(std::size_t vertex, std::size_t subMesh) {
    return "vertex " + std::to_string(vertex) + " of sub-mesh " + std::to_string(subMesh) + ": ";
}

std::string WhyNotVertex(const MeshVertex& v, bool hasLightmap) {
    const float numbers[] = {v.position.x, v.position.y, v.position.z, v.normal.x,
                             v.normal.y,   v.normal.z,   v.texcoord.x, v.texcoord.y};
    for (const float number : numbers)
        if (!std::isfinite(number))
            return "expected finite numbers, found " + std::to_string(number);
    if (std::abs(Length(v.normal) - 1) > normalTolerance)
        return "expected a normal of length 1, found " + std::to_string(Length(v.normal));
    const vec2 l = v.lightmap;
    if (hasLightmap && !(l.x >= 0 && l.x <= 1 && l.y >= 0 && l.y <= 1))
        return "expected light-map coordinates in 0..1, found " + std::to_string(l.x) + " " +
               std::to_string(l.y);
    return {};
}

std::string WhyNotSubMesh(const SubMesh& sub, std::size_t index, bool hasLightmap) {
    const std::string place = "sub-mesh " + std::to_string(index) + ": ";
    for (const std::string& name : sub.textures)
        if (!IsOneToken(name) || name == noTextureName)
            return (place + "expected a texture name without blanks, found \"").append(name) + "\"";
    if (sub.vertices.empty() || sub.vertices.size() % 3 != 0)
        return place + "expected a positive multiple of 3 vertices, found " +
               std::to_string(sub.vertices.size());
    for (std::size_t i = 0; i < sub.vertices.size(); ++i)
        if (const std::string why = WhyNotVertex(sub.vertices[i], hasLightmap); !why.empty())
            return At(i, index) + why;
    return {};
}

/// Appends `value` with `digits` decimals, trailing zeros removed, and a blank.
void AppendNumber(std::string& text, float value, int digits) {
    char buffer[64];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, digits);
    std::string number(buffer, end.ptr);
    if (number.find('.') != std::string::npos) {
        number.erase(number.find_last_not_of('0') + 1);
        if (number.back() == '.')
            number.pop_back();
    }
    text += number == "-0" ? "0" : number;
    text += ' ';
}

void AppendVertex(std::string& text, const MeshVertex& v, bool hasLightmap) {
    constexpr int positionDigits = 4;
    constexpr int coordinateDigits = 5;
    for (const float c :
         {v.position.x, v.position.y, v.position.z, v.normal.x, v.normal.y, v.normal.z})
        AppendNumber(text, c, positionDigits);
    AppendNumber(text, v.texcoord.x, coordinateDigits);
    AppendNumber(text, v.texcoord.y, coordinateDigits);
    if (hasLightmap) {
        AppendNumber(text, v.lightmap.x, coordinateDigits);
        AppendNumber(text, v.lightmap.y, coordinateDigits);
    }
    text.back() = '\n';
}

std::string MeshText(const MeshFile& mesh) {
    std::string text = std::string(fileMagic) + "\n" + std::to_string(mesh.subMeshes.size()) +
                       "\n" + mesh.textureDirectory + "\n" + (mesh.hasLightmap ? "1" : "0") + "\n";
    for (const SubMesh& sub : mesh.subMeshes) {
        for (const std::string& name : sub.textures)
            text += (name.empty() ? noTextureName : name) + '\n';
        text += std::to_string(sub.vertices.size()) + '\n';
        for (const MeshVertex& v : sub.vertices)
            AppendVertex(text, v, mesh.hasLightmap);
    }
    return text;
}

/// A stream of tokens that remembers the first failure.
class Tokens {
public:
    explicit Tokens(std::istream& input) : stream(input) {}

    std::string Word(const std::string& place) {
        std::string word;
        if (!(stream >> word))
            Fail(place + "expected a word, found the end of the file");
        return word;
    }
    float Number(const std::string& place) {
        const std::string word = Word(place);
        float value = 0;
        const char* end = word.data() + word.size();
        const auto result = std::from_chars(word.data(), end, value);
        if (result.ec != std::errc() || result.ptr != end)
            Fail(place + "expected a number, found \"" + word + "\"");
        return value;
    }
    int Count(const std::string& place) {
        const float value = Number(place);
        if (value < 1 || value != std::floor(value) || value > 1e7f)
            Fail(place + "expected a positive count");
        return failure.empty() ? static_cast<int>(value) : 0;
    }
    void Fail(const std::string& why) {
        if (failure.empty())
            failure = why;
    }
    const std::string& Failure() const { return failure; }

private:
    std::istream& stream;
    std::string failure;
};

MeshVertex ReadVertex(Tokens& tokens, const std::string& place, bool hasLightmap) {
    float n[10] = {};
    const int count = hasLightmap ? 10 : 8;
    const std::string expected = place + "of " + std::to_string(count) + " numbers: ";
    for (int i = 0; i < count; ++i)
        n[i] = tokens.Number(expected);
    return {{n[0], n[1], n[2]}, {n[3], n[4], n[5]}, {n[6], n[7]}, {n[8], n[9]}};
}

SubMesh ReadSubMesh(Tokens& tokens, std::size_t index, bool hasLightmap) {
    SubMesh sub;
    const std::string place = "sub-mesh " + std::to_string(index) + ": ";
    for (std::string& name : sub.textures) {
        name = tokens.Word(place);
        if (name == noTextureName)
            name.clear();
    }
    const int count = tokens.Count(place);
    for (int i = 0; i < count && tokens.Failure().empty(); ++i)
        sub.vertices.push_back(ReadVertex(tokens, At(i, index), hasLightmap));
    return sub;
}

} // namespace

std::string WhyNotWritable(const MeshFile& mesh) {
    if (mesh.subMeshes.empty())
        return "mesh: expected at least one sub-mesh, found none";
    if (mesh.textureDirectory.empty() || !IsOneToken(mesh.textureDirectory))
        return "mesh: expected a texture directory without blanks, found \"" +
               mesh.textureDirectory + "\"";
    for (std::size_t i = 0; i < mesh.subMeshes.size(); ++i)
        if (std::string why = WhyNotSubMesh(mesh.subMeshes[i], i, mesh.hasLightmap); !why.empty())
            return why;
    return {};
}

bool WriteMesh(const std::string& path, const MeshFile& mesh) {
    const std::string why = WhyNotWritable(mesh);
    const std::string beside = path + ".part";
    if (why.empty()) {
        std::ofstream file(beside, std::ios::binary);
        file << MeshText(mesh);
        file.close();
        if (file && std::rename(beside.c_str(), path.c_str()) == 0)
            return true;
    }
    std::fprintf(stderr, "%s: %s\n", path.c_str(), why.empty() ? "cannot be written" : why.c_str());
    return false;
}

bool ReadMesh(const std::string& path, MeshFile& mesh, std::string& error) {
    std::ifstream file(path);
    Tokens tokens(file);
    mesh = {};
    if (!file)
        tokens.Fail("cannot be opened");
    else if (const std::string magic = tokens.Word("start: "); magic != fileMagic)
        tokens.Fail("start: expected " + std::string(fileMagic) + ", found \"" + magic + "\"");
    const int count = tokens.Failure().empty() ? tokens.Count("sub-mesh count: ") : 0;
    if (tokens.Failure().empty()) {
        mesh.textureDirectory = tokens.Word("texture directory: ");
        mesh.hasLightmap = tokens.Number("light-map flag: ") != 0;
    }
    for (int i = 0; i < count && tokens.Failure().empty(); ++i)
        mesh.subMeshes.push_back(ReadSubMesh(tokens, i, mesh.hasLightmap));
    if (tokens.Failure().empty())
        return true;
    error = path + ": " + tokens.Failure();
    return false;
}

std::size_t VertexCount(const MeshFile& mesh) {
    std::size_t count = 0;
    for (const SubMesh& sub : mesh.subMeshes)
        count += sub.vertices.size();
    return count;
}

} // namespace Art
