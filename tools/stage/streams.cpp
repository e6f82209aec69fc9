#include "tools/stage/streams.h"

#include <array>

#include <sys/mman.h>

namespace Tools {

Descriptor OpenKept() {
    return {memfd_create("kept", MFD_CLOEXEC), "cannot keep what a program writes"};
}

std::string ReadKept(int file) {
    std::string text;
    std::array<char, 1 << 16> piece{};
    for (;;) {
        const ssize_t count =
            pread(file, piece.data(), piece.size(), static_cast<off_t>(text.size()));
        if (count <= 0)
            return text;
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
}

Descriptor OpenNowhere() {
    return {open("/dev/null", O_RDWR | O_CLOEXEC), "cannot open /dev/null"};
}

void SetStandardStreams(int input, int output, int errors) {
    const std::array<int, 3> streams = {input, output, errors};
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream)
        if (streams[static_cast<std::size_t>(stream)] >= 0)
            dup2(streams[static_cast<std::size_t>(stream)], stream);
}

} // namespace Tools
