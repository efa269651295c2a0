// The form as it is built: names, ranges, defaults, menus, keyboard access, and that all of it
// fits.

#include "tests/app/app_test_tools.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMetaMethod>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTabWidget>
#include <QToolButton>

namespace kelmo {

class cFormTest : public QObject {
    Q_OBJECT

  private slots:
    void init();
    void cleanup();
    void everyNamedWidgetIsThere_data();
    void everyNamedWidgetIsThere();
    void spinBoxesHaveTheirRanges_data();
    void spinBoxesHaveTheirRanges();
    void numbersTakeAPointOrAComma_data();
    void numbersTakeAPointOrAComma();
    void whatAFieldShowsIsWhatCounts();
    void firstStartShowsDefaults();
    void menusHaveTheirTexts();
    void exitClosesTheWindow();
    void aboutBoxTellsTheVersion();
    void everyAutoConnectedSlotHasItsWidget();
    void changingTheTabDoesNothing();
    void mnemonicsAreUniqueWithinATab();
    void everyFieldIsReachedByAMnemonic();
    void everyFieldHasAToolTip();
    void tabKeyFollowsTheOrderOfWork();
    void nothingIsCutOff_data();
    void nothingIsCutOff();
    void smallWindowScrolls();
    void windowHasAnIcon();
    void pastedLineBreakIsRemoved();
    void shippedTablesAreOffered();
    void missingContactRulesCanBeCopied();
    void guideNamesWhatIsInTheForm();

