// The dialog in which a user says what of each file is analysed.
#pragma once

#include "app/setting_fields.h"

#include <QDialog>
#include <QString>

#include <string>
#include <vector>

namespace kelmo {

/// Shows the settings of the input, each in a field of its own; what is chosen counts at once.
class cPreparationDialog : public QDialog {
    Q_OBJECT
  public:
    /// Makes the fields and keeps a reference to what holds them.
    cPreparationDialog(eModule ofModule, cSettingFields& settingFields, QWidget* parent);

    /// What is chosen, in a few words.
    QString summary() const;
    /// Every choice that is not the default, one a line.
    QString details() const;

  private:
    /// Takes the values of a short form of the settings, such as prepare=standard.
    void take(const std::string& value);
    cSettings chosen() const;

    const eModule module;
    cSettingFields& fields;
};

} // namespace kelmo
