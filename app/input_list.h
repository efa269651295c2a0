// The input files of a module: the list that a run takes and its display, kept in step.
#pragma once

#include <QStringList>

#include <iosfwd>

class QLabel;
class QListWidget;

namespace kelmo {

/// A file may stand in the list more than once. Such files, and files whose reports would have the
/// same name, are marked in the display.
class cInputList {
  public:
    /// The widgets are not owned and must outlive the list, from attach() on.
    void attach(QListWidget* fileDisplay, QLabel* fileCount);

    const QStringList& paths() const { return files; }
    void append(const QStringList& newPaths);
    void clear();
    /// Removes the files whose rows are selected.
    void removeSelected();

  private:
    void refreshMarks();

    QStringList files;
    QListWidget* display = nullptr;
    QLabel* countLabel = nullptr;
};

/// The paths of a list file, or of the end of a settings file: every line is one, as it stands.
QStringList pathsIn(std::istream& in);

} // namespace kelmo