  private:
    std::unique_ptr<cWorkingDirectory> place;
    std::unique_ptr<kelmo> window;
};

namespace {

constexpr const char* pages[] = {"tabKEV", "tabVOR"};

/// The letter behind the single ampersand of a text; null when there is none.
QChar mnemonicOf(const QString& text) {
    const QKeySequence keys = QKeySequence::mnemonic(text);
    return keys.isEmpty() ? QChar() : QChar(keys[0].key()).toUpper();
}

/// Spin boxes and such have line edits of their own.
bool isField(const QWidget& candidate) {
    return !candidate.objectName().startsWith(QLatin1String("qt_"));
}

template <typename Widget>
QList<Widget*> fieldsOf(const QWidget& page) {
    QList<Widget*> fields;
    for (Widget* candidate : page.findChildren<Widget*>()) {
        if (isField(*candidate)) {
            fields.append(candidate);
        }
    }
    return fields;
}

QWidget* groupOf(QWidget* field) {
    while (field != nullptr && qobject_cast<QGroupBox*>(field) == nullptr) {
        field = field->parentWidget();
    }
    return field;
}

} // namespace

void cFormTest::init() {
    QTest::failOnWarning(QRegularExpression(QStringLiteral("connect|QObject|QMetaObject|QThread")));
    place = std::make_unique<cWorkingDirectory>();
    window = std::make_unique<kelmo>();
}

void cFormTest::cleanup() {
    window.reset();
    place.reset();
}

void cFormTest::everyNamedWidgetIsThere_data() {
    QTest::addColumn<QString>("kind");
    const std::map<const char*, QStringList> names = {
        {"QTabWidget", {"tabWidgetModuleChoice"}},
        {"QListWidget", {"listWidgetKEVFileListDisplay", "listWidgetVORFileListDisplay"}},
        {"QTextBrowser", {"textBrowserKEVDisplay", "textBrowserVORDisplay"}},
        {"QCheckBox",
         {"checkBoxCalcASA", "checkBoxCalcRASA", "checkBoxCalcDPX", "checkBoxCalcCX",
          "checkBoxCalcHydro", "checkBoxWriteASA", "checkBoxKEVAnalyzeBound",
          "checkBoxKEVAnalyseChain", "checkBoxKEVXMLOutput", "checkBoxKEVTableOutput",
          "checkBoxWriteContacts", "checkBoxWriteHotSpotResidues",
          "checkBoxWriteResiueBindingState", "checkBoxVORXmlOutput", "checkBoxVORTableOutput"}},
        {"QRadioButton",
         {"radioButtonMaxDistance", "radioButtonPRISM", "radioButtonKRBHovik",
          "radioButtonDovreth"}},
        {"QLineEdit",
         {"lineEditStandardASA", "lineEditHydrophobicityFile", "lineEditRadiiFile",
          "lineEditKEVOutputDir", "lineEditVORRadiiFile", "lineEditVOROutputDir"}},
        {"QPushButton",
         {"pushButtonKEVRUN",
          "pushButtonKEVStop",
          "pushButtonKEVOutputClear",
          "pushButtonKEVCreateConfigFile",
          "pushButtonKEVSaveInputList",
          "pushButtonKEVLoadFileList",
          "pushButtonKEVFileOpen",
          "pushButtonKEVRemoveInFiles",
          "pushButtonKEVOutputDir",
          "pushButtonRadiiFile",
          "pushButtonStandardASABrowse",
          "pushButtonHydrophobicityFile",
          "pushButtonVORRun",
          "pushButtonVORStop",
          "pushButtonVORClearDisplay",
          "pushButtonVORCreateConfigFile",
          "pushButtonVORSaveInputList",
          "pushButtonVORLoadFileList",
          "pushButtonVORLoadFiles",
          "pushButtonVORRemoveInFiles",
          "pushButtonVOROutputDir",
          "pushButtonVORRadiiFileBrowse"}},
    };
    for (const auto& [kind, widgets] : names) {
        for (const QString& name : widgets) {
            QTest::newRow(qPrintable(name)) << QString::fromLatin1(kind);
        }
    }
}

void cFormTest::everyNamedWidgetIsThere() {
    QFETCH(QString, kind);
    const auto* found = window->findChild<QWidget*>(QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(found != nullptr);
    QCOMPARE(QString::fromLatin1(found->metaObject()->className()), kind);
}

void cFormTest::spinBoxesHaveTheirRanges_data() {
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("step");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<double>("value");
    QTest::newRow("doubleSpinBoxASAZSlice") << 0.1 << 1.0 << 0.05 << 2 << 0.25;
    QTest::newRow("doubleSpinBoxASARSolvent") << 0.0 << 2.0 << 0.1 << 2 << 1.4;
    QTest::newRow("doubleSpinBoxCxThreshold") << 5.0 << 15.0 << 0.5 << 1 << 10.0;
    QTest::newRow("doubleSpinBoxCXVatom") << 15.0 << 25.0 << 0.1 << 1 << 20.1;
    QTest::newRow("doubleSpinBoxMaxDistPRISMThreshold") << 0.0 << 10.0 << 0.05 << 2 << 4.5;
    QTest::newRow("doubleSpinBoxDovrethDeltaASA") << 0.05 << 100.0 << 0.05 << 2 << 1.0;
    QTest::newRow("doubleSpinBoxDovrethZSlice") << 0.1 << 1.0 << 0.05 << 2 << 0.25;
    QTest::newRow("doubleSpinBoxDovrethRSolvent") << 0.0 << 2.0 << 0.05 << 2 << 1.4;
}

void cFormTest::spinBoxesHaveTheirRanges() {
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, step);
    QFETCH(int, decimals);
    QFETCH(double, value);
    const auto* box = widget<QDoubleSpinBox>(*window, QTest::currentDataTag());
    QCOMPARE(box->minimum(), minimum);
    QCOMPARE(box->maximum(), maximum);
    QCOMPARE(box->singleStep(), step);
    QCOMPARE(box->decimals(), decimals);
    QCOMPARE(box->value(), value);
}

void cFormTest::numbersTakeAPointOrAComma_data() {
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("shown");
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    const QLocale german(QLocale::German, QLocale::Germany);
    const QLocale swiss(QLocale::German, QLocale::Switzerland);
    QTest::newRow("English point") << english << "1.45" << 1.45 << "1.45";
    QTest::newRow("English comma") << english << "1,45" << 1.45 << "1.45";
    QTest::newRow("German point") << german << "1.45" << 1.45 << "1,45";
    QTest::newRow("German comma") << german << "1,45" << 1.45 << "1,45";
    QTest::newRow("Swiss comma") << swiss << "0,5" << 0.5 << "0.50";
    QTest::newRow("two separators") << english << "1.4.5" << 1.45 << "1.45";
    QTest::newRow("German too large") << german << "2.5" << 2.0 << "2,00";
    QTest::newRow("too large") << english << "9.9" << 2.0 << "2.00";
    QTest::newRow("far too large") << english << "1e9" << 2.0 << "2.00";
    QTest::newRow("below zero") << english << "-1" << 0.0 << "0.00";
    QTest::newRow("no number") << english << "x." << 1.4 << "1.40";
    QTest::newRow("too fine") << english << "1.456" << 1.45 << "1.45";
}

void cFormTest::numbersTakeAPointOrAComma() {
    QFETCH(const QLocale, locale);
    QFETCH(const QString, typed);
    QFETCH(const double, value);
    QFETCH(const QString, shown);
    const QLocale earlier;
    QLocale::setDefault(locale);
    window = std::make_unique<kelmo>();
    QLocale::setDefault(earlier);
    auto* const box = widget<QDoubleSpinBox>(*window, "doubleSpinBoxASARSolvent");
    box->selectAll();
    QTest::keyClicks(box, typed);
    box->interpretText();
    QCOMPARE(box->value(), value);
    QCOMPARE(box->text(), shown);
}

void cFormTest::whatAFieldShowsIsWhatCounts() {
    window = std::make_unique<kelmo>();
    auto* const box = widget<QDoubleSpinBox>(*window, "doubleSpinBoxASAZSlice");
    box->selectAll();
    QTest::keyClicks(box, "0.05"); // below the range, and the field is not left
    QCOMPARE(box->text(), QStringLiteral("0.05"));
    window->saveKEVSettings();
    QCOMPARE(box->text(), QStringLiteral("0.10"));
    QCOMPARE(bytesOf(place->path("kev_program_settings.set")).split('\n').at(8), "0.1");
    box->selectAll();
    QTest::keyClicks(box, "5");
    QMetaObject::invokeMethod(window.get(), "on_pushButtonKEVRUN_clicked");
    QCOMPARE(box->text(), QStringLiteral("1.00"));
    QCOMPARE(box->value(), 1.0);
}

void cFormTest::firstStartShowsDefaults() {
    QVERIFY(isChecked(*window, "radioButtonMaxDistance"));
    // The areas are written unless the user says otherwise, or an analysis of areas alone would
    // report nothing.
    QVERIFY(isChecked(*window, "checkBoxWriteASA"));
    QVERIFY(!widget<QWidget>(*window, "checkBoxWriteASA")->isEnabled());
    const auto boxes = window->findChildren<QCheckBox*>();
    QVERIFY(boxes.size() > 10);
    for (const QCheckBox* box : boxes) {
        QCOMPARE(box->isChecked(), box->objectName() == QLatin1String("checkBoxWriteASA"));
    }
    for (const char* page : pages) {
        const auto edits = fieldsOf<QLineEdit>(*widget<QWidget>(*window, page));
        QVERIFY(edits.size() > 1);
        for (const QLineEdit* edit : edits) {
            QVERIFY(edit->text().isEmpty());
        }
    }
    for (const sModuleNames& names : {kevNames, vorNames}) {
        QCOMPARE(widget<QListWidget>(*window, names.list)->count(), 0);
        QVERIFY(widget<QTextBrowser>(*window, names.display)->document()->isEmpty());
        QVERIFY(widget<QWidget>(*window, names.run)->isEnabled());
        QVERIFY(!widget<QWidget>(*window, names.stop)->isEnabled());
    }
    QCOMPARE(widget<QTabWidget>(*window, "tabWidgetModuleChoice")->currentIndex(), 0);
    QCOMPARE(window->windowTitle(), QStringLiteral("Kelmo"));
}

void cFormTest::menusHaveTheirTexts() {
    const QList<QAction*> menus = window->menuBar()->actions();
    QCOMPARE(menus.size(), 2);
    QCOMPARE(menus[0]->text(), QStringLiteral("&File"));
    QCOMPARE(menus[0]->menu()->actions().size(), 1);
    const QAction* exit = menus[0]->menu()->actions().constFirst();
    QCOMPARE(exit->text(), QStringLiteral("E&xit"));
    QCOMPARE(exit->shortcut(), QKeySequence(QStringLiteral("Ctrl+Q")));
    QCOMPARE(exit->statusTip(), QStringLiteral("Exit the application"));
    QCOMPARE(menus[1]->text(), QStringLiteral("&Help"));
    QCOMPARE(menus[1]->menu()->actions().size(), 1);
    const QAction* about = menus[1]->menu()->actions().constFirst();
    QCOMPARE(about->text(), QStringLiteral("&About"));
    QCOMPARE(about->statusTip(), QStringLiteral("Show the application's About box"));
}

void cFormTest::exitClosesTheWindow() {
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    window->menuBar()->actions()[0]->menu()->actions().constFirst()->trigger();
    QVERIFY(!window->isVisible());
}

void cFormTest::aboutBoxTellsTheVersion() {
    QString title;
    QString text;
    Qt::TextFormat format = Qt::PlainText;
    const cDialogAnswer answer([&](QDialog& dialog) {
        const auto& box = dynamic_cast<QMessageBox&>(dialog);
        title = box.windowTitle();
        text = box.text();
        format = box.textFormat();
        dialog.accept();
    });
    window->menuBar()->actions()[1]->menu()->actions().constFirst()->trigger();
    QCOMPARE(title, QStringLiteral("About Menu"));
    QCOMPARE(text, QStringLiteral("<b>KELMO</b> - Kelmo <b>Version: 1.0</b>"));
    QVERIFY(format == Qt::AutoText || format == Qt::RichText);
}

void cFormTest::everyAutoConnectedSlotHasItsWidget() {
    int found = 0;
    const QMetaObject& meta = kelmo::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const QString name = QString::fromLatin1(method.name());
        if (!name.startsWith(QLatin1String("on_"))) {
            continue;
        }
        ++found;
        const auto* sender = window->findChild<QWidget*>(name.section('_', 1, 1));
        QVERIFY2(sender != nullptr, qPrintable(name));
        bool hasSignal = false;
        for (int k = 0; k < sender->metaObject()->methodCount(); ++k) {
            const QMetaMethod candidate = sender->metaObject()->method(k);
            hasSignal = hasSignal || (candidate.methodType() == QMetaMethod::Signal &&
                                      candidate.name() == name.section('_', 2).toLatin1() &&
                                      QMetaObject::checkConnectArgs(candidate, method));
        }
        QVERIFY2(hasSignal, qPrintable(name));
    }
    QCOMPARE(found, 32);
}

