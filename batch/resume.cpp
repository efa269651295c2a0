#include "batch/resume.h"

#include "run/file_path.h"

#include <algorithm>
#include <utility>

#include <sys/stat.h>

namespace kelmo {

namespace {

auto timeOf(const struct stat& status) {
    return std::pair(status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
}

} // namespace

bool areUpToDate(const QStringList& reports, const std::string& inputFile) {
    struct stat input {};
    if (::stat(inputFile.c_str(), &input) != 0) {
        return false;
    }
    return std::all_of(reports.begin(), reports.end(), [&](const QString& name) {
        struct stat report {};
        // No report is empty, but after a power cut a file system may leave one so.
        return ::stat(pathToBytes(name).c_str(), &report) == 0 && S_ISREG(report.st_mode) &&
               report.st_size > 0 && timeOf(report) >= timeOf(input);
    });
}

} // namespace kelmo
