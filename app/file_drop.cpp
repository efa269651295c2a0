#include "app/file_drop.h"

#include <QAbstractScrollArea>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace kelmo {

namespace {

QStringList localPaths(const QMimeData& dragged) {
    QStringList paths;
    for (const QUrl& url : dragged.urls()) {
        if (url.isLocalFile()) {
            paths.append(url.toLocalFile());
        }
    }
    return paths;
}

} // namespace

cFileDrop::cFileDrop(QAbstractScrollArea* view) : QObject(view) {
    view->setAcceptDrops(true);
    view->viewport()->setAcceptDrops(true);
    view->viewport()->installEventFilter(this);
}

bool cFileDrop::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop) {
        return QObject::eventFilter(watched, event);
    }
    auto& drop = static_cast<QDropEvent&>(*event);
    const QStringList paths = localPaths(*drop.mimeData());
    if (paths.isEmpty()) {
        drop.ignore();
        return true;
    }
    // A move would let the file manager delete the files.
    drop.setDropAction(Qt::CopyAction);
    drop.accept();
    if (type == QEvent::Drop) {
        emit filesDropped(paths);
    }
    return true;
}

} // namespace kelmo
