// The settings files: what is saved is restored, line by line, whatever stands in the lines.

#include "tests/app/app_test_tools.h"
#include "tests/support/comma_locale.h"

#include <QAbstractButton>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>

#include <clocale>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kelmo {

class cSettingsTest : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase();
    void init();
    void cleanup();
    void firstStartHasDefaultsAndSavesThem();
    void everyKevLineIsRestored();
    void everyVorLineIsRestored();
    void whatIsLoadedIsSavedAgain();
    void fileThatEndsEarlyLeavesTheRest_data();
    void fileThatEndsEarlyLeavesTheRest();
    void lastLineNeedsNoLineFeed();
    void flagsAreReadAsIntegers_data();
    void flagsAreReadAsIntegers();
    void numbersAreReadLikeC_data();
    void numbersAreReadLikeC();
    void numbersHaveSixDigits();
    void decimalPointIsKeptInEveryLocale();
    void emptyInputLineIsAnEntry();
    void carriageReturnsAreKept();
    void noCriterionCanBeRestored();
    void lastOfSeveralCriteriaCounts();
    void thresholdsOfCriteriaAreRestored();
    void userChoiceOfAreaIsRestored();
    void otherDirectoryStartsAfresh();
    void failedSaveIsSilent();
    void saveThatBreaksOffKeepsTheOldFile();
    void directoryWithoutRoomForNewFilesKeepsOldOnesWritable();
    void pipeIsNoSettingsFile();
    void documentedExamplesAreWhatTheWindowWrites();

  private:
    void start() { window = std::make_unique<kelmo>(); }
    void quit() { window.reset(); }
    QByteArray kevFile() const { return bytesOf(place->path("kev_program_settings.set")); }
    QByteArray vorFile() const { return bytesOf(place->path("vor_program_settings.set")); }
    void setKevFile(const QByteArray& text) { place->file("kev_program_settings.set", text); }
    void setVorFile(const QByteArray& text) { place->file("vor_program_settings.set", text); }

    std::unique_ptr<cWorkingDirectory> place;
    std::unique_ptr<kelmo> window;
};

namespace {

const QByteArray defaultKevFile = "0\n0\n0\n0\n0\n0\n0\n0\n0.25\n1.4\n1\n10\n20.1\n"
                                  "\n\n\n0\n0\n\n\n\n\n\n";
const QByteArray defaultVorFile = "1\n0\n0\n0\n4.5\n4.5\n0.5\n1\n0.25\n1.4\n"
                                  "\n0\n0\n0\n0\n0\n\n\n\n\n\n";

const QByteArray otherKevFile =
    "1\n1\n0\n1\n1\n1\n1\n1\n0.05\n0.05\n0\n5.5\n15.1\n"
    "std.asa\nscale.hpb\nmy.radii\n1\n1\nout dir\n/tables\n/added\n/saved\n/loaded\n"
    "a.pdb\n/b/c.ent\n";

/// A file with one of its lines, counted from 1, replaced.
QByteArray withLine(const QByteArray& file, int line, const QByteArray& text) {
    QByteArrayList lines = file.split('\n');
    lines[line - 1] = text;
    return lines.join('\n');
}

} // namespace

