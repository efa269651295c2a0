// The window with odd structures, tables, lists, settings and names: it answers, and what it writes
// is as ever.
#include "app/file_replacement.h"
#include "app/message_pane.h"
#include "tests/app/app_test_tools.h"
#include "tests/catalogue/odd_inputs.h"

#include <QAbstractButton>
#include <QDoubleSpinBox>
#include <QFile>
#include <QLabel>

#include <array>
#include <filesystem>
#include <memory>

#include <sys/stat.h>

namespace kelmo {

namespace fs = std::filesystem;

class cWindowOddInputsTest : public QObject {
    Q_OBJECT

  private slots:
    void initTestCase();
    void init();
    void cleanup();
    void wholeCatalogueIsRunByBothModules();
    void settingsOfAnyBytesAreTakenAndKept_data();
    void settingsOfAnyBytesAreTakenAndKept();
    void settingsThatAreNoFileAreLeftAlone_data();
    void settingsThatAreNoFileAreLeftAlone();
    void listsOfAnyBytesAreShownAndSavedAgain_data();
    void listsOfAnyBytesAreShownAndSavedAgain();
    void listsThatAreNoFileAreEmpty();
    void tablesThatAreNoFileAreRefused_data();
    void tablesThatAreNoFileAreRefused();
    void whatIsNoFileIsNotReplaced();
    void linksOfOthersAreReplaced();
    void replacedFilesKeepTheirPermissions();
    void pathWithALineFeedMakesNoOtherLines();
    void namesOfAnyBytesAreShownAndAnalysed();
    void namesOfAMegabyteAreReported();

  private:
    void start() { window = std::make_unique<kelmo>(); }
    /// Everything on in both modules, for these files, with reports in "out".
    void startWithEverything(const QByteArray& inputList);
    QByteArray settings(const char* module) const {
        return bytesOf(place->path(QString::fromLatin1(module) + "_program_settings.set"));
    }
    /// A window that begins with these two files and saves them again.
    std::array<QByteArray, 2> savedAfter(const QByteArray& kev, const QByteArray& vor);
    QStringList log(const sModuleNames& names) const {
        return colouredLines(*widget<QTextBrowser>(*window, names.display));
    }
    QString summary(const sModuleNames& names) const {
        return widget<QLabel>(*window, names.progressLabel)->text();
    }

