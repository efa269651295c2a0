#include "analysis/input_settings.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace kelmo {

namespace {

constexpr std::string_view noAssembly = "none";

/// The first choice is the default and the first value of its enumeration, and so on.
sSetting choiceSetting(const char* key, const std::vector<std::string>& choices, const char* title,
                       const char* help) {
    return {.key = key,
            .kind = eSettingKind::choice,
            .group = eSettingGroup::input,
            .byDefault = choices.front(),
            .title = title,
            .help = help,
            .choices = choices,
            .isWrittenOnlyIfChanged = true,
            .isStatedIfChanged = true};
}

std::vector<sSetting> preparationSettings() {
    return {choiceSetting("alternate_locations", {"all", "highest_occupancy"},
                          "Alternate locations",
                          "Which positions of an atom are taken where the file gives several: all, "
                          "or for each residue the conformation of the highest occupancy."),
            choiceSetting("hydrogens", {"keep", "drop"}, "Hydrogens",
                          "Whether hydrogen and deuterium atoms take part."),
            choiceSetting("modified_residues", {"leave_out", "as_parent"}, "Modified residues",
                          "Residues of a polymer in HETATM records, such as selenomethionine: left "
                          "out, or taken as the residues that they are made from."),
            choiceSetting("names", {"as_they_stand", "understood"}, "Names",
                          "Whether residue and atom names are looked up as they stand, or modern "
                          "and force-field names by those that the tables use: DA as A, HIE as "
                          "HIS.")};
}

/// The position of a setting's value among its choices, as a value of an enumeration.
template <typename Choice>
Choice choiceOf(const cSettings& settings, std::string_view key) {
    const std::vector<std::string>& choices = findSetting(settings.module(), key)->choices;
    const auto found = std::ranges::find(choices, settings.text(key));
    return static_cast<Choice>(found == choices.end() ? 0 : found - choices.begin());
}

} // namespace

std::vector<sSetting> inputSettings() {
    std::vector<sSetting> settings = preparationSettings();
    settings.push_back(
        choiceSetting("models", {"first", "each", "chains"}, "Models",
                      "The first model of a file, each with reports of its own, or all as one "
                      "structure, whose later models bring further chains."));
    settings.push_back({.key = "assembly",
                        .kind = eSettingKind::word,
                        .group = eSettingGroup::input,
                        .byDefault = std::string(noAssembly),
                        .title = "Assembly",
                        .help = "Id of the biological assembly to be made of each file, as the "
                                "file describes it; none for the chains as they stand.",
                        .isWrittenOnlyIfChanged = true,
                        .isStatedIfChanged = true});
    return settings;
}

std::vector<sShortForm> inputShortForms() {
    sShortForm asIs{"prepare", "as-is", {}};
    sShortForm standard{"prepare", "standard", {}};
    for (const sSetting& setting : preparationSettings()) {
        asIs.meaning.emplace_back(setting.key, setting.choices.front());
        standard.meaning.emplace_back(setting.key, setting.choices.back());
    }
    return {asIs, standard};
}

sReadOptions readOptionsOf(const cSettings& settings) {
    sReadOptions options;
    options.preparation = {choiceOf<eAlternateLocations>(settings, "alternate_locations"),
                           choiceOf<eHydrogens>(settings, "hydrogens"),
                           choiceOf<eModifiedResidues>(settings, "modified_residues"),
                           choiceOf<eNames>(settings, "names")};
    options.models = choiceOf<eModels>(settings, "models");
    if (settings.text("assembly") != noAssembly) {
        options.assembly = settings.text("assembly");
    }
    return options;
}

} // namespace kelmo
