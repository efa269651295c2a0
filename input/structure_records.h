// What a file says of a structure, before it is decided what of it is taken and under which names.
#pragma once

#include "input/chain_builder.h"

#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kelmo {

struct sAtomRecord {
    std::string name;
    std::string serial;
    std::string alternate; ///< label of an alternate location, empty if there is none
    double x = 0.0;        ///< Å; not a number where the file's text is none
    double y = 0.0;
    double z = 0.0;
    float occupancy = 1.0F;
    bool isHydrogen = false; ///< or deuterium
};

/// Whether a file counts a residue among those of its polymers.
enum class ePolymer { unknown, no, yes };

/// The rows of atoms that follow each other and say the same of their residue.
struct sResidueRecord {
    std::string chainId; ///< blank or empty if it has none
    std::string number;  ///< with insertion code
    std::string name;
    std::string part;      ///< of a chain, where a file divides chains for its assemblies
    bool isHetero = false; ///< HETATM
    ePolymer polymer = ePolymer::unknown;
    std::size_t model = 0;     ///< counted from 0 in the order of the file
    std::size_t firstAtom = 0; ///< its atoms go up to the first of the next record
};

/// A residue that a file calls modified, or made from another.
struct sModifiedResidue {
    std::string chainId;
    std::string number;
    std::string name;
    std::string parent; ///< empty if the file does not tell
};

/// Moves a point: rotation, row by row, then shift in Å.
struct sPlacement {
    std::array<double, 9> rotation{1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
    std::array<double, 3> shift{};
};

/// Copies of chains, or of parts of chains where the file divides them.
struct sChainCopies {
    std::set<std::string> ids;
    std::vector<sPlacement> placements;
};

struct sStructureRecords {
    std::string entryCode;
    eIdentity identity = eIdentity::exact;
    std::vector<sAtomRecord> atoms;
    std::vector<sResidueRecord> residues;
    std::size_t laterModels = 0; ///< models that were not recorded
    std::size_t laterBlocks = 0; ///< data blocks with atoms that were not recorded
    std::vector<sModifiedResidue> modifiedResidues;
    /// Chain id and residue name of all that stands in the sequences of the polymers.
    std::set<std::pair<std::string, std::string>> sequences;
    std::vector<std::string> assemblies; ///< the ids of those that the file describes
    std::vector<sChainCopies> copies;    ///< what the one that was asked for is made of

    /// Records an atom, and a residue if this one says something else than the last.
    void add(const sResidueRecord& residue, sAtomRecord atom);
    /// Behind the last atom of a residue.
    std::size_t atomsEnd(std::size_t residue) const;
};

} // namespace kelmo
