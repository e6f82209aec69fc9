#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

/// The bytes of one attempt as a regular file, which costs no disk.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* bytes, std::size_t size) : file(memfd_create("attempt", 0)) {
        if (pwrite(file, bytes, size, 0) != static_cast<ssize_t>(size))
            std::abort();
    }
    ~MemoryFile() { close(file); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    int Descriptor() const { return file; }
    std::string Path() const { return "/proc/self/fd/" + std::to_string(file); }

private:
    int file;
};
