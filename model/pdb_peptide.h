// One structure as read from a PDB file: the owner of its atoms, residues, chains and contacts.
#pragma once

#include "base/exported.h"
#include "model/contact.h"
#include "model/protein_chain.h"

#include <iosfwd>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace KELMO_API kelmo {

/// One structure. Owns all lists; residues, chains and atoms only point into them, and those
/// pointers stay valid for structures of any size. Copies are deep.
class cPdbPeptide {
  public:
    cPdbPeptide() = default;
    ///@{
    /// Pointers of the copy lead to the lists of the copy.
    cPdbPeptide(const cPdbPeptide& other);
    cPdbPeptide& operator=(const cPdbPeptide& other);
    ///@}
    ///@{
    /// Pointers stay valid: the lists change their owner, not their place.
    cPdbPeptide(cPdbPeptide&&) noexcept = default;
    cPdbPeptide& operator=(cPdbPeptide&&) noexcept = default;
    ///@}
    ~cPdbPeptide() = default;

    /// Fills an empty structure from PDB text. `radii` maps residue name + "_" + atom name to a van
    /// der Waals radius in Å; keys that were looked up in vain are added to `missingRadii` (never
    /// those of OXT) and their atoms get 1.6 Å. Only the first model of a file is read.
    /// Returns 0, or the 1-based number of the line at which reading stopped with an error: then
    /// the structure holds a part of the file and is to be discarded. A file without ATOM lines
    /// leaves the structure empty and returns 0. A read error before END or a bad
    /// line counts as the end of the file; the stream is then bad, and errno says why. Heeds the
    /// stop request of this thread.
    int loadFromStream(std::istream& in, std::map<std::string, double> radii,
                       std::set<std::string>& missingRadii);

    /// Areas of the complex as it stands: every atom may cover every other. Probe radius and slice
    /// thickness in Å, and the form of the surface. Residues of no known type keep their sums.
    void setAccessibleSurfaceArea(double probeRadius, double zSlice,
                                  eAsaForm form = eAsaForm::classic);
    /// Areas of every chain taken alone; the sums of the whole structure stay 0. A call that finds
    /// these areas current for the same parameters costs nothing.
    void setAccessibleSurfaceAreaUnbound(double probeRadius, double zSlice,
                                         eAsaForm form = eAsaForm::classic);
    /// Sets the relative areas (percent) of residues of a known type.
    void setRelativeAccessibleSurfaceArea(const std::map<std::string, sAsa>& standards);
    /// Sets the hydrophobicity of residues of a known type.
    void setHydrophobicity(std::map<std::string, double> scale);
    /// Depth within the complex, of all atoms; residues of no known type get no statistics.
    void setDepthIndex();
    /// Depth within every chain taken alone, for every residue whatever its type. What the atoms
    /// hold of the complex is taken where the only chain is all of it.
    void setDepthIndexUnbound();
    /// Protrusion within the complex, of all atoms; residues of no known type get no statistics.
    /// Radius in Å, volume of one atom in Å³.
    void setProtrusionIndex(double sphereRadius, double atomVolume);
    /// Protrusion within every chain taken alone, for every residue whatever its type, as with
    /// setDepthIndexUnbound(). Radius in Å, volume of one atom in Å³.
    void setProtrusionIndexUnbound(double sphereRadius, double atomVolume);

    /// Finds the residue pairs of different chains that touch by a criterion, records each in both
    /// directions, marks both residues as binding and sorts the contact list. Distances in Å.
    /// `searchValue` is the threshold of the distance criteria and the search distance of the
    /// table-driven one, which alone uses `vdwThreshold` and `map`.
    void resolveContacts(eInteractionCriterion criterion, double searchValue, double vdwThreshold,
                         const contactMap* map);
    /// Contacts of residues of which some atom pair is at most `threshold` Å apart.
    void resolveThresholdContacts(double threshold);
    /// Contacts of residues of which some atom pair is at most its radii plus `threshold` Å apart.
    void resolvePRISMContacts(double threshold);
    /// Contacts of residues that fulfil a rule of `map`, or of which some atom pair is at most its
    /// radii plus `vdwThreshold` Å apart. Mind the order: the search distance comes second.
    void resolveHovikKRBContacts(double vdwThreshold, double searchValue, const contactMap& map);
    /// Marks every residue whose area in the complex differs by more than `deltaAsa` Å² from its
    /// area in its chain alone. The areas of the complex must have been computed with the same
    /// parameters before. Makes no contact records.
    void resolveDovrethContacts(double deltaAsa, double probeRadius, double zSlice,
                                eAsaForm form = eAsaForm::classic);

    std::string name;                      ///< identification code of the entry, empty if none
    sPoint maxPoint;                       ///< largest coordinates of the atom centres, Å
    sPoint minPoint;                       ///< smallest coordinates of the atom centres, Å
    std::vector<cResidueAtom> atoms;       ///< every protein atom, in file order
    std::vector<cResidueAtom> heteroAtoms; ///< Cu, Fe, Mg and Zn, radius 0
    std::vector<cChainResidue> residues;   ///< in file order
    std::vector<cProteinChain> chains;     ///< in file order
    std::vector<cResidueContact> contacts; ///< of the criteria resolved so far, sorted

    ///@{
    /// Sum of the accessible surface areas of residues of a known type in the complex, Å²; 0 after
    /// the chains were computed alone.
    double totalAsa = 0.0;
    double sideChainAsa = 0.0;
    double backboneAsa = 0.0;
    double polarAsa = 0.0;
    double nonPolarAsa = 0.0;
    ///@}

    /// Points residues, chains and atoms at this object's own lists, by their counts. For whoever
    /// fills the lists.
    void rebuildLinks();

    /// Whether there is one chain, of all atoms: alone it is what the complex is.
    bool isOneChain() const;
};

} // namespace kelmo
