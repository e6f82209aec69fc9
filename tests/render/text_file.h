#pragma once

#include <gtest/gtest.h>

#include <string>

#include <sys/mman.h>
#include <unistd.h>

/// A file in memory, written anew for each text.
class TextFile {
public:
    explicit TextFile(const std::string& text = "") : file(memfd_create("text", 0)) { Set(text); }
    ~TextFile() { close(file); }
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    void Set(const std::string& text) const {
        const auto size = static_cast<ssize_t>(text.size());
        if (pwrite(file, text.data(), text.size(), 0) != size || ftruncate(file, size) != 0)
            ADD_FAILURE() << "could not write";
    }
    std::string Path() const { return "/proc/self/fd/" + std::to_string(file); }

private:
    int file;
};
