#include "app/file_replacement.h"

#include "run/file_path.h"
#include "run/report_file.h"

#include <array>
#include <cerrno>
#include <climits>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kelmo {

namespace {

struct sPlace {
    std::string directory; ///< with a slash at its end
    std::string name;
};

sPlace placeOf(const std::string& path) {
    const std::size_t nameBegin = path.rfind('/') + 1; // the next of "not found" is the beginning
    return {nameBegin == 0 ? "./" : path.substr(0, nameBegin), path.substr(nameBegin)};
}

/// Where a link leads, empty for what is none. Only this user's own are followed: others could lead
/// what is written to another file of this user.
std::string targetOf(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode) ||
        status.st_uid != ::geteuid()) {
        return {};
    }
    std::array<char, PATH_MAX> target{};
    const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
    return {target.data(), static_cast<std::size_t>(length < 0 ? 0 : length)};
}

/// Where the file itself is to be, behind links to it.
sPlace finalPlaceOf(const std::string& path) {
    constexpr int mostLinks = 40; // as many as the system follows
    sPlace place = placeOf(path);
    for (int links = 0; links < mostLinks; ++links) {
        const std::string target = targetOf(place.directory + place.name);
        if (target.empty()) {
            break;
        }
        place = placeOf(target.starts_with('/') ? target : place.directory + target);
    }
    return place;
}

/// Writes to the file that is there. What makes no sense to shorten is no regular file.
eReplacement writeInPlace(const cReportDirectory& directory, const std::string& name,
                          std::string_view bytes) {
    const int descriptor =
        ::openat(directory.handle(), name.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return eReplacement::notOpened;
    }
    struct stat status {};
    const bool isOpen = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    bool isWritten = isOpen && ::ftruncate(descriptor, 0) == 0;
    while (isWritten && !bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        isWritten = count > 0 || (count < 0 && errno == EINTR);
        bytes.remove_prefix(static_cast<std::size_t>(count > 0 ? count : 0));
    }
    isWritten = isWritten && ::fsync(descriptor) == 0;
    ::close(descriptor);
    if (!isOpen) {
        return eReplacement::notOpened;
    }
    return isWritten ? eReplacement::done : eReplacement::notWritten;
}

} // namespace

eReplacement replaceFile(const QString& path, std::string_view bytes) {
    if (path.contains(QChar::Null)) {
        return eReplacement::notOpened; // what stands before it is another file
    }
    const sPlace place = finalPlaceOf(pathToBytes(path));
    const cReportDirectory directory(place.directory);
    struct stat status {};
    const bool exists = directory.isOpen() && ::fstatat(directory.handle(), place.name.c_str(),
                                                        &status, AT_SYMLINK_NOFOLLOW) == 0;
    if (!directory.isOpen() || place.name.empty() ||
        (exists && !S_ISREG(status.st_mode) && !S_ISLNK(status.st_mode))) {
        return eReplacement::notOpened;
    }
    cReportFile file(directory);
    if (!file.isOpen()) {
        // A directory may allow changing its files but no new ones.
        const bool isForbidden = file.error() == EACCES || file.error() == EPERM;
        return isForbidden ? writeInPlace(directory, place.name, bytes) : eReplacement::notOpened;
    }
    if (exists && S_ISREG(status.st_mode)) {
        file.setPermissions(status.st_mode);
    }
    file.write(bytes);
    return file.putOnDisk() && file.commit(place.name) ? eReplacement::done
                                                       : eReplacement::notWritten;
}

} // namespace kelmo
