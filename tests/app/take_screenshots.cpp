// Takes the pictures of docs/images: both tabs, idle and after a run over the samples.
// Usage: take_screenshots DIRECTORY [dark]

#include "tests/app/app_test_tools.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTabWidget>

namespace kelmo {

namespace {

QPalette darkPalette() {
    const QColor window(0x30, 0x30, 0x30);
    const QColor base(0x1e, 0x1e, 0x1e);
    const QColor text(0xe6, 0xe6, 0xe6);
    const QColor disabled(0x80, 0x80, 0x80);
    QPalette palette(window);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::Highlight, QColor(0x2a, 0x82, 0xda));
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::PlaceholderText, disabled);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::ToolTipText, QPalette::HighlightedText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, disabled);
    }
    return palette;
}

/// Short relative paths, the same on every machine.
void layOut(const cWorkingDirectory& place) {
    place.directory("structures");
    place.directory("tables");
    place.directory("reports");
    for (const char* sample : {"1ubq.pdb", "1a0q.pdb", "2hhb.pdb"}) {
        QFile::copy(dataPath(QStringLiteral("samples/") + sample),
                    QStringLiteral("structures/") + sample);
    }
    for (const char* table : {"protor.radii", "ala-x-ala.asa", "kyte-doolittle.hpb"}) {
        QFile::copy(dataPath(table), QStringLiteral("tables/") + table);
    }
    QFile::copy(dataPath("aa_contacts.txt"), "aa_contacts.txt");
    place.file("samples.fls", "structures/1ubq.pdb\nstructures/1a0q.pdb\nstructures/2hhb.pdb\n");
}

void fillStructureForm(const kelmo& window) {
    clickAndChoose(window, kevNames.loadList, "samples.fls");
    for (const char* box :
         {"checkBoxKEVAnalyzeBound", "checkBoxKEVAnalyseChain", "checkBoxCalcASA",
          "checkBoxCalcRASA", "checkBoxCalcDPX", "checkBoxCalcCX", "checkBoxCalcHydro",
          "checkBoxKEVXMLOutput", "checkBoxKEVTableOutput"}) {
        setChecked(window, box);
    }
    setText(window, "lineEditRadiiFile", "tables/protor.radii");
    setText(window, "lineEditStandardASA", "tables/ala-x-ala.asa");
    setText(window, "lineEditHydrophobicityFile", "tables/kyte-doolittle.hpb");
    setText(window, "lineEditKEVOutputDir", "reports");
}

void fillInteractionForm(const kelmo& window) {
    clickAndChoose(window, vorNames.loadList, "samples.fls");
    for (const char* box : {"checkBoxWriteContacts", "checkBoxWriteHotSpotResidues",
                            "checkBoxVORXmlOutput", "checkBoxVORTableOutput"}) {
        setChecked(window, box);
    }
    setText(window, "lineEditVORRadiiFile", "tables/protor.radii");
    setText(window, "lineEditVOROutputDir", "reports");
}

bool shoot(kelmo& window, const QString& fileName) {
    widget<QWidget>(window, "tabWidgetModuleChoice")->setFocus();
    QTest::qWait(300);
    return window.grab().save(fileName);
}

bool takeAll(const QString& target) {
    const cWorkingDirectory place;
    layOut(place);
    kelmo window;
    window.resize(1120, 740);
    window.show();
    auto* tabs = widget<QTabWidget>(window, "tabWidgetModuleChoice");
    bool isDone = shoot(window, target + "/structure-idle.png");
    tabs->setCurrentIndex(1);
    isDone = shoot(window, target + "/interaction-idle.png") && isDone;
    tabs->setCurrentIndex(0);
    fillStructureForm(window);
    click(window, kevNames.run);
    isDone =
        waitForEnd(window, kevNames) && shoot(window, target + "/structure-finished.png") && isDone;
    tabs->setCurrentIndex(1);
    fillInteractionForm(window);
    click(window, vorNames.run);
    return waitForEnd(window, vorNames) && shoot(window, target + "/interaction-finished.png") &&
           isDone;
}

} // namespace

} // namespace kelmo

using namespace kelmo;

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        qCritical("Usage: take_screenshots DIRECTORY [dark]");
        return EXIT_FAILURE;
    }
    QApplication::setStyle(QStringLiteral("Fusion"));
    if (arguments.contains(QStringLiteral("dark"))) {
        QApplication::setPalette(darkPalette());
    }
    const QDir target(arguments[1]);
    return takeAll(target.absolutePath()) ? EXIT_SUCCESS : EXIT_FAILURE;
}
