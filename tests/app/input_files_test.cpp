// The input lists: dialogs, list files, dropping, removing, and the marks of repeated files.

#include "tests/app/app_test_tools.h"
#include "tests/support/processor_time.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTabWidget>
#include <QUrl>

namespace kelmo {

class cInputFilesTest : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase();
    void init();
    void cleanup();
    void addDialogIsAsItShouldBe_data() { modules(); }
    void addDialogIsAsItShouldBe();
    void filesAreAddedInOrder_data() { modules(); }
    void filesAreAddedInOrder();
    void cancelledDialogsDoNothing_data() { modules(); }
    void cancelledDialogsDoNothing();
    void directoriesAreRemembered_data() { modules(); }
    void directoriesAreRemembered();
    void savedListHoldsEveryPath_data() { modules(); }
    void savedListHoldsEveryPath();
    void savedListGetsASuffix_data();
    void savedListGetsASuffix();
    void listThatCannotBeSavedIsReported_data() { modules(); }
    void listThatCannotBeSavedIsReported();
    void dialogAsksBeforeItReplacesTheSuffixedFile();
    void loadedListReplacesTheOld_data() { modules(); }
    void loadedListReplacesTheOld();
    void everyLineOfAListCounts();
    void carriageReturnBelongsToThePathOfAFileAlone();
    void listWithoutFinalLineFeedIsReadWhole();
    void pathsOfAnyBytesSurvive();
    void removeButtonRemovesTheSelected_data() { modules(); }
    void removeButtonRemovesTheSelected();
    void deleteKeyRemovesAdjacentItems_data() { modules(); }
    void deleteKeyRemovesAdjacentItems();
    void deleteKeyElsewhereRemovesNothing();
    void otherKeysRemoveNothing();
    void thousandsOfFilesAreRemovedInTime();
    void droppedFilesAreAdded_data() { modules(); }
    void droppedFilesAreAdded();
    void droppedListIsAdded();
    void droppedFolderGivesItsStructures();
    void otherDroppedFilesAreRefused();
    void droppedTextIsRefused();
    void repeatedFilesAreMarked();
    void filesWithReportsOfTheSameNameAreMarked();

  private:
    static void modules();
    const sModuleNames& names() const;
    QListWidget& list() const { return *widget<QListWidget>(*window, names().list); }
    QTextBrowser& log() const { return *widget<QTextBrowser>(*window, names().display); }
    /// What a saved list holds is what a run would take.
    QByteArray savedList() const;
    void load(const QByteArray& listFile);
    void drop(const QList<QUrl>& urls);

    std::unique_ptr<cWorkingDirectory> place;
    std::unique_ptr<kelmo> window;
};

void cInputFilesTest::modules() {
    QTest::addColumn<bool>("isKev");
    QTest::newRow("structure module") << true;
    QTest::newRow("interaction module") << false;
}

const sModuleNames& cInputFilesTest::names() const {
    const bool isVor =
        QTest::currentDataTag() != nullptr && *QTest::currentDataTag() == QLatin1Char('i');
    return isVor ? vorNames : kevNames;
}

QByteArray cInputFilesTest::savedList() const {
    clickAndChoose(*window, names().saveList, place->path("saved_by_test.fls"));
    const QByteArray bytes = bytesOf(place->path("saved_by_test.fls"));
    QFile::remove(place->path("saved_by_test.fls"));
    return bytes;
}

void cInputFilesTest::load(const QByteArray& listFile) {
    clickAndChoose(*window, names().loadList, place->file("loaded.fls", listFile));
}

void cInputFilesTest::drop(const QList<QUrl>& urls) {
    QMimeData dragged;
    dragged.setUrls(urls);
    const QPoint middle = list().viewport()->rect().center();
    QDragEnterEvent enter(middle, Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton,
                          Qt::NoModifier);
    QApplication::sendEvent(list().viewport(), &enter);
    if (!enter.isAccepted()) {
        return;
    }
    // A file manager that is told of a move would delete its files.
    QCOMPARE(enter.dropAction(), Qt::CopyAction);
    QDropEvent dropEvent(middle, Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton,
                         Qt::NoModifier);
    QApplication::sendEvent(list().viewport(), &dropEvent);
    QVERIFY(dropEvent.isAccepted());
}

