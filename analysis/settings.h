// The settings of an analysis: one row each, and the values that a user has chosen for them.
#pragma once

#include "base/exported.h"
#include "model/asa_form.h"
#include "model/contact.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace KELMO_API kelmo {

/// The structure analyser (KEV) and the interaction analyser (VOR).
enum class eModule { kev, vor };

/// "kev" or "vor".
std::string_view nameOf(eModule module);

/// What kind of value a setting takes.
enum class eSettingKind {
    flag,      ///< on or off
    number,    ///< within a range
    choice,    ///< one of some words
    word,      ///< a text without blanks
    criterion, ///< the number of a contact criterion
    table,     ///< path of a parameter table
    directory  ///< path of a directory
};

/// Where a setting stands among those of its module, in configuration files and forms.
enum class eSettingGroup { calculation, tables, reports, formats, output, input };

/// One setting: all that window, command line, configuration files, checks and the headers of
/// reports know of it.
struct sSetting {
    std::string key = {};                             ///< in configuration files and behind --set
    eSettingKind kind = eSettingKind::flag;           ///< which of the members that follow count
    eSettingGroup group = eSettingGroup::calculation; ///< among the others of its module
    /// In the form that configuration files have; of a table's path, the name of a shipped table.
    /// A new form starts with flags off and without paths all the same.
    std::string byDefault = {};
    double minimum = 0.0;   ///< of a number, inclusive like the maximum
    double maximum = 0.0;   ///< of a number
    std::string unit = {};  ///< of a number, for people: "Å"
    std::string title = {}; ///< a few words for the label of a field
    std::string help = {};  ///< what it means, in a sentence or two
    double step = 0.05;     ///< of a spin box
    int decimals = 2;       ///< of a spin box
    /// The smallest number that the form offers, where it is not the minimum: what is smaller costs
    /// time and no more.
    std::optional<double> smallestOffered = std::nullopt;
    std::vector<std::string> choices = {}; ///< of a choice, in the order of forms
    /// Keys of flags that need this one and switch it on.
    std::vector<std::string> neededBy = {};
    /// Key of a flag without which this setting has no effect; empty for none.
    std::string dependsOn = {};
    std::string suffix = {}; ///< of a table's file: ".radii"
    /// Whether configuration files leave it out while it has its default.
    bool isWrittenOnlyIfChanged = false;
    /// Whether the headers of all reports name it, unless it has its default.
    bool isStatedIfChanged = false;

    /// The smallest number that the form offers.
    double smallestInForm() const { return smallestOffered.value_or(minimum); }
    /// The default of a number.
    double defaultNumber() const;
};

/// A key and a value that stand for the values of several settings.
struct sShortForm {
    std::string key = {};                                          ///< in the place of a setting's
    std::string value = {};                                        ///< one of those it may have
    std::vector<std::pair<std::string, std::string>> meaning = {}; ///< keys with their values
};

/// The row of the thickness of slices, which both modules have.
sSetting zSliceSetting();
/// The row of the radius of the probe, which both modules have.
sSetting probeRadiusSetting();
/// The row of the form of the surface, which both modules have.
sSetting asaFormSetting();

/// All settings of a module, group by group, in the order of configuration files.
const std::vector<sSetting>& settingsOf(eModule module);
/// Null when the module has no such setting.
const sSetting* findSetting(eModule module, std::string_view key);
/// Adds a setting behind those of its group, before the first analysis of the process; a key that
/// the module has already is left as it is. Not for several threads at once.
void addSetting(eModule module, sSetting setting);

/// The values of all settings of a module.
class cSettings {
  public:
    /// Every setting with its default.
    explicit cSettings(eModule ofModule);

    /// Whose settings they are.
    eModule module() const { return whichModule; }

    /// Takes a value in the form that configuration files have. `origin` says where it comes from,
    /// for messages. A short form sets all that it stands for. Returns an empty text, or what is
    /// wrong: an unknown key, a value that is none or out of its range.
    std::string set(std::string_view key, std::string_view value, std::string origin = {});
    /// Sets a flag without any check or origin, for a value that a form or a program has made sure
    /// of. The setting must be of this kind; a key that the module has not throws std::logic_error.
    void setFlag(std::string_view key, bool value);
    /// Sets a number without any check or origin, its range included; throws as setFlag().
    void setNumber(std::string_view key, double value);
    /// Sets the text of a table, a directory or a choice, bytes of any encoding, without any check
    /// or origin; throws as setFlag().
    void setText(std::string_view key, std::string value);

    /// Whether a flag is on. A key that the module has not throws std::logic_error, one of another
    /// kind std::bad_variant_access.
    bool flag(std::string_view key) const;
    /// A number, in the setting's unit; throws as flag().
    double number(std::string_view key) const;
    /// The text of a table, a directory or a choice, bytes of any encoding; throws as flag().
    const std::string& text(std::string_view key) const;
    /// Of the interaction module; `none` when none is chosen.
    eInteractionCriterion criterion() const;
    /// The form in which areas are computed.
    eAsaForm asaForm() const;

    /// Whether the value was set rather than left at its default.
    bool isSet(std::string_view key) const;
    /// Where a value comes from; empty when it was not said.
    const std::string& origin(std::string_view key) const;
    /// The value as configuration files have it; numbers with six significant digits.
    std::string valueText(std::string_view key) const;
    /// Keys of the settings that the headers of reports name.
    std::vector<std::string> statedKeys() const;
    /// Whether the value is the default, set or not.
    bool isDefault(std::string_view key) const;

    /// With what follows from other settings: flags that others need are on, those that depend on a
    /// flag that is off are off, and a criterion that makes no contact records asks for no report
    /// of them unless the user did so in a place that has a name.
    cSettings resolved() const;

  private:
    struct sValue {
        std::variant<bool, double, std::string> value;
        bool isSet = false;
        std::string origin;
    };

    std::string setAll(std::string_view key, std::string_view value,
                       const std::vector<std::string>& words, const std::string& origin);
    const sValue& valueOf(std::string_view key) const;
    sValue& change(std::string_view key);

    eModule whichModule;
    std::map<std::string, sValue, std::less<>> values;
};

/// What the user is told of a number that is not in its range.
std::string rangeText(std::string_view key, double minimum, double maximum, std::string_view value);

} // namespace kelmo
