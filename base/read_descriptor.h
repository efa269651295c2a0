// A file descriptor for reading that is closed with its object.
#pragma once

#include "base/regular_file.h"

#include <cerrno>
#include <cstddef>
#include <span>
#include <string>

#include <unistd.h>

namespace kelmo {

/// Owns the descriptor of one file.
class cReadDescriptor {
  public:
    /// Opened as openToRead() does; throws as that does.
    explicit cReadDescriptor(const std::string& path) : number(openToRead(path)) {}
    ~cReadDescriptor() {
        if (number >= 0) {
            ::close(number);
        }
    }
    cReadDescriptor(const cReadDescriptor&) = delete;
    cReadDescriptor& operator=(const cReadDescriptor&) = delete;

    /// How many bytes were read, 0 at the end and -1 for an error. Signals do not end it.
    ssize_t readInto(std::span<char> buffer) const {
        ssize_t count = 0;
        do {
            count = ::read(number, buffer.data(), buffer.size());
        } while (count < 0 && errno == EINTR);
        return count;
    }

    const int number; ///< -1 when there is none
};

} // namespace kelmo
