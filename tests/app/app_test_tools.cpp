#include "tests/app/app_test_tools.h"

#include "tests/support/pdb_lines.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QElapsedTimer>
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

namespace {

QString textOfPath(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

} // namespace

cWorkingDirectory::cWorkingDirectory() : earlier(QDir::currentPath()) {
    QDir::setCurrent(textOfPath(place.path()));
}

cWorkingDirectory::~cWorkingDirectory() {
    QDir::setCurrent(earlier);
}

QString cWorkingDirectory::path(const QString& name) const {
    return name.isEmpty() ? textOfPath(place.path())
                          : QString::fromStdString(place.file(name.toStdString()));
}

QString cWorkingDirectory::directory(const QString& name) const {
    return textOfPath(place.makeDirectory(name.toStdString()));
}

QString cWorkingDirectory::file(const QString& name, const QByteArray& bytes) const {
    return textOfPath(place.write(name.toStdString(), bytes.toStdString()));
}

QByteArray bytesOf(const QString& path) {
    return QByteArray::fromStdString(contentOf(path.toStdString()));
}

std::map<QString, QByteArray> filesIn(const QString& directory) {
    std::map<QString, QByteArray> files;
    for (const auto& [name, content] : filesIn(std::filesystem::path(directory.toStdString()))) {
        files[QString::fromStdString(name)] = QByteArray::fromStdString(content);
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
    auto* run = widget<QPushButton>(window, names.run);
    auto* display = widget<QTextBrowser>(window, names.display);
    return QTest::qWaitFor(
        [&] {
            const QString text = display->toPlainText();
            return run->isEnabled() && (text.endsWith(QLatin1String("Analysis finished")) ||
                                        text.endsWith(QLatin1String("Analysis stopped by user")));
        },
        patience);
}

bool waitForStart(const QObject& window, const sModuleNames& names) {
    const auto* stop = widget<QPushButton>(window, names.stop);
    QElapsedTimer clock;
    clock.start();
    // Without a pause: the run may be short.
    while (!stop->isEnabled() && clock.elapsed() < patience) {
        QApplication::processEvents();
    }
    return stop->isEnabled();
}

QByteArray glycineStructure() {
    return QByteArray::fromStdString(twoGlycines());
}

QByteArray glycineRadiiFile() {
    return QByteArray::fromStdString(glycineRadiiTable());
}

QByteArray largeStructure(int atoms) {
    // One residue in a cell of this size gives the density of a protein.
    constexpr double cell = 4.4; // Å
    const int residues = atoms / 4;
    const int edge = static_cast<int>(std::ceil(std::cbrt(residues)));
    // Off the lattice: nature has no two atoms at exactly the same height.
    QRandomGenerator random(1);
    const auto shift = [&] { return random.bounded(0.8) - 0.4; };
    std::string text = headerLine("1BIG");
    for (int i = 0; i < residues; ++i) {
        const double x = i % edge * cell + shift();
        const double y = i / edge % edge * cell + shift();
        const double z = i / (edge * edge) * cell + shift();
        const char chain = i < residues / 2 ? 'A' : 'B';
        const std::string number = std::to_string(i % (residues / 2) + 1);
        text += atomLine("N", "GLY", chain, number, x, y, z);
        text += atomLine("CA", "GLY", chain, number, x + 1.5, y, z);
        text += atomLine("C", "GLY", chain, number, x + 2.2, y + 1.3, z);
        text += atomLine("O", "GLY", chain, number, x + 1.6, y + 2.4, z + 0.4);
    }
    return QByteArray::fromStdString(text + "END\n");
}

QString dataPath(const QString& name) {
    return textOfPath(sourcePath("data") / name.toStdString());
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
