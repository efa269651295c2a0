// How atom areas add up to residues, chains and the structure, bound and chain by chain.
#include "base/in_parallel.h"
#include "geometry/atom_space_calculations.h"
#include "model/addition.h"
#include "model/pdb_peptide.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kelmo {

namespace {

enum class ePolarity { polar, nonPolar };
enum class ePosition { backbone, sideChain };

struct sAtomClass {
    ePolarity polarity;
    ePosition position;
};

/// Classes by name alone: the areas are split this way, whereas the depth and protrusion statistics
/// count positions.
sAtomClass classOf(const std::string& name) {
    const auto backboneIf = [](bool isBackbone) {
        return isBackbone ? ePosition::backbone : ePosition::sideChain;
    };
    switch (name.empty() ? '\0' : name.front()) {
    case 'N':
        return {ePolarity::polar, backboneIf(name == "N" || name == "NXT")};
    case 'O':
        return {ePolarity::polar,
                backboneIf(name == "O" || name == "OXT" || name == "O1P" || name == "O2P")};
    case 'C':
        return {ePolarity::nonPolar, backboneIf(name == "CA" || name == "C")};
    case 'P':
        return {ePolarity::nonPolar, ePosition::backbone};
    default:
        return {ePolarity::nonPolar, ePosition::sideChain};
    }
}

void calculateAreas(eAsaForm form, cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                    const sPoint& minPoint, double probeRadius, double zSlice) {
    const auto calculate = form == eAsaForm::complete ? calculateAtomAsaComplete : calculateAtomASA;
    calculate(atoms, atomCount, maxPoint, minPoint, probeRadius, zSlice);
}

/// Marks the atoms, which hold areas of the complex, whose area in the chain alone may be another:
/// none of a chain that is the whole structure.
void markWhereChainsMatter(const cPdbPeptide& structure, double probeRadius, bool* isMarked) {
    if (structure.isOneChain()) {
        return;
    }
    const auto atomCount = static_cast<unsigned>(structure.atoms.size());
    std::vector<std::uint32_t> chainOfAtom(structure.atoms.size());
    for (std::uint32_t c = 0; c < structure.chains.size(); ++c) {
        const cProteinChain& chain = structure.chains[c];
        std::fill_n(chainOfAtom.begin() + (chain.atoms - structure.atoms.data()), chain.atomCount,
                    c);
    }
    markWhereOthersMatter(structure.atoms.data(), atomCount, structure.maxPoint, structure.minPoint,
                          probeRadius, chainOfAtom.data(), isMarked);
}

template <typename Owner>
void clearAreas(Owner& owner) {
    owner.totalAsa = owner.sideChainAsa = owner.backboneAsa = 0.0;
    owner.polarAsa = owner.nonPolarAsa = 0.0;
}

template <typename Owner>
void addAreas(Owner& owner, const cChainResidue& residue) {
    owner.totalAsa += residue.totalAsa;
    owner.sideChainAsa += residue.sideChainAsa;
    owner.backboneAsa += residue.backboneAsa;
    owner.polarAsa += residue.polarAsa;
    owner.nonPolarAsa += residue.nonPolarAsa;
}

} // namespace

void cChainResidue::setAsa() {
    clearAreas(*this);
    for (unsigned i = 0; i < atomCount; ++i) {
        const double area = atoms[i].asa;
        const sAtomClass atomClass = classOf(atoms[i].atomName);
        totalAsa += area;
        (atomClass.polarity == ePolarity::polar ? polarAsa : nonPolarAsa) += area;
        (atomClass.position == ePosition::backbone ? backboneAsa : sideChainAsa) += area;
    }
}

void cChainResidue::setRelativeAsa(const std::map<std::string, sAsa>& standards) {
    const auto entry = standards.find(residueName);
    if (entry == standards.end()) {
        return;
    }
    const sAsa& standard = entry->second;
    relativeTotalAsa = totalAsa / standard.total * 100.0;
    relativeSideChainAsa =
        standard.sideChain != 0.0 ? sideChainAsa / standard.sideChain * 100.0 : 0.0;
    relativeBackboneAsa = backboneAsa / standard.backbone * 100.0;
    relativePolarAsa = polarAsa / standard.polar * 100.0;
    relativeNonPolarAsa = nonPolarAsa / standard.nonPolar * 100.0;
}

