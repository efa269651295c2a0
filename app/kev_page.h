// The tab of the structure module.
#pragma once

#include "app/module_page.h"

class Ui_kelmoMainWindow;

namespace kelmo {

class cKevPage : public cModulePage {
  public:
    cKevPage(QWidget* window, cAnalysisRun* worker, Ui_kelmoMainWindow& form);

    /// The user has clicked the box of the surface area.
    void areaClicked();
    /// Relative area and depth are made of surface areas.
    void followAttributes();
    void showWriteAreaHint();

  protected:
    std::vector<formField> settingsFields() override;
    void tellProblem(const sTableProblem& problem) override;

  private:
    Ui_kelmoMainWindow& ui;
    bool isAreaChosenByUser = false;
};

} // namespace kelmo
