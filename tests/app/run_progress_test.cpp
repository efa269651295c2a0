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
    void messagesAreCounted();
    void reportThatFailsIsAnErrorOfItsFile();
    void everyFileOfARunIsCounted_data();
    void everyFileOfARunIsCounted();
    void pathsThatLookLikeMessagesAreShownWhole();
};

namespace {

void take(cRunProgress& progress, Qt::GlobalColor colour, const char* text) {
    progress.take(cStatusMessage(colour, QString::fromUtf8(text)));
}

} // namespace

void cRunProgressTest::initTestCase() {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void cRunProgressTest::messagesAreCounted() {
    cRunProgress progress;
    progress.begin(3);
    take(progress, Qt::black, "Analysing structure of peptide from /d/a.pdb...");
    QCOMPARE(progress.currentFile(), QStringLiteral("/d/a.pdb"));
    QCOMPARE(progress.filesDone(), 0);
    take(progress, Qt::yellow, "The following radii were not found in radii file: GLY_N; ");
    take(progress, Qt::black, "Structure of peptide from /d/a.pdb analyzed");
    QCOMPARE(progress.filesDone(), 1);
    QCOMPARE(progress.currentFile(), QString());
    take(progress, Qt::red, "Could not open file /d/b.pdb");
    take(progress, Qt::black, "Analysing structure of peptide from /d/c.pdb...");
    take(progress, Qt::red, "There was an error in PDB file /d/c.pdb at line 3");
    QCOMPARE(progress.filesDone(), 3);
    QCOMPARE(progress.filesWithErrors(), 2);
    QCOMPARE(progress.filesWithWarnings(), 1);
    progress.begin(7);
    QCOMPARE(progress.fileCount(), 7);
    QCOMPARE(progress.filesDone() + progress.filesWithErrors() + progress.filesWithWarnings(), 0);
}

void cRunProgressTest::reportThatFailsIsAnErrorOfItsFile() {
    cRunProgress progress;
    progress.begin(1);
    take(progress, Qt::black, "Analysing contacts of peptide from a.pdb...");
    take(progress, Qt::red, "Could not write report out/a_200703141530_contacts.xml");
    take(progress, Qt::red, "Could not write report out/a_200703141530_contacts.tbl");
    QCOMPARE(progress.filesDone(), 0);
    take(progress, Qt::black, "Contacts of peptide from a.pdb analyzed");
    QCOMPARE(progress.filesDone(), 1);
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
    const QString radii = place.file("a.radii", glycineRadiiTable());
    const QString fewRadii = place.file("few.radii", "GLY_N   1.65\n");
    const QString good = place.file("good.pdb", twoGlycines());
    const QStringList files = {
        good, place.file("gone.pdb", "x"), place.file("bad.pdb", "ATOM  nonsense\n"),
        place.file("empty.pdb", "END\n"), place.file("again.pdb", twoGlycines())};
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

void cRunProgressTest::pathsThatLookLikeMessagesAreShownWhole() {
    cRunProgress progress;
    progress.begin(1);
    take(progress, Qt::black, "Analysing contacts of peptide from /odd of peptide from x...pdb...");
    QCOMPARE(progress.currentFile(), QStringLiteral("/odd of peptide from x...pdb"));
}

} // namespace kelmo

QTEST_MAIN(kelmo::cRunProgressTest)
#include "run_progress_test.moc"
