#include "analysis/checks.h"

#include "analysis/attributes.h"
#include "analysis/criteria.h"
#include "base/regular_file.h"

#include <algorithm>

namespace kelmo {

namespace {

bool isAnyOn(const cSettings& settings, eSettingGroup group) {
    return std::ranges::any_of(settingsOf(settings.module()), [&](const sSetting& setting) {
        return setting.group == group && setting.kind == eSettingKind::flag &&
               settings.flag(setting.key);
    });
}

/// What each module is asked besides.
std::optional<sProblem> findKevProblem(const cSettings& settings, std::size_t inputFiles) {
    if (inputFiles == 0) {
        // Without the exclamation mark that the other module's message has.
        return sProblem{{}, "No files loaded for analysis"};
    }
    if (std::ranges::none_of(attributes(), [&](const sAttribute& attribute) {
            return attribute.isCalculated(settings);
        })) {
        return sProblem{{}, "No attributes selected for analysis!"};
    }
    if (!settings.flag("analyze_bound") && !settings.flag("analyze_unbound") &&
        !settings.flag("write_difference")) {
        return sProblem{{}, "Please choose an analysis type!"};
    }
    return std::nullopt;
}

std::optional<sProblem> findVorProblem(std::size_t inputFiles) {
    if (inputFiles == 0) {
        return sProblem{{}, "No files loaded for analysis!"};
    }
    return std::nullopt;
}

/// The two modules word it differently.
std::string invalidDirectoryText(eModule module) {
    return module == eModule::kev
               ? "The output directory path is invalid! Please specify a valid directory\n"
               : "The output directory path is invalid! Please specify a valid directory!";
}

std::optional<sProblem> findPathProblem(const cSettings& settings) {
    const std::string& directory = settings.text("output_dir");
    if (directory.empty()) {
        return sProblem{"output_dir", "Please choose an output directory!"};
    }
    if (!isDirectory(directory)) {
        return sProblem{"output_dir", invalidDirectoryText(settings.module())};
    }
    if (settings.text("radii_filename").empty()) {
        return sProblem{"radii_filename", "Please specify a radii file!"};
    }
    return std::nullopt;
}

} // namespace

std::optional<sProblem> findProblem(const cSettings& settings, std::size_t inputFiles,
                                    bool areReportsNeeded) {
    const bool isKev = settings.module() == eModule::kev;
    if (auto problem = isKev ? findKevProblem(settings, inputFiles) : findVorProblem(inputFiles)) {
        return problem;
    }
    if (!areReportsNeeded) {
        return findPathProblem(settings);
    }
    if (!isAnyOn(settings, eSettingGroup::formats)) {
        return sProblem{{}, "Please choose an output file format (XML or Table)!"};
    }
    if (!isKev && !isAnyOn(settings, eSettingGroup::reports)) {
        return sProblem{{},
                        "Please choose an output file type (Contacts, Binding Residues or "
                        "Binding State)!"};
    }
    return findPathProblem(settings);
}

std::optional<sProblem> findCriterionProblem(const cSettings& settings) {
    const sCriterion* const criterion = findCriterion(settings.criterion());
    if (criterion == nullptr) {
        return std::nullopt;
    }
    for (const sCriterionParameter& parameter : criterion->parameters) {
        const sSetting& setting = *findSetting(settings.module(), parameter.key);
        if (setting.kind == eSettingKind::number &&
            settings.number(parameter.key) > parameter.maximum) {
            const std::string number = std::to_string(static_cast<int>(criterion->number));
            return sProblem{parameter.key,
                            "by contact_criterion " + number + ", " +
                                rangeText(parameter.key, setting.minimum, parameter.maximum,
                                          settings.valueText(parameter.key))};
        }
    }
    return std::nullopt;
}

} // namespace kelmo
