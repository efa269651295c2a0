// The run buttons: the checks in their order, the hand-over to the workers, and what a run leaves.

#include "analysis/parameter_tables.h"
#include "run/crunkev_linux.h"
#include "run/run_vor_linux.h"
#include "tests/app/app_test_tools.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>

#include <sys/stat.h>

namespace kelmo {

using enum eInteractionCriterion;

class cRunControlTest : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase();
    void init();
    void cleanup();
    void kevChecksComeInTheirOrder();
    void completeFormIsChosenInTheForm();
    void vorChecksComeInTheirOrder();
    void contactsReportAloneIsRefusedUnderDovreth();
    void outputDirectoryThatIsAFileIsRefused();
    void parameterFileThatIsNoRegularFileIsRefused_data();
    void parameterFileThatIsNoRegularFileIsRefused();
    void badTablesAreReported_data();
    void badTablesAreReported();
    void tablesThatAreNotNeededAreNotRead();
    void openInFStreamOpensRegularFiles();
    void openInFStreamTellsInTheCurrentColour();
    void missingContactRulesEndTheClick();
    void contactRulesThatBreakTheirColumnsAreReported();
    void refusedClickLeavesTheModuleIdle();
    void kevRunWritesWhatTheWorkerWrites_data();
    void kevRunWritesWhatTheWorkerWrites();
    void vorRunWritesWhatTheWorkerWrites_data();
    void vorRunWritesWhatTheWorkerWrites();
    void areasAreWrittenOnlyWhenBothBoxesAreChecked();
    void buttonsFollowTheRun();
    void messagesOfARunComeInOrder();
    void clickWhileRunningIsIgnored();
    void laterRunUsesTheFormAnew();
    void modulesRunSideBySide();

  private:
    QStringList log(const sModuleNames& names) const {
        return colouredLines(*widget<QTextBrowser>(*window, names.display));
    }
    /// Clicks and returns what was added to the log.
    QStringList clickRun(const sModuleNames& names) {
        click(*window, names.clear);
        click(*window, names.run);
        return log(names);
    }
    void chooseEverything();

    std::unique_ptr<cWorkingDirectory> place;
    std::unique_ptr<kelmo> window;
};

namespace {

QStringList red(const QString& text) {
    QStringList lines;
    for (const QString& line : text.split('\n')) {
        lines.append(coloured(Qt::red, line));
    }
    return lines;
}

QString stamped(const QString& name) {
    static const QRegularExpression stamp(QStringLiteral("_[0-9]{12}_"));
    return QString(name).replace(stamp, QStringLiteral("_STAMP_"));
}

/// The reports of a directory, with the stamps in their names made equal.
std::map<QString, QByteArray> reportsIn(const QString& directory) {
    std::map<QString, QByteArray> reports;
    for (const auto& [name, bytes] : filesIn(directory)) {
        reports[stamped(name)] = bytes;
    }
    return reports;
}

template <typename Table, typename Reader>
Table tableFrom(const QString& path, Reader read) {
    std::ifstream in(path.toStdString());
    Table table;
    if (!read(in, table).empty()) {
        qFatal("Cannot use %s", qPrintable(path));
    }
    return table;
}

using radiiTable = std::map<std::string, double>;

} // namespace