void cFormTest::changingTheTabDoesNothing() {
    auto* tabs = widget<QTabWidget>(*window, "tabWidgetModuleChoice");
    tabs->setCurrentIndex(1);
    tabs->setCurrentIndex(0);
    for (const sModuleNames& names : {kevNames, vorNames}) {
        QVERIFY(widget<QTextBrowser>(*window, names.display)->document()->isEmpty());
    }
    QCOMPARE(filesIn(place->path()).size(), 0U);
}

void cFormTest::mnemonicsAreUniqueWithinATab() {
    for (const char* page : pages) {
        QStringList texts;
        for (const QAction* menu : window->menuBar()->actions()) {
            texts.append(menu->text());
        }
        for (const QLabel* label : widget<QWidget>(*window, page)->findChildren<QLabel*>()) {
            texts.append(label->buddy() != nullptr ? label->text() : QString());
        }
        for (const auto* button : fieldsOf<QAbstractButton>(*widget<QWidget>(*window, page))) {
            texts.append(button->text());
        }
        std::map<QChar, QString> taken;
        for (const QString& text : texts) {
            const QChar letter = mnemonicOf(text);
            if (letter.isNull()) {
                continue;
            }
            QVERIFY2(taken.count(letter) == 0, qPrintable(text + " and " + taken[letter]));
            taken[letter] = text;
        }
        QVERIFY(taken.size() > 15);
    }
}

