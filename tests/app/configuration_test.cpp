// Configuration files, and choosing directories and tables.

#include "tests/app/app_test_tools.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QUrl>

#include <csignal>
#include <sys/resource.h>

namespace kelmo {

class cConfigurationTest : public QObject {
    Q_OBJECT

  public slots:
    void keepUrl(const QUrl& url) { openedUrls.append(url); }

  private slots:
    void initTestCase();
    void init();
    void cleanup();
    void bothModulesAskTheSame();
    void defaultKevConfiguration();
    void kevConfigurationFollowsTheForm();
    void vorConfigurationFollowsTheCriterion_data();
    void vorConfigurationFollowsTheCriterion();
    void olderFileIsReplaced();
    void fileThatCannotBeMadeIsReported();
    void fullDiskIsReportedAndKeepsTheOldFile();
    void outputDirectoryIsChosen();
    void outputDirectoryIsOpenedInTheFileManager();
    void tablesAreChosen_data();
    void tablesAreChosen();

  private:
    QByteArray created(const sModuleNames& names) {
        clickAndChoose(*window, names.createConfiguration, place->path("made.cfg"));
        return bytesOf(place->path("made.cfg"));
    }
    QStringList log(const sModuleNames& names) const {
        return colouredLines(*widget<QTextBrowser>(*window, names.display));
    }