void cRunControlTest::initTestCase() {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void cRunControlTest::init() {
    place = std::make_unique<cWorkingDirectory>();
    window = std::make_unique<kelmo>();
}

void cRunControlTest::cleanup() {
    window.reset();
    place.reset();
}

void cRunControlTest::kevChecksComeInTheirOrder() {
    // Everything is missing: only the first problem is told.
    QCOMPARE(clickRun(kevNames), red("No files loaded for analysis"));
    addFiles(*window, kevNames, {place->file("a.pdb", glycineStructure())});
    QCOMPARE(clickRun(kevNames), red("No attributes selected for analysis!"));
    for (const char* box : {"checkBoxCalcASA", "checkBoxCalcRASA", "checkBoxCalcDPX",
                            "checkBoxCalcCX", "checkBoxCalcHydro"}) {
        setChecked(*window, box);
        QCOMPARE(clickRun(kevNames), red("Please choose an analysis type!"));
        setChecked(*window, box, false);
    }
    setChecked(*window, "checkBoxCalcASA");
    for (const char* box : {"checkBoxKEVAnalyzeBound", "checkBoxKEVAnalyseChain"}) {
        setChecked(*window, box);
        QCOMPARE(clickRun(kevNames), red("Please choose an output file format (XML or Table)!"));
        setChecked(*window, box, false);
    }
    setChecked(*window, "checkBoxKEVAnalyzeBound");
    for (const char* box : {"checkBoxKEVXMLOutput", "checkBoxKEVTableOutput"}) {
        setChecked(*window, box);
        QCOMPARE(clickRun(kevNames), red("Please choose an output directory!"));
        setChecked(*window, box, false);
    }
    setChecked(*window, "checkBoxKEVXMLOutput");
    setText(*window, "lineEditKEVOutputDir", place->path("nowhere"));
    QCOMPARE(clickRun(kevNames),
             red("The output directory path is invalid! Please specify a valid directory\n"));
    setText(*window, "lineEditKEVOutputDir", place->path());
    QCOMPARE(clickRun(kevNames), red("Please specify a radii file!"));
    setText(*window, "lineEditRadiiFile", place->path("no.radii"));
    QCOMPARE(clickRun(kevNames), red("Not a valid radii file path!\nPlease make sure that the path "
                                     "of the specified radii file is correct!\n"));
    setText(*window, "lineEditRadiiFile", place->file("bad.radii", "# radii\n\nGLY_CA  1e0\n"));
    QCOMPARE(clickRun(kevNames), red("Radii file not properly formatted!\nError in line: 3"));
    // The tables come in the order radii, standard areas, hydrophobicity.
    setText(*window, "lineEditRadiiFile", place->file("good.radii", glycineRadiiFile()));
    setChecked(*window, "checkBoxCalcRASA");
    setChecked(*window, "checkBoxCalcHydro");
    QCOMPARE(clickRun(kevNames),
             red("Not a valid standard asa file path!\nPlease make sure that the path of the "
                 "specified standard asa file is correct!\n"));
    setText(*window, "lineEditStandardASA", dataPath("ala-x-ala.asa"));
    QCOMPARE(clickRun(kevNames),
             red("Not a valid hydrophobicity file path!\nPlease make sure that the path of the "
                 "specified hydrophobicity file is correct!\n"));
    setText(*window, "lineEditHydrophobicityFile", dataPath("kyte-doolittle.hpb"));
    QCOMPARE(clickRun(kevNames), QStringList(coloured(Qt::blue, "Analysis started")));
    QVERIFY(waitForEnd(*window, kevNames));
}

void cRunControlTest::completeFormIsChosenInTheForm() {
    auto* form = widget<QComboBox>(*widget<QWidget>(*window, "tabKEV"), "setting_asa_form");
    QCOMPARE(form->currentText(), QStringLiteral("classic"));
    prepareKev(*window, {place->file("a.pdb", glycineStructure())},
               place->file("good.radii", glycineRadiiFile()), place->directory("out"));
    setChecked(*window, "checkBoxCalcRASA");
    setText(*window, "lineEditStandardASA", dataPath("ala-x-ala.asa"));
    form->setCurrentText(QStringLiteral("complete"));
    QCOMPARE(clickRun(kevNames).join('\n'),
             coloured(Qt::blue, "Analysis started") + '\n' +
                 coloured(Qt::yellow, "The standard areas are those of the classic form of the "
                                      "surface; with asa_form complete take "
                                      "ala-x-ala-complete.asa"));
    QVERIFY(waitForEnd(*window, kevNames));
    bool isStated = false;
    for (const auto& [name, bytes] : filesIn(place->path("out"))) {
        isStated = isStated || bytes.contains("ASA_form: complete\n");
    }
    QVERIFY(isStated);
    setText(*window, "lineEditStandardASA", dataPath("ala-x-ala-complete.asa"));
    QVERIFY(!clickRun(kevNames).join('\n').contains("standard areas"));
    QVERIFY(waitForEnd(*window, kevNames));
}

void cRunControlTest::vorChecksComeInTheirOrder() {
    QCOMPARE(clickRun(vorNames), red("No files loaded for analysis!"));
    addFiles(*window, vorNames, {place->file("a.pdb", glycineStructure())});
    QCOMPARE(clickRun(vorNames), red("Please choose an output file format (XML or Table)!"));
    for (const char* box : {"checkBoxVORXmlOutput", "checkBoxVORTableOutput"}) {
        setChecked(*window, box);
        QCOMPARE(clickRun(vorNames),
                 red("Please choose an output file type (Contacts, Binding Residues or Binding "
                     "State)!"));
        setChecked(*window, box, false);
    }
    setChecked(*window, "checkBoxVORXmlOutput");
    for (const char* box : {"checkBoxWriteContacts", "checkBoxWriteHotSpotResidues",
                            "checkBoxWriteResiueBindingState"}) {
        setChecked(*window, box);
        QCOMPARE(clickRun(vorNames), red("Please choose an output directory!"));
        setChecked(*window, box, false);
    }
    setChecked(*window, "checkBoxWriteContacts");
    setText(*window, "lineEditVOROutputDir", place->path("nowhere"));
    QCOMPARE(clickRun(vorNames),
             red("The output directory path is invalid! Please specify a valid directory!"));
    setText(*window, "lineEditVOROutputDir", place->path());
    QCOMPARE(clickRun(vorNames), red("Please specify a radii file!"));
    const QString missing = place->path("no.radii");
    setText(*window, "lineEditVORRadiiFile", missing);
    // The log was emptied; its text colour is still that of the last message.
    QCOMPARE(clickRun(vorNames),
             QStringList(coloured(Qt::red, "Could not open file " + missing)) +
                 red("Not a valid radii file path!\nPlease make sure that the path of the "
                     "specified radii file is correct!\n"));
    setText(*window, "lineEditVORRadiiFile", place->file("bad.radii", "GLY_CA 1.87\n"));
    QCOMPARE(clickRun(vorNames), QStringList(coloured(Qt::blue, "Analysis started")));
    QVERIFY(waitForEnd(*window, vorNames));
    setText(*window, "lineEditVORRadiiFile", place->file("bad.radii", "gly_ca  1.87\n"));
    QCOMPARE(clickRun(vorNames), red("Radii file not properly formatted!\nError in line: 1"));
}

void cRunControlTest::contactsReportAloneIsRefusedUnderDovreth() {
    prepareVor(*window, {place->file("a.pdb", glycineStructure())},
               place->file("a.radii", glycineRadiiFile()), place->directory("out"));
    click(*window, "radioButtonDovreth");
    QCOMPARE(clickRun(vorNames),
             red("Please choose an output file type (Contacts, Binding Residues or Binding "
                 "State)!"));
    setChecked(*window, "checkBoxWriteHotSpotResidues");
    QCOMPARE(clickRun(vorNames), QStringList(coloured(Qt::blue, "Analysis started")));
    QVERIFY(waitForEnd(*window, vorNames));
    const auto reports = reportsIn(place->path("out"));
    QCOMPARE(reports.size(), 1U);
    QCOMPARE(reports.begin()->first, QStringLiteral("a_STAMP_binding_residues.tbl"));
}

void cRunControlTest::outputDirectoryThatIsAFileIsRefused() {
    const QString pdb = place->file("a.pdb", glycineStructure());
    const QString radii = place->file("a.radii", glycineRadiiFile());
    prepareKev(*window, {pdb}, radii, pdb);
    prepareVor(*window, {pdb}, radii, pdb);
    QCOMPARE(clickRun(kevNames),
             red("The output directory path is invalid! Please specify a valid directory\n"));
    QCOMPARE(clickRun(vorNames),
             red("The output directory path is invalid! Please specify a valid directory!"));
}

void cRunControlTest::parameterFileThatIsNoRegularFileIsRefused_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("directory") << ".";
    QTest::newRow("pipe") << "pipe";
    QTest::newRow("device") << "/dev/zero";
}

