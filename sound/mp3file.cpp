#include "sound/mp3file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vell::Sound {

std::shared_ptr<const Mp3File> Mp3File::Open(const std::string& path) {
    // Without waiting: a pipe that nobody writes to would hold the program up for ever.
    const int opened = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (opened < 0)
        return nullptr;
    const std::shared_ptr<Mp3File> file(new Mp3File(opened));
    struct stat status {};
    if (fstat(opened, &status) != 0 || !S_ISREG(status.st_mode))
        return nullptr;
    file->Measure();
    return file->Frames() > 0 ? file : nullptr;
}

Mp3File::~Mp3File() {
    close(descriptor);
}

void Mp3File::Measure() {
    Mp3Decoder decoder(descriptor);
    rate = decoder.Rate();
    if (rate > 0)
        length = decoder.Measure();
}

} // namespace Vell::Sound
