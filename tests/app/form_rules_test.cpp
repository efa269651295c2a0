// The boxes that depend on others, and the threshold that two criteria share.

#include "tests/app/app_test_tools.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLabel>

namespace kelmo {

class cFormRulesTest : public QObject {
    Q_OBJECT

  private slots:
    void init();
    void cleanup();
    void relativeAreaSwitchesTheAreaOn();
    void depthSwitchesTheAreaOn();
    void areaChosenByUserStays();
    void areaNotChosenByUserGoesWithTheLast();
    void neededAreaCannotBeSwitchedOff();
    void choiceMadeWhileNeededIsRemembered();
    void writingIsOfferedWhileAreaIsNeeded();
    void clickOnAreaSwitchesWritingOn();
    void clickOnAreaLeavesWritingAloneWhileItIsNotOffered();
    void hintTellsOfUnwrittenAreas();
    void criteriaRememberTheirThresholds();
    void prismNarrowsTheRange();
    void otherCriteriaLeaveThresholdsAlone();
    void reprogrammingIsNotRemembered();

  private:
    void select(const char* radioButton) { click(*window, radioButton); }
    double threshold() const { return numberOf(*window, "doubleSpinBoxMaxDistPRISMThreshold"); }
    void setThreshold(double value) {
        setNumber(*window, "doubleSpinBoxMaxDistPRISMThreshold", value);
    }
    bool isEnabled(const char* name) const { return widget<QWidget>(*window, name)->isEnabled(); }

