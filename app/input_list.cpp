#include "app/input_list.h"

#include "base/text_line.h"
#include "run/file_path.h"

#include <QCoreApplication>
#include <QDir>
#include <QFont>
#include <QHash>
#include <QIcon>
#include <QItemSelectionModel>
#include <QLabel>
#include <QListWidget>
#include <QStyle>

#include <algorithm>
#include <functional>
#include <istream>
#include <string>
#include <vector>

namespace kelmo {

namespace {

QString translated(const char* text, int number = -1) {
    return QCoreApplication::translate("cInputList", text, nullptr, number);
}

void setMark(QListWidgetItem& item, const QIcon& icon, const QString& reason) {
    QFont font = item.font();
    font.setItalic(!reason.isEmpty());
    item.setFont(font);
    item.setIcon(reason.isEmpty() ? QIcon() : icon);
    item.setToolTip(reason.isEmpty() ? item.text() : item.text() + '\n' + reason);
    item.setData(Qt::AccessibleDescriptionRole, reason);
}

QString countText(qsizetype files, int marked) {
    if (files == 0) {
        return translated("no files");
    }
    const QString count = files == 1 ? translated("1 file") : translated("%1 files").arg(files);
    return marked == 0 ? count : translated("%1, %2 marked").arg(count).arg(marked);
}

} // namespace

void cInputList::attach(QListWidget* fileDisplay, QLabel* fileCount) {
    display = fileDisplay;
    countLabel = fileCount;
    refreshMarks();
}

void cInputList::append(const QStringList& newPaths) {
    files.append(newPaths);
    QStringList texts;
    texts.reserve(newPaths.size());
    for (const QString& path : newPaths) {
        texts.append(displayedPath(path));
    }
    display->addItems(texts);
    refreshMarks();
}

void cInputList::clear() {
    files.clear();
    display->clear();
    refreshMarks();
}

void cInputList::removeSelected() {
    std::vector<int> rows;
    for (const QModelIndex& index : display->selectionModel()->selectedRows()) {
        rows.push_back(index.row());
    }
    // From the end, so that the rows still to be removed keep their numbers.
    std::ranges::sort(rows, std::greater());
    for (const int row : rows) {
        delete display->takeItem(row);
        files.removeAt(row);
    }
    refreshMarks();
}

void cInputList::refreshMarks() {
    QHash<QString, int> filesByPath;
    QHash<QString, int> filesByBaseName;
    for (const QString& path : files) {
        ++filesByPath[QDir::cleanPath(path)];
        ++filesByBaseName[baseNameOf(path)];
    }
    const QIcon icon = display->style()->standardIcon(QStyle::SP_MessageBoxWarning);
    int marked = 0;
    for (int row = 0; row < display->count(); ++row) {
        const QString& path = files[row];
        QString reason;
        if (filesByPath[QDir::cleanPath(path)] > 1) {
            reason = translated("This file stands in the list more than once.");
        } else if (filesByBaseName[baseNameOf(path)] > 1) {
            reason = translated("Another file gives reports of the same name; the later file's "
                                "replace the earlier's.");
        }
        marked += reason.isEmpty() ? 0 : 1;
        setMark(*display->item(row), icon, reason);
    }
    countLabel->setText(countText(files.size(), marked));
}

QStringList pathsIn(std::istream& in) {
    QStringList paths;
    for (std::string line; getTextLine(in, line) && line.size() <= longestTextLine;) {
        paths.append(pathFromBytes(line));
    }
    return paths;
}

} // namespace kelmo
