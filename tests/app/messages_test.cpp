// The log panes: order, colours, readability, and that a flood of messages neither slows nor
// swells.

#include "app/message_pane.h"
#include "tests/app/app_test_tools.h"
#include "tests/support/processor_time.h"

#include <QApplication>
#include <QPalette>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTextBlock>

#include <QFile>

namespace kelmo {

class cMessagesTest : public QObject {
    Q_OBJECT

  private slots:
    void init();
    void cleanup();
    void receivedMessageIsShownAtOnce_data();
    void receivedMessageIsShownAtOnce();
    void messagesKeepTheirOrderAndColours();
    void emptyMessageIsAnEmptyBlackLine();
    void markupIsShownAsItStands();
    void messageWithLineFeedsStaysOneMessage();
    void modulesHaveLogsOfTheirOwn();
    void clearButtonsEmptyTheLog();
    void workersMessageCrossesThreads();
    void selectionIsLeftAlone();
    void readerWhoScrolledUpIsLeftThere();
    void contrastFollowsTheDefinition();
    void messageColoursAreReadable_data();
    void messageColoursAreReadable();
    void everyColourIsReadableOnEveryBase();
    void oldestParagraphsGo();
    void floodIsShownWhole();
    void messagesOfManyMegabytesAreCutShort();
    void hundredThousandMessagesAreShownInTime();

  private:
    QTextBrowser& kevLog() { return *widget<QTextBrowser>(*window, kevNames.display); }
    QTextBrowser& vorLog() { return *widget<QTextBrowser>(*window, vorNames.display); }