    std::unique_ptr<cWorkingDirectory> place;
    std::unique_ptr<kelmo> window;
};

void cFormRulesTest::init() {
    place = std::make_unique<cWorkingDirectory>();
    window = std::make_unique<kelmo>();
}

void cFormRulesTest::cleanup() {
    window.reset();
    place.reset();
}

void cFormRulesTest::relativeAreaSwitchesTheAreaOn() {
    setChecked(*window, "checkBoxCalcRASA");
    QVERIFY(isChecked(*window, "checkBoxCalcASA"));
    setChecked(*window, "checkBoxCalcRASA", false);
    QVERIFY(!isChecked(*window, "checkBoxCalcASA"));
}

void cFormRulesTest::depthSwitchesTheAreaOn() {
    setChecked(*window, "checkBoxCalcDPX");
    QVERIFY(isChecked(*window, "checkBoxCalcASA"));
    setChecked(*window, "checkBoxCalcDPX", false);
    QVERIFY(!isChecked(*window, "checkBoxCalcASA"));
}

void cFormRulesTest::areaChosenByUserStays() {
    click(*window, "checkBoxCalcASA");
    setChecked(*window, "checkBoxCalcRASA");
    setChecked(*window, "checkBoxCalcDPX");
    setChecked(*window, "checkBoxCalcRASA", false);
    setChecked(*window, "checkBoxCalcDPX", false);
    QVERIFY(isChecked(*window, "checkBoxCalcASA"));
}

void cFormRulesTest::areaNotChosenByUserGoesWithTheLast() {
    setChecked(*window, "checkBoxCalcRASA");
    setChecked(*window, "checkBoxCalcDPX");
    setChecked(*window, "checkBoxCalcRASA", false);
    QVERIFY(isChecked(*window, "checkBoxCalcASA"));
    setChecked(*window, "checkBoxCalcDPX", false);
    QVERIFY(!isChecked(*window, "checkBoxCalcASA"));
}

void cFormRulesTest::neededAreaCannotBeSwitchedOff() {
    setChecked(*window, "checkBoxCalcDPX");
    click(*window, "checkBoxCalcASA");
    QVERIFY(isChecked(*window, "checkBoxCalcASA"));
}

void cFormRulesTest::choiceMadeWhileNeededIsRemembered() {
    click(*window, "checkBoxCalcASA");
    setChecked(*window, "checkBoxCalcDPX");
    // The click takes the user's choice back, though the box stays checked.
    click(*window, "checkBoxCalcASA");
    QVERIFY(isChecked(*window, "checkBoxCalcASA"));
    setChecked(*window, "checkBoxCalcDPX", false);
    QVERIFY(!isChecked(*window, "checkBoxCalcASA"));
}

void cFormRulesTest::writingIsOfferedWhileAreaIsNeeded() {
    QVERIFY(!isEnabled("checkBoxWriteASA"));
    click(*window, "checkBoxCalcASA");
    QVERIFY(!isEnabled("checkBoxWriteASA"));
    setChecked(*window, "checkBoxCalcRASA");
    QVERIFY(isEnabled("checkBoxWriteASA"));
    setChecked(*window, "checkBoxCalcDPX");
    setChecked(*window, "checkBoxCalcRASA", false);
    QVERIFY(isEnabled("checkBoxWriteASA"));
    setChecked(*window, "checkBoxCalcDPX", false);
    QVERIFY(!isEnabled("checkBoxWriteASA"));
}

void cFormRulesTest::clickOnAreaSwitchesWritingOn() {
    setChecked(*window, "checkBoxCalcRASA");
    setChecked(*window, "checkBoxWriteASA", false);
    click(*window, "checkBoxCalcASA");
    QVERIFY(isChecked(*window, "checkBoxWriteASA"));
}

void cFormRulesTest::clickOnAreaLeavesWritingAloneWhileItIsNotOffered() {
    for (const bool written : {true, false}) {
        setChecked(*window, "checkBoxWriteASA", written);
        click(*window, "checkBoxCalcASA");
        QCOMPARE(isChecked(*window, "checkBoxWriteASA"), written);
    }
}

void cFormRulesTest::hintTellsOfUnwrittenAreas() {
    const auto* hint = widget<QLabel>(*window, "labelKEVWriteASAHint");
    QVERIFY(hint->text().isEmpty());
    setChecked(*window, "checkBoxCalcRASA");
    QVERIFY(hint->text().isEmpty());
    setChecked(*window, "checkBoxWriteASA", false);
    QVERIFY(!hint->text().isEmpty());
    setChecked(*window, "checkBoxCalcRASA", false);
    QVERIFY(hint->text().isEmpty());
}

void cFormRulesTest::criteriaRememberTheirThresholds() {
    setThreshold(6.25);
    select("radioButtonPRISM");
    QCOMPARE(threshold(), 0.5);
    setThreshold(1.2);
    select("radioButtonMaxDistance");
    QCOMPARE(threshold(), 6.25);
    select("radioButtonPRISM");
    QCOMPARE(threshold(), 1.2);
}

void cFormRulesTest::prismNarrowsTheRange() {
    const auto* box = widget<QDoubleSpinBox>(*window, "doubleSpinBoxMaxDistPRISMThreshold");
    select("radioButtonPRISM");
    QCOMPARE(box->minimum(), 0.0);
    QCOMPARE(box->maximum(), 5.0);
    QCOMPARE(box->singleStep(), 0.05);
    select("radioButtonMaxDistance");
    QCOMPARE(box->minimum(), 0.0);
    QCOMPARE(box->maximum(), 10.0);
    QCOMPARE(box->singleStep(), 0.05);
}

void cFormRulesTest::otherCriteriaLeaveThresholdsAlone() {
    for (const char* other : {"radioButtonKRBHovik", "radioButtonDovreth"}) {
        select(other);
        setThreshold(3.3);
        select("radioButtonMaxDistance");
        QCOMPARE(threshold(), 4.5);
        select("radioButtonPRISM");
        QCOMPARE(threshold(), 0.5);
    }
}

void cFormRulesTest::reprogrammingIsNotRemembered() {
    // The narrower range of PRISM cuts the value shown; that is not the user's doing.
    setThreshold(9.0);
    select("radioButtonPRISM");
    select("radioButtonMaxDistance");
    QCOMPARE(threshold(), 9.0);
    select("radioButtonKRBHovik");
    select("radioButtonPRISM");
    QCOMPARE(threshold(), 0.5);
}

} // namespace kelmo

QTEST_MAIN(kelmo::cFormRulesTest)
#include "form_rules_test.moc"
