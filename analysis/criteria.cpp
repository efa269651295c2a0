#include "analysis/criteria.h"

#include "contacts/contact_resolution.h"

#include <algorithm>
#include <utility>

namespace kelmo {

namespace {

// The table-driven criterion has fixed distances; the user's threshold plays no part in it.
constexpr double vordaVdwThreshold = 1.125; // Å
constexpr double vordaSearchDistance = 6.0; // Å

sContactList findByDistance(cPdbPeptide& structure, const sCriterionInput& input) {
    return findContacts(structure, eInteractionCriterion::maximumDistance,
                        input.settings.number("threshold"), 0.0, nullptr);
}

sContactList findByGap(cPdbPeptide& structure, const sCriterionInput& input) {
    return findContacts(structure, eInteractionCriterion::prism, input.settings.number("threshold"),
                        0.0, nullptr);
}

sContactList findByAreaChange(cPdbPeptide& structure, const sCriterionInput& input) {
    const double probeRadius = input.settings.number("r_solvent");
    const double zSlice = input.settings.number("z_slice");
    const eAsaForm form = input.settings.asaForm();
    structure.setAccessibleSurfaceArea(probeRadius, zSlice, form);
    structure.resolveDovrethContacts(input.settings.number("delta_asa"), probeRadius, zSlice, form);
    return {};
}

sContactList findByRules(cPdbPeptide& structure, const sCriterionInput& input) {
    return findContacts(structure, eInteractionCriterion::vorda, vordaSearchDistance,
                        vordaVdwThreshold, &input.rules);
}

std::vector<sCriterion>& table() {
    static std::vector<sCriterion> criteria{
        {.number = eInteractionCriterion::maximumDistance,
         .name = "MaximumDistance",
         .title = "maximum distance",
         .help = "Two residues touch when the centres of any two of their atoms are no further "
                 "apart than the threshold. Usual threshold 4.5 Å.",
         .parameters = {{"threshold", "MD_threshold", 4.5, 10.0}},
         .find = findByDistance},
        {.number = eInteractionCriterion::prism,
         .name = "PRISM",
         .title = "PRISM",
         .help = "Two residues touch when any two of their atoms are no further apart than the sum "
                 "of their radii and the threshold. Usual threshold 0.5 Å.",
         .parameters = {{"threshold", "PRISM_threshold", 0.5, 5.0}},
         .find = findByGap},
        {.number = eInteractionCriterion::dovreth,
         .name = "Dovreth",
         .title = "Dovreth",
         .help = "A residue binds when its surface area in the complex and in its chain alone "
                 "differ by more than the area change. There are no pairs, so there is no contacts "
                 "report.",
         .parameters = {{"delta_asa", "TH_delta_asa", 1.0, 100.0},
                        {"z_slice", "TH_z_slice", 0.25, 1.0},
                        {"r_solvent", "TH_r_solvent", 1.4, 2.0},
                        {.key = "asa_form", .reportName = "TH_asa_form", .isOnlyIfChanged = true}},
         .makesContacts = false,
         .find = findByAreaChange},
        {.number = eInteractionCriterion::vorda,
         .name = "VORDA",
         .title = "contact rules",
         .help = "Two residues touch when a pair of their atoms fulfils a rule of aa_contacts.txt, "
                 "or by van der Waals distance; the contacts get types. The threshold plays no "
                 "part.",
         .usesRules = true,
         .find = findByRules}};
    return criteria;
}

} // namespace

const std::vector<std::string>& interfaceParameters() {
    static const std::vector<std::string> keys{"delta_asa", "z_slice", "r_solvent", "asa_form"};
    return keys;
}

const std::vector<sCriterion>& criteria() {
    return table();
}

const sCriterion* findCriterion(eInteractionCriterion number) {
    const auto found = std::ranges::find(table(), number, &sCriterion::number);
    return found == table().end() ? nullptr : &*found;
}

void addCriterion(sCriterion criterion, const std::vector<sSetting>& settings) {
    for (const sSetting& setting : settings) {
        addSetting(eModule::vor, setting);
    }
    table().push_back(std::move(criterion));
}

std::string criterionName(eInteractionCriterion number) {
    const sCriterion* const criterion = findCriterion(number);
    return criterion == nullptr ? std::string() : criterion->name;
}

std::string bondName(eBond kind) {
    switch (kind) {
    case eBond::hydrogen:
        return "hydrogen_bond";
    case eBond::salt:
        return "salt_bridge";
    case eBond::disulphide:
        break;
    }
    return "disulphide";
}

std::string contactTypeName(eContactType type) {
    switch (type) {
    case eContactType::hydrophobic:
        return "Hydrophobic";
    case eContactType::polar:
        return "Polar";
    case eContactType::ionic:
        return "Ionic";
    case eContactType::vanDerWaals:
        return "vanDerWaals";
    case eContactType::undefined:
        break;
    }
    return "Undefined";
}

} // namespace kelmo
