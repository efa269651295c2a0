#include "input/line_runs.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace kelmo {

namespace {

constexpr std::streamsize usualLength = 1 << 15;
constexpr std::size_t columnsKept = 128; // the last that is read is the 80th

} // namespace

std::string cLineRuns::next() {
    std::string run = std::exchange(begun, {});
    while (in) {
        if (request != nullptr) {
            request->check(); // a line may be gigabytes long
        }
        const std::size_t searched = run.size();
        run.resize(searched + usualLength);
        in.read(run.data() + searched, usualLength);
        run.resize(searched + static_cast<std::size_t>(in.gcount()));
        const std::size_t lineEnd = run.rfind('\n');
        if (in && lineEnd != std::string::npos) {
            begun = run.substr(lineEnd + 1);
            run.resize(lineEnd + 1);
            break;
        }
        if (in.bad()) { // what the error cut off is no line
            run.resize(lineEnd == std::string::npos ? 0 : lineEnd + 1);
        } else if (lineEnd == std::string::npos) {
            run.resize(std::min(run.size(), columnsKept));
        }
    }
    return run;
}

} // namespace kelmo
