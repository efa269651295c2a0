#include "run/report_file.h"

#include "run/file_path.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kelmo {

namespace {

constexpr std::string_view temporaryPrefix = ".kelmo-";
constexpr std::string_view temporarySuffix = ".part";

std::string nextTemporaryName() {
    static std::atomic<unsigned> counter{0};
    return std::string(temporaryPrefix) + std::to_string(::getpid()) + '-' +
           std::to_string(counter++) + std::string(temporarySuffix);
}

bool isTemporaryName(const std::string& fileName) {
    return fileName.starts_with(temporaryPrefix) && fileName.ends_with(temporarySuffix);
}

enum class eLock { taken, heldElsewhere, notSupported };

eLock lockFile(int descriptor) {
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
        return eLock::taken;
    }
    return errno == EWOULDBLOCK ? eLock::heldElsewhere : eLock::notSupported;
}

/// Whether the file still stands in its directory: another process may have swept it up between
/// opening and locking.
bool isLinked(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && status.st_nlink > 0;
}

} // namespace

cReportFile::cReportFile(const QString& directory) {
    const std::string place = pathToBytes(directory);
    constexpr int attempts = 100;
    for (int i = 0; i < attempts && descriptor < 0; ++i) {
        if (!createLocked(place)) {
            break;
        }
    }
}

/// Returns false when trying once more makes no sense.
bool cReportFile::createLocked(const std::string& directory) {
    constexpr mode_t permissions = 0666; // lessened by the user's mask, as for any new file
    name = directory + nextTemporaryName();
    const int created = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
    if (created < 0) {
        lastError = errno;
        return lastError == EEXIST;
    }
    if (lockFile(created) == eLock::heldElsewhere || !isLinked(created)) {
        lastError = EBUSY;
        ::close(created);
        return true;
    }
    descriptor = created;
    return true;
}

cReportFile::~cReportFile() {
    if (descriptor < 0) {
        return;
    }
    if (!isCommitted) {
        ::unlink(name.c_str());
    }
    ::close(descriptor);
}

int cReportFile::duplicateDescriptor() const {
    const int duplicate = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (!isOpen()) {
        errno = lastError;
    }
    return duplicate;
}

int cReportFile::writeError(int errorNumber) const {
    if (errorNumber != 0) {
        return errorNumber;
    }
    return ::write(descriptor, "", 1) < 0 ? errno : EIO;
}

bool cReportFile::commit(const QString& finalName) {
    isCommitted = std::rename(name.c_str(), pathToBytes(finalName).c_str()) == 0;
    lastError = isCommitted ? 0 : errno;
    return isCommitted;
}

void removeAbandonedReports(const QString& directory) {
    std::error_code error;
    const std::filesystem::path place(pathToBytes(directory));
    for (std::filesystem::directory_iterator entry(place, error), end; !error && entry != end;
         entry.increment(error)) {
        if (!isTemporaryName(entry->path().filename().string())) {
            continue;
        }
        const int descriptor = ::open(entry->path().c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW);
        if (descriptor < 0) {
            continue;
        }
        if (lockFile(descriptor) == eLock::taken && isLinked(descriptor)) {
            ::unlink(entry->path().c_str());
        }
        ::close(descriptor);
    }
}

} // namespace kelmo
