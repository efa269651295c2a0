#include "input/read_options.h"

#include <algorithm>
#include <utility>

namespace kelmo {

namespace {

constexpr std::string_view modelsKey = "models";

/// A choice over the values of an enumeration, which `member` finds in the options.
template <typename Member>
sReadChoice choiceOf(std::string key, std::string title, std::string help,
                     std::vector<std::string> choices, Member member) {
    return {
        .key = std::move(key),
        .title = std::move(title),
        .help = std::move(help),
        .choices = std::move(choices),
        .get =
            [member](const sReadOptions& options) {
                sReadOptions copy = options;
                return static_cast<std::size_t>(member(copy));
            },
        .set =
            [member](sReadOptions& options, std::size_t choice) {
                auto& value = member(options);
                value = static_cast<std::remove_reference_t<decltype(value)>>(choice);
            },
    };
}

const sReadChoice* choiceNamed(std::string_view key) {
    const auto& choices = readChoices();
    const auto choice = std::find_if(choices.begin(), choices.end(),
                                     [&](const sReadChoice& other) { return other.key == key; });
    return choice == choices.end() ? nullptr : &*choice;
}

} // namespace

const std::vector<sReadChoice>& readChoices() {
    static const std::vector<sReadChoice> choices{
        choiceOf(
            "alternate_locations", "Alternate locations",
            "Which conformations of a residue are taken: all, which counts its atoms more "
            "than once, or the one of highest occupancy.",
            {"all", "highest_occupancy"},
            [](sReadOptions & options) -> auto& { return options.preparation.alternateLocations; }),
        choiceOf(
            "hydrogens", "Hydrogens",
            "Whether hydrogen and deuterium atoms are taken. The default radii are those of "
            "structures without.",
            {"keep", "drop"},
            [](sReadOptions & options) -> auto& { return options.preparation.hydrogens; }),
        choiceOf(
            "modified_residues", "Modified residues",
            "Whether residues of a polymer that stand in HETATM records, such as "
            "selenomethionine, are left out or taken for the residue they are made from.",
            {"leave_out", "as_parent"},
            [](sReadOptions & options) -> auto& { return options.preparation.modifiedResidues; }),
        choiceOf(
            "names", "Names",
            "Whether residues and atoms are looked up by their names as they stand, or modern "
            "and force-field names, such as DA, HSD or C1', by those that the tables use.",
            {"as_they_stand", "understood"},
            [](sReadOptions & options) -> auto& { return options.preparation.names; }),
        choiceOf(
            std::string(modelsKey), "Models",
            "The first model of a file, each one with reports of its own, or the chains of "
            "all of them as one structure.",
            {"first", "each", "chains"},
            [](sReadOptions & options) -> auto& { return options.models; }),
    };
    return choices;
}

bool setReadOption(sReadOptions& options, std::string_view key, std::string_view value) {
    if (key == assemblyKey) {
        options.assembly = value == noAssembly ? std::string_view() : value;
        return true;
    }
    const sReadChoice* const choice = choiceNamed(key);
    if (choice == nullptr) {
        return false;
    }
    const auto position = std::find(choice->choices.begin(), choice->choices.end(), value);
    if (position == choice->choices.end()) {
        return false;
    }
    choice->set(options, static_cast<std::size_t>(position - choice->choices.begin()));
    return true;
}

std::string readOptionValue(const sReadOptions& options, std::string_view key) {
    if (key == assemblyKey) {
        return options.assembly.empty() ? std::string(noAssembly) : options.assembly;
    }
    const sReadChoice* const choice = choiceNamed(key);
    return choice == nullptr ? std::string() : choice->choices[choice->get(options)];
}

std::string preparationText(const sPreparation& preparation) {
    if (preparation == sPreparation{}) {
        return "as-is";
    }
    if (preparation == standardPreparation) {
        return "standard";
    }
    const sReadOptions options{.preparation = preparation};
    std::string text;
    for (const sReadChoice& choice : readChoices()) {
        if (choice.get(options) != 0) {
            text +=
                (text.empty() ? "" : ", ") + choice.key + '=' + choice.choices[choice.get(options)];
        }
    }
    return text;
}

} // namespace kelmo
