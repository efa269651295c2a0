// The progress display counts every file once, however its analysis ends.

#include "app/run_progress.h"
#include "tests/app/app_test_tools.h"

#include <QFile>
#include <QLabel>
#include <QProgressBar>

namespace kelmo {

class cRunProgressTest : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase();
    void eventsAreCounted();
    void reportThatIsLostIsAnErrorOfItsFile();
    void everyFileOfARunIsCounted_data();
    void everyFileOfARunIsCounted();
};

void cRunProgressTest::initTestCase() {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void cRunProgressTest::eventsAreCounted() {
    cRunProgress progress;
    progress.begin(4);
    progress.beginFile("/d/a.pdb");
    QCOMPARE(progress.currentFile(), QStringLiteral("/d/a.pdb"));
    QCOMPARE(progress.filesDone(), 0);
    progress.countWarning();
    progress.endFile(eFileOutcome::analysed);
    QCOMPARE(progress.filesDone(), 1);
    QCOMPARE(progress.currentFile(), QString());
    progress.beginFile("/d/b.pdb");
    progress.endFile(eFileOutcome::failed);
    progress.beginFile("/d/c.pdb");
    progress.endFile(eFileOutcome::failed);
    progress.beginFile("/d/d.pdb");
    progress.endFile(eFileOutcome::stopped);
    QCOMPARE(progress.filesDone(), 3);
    QCOMPARE(progress.filesWithErrors(), 2);
    QCOMPARE(progress.filesWithWarnings(), 1);
    progress.begin(7);
    QCOMPARE(progress.fileCount(), 7);
    QCOMPARE(progress.filesDone() + progress.filesWithErrors() + progress.filesWithWarnings(), 0);
}

void cRunProgressTest::reportThatIsLostIsAnErrorOfItsFile() {
    cRunProgress progress;
    progress.begin(2);
    progress.beginFile("a.pdb");
    progress.countLostReport();
    progress.countLostReport();
    QCOMPARE(progress.filesDone(), 0);
    progress.endFile(eFileOutcome::analysed);
    QCOMPARE(progress.filesDone(), 1);
    QCOMPARE(progress.filesWithErrors(), 1);
    progress.beginFile("b.pdb");
    progress.endFile(eFileOutcome::analysed);
    QCOMPARE(progress.filesWithErrors(), 1);
}

void cRunProgressTest::everyFileOfARunIsCounted_data() {
    QTest::addColumn<bool>("isKev");
    QTest::newRow("structure module") << true;
    QTest::newRow("interaction module") << false;
}

void cRunProgressTest::everyFileOfARunIsCounted() {
    QFETCH(bool, isKev);
    const cWorkingDirectory place;
    kelmo window;
    const sModuleNames& names = isKev ? kevNames : vorNames;
    const QString radii = place.file("a.radii", glycineRadiiFile());
    const QString fewRadii = place.file("few.radii", "GLY_N   1.65\n");
    const QString good = place.file("good.pdb", glycineStructure());
    const QStringList files = {
        good, place.file("gone.pdb", "x"), place.file("bad.pdb", "ATOM  nonsense\n"),
        place.file("empty.pdb", "END\n"), place.file("again.pdb", glycineStructure())};
    isKev ? prepareKev(window, files, fewRadii, place.path())
          : prepareVor(window, files, fewRadii, place.path());
    QVERIFY(QFile::remove(place.path("gone.pdb")));
    click(window, names.run);
    QVERIFY(waitForEnd(window, names));
    QCOMPARE(widget<QProgressBar>(window, names.progressBar)->maximum(), 5);
    QCOMPARE(widget<QProgressBar>(window, names.progressBar)->value(), 5);
    QCOMPARE(widget<QLabel>(window, names.progressLabel)->text(),
             QStringLiteral("Finished: 5 of 5 files, 3 with errors, 2 with warnings"));
}

} // namespace kelmo

QTEST_MAIN(kelmo::cRunProgressTest)
#include "run_progress_test.moc"
