#include "app/kelmo_linux.h"

#include "app/kev_page.h"
#include "app/vor_page.h"
#include "base/thread_order.h"
#include "run/crunkev_linux.h"
#include "run/file_path.h"
#include "run/run_vor_linux.h"
#include "ui_kelmo_main_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>

#include <algorithm>
#include <initializer_list>

/// The resources of a static library are registered by hand, outside any namespace.
static void registerResources() {
    Q_INIT_RESOURCE(kelmo);
}

namespace kelmo {

namespace {

/// Gives labels of different groups one width, so that the fields beside them line up.
void alignLabels(std::initializer_list<QLabel*> labels) {
    int width = 0;
    for (const QLabel* label : labels) {
        width = std::max(width, label->sizeHint().width());
    }
    for (QLabel* label : labels) {
        label->setMinimumWidth(width);
    }
}

} // namespace

kelmo::kelmo(QWidget* parent)
    : QMainWindow(parent), ui(std::make_unique<Ui_kelmoMainWindow>()), kevWorker(new cRunKEV(this)),
      vorWorker(new cRunVOR(this)), version(QStringLiteral("1.0")) {
    registerResources();
    setWindowIcon(QIcon(QStringLiteral(":/kelmo.svg")));
    ui->setupUi(this);
    createMenus(); // before the pages, which give their further fields letters that are left
    kev = std::make_unique<cKevPage>(this, kevWorker, *ui);
    vor = std::make_unique<cVorPage>(this, vorWorker, *ui);
    prepareForm();
    connectWorker(*kev, &kelmo::receiveKEVStatusMessage);
    connectWorker(*vor, &kelmo::receiveVORStatusMessage);
    connect(kevWorker, &QThread::started, this, &kelmo::kevStarted);
    connect(kevWorker, &QThread::finished, this, &kelmo::kevFinished);
    connect(vorWorker, &QThread::started, this, &kelmo::vorStarted);
    connect(vorWorker, &QThread::finished, this, &kelmo::vorFinished);
    connect(this, &kelmo::kevMessageReceived, this, &kelmo::updateKEVDisplay);
    connect(this, &kelmo::vorMessageReceived, this, &kelmo::updateVORDisplay);
    refreshTimer.setSingleShot(true);
    connect(&refreshTimer, &QTimer::timeout, this, &kelmo::refreshDisplays);
    loadKEVSettings();
    loadVORSettings();
    kev->showWriteAreaHint();
    vor->showContactTable();
}

kelmo::~kelmo() {
    saveKEVSettings();
    saveVORSettings();
    kev->endWorker();
    vor->endWorker();
}

void kelmo::prepareForm() {
    alignLabels({ui->labelRadiiFile, ui->labelStandardASA, ui->labelHydrophobicityFile,
                 ui->labelKEVOutputDir, ui->labelKEVFormats});
    alignLabels({ui->labelVORRadiiFile, ui->labelVORContactTableTitle, ui->labelVOROutputDir,
                 ui->labelVORReports, ui->labelVORFormats});
    const QIcon folder = style()->standardIcon(QStyle::SP_DirOpenIcon);
    ui->toolButtonKEVShowOutputDir->setIcon(folder);
    ui->toolButtonVORShowOutputDir->setIcon(folder);
    const auto showHint = [this] { kev->showWriteAreaHint(); };
    connect(ui->checkBoxCalcASA, &QCheckBox::toggled, this, showHint);
    connect(ui->checkBoxWriteASA, &QCheckBox::toggled, this, showHint);
    connect(ui->radioButtonKRBHovik, &QRadioButton::toggled, this,
            [this] { vor->showContactTable(); });
}

void kelmo::createMenus() {
    QMenu* fileMenu = menuBar()->addMenu(tr("&File"));
    QAction* exitAction = fileMenu->addAction(tr("E&xit"));
    exitAction->setShortcut(QKeySequence(tr("Ctrl+Q")));
    exitAction->setStatusTip(tr("Exit the application"));
    connect(exitAction, &QAction::triggered, this, &kelmo::close);

    QMenu* helpMenu = menuBar()->addMenu(tr("&Help"));
    QAction* aboutAction = helpMenu->addAction(tr("&About"));
    aboutAction->setStatusTip(tr("Show the application's About box"));
    connect(aboutAction, &QAction::triggered, this, &kelmo::about);
}

/// The signals cross threads, and are queued: the window is the one that they wait for.
void kelmo::connectWorker(cModulePage& page, void (kelmo::*receive)(cStatusMessage&)) {
    const cAnalysisRun* const worker = &page.worker();
    connect(worker, &cAnalysisRun::messageSent, this, [this, receive](const sMessage& sent) {
        takeOver(&sent);
        cStatusMessage message(sent);
        (this->*receive)(message);
    });
    connect(worker, &cAnalysisRun::fileBegun, this, [&page](const sFileBegun& file) {
        takeOver(&file);
        page.takeBegun(displayedPath(pathFromBytes(file.path)));
    });
    connect(worker, &cAnalysisRun::fileEnded, this, [&page](const sFileEnded& file) {
        takeOver(&file);
        page.takeEnded(file);
    });
    connect(worker, &cAnalysisRun::reportWasLost, this, [&page](const sReportLost& report) {
        takeOver(&report);
        page.takeLost();
    });
}

void kelmo::about() {
    QMessageBox::about(this, tr("About Menu"),
                       tr("<b>KELMO</b> - Kelmo <b>Version: ") + version + tr("</b>"));
}

void kelmo::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        // The table may have come or gone while the user was elsewhere.
        vor->showContactTable();
    }
}

void kelmo::closeEvent(QCloseEvent* event) {
    if (kevWorker->isRunning() || vorWorker->isRunning()) {
        const auto answer = QMessageBox::question(
            this, tr("Analysis running"), tr("An analysis is still running. Stop it and quit?"),
            QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
        if (answer != QMessageBox::Yes) {
            event->ignore();
            return;
        }
        kev->endWorker();
        vor->endWorker();
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    }
    QMainWindow::closeEvent(event);
}

void kelmo::keyPressEvent(QKeyEvent* event) {
    for (cModulePage* page :
         {static_cast<cModulePage*>(kev.get()), static_cast<cModulePage*>(vor.get())}) {
        if (event->key() == Qt::Key_Delete && page->hasListFocus()) {
            page->inputFiles().removeSelected();
            return;
        }
    }
    QMainWindow::keyPressEvent(event);
}

} // namespace kelmo
