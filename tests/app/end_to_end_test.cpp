// The program as a user meets it: a process on a real X server, driven by the keyboard alone.

#include "tests/app/app_test_tools.h"
#include "tests/app/x_display.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>

namespace kelmo {

class cEndToEndTest : public QObject {
    Q_OBJECT
  public:
    explicit cEndToEndTest(cXDisplay& xDisplay) : display(xDisplay) {}

  private slots:
    void init();
    void cleanup();
    void reportsAreThoseOfTheCommandLine();
    void stoppedRunLeavesNothingHalfWritten();
    void everythingIsRestored();
    void quittingDuringARunAsksAndStops();
    void installedProgramFindsItsTables();

  private:
    void start(const QString& executable = QStringLiteral(KELMO_PROGRAM));
    /// Quits by the menu's shortcut.
    void quit();
    /// Writes a field that has a mnemonic anew.
    void fill(const QString& keys, const QString& text);
    void answerFileDialog(const QString& caption, const QString& text);
    void addFiles(const QStringList& paths);
    void loadList(const QString& path);
    void saveList(const QString& path);
    void createConfiguration(const QString& path, int tabsFromOutput);
    void showInteractionTab();
    /// The text of the log, copied by the keyboard.
    QString log(int tabsFromOutput);
    bool waitForLog(int tabsFromOutput, const QString& end);
    void compareWithCommandLine(const QString& module, const QString& configuration,
                                const QStringList& files, const QString& reports);
    void fillStructureForm(const QString& reports);
    QString path(const QString& name = {}) const { return place->path(name); }

    cXDisplay& display;
    std::unique_ptr<cWorkingDirectory> place;
    std::unique_ptr<cScratchDirectory> home;
    QProcess program;
};

namespace {

const QString windowTitle = QStringLiteral("Kelmo");

// Steps of the tab key from the field of the output directory.
constexpr int kevToConfiguration = 6;
constexpr int kevToLog = 7;
constexpr int vorToConfiguration = 9;
constexpr int vorToLog = 10;

QStringList repeated(const QString& key, int times) {
    return QStringList(times, key);
}

} // namespace

void cEndToEndTest::init() {
    place = std::make_unique<cWorkingDirectory>();
    home = std::make_unique<cScratchDirectory>();
}

void cEndToEndTest::cleanup() {
    if (program.state() != QProcess::NotRunning) {
        program.kill();
        program.waitForFinished();
    }
    place.reset();
}

void cEndToEndTest::start(const QString& executable) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString homePath = QString::fromStdString(home->path().string());
    environment.insert("HOME", homePath);
    environment.insert("XDG_RUNTIME_DIR", homePath);
    if (!environment.contains("KELMO_TEST_WITH_SESSION_BUS")) {
        // Nothing of the desktop in which the test is run.
        environment.insert("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    }
    program.setProcessEnvironment(environment);
    program.setWorkingDirectory(path());
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(executable, QStringList());
    QVERIFY(program.waitForStarted());
    QVERIFY(display.focus(windowTitle));
}

void cEndToEndTest::quit() {
    constexpr int attempts = 6;
    constexpr int patienceForEach = 10'000; // ms
    bool isFinished = false;
    // On a busy machine a window may have the focus before it takes a key.
    for (int i = 0; i < attempts && !isFinished; ++i) {
        display.focus(windowTitle);
        display.press({"ctrl+q"});
        isFinished = program.waitForFinished(patienceForEach);
    }
    QVERIFY(isFinished);
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
}

void cEndToEndTest::fill(const QString& keys, const QString& text) {
    display.press({keys, "ctrl+a"});
    display.type(text);
}

void cEndToEndTest::answerFileDialog(const QString& caption, const QString& text) {
    const QString title = QRegularExpression::escape(caption);
    QVERIFY(display.focus(title));
    display.type(text);
    display.press({"Return"});
    QVERIFY(display.waitForClosing(title));
    QVERIFY(display.focus(windowTitle));
}

void cEndToEndTest::addFiles(const QStringList& paths) {
    display.press({"alt+a"});
    answerFileDialog("Choose PDB file(s)", '"' + paths.join("\" \"") + '"');
}

void cEndToEndTest::loadList(const QString& listPath) {
    display.press(QStringList("alt+n") + repeated("Tab", 3) + QStringList("space"));
    answerFileDialog("Choose PDB file(s)", listPath);
}

void cEndToEndTest::saveList(const QString& listPath) {
    display.press(QStringList("alt+n") + repeated("Tab", 4) + QStringList("space"));
    answerFileDialog("Save input file list as", listPath);
}

void cEndToEndTest::createConfiguration(const QString& name, int tabsFromOutput) {
    display.press(QStringList("alt+o") + repeated("Tab", tabsFromOutput) + QStringList("space"));
    answerFileDialog("Save KEV configuration file as", name);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(name), patience);
}

void cEndToEndTest::showInteractionTab() {
    display.press({"alt+n", "ctrl+Tab"});
}

QString cEndToEndTest::log(int tabsFromOutput) {
    const QString nothingCopied = QStringLiteral("nothing copied");
    QApplication::clipboard()->setText(nothingCopied);
    display.press(QStringList("alt+o") + repeated("Tab", tabsFromOutput) +
                  QStringList({"ctrl+a", "ctrl+c"}));
    // A busy machine may lose the keys: then the caller asks again.
    constexpr int usualWait = 1'000; // ms
    const auto isCopied = [&] { return QApplication::clipboard()->text() != nothingCopied; };
    return QTest::qWaitFor(isCopied, usualWait) ? QApplication::clipboard()->text() : QString();
}

bool cEndToEndTest::waitForLog(int tabsFromOutput, const QString& end) {
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < patience) {
        if (log(tabsFromOutput).endsWith(end)) {
            return true;
        }
    }
    return false;
}

