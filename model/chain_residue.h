// One residue: a window into the structure's atom list with the residue's own results.
#pragma once

#include "base/exported.h"
#include "model/residue_atom.h"

#include <map>
#include <string>

namespace KELMO_API kelmo {

struct sAsa;

/// What a residue is taken for by its name.
enum class eResidueType : int { other = 0, nucleicAcid = 1, aminoAcid = 2 };

/// One residue. -1.0 marks a value that has not been computed.
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
    /// Sets the relative areas, percent of the standard areas of the residue's name; a residue that
    /// the table lacks keeps its values. Only a standard side-chain area of 0 (glycine) is guarded
    /// and gives 0: any other 0 yields a value that is infinite or not a number.
    void setRelativeAsa(const std::map<std::string, sAsa>& standards);
    /// Looks the residue's name up; a residue that the scale lacks keeps its value.
    void setHydrophobicity(const std::map<std::string, double>& scale);

    /// Sets the six statistics of the atoms' `depthIndex`. The side chain is what stands behind the
    /// first four atoms (three of a nucleotide) and is not named OXT: it is told by position, not
    /// by name as for the areas.
    void setDepthIndex();
    /// Sets the two deviations of depth alone, from the averages as they stand.
    void setDepthIndexDeviation();
    /// Sets the six statistics of the atoms' `protrusionIndex`. The side chain is what stands
    /// behind the first four atoms (three of a nucleotide) and is not named OXT.
    void setProtrusionIndex();
    /// Sets the two deviations of protrusion alone, from the averages as they stand.
    void setProtrusionIndexDeviation();

    /// The name that the file gives it, which is what people are told.
    const std::string& nameInFile() const { return otherName.empty() ? residueName : otherName; }

    eResidueType residueType = eResidueType::other; ///< decides whether the complex counts it
    cResidueAtom* atoms = nullptr;                  ///< first atom of the residue; not owned
    std::string residueName;                        ///< by which tables are searched
    std::string otherName;     ///< that of the file where it differs, otherwise empty
    std::string residueNumber; ///< sequence number with insertion code
    unsigned atomCount = 0;    ///< atoms from `atoms` on

    ///@{
    /// Accessible surface area, Å²; bound or chain alone, whichever was computed last.
    double totalAsa = -1.0;
    double sideChainAsa = -1.0;
    double backboneAsa = -1.0;
    double polarAsa = -1.0;
    double nonPolarAsa = -1.0;
    ///@}

    ///@{
    /// Percent of the standard area of the residue's name.
    double relativeTotalAsa = -1.0;
    double relativeSideChainAsa = -1.0;
    double relativeBackboneAsa = -1.0;
    double relativePolarAsa = -1.0;
    double relativeNonPolarAsa = -1.0;
    ///@}

    ///@{
    /// Statistics of the atoms' protrusion indices; deviations are standard deviations of the
    /// population.
    double maxProtrusionIndex = -1.0;
    double minProtrusionIndex = -1.0;
    double averageProtrusionIndex = -1.0;
    double protrusionIndexDeviation = -1.0;
    double averageSideChainProtrusionIndex = -1.0;
    double sideChainProtrusionIndexDeviation = -1.0;
    ///@}

    ///@{
    /// Statistics of the atoms' depth indices, Å; deviations are standard deviations of the
    /// population.
    double maxDepthIndex = -1.0;
    double minDepthIndex = -1.0;
    double averageDepthIndex = -1.0;
    double depthIndexDeviation = -1.0;
    double averageSideChainDepthIndex = -1.0;
    double sideChainDepthIndexDeviation = -1.0;
    ///@}

    double hydrophobicity = 0.0; ///< of the scale, in its unit; 0 for a name that it lacks
    bool isBinding = false;      ///< set by the contact criteria, never reset
};

} // namespace kelmo
