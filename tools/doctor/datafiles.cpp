#include "tools/doctor/datafiles.h"

#include "tools/doctor/meshtextures.h"
#include "tools/doctor/picturesize.h"
#include "tools/doctor/sha256.h"

#include "demo/assets.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace fs = std::filesystem;

namespace Doctor {

namespace {

const char* const dataFolder = "Data";

// What is missing in the show without each file that the demo's code asks for, in its order.
const DataFile namedByCode[] = {
    {Assets::cityMesh, "no city"},
    {Assets::cityVertexShader, "the city without its light"},
    {Assets::cityFragmentShader, "the city without its light"},
    {Assets::greenWispMesh, "no green wisp"},
    {Assets::wispVertexShader, "wisps that do not face the viewer"},
    {Assets::wispFragmentShader, "wisps that do not face the viewer"},
    {Assets::redWispMesh, "no red wisp"},
    {Assets::blueWispMesh, "no blue wisp"},
    {Assets::fishMesh, "no fish"},
    {Assets::skyXPos, "a hole in the sky"},
    {Assets::skyXNeg, "a hole in the sky"},
    {Assets::skyYPos, "a hole in the sky"},
    {Assets::skyYNeg, "a hole in the sky"},
    {Assets::skyZPos, "a hole in the sky"},
    {Assets::skyZNeg, "a hole in the sky"},
    {Assets::waterNormals, "water without waves"},
    {Assets::logo, "no logo"},
    {Assets::music, "no music, and effects that do not beat"},
};
static_assert(std::size(namedByCode) == std::size(Assets::loaded));
const char* const withoutTexture = "a surface without its picture";

const char* const repairAdvice =
    "bring the files of Data/ back from where you took them (git checkout -- Data), or remake them "
    "with art/make";

/// Only a regular file: a pipe's other end may never come. Another is not open.
std::ifstream Open(const std::string& path) {
    std::error_code none;
    std::ifstream in;
    if (fs::is_regular_file(path, none))
        in.open(path, std::ios::binary);
    return in;
}

bool Known(const std::vector<DataFile>& files, const std::string& path) {
    return std::any_of(files.begin(), files.end(),
                       [&](const DataFile& file) { return file.path == path; });
}

void AddTextures(std::vector<DataFile>& files, const std::string& mesh) {
    std::ifstream in = Open(mesh);
    for (const std::string& texture : MeshTextures(in))
        if (!Known(files, texture))
            files.push_back({texture, withoutTexture});
}

bool DataIsThere() {
    std::error_code none;
    return fs::is_directory(dataFolder, none);
}

Row DetailRow(const DataFile& file) {
    Row row{std::string("data:") + file.path, file.path};
    row.detail = true;
    return row;
}

/// How the file compares with the one that was published.
void Compare(const std::string& sum, const std::string& published, const DataFile& file, Row& row) {
    if (published.empty())
        row.Set(State::Warn, "no published sum to compare it with", repairAdvice);
    else if (sum != published)
        row.Set(State::Warn, "damaged or changed", repairAdvice);
    else
        row.Set(State::Ok, "as published");
    row.values.push_back({"published_sha256", published});
    row.values.push_back({"without", file.without});
}

Row FileRow(const DataFile& file, const std::string& published) {
    Row row = DetailRow(file);
    std::error_code failed;
    const bool present = fs::exists(file.path, failed);
    std::ifstream in = Open(file.path);
    row.values = {{"present", present ? "yes" : "no"}};
    if (!in.is_open()) {
        row.Set(State::Warn, (present ? "cannot be read: " : "missing: ") + file.without,
                repairAdvice);
        return row;
    }
    const std::string sum = SumOf(in);
    row.values.push_back(
        NumberValue("bytes", static_cast<double>(fs::file_size(file.path, failed))));
    row.values.push_back({"sha256", sum});
    Compare(sum, published, file, row);
    return row;
}

double Bytes(const Row& row) {
    for (const Value& value : row.values)
        if (value.name == "bytes")
            return std::stod(value.text);
    return 0.0;
}

/// Names the first details that are not as they should be; the others are counted.
std::string NameWrong(const Table& details) {
    constexpr int mostNames = 3; // on one line no more than can be read
    std::string names;
    int wrong = 0;
    for (const Row& detail : details)
        if (detail.state != State::Ok && ++wrong <= mostNames)
            names += (wrong > 1 ? ", " : "") + detail.title + " (" + detail.finding + ")";
    if (wrong > mostNames)
        names += " and " + std::to_string(wrong - mostNames) + " more, which --json names";
    return names;
}

/// The row that stands for all the details.
Row SumUp(const Table& details) {
    Row row{"data", "Data files"};
    double bytes = 0.0;
    for (const Row& detail : details)
        bytes += Bytes(detail);
    const auto good = std::count_if(details.begin(), details.end(),
                                    [](const Row& detail) { return detail.state == State::Ok; });
    row.values = {NumberValue("files", static_cast<double>(details.size())),
                  NumberValue("as_published", static_cast<double>(good)),
                  NumberValue("bytes", bytes)};
    const std::string wrong = NameWrong(details);
    if (wrong.empty())
        row.Set(State::Ok, "all " + std::to_string(good) + " files are there, as published");
    else
        row.Set(State::Warn, wrong, repairAdvice);
    return row;
}

} // namespace

std::vector<DataFile> DataFiles() {
    std::vector<DataFile> files;
    for (const DataFile& file : namedByCode) {
        files.push_back(file);
        if (fs::path(file.path).extension() == ".xt3dstatic")
            AddTextures(files, file.path);
    }
    return files;
}

std::map<std::string, std::string> ReadSums(const std::string& path) {
    constexpr std::size_t digits = 64;
    constexpr std::size_t gap = 2; // a blank, and a blank or the star of a binary file
    std::map<std::string, std::string> sums;
    std::ifstream in = Open(path);
    for (std::string line; std::getline(in, line);)
        if (line.find_first_not_of("0123456789abcdef") == digits && line.size() > digits + gap)
            sums[line.substr(digits + gap)] = line.substr(0, digits);
    return sums;
}

Row FolderRow() {
    Row row{"folder", "Folder"};
    std::error_code none;
    const std::string here = fs::current_path(none).string();
    row.values = {{"path", here}};
    if (DataIsThere())
        row.Set(State::Ok, here + " has Data/");
    else
        row.Set(State::Fail, "there is no Data/ in " + here,
                "change into Nimbrel's folder, where ./play is, first");
    return row;
}

Table DataRows() {
    const std::map<std::string, std::string> published = ReadSums(sumsFile);
    Table details;
    for (const DataFile& file : DataFiles()) {
        const auto found = published.find(file.path);
        details.push_back(FileRow(file, found == published.end() ? "" : found->second));
    }
    Table table = {SumUp(details)};
    if (!DataIsThere()) {
        table.front().Set(State::Unknown, "not looked at: there is no Data/");
        for (Row& detail : details)
            detail.Set(State::Unknown, "not looked at: there is no Data/");
    }
    Append(table, details);
    return table;
}

LargestPicture FindLargestPicture() {
    LargestPicture largest;
    for (const DataFile& file : DataFiles()) {
        std::ifstream in = Open(file.path);
        const PictureSize size = in.is_open() ? ReadPictureSize(in) : PictureSize();
        if (std::max(size.width, size.height) > std::max(largest.width, largest.height))
            largest = {file.path, size.width, size.height};
    }
    return largest;
}

} // namespace Doctor
