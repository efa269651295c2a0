#include "app/kelmo_linux.h"

#include "app/file_drop.h"
#include "app/message_pane.h"
#include "app/shipped_tables.h"
#include "run/crunkev_linux.h"
#include "run/run_vor_linux.h"
#include "ui_kelmo_main_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
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
    attachPages();
    prepareForm();
    createMenus();
    connectWorkers();
    loadKEVSettings();
    loadVORSettings();
    showWriteAsaHint();
    showContactTable();
}

kelmo::~kelmo() {
    saveKEVSettings();
    saveVORSettings();
    endWorker(kev);
    endWorker(vor);
}

void kelmo::attachPages() {
    kev.worker = kevWorker;
    kev.display = ui->textBrowserKEVDisplay;
    kev.runButton = ui->pushButtonKEVRUN;
    kev.stopButton = ui->pushButtonKEVStop;
    kev.outputDirectory = ui->lineEditKEVOutputDir;
    kev.progressBar = ui->progressBarKEV;
    kev.progressLabel = ui->labelKEVProgress;
    kev.inputFiles.attach(ui->listWidgetKEVFileListDisplay, ui->labelKEVFileCount);

    vor.worker = vorWorker;
    vor.display = ui->textBrowserVORDisplay;
    vor.runButton = ui->pushButtonVORRun;
    vor.stopButton = ui->pushButtonVORStop;
    vor.outputDirectory = ui->lineEditVOROutputDir;
    vor.progressBar = ui->progressBarVOR;
    vor.progressLabel = ui->labelVORProgress;
    vor.inputFiles.attach(ui->listWidgetVORFileListDisplay, ui->labelVORFileCount);
}

void kelmo::prepareForm() {
    prepareMessagePane(*kev.display);
    prepareMessagePane(*vor.display);

    auto* kevDrop = new cFileDrop(ui->listWidgetKEVFileListDisplay);
    connect(kevDrop, &cFileDrop::filesDropped, this,
            [this](const QStringList& paths) { addDroppedFiles(kev, paths); });
    auto* vorDrop = new cFileDrop(ui->listWidgetVORFileListDisplay);
    connect(vorDrop, &cFileDrop::filesDropped, this,
            [this](const QStringList& paths) { addDroppedFiles(vor, paths); });

    offerShippedTables(ui->toolButtonRadiiFileShipped, ui->lineEditRadiiFile, ".radii");
    offerShippedTables(ui->toolButtonStandardASAShipped, ui->lineEditStandardASA, ".asa");
    offerShippedTables(ui->toolButtonHydrophobicityFileShipped, ui->lineEditHydrophobicityFile,
                       ".hpb");
    offerShippedTables(ui->toolButtonVORRadiiFileShipped, ui->lineEditVORRadiiFile, ".radii");

    alignLabels({ui->labelRadiiFile, ui->labelStandardASA, ui->labelHydrophobicityFile,
                 ui->labelKEVOutputDir, ui->labelKEVFormats});
    alignLabels({ui->labelVORRadiiFile, ui->labelVORContactTableTitle, ui->labelVOROutputDir,
                 ui->labelVORReports, ui->labelVORFormats});

    const QIcon folder = style()->standardIcon(QStyle::SP_DirOpenIcon);
    ui->toolButtonKEVShowOutputDir->setIcon(folder);
    ui->toolButtonVORShowOutputDir->setIcon(folder);

    for (QLineEdit* field :
         {ui->lineEditRadiiFile, ui->lineEditStandardASA, ui->lineEditHydrophobicityFile,
          ui->lineEditKEVOutputDir, ui->lineEditVORRadiiFile, ui->lineEditVOROutputDir}) {
        // A line break, easily pasted with a path, would shift every later line of the settings.
        connect(field, &QLineEdit::textChanged, field, [field](QString text) {
            if (text.contains(u'\n')) {
                field->setText(text.remove(QStringLiteral("\r\n")).remove(u'\n'));
            }
        });
    }
    connect(ui->checkBoxCalcASA, &QCheckBox::toggled, this, &kelmo::showWriteAsaHint);
    connect(ui->checkBoxWriteASA, &QCheckBox::toggled, this, &kelmo::showWriteAsaHint);
    connect(ui->radioButtonKRBHovik, &QRadioButton::toggled, this, &kelmo::showContactTable);
}

void kelmo::offerShippedTables(QToolButton* button, QLineEdit* field, const QString& suffix) {
    auto* menu = new QMenu(button);
    button->setMenu(menu);
    for (const QString& path : shippedTables(suffix)) {
        QAction* action = menu->addAction(QFileInfo(path).fileName());
        action->setToolTip(tableTitle(path));
        connect(action, &QAction::triggered, field, [field, path] { field->setText(path); });
    }
    menu->setToolTipsVisible(true);
    button->setEnabled(!menu->isEmpty());
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

void kelmo::connectWorkers() {
    // By name: this is how a reference crosses threads, as a copy of the message.
    connect(kevWorker, SIGNAL(sendStatusMessage(cStatusMessage&)), this,
            SLOT(receiveKEVStatusMessage(cStatusMessage&)));
    connect(vorWorker, SIGNAL(sendStatusMessage(cStatusMessage&)), this,
            SLOT(receiveVORStatusMessage(cStatusMessage&)));
    connect(kevWorker, &QThread::started, this, &kelmo::kevStarted);
    connect(kevWorker, &QThread::finished, this, &kelmo::kevFinished);
    connect(vorWorker, &QThread::started, this, &kelmo::vorStarted);
    connect(vorWorker, &QThread::finished, this, &kelmo::vorFinished);
    connect(this, &kelmo::kevMessageReceived, this, &kelmo::updateKEVDisplay);
    connect(this, &kelmo::vorMessageReceived, this, &kelmo::updateVORDisplay);
    refreshTimer.setSingleShot(true);
    connect(&refreshTimer, &QTimer::timeout, this, &kelmo::refreshDisplays);
}

void kelmo::about() {
    QMessageBox::about(this, tr("About Menu"),
                       tr("<b>KELMO</b> - Kelmo <b>Version: ") + version + tr("</b>"));
}

void kelmo::on_tabWidgetModuleChoice_currentChanged(int) {}

void kelmo::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        // The table may have come or gone while the user was elsewhere.
        showContactTable();
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
        endWorker(kev);
        endWorker(vor);
        deliverPendingMessages();
    }
    QMainWindow::closeEvent(event);
}

void kelmo::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete && ui->listWidgetKEVFileListDisplay->hasFocus()) {
        kev.inputFiles.removeSelected();
    } else if (event->key() == Qt::Key_Delete && ui->listWidgetVORFileListDisplay->hasFocus()) {
        vor.inputFiles.removeSelected();
    } else {
        QMainWindow::keyPressEvent(event);
    }
}

} // namespace kelmo