void cFormTest::everyFieldIsReachedByAMnemonic() {
    for (const char* page : pages) {
        const QWidget& tab = *widget<QWidget>(*window, page);
        QList<QWidget*> labelled;
        for (const QLabel* label : tab.findChildren<QLabel*>()) {
            if (label->buddy() != nullptr && !mnemonicOf(label->text()).isNull()) {
                labelled.append(label->buddy());
            }
        }
        QList<QWidget*> fields;
        for (QWidget* field : fieldsOf<QLineEdit>(tab)) {
            fields.append(field);
        }
        for (QWidget* field : tab.findChildren<QDoubleSpinBox*>()) {
            fields.append(field);
        }
        for (QWidget* field : tab.findChildren<QListWidget*>()) {
            fields.append(field);
        }
        QVERIFY(fields.size() > 5);
        for (const QWidget* field : fields) {
            QVERIFY2(labelled.contains(field), qPrintable(field->objectName()));
        }
        int boxes = 0;
        for (const QAbstractButton* box : tab.findChildren<QAbstractButton*>()) {
            if (box->isCheckable()) {
                QVERIFY2(!mnemonicOf(box->text()).isNull(), qPrintable(box->objectName()));
                ++boxes;
            }
        }
        QVERIFY(boxes > 5);
    }
}

