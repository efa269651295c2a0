// Choosing directories and tables through dialogs, and what the form knows of them.

#include "app/file_replacement.h"
#include "app/kelmo_linux.h"
#include "app/path_checks.h"
#include "app/shipped_tables.h"
#include "run/file_path.h"
#include "ui_kelmo_main_window.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace kelmo {

namespace {

const QString radiiFilter = QStringLiteral("Radii files (*.radii);; All files(*.*)");

} // namespace

/// Empty when the user cancels.
QStringList kelmo::askForFiles(const sFileQuestion& question) {
    const QString directory =
        question.directory.isEmpty() ? QDir::currentPath() : question.directory;
    QFileDialog dialog(this, question.caption, directory, question.filter);
    dialog.setAcceptMode(question.acceptMode);
    dialog.setFileMode(question.fileMode);
    dialog.setOption(QFileDialog::ShowDirsOnly, question.fileMode == QFileDialog::Directory);
    dialog.setDefaultSuffix(question.defaultSuffix);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles() : QStringList();
}

QString kelmo::askForFile(const sFileQuestion& question) {
    const QStringList files = askForFiles(question);
    return files.isEmpty() ? QString() : files.first();
}

/// Returns false when the file is not written; the user has been told.
bool kelmo::writeFile(sModulePage& page, const QString& path, const std::string& text) {
    switch (replaceFile(path, text)) {
    case eReplacement::notOpened:
        return refuse(page, "Could not open file " + displayedPath(path));
    case eReplacement::notWritten:
        return refuse(page, "Could not write file " + displayedPath(path));
    case eReplacement::done:
        break;
    }
    return true;
}

void kelmo::chooseTable(sModulePage& page, QLineEdit* field, const QString& caption,
                        const QString& filter) {
    QString& place = page.remembered.tables;
    const QString path =
        askForFile({.caption = caption,
                    .directory = place.isEmpty() ? shippedTablesDirectory() : place,
                    .filter = filter});
    if (!path.isEmpty()) {
        field->setText(path);
        place = QFileInfo(path).absolutePath();
    }
}

void kelmo::on_pushButtonRadiiFile_clicked() {
    chooseTable(kev, ui->lineEditRadiiFile, tr("Choose radii file"), radiiFilter);
}

void kelmo::on_pushButtonVORRadiiFileBrowse_clicked() {
    chooseTable(vor, ui->lineEditVORRadiiFile, tr("Choose radii file"), radiiFilter);
}

void kelmo::on_pushButtonStandardASABrowse_clicked() {
    chooseTable(kev, ui->lineEditStandardASA, tr("Choose standard asa file"),
                QStringLiteral("Standard ASA files (*.asa);; All files(*.*)"));
}

void kelmo::on_pushButtonHydrophobicityFile_clicked() {
    chooseTable(kev, ui->lineEditHydrophobicityFile, tr("Choose hydrophobicity file"),
                QStringLiteral("Hydrophobicity files (*.hpb);; All files(*.*)"));
}

void kelmo::chooseOutputDirectory(sModulePage& page, const QString& caption) {
    const QString path = askForFile({.caption = caption,
                                     .directory = page.outputDirectory->text(),
                                     .fileMode = QFileDialog::Directory});
    if (!path.isEmpty()) {
        page.outputDirectory->setText(path);
    }
}

void kelmo::on_pushButtonKEVOutputDir_clicked() {
    chooseOutputDirectory(kev, tr("Choose KEV output directory"));
}

void kelmo::on_pushButtonVOROutputDir_clicked() {
    chooseOutputDirectory(vor, tr("Choose VOR output directory"));
}

void kelmo::openOutputDirectory(sModulePage& page) {
    const QString path = page.outputDirectory->text();
    if (!isDirectory(path)) {
        refuse(page, path.isEmpty() ? QStringLiteral("Please choose an output directory!")
                                    : "Could not open directory " + displayedPath(path));
        return;
    }
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
}

void kelmo::on_toolButtonKEVShowOutputDir_clicked() {
    openOutputDirectory(kev);
}

void kelmo::on_toolButtonVORShowOutputDir_clicked() {
    openOutputDirectory(vor);
}

/// Tells whether the working directory has the contact rules that VORDA reads there.
void kelmo::showContactTable() {
    const bool isThere = QFileInfo(contactTableName).isFile();
    const QString shipped = QDir(shippedTablesDirectory()).filePath(contactTableName);
    ui->labelVORContactTable->setText(isThere ? tr("%1, for VORDA").arg(contactTableName)
                                              : tr("%1 is missing").arg(contactTableName));
    ui->labelVORContactTable->setToolTip(
        tr("VORDA reads %1 in the directory in which the program was started:\n%2")
            .arg(contactTableName, QDir::currentPath()));
    ui->pushButtonVORCopyContactTable->setEnabled(!isThere && QFileInfo(shipped).isFile());
}

void kelmo::on_pushButtonVORCopyContactTable_clicked() {
    const QString shipped = QDir(shippedTablesDirectory()).filePath(contactTableName);
    if (!QFile::copy(shipped, contactTableName)) {
        refuse(vor, "Could not write file " + contactTableName);
    }
    showContactTable();
}

} // namespace kelmo
