// Stacks pictures of one size into one PNG, first at the top, each with the time in its file's
// name ("frame_0013.900.ppm") written beside it.
//
//   nimbrel_stack OUT.png FRAME.ppm...

#include "tools/picture/picture.h"
#include "tools/picture/sheet.h"

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace Tools;

/// "some/frame_0013.900.ppm" -> "13.900"; other names -> nothing.
std::string Label(const std::string& path) {
    const std::size_t begin = path.rfind("frame_");
    const std::size_t end = path.rfind(".ppm");
    if (begin == std::string::npos || end == std::string::npos || end < begin + 6)
        return "";
    std::string label = path.substr(begin + 6, end - begin - 6);
    while (label.size() > 1 && label[0] == '0' && label[1] != '.')
        label.erase(0, 1);
    return label;
}

std::string Size(const Picture& picture) {
    return std::to_string(picture.width) + " x " + std::to_string(picture.height);
}

/// Ends with a message when the picture from `path` is not as large as the first.
void MustBeOfOneSize(const Picture& first, const Picture& picture, const std::string& path) {
    if (Size(picture) == Size(first))
        return;
    std::ostringstream message;
    message << path << ": expected " << Size(first) << " pixels, found " << Size(picture);
    throw std::runtime_error(message.str());
}

void Stack(const std::string& out, const std::vector<std::string>& paths) {
    std::vector<SheetEntry> entries;
    for (const std::string& path : paths) {
        entries.push_back({ReadPpm(path), Label(path)});
        MustBeOfOneSize(entries.front().picture, entries.back().picture, path);
    }
    WritePng(MakeSheet(entries), out);
}

} // namespace

int main(int count, char** arguments) {
    if (count < 3) {
        std::cerr << "usage: nimbrel_stack OUT.png FRAME.ppm...\n";
        return EXIT_FAILURE;
    }
    try {
        Stack(arguments[1], {arguments + 2, arguments + count});
    } catch (const std::exception& error) {
        std::cerr << "nimbrel_stack: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
