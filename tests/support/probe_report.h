#pragma once

#include <map>
#include <string>

/// The "name value" lines of a file, such as the probe's report, by name; empty when there is no
/// such file.
std::map<std::string, std::string> ReadReport(const std::string& path);