void cRunControlTest::parameterFileThatIsNoRegularFileIsRefused() {
    QFETCH(QString, name);
    QCOMPARE(::mkfifo("pipe", 0600), 0);
    const QString pdb = place->file("a.pdb", glycineStructure());
    prepareKev(*window, {pdb}, name, place->path());
    prepareVor(*window, {pdb}, name, place->path());
    QCOMPARE(clickRun(kevNames),
             red(QStringLiteral("Not a valid radii file path!\nPlease make sure that the path of "
                                "the specified radii file is correct!\n")));
    QCOMPARE(clickRun(vorNames),
             QStringList(coloured(Qt::black, "Could not open file " + name)) +
                 red(QStringLiteral("Not a valid radii file path!\nPlease make sure that the path "
                                    "of the specified radii file is correct!\n")));
}

void cRunControlTest::badTablesAreReported_data() {
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<QString>("message");
    const QString asa = QStringLiteral("lineEditStandardASA");
    const QString hydro = QStringLiteral("lineEditHydrophobicityFile");
    const QByteArray areas = bytesOf(dataPath("ala-x-ala.asa"));
    const QByteArray scale = bytesOf(dataPath("kyte-doolittle.hpb"));
    QTest::newRow("bad line of areas")
        << "checkBoxCalcRASA" << asa << QByteArray("# x\nALA 1 2 3\n")
        << "Standard ASA file not properly formatted!\nError in line: 2";
    QTest::newRow("areas that lack two")
        << "checkBoxCalcRASA" << asa
        << QByteArray(areas).replace("ALA ", "ALX ").replace("GLY ", "GLX ")
        << "Did not find entries for all 20 standard amino acids "
           "in standard asa file! Missing: ALA GLY ";
    QTest::newRow("bad line of the scale")
        << "checkBoxCalcHydro" << hydro << QByteArray("ala 1.8\n")
        << "Hydrophobicity file not properly formatted!\nError in line: 1";
    QTest::newRow("scale that lacks one")
        << "checkBoxCalcHydro" << hydro << QByteArray(scale).replace("TRP", "TRX")
        << "Did not find entries for all 20 standard amino acids in hydrophobicity file file! "
           "Missing: TRP ";
}

