#include "app/module_page.h"

#include "app/file_drop.h"
#include "app/message_pane.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QCoreApplication>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTextBrowser>

namespace kelmo {

cModulePage::cModulePage(eModule ofModule, QWidget* itsWindow, cAnalysisRun* itsWorker,
                         const sPageWidgets& itsWidgets)
    : window(itsWindow), widgets(itsWidgets), fields(ofModule), module(ofModule),
      analysis(itsWorker) {
    files.attach(widgets.fileList, widgets.fileCount);
    prepareMessagePane(*widgets.display);
    const auto* drop = new cFileDrop(widgets.fileList);
    QObject::connect(drop, &cFileDrop::filesDropped, widgets.fileList,
                     [this](const QStringList& paths) { addDroppedFiles(paths); });
}

cModulePage::~cModulePage() = default;

namespace {

/// The last widget that the tab key comes to on its way from `first` through those within `parent`.
QWidget* lastFieldOf(const QWidget& parent, QWidget& first) {
    QWidget* last = &first;
    for (QWidget* field = first.nextInFocusChain(); field != &first;
         field = field->nextInFocusChain()) {
        if (parent.isAncestorOf(field) && (field->focusPolicy() & Qt::TabFocus) != 0) {
            last = field;
        }
    }
    return last;
}

} // namespace

void cModulePage::bindPath(const std::string& key, QLineEdit* edit) {
    fields.bind(key, edit);
    // A line break, easily pasted with a path, would shift every later line of the settings.
    QObject::connect(edit, &QLineEdit::textChanged, edit, [edit](QString text) {
        if (text.contains(u'\n')) {
            edit->setText(text.remove(QStringLiteral("\r\n")).remove(u'\n'));
        }
    });
}

void cModulePage::addFurtherSettings() {
    preparation = new cPreparationDialog(module, fields, window);
    QObject::connect(widgets.preparationButton, &QAbstractButton::clicked, window,
                     [this] { choosePreparation(); });
    showPreparation();
    auto* box = new QGroupBox(QCoreApplication::translate("kelmo", "Further settings"));
    box->setObjectName(QStringLiteral("groupBoxFurtherSettings"));
    auto* layout = new QFormLayout(box);
    if (fields.addMissing(*layout) == 0) {
        delete box;
        return;
    }
    QWidget* former = lastFieldOf(*widgets.settingsColumn->parentWidget(), *widgets.fileList);
    widgets.settingsColumn->addWidget(box);
    for (const std::string& key : fields.addedKeys()) {
        QWidget::setTabOrder(former, fields.widget(key));
        former = fields.widget(key);
    }
}

void cModulePage::choosePreparation() {
    preparation->exec();
    showPreparation();
}

void cModulePage::showPreparation() {
    widgets.preparationSummary->setText(preparation->summary());
    widgets.preparationSummary->setToolTip(preparation->details());
}

cSettings cModulePage::settings() const {
    cSettings settings(module);
    fields.read(settings);
    return settings;
}

bool cModulePage::hasListFocus() const {
    return widgets.fileList->hasFocus();
}

void cModulePage::refuse(const QString& problem) {
    showMessage(Qt::red, problem);
}

void cModulePage::finishTyping() {
    for (QDoubleSpinBox* box : window->findChildren<QDoubleSpinBox*>()) {
        box->interpretText();
    }
}

} // namespace kelmo
