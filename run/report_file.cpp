#include "run/report_file.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kelmo {

namespace {

constexpr std::string_view temporaryPrefix = ".kelmo-";
constexpr std::string_view temporarySuffix = ".part";
constexpr std::size_t heldBackAtMost = 1U << 16U;

/// A name that nobody can foresee, who might put a link of that name into the directory.
std::string newTemporaryName() {
    std::array<std::uint64_t, 2> random{};
    // So few bytes come whole, and without waiting once the system is up.
    while (::getrandom(random.data(), sizeof random, 0) < 0 && errno == EINTR) {
    }
    std::array<char, 40> digits;
    const int length = std::snprintf(digits.data(), digits.size(), "%016llx%016llx",
                                     static_cast<unsigned long long>(random[0]),
                                     static_cast<unsigned long long>(random[1]));
    return std::string(temporaryPrefix) +
           std::string(digits.data(), static_cast<std::size_t>(length)) +
           std::string(temporarySuffix);
}

bool isTemporaryName(std::string_view fileName) {
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

/// Whether it is a file of this user: what others put into a common directory is theirs to remove.
bool isOwnFile(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == ::geteuid();
}

/// What some file systems, those of networks above all, say of earlier writes only when a
/// descriptor is closed: the errno, 0 for none. The file stays open.
int deferredError(int descriptor) {
    const int copy = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    return copy >= 0 && ::close(copy) == 0 ? 0 : errno;
}

void removeIfAbandoned(int directory, const char* fileName) {
    // Without waiting: opening may be held up by a lease of whoever has the file open.
    const int descriptor =
        ::openat(directory, fileName, O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    if (isOwnFile(descriptor) && lockFile(descriptor) == eLock::taken && isLinked(descriptor)) {
        ::unlinkat(directory, fileName, 0);
    }
    ::close(descriptor);
}

} // namespace

cReportDirectory::cReportDirectory(const std::string& path)
    : descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      lastError(descriptor < 0 ? errno : 0) {
    if (descriptor < 0 && lastError == EACCES) {
        // A directory that may be written to and entered need not be readable.
        descriptor = ::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        lastError = descriptor < 0 ? errno : 0;
    }
}

cReportDirectory::~cReportDirectory() {
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}

cReportFile::cReportFile(const cReportDirectory& place)
    : directory(place), lastError(place.error()) {
    constexpr int attempts = 100;
    for (int i = 0; directory.isOpen() && i < attempts && descriptor < 0; ++i) {
        if (!createLocked()) {
            break;
        }
    }
}

/// Returns false when trying once more makes no sense.
bool cReportFile::createLocked() {
    constexpr mode_t permissions = 0666; // lessened by the user's mask, as for any new file
    name = newTemporaryName();
    const int created = ::openat(directory.handle(), name.c_str(),
                                 O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, permissions);
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
    lastError = 0;
    return true;
}

cReportFile::~cReportFile() {
    if (descriptor < 0) {
        return;
    }
    if (!isCommitted && standsUnder(name)) {
        ::unlinkat(directory.handle(), name.c_str(), 0);
    }
    ::close(descriptor);
}

void cReportFile::write(std::string_view text) {
    heldBack += text;
    if (heldBack.size() >= heldBackAtMost) {
        writeOut(heldBack);
        heldBack.clear();
    }
}

void cReportFile::writeOut(std::string_view bytes) {
    while (!bytes.empty() && lastError == 0) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0) {
            lastError = errno == EINTR ? 0 : errno;
        } else if (count == 0) {
            lastError = EIO;
        } else {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
    }
}

bool cReportFile::finish() {
    writeOut(heldBack);
    heldBack.clear();
    if (isOpen() && lastError == 0) {
        lastError = deferredError(descriptor);
        isWhole = lastError == 0;
    }
    return isWhole;
}

void cReportFile::setPermissions(unsigned mode) {
    constexpr unsigned permissions = 0777;
    if (isOpen() && lastError == 0 && ::fchmod(descriptor, mode & permissions) != 0) {
        lastError = errno;
    }
}

bool cReportFile::putOnDisk() {
    if (finish() && ::fsync(descriptor) != 0) {
        lastError = errno;
        isWhole = false;
    }
    return isWhole;
}

bool cReportFile::standsUnder(const std::string& fileName) const {
    struct stat own {};
    struct stat there {};
    return ::fstat(descriptor, &own) == 0 &&
           ::fstatat(directory.handle(), fileName.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0 &&
           own.st_dev == there.st_dev && own.st_ino == there.st_ino;
}

bool cReportFile::commit(const std::string& finalName) {
    if (!isWhole && !finish()) {
        return false;
    }
    if (!standsUnder(name)) {
        lastError = ESTALE; // somebody has put another file in its place
        return false;
    }
    if (::renameat(directory.handle(), name.c_str(), directory.handle(), finalName.c_str()) != 0) {
        lastError = errno;
        return false;
    }
    isCommitted = true;
    lastError = standsUnder(finalName) ? 0 : ESTALE;
    return lastError == 0;
}

void removeAbandonedReports(const cReportDirectory& directory) {
    const int descriptor =
        ::openat(directory.handle(), ".", O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::fdopendir(descriptor), &::closedir);
    if (entries == nullptr) {
        ::close(descriptor);
        return;
    }
    while (const dirent* const entry = ::readdir(entries.get())) {
        if (isTemporaryName(entry->d_name)) {
            removeIfAbandoned(directory.handle(), entry->d_name);
        }
    }
}

} // namespace kelmo