void cFormTest::everyFieldHasAToolTip() {
    for (const char* page : pages) {
        int inputs = 0;
        for (const QWidget* field : widget<QWidget>(*window, page)->findChildren<QWidget*>()) {
            const bool isInput = (field->focusPolicy() & Qt::TabFocus) != 0 && isField(*field) &&
                                 qobject_cast<const QScrollArea*>(field) == nullptr;
            QVERIFY2(!isInput || !field->toolTip().isEmpty(), qPrintable(field->objectName()));
            inputs += isInput ? 1 : 0;
        }
        QVERIFY(inputs > 15);
    }
    const auto boxes = window->findChildren<QDoubleSpinBox*>();
    QVERIFY(boxes.size() > 5);
    for (const QDoubleSpinBox* box : boxes) {
        QVERIFY2(box->toolTip().contains(QLatin1String("efault")), qPrintable(box->objectName()));
        QVERIFY2(box->toolTip().contains(QString::fromUtf8("Å")), qPrintable(box->objectName()));
    }
}

void cFormTest::tabKeyFollowsTheOrderOfWork() {
    const QList<QStringList> groups = {
        {"groupBoxKEVFiles", "groupBoxKEVCompute", "groupBoxKEVParameters", "groupBoxKEVTables",
         "groupBoxFurtherSettings", "groupBoxKEVOutput", "groupBoxKEVRun", "groupBoxKEVLog"},
        {"groupBoxVORFiles", "groupBoxVORCriterion", "groupBoxVORParameters", "groupBoxVORTables",
         "groupBoxFurtherSettings", "groupBoxVOROutput", "groupBoxVORRun", "groupBoxVORLog"}};
    auto* tabs = widget<QTabWidget>(*window, "tabWidgetModuleChoice");
    window->show();
    for (int page = 0; page < 2; ++page) {
        tabs->setCurrentIndex(page);
        QStringList visited;
        QWidget* first = widget<QListWidget>(*window, page == 0 ? kevNames.list : vorNames.list);
        for (QWidget* field = first->nextInFocusChain(); field != first;
             field = field->nextInFocusChain()) {
            const QWidget* group = groupOf(field);
            if (group != nullptr && tabs->currentWidget()->isAncestorOf(group) &&
                (field->focusPolicy() & Qt::TabFocus) != 0 &&
                (visited.isEmpty() || visited.last() != group->objectName())) {
                visited.append(group->objectName());
            }
        }
        QCOMPARE(visited, groups[page]);
    }
}

void cFormTest::nothingIsCutOff_data() {
    QTest::addColumn<QSize>("size");
    QTest::newRow("small") << QSize(1024, 700);
    QTest::newRow("as it comes") << QSize();
    QTest::newRow("4K") << QSize(3840, 2160);
}

void cFormTest::nothingIsCutOff() {
    QFETCH(QSize, size);
    if (size.isValid()) {
        window->resize(size);
    }
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    auto* tabs = widget<QTabWidget>(*window, "tabWidgetModuleChoice");
    for (int page = 0; page < 2; ++page) {
        tabs->setCurrentIndex(page);
        QApplication::processEvents();
        if (size.isValid()) {
            QCOMPARE(window->size(), size);
        }
        const auto* area =
            widget<QScrollArea>(*window, page == 0 ? "scrollAreaKEV" : "scrollAreaVOR");
        QCOMPARE(area->horizontalScrollBar()->maximum(), 0);
        QCOMPARE(area->verticalScrollBar()->maximum(), 0);
        int measured = 0;
        for (const QWidget* field : tabs->currentWidget()->findChildren<QWidget*>()) {
            if (!field->isVisible() || !isField(*field) ||
                field->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored) {
                continue;
            }
            if (qobject_cast<const QLabel*>(field) != nullptr ||
                qobject_cast<const QAbstractButton*>(field) != nullptr ||
                qobject_cast<const QDoubleSpinBox*>(field) != nullptr) {
                const QSize needed = field->minimumSizeHint();
                QVERIFY2(field->width() >= needed.width() && field->height() >= needed.height(),
                         qPrintable(field->objectName()));
                ++measured;
            }
        }
        QVERIFY(measured > 20);
    }
}

