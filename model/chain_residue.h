// One residue: a window into the structure's atom list with the residue's own results.
#pragma once

#include "model/residue_atom.h"

#include <map>
#include <string>

namespace kelmo {

struct sAsa;

enum class eResidueType : int { other = 0, nucleicAcid = 1, aminoAcid = 2 };

/// One residue. Areas in Å², relative areas in percent of the standard area of the residue type,
/// depths in Å; -1.0 marks a value that has not been computed.
class cChainResidue {
  public:
    cChainResidue() = default;
    /// The atoms stay the property of the structure.
    cChainResidue(std::string name, std::string number, cResidueAtom* firstAtom, unsigned count,
                  eResidueType type);

    /// True when some atom of this residue and some atom of `other` are in range by their centres
    /// (Å); false when either residue has no atoms.
    bool isWithinRange(const cChainResidue& other, double range) const;

    /// True when the centres of some atom pair are at most the sum of their radii plus `value` (Å)
    /// apart; false when either residue has no atoms.
    bool isWithinRangeFromRadius(const cChainResidue& other, double value) const;

    /// Recomputes the five areas from the atoms' `asa`, sorting atoms by their names.
    void setAsa();
    /// Percent of the standard areas; a residue that the table lacks keeps its values. Only a
    /// standard side-chain area of 0 is guarded (glycine): any other 0 yields an infinite value.
    void setRelativeAsa(const std::map<std::string, sAsa>& standards);
    /// A residue that the scale lacks keeps its value.
    void setHydrophobicity(const std::map<std::string, double>& scale);

    /// Depth statistics from the atoms' `depthIndex`. Backbone and side chain are split by position
    /// here, not by name.
    void setDepthIndex();
    void setDepthIndexDeviation();
    /// The same statistics from the atoms' `protrusionIndex`.
    void setProtrusionIndex();
    void setProtrusionIndexDeviation();

    /// The name that the file gives it, which is what people are told.
    const std::string& nameInFile() const { return otherName.empty() ? residueName : otherName; }

    eResidueType residueType = eResidueType::other;
    cResidueAtom* atoms = nullptr; ///< first atom of the residue; not owned
    std::string residueName;       ///< by which tables are searched
    std::string otherName;         ///< that of the file where it differs, otherwise empty
    std::string residueNumber;     ///< sequence number with insertion code
    unsigned atomCount = 0;

    double totalAsa = -1.0;
    double sideChainAsa = -1.0;
    double backboneAsa = -1.0;
    double polarAsa = -1.0;
    double nonPolarAsa = -1.0;

    double relativeTotalAsa = -1.0;
    double relativeSideChainAsa = -1.0;
    double relativeBackboneAsa = -1.0;
    double relativePolarAsa = -1.0;
    double relativeNonPolarAsa = -1.0;

    double maxProtrusionIndex = -1.0;
    double minProtrusionIndex = -1.0;
    double averageProtrusionIndex = -1.0;
    double protrusionIndexDeviation = -1.0;
    double averageSideChainProtrusionIndex = -1.0;
    double sideChainProtrusionIndexDeviation = -1.0;

    double maxDepthIndex = -1.0;
    double minDepthIndex = -1.0;
    double averageDepthIndex = -1.0;
    double depthIndexDeviation = -1.0;
    double averageSideChainDepthIndex = -1.0;
    double sideChainDepthIndexDeviation = -1.0;

    double hydrophobicity = 0.0;
    bool isBinding = false; ///< set by the contact criteria, never reset
};

} // namespace kelmo