void cInputFilesTest::initTestCase() {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void cInputFilesTest::init() {
    place = std::make_unique<cWorkingDirectory>();
    window = std::make_unique<kelmo>();
}

void cInputFilesTest::cleanup() {
    window.reset();
    place.reset();
}

void cInputFilesTest::addDialogIsAsItShouldBe() {
    const sSeenDialog seen = clickAndChoose(*window, names().addFiles, {});
    QCOMPARE(seen.caption, QStringLiteral("Choose PDB file(s)"));
    QVERIFY(seen.isForSeveralFiles);
    QCOMPARE(seen.filter,
             QStringLiteral("Protein Data Bank files (*.pdb *.ent *.cif *.mmcif *.pdb.gz *.ent.gz "
                            "*.cif.gz *.mmcif.gz);;All files(*.*)"));
    const sSeenDialog loading = clickAndChoose(*window, names().loadList, {});
    QCOMPARE(loading.caption, QStringLiteral("Choose PDB file(s)"));
    QVERIFY(!loading.isForSeveralFiles && !loading.isForSaving);
    QCOMPARE(loading.filter, QStringLiteral("File List Files (*.fls);;All Files (*.*)"));
    const sSeenDialog saving = clickAndChoose(*window, names().saveList, {});
    QCOMPARE(saving.caption, QStringLiteral("Save input file list as"));
    QVERIFY(saving.isForSaving);
    QCOMPARE(saving.filter, QStringLiteral("File List Files (*.fls);;All Files (*.*)"));
}

void cInputFilesTest::filesAreAddedInOrder() {
    const QString a = place->file("a.pdb", "x");
    const QString b = place->file("b.ent", "x");
    addFiles(*window, names(), {b, a});
    addFiles(*window, names(), {b});
    QCOMPARE(itemTexts(list()).size(), 3);
    QCOMPARE(itemTexts(list()), QStringList({b, a, b}));
    QCOMPARE(savedList(), (b + '\n' + a + '\n' + b + '\n').toUtf8());
    const sModuleNames& other = names().list == kevNames.list ? vorNames : kevNames;
    QCOMPARE(widget<QListWidget>(*window, other.list)->count(), 0);
}

void cInputFilesTest::cancelledDialogsDoNothing() {
    load("one.pdb\n");
    clickAndChoose(*window, names().addFiles, {});
    clickAndChoose(*window, names().loadList, {});
    clickAndChoose(*window, names().saveList, {});
    clickAndChoose(*window, names().createConfiguration, {});
    QCOMPARE(itemTexts(list()), QStringList("one.pdb"));
    QVERIFY(log().document()->isEmpty());
    QCOMPARE(filesIn(place->path()).size(), 1U);
}

void cInputFilesTest::directoriesAreRemembered() {
    const QString added = place->directory("added");
    const QString lists = place->directory("lists");
    const QString saved = place->directory("saved");
    QCOMPARE(clickAndChoose(*window, names().addFiles, place->file("added/a.pdb", "x")).directory,
             QDir::currentPath());
    clickAndChoose(*window, names().loadList, place->file("lists/a.fls", "a\n"));
    clickAndChoose(*window, names().saveList, saved + "/b.fls");
    QCOMPARE(clickAndChoose(*window, names().addFiles, {}).directory, added);
    QCOMPARE(clickAndChoose(*window, names().loadList, {}).directory, lists);
    QCOMPARE(clickAndChoose(*window, names().saveList, {}).directory, saved);
    // They survive the program.
    window.reset();
    window = std::make_unique<kelmo>();
    QCOMPARE(clickAndChoose(*window, names().addFiles, {}).directory, added);
    QCOMPARE(clickAndChoose(*window, names().loadList, {}).directory, lists);
    QCOMPARE(clickAndChoose(*window, names().saveList, {}).directory, saved);
}

void cInputFilesTest::savedListHoldsEveryPath() {
    load("b.pdb\na.pdb\nb.pdb\n");
    clickAndChoose(*window, names().saveList, place->path("set.fls"));
    QCOMPARE(bytesOf(place->path("set.fls")), QByteArray("b.pdb\na.pdb\nb.pdb\n"));
    QCOMPARE(colouredLines(log()), QStringList(coloured(Qt::black, "Input list file created")));
}

void cInputFilesTest::savedListGetsASuffix_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    QTest::newRow("none") << "set1"
                          << "set1.fls";
    QTest::newRow("another") << "set1.txt"
                             << "set1.txt";
    QTest::newRow("the same") << "set1.fls"
                              << "set1.fls";
    QTest::newRow("a dot alone") << "set1."
                                 << "set1..fls";
}