    std::unique_ptr<cWorkingDirectory> place;
    std::unique_ptr<kelmo> window;
};

namespace {

const QByteArray megabyte(1 << 20, 'x');

/// The lines of a settings file with everything on, up to the input files.
QByteArray kevSettings(const QByteArray& out) {
    const QByteArray data = dataPath("").toUtf8();
    return "1\n1\n1\n1\n1\n1\n1\n1\n0.25\n1.4\n1\n10\n20.1\n" + data + "ala-x-ala.asa\n" + data +
           "kyte-doolittle.hpb\n" + data + "protor.radii\n1\n1\n" + out + "\n\n\n\n\n";
}

QByteArray vorSettings(const QByteArray& out) {
    return "1\n0\n0\n0\n4.5\n4.5\n0.5\n1\n0.25\n1.4\n" + dataPath("protor.radii").toUtf8() +
           "\n1\n1\n1\n1\n1\n" + out + "\n\n\n\n\n";
}

/// Texts that are no lists and no settings.
void oddTexts() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("one line feed") << QByteArray("\n");
    QTest::newRow("twenty thousand line feeds") << QByteArray(20'000, '\n');
    QTest::newRow("NUL bytes") << QByteArray(1000, '\0');
    QTest::newRow("lines of a NUL byte") << QByteArray("\0\n", 2).repeated(40);
    QTest::newRow("line of a megabyte") << megabyte;
    QTest::newRow("line of a megabyte at the end") << QByteArray("1\n").repeated(40) + megabyte;
    QTest::newRow("forty lines of 50,000 characters")
        << (megabyte.first(50'000) + '\n').repeated(40);
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF"
                                                   "1\n1\n1\n");
    QTest::newRow("UTF-16") << QByteArray("\xFF\xFE"
                                          "1\0\n\0"
                                          "1\0\n\0",
                                          10);
    QTest::newRow("lines that end in CR LF") << QByteArray("1\r\n").repeated(40);
    QTest::newRow("lines that end in CR") << QByteArray("1\r").repeated(40);
    QTest::newRow("gzip") << QByteArray("\x1F\x8B\x08\0\0\0\0\0", 8);
    QTest::newRow("markup") << QByteArray("<b>&amp;</b><!-- ]]>\n").repeated(40);
    QByteArray every;
    for (int i = 0; i < 256 * 64; ++i) {
        every += static_cast<char>(i % 256);
    }
    QTest::newRow("bytes of every value") << every;
    for (const char* number : {"nan", "-nan", "inf", "-inf", "1e999", "-1e999", "1e-999", "-1",
                               "99999999999999999999", "0x1p3", "1,5", "+", "-", "."}) {
        QTest::newRow(number) << (QByteArray(number) + '\n').repeated(23);
    }
}

} // namespace

void cWindowOddInputsTest::initTestCase() {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void cWindowOddInputsTest::init() {
    place = std::make_unique<cWorkingDirectory>();
}

void cWindowOddInputsTest::cleanup() {
    window.reset();
    place.reset();
}

void cWindowOddInputsTest::startWithEverything(const QByteArray& inputList) {
    const QByteArray out = QFile::encodeName(place->directory("out"));
    place->file("kev_program_settings.set", kevSettings(out) + inputList);
    place->file("vor_program_settings.set", vorSettings(out) + inputList);
    start();
}

void cWindowOddInputsTest::wholeCatalogueIsRunByBothModules() {
    qsizetype files = 0;
    qsizetype faulty = 0;
    qsizetype warnings = 0;
    qsizetype unparsable = 0; // by their names alone, which is no warning of the structure module
    QByteArray list;
    for (const sOddInput& input : oddInputs()) {
        const bool isAnalysed = input.faultyLine == 0 && input.atoms > 0;
        faulty += isAnalysed ? 0 : 1;
        const bool isWarned =
            !input.unknown.empty() || input.told.starts_with("yellow") || input.isDense;
        warnings += isAnalysed && isWarned ? 1 : 0;
        unparsable += isAnalysed && !isWarned && input.isMarkup ? 1 : 0;
        const QString name = QStringLiteral("odd%1.pdb").arg(++files);
        place->file(name, QByteArray::fromStdString(input.bytes));
        list += name.toLatin1() + '\n';
    }
    startWithEverything(list);
    click(*window, kevNames.run);
    click(*window, vorNames.run);
    QVERIFY(waitForEnd(*window, kevNames));
    QVERIFY(waitForEnd(*window, vorNames));
    const QString expected =
        QStringLiteral("Finished: %1 of %1 files, %2 with errors, %3 with warnings")
            .arg(files)
            .arg(faulty);
    QCOMPARE(summary(kevNames), expected.arg(warnings));
    QCOMPARE(summary(vorNames), expected.arg(warnings + unparsable));
    QCOMPARE(static_cast<qsizetype>(filesIn(place->path("out")).size()),
             (files - faulty) * (4 + 6));
}

std::array<QByteArray, 2> cWindowOddInputsTest::savedAfter(const QByteArray& kev,
                                                           const QByteArray& vor) {
    place->file("kev_program_settings.set", kev);
    place->file("vor_program_settings.set", vor);
    start();
    for (const QDoubleSpinBox* box : window->findChildren<QDoubleSpinBox*>()) {
        const bool isInRange = box->value() >= box->minimum() && box->value() <= box->maximum();
        [&] { QVERIFY2(isInRange, qPrintable(box->objectName())); }();
    }
    window.reset();
    return {settings("kev"), settings("vor")};
}

void cWindowOddInputsTest::settingsOfAnyBytesAreTakenAndKept_data() {
    oddTexts();
}

void cWindowOddInputsTest::settingsOfAnyBytesAreTakenAndKept() {
    QFETCH(QByteArray, bytes);
    const std::array<QByteArray, 2> saved = savedAfter(bytes, bytes);
    QVERIFY(saved[0].count('\n') >= 23);
    QVERIFY(saved[1].count('\n') >= 21);
    // What the window has made of it is settings like any other.
    QVERIFY(savedAfter(saved[0], saved[1]) == saved);
}

void cWindowOddInputsTest::settingsThatAreNoFileAreLeftAlone_data() {
    QTest::addColumn<QString>("target");
    // No device: a window that went wrong here would replace it.
    QTest::newRow("link to a pipe that nobody writes to") << "pipe";
    QTest::newRow("link to a directory") << "directory";
}

void cWindowOddInputsTest::settingsThatAreNoFileAreLeftAlone() {
    QFETCH(QString, target);
    QCOMPARE(::mkfifo("pipe", 0600), 0);
    place->directory("directory");
    const fs::file_type before = fs::status(target.toStdString()).type();
    for (const char* name : {"kev_program_settings.set", "vor_program_settings.set"}) {
        fs::create_symlink(target.toStdString(), name);
    }
    start();
    QCOMPARE(numberOf(*window, "doubleSpinBoxASAZSlice"), 0.25);
    QVERIFY(isChecked(*window, "radioButtonMaxDistance"));
    window.reset();
    QCOMPARE(fs::status(target.toStdString()).type(), before);
    QVERIFY(fs::is_symlink("kev_program_settings.set"));
}

void cWindowOddInputsTest::listsOfAnyBytesAreShownAndSavedAgain_data() {
    oddTexts();
}

void cWindowOddInputsTest::listsOfAnyBytesAreShownAndSavedAgain() {
    QFETCH(QByteArray, bytes);
    start();
    clickAndChoose(*window, kevNames.loadList, place->file("odd.fls", bytes));
    const bool isEnded = bytes.isEmpty() || bytes.endsWith('\n');
    const QByteArray whole = isEnded ? bytes : bytes + '\n';
    auto* list = widget<QListWidget>(*window, kevNames.list);
    QCOMPARE(list->count(), whole.count('\n'));
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    list->scrollToBottom();
    QCoreApplication::processEvents();
    clickAndChoose(*window, kevNames.saveList, place->path("saved.fls"));
    // Ends of lines as DOS has them belong to no path, as there is no file of such a name.
    QByteArray saved = whole;
    saved.replace("\r\n", "\n");
    QVERIFY(bytesOf(place->path("saved.fls")) == saved);
}

void cWindowOddInputsTest::listsThatAreNoFileAreEmpty() {
    QCOMPARE(::mkfifo("pipe.fls", 0600), 0);
    fs::create_symlink("/dev/zero", "zeros.fls");
    start();
    for (const char* name : {"pipe.fls", "zeros.fls"}) {
        clickAndChoose(*window, vorNames.loadList, place->path(name));
        QCOMPARE(widget<QListWidget>(*window, vorNames.list)->count(), 0);
    }
}

void cWindowOddInputsTest::tablesThatAreNoFileAreRefused_data() {
    QTest::addColumn<QString>("table");
    for (const char* table :
         {"lineEditStandardASA", "lineEditHydrophobicityFile", "aa_contacts.txt"}) {
        QTest::newRow(table) << table;
    }
}

void cWindowOddInputsTest::tablesThatAreNoFileAreRefused() {
    QFETCH(QString, table);
    place->file("a.pdb", glycineStructure());
    QCOMPARE(::mkfifo("pipe", 0600), 0);
    startWithEverything("a.pdb\n");
    const bool isRules = table == QLatin1String("aa_contacts.txt");
    const sModuleNames& names = isRules ? vorNames : kevNames;
    for (const char* name : {"pipe", "/dev/zero", "out", "nothing"}) {
        if (isRules) {
            fs::remove("aa_contacts.txt");
            fs::create_symlink(name, "aa_contacts.txt");
            setChecked(*window, "radioButtonKRBHovik");
        } else {
            setText(*window, table.toLatin1().constData(), name);
        }
        click(*window, names.clear);
        click(*window, names.run);
        const QString text = widget<QTextBrowser>(*window, names.display)->toPlainText();
        QVERIFY2(text.contains(isRules ? "Could not open file aa_contacts.txt" : " file path!"),
                 qPrintable(text));
        QVERIFY(widget<QAbstractButton>(*window, names.run)->isEnabled());
    }
    QVERIFY(filesIn(place->path("out")).empty());
}

void cWindowOddInputsTest::whatIsNoFileIsNotReplaced() {
    QCOMPARE(::mkfifo("pipe", 0600), 0);
    fs::create_symlink("pipe", "link");
    fs::create_symlink("new", "link_to_new");
    place->file("old", "old");
    fs::create_symlink("old", "link_to_old");
    for (const char* name : {"pipe", "link", "."}) {
        QVERIFY(replaceFile(name, "new") == eReplacement::notOpened);
    }
    QVERIFY(fs::is_fifo("pipe"));
    // Links to files, there or not yet, stay links.
    for (const char* name : {"link_to_new", "link_to_old"}) {
        QVERIFY(replaceFile(name, "new") == eReplacement::done);
        QVERIFY(fs::is_symlink(name));
        QCOMPARE(bytesOf(name), QByteArray("new"));
    }
}

void cWindowOddInputsTest::linksOfOthersAreReplaced() {
    place->file("private", "old");
    fs::create_symlink("private", "link");
    constexpr uid_t nobody = 65534;
    if (::lchown("link", nobody, nobody) != 0) {
        QSKIP("only the superuser can make a link of somebody else's");
    }
    QVERIFY(replaceFile("link", "new") == eReplacement::done);
    QVERIFY(fs::is_regular_file(fs::symlink_status("link")));
    QCOMPARE(bytesOf("link"), QByteArray("new"));
    QCOMPARE(bytesOf("private"), QByteArray("old"));
}

void cWindowOddInputsTest::replacedFilesKeepTheirPermissions() {
    place->file("private", "old");
    const fs::perms ownOnly = fs::perms::owner_read | fs::perms::owner_write;
    fs::permissions("private", ownOnly);
    QVERIFY(replaceFile("private", "new") == eReplacement::done);
    QCOMPARE(bytesOf("private"), QByteArray("new"));
    QVERIFY(fs::status("private").permissions() == ownOnly);
}

void cWindowOddInputsTest::pathWithALineFeedMakesNoOtherLines() {
    start();
    place->file("a\nb.pdb", "");
    addFiles(*window, kevNames, {place->path("a\nb.pdb")});
    clickAndChoose(*window, kevNames.saveList, place->path("saved.fls"));
    QCOMPARE(bytesOf("saved.fls"), (place->path("a?b.pdb") + '\n').toUtf8());
    window.reset();
    const QByteArray settings = bytesOf("kev_program_settings.set");
    QVERIFY(settings.endsWith('\n' + (place->path("a?b.pdb") + '\n').toUtf8()));
}

void cWindowOddInputsTest::namesOfAnyBytesAreShownAndAnalysed() {
    // With a line feed a name cannot stand in a list; it comes from the dialog.
    const std::vector<std::pair<std::string, const char*>> names = {
        {"with blank.pdb", "with blank.pdb"},
        {"-dash.pdb", "-dash.pdb"},
        {"gr\xC3\xBC\xC3\x9F"
         "e.pdb",
         "gr\xC3\xBC\xC3\x9F"
         "e.pdb"},
        {"latin\xE9.pdb", "latin\xEF\xBF\xBD.pdb"},
        {"\xEF\xBB\xBFmark.pdb", "\xEF\xBF\xBDmark.pdb"},
        {"<b>bold&amp;.pdb", "<b>bold&amp;.pdb"},
        {"%1 %2 %n.pdb", "%1 %2 %n.pdb"},
        {"tab\tand bell\x07.pdb", "tab\tand bell\x07.pdb"},
        {"turned\xE2\x80\xAE.pdb", "turned<U+202E>.pdb"}};
    QByteArray list;
    for (const auto& [name, shown] : names) {
        fs::copy_file(dataPath("samples/1ubq.pdb").toStdString(), name);
        list += QByteArray::fromStdString(name) + '\n';
    }
    startWithEverything(list);
    fs::copy_file(dataPath("samples/1ubq.pdb").toStdString(), "line\nfeed.pdb");
    for (const sModuleNames* module : {&kevNames, &vorNames}) {
        addFiles(*window, *module, {place->path("line\nfeed.pdb")});
        click(*window, module->run);
        QVERIFY(waitForEnd(*window, *module));
        const QStringList items = itemTexts(*widget<QListWidget>(*window, module->list));
        const QStringList lines = log(*module);
        for (std::size_t i = 0; i < names.size(); ++i) {
            const QString shown = QString::fromUtf8(names[i].second);
            QCOMPARE(items[static_cast<int>(i)], shown);
            QCOMPARE(lines.filter(" peptide from " + shown).size(), 2);
        }
        QCOMPARE(summary(*module), QStringLiteral("Finished: 10 of 10 files"));
    }
    const std::size_t reports = static_cast<std::size_t>(
        std::distance(fs::directory_iterator("out"), fs::directory_iterator()));
    QCOMPARE(reports, 10U * (4 + 6));
    for (const auto& entry : fs::directory_iterator("out")) {
        QVERIFY(fs::file_size(entry) > 0);
    }
}

void cWindowOddInputsTest::namesOfAMegabyteAreReported() {
    startWithEverything(megabyte + '\n' + QByteArray(megabyte).replace('x', "x ") + '\n');
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    click(*window, kevNames.run);
    QVERIFY(waitForEnd(*window, kevNames));
    QCOMPARE(summary(kevNames), QStringLiteral("Finished: 2 of 2 files, 2 with errors"));
    const QString text = widget<QTextBrowser>(*window, kevNames.display)->toPlainText();
    QCOMPARE(text.count("Could not open file x"), 2);
    QVERIFY(QString(text).remove(u'\n').contains(
        QString::fromLatin1(megabyte.left(shownCharacters * 9 / 10))));
    QVERIFY(text.contains(QStringLiteral(" more characters)")));
}

} // namespace kelmo

QTEST_MAIN(kelmo::cWindowOddInputsTest)
#include "window_odd_inputs_test.moc"