void cFormTest::smallWindowScrolls() {
    QVERIFY(window->minimumSizeHint().width() <= 800);
    QVERIFY(window->minimumSizeHint().height() <= 480);
    window->resize(800, 480);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    QVERIFY(widget<QScrollArea>(*window, "scrollAreaKEV")->verticalScrollBar()->maximum() > 0);
}

void cFormTest::windowHasAnIcon() {
    QVERIFY(!window->windowIcon().isNull());
    const QImage image = window->windowIcon().pixmap(64, 64).toImage();
    QVERIFY(!image.isNull());
    // Its middle is drawn, its corners are not.
    QCOMPARE(qAlpha(image.pixel(image.width() / 2, image.height() / 2)), 255);
    QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
}

void cFormTest::pastedLineBreakIsRemoved() {
    auto* edit = widget<QLineEdit>(*window, "lineEditRadiiFile");
    edit->insert(QStringLiteral("tables/my.radii\r\n"));
    QCOMPARE(edit->text(), QStringLiteral("tables/my.radii"));
}

void cFormTest::shippedTablesAreOffered() {
    const std::map<const char*, std::pair<const char*, QString>> offers = {
        {"toolButtonRadiiFileShipped", {"lineEditRadiiFile", "protor.radii"}},
        {"toolButtonStandardASAShipped", {"lineEditStandardASA", "ala-x-ala.asa"}},
        {"toolButtonHydrophobicityFileShipped",
         {"lineEditHydrophobicityFile", "kyte-doolittle.hpb"}},
        {"toolButtonVORRadiiFileShipped", {"lineEditVORRadiiFile", "protor.radii"}},
    };
    for (const auto& [button, offer] : offers) {
        bool isFound = false;
        for (QAction* action : widget<QToolButton>(*window, button)->menu()->actions()) {
            QVERIFY(!action->toolTip().isEmpty());
            if (action->text() == offer.second) {
                isFound = true;
                action->trigger();
            }
        }
        QVERIFY(isFound);
        QVERIFY(QFile::exists(textOf(*window, offer.first)));
        QVERIFY(textOf(*window, offer.first).endsWith('/' + offer.second));
    }
}

void cFormTest::missingContactRulesCanBeCopied() {
    auto* copy = widget<QPushButton>(*window, "pushButtonVORCopyContactTable");
    QVERIFY(copy->isEnabled());
    QCOMPARE(widget<QLabel>(*window, "labelVORContactTable")->text(),
             QStringLiteral("aa_contacts.txt is missing"));
    copy->click();
    QCOMPARE(bytesOf(place->path("aa_contacts.txt")), bytesOf(dataPath("aa_contacts.txt")));
    QVERIFY(!copy->isEnabled());
    QCOMPARE(widget<QLabel>(*window, "labelVORContactTable")->text(),
             QStringLiteral("aa_contacts.txt, for VORDA"));
}

void cFormTest::guideNamesWhatIsInTheForm() {
    QStringList texts;
    for (const QLabel* label : window->findChildren<QLabel*>()) {
        texts.append(label->text().remove('&'));
    }
    static const QRegularExpression addedMnemonic(QStringLiteral(" \\(&[A-Z]\\)$"));
    for (const QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
        texts.append(button->text().remove(addedMnemonic).remove('&'));
    }
    int named = 0;
    static const QRegularExpression bold(QStringLiteral("\\*\\*([^*]+)\\*\\*"));
    for (const char* page : {"getting-started", "structure-analysis", "interaction-analysis"}) {
        const QString guide =
            QString::fromStdString(sourceText(std::string("docs/user-guide/") + page + ".md"));
        for (const QRegularExpressionMatch& match : bold.globalMatch(guide)) {
            QVERIFY2(texts.contains(match.captured(1).replace('\n', ' ')),
                     qPrintable(match.captured(1)));
            ++named;
        }
    }
    QVERIFY(named > 30);
}

} // namespace kelmo

QTEST_MAIN(kelmo::cFormTest)
#include "form_test.moc"
