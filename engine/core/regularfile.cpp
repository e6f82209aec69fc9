#include "engine/core/regularfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vell {

int OpenRegularFile(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat status {};
    if (file < 0 || (fstat(file, &status) == 0 && S_ISREG(status.st_mode)))
        return file;
    close(file);
    return -1;
}

FileStream OpenRegularStream(const std::string& path) {
    const int file = OpenRegularFile(path);
    FileStream stream(file >= 0 ? fdopen(file, "rb") : nullptr);
    if (stream == nullptr && file >= 0) // no memory
        close(file);
    return stream;
}

} // namespace Vell
