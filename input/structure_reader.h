// How a structure comes in: one function that reads a file of any known format.
#pragma once

#include "base/exported.h"
#include "input/file_summary.h"
#include "model/pdb_peptide.h"

#include <iosfwd>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace KELMO_API kelmo {

/// Which positions of an atom that a file gives several of are taken.
enum class eAlternateLocations { all, highestOccupancy };
/// Whether hydrogen and deuterium atoms are taken.
enum class eHydrogens { keep, drop };
/// Whether a modified residue of a polymer is left out, unless it stands in an ATOM record, or
/// taken for the residue that it is made from.
enum class eModifiedResidues { leaveOut, asParent };
/// Whether residue and atom names are looked up as they stand, or modern and force-field names by
/// those that the tables use.
enum class eNames { asTheyStand, understood };

/// What of a file is taken, and under which names; by default a file as it is.
struct sPreparation {
    ///@{
    /// One choice each; by default a file is taken as it is.
    eAlternateLocations alternateLocations = eAlternateLocations::all;
    eHydrogens hydrogens = eHydrogens::keep;
    eModifiedResidues modifiedResidues = eModifiedResidues::leaveOut;
    eNames names = eNames::asTheyStand;
    ///@}

    /// Whether the same of every file is taken, under the same names.
    bool operator==(const sPreparation&) const = default;
};

/// One conformation, no hydrogens, every residue of a polymer, every name that is understood.
inline constexpr sPreparation standardPreparation{eAlternateLocations::highestOccupancy,
                                                  eHydrogens::drop, eModifiedResidues::asParent,
                                                  eNames::understood};

/// Which models of a file become structures: the first one, each a structure of its own, or all of
/// them one structure, in which the chains of later models are chains like others.
enum class eModels { first, each, chains };

/// How a file becomes structures.
struct sReadOptions {
    sPreparation preparation = {};   ///< what of each model is taken
    eModels models = eModels::first; ///< which models are taken
    std::string assembly = {};       ///< its id in the file; none if empty

    /// Whether every file becomes the same structures.
    bool operator==(const sReadOptions&) const = default;
};

/// How the reading of a file ended.
enum class eReadOutcome {
    read,       ///< to its end
    badLine,    ///< a line is in error; `badLine` is its number
    unreadable, ///< the file could not be read to its end; `reason` says why
    noAtoms,    ///< no atom of a chain stands in it
    refused,    ///< `reason` says what of it, or of the options, cannot be
};

/// What came of reading a file.
struct sReadResult {
    eReadOutcome outcome = eReadOutcome::read; ///< decides which members say more
    int badLine = 0;                           ///< counted from 1
    std::string reason = {};                   ///< in words for people
    /// Keys of the radii table, residue name + "_" + atom name, that were looked up in vain.
    std::set<std::string> missingRadii = {};
    /// One, or with eModels::each one a model, in the order of the file; none unless `outcome` is
    /// `read`. To be moved out of here; pointers within a structure stay valid when it is moved.
    std::vector<cPdbPeptide> structures = {};
    /// What of the file the structures do not hold, or hold more than once.
    sFileSummary summary = {};
};

/// Reads a file of any format in structureFormats(), recognised by its content. `radii` maps
/// residue name + "_" + atom name to a van der Waals radius in Å. Throws sStopped when the stop
/// request of this thread says so, and std::bad_alloc.
sReadResult readStructure(std::istream& in, const std::map<std::string, double>& radii,
                          const sReadOptions& options = {});

} // namespace kelmo
