#include "batch/reporter.h"

#include "batch/progress_line.h"

#include <cerrno>
#include <cstdlib>
#include <string_view>

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace kelmo {

namespace {

constexpr const char* colourOff = "\033[0m";
constexpr const char* lineStartAndClear = "\r\033[K";

/// The escape sequence of a message's colour; none for progress, which has the terminal's own.
const char* colourOn(eSeverity severity) {
    switch (severity) {
    case eSeverity::error:
        return "\033[31m"; // red
    case eSeverity::warning:
        return "\033[33m"; // yellow
    case eSeverity::progress:
        break;
    }
    return "";
}

bool isProgress(const sMessage& message) {
    return message.severity == eSeverity::progress;
}

int terminalColumns() {
    constexpr int usualColumns = 80;
    struct winsize size {};
    const bool isKnown = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usualColumns;
}

} // namespace

sReporterManner mannerOfStandardError() {
    const char* noColour = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    const bool isTerminal = ::isatty(STDERR_FILENO) == 1 &&
                            (terminal == nullptr || std::string_view(terminal) != "dumb");
    const bool mayColour = noColour == nullptr || *noColour == '\0';
    return {isTerminal && mayColour, isTerminal, false};
}

void cReporter::show(const sMessage& message) {
    show(std::vector<sMessage>{message});
}

void cReporter::show(const std::vector<sMessage>& messages) {
    std::string text;
    for (const sMessage& message : messages) {
        if (!manner.isQuiet || !isProgress(message)) {
            text += formatted(message);
        }
    }
    if (text.empty()) {
        return;
    }
    const std::lock_guard lock(mutex);
    clearBar();
    write(text);
    if (hasProgressBegun) {
        drawBar();
    }
}

std::string cReporter::formatted(const sMessage& message) const {
    std::string_view text = message.text;
    while (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    const std::string_view colour = manner.isColoured ? colourOn(message.severity) : "";
    std::string line(colour);
    line += text;
    line += colour.empty() ? "" : colourOff;
    return line + '\n';
}

void cReporter::beginProgress(std::size_t files) {
    const std::lock_guard lock(mutex);
    filesDone = 0;
    filesTakenOver = 0;
    filesInAll = files;
    start = std::chrono::steady_clock::now();
    hasProgressBegun = manner.hasProgressBar;
    if (hasProgressBegun) {
        drawBar();
    }
}

void cReporter::countFile() {
    countFile(filesDone);
}

void cReporter::countFileTakenOver() {
    countFile(filesTakenOver);
}

void cReporter::countFile(std::size_t& counter) {
    // More often than this no eye can follow, and slow terminals would hold up the run.
    constexpr std::chrono::milliseconds shortestInterval(100);
    const std::lock_guard lock(mutex);
    ++counter;
    const bool isDue = std::chrono::steady_clock::now() - lastDrawing >= shortestInterval;
    if (hasProgressBegun && (isDue || filesDone + filesTakenOver == filesInAll)) {
        clearBar();
        drawBar();
    }
}

void cReporter::endProgress() {
    const std::lock_guard lock(mutex);
    clearBar();
    hasProgressBegun = false;
}

void cReporter::drawBar() {
    lastDrawing = std::chrono::steady_clock::now();
    const std::chrono::duration<double> elapsed = lastDrawing - start;
    // The last column stays free: some terminals begin a new line when it is written.
    write(progressLine({filesDone, filesTakenOver, filesInAll}, elapsed.count(),
                       terminalColumns() - 1));
    isBarDrawn = true;
}

void cReporter::clearBar() {
    if (isBarDrawn) {
        write(lineStartAndClear);
        isBarDrawn = false;
    }
}

/// All at once, so that the lines of other processes do not get in between. When nobody can be told
/// any more, the run goes on all the same.
void cReporter::write(const std::string& text) {
    std::string_view rest = text;
    while (!rest.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, rest.data(), rest.size());
        if (written < 0 && errno == EAGAIN) {
            pollfd reader{STDERR_FILENO, POLLOUT, 0}; // shared with a process that does not wait
            ::poll(&reader, 1, -1);
        } else if (written < 0 && errno != EINTR) {
            return;
        }
        rest.remove_prefix(static_cast<std::size_t>(written < 0 ? 0 : written));
    }
}

} // namespace kelmo
