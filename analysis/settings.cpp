#include "analysis/settings.h"

#include "analysis/attributes.h"
#include "analysis/criteria.h"
#include "analysis/input_settings.h"
#include "base/number_text.h"
#include "base/shown_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace kelmo {

namespace {

constexpr std::string_view criterionKey = "contact_criterion";

// What both modules have.

sSetting radiiSetting() {
    return {.key = "radii_filename",
            .kind = eSettingKind::table,
            .group = eSettingGroup::tables,
            .byDefault = "protor.radii",
            .title = "Radii",
            .help = "Table of van der Waals radii (.radii), in Å and without the probe. Always "
                    "needed. For a usual X-ray entry without hydrogens take protor.radii.",
            .suffix = ".radii"};
}

sSetting outputSetting() {
    return {.key = "output_dir",
            .kind = eSettingKind::directory,
            .group = eSettingGroup::output,
            .byDefault = ".",
            .title = "Output directory",
            .help = "Directory that receives the reports, named after the input file and the time "
                    "of the start. It must exist."};
}

sSetting flagSetting(const char* key, eSettingGroup group, const char* title, const char* help) {
    return {.key = key, .group = group, .byDefault = "1", .title = title, .help = help};
}

std::vector<sSetting> kevSettings() {
    std::vector<sSetting> settings{
        flagSetting("analyze_bound", eSettingGroup::calculation, "Bound",
                    "Analyse the complex as a whole, with all its chains: reports _bound."),
        flagSetting("analyze_unbound", eSettingGroup::calculation, "Unbound",
                    "Analyse every chain as if the others were not there: reports _unbound.")};
    for (const sAttribute& attribute : attributes()) {
        settings.insert(settings.end(), attribute.settings.begin(), attribute.settings.end());
    }
    settings.push_back(radiiSetting());
    settings.push_back(
        {.key = "write_difference",
         .group = eSettingGroup::reports,
         .byDefault = "0",
         .title = "Difference of the two states",
         .help = "Report what each residue, chain and the structure have more when the chains are "
                 "taken alone than in the complex, such as buried area: reports _difference.",
         .isWrittenOnlyIfChanged = true});
    settings.push_back(outputSetting());
    return settings;
}

std::vector<sSetting> vorSettings() {
    return {
        {.key = std::string(criterionKey),
         .kind = eSettingKind::criterion,
         .byDefault = "1",
         .title = "What counts as a contact",
         .help = "The criterion by which two residues touch."},
        {.key = "threshold",
         .kind = eSettingKind::number,
         .byDefault = "4.5",
         .minimum = 0.0,
         .maximum = 10.0,
         .unit = "Å",
         .title = "Threshold",
         .help = "Largest distance of two atoms (default 4.5), or of their van der Waals spheres "
                 "with PRISM (default 0.5), in Å. Each criterion remembers its own value."},
        {.key = "delta_asa",
         .kind = eSettingKind::number,
         .byDefault = "1",
         .minimum = 0.05,
         .maximum = 100.0,
         .unit = "Å²",
         .title = "Area change",
         .help = "A residue binds when its area changes by more than this, in Å². Default 1.0."},
        zSliceSetting(),
        probeRadiusSetting(),
        asaFormSetting(),
        {.key = "contact_rules",
         .kind = eSettingKind::table,
         .group = eSettingGroup::tables,
         .byDefault = "aa_contacts.txt",
         .title = "Contact rules",
         .help = "Table of the atom pairs that make a contact by VORDA, and of its type. By "
                 "default the one in the current directory, else the one that comes with the "
                 "program.",
         .isWrittenOnlyIfChanged = true},
        radiiSetting(),
        flagSetting("write_contacts", eSettingGroup::reports, "Contacts",
                    "Report every pair of residues in contact: reports _contacts. Not with "
                    "Dovreth, which finds no pairs."),
        flagSetting("write_binding_residues", eSettingGroup::reports, "Binding residues",
                    "Report the residues that take part in a contact: reports _binding_residues."),
        flagSetting("write_binding_state", eSettingGroup::reports, "Binding state of every residue",
                    "Report all residues, with whether they bind: reports _binding_status."),
        {.key = "write_interfaces",
         .group = eSettingGroup::reports,
         .byDefault = "0",
         .title = "Interfaces",
         .help = "Report every pair of chains that touch, with the area that they bury, its "
                 "residues, contacts and bonds: reports _interfaces. Goes by slice thickness, "
                 "probe radius, area change and form of the surface.",
         .isWrittenOnlyIfChanged = true},
        outputSetting()};
}

std::vector<sSetting> withInputSettings(std::vector<sSetting> settings) {
    const std::vector<sSetting> further = inputSettings();
    settings.insert(settings.end(), further.begin(), further.end());
    return settings;
}

std::vector<sSetting>& table(eModule module) {
    static std::array<std::vector<sSetting>, 2> tables{withInputSettings(kevSettings()),
                                                       withInputSettings(vorSettings())};
    return tables[module == eModule::kev ? 0 : 1];
}

/// The whole text as a number with a decimal point, whatever the locale.
std::optional<double> numberFrom(std::string_view text) {
    double number = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

bool isInRange(const sSetting& setting, std::string_view value) {
    const std::optional<double> number = numberFrom(value);
    // Not-a-number fails the comparisons; minus zero is refused like every other negative number.
    return number && !std::signbit(*number) && *number >= setting.minimum &&
           *number <= setting.maximum;
}

/// "a, b or c".
std::string alternatives(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        text += i == 0 ? "" : i + 1 == words.size() ? " or " : ", ";
        text += words[i];
    }
    return text;
}

const sCriterion* criterionOf(std::string_view value) {
    const auto found = std::ranges::find_if(criteria(), [&](const sCriterion& criterion) {
        return std::to_string(static_cast<int>(criterion.number)) == value;
    });
    return found == criteria().end() ? nullptr : &*found;
}

std::string criterionFault(std::string_view value) {
    std::vector<std::string> words;
    for (const sCriterion& criterion : criteria()) {
        words.push_back(std::to_string(static_cast<int>(criterion.number)) + " (" +
                        criterion.title + ')');
    }
    return std::string(criterionKey) + " must be " + alternatives(words) + ", not \"" +
           shownText(value) + '"';
}

/// Empty when the value is good.
std::string faultOf(const sSetting& setting, std::string_view value) {
    switch (setting.kind) {
    case eSettingKind::flag:
        if (value != "0" && value != "1") {
            return setting.key + " must be 1 or 0, not \"" + shownText(value) + '"';
        }
        break;
    case eSettingKind::number:
        if (!isInRange(setting, value)) {
            return rangeText(setting.key, setting.minimum, setting.maximum, value);
        }
        break;
    case eSettingKind::criterion:
        if (criterionOf(value) == nullptr) {
            return criterionFault(value);
        }
        break;
    case eSettingKind::choice:
        if (std::ranges::find(setting.choices, value) == setting.choices.end()) {
            return setting.key + " must be " + alternatives(setting.choices) + ", not \"" +
                   shownText(value) + '"';
        }
        break;
    case eSettingKind::word:
        if (value.empty() || value.find_first_of(" \t\r\n") != std::string_view::npos) {
            return setting.key + " must be a word without blanks, not \"" + shownText(value) + '"';
        }
        break;
    case eSettingKind::table:
    case eSettingKind::directory:
        break;
    }
    return {};
}

/// The values that the key may have if it is one of a short form, none otherwise.
std::vector<std::string> shortFormValues(std::string_view key) {
    std::vector<std::string> values;
    for (const sShortForm& form : inputShortForms()) {
        if (form.key == key) {
            values.push_back(form.value);
        }
    }
    return values;
}

std::variant<bool, double, std::string> valueFrom(const sSetting& setting, std::string_view text) {
    switch (setting.kind) {
    case eSettingKind::flag:
        return text == "1";
    case eSettingKind::number:
    case eSettingKind::criterion:
        return numberFrom(text).value_or(0.0);
    case eSettingKind::choice:
    case eSettingKind::word:
    case eSettingKind::table:
    case eSettingKind::directory:
        break;
    }
    return std::string(text);
}

std::string numberText(double number) {
    constexpr int significantDigits = 6;
    return std::string(cNumberText(number, significantDigits).view());
}

} // namespace

