// The widgets of a form that show the settings of a module.
#pragma once

#include "analysis/settings.h"
#include "app/form_fields.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

class QFormLayout;
class QWidget;

namespace kelmo {

/// Which widget shows which setting: a check box or radio button a flag, a spin box a number, a
/// line edit a path, a combo box a choice. Widgets are not owned. Ranges and tool tips come from
/// the rows of the settings.
class cSettingFields {
  public:
    explicit cSettingFields(eModule ofModule) : module(ofModule) {}

    /// Lets the widget show the setting.
    void bind(const std::string& key, QWidget* widget);
    /// Makes a field, in the layout, for every setting of a group, or of all, that has none;
    /// returns their number.
    int addMissing(QFormLayout& layout, std::optional<eSettingGroup> group = std::nullopt);

    QWidget* widget(const std::string& key) const;
    /// The widget of a setting for a settings file, which keeps flags, numbers and texts.
    formField field(const std::string& key) const;
    /// Keys of the settings that were given a field by addMissing().
    const std::vector<std::string>& addedKeys() const { return added; }

    /// Takes what the widgets show into the settings.
    void read(cSettings& settings) const;
    /// Shows the value of one setting.
    void show(const cSettings& settings, const std::string& key) const;

  private:
    eModule module;
    std::map<std::string, QWidget*> widgets;
    std::vector<std::string> added;
};

} // namespace kelmo