    QList<QUrl> openedUrls;
    std::unique_ptr<cWorkingDirectory> place;
    std::unique_ptr<kelmo> window;
};

void cConfigurationTest::initTestCase() {
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void cConfigurationTest::init() {
    place = std::make_unique<cWorkingDirectory>();
    window = std::make_unique<kelmo>();
}

void cConfigurationTest::cleanup() {
    window.reset();
    place.reset();
}

void cConfigurationTest::bothModulesAskTheSame() {
    for (const sModuleNames& names : {kevNames, vorNames}) {
        const sSeenDialog seen = clickAndChoose(*window, names.createConfiguration, {});
        QCOMPARE(seen.caption, QStringLiteral("Save KEV configuration file as"));
        QVERIFY(seen.isForSaving);
        QVERIFY(!seen.filter.contains(';'));
    }
}

void cConfigurationTest::defaultKevConfiguration() {
    QCOMPARE(created(kevNames), QByteArray("analyze_bound:\t0\n"
                                           "analyze_unbound:\t0\n"
                                           "calc_asa:\t0\n"
                                           "z_slice:\t0.25\n"
                                           "r_solvent:\t1.4\n"
                                           "write_asa:\t1\n"
                                           "calc_rasa:\t0\n"
                                           "standard_asa:\t\n"
                                           "calc_dpx:\t0\n"
                                           "calc_cx:\t0\n"
                                           "cx_threshold:\t10\n"
                                           "cx_volume:\t20.1\n"
                                           "calc_hydro:\t0\n"
                                           "hydro_file:\t\n"
                                           "radii_filename:\t\n"
                                           "write_xml:\t0\n"
                                           "write_table:\t0\n"
                                           "output_dir:\t\n"));
    QCOMPARE(log(kevNames), QStringList(coloured(Qt::black, "Configuration file created")));
}

void cConfigurationTest::kevConfigurationFollowsTheForm() {
    for (const char* box :
         {"checkBoxKEVAnalyzeBound", "checkBoxKEVAnalyseChain", "checkBoxCalcRASA",
          "checkBoxCalcDPX", "checkBoxCalcCX", "checkBoxCalcHydro", "checkBoxKEVXMLOutput",
          "checkBoxKEVTableOutput"}) {
        setChecked(*window, box);
    }
    setChecked(*window, "checkBoxWriteASA", false);
    setNumber(*window, "doubleSpinBoxASAZSlice", 0.1);
    setNumber(*window, "doubleSpinBoxASARSolvent", 0.0);
    setNumber(*window, "doubleSpinBoxCxThreshold", 12.5);
    setNumber(*window, "doubleSpinBoxCXVatom", 15.1);
    setText(*window, "lineEditStandardASA", "a b.asa");
    setText(*window, "lineEditHydrophobicityFile", "/h.hpb");
    setText(*window, "lineEditRadiiFile", QString::fromUtf8("r\u00e9.radii"));
    setText(*window, "lineEditKEVOutputDir", "out/");
    QCOMPARE(created(kevNames),
             QByteArray("analyze_bound:\t1\nanalyze_unbound:\t1\ncalc_asa:\t1\nz_slice:\t0.1\n"
                        "r_solvent:\t0\nwrite_asa:\t0\ncalc_rasa:\t1\nstandard_asa:\ta b.asa\n"
                        "calc_dpx:\t1\ncalc_cx:\t1\ncx_threshold:\t12.5\ncx_volume:\t15.1\n"
                        "calc_hydro:\t1\nhydro_file:\t/h.hpb\nradii_filename:\tr\xC3\xA9.radii\n"
                        "write_xml:\t1\nwrite_table:\t1\noutput_dir:\tout/\n"));
}

void cConfigurationTest::vorConfigurationFollowsTheCriterion_data() {
    QTest::addColumn<QByteArray>("radioButton");
    QTest::addColumn<QByteArray>("parameters");
    QTest::newRow("maximum distance")
        << QByteArray("radioButtonMaxDistance") << QByteArray("1\nthreshold:\t4.5\n");
    QTest::newRow("PRISM") << QByteArray("radioButtonPRISM") << QByteArray("2\nthreshold:\t0.5\n");
    QTest::newRow("Dovreth") << QByteArray("radioButtonDovreth")
                             << QByteArray("3\ndelta_asa:\t1\nz_slice:\t0.25\nr_solvent:\t1.4\n");
    QTest::newRow("VORDA") << QByteArray("radioButtonKRBHovik") << QByteArray("4\n");
    QTest::newRow("none") << QByteArray() << QByteArray("0\n");
}

void cConfigurationTest::vorConfigurationFollowsTheCriterion() {
    QFETCH(QByteArray, radioButton);
    QFETCH(QByteArray, parameters);
    if (radioButton.isEmpty()) {
        window.reset();
        place->file("vor_program_settings.set", "0\n0\n0\n0\n");
        window = std::make_unique<kelmo>();
    } else {
        click(*window, radioButton.constData());
    }
    setText(*window, "lineEditVORRadiiFile", "r.radii");
    setChecked(*window, "checkBoxWriteContacts");
    setChecked(*window, "checkBoxWriteResiueBindingState");
    setChecked(*window, "checkBoxVORTableOutput");
    setText(*window, "lineEditVOROutputDir", "/out");
    QCOMPARE(created(vorNames),
             "contact_criterion:\t" + parameters +
                 "radii_filename:\tr.radii\nwrite_contacts:\t1\nwrite_binding_residues:\t0\n"
                 "write_binding_state:\t1\nwrite_xml:\t0\nwrite_table:\t1\noutput_dir:\t/out\n");
    QCOMPARE(log(vorNames), QStringList(coloured(Qt::black, "Configuration file created")));
}

void cConfigurationTest::olderFileIsReplaced() {
    place->file("made.cfg", QByteArray(10'000, '#'));
    QTimer confirm;
    connect(&confirm, &QTimer::timeout, this, [] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            box->button(QMessageBox::Yes)->click();
        }
    });
    confirm.start(20);
    QVERIFY(created(vorNames).startsWith("contact_criterion:\t1\n"));
    QVERIFY(!bytesOf(place->path("made.cfg")).contains('#'));
}

void cConfigurationTest::fileThatCannotBeMadeIsReported() {
    for (const sModuleNames& names : {kevNames, vorNames}) {
        const QString name = place->path("nowhere/made.cfg");
        clickAndChoose(*window, names.createConfiguration, name);
        QCOMPARE(log(names), QStringList(coloured(Qt::red, "Could not open file " + name)));
    }
}

void cConfigurationTest::fullDiskIsReportedAndKeepsTheOldFile() {
    const QString name = place->path("set.fls");
    place->file("loaded.fls", QByteArray(100'000, 'x') + '\n');
    clickAndChoose(*window, kevNames.loadList, place->path("loaded.fls"));
    rlimit before{};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{10, before.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &full), 0);
    clickAndChoose(*window, kevNames.saveList, name);
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    QCOMPARE(log(kevNames), QStringList(coloured(Qt::red, "Could not write file " + name)));
    QCOMPARE(filesIn(place->path()).size(), 1U);
}

void cConfigurationTest::outputDirectoryIsChosen() {
    const QString out = place->directory("out");
    const struct {
        const sModuleNames& names;
        const char* button;
        QString caption;
    } cases[] = {{kevNames, "pushButtonKEVOutputDir", "Choose KEV output directory"},
                 {vorNames, "pushButtonVOROutputDir", "Choose VOR output directory"}};
    for (const auto& [names, button, caption] : cases) {
        clickAndChoose(*window, button, {});
        QCOMPARE(textOf(*window, names.outputDirectory), QString());
        const sSeenDialog seen = clickAndChoose(*window, button, out);
        QCOMPARE(seen.caption, caption);
        QVERIFY(seen.isForDirectories);
        QCOMPARE(textOf(*window, names.outputDirectory), out);
    }
}

void cConfigurationTest::outputDirectoryIsOpenedInTheFileManager() {
    QDesktopServices::setUrlHandler("file", this, "keepUrl");
    place->directory("out");
    const struct {
        const sModuleNames& names;
        const char* button;
    } cases[] = {{kevNames, "toolButtonKEVShowOutputDir"},
                 {vorNames, "toolButtonVORShowOutputDir"}};
    for (const auto& [names, button] : cases) {
        openedUrls.clear();
        click(*window, button);
        setText(*window, names.outputDirectory, "nowhere");
        click(*window, button);
        QVERIFY(openedUrls.isEmpty());
        QCOMPARE(log(names), QStringList({coloured(Qt::red, "Please choose an output directory!"),
                                          coloured(Qt::red, "Could not open directory nowhere")}));
        setText(*window, names.outputDirectory, "out");
        click(*window, button);
        QCOMPARE(openedUrls, QList<QUrl>({QUrl::fromLocalFile(QDir::currentPath() + "/out")}));
    }
    QDesktopServices::unsetUrlHandler("file");
}

void cConfigurationTest::tablesAreChosen_data() {
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("shipped");
    const QString radii = QStringLiteral("Radii files (*.radii);;All files(*.*)");
    QTest::newRow("pushButtonRadiiFile") << "lineEditRadiiFile"
                                         << "Choose radii file" << radii << "protor.radii";
    QTest::newRow("pushButtonVORRadiiFileBrowse") << "lineEditVORRadiiFile"
                                                  << "Choose radii file" << radii << "bondi.radii";
    QTest::newRow("pushButtonStandardASABrowse") << "lineEditStandardASA"
                                                 << "Choose standard asa file"
                                                 << "Standard ASA files (*.asa);;All files(*.*)"
                                                 << "ala-x-ala.asa";
    QTest::newRow("pushButtonHydrophobicityFile") << "lineEditHydrophobicityFile"
                                                  << "Choose hydrophobicity file"
                                                  << "Hydrophobicity files (*.hpb);;All files(*.*)"
                                                  << "kyte-doolittle.hpb";
}

void cConfigurationTest::tablesAreChosen() {
    QFETCH(QString, field);
    QFETCH(QString, caption);
    QFETCH(QString, filter);
    QFETCH(QString, shipped);
    const char* button = QTest::currentDataTag();
    const QByteArray edit = field.toLatin1();
    clickAndChoose(*window, button, {});
    QCOMPARE(textOf(*window, edit.constData()), QString());
    // The shipped tables are where the dialog starts, so a bare name is enough.
    const sSeenDialog seen = clickAndChoose(*window, button, shipped);
    QCOMPARE(seen.caption, caption);
    QCOMPARE(seen.filter, filter);
    QCOMPARE(QFileInfo(textOf(*window, edit.constData())).canonicalFilePath(),
             QFileInfo(dataPath(shipped)).canonicalFilePath());
    const QString own = place->file("own.table", "x");
    clickAndChoose(*window, button, own);
    QCOMPARE(textOf(*window, edit.constData()), own);
    QCOMPARE(clickAndChoose(*window, button, {}).directory, place->path());
}

} // namespace kelmo

QTEST_MAIN(kelmo::cConfigurationTest)
#include "configuration_test.moc"