    std::unique_ptr<cWorkingDirectory> place;
    std::unique_ptr<kelmo> window;
};

namespace {

QPalette paletteWithBase(const QColor& base) {
    QPalette palette = QApplication::palette();
    palette.setColor(QPalette::Base, base);
    return palette;
}

/// Resident memory of this process, MB.
double residentMegabytes() {
    QFile status(QStringLiteral("/proc/self/statm"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0.0;
    }
    constexpr double pagesPerMegabyte = 256.0;
    return status.readAll().split(' ').at(1).toDouble() / pagesPerMegabyte;
}

} // namespace

void cMessagesTest::init() {
    place = std::make_unique<cWorkingDirectory>();
    window = std::make_unique<kelmo>();
}

void cMessagesTest::cleanup() {
    window.reset();
    place.reset();
}

void cMessagesTest::receivedMessageIsShownAtOnce_data() {
    QTest::addColumn<bool>("isKev");
    QTest::newRow("structure module") << true;
    QTest::newRow("interaction module") << false;
}

void cMessagesTest::receivedMessageIsShownAtOnce() {
    QFETCH(bool, isKev);
    QSignalSpy kevSpy(window.get(), &kelmo::kevMessageReceived);
    QSignalSpy vorSpy(window.get(), &kelmo::vorMessageReceived);
    cStatusMessage message(Qt::red, "Could not open file x.pdb");
    if (isKev) {
        window->receiveKEVStatusMessage(message);
    } else {
        window->receiveVORStatusMessage(message);
    }
    QCOMPARE(kevSpy.count(), isKev ? 1 : 0);
    QCOMPARE(vorSpy.count(), isKev ? 0 : 1);
    QTextBrowser& log = isKev ? kevLog() : vorLog();
    QCOMPARE(colouredLines(log), QStringList(coloured(Qt::red, message.text)));
    QCOMPARE(log.textColor(), QColor(Qt::red));
    // The queue was emptied: another update shows nothing twice.
    window->updateKEVDisplay();
    window->updateVORDisplay();
    QCOMPARE(colouredLines(log).size(), 1);
}

void cMessagesTest::messagesKeepTheirOrderAndColours() {
    QStringList expected;
    const Qt::GlobalColor colours[] = {Qt::black, Qt::yellow, Qt::red, Qt::blue, Qt::green};
    for (int i = 0; i < 50; ++i) {
        cStatusMessage message(colours[i % 5], QString::number(i));
        window->receiveKEVStatusMessage(message);
        expected.append(coloured(colours[i % 5], QString::number(i)));
        // The window keeps a copy: what becomes of the sender's message is of no account.
        message.text = QStringLiteral("changed");
        message.colour = Qt::cyan;
    }
    QCOMPARE(colouredLines(kevLog()), expected);
}

void cMessagesTest::emptyMessageIsAnEmptyBlackLine() {
    cStatusMessage empty;
    cStatusMessage next(Qt::red, "next");
    window->receiveKEVStatusMessage(empty);
    QCOMPARE(logLines(kevLog()).size(), 1U);
    QCOMPARE(logLines(kevLog())[0].colour, QColor(Qt::black));
    window->receiveKEVStatusMessage(next);
    QCOMPARE(kevLog().toPlainText(), QStringLiteral("\nnext"));
    QCOMPARE(logLines(kevLog())[0].colour, QColor(Qt::black));
    window->receiveKEVStatusMessage(empty);
    QCOMPARE(kevLog().toPlainText(), QStringLiteral("\nnext\n"));
}

void cMessagesTest::markupIsShownAsItStands() {
    const QString text = QStringLiteral("Could not open file <b>odd</b>&amp;<img src=x>.pdb");
    cStatusMessage message(Qt::red, text);
    window->receiveVORStatusMessage(message);
    QCOMPARE(vorLog().toPlainText(), text);
}

void cMessagesTest::messageWithLineFeedsStaysOneMessage() {
    cStatusMessage message(Qt::red, "first\nsecond\n");
    cStatusMessage next(Qt::black, "next");
    window->receiveKEVStatusMessage(message);
    window->receiveKEVStatusMessage(next);
    QCOMPARE(kevLog().toPlainText(), QStringLiteral("first\nsecond\n\nnext"));
    QCOMPARE(logLines(kevLog())[1].colour, QColor(Qt::red));
}

void cMessagesTest::modulesHaveLogsOfTheirOwn() {
    cStatusMessage message(Qt::black, "for one");
    window->receiveKEVStatusMessage(message);
    QVERIFY(vorLog().document()->isEmpty());
}

void cMessagesTest::clearButtonsEmptyTheLog() {
    cStatusMessage message(Qt::red, "gone");
    cStatusMessage empty;
    for (const sModuleNames& names : {kevNames, vorNames}) {
        const bool isKev = names.list == kevNames.list;
        auto send = [&](cStatusMessage& what) {
            isKev ? window->receiveKEVStatusMessage(what) : window->receiveVORStatusMessage(what);
        };
        send(message);
        click(*window, names.clear);
        auto* log = widget<QTextBrowser>(*window, names.display);
        QVERIFY(log->document()->isEmpty());
        // And the next message begins at the top again.
        send(empty);
        send(message);
        QCOMPARE(log->toPlainText(), QStringLiteral("\ngone"));
    }
}

void cMessagesTest::workersMessageCrossesThreads() {
    const QString radii = place->file("a.radii", glycineRadiiFile());
    prepareKev(*window, {place->file("missing.pdb", glycineStructure())}, radii, place->path());
    QVERIFY(QFile::remove(place->path("missing.pdb")));
    click(*window, kevNames.run);
    QVERIFY(waitForEnd(*window, kevNames));
    QCOMPARE(colouredLines(kevLog()),
             QStringList({coloured(Qt::blue, "Analysis started"),
                          coloured(Qt::red, "Could not open file " + place->path("missing.pdb")),
                          coloured(Qt::green, "Analysis finished")}));
}

void cMessagesTest::selectionIsLeftAlone() {
    cStatusMessage black(Qt::black, "black words");
    cStatusMessage red(Qt::red, "red words");
    window->receiveKEVStatusMessage(black);
    kevLog().selectAll();
    window->receiveKEVStatusMessage(red);
    QCOMPARE(kevLog().textCursor().selectedText(), black.text);
    QTextCursor backwards = kevLog().textCursor();
    backwards.movePosition(QTextCursor::End);
    backwards.movePosition(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
    kevLog().setTextCursor(backwards);
    window->receiveKEVStatusMessage(black);
    QCOMPARE(kevLog().textCursor().selectedText(), red.text);
    QCOMPARE(colouredLines(kevLog()),
             QStringList({coloured(Qt::black, black.text), coloured(Qt::red, red.text),
                          coloured(Qt::black, black.text)}));
}

void cMessagesTest::readerWhoScrolledUpIsLeftThere() {
    window->show();
    for (int i = 0; i < 200; ++i) {
        cStatusMessage message(Qt::black, QString::number(i));
        window->receiveKEVStatusMessage(message);
    }
    QScrollBar& bar = *kevLog().verticalScrollBar();
    QVERIFY(bar.maximum() > 100);
    QCOMPARE(bar.value(), bar.maximum());
    bar.setValue(10);
    cStatusMessage message(Qt::red, "one more");
    window->receiveKEVStatusMessage(message);
    QCOMPARE(bar.value(), 10);
}

void cMessagesTest::contrastFollowsTheDefinition() {
    QCOMPARE(contrastRatio(Qt::black, Qt::white), 21.0);
    QCOMPARE(contrastRatio(Qt::white, Qt::black), 21.0);
    QCOMPARE(contrastRatio(Qt::red, Qt::red), 1.0);
    // Published examples: pure red on white is 4.00, and #777777 on white is 4.48.
    QVERIFY(std::abs(contrastRatio(Qt::red, Qt::white) - 4.00) < 0.005);
    QVERIFY(std::abs(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white) - 4.48) < 0.005);
}

void cMessagesTest::messageColoursAreReadable_data() {
    QTest::addColumn<QColor>("base");
    QTest::newRow("light") << QColor(Qt::white);
    QTest::newRow("dark") << QColor(0x1e, 0x1e, 0x1e);
    QTest::newRow("black") << QColor(Qt::black);
    QTest::newRow("grey") << QColor(0x80, 0x80, 0x80);
}

void cMessagesTest::messageColoursAreReadable() {
    QFETCH(QColor, base);
    kevLog().setPalette(paletteWithBase(base));
    const Qt::GlobalColor colours[] = {Qt::black, Qt::yellow, Qt::red, Qt::blue, Qt::green};
    for (const Qt::GlobalColor colour : colours) {
        cStatusMessage message(colour, "text");
        window->receiveKEVStatusMessage(message);
    }
    const std::vector<sLogLine> lines = logLines(kevLog());
    QCOMPARE(lines.size(), std::size(colours));
    for (std::size_t i = 0; i < lines.size(); ++i) {
        QCOMPARE(lines[i].colour, QColor(colours[i]));
        QVERIFY(contrastRatio(lines[i].colour, lines[i].background) >= 4.5);
    }
}

void cMessagesTest::everyColourIsReadableOnEveryBase() {
    constexpr int step = 51;
    for (int grey = 0; grey <= 255; grey += step) {
        const QColor base(grey, grey, grey);
        for (int red = 0; red <= 255; red += step) {
            for (int green = 0; green <= 255; green += step) {
                for (int blue = 0; blue <= 255; blue += step) {
                    const QColor text(red, green, blue);
                    QVERIFY(contrastRatio(text, readableBackground(text, base)) >= 4.5);
                }
            }
        }
    }
}

void cMessagesTest::oldestParagraphsGo() {
    std::vector<cStatusMessage> messages;
    for (int i = 0; i < keptParagraphs + 10; ++i) {
        messages.emplace_back(Qt::black, QString::number(i));
    }
    appendMessages(kevLog(), messages);
    QCOMPARE(kevLog().document()->blockCount(), keptParagraphs * 4 / 5);
    QCOMPARE(kevLog().document()->firstBlock().text(), QString::number(keptParagraphs / 5 + 10));
    QCOMPARE(kevLog().document()->lastBlock().text(), QString::number(keptParagraphs + 9));
}

void cMessagesTest::floodIsShownWhole() {
    QStringList expected;
    constexpr int count = 1000;
    for (int i = 0; i < count; ++i) {
        cStatusMessage message(Qt::red, QString::number(i));
        window->receiveKEVStatusMessage(message);
        expected.append(message.text);
    }
    QTRY_COMPARE_WITH_TIMEOUT(kevLog().document()->blockCount(), count, patience);
    QCOMPARE(kevLog().toPlainText(), expected.join('\n'));
}

void cMessagesTest::messagesOfManyMegabytesAreCutShort() {
    constexpr int size = 10'000'000;
    const tProcessorTime begin = processorTime();
    for (int i = 0; i < 200; ++i) {
        appendMessage(kevLog(), Qt::yellow, QString::number(i) + QString(size / 20, 'x') + " y");
    }
    appendMessage(kevLog(), Qt::yellow, "last" + QString(size - 4, 'x'));
    QVERIFY(processorTime() - begin < std::chrono::seconds(60) * KELMO_SLOWNESS);
    const QString shown = kevLog().toPlainText();
    QVERIFY(
        shown.endsWith(QStringLiteral("x ... (%1 more characters)").arg(size - shownCharacters)));
    QVERIFY(shown.size() > keptCharacters / 4);
    QVERIFY(shown.size() <= keptCharacters + shownCharacters * 2);
}

void cMessagesTest::hundredThousandMessagesAreShownInTime() {
    constexpr int batch = 10'000 / KELMO_SLOWNESS;
    constexpr int batches = 10;
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    const double before = residentMegabytes();
    std::vector<tProcessorTime> times;
    tProcessorTime longestPause{};
    for (int i = 0; i < batches; ++i) {
        const tProcessorTime begin = processorTime();
        tProcessorTime lastEvents = begin;
        for (int k = 0; k < batch; ++k) {
            cStatusMessage message(k % 2 == 0 ? Qt::black : Qt::red,
                                   "Analysing structure of peptide from /data/structures/" +
                                       QString::number(i * batch + k) + ".pdb...");
            window->receiveKEVStatusMessage(message);
            if (k % 50 == 0) {
                // Nothing waits for a refresh: a run of small files sends about as fast.
                window->updateKEVDisplay();
                QApplication::processEvents();
                const tProcessorTime now = processorTime();
                longestPause = std::max(longestPause, now - lastEvents);
                lastEvents = now;
            }
        }
        times.push_back(processorTime() - begin);
    }
    const double grown = residentMegabytes() - before;
    const auto inMilliseconds = [](tProcessorTime time) {
        return static_cast<long long>(time / std::chrono::milliseconds(1));
    };
    qInfo("processor time: first %lld ms, last %lld ms per batch, longest pause %lld ms; %.0f MB",
          inMilliseconds(times.front()), inMilliseconds(times.back()), inMilliseconds(longestPause),
          grown);
    QVERIFY(times.back() < std::chrono::seconds(10) * KELMO_SLOWNESS);
    QVERIFY(longestPause < std::chrono::seconds(1) * KELMO_SLOWNESS);
    QVERIFY(grown < 100.0 * KELMO_SLOWNESS);
    QVERIFY(kevLog().document()->blockCount() <= keptParagraphs);
}

} // namespace kelmo

QTEST_MAIN(kelmo::cMessagesTest)
#include "messages_test.moc"