void cRunControlTest::badTablesAreReported() {
    QFETCH(QString, box);
    QFETCH(QString, field);
    QFETCH(QByteArray, table);
    QFETCH(QString, message);
    prepareKev(*window, {place->file("a.pdb", glycineStructure())},
               place->file("a.radii", glycineRadiiFile()), place->directory("out"));
    setChecked(*window, box.toLatin1().constData());
    setText(*window, field.toLatin1().constData(), place->file("table", table));
    QCOMPARE(clickRun(kevNames), red(message));
    QVERIFY(filesIn(place->path("out")).empty());
}

void cRunControlTest::tablesThatAreNotNeededAreNotRead() {
    prepareKev(*window, {place->file("a.pdb", glycineStructure())},
               place->file("a.radii", glycineRadiiFile()), place->directory("out"));
    setText(*window, "lineEditStandardASA", "/dev/zero");
    setText(*window, "lineEditHydrophobicityFile", "/nowhere");
    QCOMPARE(clickRun(kevNames), QStringList(coloured(Qt::blue, "Analysis started")));
    QVERIFY(waitForEnd(*window, kevNames));
}

void cRunControlTest::openInFStreamOpensRegularFiles() {
    auto* display = widget<QTextBrowser>(*window, kevNames.display);
    std::ifstream in;
    QVERIFY(window->openInFStream(in, place->file("a", "word"), display));
    std::string word;
    in >> word;
    QCOMPARE(word, std::string("word"));
    QVERIFY(display->document()->isEmpty());
}

