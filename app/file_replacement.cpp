#include "app/file_replacement.h"

#include "run/file_path.h"

#include <QSaveFile>

#include <filesystem>
#include <system_error>

namespace kelmo {

namespace {

/// Whether something is there that must not give way to a file: for the superuser, a link to
/// /dev/null would make a file of the device.
bool isTaken(const QString& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(pathToBytes(path), error);
    return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
}

} // namespace

eReplacement replaceFile(const QString& path, std::string_view bytes) {
    QSaveFile file(path);
    file.setDirectWriteFallback(true); // a directory may allow changing its files but no new ones
    if (isTaken(path) || !file.open(QIODevice::WriteOnly)) {
        return eReplacement::notOpened;
    }
    const auto size = static_cast<qint64>(bytes.size());
    // A disk that fills up shows in the size alone: what a flush cut short is taken for success.
    if (file.write(bytes.data(), size) != size || !file.flush() || file.size() != size) {
        file.cancelWriting();
        return eReplacement::notWritten;
    }
    return file.commit() ? eReplacement::done : eReplacement::notWritten;
}

} // namespace kelmo
