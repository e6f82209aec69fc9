#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace Vell {

/// Opens a file to read it, without waiting: a pipe or a device, whose other end may never come, is
/// refused like a file that is not there. Every loader opens its files this way.
///
/// Returns a descriptor that the caller closes; -1 for what is missing, may not be read or is no
/// regular file (a folder, a pipe, a socket, a device).
int OpenRegularFile(const std::string& path);

/// Closes a stream that FileStream owns.
struct FileCloser {
    /// `file` is never null.
    void operator()(FILE* file) const {
        static_cast<void>(std::fclose(file)); // nothing was written
    }
};
using FileStream = std::unique_ptr<FILE, FileCloser>;

/// The same as a stream of bytes; null where there is no descriptor.
FileStream OpenRegularStream(const std::string& path);

} // namespace Vell
