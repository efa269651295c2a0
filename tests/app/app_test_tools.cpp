#include "tests/app/app_test_tools.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QElapsedTimer>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QTextBlock>

#include <cmath>

namespace kelmo {

const sModuleNames kevNames = {"listWidgetKEVFileListDisplay",
                               "textBrowserKEVDisplay",
                               "pushButtonKEVRUN",
                               "pushButtonKEVStop",
                               "lineEditKEVOutputDir",
                               "pushButtonKEVFileOpen",
                               "pushButtonKEVRemoveInFiles",
                               "pushButtonKEVSaveInputList",
                               "pushButtonKEVLoadFileList",
                               "pushButtonKEVCreateConfigFile",
                               "pushButtonKEVOutputClear",
                               "progressBarKEV",
                               "labelKEVProgress"};
const sModuleNames vorNames = {"listWidgetVORFileListDisplay",
                               "textBrowserVORDisplay",
                               "pushButtonVORRun",
                               "pushButtonVORStop",
                               "lineEditVOROutputDir",
                               "pushButtonVORLoadFiles",
                               "pushButtonVORRemoveInFiles",
                               "pushButtonVORSaveInputList",
                               "pushButtonVORLoadFileList",
                               "pushButtonVORCreateConfigFile",
                               "pushButtonVORClearDisplay",
                               "progressBarVOR",
                               "labelVORProgress"};

cWorkingDirectory::cWorkingDirectory() : earlier(QDir::currentPath()) {
    QDir::setCurrent(place.path());
}

cWorkingDirectory::~cWorkingDirectory() {
    QDir::setCurrent(earlier);
}

QString cWorkingDirectory::path(const QString& name) const {
    return name.isEmpty() ? place.path() : place.filePath(name);
}

QString cWorkingDirectory::directory(const QString& name) const {
    QDir(place.path()).mkpath(name);
    return path(name);
}

QString cWorkingDirectory::file(const QString& name, const QByteArray& bytes) const {
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("Cannot write %s", qPrintable(file.fileName()));
    }
    return file.fileName();
}

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::map<QString, QByteArray> filesIn(const QString& directory) {
    std::map<QString, QByteArray> files;
    for (const QString& name : QDir(directory).entryList(QDir::Files | QDir::Hidden)) {
        files[name] = bytesOf(directory + '/' + name);
    }
    return files;
}

void setChecked(const QObject& window, const char* name, bool checked) {
    widget<QAbstractButton>(window, name)->setChecked(checked);
}

void setText(const QObject& window, const char* name, const QString& text) {
    widget<QLineEdit>(window, name)->setText(text);
}

void setNumber(const QObject& window, const char* name, double number) {
    widget<QDoubleSpinBox>(window, name)->setValue(number);
}

void click(const QObject& window, const char* name) {
    widget<QAbstractButton>(window, name)->click();
}

bool isChecked(const QObject& window, const char* name) {
    return widget<QAbstractButton>(window, name)->isChecked();
}

QString textOf(const QObject& window, const char* name) {
    return widget<QLineEdit>(window, name)->text();
}

double numberOf(const QObject& window, const char* name) {
    return widget<QDoubleSpinBox>(window, name)->value();
}

std::vector<sLogLine> logLines(const QTextBrowser& pane) {
    std::vector<sLogLine> lines;
    for (QTextBlock block = pane.document()->begin(); block.isValid(); block = block.next()) {
        const QTextCharFormat format =
            block.begin().atEnd() ? block.charFormat() : block.begin().fragment().charFormat();
        lines.push_back({format.foreground().color(), format.background().color(), block.text()});
    }
    return lines;
}

QStringList colouredLines(const QTextBrowser& pane) {
    QStringList lines;
    if (pane.document()->isEmpty()) {
        return lines;
    }
    for (const sLogLine& line : logLines(pane)) {
        lines.append(line.colour.name() + ' ' + line.text);
    }
    return lines;
}

QString coloured(Qt::GlobalColor colour, const QString& text) {
    return QColor(colour).name() + ' ' + text;
}

QStringList itemTexts(const QListWidget& list) {
    QStringList texts;
    for (int row = 0; row < list.count(); ++row) {
        texts.append(list.item(row)->text());
    }
    return texts;
}

cDialogAnswer::cDialogAnswer(std::function<void(QDialog&)> answer)
    : answerDialog(std::move(answer)) {
    constexpr int interval = 5; // ms
    connect(&timer, &QTimer::timeout, this, &cDialogAnswer::look);
    timer.start(interval);
}

cDialogAnswer::~cDialogAnswer() {
    if (!isAnswered) {
        QTest::qFail("No dialog was shown", __FILE__, __LINE__);
    }
}

void cDialogAnswer::look() {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog != nullptr && dialog->isVisible()) {
        timer.stop();
        isAnswered = true;
        answerDialog(*dialog);
    }
}

sSeenDialog clickAndChoose(const QObject& window, const char* button, const QString& name) {
    sSeenDialog seen;
    const cDialogAnswer answer([&](QDialog& dialog) {
        auto& files = dynamic_cast<QFileDialog&>(dialog);
        seen = {files.windowTitle(),
                files.nameFilters().join(QStringLiteral(";;")),
                files.directory().absolutePath(),
                files.fileMode() == QFileDialog::Directory,
                files.fileMode() == QFileDialog::ExistingFiles,
                files.acceptMode() == QFileDialog::AcceptSave};
        if (name.isEmpty()) {
            files.reject();
            return;
        }
        widget<QLineEdit>(files, "fileNameEdit")->setText(name);
        auto* buttons = widget<QDialogButtonBox>(files, "buttonBox");
        QPushButton* accept =
            buttons->button(seen.isForSaving ? QDialogButtonBox::Save : QDialogButtonBox::Open);
        if (accept == nullptr) {
            accept = buttons->button(QDialogButtonBox::Open);
        }
        accept->setEnabled(true);
        accept->click();
    });
    click(window, button);
    return seen;
}

