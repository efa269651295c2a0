// Filling and emptying the input lists, and their list files.

#include "app/file_replacement.h"
#include "app/kelmo_linux.h"
#include "run/file_path.h"

#include <QFileInfo>

namespace kelmo {

namespace {

const QString listFilter = QStringLiteral("File List Files (*.fls);; All Files (*.*)");
const QString pdbFilter = QStringLiteral("Protein Data Bank files (*.pdb *.ent);; All files(*.*)");

QString directoryOf(const QString& path) {
    return QFileInfo(path).absolutePath();
}

} // namespace

void kelmo::on_pushButtonKEVFileOpen_clicked() {
    addFiles(kev);
}

void kelmo::on_pushButtonVORLoadFiles_clicked() {
    addFiles(vor);
}

void kelmo::on_pushButtonKEVRemoveInFiles_clicked() {
    kev.inputFiles.removeSelected();
}

void kelmo::on_pushButtonVORRemoveInFiles_clicked() {
    vor.inputFiles.removeSelected();
}

void kelmo::on_pushButtonKEVSaveInputList_clicked() {
    saveInputList(kev);
}

void kelmo::on_pushButtonVORSaveInputList_clicked() {
    saveInputList(vor);
}

void kelmo::on_pushButtonKEVLoadFileList_clicked() {
    loadInputList(kev);
}

void kelmo::on_pushButtonVORLoadFileList_clicked() {
    loadInputList(vor);
}

void kelmo::addFiles(sModulePage& page) {
    const QStringList paths = askForFiles({.caption = tr("Choose PDB file(s)"),
                                           .directory = page.remembered.addedFiles,
                                           .filter = pdbFilter,
                                           .fileMode = QFileDialog::ExistingFiles});
    if (!paths.isEmpty()) {
        page.inputFiles.append(paths);
        page.remembered.addedFiles = directoryOf(paths.first());
    }
}

void kelmo::saveInputList(sModulePage& page) {
    // The suffix is also the dialog's, so that it asks before it replaces the right file.
    QString path = askForFile({.caption = tr("Save input file list as"),
                               .directory = page.remembered.savedList,
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
    page.remembered.savedList = directoryOf(path);
    std::string text;
    for (const QString& file : page.inputFiles.paths()) {
        text += pathToBytes(file) + '\n';
    }
    if (writeFile(page, path, text)) {
        showMessage(page, Qt::black, QStringLiteral("Input list file created"));
    }
}

void kelmo::loadInputList(sModulePage& page) {
    const QString path = askForFile({.caption = tr("Choose PDB file(s)"),
                                     .directory = page.remembered.loadedList,
                                     .filter = listFilter});
    if (path.isEmpty()) {
        return;
    }
    page.remembered.loadedList = directoryOf(path);
    page.inputFiles.clear();
    std::ifstream in;
    if (openRegularFile(in, path)) {
        page.inputFiles.append(pathsIn(in));
    }
}

/// Adds PDB files and what file lists hold; nothing that is in the list goes.
void kelmo::addDroppedFiles(sModulePage& page, const QStringList& paths) {
    QStringList files;
    for (const QString& path : paths) {
        const QString suffix = QFileInfo(path).suffix().toLower();
        std::ifstream in;
        if (suffix == QLatin1String("fls") && openRegularFile(in, path)) {
            files += pathsIn(in);
        } else if (suffix == QLatin1String("pdb") || suffix == QLatin1String("ent")) {
            files.append(path);
        } else {
            showMessage(page, Qt::yellow,
                        "Neither a PDB file (.pdb, .ent) nor a file list (.fls), not added: " +
                            displayedPath(path));
        }
    }
    page.inputFiles.append(files);
}

} // namespace kelmo