sSetting zSliceSetting() {
    return {.key = "z_slice",
            .kind = eSettingKind::number,
            .byDefault = "0.25",
            .minimum = 0.01,
            .maximum = 1.0,
            .unit = "Å",
            .title = "Z-slice thickness",
            .help =
                "Distance of the parallel planes that cut each atom, in Å. Default 0.25. In the "
                "complete form of the surface thinner slices give more exact areas; in the "
                "classic one they only take longer.",
            .smallestOffered = 0.1};
}

sSetting probeRadiusSetting() {
    return {.key = "r_solvent",
            .kind = eSettingKind::number,
            .byDefault = "1.4",
            .minimum = 0.0,
            .maximum = 2.0,
            .unit = "Å",
            .title = "Probe radius",
            .help = "Radius of the sphere that is rolled over the atoms, in Å. Default 1.4, a "
                    "water molecule."};
}

sSetting asaFormSetting() {
    return {.key = "asa_form",
            .kind = eSettingKind::choice,
            .byDefault = "classic",
            .title = "Form of the surface",
            .help = "How areas are computed. classic: as ever, for comparing with earlier reports. "
                    "complete: all of every sphere, within 0.1 % of the true area, whatever the "
                    "orientation; it needs standard areas of its own.",
            .choices = {"classic", "complete"},
            .isWrittenOnlyIfChanged = true};
}

