// The dialog in which the user says what of each file is analysed.

#include "tests/app/app_test_tools.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <functional>

namespace kelmo {

class cPreparationTest : public QObject {
    Q_OBJECT

  private slots:
    void init();
    void cleanup();
    void filesAreTakenAsTheyAreAtFirst();
    void standardIsOneClick();
    void ownChoicesAreToldInFull();
    void choicesAreKeptAndWrittenIntoConfigurations();
    void modulesChooseForThemselves();
    void choicesCountInRuns();
    void everyFieldHasALabelAndAToolTip();

  private:
    /// Opens the dialog of a module and does something in it.
    void inDialog(const char* module, const std::function<void(QDialog&)>& act) {
        const cDialogAnswer answer([&](QDialog& dialog) {
            act(dialog);
            dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Close)->click();
        });
        click(*window, (QByteArray("pushButton") + module + "Preparation").constData());
    }
    static void choose(QDialog& dialog, const char* key, const QString& value) {
        widget<QComboBox>(dialog, (QByteArray("setting_") + key).constData())
            ->setCurrentText(value);
    }
    static void press(const QDialog& dialog, const QString& text) {
        for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
            if (button->text().remove(u'&') == text) {
                button->click();
                return;
            }
        }
        QFAIL(qPrintable(text));
    }
    QString summary(const char* module) const { return label(module)->text(); }
    QLabel* label(const char* module) const {
        return widget<QLabel>(*window, (QByteArray("label") + module + "Preparation").constData());
    }

    std::unique_ptr<cWorkingDirectory> place;
    std::unique_ptr<kelmo> window;
};

void cPreparationTest::init() {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    place = std::make_unique<cWorkingDirectory>();
    window = std::make_unique<kelmo>();
}

void cPreparationTest::cleanup() {
    window.reset();
    place.reset();
}

void cPreparationTest::filesAreTakenAsTheyAreAtFirst() {
    for (const char* module : {"KEV", "VOR"}) {
        QCOMPARE(summary(module), QStringLiteral("Taken as they are"));
        QVERIFY(label(module)->toolTip().isEmpty());
    }
}

void cPreparationTest::standardIsOneClick() {
    inDialog("KEV", [](QDialog& dialog) { press(dialog, QStringLiteral("Standard")); });
    QCOMPARE(summary("KEV"), QStringLiteral("Standard preparation"));
    inDialog("KEV", [](QDialog& dialog) {
        QCOMPARE(widget<QComboBox>(dialog, "setting_hydrogens")->currentText(),
                 QStringLiteral("drop"));
        press(dialog, QStringLiteral("As is"));
    });
    QCOMPARE(summary("KEV"), QStringLiteral("Taken as they are"));
}

void cPreparationTest::ownChoicesAreToldInFull() {
    inDialog("VOR", [](QDialog& dialog) {
        choose(dialog, "hydrogens", QStringLiteral("drop"));
        widget<QLineEdit>(dialog, "setting_assembly")->setText(QStringLiteral("1"));
    });
    QCOMPARE(summary("VOR"), QStringLiteral("Own preparation"));
    QCOMPARE(label("VOR")->toolTip(), QStringLiteral("Hydrogens: drop\nAssembly: 1"));
    inDialog("VOR", [](QDialog& dialog) {
        choose(dialog, "hydrogens", QStringLiteral("keep"));
        widget<QLineEdit>(dialog, "setting_assembly")->clear();
    });
    QCOMPARE(summary("VOR"), QStringLiteral("Taken as they are"));
}

void cPreparationTest::choicesAreKeptAndWrittenIntoConfigurations() {
    inDialog("KEV", [](QDialog& dialog) {
        press(dialog, QStringLiteral("Standard"));
        choose(dialog, "models", QStringLiteral("each"));
    });
    window.reset();
    window = std::make_unique<kelmo>();
    QCOMPARE(summary("KEV"), QStringLiteral("Own preparation"));
    QCOMPARE(summary("VOR"), QStringLiteral("Taken as they are"));
    clickAndChoose(*window, kevNames.createConfiguration, place->path("made.cfg"));
    QVERIFY(bytesOf(place->path("made.cfg"))
                .endsWith("alternate_locations:\thighest_occupancy\nhydrogens:\tdrop\n"
                          "modified_residues:\tas_parent\nnames:\tunderstood\nmodels:\teach\n"));
}

void cPreparationTest::modulesChooseForThemselves() {
    inDialog("VOR", [](QDialog& dialog) { press(dialog, QStringLiteral("Standard")); });
    QCOMPARE(summary("KEV"), QStringLiteral("Taken as they are"));
    QCOMPARE(summary("VOR"), QStringLiteral("Standard preparation"));
}

void cPreparationTest::choicesCountInRuns() {
    const QString out = place->directory("out");
    prepareKev(*window, {place->file("a.pdb", glycineStructure())},
               place->file("a.radii", glycineRadiiFile()), out);
    inDialog("KEV", [](QDialog& dialog) { choose(dialog, "hydrogens", QStringLiteral("drop")); });
    click(*window, kevNames.run);
    QVERIFY(waitForEnd(*window, kevNames));
    const auto reports = filesIn(out);
    QVERIFY(!reports.empty());
    for (const auto& [name, bytes] : reports) {
        QVERIFY2(bytes.contains("hydrogens"), qPrintable(name));
    }
}

void cPreparationTest::everyFieldHasALabelAndAToolTip() {
    inDialog("KEV", [](QDialog& dialog) {
        QList<QWidget*> labelled;
        for (const QLabel* one : dialog.findChildren<QLabel*>()) {
            labelled.append(one->buddy());
        }
        int fields = 0;
        for (QWidget* field : dialog.findChildren<QWidget*>()) {
            if (field->objectName().startsWith(QLatin1String("setting_"))) {
                QVERIFY2(labelled.contains(field), qPrintable(field->objectName()));
                QVERIFY2(!field->toolTip().isEmpty(), qPrintable(field->objectName()));
                ++fields;
            }
        }
        QCOMPARE(fields, 6);
        if (qEnvironmentVariableIsSet("KELMO_PICTURES")) {
            dialog.grab().save(qEnvironmentVariable("KELMO_PICTURES") + "/preparation.png");
        }
    });
}

} // namespace kelmo

QTEST_MAIN(kelmo::cPreparationTest)
#include "preparation_test.moc"