/// Runs the command line on the window's own configuration and compares the reports byte by byte.
void cEndToEndTest::compareWithCommandLine(const QString& module, const QString& configuration,
                                           const QStringList& files, const QString& reports) {
    const auto windowReports = filesIn(reports);
    QVERIFY(!windowReports.empty());
    static const QRegularExpression stamp(QStringLiteral("_([0-9]{12})_"));
    const QString runStamp = stamp.match(windowReports.begin()->first).captured(1);
    const QString target = place->directory("batch_" + module);
    QProcess batch;
    batch.start(QStringLiteral(KELMO_BATCH_PROGRAM),
                QStringList({module, "--config", configuration, "--output-dir", target, "--stamp",
                             runStamp, "--no-progress"}) +
                    files);
    QVERIFY(batch.waitForFinished(patience));
    QVERIFY2(batch.exitCode() == 0, batch.readAllStandardError().constData());
    const auto batchReports = filesIn(target);
    QCOMPARE(windowReports.size(), batchReports.size());
    for (const auto& [name, bytes] : windowReports) {
        QVERIFY2(batchReports.count(name) == 1, qPrintable(name));
        QVERIFY2(batchReports.at(name) == bytes, qPrintable(name));
    }
}

void cEndToEndTest::fillStructureForm(const QString& reports) {
    display.press({"alt+b", "alt+u", "alt+c", "alt+e", "alt+d", "alt+i", "alt+y"});
    fill("alt+z", "0.5");
    fill("alt+p", "1.45");
    fill("alt+g", "9.5");
    fill("alt+v", "19.8");
    fill("alt+r", dataPath("protor.radii"));
    fill("alt+t", dataPath("ala-x-ala.asa"));
    fill("alt+s", dataPath("kyte-doolittle.hpb"));
    fill("alt+o", reports);
    display.press({"alt+x", "alt+l"});
}

void cEndToEndTest::reportsAreThoseOfTheCommandLine() {
    const QStringList files = {dataPath("samples/1ubq.pdb"), dataPath("samples/1a0q.pdb"),
                               dataPath("samples/2hhb.pdb")};
    start();
    addFiles(files);
    fillStructureForm(place->directory("structure"));
    display.press({"ctrl+r"});
    QVERIFY(waitForLog(kevToLog, "Analysis finished"));
    QVERIFY(log(kevToLog).startsWith("Analysis started\nAnalysing structure of peptide from "));
    QCOMPARE(filesIn(path("structure")).size(), 12U);
    createConfiguration(path("structure.cfg"), kevToConfiguration);
    compareWithCommandLine("kev", path("structure.cfg"), files, path("structure"));

    showInteractionTab();
    addFiles(files);
    display.press({"alt+d"});
    fill("alt+e", "5.25");
    display.press({"alt+c", "alt+s", "alt+y", "alt+x", "alt+l"});
    fill("alt+r", dataPath("protor.radii"));
    fill("alt+o", place->directory("interaction"));
    display.press({"ctrl+r"});
    QVERIFY(waitForLog(vorToLog, "Analysis finished"));
    QCOMPARE(filesIn(path("interaction")).size(), 18U);
    createConfiguration(path("interaction.cfg"), vorToConfiguration);
    compareWithCommandLine("vor", path("interaction.cfg"), files, path("interaction"));
    quit();
}

