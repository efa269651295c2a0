// What the tests of the window share: a working directory of their own, widgets by name, dialogs.
#pragma once

#include "app/kelmo_linux.h"
#include "model/addition.h"
#include "tests/support/test_files.h"

#include <QByteArray>
#include <QColor>
#include <QDir>
#include <QListWidget>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <map>
#include <string>
#include <vector>

class QDialog;
class QFileDialog;

namespace kelmo {

/// A scratch directory that is the working directory while this lives.
class cWorkingDirectory {
  public:
    cWorkingDirectory();
    ~cWorkingDirectory();
    cWorkingDirectory(const cWorkingDirectory&) = delete;
    cWorkingDirectory& operator=(const cWorkingDirectory&) = delete;

    QString path(const QString& name = {}) const;
    /// Makes a directory and returns its path.
    QString directory(const QString& name) const;
    /// Writes a file and returns its path.
    QString file(const QString& name, const QByteArray& bytes) const;

  private:
    cScratchDirectory place;
    QString earlier;
};

QByteArray bytesOf(const QString& path);
/// Names and contents of all files of a directory, hidden ones included.
std::map<QString, QByteArray> filesIn(const QString& directory);

/// A widget of the form; the test ends when there is none.
template <typename Widget>
Widget* widget(const QObject& window, const char* name) {
    auto* found = window.findChild<Widget*>(QString::fromLatin1(name));
    if (found == nullptr) {
        qFatal("The form has no %s", name);
    }
    return found;
}

void setChecked(const QObject& window, const char* name, bool checked = true);
void setText(const QObject& window, const char* name, const QString& text);
void setNumber(const QObject& window, const char* name, double number);
void click(const QObject& window, const char* name);
bool isChecked(const QObject& window, const char* name);
QString textOf(const QObject& window, const char* name);
double numberOf(const QObject& window, const char* name);

/// One paragraph of a log pane.
struct sLogLine {
    QColor colour;
    QColor background;
    QString text;
    bool operator==(const sLogLine&) const = default;
};
std::vector<sLogLine> logLines(const QTextBrowser& pane);
/// The paragraphs as "#rrggbb text".
QStringList colouredLines(const QTextBrowser& pane);
QString coloured(Qt::GlobalColor colour, const QString& text);

QStringList itemTexts(const QListWidget& list);
/// The base name of a module's widgets in the form: list, log pane, run and stop button.
struct sModuleNames {
    const char* list;
    const char* display;
    const char* run;
    const char* stop;
    const char* outputDirectory;
    const char* addFiles;
    const char* removeFiles;
    const char* saveList;
    const char* loadList;
    const char* createConfiguration;
    const char* clear;
    const char* progressBar;
    const char* progressLabel;
};
extern const sModuleNames kevNames;
extern const sModuleNames vorNames;

/// Runs an action on the next modal dialog, from inside its event loop. A dialog that does not come
/// is a failure of the test.
class cDialogAnswer : public QObject {
    Q_OBJECT
  public:
    explicit cDialogAnswer(std::function<void(QDialog&)> answer);
    ~cDialogAnswer() override;

  private:
    void look();

    QTimer timer;
    std::function<void(QDialog&)> answerDialog;
    bool isAnswered = false;
};

/// What a file dialog was like when it was answered.
struct sSeenDialog {
    QString caption;
    QString filter; ///< the name filters, joined as they were given
    QString directory;
    bool isForDirectories = false;
    bool isForSeveralFiles = false;
    bool isForSaving = false;
};
/// Types a name into the file dialog that the click opens and accepts it; several names are given
/// each in double quotes. An empty name cancels.
sSeenDialog clickAndChoose(const QObject& window, const char* button, const QString& name);

/// Fills a module's list through its dialog for adding files.
void addFiles(const QObject& window, const sModuleNames& names, const QStringList& paths);

/// How long tests wait for what must come, ms: a hang is a failure, a slow machine is none.
constexpr int patience = 300'000;

/// Waits until the window has heard that the module's worker started.
bool waitForStart(const QObject& window, const sModuleNames& names);
/// Waits until the module is idle again.
bool waitForEnd(const QObject& window, const sModuleNames& names);

/// The smallest structure of two chains, and a radius for each of its atoms.
QByteArray glycineStructure();
QByteArray glycineRadiiFile();
/// A cluster of residues in two chains with about so many atoms, packed like a protein.
QByteArray largeStructure(int atoms);
/// The path of a shipped table or sample in the source tree.
QString dataPath(const QString& name);

/// Sets the form of a module so that its run button starts a run over the files.
void prepareKev(const QObject& window, const QStringList& files, const QString& radii,
                const QString& outputDirectory);
void prepareVor(const QObject& window, const QStringList& files, const QString& radii,
                const QString& outputDirectory);

} // namespace kelmo