void cChainResidue::setHydrophobicity(const std::map<std::string, double>& scale) {
    const auto entry = scale.find(residueName);
    if (entry != scale.end()) {
        hydrophobicity = entry->second;
    }
}

void cProteinChain::setAccessibleSurfaceArea(double probeRadius, double zSlice, eAsaForm form) {
    calculateAreas(form, atoms, atomCount, maxPoint, minPoint, probeRadius, zSlice);
    holdsDepthOfComplex = false;
    sumUpUnboundAreas(probeRadius, zSlice, form);
}

void cProteinChain::sumUpUnboundAreas(double probeRadius, double zSlice, eAsaForm form) {
    inParallel(residueCount, residuesPerTask, [&](std::size_t i) { residues[i].setAsa(); });
    setASASummingResidueAsa();
    noteAreas(eAreas::ofChainAlone, probeRadius, zSlice, form);
}

void cProteinChain::setASASummingResidueAsa() {
    clearAreas(*this);
    for (unsigned i = 0; i < residueCount; ++i) {
        addAreas(*this, residues[i]);
    }
}

void cProteinChain::setRelativeAccessibleSurfaceArea(const std::map<std::string, sAsa>& standards) {
    for (unsigned i = 0; i < residueCount; ++i) {
        residues[i].setRelativeAsa(standards);
    }
}

void cPdbPeptide::setAccessibleSurfaceArea(double probeRadius, double zSlice, eAsaForm form) {
    calculateAreas(form, atoms.data(), static_cast<unsigned>(atoms.size()), maxPoint, minPoint,
                   probeRadius, zSlice);
    inParallel(residues.size(), residuesPerTask, [&](std::size_t i) {
        if (residues[i].residueType != eResidueType::other) {
            residues[i].setAsa();
        }
    });
    // Summed up in file order, so that the number of threads cannot move a last digit.
    clearAreas(*this);
    for (const cChainResidue& residue : residues) {
        if (residue.residueType != eResidueType::other) {
            addAreas(*this, residue);
        }
    }
    for (cProteinChain& chain : chains) {
        chain.setASASummingResidueAsa();
        chain.noteAreas(cProteinChain::eAreas::ofComplex, probeRadius, zSlice, form);
        chain.holdsDepthOfComplex = false;
    }
}

void cPdbPeptide::setAccessibleSurfaceAreaUnbound(double probeRadius, double zSlice,
                                                  eAsaForm form) {
    using enum cProteinChain::eAreas;
    clearAreas(*this);
    // Most atoms of a complex have the same area in their chain alone.
    const bool isComplex = std::ranges::any_of(chains, [&](const cProteinChain& chain) {
        return chain.holds(ofComplex, probeRadius, zSlice, form);
    });
    const auto others = std::make_unique<bool[]>(atoms.size());
    if (isComplex) {
        markWhereChainsMatter(*this, probeRadius, others.get());
    }
    inParallel(chains.size(), 1, [&](std::size_t i) {
        cProteinChain& chain = chains[i];
        if (chain.holds(ofComplex, probeRadius, zSlice, form)) {
            calculateAsaOfMarked(chain.atoms, chain.atomCount, chain.maxPoint, chain.minPoint,
                                 probeRadius, zSlice, form,
                                 others.get() + (chain.atoms - atoms.data()));
            chain.sumUpUnboundAreas(probeRadius, zSlice, form);
        } else if (!chain.holds(ofChainAlone, probeRadius, zSlice, form)) {
            chain.setAccessibleSurfaceArea(probeRadius, zSlice, form);
        }
    });
}

void cPdbPeptide::setRelativeAccessibleSurfaceArea(const std::map<std::string, sAsa>& standards) {
    for (cChainResidue& residue : residues) {
        if (residue.residueType != eResidueType::other) {
            residue.setRelativeAsa(standards);
        }
    }
}

void cPdbPeptide::setHydrophobicity(std::map<std::string, double> scale) {
    for (cChainResidue& residue : residues) {
        if (residue.residueType != eResidueType::other) {
            residue.setHydrophobicity(scale);
        }
    }
}

} // namespace kelmo