void cSettingsTest::initTestCase() {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void cSettingsTest::init() {
    place = std::make_unique<cWorkingDirectory>();
}

void cSettingsTest::cleanup() {
    window.reset();
    place.reset();
}

void cSettingsTest::firstStartHasDefaultsAndSavesThem() {
    start();
    QCOMPARE(filesIn(place->path()).size(), 0U);
    quit();
    QCOMPARE(kevFile(), defaultKevFile);
    QCOMPARE(kevFile().count('\n'), 23);
    QCOMPARE(vorFile(), defaultVorFile);
    QCOMPARE(vorFile().count('\n'), 21);
    QCOMPARE(filesIn(place->path()).size(), 2U);
}

void cSettingsTest::everyKevLineIsRestored() {
    setKevFile(withLine(withLine(otherKevFile, 9, "0.35"), 10, "0.7"));
    start();
    const std::map<const char*, bool> flags = {
        {"checkBoxCalcASA", true},         {"checkBoxCalcRASA", false},
        {"checkBoxCalcDPX", true},         {"checkBoxCalcCX", true},
        {"checkBoxCalcHydro", true},       {"checkBoxKEVAnalyzeBound", true},
        {"checkBoxKEVAnalyseChain", true}, {"checkBoxWriteASA", false},
        {"checkBoxKEVXMLOutput", true},    {"checkBoxKEVTableOutput", true}};
    for (const auto& [name, checked] : flags) {
        QCOMPARE(isChecked(*window, name), checked);
    }
    QCOMPARE(numberOf(*window, "doubleSpinBoxASAZSlice"), 0.35);
    QCOMPARE(numberOf(*window, "doubleSpinBoxASARSolvent"), 0.7);
    QCOMPARE(numberOf(*window, "doubleSpinBoxCxThreshold"), 5.5);
    QCOMPARE(numberOf(*window, "doubleSpinBoxCXVatom"), 15.1);
    QCOMPARE(textOf(*window, "lineEditStandardASA"), QStringLiteral("std.asa"));
    QCOMPARE(textOf(*window, "lineEditHydrophobicityFile"), QStringLiteral("scale.hpb"));
    QCOMPARE(textOf(*window, "lineEditRadiiFile"), QStringLiteral("my.radii"));
    QCOMPARE(textOf(*window, "lineEditKEVOutputDir"), QStringLiteral("out dir"));
    QCOMPARE(itemTexts(*widget<QListWidget>(*window, kevNames.list)),
             QStringList({"a.pdb", "/b/c.ent"}));
}

void cSettingsTest::everyVorLineIsRestored() {
    setVorFile("0\n0\n0\n1\n2.5\n3.5\n1.5\n7\n0.5\n0.9\nmy.radii\n1\n0\n1\n0\n1\nout\n"
               "/tables\n/added\n/saved\n/loaded\nx.pdb\n");
    start();
    const std::map<const char*, bool> flags = {{"radioButtonMaxDistance", false},
                                               {"radioButtonPRISM", false},
                                               {"radioButtonKRBHovik", false},
                                               {"radioButtonDovreth", true},
                                               {"checkBoxWriteContacts", true},
                                               {"checkBoxWriteHotSpotResidues", false},
                                               {"checkBoxWriteResiueBindingState", true},
                                               {"checkBoxVORXmlOutput", false},
                                               {"checkBoxVORTableOutput", true}};
    for (const auto& [name, checked] : flags) {
        QCOMPARE(isChecked(*window, name), checked);
    }
    QCOMPARE(numberOf(*window, "doubleSpinBoxMaxDistPRISMThreshold"), 2.5);
    QCOMPARE(numberOf(*window, "doubleSpinBoxDovrethDeltaASA"), 7.0);
    QCOMPARE(numberOf(*window, "doubleSpinBoxDovrethZSlice"), 0.5);
    QCOMPARE(numberOf(*window, "doubleSpinBoxDovrethRSolvent"), 0.9);
    QCOMPARE(textOf(*window, "lineEditVORRadiiFile"), QStringLiteral("my.radii"));
    QCOMPARE(textOf(*window, "lineEditVOROutputDir"), QStringLiteral("out"));
    QCOMPARE(itemTexts(*widget<QListWidget>(*window, vorNames.list)), QStringList("x.pdb"));
}

void cSettingsTest::whatIsLoadedIsSavedAgain() {
    const QByteArray kev = withLine(otherKevFile, 9, "0.1"); // the least thickness
    const QByteArray vor = "0\n1\n0\n0\n0.75\n3.5\n0.75\n99.95\n0.5\n0.05\nm\xC3\xA9.radii\n"
                           "1\n0\n1\n0\n1\n/out\n/tables\n/added\n/saved\n/loaded\nx.pdb\n"
                           "latin\xE9.pdb\n";
    setKevFile(kev);
    setVorFile(vor);
    start();
    quit();
    QCOMPARE(kevFile(), kev);
    QCOMPARE(vorFile(), vor);
}

void cSettingsTest::fileThatEndsEarlyLeavesTheRest_data() {
    QTest::addColumn<int>("lines");
    for (int lines = 0; lines <= 23; ++lines) {
        QTest::newRow(qPrintable(QString::number(lines))) << lines;
    }
}

void cSettingsTest::fileThatEndsEarlyLeavesTheRest() {
    QFETCH(int, lines);
    const QByteArrayList all = withLine(otherKevFile, 9, "0.1").split('\n');
    const QByteArrayList defaults = defaultKevFile.split('\n');
    QByteArrayList expected;
    for (int i = 0; i < 23; ++i) {
        expected.append(i < lines ? all[i] : defaults[i]);
    }
    // Depth, in line 4, needs the area; line 1 alone is not the user's choice.
    setKevFile(lines == 0 ? QByteArray() : all.mid(0, lines).join('\n') + '\n');
    start();
    quit();
    QCOMPARE(kevFile(), expected.join('\n') + '\n');
}

void cSettingsTest::lastLineNeedsNoLineFeed() {
    setKevFile("1\n1");
    start();
    QVERIFY(isChecked(*window, "checkBoxCalcASA"));
    quit();
    QVERIFY(kevFile().startsWith("1\n1\n0\n"));
}

void cSettingsTest::flagsAreReadAsIntegers_data() {
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("expected");
    QTest::newRow("2") << QByteArray("2") << true;
    QTest::newRow("1 and letters") << QByteArray("1abc") << true;
    QTest::newRow("blanks first") << QByteArray("  1") << true;
    QTest::newRow("negative") << QByteArray("-1") << true;
    QTest::newRow("too large") << QByteArray("99999999999999999999") << true;
    QTest::newRow("with a carriage return") << QByteArray("1\r") << true;
    QTest::newRow("letters") << QByteArray("true") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("zero and digits behind a point") << QByteArray("0.9") << false;
    QTest::newRow("hexadecimal") << QByteArray("0x1") << false;
}

void cSettingsTest::flagsAreReadAsIntegers() {
    QFETCH(QByteArray, line);
    QFETCH(bool, expected);
    setKevFile(withLine(defaultKevFile, 5, line));
    start();
    QCOMPARE(isChecked(*window, "checkBoxCalcCX"), expected);
}

void cSettingsTest::numbersAreReadLikeC_data() {
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<double>("expected");
    QTest::newRow("trailing text") << QByteArray("0.5 A") << 0.5;
    QTest::newRow("exponent") << QByteArray("5e-1") << 0.5;
    QTest::newRow("blanks first") << QByteArray(" \t0.5") << 0.5;
    QTest::newRow("rounded to the decimals") << QByteArray("0.557") << 0.56;
    QTest::newRow("above the range") << QByteArray("7") << 1.0;
    QTest::newRow("infinite") << QByteArray("inf") << 1.0;
    QTest::newRow("below the range") << QByteArray("-3") << 0.1;
    QTest::newRow("letters") << QByteArray("thin") << 0.1;
    QTest::newRow("empty") << QByteArray() << 0.1;
    QTest::newRow("not a number") << QByteArray("nan") << 0.1;
    QTest::newRow("comma") << QByteArray("0,5") << 0.1;
}

void cSettingsTest::numbersAreReadLikeC() {
    QFETCH(QByteArray, line);
    QFETCH(double, expected);
    setKevFile(withLine(defaultKevFile, 9, line));
    start();
    QCOMPARE(numberOf(*window, "doubleSpinBoxASAZSlice"), expected);
}

void cSettingsTest::numbersHaveSixDigits() {
    // Only a remembered threshold is not rounded by a box.
    setVorFile("0\n0\n1\n0\n4.5\n1.23456789\n0.00001\n");
    start();
    quit();
    QVERIFY(vorFile().startsWith("0\n0\n1\n0\n4.5\n1.23457\n1e-05\n"));
}

void cSettingsTest::decimalPointIsKeptInEveryLocale() {
    provideCommaLocale();
    const QByteArray before = std::setlocale(LC_NUMERIC, nullptr);
    QVERIFY(std::setlocale(LC_NUMERIC, commaLocale) != nullptr);
    const QLocale earlier;
    QLocale::setDefault(QLocale(QLocale::German));
    setKevFile(withLine(defaultKevFile, 9, "0.35"));
    start();
    QCOMPARE(numberOf(*window, "doubleSpinBoxASAZSlice"), 0.35);
    QCOMPARE(widget<QDoubleSpinBox>(*window, "doubleSpinBoxASAZSlice")->text(),
             QStringLiteral("0,35"));
    quit();
    QLocale::setDefault(earlier);
    std::setlocale(LC_NUMERIC, before.constData());
    QCOMPARE(kevFile(), withLine(defaultKevFile, 9, "0.35"));
}

void cSettingsTest::emptyInputLineIsAnEntry() {
    setKevFile(defaultKevFile + "a.pdb\n\nb.pdb\n");
    start();
    QCOMPARE(itemTexts(*widget<QListWidget>(*window, kevNames.list)),
             QStringList({"a.pdb", "", "b.pdb"}));
    quit();
    QCOMPARE(kevFile(), defaultKevFile + "a.pdb\n\nb.pdb\n");
}

void cSettingsTest::carriageReturnsAreKept() {
    const QByteArray file = withLine(defaultKevFile, 16, "my.radii\r") + "a.pdb\r\n";
    setKevFile(file);
    start();
    quit();
    QCOMPARE(kevFile(), file);
}

void cSettingsTest::noCriterionCanBeRestored() {
    setVorFile("0\n0\n0\n0\n");
    start();
    for (const char* radio : {"radioButtonMaxDistance", "radioButtonPRISM", "radioButtonKRBHovik",
                              "radioButtonDovreth"}) {
        QVERIFY(!isChecked(*window, radio));
        QVERIFY(widget<QAbstractButton>(*window, radio)->autoExclusive());
    }
    quit();
    QVERIFY(vorFile().startsWith("0\n0\n0\n0\n"));
}

void cSettingsTest::lastOfSeveralCriteriaCounts() {
    setVorFile("1\n1\n0\n1\n");
    start();
    QVERIFY(!isChecked(*window, "radioButtonMaxDistance"));
    QVERIFY(!isChecked(*window, "radioButtonPRISM"));
    QVERIFY(isChecked(*window, "radioButtonDovreth"));
}

void cSettingsTest::thresholdsOfCriteriaAreRestored() {
    setVorFile("0\n1\n0\n0\n0.75\n6.5\n0.75\n");
    start();
    QCOMPARE(numberOf(*window, "doubleSpinBoxMaxDistPRISMThreshold"), 0.75);
    click(*window, "radioButtonMaxDistance");
    QCOMPARE(numberOf(*window, "doubleSpinBoxMaxDistPRISMThreshold"), 6.5);
    click(*window, "radioButtonPRISM");
    QCOMPARE(numberOf(*window, "doubleSpinBoxMaxDistPRISMThreshold"), 0.75);
}

void cSettingsTest::userChoiceOfAreaIsRestored() {
    for (const bool chosen : {true, false}) {
        setKevFile(QByteArray("1\n") + (chosen ? "1" : "0") + "\n0\n1\n");
        start();
        QVERIFY(isChecked(*window, "checkBoxCalcASA"));
        setChecked(*window, "checkBoxCalcDPX", false);
        QCOMPARE(isChecked(*window, "checkBoxCalcASA"), chosen);
        quit();
    }
}

void cSettingsTest::otherDirectoryStartsAfresh() {
    setKevFile(otherKevFile);
    const cWorkingDirectory elsewhere;
    start();
    QVERIFY(!isChecked(*window, "checkBoxCalcASA"));
    QCOMPARE(widget<QListWidget>(*window, kevNames.list)->count(), 0);
}

void cSettingsTest::failedSaveIsSilent() {
    // A directory in the way; the next file is saved all the same.
    place->directory("kev_program_settings.set");
    start();
    window->saveKEVSettings();
    QVERIFY(widget<QTextBrowser>(*window, kevNames.display)->document()->isEmpty());
    quit();
    QVERIFY(QFileInfo(place->path("kev_program_settings.set")).isDir());
    QCOMPARE(vorFile(), defaultVorFile);
}

void cSettingsTest::saveThatBreaksOffKeepsTheOldFile() {
    setKevFile(otherKevFile);
    start();
    // The system refuses to write as if the disk were full.
    rlimit before{};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{10, before.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &full), 0);
    window->saveKEVSettings();
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    QCOMPARE(kevFile(), otherKevFile);
    // Nothing is left of the attempt.
    QCOMPARE(filesIn(place->path()).size(), 1U);
}

