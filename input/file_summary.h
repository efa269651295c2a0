// What of a file takes no part in its analysis, or counts more than once.
#pragma once

#include "base/exported.h"

#include <cstddef>
#include <map>
#include <string>

namespace KELMO_API kelmo {

/// Numbers of residues by their names.
using tResidueCounts = std::map<std::string, std::size_t>;

/// What stands in the first model, or in all of them if all are taken.
struct sFileSummary {
    tResidueCounts leftOut = {}; ///< residues of polymers that are not taken into their chains
    tResidueCounts unknown = {}; ///< residues that are taken, but are of no known type
    std::size_t waters = 0;      ///< residues of water, none of which is taken
    tResidueCounts ligands = {}; ///< and ions; not waters
    std::size_t residuesWithAlternates = 0; ///< with atoms of more than one alternate location
    bool countsAllAlternates = true;        ///< whether all of their locations are taken
    std::size_t hydrogens = 0;              ///< atoms of residues that are taken
    bool countsHydrogens = true;            ///< whether these atoms are taken
    std::size_t laterModels = 0;            ///< that are not read
    std::size_t laterBlocks = 0;            ///< of data with atoms that are not read

    /// Whether two files have the same to tell.
    bool operator==(const sFileSummary&) const = default;
};

/// Whether residues of polymers have no part or count more than once.
bool isWarning(const sFileSummary& summary);

/// The summary in one line, with eight names of residues at most; empty if there is nothing to say.
/// `fileName` is the name by which people know the file.
std::string summaryLine(const sFileSummary& summary, const std::string& fileName);

} // namespace kelmo
