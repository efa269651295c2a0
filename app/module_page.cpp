#include "app/module_page.h"

#include "app/file_drop.h"
#include "app/message_pane.h"

#include <QAbstractButton>
#include <QBoxLayout>
#include <QCoreApplication>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenuBar>
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

QChar mnemonicOf(const QString& text) {
    const QKeySequence keys = QKeySequence::mnemonic(text);
    return keys.isEmpty() ? QChar() : QChar(keys[0].key()).toUpper();
}

/// Letters that menus, labels and buttons of a page already go by.
QString takenMnemonics(const QMainWindow& window, const QWidget& page) {
    QString taken;
    for (const QAction* menu : window.menuBar()->actions()) {
        taken += mnemonicOf(menu->text());
    }
    for (const QLabel* label : page.findChildren<QLabel*>()) {
        taken += label->buddy() != nullptr ? mnemonicOf(label->text()) : QChar();
    }
    for (const QAbstractButton* button : page.findChildren<QAbstractButton*>()) {
        taken += mnemonicOf(button->text());
    }
    return taken;
}

/// The text with the first of its letters marked that is free, or with one added.
QString withMnemonic(const QString& text, const QString& taken) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isLetter() && text[i].unicode() < 128 && !taken.contains(text[i].toUpper())) {
            return QString(text).insert(i, u'&');
        }
    }
    for (QChar letter = u'A'; letter <= u'Z'; letter = QChar(letter.unicode() + 1)) {
        if (!taken.contains(letter)) {
            return text + QStringLiteral(" (&%1)").arg(letter);
        }
    }
    return text;
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
    QWidget* former = lastFieldOf(*widgets.tables, *widgets.fileList);
    widgets.resultsColumn->insertWidget(widgets.resultsColumn->indexOf(widgets.tables) + 1, box);
    for (const std::string& key : fields.addedKeys()) {
        QWidget* const field = fields.widget(key);
        if (!box->isAncestorOf(field)) {
            continue; // in a dialog of its own
        }
        QWidget::setTabOrder(former, field);
        former = field;
        if (auto* button = qobject_cast<QAbstractButton*>(field); button != nullptr) {
            button->setText(
                withMnemonic(button->text(),
                             takenMnemonics(*qobject_cast<QMainWindow*>(window), *widgets.page)));
        }
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