void cSettingsTest::directoryWithoutRoomForNewFilesKeepsOldOnesWritable() {
    setKevFile("");
    const std::string directory = place->path().toStdString();
    QVERIFY(QFile::setPermissions(place->path("kev_program_settings.set"),
                                  QFileDevice::Permissions(0x6666)));
    QCOMPARE(::chmod(directory.c_str(), 0555), 0);
    start();
    // The superuser may do everything, somebody else may not.
    constexpr uid_t somebody = 65534;
    const uid_t user = ::geteuid();
    QVERIFY(user != 0 || ::seteuid(somebody) == 0);
    const bool isClosed = !QFile(place->path("new")).open(QIODevice::WriteOnly);
    window->saveKEVSettings();
    QVERIFY(user != 0 || ::seteuid(user) == 0);
    QCOMPARE(::chmod(directory.c_str(), 0755), 0);
    QVERIFY(isClosed);
    QCOMPARE(kevFile(), defaultKevFile);
}

void cSettingsTest::pipeIsNoSettingsFile() {
    // Reading it would wait for ever.
    QCOMPARE(::mkfifo(qPrintable(place->path("kev_program_settings.set")), 0600), 0);
    start();
    QVERIFY(!isChecked(*window, "checkBoxCalcASA"));
}

void cSettingsTest::documentedExamplesAreWhatTheWindowWrites() {
    const QByteArray page = QByteArray::fromStdString(sourceText("docs/formats/settings.md"));
    QByteArrayList blocks;
    for (qsizetype begin = page.indexOf("```\n"); begin >= 0;
         begin = page.indexOf("```\n", begin)) {
        begin += 4;
        const qsizetype end = page.indexOf("```\n", begin);
        blocks.append(page.mid(begin, end - begin));
        begin = end + 4;
    }
    QCOMPARE(blocks.size(), 2);
    setKevFile(blocks[0]);
    setVorFile(blocks[1]);
    start();
    quit();
    QCOMPARE(kevFile(), blocks[0]);
    QCOMPARE(vorFile(), blocks[1]);
}

} // namespace kelmo

QTEST_MAIN(kelmo::cSettingsTest)
#include "settings_test.moc"
