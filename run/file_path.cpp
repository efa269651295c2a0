#include "run/file_path.h"

#include "base/regular_file.h"
#include "base/shown_text.h"

#include <QByteArray>
#include <QChar>
#include <QFileInfo>
#include <QStringDecoder>

namespace kelmo {

namespace {

constexpr char16_t firstEscape = 0xDC80;
constexpr char16_t lastEscape = 0xDCFF;

bool isEscape(char16_t unit) {
    return unit >= firstEscape && unit <= lastEscape;
}

/// Text of valid UTF-8. A byte order mark is part of a name like any other character.
QString textFromUtf8(std::string_view bytes) {
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

} // namespace

QString pathFromBytes(std::string_view bytes) {
    const QByteArray whole(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (whole.isValidUtf8()) {
        return textFromUtf8(bytes);
    }
    QString path;
    while (!bytes.empty()) {
        const std::size_t length = characterLength(bytes);
        if (length == 0) {
            const auto byte = static_cast<unsigned char>(bytes.front());
            path += QChar(static_cast<char16_t>(0xDC00 + byte));
            bytes.remove_prefix(1);
        } else {
            path += textFromUtf8(bytes.substr(0, length));
            bytes.remove_prefix(length);
        }
    }
    return path;
}

std::string pathToBytes(const QString& path) {
    std::string bytes;
    qsizetype begin = 0;
    const auto appendText = [&](qsizetype end) {
        const QByteArray text = QStringView(path).mid(begin, end - begin).toUtf8();
        bytes.append(text.constData(), static_cast<std::size_t>(text.size()));
    };
    for (qsizetype i = 0; i < path.size(); ++i) {
        const char16_t unit = path[i].unicode();
        // A low surrogate behind a high one is half of a proper character.
        const bool isPaired = i > begin && path[i - 1].isHighSurrogate();
        if (isEscape(unit) && !isPaired) {
            appendText(i);
            bytes.push_back(static_cast<char>(unit - 0xDC00));
            begin = i + 1;
        }
    }
    appendText(path.size());
    return bytes;
}

QString displayedPath(const QString& path) {
    return QString::fromStdString(displayedText(pathToBytes(path)));
}

bool openRegularFile(std::ifstream& in, const QString& path) {
    return openRegularFile(in, pathToBytes(path));
}

QString baseNameOf(const QString& path) {
    return QFileInfo(path).baseName();
}

QString withTrailingSeparator(const QString& directory) {
    if (directory.endsWith(u'/') || directory.endsWith(u'\\')) {
        return directory;
    }
    return directory + u'/';
}

} // namespace kelmo
