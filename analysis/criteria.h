// The criteria by which residues of different chains count as touching: one row each.
#pragma once

#include "analysis/settings.h"
#include "base/exported.h"
#include "contacts/interfaces.h"
#include "model/contact.h"
#include "model/pdb_peptide.h"

#include <string>
#include <string_view>
#include <vector>

namespace KELMO_API kelmo {

struct sCriterionInput;

/// A setting that a criterion goes by.
struct sCriterionParameter {
    std::string key = {};         ///< of the setting, which several criteria may share
    std::string reportName = {};  ///< in the headers of reports
    double byDefault = 0.0;       ///< of a number, by this criterion
    double maximum = 0.0;         ///< of a number, by this criterion
    bool isOnlyIfChanged = false; ///< in headers not while the setting has its default
};

/// One criterion.
struct sCriterion {
    eInteractionCriterion number = eInteractionCriterion::none; ///< in settings and configurations
    std::string name = {};                                      ///< in reports: "PRISM"
    std::string title = {};                                     ///< in messages: "contact rules"
    std::string help = {}; ///< for a field of the form, in a sentence or two
    std::vector<sCriterionParameter> parameters =
        {};                    ///< in the order of reports and configurations
    bool makesContacts = true; ///< false when it finds binding residues, but no pairs
    bool usesRules = false;    ///< the table of contact rules
    /// Marks the binding residues and returns the contacts, each in both directions, in order.
    sContactList (*find)(cPdbPeptide& structure, const sCriterionInput& input) = nullptr;
};

/// What a search for contacts goes by.
struct sCriterionInput {
    const cSettings& settings; ///< of the interaction module
    const contactMap& rules;   ///< empty for a criterion that uses none
};

/// Keys of the settings that interfaces are computed by, whatever the criterion.
const std::vector<std::string>& interfaceParameters();

/// In the order of their numbers.
const std::vector<sCriterion>& criteria();
/// Null for a number that no criterion has, `none` included.
const sCriterion* findCriterion(eInteractionCriterion number);
/// Adds a criterion with the settings that it brings, before the first analysis of the process.
/// Not for several threads at once.
void addCriterion(sCriterion criterion, const std::vector<sSetting>& settings);

/// The name in reports of a criterion, empty for a number that none has.
std::string criterionName(eInteractionCriterion number);
/// The name in reports of a kind of bond.
std::string bondName(eBond kind);
/// The name in reports of a contact's type; "Undefined" for a number that none has.
std::string contactTypeName(eContactType type);

} // namespace kelmo