double sSetting::defaultNumber() const {
    return numberFrom(byDefault).value_or(0.0);
}

std::string_view nameOf(eModule module) {
    return module == eModule::kev ? "kev" : "vor";
}

const std::vector<sSetting>& settingsOf(eModule module) {
    return table(module);
}

const sSetting* findSetting(eModule module, std::string_view key) {
    const auto& settings = table(module);
    const auto found = std::ranges::find(settings, key, &sSetting::key);
    return found == settings.end() ? nullptr : &*found;
}

void addSetting(eModule module, sSetting setting) {
    if (findSetting(module, setting.key) != nullptr) {
        return;
    }
    auto& settings = table(module);
    const auto behind = std::ranges::find_if(
        settings, [&](const sSetting& other) { return other.group > setting.group; });
    settings.insert(behind, std::move(setting));
}

std::string rangeText(std::string_view key, double minimum, double maximum,
                      std::string_view value) {
    return shownText(key) + " must be a number from " + numberText(minimum) + " to " +
           numberText(maximum) + ", not \"" + shownText(value) + '"';
}

cSettings::cSettings(eModule ofModule) : whichModule(ofModule) {
    for (const sSetting& setting : settingsOf(ofModule)) {
        values[setting.key] = {valueFrom(setting, setting.byDefault), false, {}};
    }
}

std::string cSettings::set(std::string_view key, std::string_view value, std::string origin) {
    if (const auto words = shortFormValues(key); !words.empty()) {
        return setAll(key, value, words, origin);
    }
    const sSetting* const setting = findSetting(whichModule, key);
    if (setting == nullptr) {
        return '"' + shownText(key) + "\" is no key of a " + std::string(nameOf(whichModule)) +
               " configuration";
    }
    if (std::string fault = faultOf(*setting, value); !fault.empty()) {
        return fault;
    }
    sValue& place = change(key);
    place.value = valueFrom(*setting, value);
    place.origin = std::move(origin);
    return {};
}

