// Stopping: at any moment, quickly, without a trace of half-written reports; and closing the
// window.

#include "run/analysis_run.h"
#include "tests/app/app_test_tools.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/processor_time.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRandomGenerator>

#include <chrono>
#include <thread>

namespace kelmo {

class cStopTest : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase();
    void init();
    void cleanup();
    void stoppedRunSaysSoAndNothingElse_data() { modules(); }
    void stoppedRunSaysSoAndNothingElse();
    void nextRunFinishesNormally_data() { modules(); }
    void nextRunFinishesNormally();
    void stopWhileIdleDoesNotSilenceTheNextRun();
    void stopAtTheVeryEndIsAStop();
    void thousandStopsAtRandomMoments_data() { modules(); }
    void thousandStopsAtRandomMoments();
    void stopOfALargeStructureIsQuick_data() { modules(); }
    void stopOfALargeStructureIsQuick();
    void closingWhileRunningAsks();
    void closingWhileIdleDoesNotAsk();
    void destroyingWhileRunningIsClean();
    void windowAnswersDuringALongRun();

  private:
    static void modules();
    const sModuleNames& names() const;
    int linesOfFindings() const;
    void prepare(const QStringList& files);
    /// The same file many times over; a dialog would give it once.
    void prepareOften(const QString& file, int times);
    QStringList log() const {
        return colouredLines(*widget<QTextBrowser>(*window, names().display));
    }
    QPushButton& runButton() const { return *widget<QPushButton>(*window, names().run); }
    QPushButton& stopButton() const { return *widget<QPushButton>(*window, names().stop); }
    QStringList fileNames(int count) const;
    bool awaitWorkers() const;
    /// Waits for the workers and lets the window take everything that they have sent.
    bool hearAllOfTheWorkers() const;

    std::unique_ptr<cWorkingDirectory> place;
    std::unique_ptr<kelmo> window;
};

namespace {

using std::chrono::milliseconds;

const QString stopMessage = coloured(Qt::yellow, QStringLiteral("Analysis stopped by user"));
const QString endMessage = coloured(Qt::green, QStringLiteral("Analysis finished"));

bool isWhole(const QString& name, const QByteArray& bytes) {
    return name.endsWith(".xml") ? bytes.trimmed().endsWith('>') && bytes.contains("</")
                                 : bytes.endsWith('\n');
}

} // namespace

void cStopTest::modules() {
    QTest::addColumn<bool>("isKev");
    QTest::newRow("structure module") << true;
    QTest::newRow("interaction module") << false;
}

/// The interaction module ends a run with one line more.
int cStopTest::linesOfFindings() const {
    return names().list == vorNames.list ? 1 : 0;
}

const sModuleNames& cStopTest::names() const {
    const bool isVor =
        QTest::currentDataTag() != nullptr && *QTest::currentDataTag() == QLatin1Char('i');
    return isVor ? vorNames : kevNames;
}

void cStopTest::prepare(const QStringList& files) {
    const QString radii = place->file("a.radii", glycineRadiiFile());
    const QString out = place->directory("out");
    names().list == kevNames.list ? prepareKev(*window, files, radii, out)
                                  : prepareVor(*window, files, radii, out);
    setChecked(*window, "checkBoxKEVAnalyseChain");
    setChecked(*window, "checkBoxCalcDPX");
    setChecked(*window, "checkBoxCalcCX");
    setChecked(*window, "checkBoxKEVXMLOutput");
    setChecked(*window, "checkBoxVORXmlOutput");
    setChecked(*window, "checkBoxWriteHotSpotResidues");
    // The slowest criterion.
    setChecked(*window, "radioButtonDovreth");
}

void cStopTest::prepareOften(const QString& file, int times) {
    prepare({file});
    QByteArray list;
    for (int i = 0; i < times; ++i) {
        list += file.toUtf8() + '\n';
    }
    clickAndChoose(*window, names().loadList, place->file("often.fls", list));
}

QStringList cStopTest::fileNames(int count) const {
    QStringList files;
    for (int i = 0; i < count; ++i) {
        files.append(place->file(QStringLiteral("f%1.pdb").arg(i), glycineStructure()));
    }
    return files;
}

bool cStopTest::awaitWorkers() const {
    for (cAnalysisRun* worker : window->findChildren<cAnalysisRun*>()) {
        if (!worker->awaitEnd(QDeadlineTimer(patience))) {
            return false;
        }
    }
    return true;
}

bool cStopTest::hearAllOfTheWorkers() const {
    const bool haveEnded = awaitWorkers();
    QApplication::processEvents();
    window->updateKEVDisplay();
    window->updateVORDisplay();
    return haveEnded;
}

