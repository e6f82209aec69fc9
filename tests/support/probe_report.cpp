#include "tests/support/probe_report.h"

#include <fstream>

std::map<std::string, std::string> ReadReport(const std::string& path) {
    std::map<std::string, std::string> report;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        const std::size_t blank = line.find(' ');
        report[line.substr(0, blank)] = blank == std::string::npos ? "" : line.substr(blank + 1);
    }
    return report;
}
