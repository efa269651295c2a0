// The tab of the interaction module.
#pragma once

#include "app/module_page.h"

#include <map>

class QAbstractButton;
class Ui_kelmoMainWindow;

namespace kelmo {

class cVorPage : public cModulePage {
  public:
    cVorPage(QWidget* window, cAnalysisRun* worker, Ui_kelmoMainWindow& form);

    /// The criterion was selected: the threshold that several share takes its range and the value
    /// that is remembered for it.
    void programThreshold(eInteractionCriterion criterion);
    void rememberThreshold(double value);
    /// Tells whether the working directory has the contact rules that VORDA reads there.
    void showContactTable();
    void copyContactTable();

  protected:
    cSettings settings() const override;
    std::vector<formField> settingsFields() override;
    void tellProblem(const sTableProblem& problem) override;

  private:
    void bindCriteria();
    eInteractionCriterion selectedCriterion() const;

    Ui_kelmoMainWindow& ui;
    std::map<eInteractionCriterion, QAbstractButton*> criterionButtons;
    double maxDistanceThreshold;          ///< Å
    double prismThreshold;                ///< Å
    bool isThresholdReprogrammed = false; ///< the page itself is changing the threshold's box
};

/// Tells in the display, in its current text colour, that a file cannot be opened.
void tellUnopened(QTextBrowser& display, const QString& path);

} // namespace kelmo
