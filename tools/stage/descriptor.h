#pragma once

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace Tools {

/// Owns an open file descriptor; closes it with the object.
class Descriptor {
public:
    Descriptor() = default;

    /// Takes over what a system call has just opened for `purpose`, which the message names: throws
    /// std::runtime_error when that was refused (`opened` is negative, errno tells why).
    ///
    /// A process whose standard input is closed gets number 0 from the next open(). Nothing of ours
    /// may lie on the three standard numbers, where a child's streams go, so it moves up.
    Descriptor(int opened, const std::string& purpose) : number(opened) {
        if (number >= 0 && number <= STDERR_FILENO) {
            number = fcntl(opened, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
            close(opened);
        }
        if (number < 0)
            throw std::runtime_error(purpose + ": " + std::generic_category().message(errno));
    }
    ~Descriptor() { Close(); }
    Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number, other.number);
        return *this;
    }

    int Get() const { return number; } ///< -1: there is none

    /// Another number for the same open file, which is closed in programs that are started.
    Descriptor Copy(const std::string& purpose) const {
        return {fcntl(number, F_DUPFD_CLOEXEC, 0), purpose};
    }

    bool IsOpen() const { return number >= 0; }

    void Close() {
        if (number >= 0)
            close(number);
        number = -1;
    }

private:
    int number = -1;
};

/// The two ends of a pipe, which programs that are started do not get.
struct Pipe {
    /// Throws std::runtime_error when there is none to be had.
    explicit Pipe(const std::string& purpose) {
        int ends[2] = {-1, -1};
        const bool made = pipe2(ends, O_CLOEXEC) == 0;
        reading = Descriptor(made ? ends[0] : -1, purpose);
        writing = Descriptor(made ? ends[1] : -1, purpose);
    }

    Descriptor reading;
    Descriptor writing;
};

} // namespace Tools
