#pragma once

#include "tools/stage/descriptor.h"

#include <string>

namespace Tools {

/// A file in memory for what a child process writes: a pipe would stop a child that writes more
/// than it holds while nobody reads, and a file in a folder has to have a folder.
Descriptor OpenKept();

/// Everything that was written into it so far.
std::string ReadKept(int file);

/// Where reading comes to the end at once and what is written is dropped.
Descriptor OpenNowhere();

/// In a child process: makes these its standard input, output and errors; -1 leaves one as it is.
void SetStandardStreams(int input, int output, int errors);

} // namespace Tools
