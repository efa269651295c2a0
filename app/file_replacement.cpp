#include "app/file_replacement.h"

#include <QSaveFile>

eReplacement replaceFile(const QString& path, std::string_view bytes) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
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