void cRunControlTest::openInFStreamTellsInTheCurrentColour() {
    auto* display = widget<QTextBrowser>(*window, vorNames.display);
    display->setTextColor(Qt::darkCyan);
    std::ifstream in;
    QVERIFY(!window->openInFStream(in, "no file", display));
    QCOMPARE(log(vorNames), QStringList(coloured(Qt::darkCyan, "Could not open file no file")));
    QCOMPARE(display->textColor(), QColor(Qt::darkCyan));
}

void cRunControlTest::missingContactRulesEndTheClick() {
    prepareVor(*window, {place->file("a.pdb", glycineStructure())},
               place->file("a.radii", glycineRadiiFile()), place->directory("out"));
    click(*window, "radioButtonKRBHovik");
    QCOMPARE(clickRun(vorNames),
             QStringList(coloured(Qt::black, "Could not open file aa_contacts.txt")));
    QVERIFY(!window->findChild<cRunVOR*>()->isRunning());
    QVERIFY(widget<QPushButton>(*window, vorNames.run)->isEnabled());
    QVERIFY(filesIn(place->path("out")).empty());
}

void cRunControlTest::contactRulesThatBreakTheirColumnsAreReported() {
    prepareVor(*window, {place->file("a.pdb", glycineStructure())},
               place->file("a.radii", glycineRadiiFile()), place->directory("out"));
    place->file("aa_contacts.txt", "header\n"
                                   "GLY   1  CA   GLY   1  CA    6.00     4\n"
                                   "GLY   1  CA\n");
    click(*window, "radioButtonKRBHovik");
    QCOMPARE(clickRun(vorNames),
             red("Contact rules file not properly formatted!\nError in line: 3"));
    QVERIFY(filesIn(place->path("out")).empty());
    // With another criterion nobody reads the rules.
    click(*window, "radioButtonMaxDistance");
    QCOMPARE(clickRun(vorNames), QStringList(coloured(Qt::blue, "Analysis started")));
    QVERIFY(waitForEnd(*window, vorNames));
}

void cRunControlTest::refusedClickLeavesTheModuleIdle() {
    for (const sModuleNames& names : {kevNames, vorNames}) {
        auto* worker = names.list == kevNames.list
                           ? static_cast<cAnalysisRun*>(window->findChild<cRunKEV*>())
                           : window->findChild<cRunVOR*>();
        QSignalSpy started(worker, &QThread::started);
        click(*window, names.run);
        QVERIFY(worker->awaitEnd());
        QCOMPARE(started.count(), 0);
        QVERIFY(widget<QPushButton>(*window, names.run)->isEnabled());
        QVERIFY(!widget<QPushButton>(*window, names.stop)->isEnabled());
    }
}

void cRunControlTest::chooseEverything() {
    for (const char* box :
         {"checkBoxCalcASA", "checkBoxCalcRASA", "checkBoxCalcDPX", "checkBoxCalcCX",
          "checkBoxCalcHydro", "checkBoxKEVXMLOutput", "checkBoxKEVTableOutput"}) {
        setChecked(*window, box);
    }
    setText(*window, "lineEditStandardASA", dataPath("ala-x-ala.asa"));
    setText(*window, "lineEditHydrophobicityFile", dataPath("kyte-doolittle.hpb"));
}