void addFiles(const QObject& window, const sModuleNames& names, const QStringList& paths) {
    clickAndChoose(window, names.addFiles, '"' + paths.join(QStringLiteral("\" \"")) + '"');
}

bool waitForEnd(const QObject& window, const sModuleNames& names) {
    constexpr int limit = 60'000; // ms
    auto* run = widget<QPushButton>(window, names.run);
    auto* display = widget<QTextBrowser>(window, names.display);
    return QTest::qWaitFor(
        [&] {
            const QString text = display->toPlainText();
            return run->isEnabled() && (text.endsWith(QLatin1String("Analysis finished")) ||
                                        text.endsWith(QLatin1String("Analysis stopped by user")));
        },
        limit);
}

bool waitForStart(const QObject& window, const sModuleNames& names) {
    constexpr int limit = 20'000; // ms
    const auto* stop = widget<QPushButton>(window, names.stop);
    QElapsedTimer clock;
    clock.start();
    // Without a pause: the run may be short.
    while (!stop->isEnabled() && clock.elapsed() < limit) {
        QApplication::processEvents();
    }
    return stop->isEnabled();
}

namespace {

QByteArray atomLine(int serial, const char* atom, const char* residue, char chain, int number,
                    double x, double y, double z) {
    return QString::asprintf("ATOM  %5d  %-3s %-3s %c%4d    %8.3f%8.3f%8.3f\n", serial % 100000,
                             atom, residue, chain, number, x, y, z)
        .toLatin1();
}

} // namespace

QByteArray twoGlycines() {
    return "HEADER                                                        1TST\n" +
           atomLine(1, "N", "GLY", 'A', 1, 0.0, 0.0, 0.0) +
           atomLine(2, "CA", "GLY", 'A', 1, 1.5, 0.0, 0.0) +
           atomLine(3, "C", "GLY", 'A', 1, 2.2, 1.3, 0.0) +
           atomLine(4, "O", "GLY", 'A', 1, 1.6, 2.4, 0.0) +
           atomLine(5, "N", "GLY", 'B', 2, 0.0, 0.0, 4.0) +
           atomLine(6, "CA", "GLY", 'B', 2, 1.5, 0.0, 4.0) +
           atomLine(7, "C", "GLY", 'B', 2, 2.2, 1.3, 4.0) +
           atomLine(8, "O", "GLY", 'B', 2, 1.6, 2.4, 4.0) + "END\n";
}

QByteArray glycineRadiiTable() {
    return "GLY_N   1.65\nGLY_NXT 1.65\nGLY_CA  1.87\nGLY_C   1.76\nGLY_O   1.40\n";
}

QByteArray largeStructure(int atoms) {
    // One residue in a cell of this size gives the density of a protein.
    constexpr double cell = 4.4; // Å
    const int residues = atoms / 4;
    const int edge = static_cast<int>(std::ceil(std::cbrt(residues)));
    // Off the lattice: nature has no two atoms at exactly the same height.
    QRandomGenerator random(1);
    const auto shift = [&] { return random.bounded(0.8) - 0.4; };
    QByteArray text = "HEADER                                                        1BIG\n";
    for (int i = 0; i < residues; ++i) {
        const double x = i % edge * cell + shift();
        const double y = i / edge % edge * cell + shift();
        const double z = i / (edge * edge) * cell + shift();
        const char chain = i < residues / 2 ? 'A' : 'B';
        const int number = i % (residues / 2) + 1;
        text += atomLine(4 * i + 1, "N", "GLY", chain, number, x, y, z);
        text += atomLine(4 * i + 2, "CA", "GLY", chain, number, x + 1.5, y, z);
        text += atomLine(4 * i + 3, "C", "GLY", chain, number, x + 2.2, y + 1.3, z);
        text += atomLine(4 * i + 4, "O", "GLY", chain, number, x + 1.6, y + 2.4, z + 0.4);
    }
    return text + "END\n";
}

QString dataPath(const QString& name) {
    return QStringLiteral(KELMO_SOURCE_DIR "/data/") + name;
}

void prepareKev(const QObject& window, const QStringList& files, const QString& radii,
                const QString& outputDirectory) {
    addFiles(window, kevNames, files);
    for (const char* box :
         {"checkBoxCalcASA", "checkBoxKEVAnalyzeBound", "checkBoxKEVTableOutput"}) {
        if (!isChecked(window, box)) {
            click(window, box);
        }
    }
    setText(window, "lineEditRadiiFile", radii);
    setText(window, kevNames.outputDirectory, outputDirectory);
}

void prepareVor(const QObject& window, const QStringList& files, const QString& radii,
                const QString& outputDirectory) {
    addFiles(window, vorNames, files);
    setChecked(window, "checkBoxWriteContacts");
    setChecked(window, "checkBoxVORTableOutput");
    setText(window, "lineEditVORRadiiFile", radii);
    setText(window, vorNames.outputDirectory, outputDirectory);
}

} // namespace kelmo
