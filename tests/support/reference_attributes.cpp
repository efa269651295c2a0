#include "tests/support/reference_attributes.h"

#include "tests/support/reference_surface.h"

#include <cmath>
#include <cstdint>

namespace kelmo {

namespace reference {

void setAtomDepths(std::span<sAtom> atoms) {
    std::vector<sAtom> surface;
    for (sAtom& atom : atoms) {
        if (atom.asa != 0.0) {
            atom.depthIndex = 0.0;
            surface.push_back(atom);
        }
    }
    if (surface.empty()) {
        return;
    }
    for (sAtom& atom : atoms) {
        if (atom.asa != 0.0) {
            continue;
        }
        double best = 9999999.0;
        bool isFound = false;
        for (const sAtom& other : surface) {
            const double distance = centreDistance(atom, other);
            if (distance == 0.0) {
                continue;
            }
            isFound = true;
            if (distance < best) {
                best = distance;
            }
        }
        atom.depthIndex = isFound ? best : 0.0;
    }
}

void setAtomProtrusions(std::span<sAtom> atoms, double sphereRadius, double atomVolume) {
    const double sphereVolume = std::pow(sphereRadius, 3.0) * 4.1887902047863905; // 4 pi / 3
    for (sAtom& atom : atoms) {
        std::uint32_t neighbourCount = 0;
        for (const sAtom& other : atoms) {
            if (isInRangeByCentre(atom, other, sphereRadius)) {
                ++neighbourCount;
            }
        }
        double occupied = neighbourCount * atomVolume;
        if (occupied > sphereVolume) {
            occupied = sphereVolume;
        }
        atom.protrusionIndex = (sphereVolume - occupied) / occupied;
    }
}

std::vector<double> atomDepths(std::vector<sAtom> atoms) {
    setAtomDepths(atoms);
    std::vector<double> depths;
    for (const sAtom& atom : atoms) {
        depths.push_back(atom.depthIndex);
    }
    return depths;
}

std::vector<double> atomProtrusions(std::vector<sAtom> atoms, double sphereRadius,
                                    double atomVolume) {
    setAtomProtrusions(atoms, sphereRadius, atomVolume);
    std::vector<double> protrusions;
    for (const sAtom& atom : atoms) {
        protrusions.push_back(atom.protrusionIndex);
    }
    return protrusions;
}

namespace {

void setDeviations(sStatistics& statistics, std::span<const sAtom> atoms, double sAtom::*value,
                   std::uint32_t backboneCount, std::uint32_t sideDivisor) {
    double sum = 0.0;
    double sideSum = 0.0;
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        const double difference = atoms[i].*value - statistics.average;
        sum = sum + difference * difference;
        if (i >= backboneCount && atoms[i].name != "OXT") {
            const double sideDifference = atoms[i].*value - statistics.averageSideChain;
            sideSum = sideSum + sideDifference * sideDifference;
        }
    }
    statistics.deviation = std::sqrt(sum / static_cast<double>(atoms.size()));
    if (sideDivisor != 0) {
        statistics.sideChainDeviation = std::sqrt(sideSum / sideDivisor);
    }
}

} // namespace

sStatistics residueStatistics(std::span<const sAtom> atoms, int residueType, double sAtom::*value,
                              const sStatistics& previous) {
    if (atoms.empty()) {
        return previous;
    }
    const std::uint32_t backboneCount = residueType == 1 ? 3 : 4;
    // Wraps for a residue smaller than its backbone; its side-chain sums are 0 anyway.
    const std::uint32_t sideCount = static_cast<std::uint32_t>(atoms.size()) - backboneCount;
    const std::uint32_t finalOxtCount = atoms.back().name == "OXT" ? 1 : 0;
    const std::uint32_t sideDivisor = sideCount - finalOxtCount;
    const double first = atoms.front().*value;
    sStatistics statistics{first, first, first, 0.0, 0.0, 0.0};
    for (std::size_t i = 1; i < atoms.size(); ++i) {
        const double current = atoms[i].*value;
        statistics.average = statistics.average + current;
        if (i >= backboneCount && atoms[i].name != "OXT") {
            statistics.averageSideChain = statistics.averageSideChain + current;
        }
        if (current > statistics.maximum) {
            statistics.maximum = current;
        }
        if (current < statistics.minimum) {
            statistics.minimum = current;
        }
    }
    statistics.average = statistics.average / static_cast<double>(atoms.size());
    if (sideCount == finalOxtCount) {
        statistics.averageSideChain = 0.0;
    } else {
        statistics.averageSideChain = statistics.averageSideChain / sideDivisor;
    }
    setDeviations(statistics, atoms, value, backboneCount, sideDivisor);
    return statistics;
}

namespace {

bool isBackboneName(const std::string& name) {
    return name == "N" || name == "NXT" || name == "O" || name == "OXT" || name == "O1P" ||
           name == "O2P" || name == "CA" || name == "C" || name.compare(0, 1, "P") == 0;
}

void addAreas(sAreas& sum, const sAreas& part) {
    sum.total = sum.total + part.total;
    sum.sideChain = sum.sideChain + part.sideChain;
    sum.backbone = sum.backbone + part.backbone;
    sum.polar = sum.polar + part.polar;
    sum.nonPolar = sum.nonPolar + part.nonPolar;
}

} // namespace

sAreas areasOf(std::span<const sAtom> atoms) {
    sAreas sum;
    for (const sAtom& atom : atoms) {
        const bool isPolar = !atom.name.empty() && (atom.name[0] == 'N' || atom.name[0] == 'O');
        sum.total = sum.total + atom.asa;
        double& polarity = isPolar ? sum.polar : sum.nonPolar;
        polarity = polarity + atom.asa;
        double& part = isBackboneName(atom.name) ? sum.backbone : sum.sideChain;
        part = part + atom.asa;
    }
    return sum;
}

void setBoundAreas(sStructure& structure, double probeRadius, double zSlice) {
    setAtomAreas(structure.atoms, probeRadius, zSlice);
    structure.areas = sAreas{};
    for (sResidue& residue : structure.residues) {
        if (residue.type != 0) {
            residue.areas = areasOf(structure.atomsOf(residue));
            addAreas(structure.areas, residue.areas);
        }
    }
    for (sChain& chain : structure.chains) {
        chain.areas = sAreas{};
        for (const sResidue& residue : structure.residuesOf(chain)) {
            addAreas(chain.areas, residue.areas);
        }
    }
}

void setChainAloneAreas(sStructure& structure, sChain& chain, double probeRadius, double zSlice) {
    chain.areas = sAreas{};
    setAtomAreas(structure.atomsOf(chain), probeRadius, zSlice);
    for (sResidue& residue : structure.residuesOf(chain)) {
        residue.areas = areasOf(structure.atomsOf(residue));
        addAreas(chain.areas, residue.areas);
    }
}

void setUnboundAreas(sStructure& structure, double probeRadius, double zSlice) {
    structure.areas = sAreas{};
    for (sChain& chain : structure.chains) {
        setChainAloneAreas(structure, chain, probeRadius, zSlice);
    }
}

void setRelativeAreas(sResidue& residue, const std::map<std::string, sAreas>& standards) {
    const auto found = standards.find(residue.name);
    if (found == standards.end()) {
        return;
    }
    const sAreas& standard = found->second;
    sAreas& relative = residue.relativeAreas;
    relative.total = residue.areas.total / standard.total * 100;
    relative.sideChain =
        standard.sideChain != 0.0 ? residue.areas.sideChain / standard.sideChain * 100 : 0.0;
    relative.backbone = residue.areas.backbone / standard.backbone * 100;
    relative.polar = residue.areas.polar / standard.polar * 100;
    relative.nonPolar = residue.areas.nonPolar / standard.nonPolar * 100;
}

void setRelativeAreas(sStructure& structure, const std::map<std::string, sAreas>& standards) {
    for (sResidue& residue : structure.residues) {
        if (residue.type != 0) {
            setRelativeAreas(residue, standards);
        }
    }
}

void setRelativeAreas(sStructure& structure, const sChain& chain,
                      const std::map<std::string, sAreas>& standards) {
    for (sResidue& residue : structure.residuesOf(chain)) {
        setRelativeAreas(residue, standards);
    }
}

namespace {

void setDepthStatistics(const sStructure& structure, sResidue& residue) {
    residue.depth = residueStatistics(structure.atomsOf(residue), residue.type, &sAtom::depthIndex,
                                      residue.depth);
}

void setProtrusionStatistics(const sStructure& structure, sResidue& residue) {
    residue.protrusion = residueStatistics(structure.atomsOf(residue), residue.type,
                                           &sAtom::protrusionIndex, residue.protrusion);
}

} // namespace

void setDepths(sStructure& structure) {
    setAtomDepths(structure.atoms);
    for (sResidue& residue : structure.residues) {
        if (residue.type != 0) {
            setDepthStatistics(structure, residue);
        }
    }
}

void setDepths(sStructure& structure, const sChain& chain) {
    setAtomDepths(structure.atomsOf(chain));
    for (sResidue& residue : structure.residuesOf(chain)) {
        setDepthStatistics(structure, residue);
    }
}

void setProtrusions(sStructure& structure, double sphereRadius, double atomVolume) {
    setAtomProtrusions(structure.atoms, sphereRadius, atomVolume);
    for (sResidue& residue : structure.residues) {
        if (residue.type != 0) {
            setProtrusionStatistics(structure, residue);
        }
    }
}

void setProtrusions(sStructure& structure, const sChain& chain, double sphereRadius,
                    double atomVolume) {
    setAtomProtrusions(structure.atomsOf(chain), sphereRadius, atomVolume);
    for (sResidue& residue : structure.residuesOf(chain)) {
        setProtrusionStatistics(structure, residue);
    }
}

void setHydrophobicity(sStructure& structure, const std::map<std::string, double>& scale) {
    for (sResidue& residue : structure.residues) {
        const auto found = scale.find(residue.name);
        if (residue.type != 0 && found != scale.end()) {
            residue.hydrophobicity = found->second;
        }
    }
}

} // namespace reference

} // namespace kelmo
