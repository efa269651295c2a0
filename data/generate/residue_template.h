// Standard covalent geometry and bonding of the heavy atoms of the 20 amino acids.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kelmo {

/// One side-chain atom, placed from three atoms of its residue that stand before it.
struct sSideChainAtom {
    std::string name;
    std::string bondedTo;    ///< bond length to this atom
    std::string angleFrom;   ///< bond angle angleFrom - bondedTo - name
    std::string torsionFrom; ///< torsion torsionFrom - angleFrom - bondedTo - name
    double bondLength = 0.0; ///< Å
    double bondAngle = 0.0;  ///< degrees
    double torsion = 0.0;    ///< degrees, positive clockwise looking from angleFrom to bondedTo
};

/// Main-chain geometry of one residue type. Lengths in Å, angles in degrees.
struct sBackboneGeometry {
    double previousCToN = 1.329; ///< peptide bond to the residue before
    double nToCa = 1.458;        ///< N - CA
    double caToC = 1.525;        ///< CA - C
    double previousCaCN = 116.2; ///< CA - C - N at the carbonyl of the residue before
    double previousCaCO = 120.8; ///< CA - C - O at the carbonyl of the residue before
    double previousCNCa = 121.7; ///< C - N - CA
    double nCaC = 111.2;         ///< N - CA - C
    double extendedPhi = -139.0; ///< phi of the extended conformation
};

/// One residue type. Side-chain atoms stand in the order of PDB files, after N, CA, C and O.
struct sResidueTemplate {
    std::string name;
    sBackboneGeometry backbone;
    std::vector<sSideChainAtom> sideChain;
    /// Bonds that close rings: they follow from the placements, which do not name them.
    std::vector<std::pair<std::string, std::string>> ringClosures;
};

/// The 20 standard residues in alphabetical order of their names. Bond lengths and angles after
/// Engh & Huber, Acta Cryst A47:392-400 (1991). The torsions are those of one rotamer per residue:
/// the most populated of Lovell, Word, Richardson & Richardson, Proteins 40:389-408 (2000) that in
/// an extended main chain brings no two atoms, four bonds or more apart, closer than 2.5 Å. Only
/// for ASN and ASP is that not the most populated of all: the OD1 of their m-20 runs into the
/// oxygen of the residue before.
const std::vector<sResidueTemplate>& residueTemplates();

/// The template of a standard residue. The name must be one of the 20.
const sResidueTemplate& residueTemplate(const std::string& name);

/// Names of all heavy atoms in the order of PDB files: N, CA, C, O, then the side chain. OXT, which
/// only the last residue of a chain has, is not among them.
std::vector<std::string> heavyAtomNames(const sResidueTemplate& residue);

/// Names of the heavy atoms of the same residue that `atom` is bonded to.
std::vector<std::string> bondedAtoms(const sResidueTemplate& residue, const std::string& atom);

} // namespace kelmo