void cRunControlTest::kevRunWritesWhatTheWorkerWrites_data() {
    QTest::addColumn<bool>("bound");
    QTest::addColumn<bool>("chains");
    QTest::newRow("bound") << true << false;
    QTest::newRow("unbound") << false << true;
    QTest::newRow("both") << true << true;
}

void cRunControlTest::kevRunWritesWhatTheWorkerWrites() {
    QFETCH(bool, bound);
    QFETCH(bool, chains);
    const QStringList files = {dataPath("samples/1ubq.pdb"), dataPath("samples/1a0q.pdb")};
    const QString radii = dataPath("protor.radii");
    prepareKev(*window, files, radii, place->directory("window"));
    chooseEverything();
    setChecked(*window, "checkBoxKEVAnalyzeBound", bound);
    setChecked(*window, "checkBoxKEVAnalyseChain", chains);
    setNumber(*window, "doubleSpinBoxASAZSlice", 0.5);
    setNumber(*window, "doubleSpinBoxASARSolvent", 1.5);
    setNumber(*window, "doubleSpinBoxCxThreshold", 8.5);
    setNumber(*window, "doubleSpinBoxCXVatom", 19.5);
    click(*window, kevNames.run);
    QVERIFY(waitForEnd(*window, kevNames));

    cRunKEV worker;
    worker.setFilesfForAnalysis(files);
    worker.setOutputDirectoryName(place->directory("worker"));
    worker.setOutputTypes(true, true);
    worker.setAnalysisTypes(bound, chains);
    worker.setRadii(tableFrom<radiiTable>(radii, readRadiiTable));
    worker.setRadiiFilename(radii.toStdString());
    worker.setASAAttributes(true, 1.5, 0.5, true);
    worker.setRASAAttributes(true, tableFrom<std::map<std::string, sAsa>>(dataPath("ala-x-ala.asa"),
                                                                          readStandardAsaTable));
    worker.setRASAFilename(dataPath("ala-x-ala.asa").toStdString());
    worker.setDPXAttributes(true);
    worker.setCXAttributes(true, 8.5, 19.5);
    worker.setHydrophobicityAttributes(
        true, tableFrom<radiiTable>(dataPath("kyte-doolittle.hpb"), readHydrophobicityTable));
    worker.setHydroFilename(dataPath("kyte-doolittle.hpb").toStdString());
    worker.start();
    QVERIFY(worker.awaitEnd(QDeadlineTimer(60'000)));
    const auto reports = reportsIn(place->path("window"));
    QCOMPARE(reports.size(), (bound && chains) ? 8U : 4U);
    QVERIFY(reports == reportsIn(place->path("worker")));
}

void cRunControlTest::vorRunWritesWhatTheWorkerWrites_data() {
    QTest::addColumn<QByteArray>("radioButton");
    QTest::addColumn<int>("criterion");
    QTest::addColumn<double>("threshold");
    QTest::newRow("maximum distance") << QByteArray("radioButtonMaxDistance") << 1 << 5.5;
    QTest::newRow("PRISM") << QByteArray("radioButtonPRISM") << 2 << 0.75;
    QTest::newRow("Dovreth") << QByteArray("radioButtonDovreth") << 3 << 2.5;
    QTest::newRow("VORDA") << QByteArray("radioButtonKRBHovik") << 4 << 0.0;
}

void cRunControlTest::vorRunWritesWhatTheWorkerWrites() {
    QFETCH(QByteArray, radioButton);
    QFETCH(int, criterion);
    QFETCH(double, threshold);
    const QStringList files = {dataPath("samples/1a0q.pdb"), dataPath("samples/2hhb.pdb")};
    const QString radii = dataPath("protor.radii");
    place->file("aa_contacts.txt", bytesOf(dataPath("aa_contacts.txt")));
    prepareVor(*window, files, radii, place->directory("window"));
    click(*window, radioButton.constData());
    setNumber(*window, "doubleSpinBoxMaxDistPRISMThreshold", threshold);
    setNumber(*window, "doubleSpinBoxDovrethDeltaASA", 2.5);
    setNumber(*window, "doubleSpinBoxDovrethZSlice", 0.5);
    setNumber(*window, "doubleSpinBoxDovrethRSolvent", 1.3);
    for (const char* box : {"checkBoxVORXmlOutput", "checkBoxWriteHotSpotResidues",
                            "checkBoxWriteResiueBindingState"}) {
        setChecked(*window, box);
    }
    click(*window, vorNames.run);
    QVERIFY(waitForEnd(*window, vorNames));

    cRunVOR worker;
    worker.inputFiles = files;
    worker.outputDirectory = place->directory("worker");
    worker.radii = tableFrom<radiiTable>(radii, readRadiiTable);
    worker.radiiFileName = radii.toStdString();
    worker.criterion = static_cast<eInteractionCriterion>(criterion);
    worker.threshold = threshold;
    worker.zSlice = 0.5;
    worker.probeRadius = 1.3;
    worker.contactRules = tableFrom<contactMap>(dataPath("aa_contacts.txt"), readContactRules);
    worker.xmlOutput = true;
    worker.tableOutput = true;
    worker.writeContacts = criterion != static_cast<int>(dovreth);
    worker.writeBindingResidues = true;
    worker.writeBindingStatus = true;
    worker.start();
    QVERIFY(worker.awaitEnd(QDeadlineTimer(60'000)));
    const auto reports = reportsIn(place->path("window"));
    QCOMPARE(reports.size(), criterion == static_cast<int>(dovreth) ? 8U : 12U);
    QVERIFY(reports == reportsIn(place->path("worker")));
}

void cRunControlTest::areasAreWrittenOnlyWhenBothBoxesAreChecked() {
    prepareKev(*window, {place->file("a.pdb", glycineStructure())},
               place->file("a.radii", glycineRadiiFile()), place->directory("out"));
    setChecked(*window, "checkBoxCalcCX");
    for (const bool calculated : {false, true}) {
        for (const bool written : {false, true}) {
            setChecked(*window, "checkBoxCalcASA", calculated);
            setChecked(*window, "checkBoxWriteASA", written);
            click(*window, kevNames.clear);
            click(*window, kevNames.run);
            QVERIFY(waitForEnd(*window, kevNames));
            const auto reports = filesIn(place->path("out"));
            const QByteArray report = reports.rbegin()->second;
            QCOMPARE(report.contains("total ASA"), calculated && written);
            QVERIFY(report.contains("average CX"));
            for (const auto& [name, bytes] : reports) {
                QVERIFY(QFile::remove(place->path("out/" + name)));
            }
        }
    }
}

void cRunControlTest::buttonsFollowTheRun() {
    prepareKev(*window, {place->file("a.pdb", largeStructure(4000))},
               place->file("a.radii", glycineRadiiFile()), place->path());
    const auto* run = widget<QPushButton>(*window, kevNames.run);
    const auto* stop = widget<QPushButton>(*window, kevNames.stop);
    click(*window, kevNames.run);
    QVERIFY(waitForStart(*window, kevNames));
    QVERIFY(!run->isEnabled());
    // The other module is not concerned.
    QVERIFY(widget<QPushButton>(*window, vorNames.run)->isEnabled());
    QVERIFY(!widget<QPushButton>(*window, vorNames.stop)->isEnabled());
    QVERIFY(waitForEnd(*window, kevNames));
    QVERIFY(run->isEnabled());
    QVERIFY(!stop->isEnabled());
}

void cRunControlTest::messagesOfARunComeInOrder() {
    const QString a = place->file("a.pdb", glycineStructure());
    const QString b = place->file("b.pdb", "ATOM  nonsense\n");
    prepareVor(*window, {a, b}, place->file("a.radii", "GLY_CA  1.87\n"), place->path());
    click(*window, vorNames.run);
    QVERIFY(waitForEnd(*window, vorNames));
    const QStringList lines = log(vorNames);
    QCOMPARE(lines.size(), 8);
    QCOMPARE(lines[0], coloured(Qt::blue, "Analysis started"));
    QCOMPARE(lines[1], coloured(Qt::black, "Analysing contacts of peptide from " + a + "..."));
    QVERIFY(lines[2].startsWith(
        coloured(Qt::yellow, "The following radii were not found in radii file: GLY_C")));
    QCOMPARE(lines[3], coloured(Qt::black, "Contacts of peptide from " + a + " analyzed"));
    QCOMPARE(lines[4], coloured(Qt::black, "Analysing contacts of peptide from " + b + "..."));
    QCOMPARE(lines[5], coloured(Qt::red, "There was an error in PDB file " + b + " at line 1"));
    QCOMPARE(lines[6], coloured(Qt::black, "Found: 1 contact, 2 binding residues"));
    QCOMPARE(lines[7], coloured(Qt::green, "Analysis finished"));
}

void cRunControlTest::clickWhileRunningIsIgnored() {
    prepareKev(*window, {place->file("a.pdb", largeStructure(4000))},
               place->file("a.radii", glycineRadiiFile()), place->path());
    // The second call comes before the window has heard of the start.
    window->on_pushButtonKEVRUN_clicked();
    window->on_pushButtonKEVRUN_clicked();
    QVERIFY(waitForEnd(*window, kevNames));
    QCOMPARE(log(kevNames).count(coloured(Qt::blue, "Analysis started")), 1);
    QCOMPARE(log(kevNames).count(coloured(Qt::green, "Analysis finished")), 1);
}

void cRunControlTest::laterRunUsesTheFormAnew() {
    const QString radii = place->file("a.radii", glycineRadiiFile());
    prepareKev(*window, {place->file("a.pdb", glycineStructure())}, radii, place->directory("one"));
    chooseEverything();
    click(*window, kevNames.run);
    QVERIFY(waitForEnd(*window, kevNames));
    // Nothing of the first run stays behind in the worker.
    for (const char* box : {"checkBoxCalcRASA", "checkBoxCalcDPX", "checkBoxCalcCX",
                            "checkBoxCalcHydro", "checkBoxKEVXMLOutput"}) {
        setChecked(*window, box, false);
    }
    setText(*window, kevNames.outputDirectory, place->directory("two"));
    click(*window, kevNames.clear);
    click(*window, kevNames.run);
    QVERIFY(waitForEnd(*window, kevNames));
    const auto reports = reportsIn(place->path("two"));
    QCOMPARE(reports.size(), 1U);
    const QByteArray report = reports.at("a_STAMP_bound.tbl");
    QVERIFY(report.contains("total ASA"));
    QVERIFY(!report.contains("RASA") && !report.contains("DPX") && !report.contains("CX") &&
            !report.contains("Hydrophobicity"));
}

void cRunControlTest::modulesRunSideBySide() {
    const QString pdb = place->file("a.pdb", largeStructure(4000));
    const QString radii = place->file("a.radii", glycineRadiiFile());
    prepareKev(*window, {pdb}, radii, place->directory("out"));
    prepareVor(*window, {pdb}, radii, place->path("out"));
    click(*window, kevNames.run);
    click(*window, vorNames.run);
    QVERIFY(waitForEnd(*window, kevNames));
    QVERIFY(waitForEnd(*window, vorNames));
    const auto reports = reportsIn(place->path("out"));
    QCOMPARE(reports.size(), 2U);
    QVERIFY(reports.count("a_STAMP_bound.tbl") == 1 && reports.count("a_STAMP_contacts.tbl") == 1);
}

} // namespace kelmo

QTEST_MAIN(kelmo::cRunControlTest)
#include "run_control_test.moc"
