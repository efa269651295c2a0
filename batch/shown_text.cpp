#include "batch/shown_text.h"

#include "run/file_path.h"

namespace kelmo {

QString onOneLine(QString text) {
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control) {
            character = u'?';
        }
    }
    return text;
}

QString shownPath(const QString& path) {
    return onOneLine(displayedPath(path));
}

QString shownPath(std::string_view bytes) {
    return shownPath(pathFromBytes(bytes));
}

} // namespace kelmo