void cEndToEndTest::stoppedRunLeavesNothingHalfWritten() {
    QByteArray list;
    place->directory("structures");
    for (int i = 0; i < 500; ++i) {
        const QString copy = path(QStringLiteral("structures/%1.pdb").arg(i));
        QVERIFY(QFile::link(dataPath("samples/2hhb.pdb"), copy));
        list += copy.toUtf8() + '\n';
    }
    start();
    loadList(place->file("many.fls", list));
    fillStructureForm(place->directory("reports"));
    display.press({"ctrl+r"});
    QTRY_VERIFY_WITH_TIMEOUT(filesIn(path("reports")).size() > 4, patience);
    display.press({"ctrl+period"});
    QVERIFY(waitForLog(kevToLog, "Analysis stopped by user"));
    const auto reports = filesIn(path("reports"));
    QVERIFY(reports.size() < 1500);
    for (const auto& [name, bytes] : reports) {
        QVERIFY2(!name.startsWith('.'), qPrintable(name));
        QVERIFY2(name.endsWith(".tbl") ? bytes.endsWith('\n') : bytes.endsWith("</cPdbPeptide>"),
                 qPrintable(name));
    }
    quit();
    QCOMPARE(filesIn(path("reports")).size(), reports.size());
}

void cEndToEndTest::everythingIsRestored() {
    start();
    addFiles({dataPath("samples/1ubq.pdb"), dataPath("samples/1a0q.pdb")});
    fillStructureForm(path());
    createConfiguration(path("before.cfg"), kevToConfiguration);
    saveList(path("before"));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(path("before.fls")), patience);
    quit();
    start();
    createConfiguration(path("after.cfg"), kevToConfiguration);
    saveList(path("after"));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(path("after.fls")), patience);
    QVERIFY(bytesOf(path("before.cfg")).contains("z_slice:\t0.5\n"));
    QCOMPARE(bytesOf(path("after.cfg")), bytesOf(path("before.cfg")));
    QCOMPARE(bytesOf(path("after.fls")).count('\n'), 2);
    QCOMPARE(bytesOf(path("after.fls")), bytesOf(path("before.fls")));
    const QByteArray settings = bytesOf(path("kev_program_settings.set"));
    quit();
    QCOMPARE(bytesOf(path("kev_program_settings.set")), settings);
}

void cEndToEndTest::quittingDuringARunAsksAndStops() {
    QByteArray list;
    for (int i = 0; i < 500; ++i) {
        list += dataPath("samples/2hhb.pdb").toUtf8() + '\n';
    }
    start();
    loadList(place->file("many.fls", list));
    fillStructureForm(place->directory("reports"));
    display.press({"ctrl+r"});
    QTRY_VERIFY_WITH_TIMEOUT(!filesIn(path("reports")).empty(), patience);
    display.press({"ctrl+q"});
    QVERIFY(display.focus("Analysis running"));
    display.press({"alt+y"});
    QVERIFY(program.waitForFinished(patience));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    for (const auto& [name, bytes] : filesIn(path("reports"))) {
        QVERIFY2(!name.startsWith('.'), qPrintable(name));
    }
    QCOMPARE(bytesOf(path("kev_program_settings.set")).count('\n'), 23 + 500);
}

void cEndToEndTest::installedProgramFindsItsTables() {
    const QString prefix = path("prefix");
    QVERIFY(QDir().mkpath(prefix + "/bin") && QDir().mkpath(prefix + "/share/kelmo"));
    QVERIFY(QFile::copy(QStringLiteral(KELMO_PROGRAM), prefix + "/bin/kelmo"));
    QVERIFY(QFile::copy(dataPath("protor.radii"), prefix + "/share/kelmo/protor.radii"));
    start(prefix + "/bin/kelmo");
    display.press({"alt+r", "Tab", "space"});
    answerFileDialog("Choose radii file", "protor.radii");
    quit();
    const QByteArrayList lines = bytesOf(path("kev_program_settings.set")).split('\n');
    QCOMPARE(QFileInfo(QString::fromUtf8(lines.value(15))).canonicalFilePath(),
             QFileInfo(prefix + "/share/kelmo/protor.radii").canonicalFilePath());
}

} // namespace kelmo

using namespace kelmo;

int main(int argc, char* argv[]) {
    cXDisplay display;
    const QString name = display.start();
    if (name.isEmpty()) {
        qCritical("Xvfb does not start");
        return EXIT_FAILURE;
    }
    qputenv("DISPLAY", name.toUtf8());
    qputenv("QT_QPA_PLATFORM", "xcb");
    // Among others, the clipboard of that display.
    const QApplication application(argc, argv);
    cEndToEndTest test(display);
    return QTest::qExec(&test, argc, argv);
}

#include "end_to_end_test.moc"
