#include "base/standard_input.h"

#include "base/stop_request.h"

#include <cerrno>
#include <system_error>

#include <poll.h>
#include <unistd.h>

namespace kelmo {

cStandardInput::int_type cStandardInput::underflow() {
    constexpr int interval = 100; // ms
    for (;;) {
        stopIfWanted();
        pollfd request{STDIN_FILENO, POLLIN, 0};
        const int ready = ::poll(&request, 1, interval);
        if (ready == 0 || (ready < 0 && errno == EINTR)) {
            continue;
        }
        const ssize_t size = ::read(STDIN_FILENO, buffer.data(), buffer.size());
        if (size > 0) {
            setg(buffer.data(), buffer.data(), buffer.data() + size);
            return traits_type::to_int_type(buffer.front());
        }
        if (size == 0) {
            return traits_type::eof();
        }
        if (errno != EINTR && errno != EAGAIN) {
            throw std::system_error(errno, std::generic_category());
        }
    }
}

} // namespace kelmo