std::string cSettings::setAll(std::string_view key, std::string_view value,
                              const std::vector<std::string>& words, const std::string& origin) {
    for (const sShortForm& form : inputShortForms()) {
        if (form.key == key && form.value == value) {
            for (const auto& [part, itsValue] : form.meaning) {
                set(part, itsValue, origin);
            }
            return {};
        }
    }
    return std::string(key) + " must be " + alternatives(words) + ", not \"" + shownText(value) +
           '"';
}

void cSettings::setFlag(std::string_view key, bool value) {
    change(key).value = value;
}

void cSettings::setNumber(std::string_view key, double value) {
    change(key).value = value;
}

void cSettings::setText(std::string_view key, std::string value) {
    change(key).value = std::move(value);
}

const cSettings::sValue& cSettings::valueOf(std::string_view key) const {
    const auto found = values.find(key);
    if (found == values.end()) {
        throw std::logic_error("no setting " + std::string(key));
    }
    return found->second;
}

cSettings::sValue& cSettings::change(std::string_view key) {
    valueOf(key);
    sValue& place = values.find(key)->second;
    place.isSet = true;
    place.origin.clear();
    return place;
}

bool cSettings::flag(std::string_view key) const {
    return std::get<bool>(valueOf(key).value);
}

double cSettings::number(std::string_view key) const {
    const sValue& place = valueOf(key);
    if (!place.isSet && whichModule == eModule::vor && key != criterionKey) {
        if (const sCriterion* const chosen = findCriterion(criterion()); chosen != nullptr) {
            const auto parameter =
                std::ranges::find(chosen->parameters, key, &sCriterionParameter::key);
            if (parameter != chosen->parameters.end()) {
                return parameter->byDefault;
            }
        }
    }
    return std::get<double>(place.value);
}

const std::string& cSettings::text(std::string_view key) const {
    return std::get<std::string>(valueOf(key).value);
}

eInteractionCriterion cSettings::criterion() const {
    return static_cast<eInteractionCriterion>(
        static_cast<int>(std::get<double>(valueOf(criterionKey).value)));
}

eAsaForm cSettings::asaForm() const {
    return text("asa_form") == "complete" ? eAsaForm::complete : eAsaForm::classic;
}

bool cSettings::isSet(std::string_view key) const {
    return valueOf(key).isSet;
}

const std::string& cSettings::origin(std::string_view key) const {
    return valueOf(key).origin;
}

std::string cSettings::valueText(std::string_view key) const {
    const auto& value = valueOf(key).value;
    if (const bool* const flag = std::get_if<bool>(&value); flag != nullptr) {
        return *flag ? "1" : "0";
    }
    return std::holds_alternative<double>(value) ? numberText(number(key)) : text(key);
}

std::vector<std::string> cSettings::statedKeys() const {
    std::vector<std::string> keys;
    for (const sSetting& setting : settingsOf(whichModule)) {
        if (setting.isStatedIfChanged && valueText(setting.key) != setting.byDefault) {
            keys.push_back(setting.key);
        }
    }
    return keys;
}

bool cSettings::isDefault(std::string_view key) const {
    return valueText(key) == findSetting(whichModule, key)->byDefault;
}

cSettings cSettings::resolved() const {
    cSettings result = *this;
    for (const sSetting& setting : settingsOf(whichModule)) {
        if (setting.kind != eSettingKind::flag) {
            continue;
        }
        bool& isOn = std::get<bool>(result.values.find(setting.key)->second.value);
        for (const std::string& key : setting.neededBy) {
            isOn = isOn || flag(key);
        }
        // What a setting depends on stands before it.
        isOn = isOn && (setting.dependsOn.empty() || result.flag(setting.dependsOn));
    }
    if (whichModule == eModule::vor && origin("write_contacts").empty()) {
        const sCriterion* const chosen = findCriterion(criterion());
        if (chosen != nullptr && !chosen->makesContacts) {
            std::get<bool>(result.values.find("write_contacts")->second.value) = false;
        }
    }
    return result;
}

} // namespace kelmo
