#pragma once

#include <string>

namespace Tools {

// Whether files can be where a program was told that they are, before the work for them begins.
// Each throws WrongUsage, which names the path, what is wrong with it and what would be right.

/// A file can be written to `path`: its folder is there and takes new files. Nothing stays behind;
/// a file that is there may be written over.
void CheckFileToWrite(const std::string& path);

/// There is a file that can be read.
void CheckFileToRead(const std::string& path);

/// There is a folder.
void CheckFolder(const std::string& path);

/// The folder takes new files. It is made, with those that it lies in, if it is not there.
void MakeFolder(const std::string& path);

/// The same, but what was made for the answer is gone afterwards.
void CheckFolderToFill(const std::string& path);

} // namespace Tools
