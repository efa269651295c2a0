// The files of a module: its input list, the dialogs, its settings and configuration files.

#include "analysis/configuration.h"
#include "analysis/input_lists.h"
#include "analysis/shipped_tables.h"
#include "app/file_replacement.h"
#include "app/module_page.h"
#include "app/table_title.h"
#include "base/regular_file.h"
#include "base/shown_text.h"
#include "base/text_line.h"
#include "base/usage_error.h"
#include "input/structure_formats.h"
#include "run/file_path.h"

#include <QAction>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>
#include <QUrl>

#include <fstream>

namespace kelmo {

namespace {

const QString listFilter = QStringLiteral("File List Files (*.fls);; All Files (*.*)");

QString translated(const char* text) {
    return QCoreApplication::translate("kelmo", text);
}

/// "Protein Data Bank files (*.pdb *.ent *.pdb.gz *.ent.gz);; All files(*.*)".
QString structureFilter() {
    QStringList patterns;
    for (const char* compressed : {"", ".gz"}) {
        for (const std::string& suffix : structureSuffixes()) {
            patterns.append('*' + QString::fromStdString(suffix) + compressed);
        }
    }
    return QStringLiteral("Protein Data Bank files (%1);; All files(*.*)").arg(patterns.join(' '));
}

/// ".pdb, .ent".
QString structureSuffixText() {
    QStringList suffixes;
    for (const std::string& suffix : structureSuffixes()) {
        suffixes.append(QString::fromStdString(suffix));
    }
    return suffixes.join(QStringLiteral(", "));
}

/// The files of a folder that are called like structures, by name; not those of folders in it.
QStringList structuresIn(const QString& folder) {
    QStringList paths;
    const QDir directory(folder);
    for (const QString& name : directory.entryList(QDir::Files, QDir::Name)) {
        if (hasStructureSuffix(pathToBytes(name))) {
            paths.append(directory.filePath(name));
        }
    }
    return paths;
}

QString placeOf(const QString& path) {
    return QFileInfo(path).absolutePath();
}

/// The paths of a list file; none of one that cannot be read.
QStringList pathsInList(const QString& listFile) {
    QStringList paths;
    try {
        forEachListedPath(
            pathToBytes(listFile), "list",
            [&](std::string_view path) { paths.append(pathFromBytes(path)); },
            eTextSource::regularFile);
    } catch (const cUsageError&) { // what comes before a line that is too long for text counts
    }
    return paths;
}

} // namespace

/// Empty when the user cancels.
QStringList cModulePage::askForFiles(const sFileQuestion& question) {
    const QString directory =
        question.directory.isEmpty() ? QDir::currentPath() : question.directory;
    QFileDialog dialog(window, question.caption, directory, question.filter);
    dialog.setAcceptMode(question.acceptMode);
    dialog.setFileMode(question.fileMode);
    dialog.setOption(QFileDialog::ShowDirsOnly, question.fileMode == QFileDialog::Directory);
    dialog.setDefaultSuffix(question.defaultSuffix);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles() : QStringList();
}

QString cModulePage::askForFile(const sFileQuestion& question) {
    const QStringList chosen = askForFiles(question);
    return chosen.isEmpty() ? QString() : chosen.first();
}

/// Returns false when the file is not written; the user has been told.
bool cModulePage::writeFile(const QString& path, const std::string& text) {
    const eReplacement result = replaceFile(path, text);
    if (result == eReplacement::notOpened) {
        refuse("Could not open file " + displayedPath(path));
    } else if (result == eReplacement::notWritten) {
        refuse("Could not write file " + displayedPath(path));
    }
    return result == eReplacement::done;
}

void cModulePage::addFiles() {
    const QStringList paths = askForFiles({.caption = translated("Choose PDB file(s)"),
                                           .directory = directories.addedFiles,
                                           .filter = structureFilter(),
                                           .fileMode = QFileDialog::ExistingFiles});
    if (!paths.isEmpty()) {
        files.append(paths);
        directories.addedFiles = placeOf(paths.first());
    }
}

/// Adds structures, those of folders and what file lists hold; nothing that is in the list goes.
void cModulePage::addDroppedFiles(const QStringList& paths) {
    QStringList dropped;
    for (const QString& path : paths) {
        if (QFileInfo(path).suffix().toLower() == QLatin1String("fls") &&
            QFileInfo(path).isFile()) {
            dropped += pathsInList(path);
        } else if (QFileInfo(path).isDir()) {
            const QStringList found = structuresIn(path);
            dropped += found;
            if (found.isEmpty()) {
                showMessage(Qt::yellow, "No structures (" + structureSuffixText() + ") in folder " +
                                            displayedPath(path));
            }
        } else if (hasStructureSuffix(pathToBytes(path))) {
            dropped.append(path);
        } else {
            showMessage(Qt::yellow,
                        "Neither a structure (" + structureSuffixText() +
                            ") nor a file list (.fls), not added: " + displayedPath(path));
        }
    }
    files.append(dropped);
}

void cModulePage::saveInputList() {
    // The suffix is also the dialog's, so that it asks before it replaces the right file.
    QString path = askForFile({.caption = translated("Save input file list as"),
                               .directory = directories.savedList,
                               .filter = listFilter,
                               .fileMode = QFileDialog::AnyFile,
                               .acceptMode = QFileDialog::AcceptSave,
                               .defaultSuffix = QStringLiteral("fls")});
    if (path.isEmpty()) {
        return;
    }
    if (QFileInfo(path).suffix().isEmpty()) {
        path += QStringLiteral(".fls");
    }
    directories.savedList = placeOf(path);
    std::string text;
    for (const QString& file : files.paths()) {
        text += inOneLine(pathToBytes(file)) + '\n';
    }
    if (writeFile(path, text)) {
        showMessage(Qt::black, QStringLiteral("Input list file created"));
    }
}

void cModulePage::loadInputList() {
    const QString path = askForFile({.caption = translated("Choose PDB file(s)"),
                                     .directory = directories.loadedList,
                                     .filter = listFilter});
    if (path.isEmpty()) {
        return;
    }
    directories.loadedList = placeOf(path);
    files.clear();
    files.append(pathsInList(path));
}

void cModulePage::createConfiguration() {
    finishTyping();
    const QString directory = widgets.outputDirectory->text();
    const QString path =
        askForFile({.caption = translated("Save KEV configuration file as"), // in both modules
                    .directory = isDirectory(pathToBytes(directory)) ? directory : QString(),
                    .fileMode = QFileDialog::AnyFile,
                    .acceptMode = QFileDialog::AcceptSave});
    if (!path.isEmpty() && writeFile(path, configurationText(settings()))) {
        showMessage(Qt::black, QStringLiteral("Configuration file created"));
    }
}

void cModulePage::chooseTable(const std::string& key, const QString& caption,
                              const QString& filter) {
    auto* const field = qobject_cast<QLineEdit*>(fields.widget(key));
    QString place = directories.tables;
    if (place.isEmpty()) {
        const sSetting& setting = *findSetting(module, key);
        place = pathFromBytes(findShippedTable(setting.byDefault).parent_path().native());
    }
    const QString path = askForFile({.caption = caption, .directory = place, .filter = filter});
    if (!path.isEmpty()) {
        field->setText(path);
        directories.tables = placeOf(path);
    }
}

void cModulePage::offerShippedTables(QToolButton* button, const std::string& key) {
    auto* const field = qobject_cast<QLineEdit*>(fields.widget(key));
    auto* const menu = new QMenu(button);
    button->setMenu(menu);
    for (const std::filesystem::path& table : shippedTables(findSetting(module, key)->suffix)) {
        const QString path = pathFromBytes(table.native());
        QAction* const action = menu->addAction(QFileInfo(path).fileName());
        action->setToolTip(tableTitle(path));
        QObject::connect(action, &QAction::triggered, field,
                         [field, path] { field->setText(path); });
    }
    menu->setToolTipsVisible(true);
    button->setEnabled(!menu->isEmpty());
}

void cModulePage::chooseOutputDirectory(const QString& caption) {
    const QString path = askForFile({.caption = caption,
                                     .directory = widgets.outputDirectory->text(),
                                     .fileMode = QFileDialog::Directory});
    if (!path.isEmpty()) {
        widgets.outputDirectory->setText(path);
    }
}

void cModulePage::openOutputDirectory() {
    const QString path = widgets.outputDirectory->text();
    if (!isDirectory(pathToBytes(path))) {
        refuse(path.isEmpty() ? QStringLiteral("Please choose an output directory!")
                              : "Could not open directory " + displayedPath(path));
        return;
    }
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
}

// Settings files. Bare names: the settings belong to the directory in which the program was
// started.

std::string cModulePage::settingsFileName() const {
    return std::string(nameOf(module)) + "_program_settings.set";
}

/// Of the settings that have no place among the lines of the other file.
std::string cModulePage::furtherSettingsFileName() const {
    return std::string(nameOf(module)) + "_further_settings.cfg";
}

void cModulePage::saveSettings() {
    finishTyping();
    std::string text;
    for (const formField& field : settingsFields()) {
        text += inOneLine(fieldText(field)) + '\n';
    }
    for (const QString& path : files.paths()) {
        text += inOneLine(pathToBytes(path)) + '\n';
    }
    // The program is closing: nobody is left to be told of a failure.
    replaceFile(QString::fromStdString(settingsFileName()), text);
    saveFurtherSettings();
}

/// A file that ends early leaves the remaining fields as they are.
void cModulePage::loadSettings() {
    loadFurtherSettings();
    std::ifstream in;
    if (!openRegularFile(in, settingsFileName())) {
        return;
    }
    std::string line;
    for (const formField& field : settingsFields()) {
        if (!getTextLine(in, line) || line.size() > longestTextLine) {
            return;
        }
        setField(field, line);
    }
    files.append(pathsIn(in));
}

void cModulePage::saveFurtherSettings() const {
    std::string text;
    const cSettings shown = settings();
    for (const std::string& key : fields.addedKeys()) {
        if (!shown.isDefault(key)) {
            text += key + ":\t" + inOneLine(shown.valueText(key)) + '\n';
        }
    }
    const QString fileName = QString::fromStdString(furtherSettingsFileName());
    if (!text.empty() || QFileInfo::exists(fileName)) {
        replaceFile(fileName, text);
    }
}

void cModulePage::loadFurtherSettings() {
    cSettings kept(module);
    try {
        readConfiguration(furtherSettingsFileName(), "settings", kept, eTextSource::regularFile);
    } catch (const cUsageError&) { // what comes before a line that is in error counts
    }
    for (const std::string& key : fields.addedKeys()) {
        if (kept.isSet(key)) {
            fields.show(kept, key);
        }
    }
    showPreparation();
}

} // namespace kelmo
