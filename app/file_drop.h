// Dropping files onto a list.
#pragma once

#include <QObject>
#include <QStringList>

class QAbstractScrollArea;

namespace kelmo {

/// Accepts local files that are dragged onto a view, as a copy. A child of the view.
class cFileDrop : public QObject {
    Q_OBJECT
  public:
    explicit cFileDrop(QAbstractScrollArea* view);

  signals:
    /// Paths in the order in which they were dropped.
    void filesDropped(const QStringList& paths);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace kelmo