void cInputFilesTest::savedListGetsASuffix() {
    QFETCH(QString, name);
    QFETCH(QString, expected);
    clickAndChoose(*window, kevNames.saveList, place->path(name));
    const auto files = filesIn(place->path());
    QCOMPARE(files.size(), 1U);
    QCOMPARE(files.begin()->first, expected);
}

void cInputFilesTest::listThatCannotBeSavedIsReported() {
    const QString name = place->path("no such directory/set.fls");
    clickAndChoose(*window, names().saveList, name);
    QCOMPARE(colouredLines(log()), QStringList(coloured(Qt::red, "Could not open file " + name)));
}

void cInputFilesTest::dialogAsksBeforeItReplacesTheSuffixedFile() {
    place->file("set1.fls", "precious\n");
    int questions = 0;
    QTimer confirm;
    connect(&confirm, &QTimer::timeout, this, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            ++questions;
            box->button(QMessageBox::No)->click();
            qobject_cast<QDialog*>(QApplication::activeModalWidget())->reject();
        }
    });
    confirm.start(20);
    clickAndChoose(*window, kevNames.saveList, place->path("set1"));
    QCOMPARE(questions, 1);
    QCOMPARE(bytesOf(place->path("set1.fls")), QByteArray("precious\n"));
}

void cInputFilesTest::loadedListReplacesTheOld() {
    load("old1.pdb\nold2.pdb\n");
    load("/data/new.pdb\n");
    QCOMPARE(itemTexts(list()), QStringList("/data/new.pdb"));
    QCOMPARE(savedList(), QByteArray("/data/new.pdb\n"));
    load("");
    QCOMPARE(list().count(), 0);
    QCOMPARE(savedList(), QByteArray());
}

void cInputFilesTest::everyLineOfAListCounts() {
    const QByteArray lines = "a.pdb\n\n  b.pdb \nc.pdb\n\n";
    load(lines);
    QCOMPARE(list().count(), 5);
    QCOMPARE(savedList(), lines);
}

void cInputFilesTest::carriageReturnBelongsToThePathOfAFileAlone() {
    place->file("odd.pdb\r", "END\n");
    load("a.pdb\r\nodd.pdb\r\n\r\n");
    QCOMPARE(savedList(), QByteArray("a.pdb\nodd.pdb\r\n\n"));
}

void cInputFilesTest::listWithoutFinalLineFeedIsReadWhole() {
    load("a.pdb\nb.pdb");
    QCOMPARE(savedList(), QByteArray("a.pdb\nb.pdb\n"));
}

void cInputFilesTest::pathsOfAnyBytesSurvive() {
    const QByteArray lines = "caf\xC3\xA9.pdb\nlatin\xE9.pdb\n";
    load(lines);
    QCOMPARE(savedList(), lines);
    QCOMPARE(list().item(1)->text(), QString::fromUtf8("latin\xEF\xBF\xBD.pdb"));
}

void cInputFilesTest::removeButtonRemovesTheSelected() {
    load("0\n1\n2\n3\n4\n");
    click(*window, names().removeFiles);
    QCOMPARE(list().count(), 5);
    for (const int row : {0, 1, 3}) {
        list().item(row)->setSelected(true);
    }
    click(*window, names().removeFiles);
    QCOMPARE(itemTexts(list()), QStringList({"2", "4"}));
    QCOMPARE(savedList(), QByteArray("2\n4\n"));
}

void cInputFilesTest::deleteKeyRemovesAdjacentItems() {
    load("0\n1\n2\n3\n4\n5\n");
    widget<QTabWidget>(*window, "tabWidgetModuleChoice")
        ->setCurrentIndex(names().list == kevNames.list ? 0 : 1);
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    list().setFocus();
    for (const int row : {1, 2, 3}) {
        list().item(row)->setSelected(true);
    }
    QTest::keyClick(&list(), Qt::Key_Delete);
    QCOMPARE(itemTexts(list()), QStringList({"0", "4", "5"}));
    QCOMPARE(savedList(), QByteArray("0\n4\n5\n"));
}

void cInputFilesTest::deleteKeyElsewhereRemovesNothing() {
    load("0\n1\n");
    list().selectAll();
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    auto* edit = widget<QLineEdit>(*window, "lineEditRadiiFile");
    edit->setFocus();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClick(window.get(), Qt::Key_Delete);
    QCOMPARE(list().count(), 2);
}

void cInputFilesTest::otherKeysRemoveNothing() {
    load("0\n1\n");
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    list().setFocus();
    list().selectAll();
    for (const Qt::Key key : {Qt::Key_Backspace, Qt::Key_X, Qt::Key_Insert}) {
        QTest::keyClick(&list(), key);
    }
    QCOMPARE(list().count(), 2);
}

