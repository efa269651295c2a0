// The coloured lines of the log panes.

#include "app/status_message.h"

#include <QTest>

namespace kelmo {

class cStatusMessageTest : public QObject {
    Q_OBJECT

  private slots:
    void defaultIsAnEmptyLineInBlack();
    void holdsColourAndText();
    void copiesAreIndependent();
    void severitiesHaveTheirColours();
};

void cStatusMessageTest::defaultIsAnEmptyLineInBlack() {
    const cStatusMessage message;
    QCOMPARE(message.colour, QColor(Qt::black));
    QVERIFY(message.text.isEmpty());
}

void cStatusMessageTest::holdsColourAndText() {
    const cStatusMessage message(Qt::red, QStringLiteral("Could not open file x"));
    QCOMPARE(message.colour, QColor(Qt::red));
    QCOMPARE(message.text, QStringLiteral("Could not open file x"));
}

void cStatusMessageTest::copiesAreIndependent() {
    const cStatusMessage first(Qt::yellow, QStringLiteral("first"));
    cStatusMessage copy(first);
    cStatusMessage assigned;
    assigned = first;
    copy.text += QStringLiteral(" changed");
    copy.colour = Qt::red;
    assigned.text = QStringLiteral("other");
    QCOMPARE(first.text, QStringLiteral("first"));
    QCOMPARE(first.colour, QColor(Qt::yellow));
    QCOMPARE(assigned.colour, QColor(Qt::yellow));
}

void cStatusMessageTest::severitiesHaveTheirColours() {
    QCOMPARE(cStatusMessage(sMessage(eSeverity::progress, "a")).colour, QColor(Qt::black));
    QCOMPARE(cStatusMessage(sMessage(eSeverity::warning, "a")).colour, QColor(Qt::yellow));
    QCOMPARE(cStatusMessage(sMessage(eSeverity::error, "gr\xc3\xb6\xc3\x9f")).colour,
             QColor(Qt::red));
    QCOMPARE(cStatusMessage(sMessage(eSeverity::error, "gr\xc3\xb6\xc3\x9f")).text,
             QStringLiteral("gr\u00f6\u00df"));
}

} // namespace kelmo

QTEST_APPLESS_MAIN(kelmo::cStatusMessageTest)
#include "status_message_test.moc"
