#include "base/regular_file.h"

#include "base/stop_request.h"

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>

#include <ext/stdio_filebuf.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kelmo {

namespace {

bool isRegular(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool isRegular(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

int openToRead(const std::string& path) {
    constexpr std::chrono::milliseconds interval(10);
    constexpr int mostAttempts = 6000;
    if (path.find('\0') != std::string::npos) {
        errno = ENOENT; // what stands before it is another file
        return -1;
    }
    for (int attempt = 1;; ++attempt) {
        const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
        if (descriptor >= 0 || (errno != EWOULDBLOCK && errno != EINTR) ||
            attempt == mostAttempts) {
            return descriptor;
        }
        stopIfWanted();
        std::this_thread::sleep_for(interval);
    }
}

bool openRegularFile(std::ifstream& in, const std::string& path) {
    // Asked before as well: to open a device may already move something.
    const int descriptor = isRegular(path) ? openToRead(path) : -1;
    if (descriptor < 0) {
        return false;
    }
    if (!isRegular(descriptor)) { // exchanged in between
        ::close(descriptor);
        return false;
    }
    // The one way to make a file stream of a descriptor; it closes it from now on.
    __gnu_cxx::stdio_filebuf<char> buffer(descriptor, std::ios::in);
    if (!buffer.is_open()) {
        ::close(descriptor);
        return false;
    }
    static_cast<std::filebuf&>(*in.rdbuf()) = std::move(buffer);
    in.clear();
    return true;
}

std::string readFailureText(int error) {
    return error == EWOULDBLOCK ? "It claims to be a regular file but lets its reader wait"
                                : std::generic_category().message(error);
}

bool isDirectory(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

} // namespace kelmo
