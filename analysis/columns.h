// The values of one state of one structure as columns: what every report is written from.
#pragma once

#include "analysis/attributes.h"
#include "base/exported.h"

#include <string>
#include <vector>

namespace KELMO_API kelmo {

/// A chain and which residues it has.
struct sChainRow {
    std::string id = {};          ///< as in reports: "*" for a blank one
    std::size_t firstResidue = 0; ///< position among all residues
    std::size_t residueCount = 0; ///< they stand in a row
};

/// A residue as the file names it.
struct sResidueRow {
    std::string name = {};   ///< of its type: "ALA"
    std::string number = {}; ///< with insertion code
};

/// One column with its values, in the order of the rows that they belong to.
struct sColumnValues {
    const sColumn* column = nullptr;     ///< a row of the table of attributes
    std::vector<double> ofResidues = {}; ///< one for each residue
    std::vector<double> ofChains = {};   ///< empty when chains have no such value
    double ofStructure = 0.0;            ///< 0 when structures have no such value
};

/// The written columns of one attribute.
struct sAttributeValues {
    const sAttribute* attribute = nullptr;   ///< a row of the table of attributes
    std::vector<sColumnValues> columns = {}; ///< in the order of tables
    std::vector<std::size_t> xmlOrder = {};  ///< their positions in the order of XML
};

/// Everything that is known of a structure in one state, taken from it when it was computed: it may
/// change or go afterwards.
struct sStateColumns {
    std::string structureName = {};                ///< identification code of the entry
    std::string state = {};                        ///< "bound" or "unbound"
    std::vector<sChainRow> chains = {};            ///< in the order of the file
    std::vector<sResidueRow> residues = {};        ///< chain by chain
    std::vector<sAttributeValues> attributes = {}; ///< those that are to be written
};

/// Takes the columns of all attributes that the settings want written.
sStateColumns columnsOf(const cPdbPeptide& structure, std::string_view state,
                        const cSettings& settings);
/// Those of a single chain.
sStateColumns columnsOf(const cProteinChain& chain, const cSettings& settings);

/// What the chains alone have more than the complex has, of all attributes that depend on the
/// state. Not a number where a value was not computed in one of the two. Values of chains and
/// structure are the sums of their residues' numbers. Both come from the same structure and
/// settings.
sStateColumns differenceOf(const sStateColumns& unbound, const sStateColumns& bound);

} // namespace kelmo
