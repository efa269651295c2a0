// One chain: a window into the structure's residue and atom lists with the chain's own results.
#pragma once

#include "base/exported.h"
#include "model/asa_form.h"
#include "model/chain_residue.h"

#include <limits>
#include <map>
#include <string>

namespace KELMO_API kelmo {

/// One chain. Copies share the residues and atoms, which stay the property of the structure.
class cProteinChain {
  public:
    cProteinChain() = default;
    /// Takes `residuesInChain` residues from `firstResidue` on and `atomsInChain` atoms from
    /// `firstAtom` on, and sets the bounding box if there are any.
    cProteinChain(std::string peptide, std::string id, cChainResidue* firstResidue,
                  unsigned residuesInChain, cResidueAtom* firstAtom, unsigned atomsInChain);

    /// Areas of the chain taken alone: atoms of other chains neither cover nor neighbour its atoms.
    /// Probe radius and slice thickness in Å.
    void setAccessibleSurfaceArea(double probeRadius, double zSlice,
                                  eAsaForm form = eAsaForm::classic);
    /// Sums the residues' areas as they stand, -1.0 of residues never computed included.
    void setASASummingResidueAsa();
    /// Sets the relative areas (percent) of all residues, whatever their type.
    void setRelativeAccessibleSurfaceArea(const std::map<std::string, sAsa>& standards);
    /// Depth within the chain alone, for every residue whatever its type.
    void setDepthIndex();
    /// Protrusion within the chain alone, for every residue whatever its type. Radius in Å, volume
    /// of one atom in Å³.
    void setProtrusionIndex(double sphereRadius, double atomVolume);

    std::string peptideName;           ///< that of the structure
    std::string chainId;               ///< one character, "*" for a blank id
    unsigned atomCount = 0;            ///< atoms from `atoms` on
    unsigned residueCount = 0;         ///< residues from `residues` on
    cChainResidue* residues = nullptr; ///< first residue; not owned
    cResidueAtom* atoms = nullptr;     ///< first atom; not owned
    sPoint maxPoint;                   ///< largest coordinates of the atom centres, Å
    sPoint minPoint;                   ///< smallest coordinates of the atom centres, Å

    ///@{
    /// Sum of the residues' accessible surface areas, Å².
    double totalAsa = 0.0;
    double sideChainAsa = 0.0;
    double backboneAsa = 0.0;
    double polarAsa = 0.0;
    double nonPolarAsa = 0.0;
    ///@}

  private:
    friend class cPdbPeptide;

    /// Whose areas the atoms hold.
    enum class eAreas { unknown, ofComplex, ofChainAlone };

    bool holds(eAreas which, double probeRadius, double zSlice, eAsaForm form) const {
        return heldAreas == which && heldProbeRadius == probeRadius && heldZSlice == zSlice &&
               heldForm == form;
    }
    void noteAreas(eAreas which, double probeRadius, double zSlice, eAsaForm form) {
        heldAreas = which;
        heldProbeRadius = probeRadius;
        heldZSlice = zSlice;
        heldForm = form;
    }
    /// Sums up the areas of the atoms, which are those of the chain alone.
    void sumUpUnboundAreas(double probeRadius, double zSlice, eAsaForm form);

    eAreas heldAreas = eAreas::unknown;
    // What they were computed by.
    double heldProbeRadius = 0.0;
    double heldZSlice = 0.0;
    eAsaForm heldForm = eAsaForm::classic;
    bool holdsDepthOfComplex = false; ///< by the areas that the atoms hold
    // What the protrusions of the complex that the atoms hold were computed by; not a number
    // without any.
    double heldSphereRadius = std::numeric_limits<double>::quiet_NaN();
    double heldAtomVolume = std::numeric_limits<double>::quiet_NaN();
};

} // namespace kelmo