void cInputFilesTest::thousandsOfFilesAreRemovedInTime() {
    QByteArray lines;
    constexpr int count = 10'000;
    for (int i = 0; i < count; ++i) {
        lines += QByteArray::number(i) + ".pdb\n";
    }
    load(lines);
    QCOMPARE(list().count(), count);
    for (int row = 0; row < count; row += 2) {
        list().item(row)->setSelected(true);
    }
    const tProcessorTime begin = processorTime();
    click(*window, kevNames.removeFiles);
    QVERIFY(processorTime() - begin < std::chrono::seconds(5));
    QCOMPARE(list().count(), count / 2);
    QVERIFY(savedList().startsWith("1.pdb\n3.pdb\n"));
}

void cInputFilesTest::droppedFilesAreAdded() {
    load("first.pdb\n");
    drop({QUrl::fromLocalFile("/data/b.pdb"), QUrl::fromLocalFile("/data/A.ENT")});
    QCOMPARE(itemTexts(list()), QStringList({"first.pdb", "/data/b.pdb", "/data/A.ENT"}));
    QVERIFY(log().document()->isEmpty());
}

void cInputFilesTest::droppedListIsAdded() {
    load("first.pdb\n");
    drop({QUrl::fromLocalFile(place->file("more.fls", "x.pdb\ny.pdb\n")),
          QUrl::fromLocalFile("/data/z.pdb")});
    QCOMPARE(savedList(), QByteArray("first.pdb\nx.pdb\ny.pdb\n/data/z.pdb\n"));
}

void cInputFilesTest::droppedFolderGivesItsStructures() {
    const QString folder = place->directory("structures");
    for (const char* name : {"b.cif.gz", "a.pdb", "notes.txt", "c.mmcif"}) {
        place->file(QStringLiteral("structures/") + name, "x");
    }
    place->directory("structures/deeper.pdb");
    const QString empty = place->directory("empty");
    drop({QUrl::fromLocalFile(folder), QUrl::fromLocalFile(empty)});
    QCOMPARE(itemTexts(list()),
             QStringList({folder + "/a.pdb", folder + "/b.cif.gz", folder + "/c.mmcif"}));
    QCOMPARE(colouredLines(log()),
             QStringList(coloured(Qt::yellow,
                                  "No structures (.pdb, .ent, .cif, .mmcif) in folder " + empty)));
}

void cInputFilesTest::otherDroppedFilesAreRefused() {
    drop({QUrl::fromLocalFile("/data/notes.txt"), QUrl::fromLocalFile("/data/a.pdb")});
    QCOMPARE(itemTexts(list()), QStringList("/data/a.pdb"));
    QCOMPARE(
        colouredLines(log()),
        QStringList(coloured(Qt::yellow, "Neither a structure (.pdb, .ent, .cif, .mmcif) nor a "
                                         "file list (.fls), not added: /data/notes.txt")));
}

void cInputFilesTest::droppedTextIsRefused() {
    QMimeData dragged;
    dragged.setText("a.pdb");
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(list().viewport(), &enter);
    QVERIFY(!enter.isAccepted());
}

void cInputFilesTest::repeatedFilesAreMarked() {
    load("/d/a.pdb\n/d/b.pdb\n/d/./a.pdb\n");
    QVERIFY(!list().item(0)->icon().isNull());
    QVERIFY(list().item(1)->icon().isNull());
    QVERIFY(!list().item(2)->icon().isNull());
    QVERIFY(list().item(0)->toolTip().contains("more than once"));
    QCOMPARE(widget<QLabel>(*window, "labelKEVFileCount")->text(),
             QStringLiteral("3 files, 2 marked"));
    list().item(2)->setSelected(true);
    click(*window, kevNames.removeFiles);
    QVERIFY(list().item(0)->icon().isNull());
    QCOMPARE(widget<QLabel>(*window, "labelKEVFileCount")->text(), QStringLiteral("2 files"));
}

void cInputFilesTest::filesWithReportsOfTheSameNameAreMarked() {
    load("/d/1abc.pdb\n/e/1abc.model1.pdb\n/e/2abc.pdb\n");
    QVERIFY(list().item(0)->toolTip().contains("same name"));
    QVERIFY(list().item(1)->toolTip().contains("same name"));
    QCOMPARE(list().item(2)->toolTip(), QStringLiteral("/e/2abc.pdb"));
}

} // namespace kelmo

QTEST_MAIN(kelmo::cInputFilesTest)
#include "input_files_test.moc"
