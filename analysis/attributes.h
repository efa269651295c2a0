// The attributes of residues that the structure analyser computes: one row each.
#pragma once

#include "analysis/parameter_tables.h"
#include "analysis/settings.h"
#include "base/exported.h"
#include "model/pdb_peptide.h"

#include <string>
#include <string_view>
#include <vector>

namespace KELMO_API kelmo {

/// The state in which a structure is analysed: as the complex that the file holds, or with every
/// chain taken alone.
enum class eState { bound, unbound };

/// "bound" or "unbound".
std::string_view nameOf(eState state);

/// One value of every residue, and of chains and the structure where they have it too.
struct sColumn {
    std::string name = {};    ///< for programs: "asa_total"
    std::string unit = {};    ///< "Å²", "%", "Å"; empty for a pure number
    std::string title = {};   ///< in tables
    std::string xmlName = {}; ///< within the attribute's group
    /// Where it stands among the columns of its attribute in XML; tables have the order of the
    /// rows.
    int xmlPlace = 0;
    double (*ofResidue)(const cChainResidue& residue) = nullptr;   ///< never null in a row
    double (*ofChain)(const cProteinChain& chain) = nullptr;       ///< null for none
    double (*ofStructure)(const cPdbPeptide& structure) = nullptr; ///< null for none
    std::string chainTitle = {};     ///< of the chain's value in tables
    std::string structureLabel = {}; ///< of the structure's value above tables
};

/// A setting that stands in the header of reports while the attribute is computed.
struct sHeaderParameter {
    std::string key = {};            ///< of the setting
    std::string xmlName = {};        ///< of its element
    std::string tableLabel = {};     ///< with colon and blank: "ASA_rSolvent: "
    bool isInChainDocuments = false; ///< also in the document of a single chain
    bool isOnlyIfChanged = false;    ///< not while the setting has its default
};

/// What a calculation goes by.
struct sCalculationInput {
    const cSettings& settings;      ///< of the structure module
    const sParameterTables& tables; ///< filled as these settings need them
};

/// One attribute.
struct sAttribute {
    /// The flag that switches it on comes first, then what else it goes by.
    std::vector<sSetting> settings = {};
    std::string writeKey = {}; ///< flag that puts it into the reports; empty when it always is
    std::vector<sHeaderParameter> headers = {}; ///< in the order of reports
    std::string xmlGroup = {}; ///< element around its values; empty when there is one value alone
    std::vector<sColumn> columns = {}; ///< in the order of tables
    /// Whether values of a chain alone and in the complex may differ.
    bool dependsOnState = true;
    /// Computes it for all residues. For `unbound`, chain by chain.
    void (*calculate)(cPdbPeptide& structure, eState state,
                      const sCalculationInput& input) = nullptr;

    /// Key of the flag that switches it on.
    const std::string& switchKey() const { return settings.front().key; }
    /// Whether these settings, once resolved, have it computed.
    bool isCalculated(const cSettings& values) const { return values.flag(switchKey()); }
    /// Whether these settings, once resolved, have it in the reports.
    bool isWritten(const cSettings& values) const {
        return values.flag(writeKey.empty() ? switchKey() : writeKey);
    }
};

/// In the order of calculation, reports and forms: an attribute may go by those before it.
const std::vector<sAttribute>& attributes();
/// Adds an attribute with its settings, before the first analysis of the process. Not for several
/// threads at once.
void addAttribute(sAttribute attribute);

/// Computes all attributes that are switched on, in order, and calls `betweenSteps` before each.
/// Areas come first: relative areas and depths are made of them.
template <typename BetweenSteps>
void calculateAttributes(cPdbPeptide& structure, eState state, const sCalculationInput& input,
                         BetweenSteps betweenSteps) {
    for (const sAttribute& attribute : attributes()) {
        betweenSteps();
        if (attribute.isCalculated(input.settings)) {
            attribute.calculate(structure, state, input);
        }
    }
}

} // namespace kelmo
