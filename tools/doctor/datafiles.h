#pragma once

#include "tools/doctor/graphics.h"
#include "tools/doctor/row.h"

#include <map>
#include <string>
#include <vector>

namespace Doctor {

/// A file that the demo loads.
struct DataFile {
    std::string path;    ///< as the demo asks for it: "Data/Gfx/water.jpg"
    std::string without; ///< what is missing in the show without it
};

/// Every file that the demo loads, in its order, each once: those that the demo's code names, and
/// those that the meshes name, as far as the meshes in the working directory can be read. The
/// music is the last.
std::vector<DataFile> DataFiles();

/// The published sums, in the form that sha256sum writes and checks.
constexpr const char* sumsFile = "Data/SHA256SUMS";

/// Sum by path of a file in that form; empty when there is none. Lines of another form are left
/// out.
std::map<std::string, std::string> ReadSums(const std::string& path);

/// The row about the working directory.
Row FolderRow();

/// One row that sums up all files, and a detail row for each. Without a folder "Data" the details
/// say that they were not looked at.
Table DataRows();

/// The largest of the pictures that are there.
LargestPicture FindLargestPicture();

} // namespace Doctor
