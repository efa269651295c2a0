// Depth and protrusion statistics of residues, and the chain- and structure-wide operations on
// them.
#include "base/in_parallel.h"
#include "geometry/atom_space_calculations.h"
#include "model/pdb_peptide.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kelmo {

namespace {

/// Where the six statistics of one atom quantity live in a residue.
struct sStatisticFields {
    double cResidueAtom::*value;
    double cChainResidue::*maximum;
    double cChainResidue::*minimum;
    double cChainResidue::*average;
    double cChainResidue::*deviation;
    double cChainResidue::*sideChainAverage;
    double cChainResidue::*sideChainDeviation;
};

constexpr sStatisticFields depthFields{&cResidueAtom::depthIndex,
                                       &cChainResidue::maxDepthIndex,
                                       &cChainResidue::minDepthIndex,
                                       &cChainResidue::averageDepthIndex,
                                       &cChainResidue::depthIndexDeviation,
                                       &cChainResidue::averageSideChainDepthIndex,
                                       &cChainResidue::sideChainDepthIndexDeviation};

constexpr sStatisticFields protrusionFields{&cResidueAtom::protrusionIndex,
                                            &cChainResidue::maxProtrusionIndex,
                                            &cChainResidue::minProtrusionIndex,
                                            &cChainResidue::averageProtrusionIndex,
                                            &cChainResidue::protrusionIndexDeviation,
                                            &cChainResidue::averageSideChainProtrusionIndex,
                                            &cChainResidue::sideChainProtrusionIndexDeviation};

unsigned backboneCount(const cChainResidue& residue) {
    return residue.residueType == eResidueType::nucleicAcid ? 3 : 4;
}

bool isSideChain(const cChainResidue& residue, unsigned i) {
    return i >= backboneCount(residue) && residue.atoms[i].atomName != "OXT";
}

/// What side-chain sums are divided by. Only a last "OXT" lessens it: one elsewhere is left out of
/// the sums but still counted here. Wraps for a residue shorter than its backbone, whose sums are
/// 0.
unsigned sideChainDivisor(const cChainResidue& residue) {
    const bool lastIsOxt = residue.atoms[residue.atomCount - 1].atomName == "OXT";
    return residue.atomCount - backboneCount(residue) - (lastIsOxt ? 1U : 0U);
}

void setDeviations(cChainResidue& residue, const sStatisticFields& fields) {
    if (residue.atomCount == 0) {
        return;
    }
    double sum = 0.0;
    double sideChainSum = 0.0;
    for (unsigned i = 0; i < residue.atomCount; ++i) {
        const double value = residue.atoms[i].*fields.value;
        const double difference = value - residue.*fields.average;
        sum += difference * difference;
        if (isSideChain(residue, i)) {
            const double sideChainDifference = value - residue.*fields.sideChainAverage;
            sideChainSum += sideChainDifference * sideChainDifference;
        }
    }
    residue.*fields.deviation = std::sqrt(sum / residue.atomCount);
    const unsigned divisor = sideChainDivisor(residue);
    if (divisor != 0) {
        residue.*fields.sideChainDeviation = std::sqrt(sideChainSum / divisor);
    }
}

void setStatistics(cChainResidue& residue, const sStatisticFields& fields) {
    if (residue.atomCount == 0) {
        return;
    }
    const double first = residue.atoms[0].*fields.value;
    double sum = first;
    double sideChainSum = 0.0;
    double maximum = first;
    double minimum = first;
    for (unsigned i = 1; i < residue.atomCount; ++i) {
        const double value = residue.atoms[i].*fields.value;
        sum += value;
        if (isSideChain(residue, i)) {
            sideChainSum += value;
        }
        maximum = std::max(maximum, value);
        minimum = std::min(minimum, value);
    }
    const unsigned divisor = sideChainDivisor(residue);
    residue.*fields.maximum = maximum;
    residue.*fields.minimum = minimum;
    residue.*fields.average = sum / residue.atomCount;
    residue.*fields.deviation = 0.0;
    residue.*fields.sideChainAverage = divisor == 0 ? 0.0 : sideChainSum / divisor;
    residue.*fields.sideChainDeviation = 0.0;
    setDeviations(residue, fields);
}

} // namespace

void cChainResidue::setDepthIndex() {
    setStatistics(*this, depthFields);
}

void cChainResidue::setDepthIndexDeviation() {
    setDeviations(*this, depthFields);
}

void cChainResidue::setProtrusionIndex() {
    setStatistics(*this, protrusionFields);
}

void cChainResidue::setProtrusionIndexDeviation() {
    setDeviations(*this, protrusionFields);
}

void cProteinChain::setDepthIndex() {
    holdsDepthOfComplex = false;
    calculateAtomDepthIndex(atoms, atomCount);
    inParallel(residueCount, residuesPerTask, [&](std::size_t i) { residues[i].setDepthIndex(); });
}

void cProteinChain::setProtrusionIndex(double sphereRadius, double atomVolume) {
    heldSphereRadius = std::numeric_limits<double>::quiet_NaN();
    calculateAtomProtrusionIndex(atoms, atomCount, maxPoint, minPoint, sphereRadius, atomVolume);
    inParallel(residueCount, residuesPerTask,
               [&](std::size_t i) { residues[i].setProtrusionIndex(); });
}

void cPdbPeptide::setDepthIndex() {
    calculateAtomDepthIndex(atoms.data(), static_cast<unsigned>(atoms.size()));
    inParallel(residues.size(), residuesPerTask, [&](std::size_t i) {
        if (residues[i].residueType != eResidueType::other) {
            residues[i].setDepthIndex();
        }
    });
    for (cProteinChain& chain : chains) {
        chain.holdsDepthOfComplex = true;
    }
}

void cPdbPeptide::setDepthIndexUnbound() {
    if (isOneChain() && chains[0].holdsDepthOfComplex) {
        inParallel(residues.size(), residuesPerTask,
                   [&](std::size_t i) { residues[i].setDepthIndex(); });
        return;
    }
    inParallel(chains.size(), 1, [&](std::size_t i) { chains[i].setDepthIndex(); });
}

void cPdbPeptide::setProtrusionIndex(double sphereRadius, double atomVolume) {
    calculateAtomProtrusionIndex(atoms.data(), static_cast<unsigned>(atoms.size()), maxPoint,
                                 minPoint, sphereRadius, atomVolume);
    inParallel(residues.size(), residuesPerTask, [&](std::size_t i) {
        if (residues[i].residueType != eResidueType::other) {
            residues[i].setProtrusionIndex();
        }
    });
    for (cProteinChain& chain : chains) {
        chain.heldSphereRadius = sphereRadius;
        chain.heldAtomVolume = atomVolume;
    }
}

void cPdbPeptide::setProtrusionIndexUnbound(double sphereRadius, double atomVolume) {
    if (isOneChain() && chains[0].heldSphereRadius == sphereRadius &&
        chains[0].heldAtomVolume == atomVolume) {
        inParallel(residues.size(), residuesPerTask,
                   [&](std::size_t i) { residues[i].setProtrusionIndex(); });
        return;
    }
    inParallel(chains.size(), 1,
               [&](std::size_t i) { chains[i].setProtrusionIndex(sphereRadius, atomVolume); });
}

} // namespace kelmo