void cStopTest::initTestCase() {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void cStopTest::init() {
    place = std::make_unique<cWorkingDirectory>();
    window = std::make_unique<kelmo>();
}

void cStopTest::cleanup() {
    window.reset();
    place.reset();
}

void cStopTest::stoppedRunSaysSoAndNothingElse() {
    const QString big = place->file("big.pdb", largeStructure(8000));
    prepareOften(big, 20);
    runButton().click();
    QVERIFY(waitForStart(*window, names()));
    stopButton().click();
    QVERIFY(runButton().isEnabled());
    QVERIFY(!stopButton().isEnabled());
    QCOMPARE(log().last(), stopMessage);
    QVERIFY(hearAllOfTheWorkers());
    QCOMPARE(log().last(), stopMessage);
    QVERIFY(!log().contains(endMessage));
    QVERIFY(runButton().isEnabled());
    QVERIFY(!stopButton().isEnabled());
    QVERIFY(widget<QLabel>(*window, names().progressLabel)->text().startsWith("Stopped: "));
}

void cStopTest::nextRunFinishesNormally() {
    const QString big = place->file("big.pdb", largeStructure(8000));
    prepareOften(big, 20);
    runButton().click();
    QVERIFY(waitForStart(*window, names()));
    stopButton().click();
    clickAndChoose(*window, names().loadList,
                   place->file("small.fls", place->file("small.pdb", glycineStructure()).toUtf8()));
    click(*window, names().clear);
    runButton().click();
    QVERIFY(waitForEnd(*window, names()));
    QCOMPARE(log().first(), coloured(Qt::blue, "Analysis started"));
    QCOMPARE(log().last(), endMessage);
    QCOMPARE(log().size(), 4 + linesOfFindings());
}

void cStopTest::stopWhileIdleDoesNotSilenceTheNextRun() {
    prepare(fileNames(1));
    window->on_pushButtonKEVStop_clicked();
    QCOMPARE(log(), QStringList(stopMessage));
    runButton().click();
    QVERIFY(waitForEnd(*window, names()));
    QCOMPARE(log().last(), endMessage);
}

void cStopTest::stopAtTheVeryEndIsAStop() {
    prepare(fileNames(1));
    runButton().click();
    // The worker is done, but the window has not heard of it yet.
    QVERIFY(awaitWorkers());
    stopButton().setEnabled(true);
    stopButton().click();
    QCOMPARE(log().last(), stopMessage);
    QVERIFY(hearAllOfTheWorkers());
    QCOMPARE(log().last(), stopMessage);
    QVERIFY(!log().contains(endMessage));
}

void cStopTest::thousandStopsAtRandomMoments() {
    constexpr int stops = 500; // in each module
    constexpr int files = 6;
    constexpr int longestRun = 3000; // µs of the processor
    QRandomGenerator random(20070314);
    prepare(fileNames(files));
    for (int i = 0; i < stops; ++i) {
        click(*window, names().clear);
        runButton().click();
        // Sometimes before the window has heard of the start, sometimes after.
        const std::chrono::microseconds moment(random.bounded(longestRun));
        const bool isListening = random.bounded(2) == 0;
        waitForWork(moment, processorTime, [&] {
            if (isListening) {
                QApplication::processEvents();
            }
            return false;
        });
        if (names().list == kevNames.list) {
            window->on_pushButtonKEVStop_clicked();
        } else {
            window->on_pushButtonVORStop_clicked();
        }
        QCOMPARE(log().last(), stopMessage);
        QApplication::processEvents();
        QCOMPARE(log().last(), stopMessage);
        QVERIFY(runButton().isEnabled() && !stopButton().isEnabled());
        if (i % 50 == 0) {
            for (const auto& [name, bytes] : filesIn(place->path("out"))) {
                QVERIFY2(!name.startsWith('.') && isWhole(name, bytes), qPrintable(name));
            }
        }
    }
    for (const auto& [name, bytes] : filesIn(place->path("out"))) {
        QVERIFY2(!name.startsWith('.') && isWhole(name, bytes), qPrintable(name));
    }
    click(*window, names().clear);
    runButton().click();
    QVERIFY(waitForEnd(*window, names()));
    QCOMPARE(log().last(), endMessage);
    QCOMPARE(log().size(), 2 + 2 * files + linesOfFindings());
}

/// Atoms on an exact lattice, where rounding decides in every slice: the slowest input there is.
QByteArray latticeStructure() {
    std::string text;
    for (int i = 0; i < 20'000; ++i) {
        text += atomLine("CA", "ALA", 'A', std::to_string(i / 10), 1.5 * (i % 30),
                         1.5 * (i / 30 % 30), 1.5 * (i / 900));
    }
    return QByteArray::fromStdString(text);
}

void cStopTest::stopOfALargeStructureIsQuick() {
    constexpr milliseconds limit(200);
    constexpr int attempts = 15;
    QRandomGenerator random(1);
    tProcessorTime longest{};
    for (const QByteArray& text : {largeStructure(20'000), latticeStructure()}) {
        click(*window, names().clear);
        prepareOften(place->file("big.pdb", text), 10);
        for (int i = 0; i < attempts; ++i) {
            runButton().click();
            QVERIFY(waitForStart(*window, names()));
            waitForWork(milliseconds(random.bounded(150)), processorTimeOfOthers, [] {
                QApplication::processEvents();
                return false;
            });
            QVERIFY(stopButton().isEnabled());
            const tProcessorTime begin = processorTime();
            stopButton().click();
            longest = std::max(longest, processorTime() - begin);
            QCOMPARE(log().last(), stopMessage);
        }
    }
    qInfo("longest of %d stops: %lld ms of processor time", 2 * attempts,
          static_cast<long long>(longest / milliseconds(1)));
    QVERIFY(longest < limit * KELMO_SLOWNESS);
}

void cStopTest::closingWhileRunningAsks() {
    const QString big = place->file("big.pdb", largeStructure(20'000));
    prepareOften(big, 5);
    window->show();
    runButton().click();
    QVERIFY(waitForStart(*window, names()));
    QString question;
    {
        const cDialogAnswer no([&](QDialog& dialog) {
            auto& box = dynamic_cast<QMessageBox&>(dialog);
            question = box.text();
            box.button(QMessageBox::No)->click();
        });
        QVERIFY(!window->close());
    }
    QCOMPARE(question, QStringLiteral("An analysis is still running. Stop it and quit?"));
    QVERIFY(window->isVisible());
    if (!stopButton().isEnabled()) {
        runButton().click();
        QVERIFY(waitForStart(*window, names()));
    }
    {
        const cDialogAnswer yes([](QDialog& dialog) {
            dynamic_cast<QMessageBox&>(dialog).button(QMessageBox::Yes)->click();
        });
        QVERIFY(window->close());
    }
    for (const cAnalysisRun* worker : window->findChildren<cAnalysisRun*>()) {
        QVERIFY(!worker->isRunning());
    }
    window.reset();
    for (const auto& [name, bytes] : filesIn(place->path("out"))) {
        QVERIFY2(!name.startsWith('.') && isWhole(name, bytes), qPrintable(name));
    }
    QVERIFY(bytesOf(place->path("kev_program_settings.set")).contains("big.pdb"));
}

void cStopTest::closingWhileIdleDoesNotAsk() {
    window->show();
    QVERIFY(window->close());
}

void cStopTest::destroyingWhileRunningIsClean() {
    const QString big = place->file("big.pdb", largeStructure(8000));
    prepareOften(big, 20);
    runButton().click();
    QVERIFY(waitForStart(*window, names()));
    window.reset();
    QVERIFY(bytesOf(place->path("kev_program_settings.set")).contains("big.pdb"));
    for (const auto& [name, bytes] : filesIn(place->path("out"))) {
        QVERIFY2(!name.startsWith('.') && isWhole(name, bytes), qPrintable(name));
    }
}

void cStopTest::windowAnswersDuringALongRun() {
    constexpr int files = 10'000 / KELMO_SLOWNESS;
    constexpr milliseconds longestPause(500);
    prepareOften(place->file("a.pdb", glycineStructure()), files);
    setChecked(*window, "checkBoxKEVAnalyseChain", false);
    setChecked(*window, "checkBoxKEVXMLOutput", false);
    window->show();
    // Whether the window works or waits for its worker, between two pulses the process works on.
    const auto threads = static_cast<int>(std::thread::hardware_concurrency());
    QTimer pulse;
    tProcessorTime lastPulse = processorTime();
    tProcessorTime pause{};
    connect(&pulse, &QTimer::timeout, this, [&] {
        const tProcessorTime now = processorTime();
        pause = std::max(pause, now - lastPulse);
        lastPulse = now;
    });
    pulse.start(5);
    runButton().click();
    QVERIFY(waitForEnd(*window, names()));
    qInfo("longest pause in a run of %d files: %lld ms of processor time", files,
          static_cast<long long>(pause / milliseconds(1)));
    QVERIFY(pause < longestPause * KELMO_SLOWNESS * threads);
    QCOMPARE(widget<QLabel>(*window, names().progressLabel)->text(),
             QStringLiteral("Finished: %1 of %1 files").arg(files));
}

} // namespace kelmo

QTEST_MAIN(kelmo::cStopTest)
#include "stop_test.moc"
