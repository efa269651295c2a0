#include "tests/support/directory_watch.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <stdexcept>
#include <system_error>

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace kelmo {

cDirectoryWatch::cDirectoryWatch(const std::filesystem::path& directory)
    : descriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (::inotify_add_watch(descriptor, directory.c_str(), IN_CREATE | IN_MODIFY | IN_MOVED_TO) <
        0) {
        throw std::system_error(errno, std::generic_category(), directory);
    }
}

cDirectoryWatch::~cDirectoryWatch() {
    ::close(descriptor);
}

const std::vector<cDirectoryWatch::sEvent>& cDirectoryWatch::events() {
    alignas(inotify_event) std::array<char, 1 << 16> buffer;
    for (;;) {
        const ssize_t length = ::read(descriptor, buffer.data(), buffer.size());
        if (length <= 0) {
            return recorded;
        }
        for (std::size_t begin = 0; begin < static_cast<std::size_t>(length);) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + begin, sizeof event);
            if ((event.mask & IN_Q_OVERFLOW) != 0) {
                throw std::runtime_error("events of a directory were lost");
            }
            recorded.push_back(
                {(event.mask & IN_MOVED_TO) != 0, buffer.data() + begin + sizeof event});
            begin += sizeof event + event.len;
        }
    }
}

bool cDirectoryWatch::waitForEvents(std::size_t count) {
    using tClock = std::chrono::steady_clock;
    constexpr std::chrono::minutes patience(10);
    constexpr int longestPause = 1000; // ms
    const auto end = tClock::now() + patience;
    while (events().size() < count) {
        if (tClock::now() > end) {
            return false;
        }
        pollfd waiting{descriptor, POLLIN, 0};
        ::poll(&waiting, 1, longestPause);
    }
    return true;
}

std::vector<std::string> cDirectoryWatch::renamedTo() {
    std::vector<std::string> names;
    for (const sEvent& event : events()) {
        if (event.isRenamed) {
            names.push_back(event.name);
        }
    }
    return names;
}

} // namespace kelmo
