#include "base/text_file.h"

#include "base/read_descriptor.h"
#include "base/shown_text.h"
#include "base/usage_error.h"

#include <array>
#include <cerrno>
#include <optional>
#include <string>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace kelmo {

namespace {

/// Far beyond any path; more is no text but a device or a file of zeros that has no end.
constexpr std::size_t longestLine = 1U << 20U;

/// Whether reading the descriptor comes to an end or waits for somebody who is there.
bool isText(const cReadDescriptor& file, eTextSource allowed) {
    struct stat status {};
    if (file.number < 0 || ::fstat(file.number, &status) != 0) {
        return false;
    }
    if (allowed == eTextSource::regularFile) {
        return S_ISREG(status.st_mode);
    }
    if (S_ISCHR(status.st_mode)) {
        const bool isEmpty = status.st_rdev == makedev(1, 3); // /dev/null
        return isEmpty || ::isatty(file.number) == 1;
    }
    return S_ISREG(status.st_mode) || S_ISFIFO(status.st_mode);
}

/// From now on reading waits for what a pipe's writer or the user at a terminal has to say. A file
/// that claims to be regular is not waited for.
void waitForWriter(const cReadDescriptor& file) {
    struct stat status {};
    if (::fstat(file.number, &status) == 0 && !S_ISREG(status.st_mode)) {
        ::fcntl(file.number, F_SETFL, 0);
    }
}

/// Whether it is a pipe with a name. One without has its writer from the beginning.
bool isNamedPipe(const cReadDescriptor& file) {
    struct stat status {};
    struct statfs system {};
    return ::fstat(file.number, &status) == 0 && S_ISFIFO(status.st_mode) &&
           ::fstatfs(file.number, &system) == 0 && system.f_type != PIPEFS_MAGIC;
}

/// Hands on the lines of a text that comes piece by piece.
class cLineSplitter {
  public:
    explicit cLineSplitter(const std::function<void(std::string_view)>& receiver)
        : handOn(receiver) {}

    void take(std::string_view piece) {
        for (std::size_t end = piece.find('\n'); end != std::string_view::npos;
             end = piece.find('\n')) {
            rest += piece.substr(0, end);
            piece.remove_prefix(end + 1);
            endLine();
        }
        rest += piece;
    }
    /// The number of a line that is too long, if there is one.
    std::optional<std::size_t> tooLong() const {
        return rest.size() > longestLine ? std::optional(lineCount + 1) : std::nullopt;
    }
    void finish() {
        if (!rest.empty()) {
            endLine();
        }
    }

  private:
    void endLine() {
        ++lineCount;
        handOn(rest);
        rest.clear();
    }

    const std::function<void(std::string_view)>& handOn;
    std::size_t lineCount = 0;
    std::string rest; ///< of the line that has not ended yet
};

} // namespace

std::string_view withoutCarriageReturn(std::string_view line) {
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}

void forEachLine(const std::string& path, const std::string& requester,
                 const std::function<void(std::string_view)>& take, eTextSource allowed) {
    const cUsageError notOpened(requester + ": Could not open file " + shownText(path));
    const cReadDescriptor file(path);
    if (!isText(file, allowed)) {
        throw notOpened;
    }
    std::array<char, 65536> buffer{};
    ssize_t count = file.readInto(buffer);
    if (count == 0 && isNamedPipe(file)) {
        throw notOpened; // nobody writes to it
    }
    const bool isWriterSilent = count < 0 && errno == EAGAIN;
    waitForWriter(file);
    if (isWriterSilent) {
        count = file.readInto(buffer);
    }
    cLineSplitter text(take);
    for (; count > 0; count = file.readInto(buffer)) {
        text.take({buffer.data(), static_cast<std::size_t>(count)});
        if (const auto line = text.tooLong()) {
            throw cUsageError(requester + ": " + shownText(path) + ':' + std::to_string(*line) +
                              ": this line is too long for text");
        }
    }
    if (count < 0) {
        throw notOpened;
    }
    text.finish();
}

} // namespace kelmo
