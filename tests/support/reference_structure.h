// Plain structure records and the line-by-line PDB reader of the slow reference implementation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace kelmo {

// The reference implementation repeats every calculation of the program in the most obvious way,
// on its own records and without any file of the program, so that a fault in the program's model
// or neighbour search cannot hide in both. Build it without contraction of floating-point
// expressions (-ffp-contract=off): the tests compare its texts byte by byte.
namespace reference {

// Corner or centre in ångström.
struct sPoint {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

// Five-way block of surface areas in Å² (or of percentages), in the order of every such block.
struct sAreas {
    double total = 0.0;
    double sideChain = 0.0;
    double backbone = 0.0;
    double polar = 0.0;
    double nonPolar = 0.0;
};

// One atom; lengths in ångström, the radius without the probe.
struct sAtom {
    std::string name;
    std::string serial;
    double asa = 0.0;
    double protrusionIndex = 0.0;
    double depthIndex = 0.0;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double radius = 0.0;
    double zMax = 0.0; // z + radius
    double zMin = 0.0; // z - radius
};

// Residue statistics of one atom value; -1 until computed.
struct sStatistics {
    double maximum = -1.0;
    double minimum = -1.0;
    double average = -1.0;
    double deviation = -1.0;
    double averageSideChain = -1.0;
    double sideChainDeviation = -1.0;
};

// One residue: a window into the structure's atoms. Areas are -1 until computed.
struct sResidue {
    int type = 0; // 0 other, 1 nucleic acid, 2 amino acid
    std::string name;
    std::string number;
    std::size_t firstAtom = 0;
    std::size_t atomCount = 0;
    sAreas areas{-1.0, -1.0, -1.0, -1.0, -1.0};
    sAreas relativeAreas{-1.0, -1.0, -1.0, -1.0, -1.0};
    sStatistics protrusion;
    sStatistics depth;
    double hydrophobicity = 0.0;
    bool isBinding = false;
};

// One chain: a window into the structure's residues and atoms.
struct sChain {
    std::string chainId; // "*" for a blank id
    std::size_t firstResidue = 0;
    std::size_t residueCount = 0;
    std::size_t firstAtom = 0;
    std::size_t atomCount = 0;
    sAreas areas;
};

// One file. The windows are indices, so a copy of the structure is a deep copy.
struct sStructure {
    std::string name;
    std::vector<sAtom> atoms;
    std::vector<sAtom> heteroAtoms; // copper, iron, magnesium and zinc only
    std::vector<sResidue> residues;
    std::vector<sChain> chains;
    sAreas areas;

    std::span<sAtom> atomsOf(const sResidue& residue);
    std::span<const sAtom> atomsOf(const sResidue& residue) const;
    std::span<sAtom> atomsOf(const sChain& chain);
    std::span<sResidue> residuesOf(const sChain& chain);
    std::span<const sResidue> residuesOf(const sChain& chain) const;
};

// An atom with zMax and zMin derived from z and the radius.
sAtom makeAtom(const std::string& name, const std::string& serial, double x, double y, double z,
               double radius);

// Distance of the centres: the root of the squares summed in the order x, y, z.
double centreDistance(const sAtom& a, const sAtom& b);

// True when the centres are at most range apart and not at the same place.
bool isInRangeByCentre(const sAtom& a, const sAtom& b, double range);

// True when spheres enlarged by probe touch or overlap and the centres are not at the same place.
bool doSpheresIntersect(const sAtom& a, const sAtom& b, double enlargement);

// Removes leading and trailing blanks and tabs, nothing else.
std::string trimmed(const std::string& text);

// Equality after tolower of every character.
bool isEqualIgnoringCase(const std::string& a, const std::string& b);

// True when the whole text is an optional sign, digits, an optional point and at least one digit.
bool isPlainNumber(const std::string& text);

// Reads PDB text. errorLine becomes 0, or the 1-based number of the line that stopped reading; the
// structure must not be used then. missing receives each "RES_ATOM" key that radii lacks.
sStructure readStructure(const std::string& pdbText, const std::map<std::string, double>& radii,
                         std::set<std::string>& missing, int& errorLine);

} // namespace reference

} // namespace kelmo
