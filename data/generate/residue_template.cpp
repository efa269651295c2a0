#include "data/generate/residue_template.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <numbers>

namespace kelmo {

namespace {

double cosineOfDegrees(double angle) {
    return std::cos(angle * std::numbers::pi / 180.0);
}
double sineOfDegrees(double angle) {
    return std::sin(angle * std::numbers::pi / 180.0);
}

/// The torsion, in degrees, between two atoms bonded to the same centre, seen along the bond from a
/// third atom to that centre: from the angles third - centre - first, third - centre - second and
/// first - centre - second by the law of cosines of the sphere. Without its sign.
double branchTorsion(double firstAngle, double secondAngle, double betweenAngle) {
    const double cosine = (cosineOfDegrees(betweenAngle) -
                           cosineOfDegrees(firstAngle) * cosineOfDegrees(secondAngle)) /
                          (sineOfDegrees(firstAngle) * sineOfDegrees(secondAngle));
    return std::acos(cosine) * 180.0 / std::numbers::pi;
}

/// CB of an L-amino acid: seen along N - CA it stands anticlockwise of C.
sSideChainAtom betaCarbon(double bondLength, double nCaCb, double cCaCb, double nCaC) {
    return {"CB", "CA", "N", "C", bondLength, nCaCb, -branchTorsion(nCaC, nCaCb, cCaCb)};
}

/// CB with one further heavy atom.
sSideChainAtom plainBetaCarbon() {
    return betaCarbon(1.530, 110.5, 110.1, 111.2);
}

/// CB with two further heavy atoms.
sSideChainAtom branchedBetaCarbon() {
    return betaCarbon(1.540, 111.5, 109.1, 111.2);
}

sResidueTemplate alanine() {
    return {"ALA", {}, {betaCarbon(1.521, 110.4, 110.5, 111.2)}, {}};
}

sResidueTemplate arginine() {
    return {"ARG",
            {},
            {plainBetaCarbon(),
             {"CG", "CB", "CA", "N", 1.520, 114.1, -67.0},
             {"CD", "CG", "CB", "CA", 1.520, 111.3, 180.0},
             {"NE", "CD", "CG", "CB", 1.460, 112.0, 180.0},
             {"CZ", "NE", "CD", "CG", 1.329, 124.2, 180.0},
             {"NH1", "CZ", "NE", "CD", 1.326, 120.0, 0.0},
             {"NH2", "CZ", "NE", "CD", 1.326, 120.0, 180.0}},
            {}};
}

sResidueTemplate asparagine() {
    return {"ASN",
            {},
            {plainBetaCarbon(),
             {"CG", "CB", "CA", "N", 1.516, 112.6, -177.0},
             {"OD1", "CG", "CB", "CA", 1.231, 120.8, 30.0},
             {"ND2", "CG", "CB", "OD1", 1.328, 116.4, 180.0}},
            {}};
}

sResidueTemplate asparticAcid() {
    return {"ASP",
            {},
            {plainBetaCarbon(),
             {"CG", "CB", "CA", "N", 1.516, 112.6, -177.0},
             {"OD1", "CG", "CB", "CA", 1.249, 118.4, 0.0},
             {"OD2", "CG", "CB", "OD1", 1.249, 118.4, 180.0}},
            {}};
}

sResidueTemplate cysteine() {
    return {"CYS", {}, {plainBetaCarbon(), {"SG", "CB", "CA", "N", 1.808, 114.4, -65.0}}, {}};
}

sResidueTemplate glutamine() {
    return {"GLN",
            {},
            {plainBetaCarbon(),
             {"CG", "CB", "CA", "N", 1.520, 114.1, -67.0},
             {"CD", "CG", "CB", "CA", 1.516, 112.6, 180.0},
             {"OE1", "CD", "CG", "CB", 1.231, 120.8, -25.0},
             {"NE2", "CD", "CG", "OE1", 1.328, 116.4, 180.0}},
            {}};
}

sResidueTemplate glutamicAcid() {
    return {"GLU",
            {},
            {plainBetaCarbon(),
             {"CG", "CB", "CA", "N", 1.520, 114.1, -67.0},
             {"CD", "CG", "CB", "CA", 1.516, 112.6, 180.0},
             {"OE1", "CD", "CG", "CB", 1.249, 118.4, -10.0},
             {"OE2", "CD", "CG", "OE1", 1.249, 118.4, 180.0}},
            {}};
}

sResidueTemplate glycine() {
    sResidueTemplate residue{"GLY", {}, {}, {}};
    residue.backbone.nToCa = 1.451;
    residue.backbone.caToC = 1.516;
    residue.backbone.previousCNCa = 120.6;
    residue.backbone.nCaC = 112.5;
    return residue;
}

/// The neutral form with its hydrogen on NE2.
sResidueTemplate histidine() {
    return {"HIS",
            {},
            {plainBetaCarbon(),
             {"CG", "CB", "CA", "N", 1.497, 113.8, -65.0},
             {"ND1", "CG", "CB", "CA", 1.371, 121.6, -70.0},
             {"CD2", "CG", "CB", "ND1", 1.356, 129.1, 180.0},
             {"CE1", "ND1", "CG", "CB", 1.319, 105.6, 180.0},
             {"NE2", "CD2", "CG", "CB", 1.374, 106.5, 180.0}},
            {{"CE1", "NE2"}}};
}

sResidueTemplate isoleucine() {
    return {"ILE",
            {},
            {branchedBetaCarbon(),
             {"CG1", "CB", "CA", "N", 1.530, 110.4, -65.0},
             {"CG2", "CB", "CA", "CG1", 1.521, 110.5, -branchTorsion(110.4, 110.5, 110.7)},
             {"CD1", "CG1", "CB", "CA", 1.513, 113.8, 170.0}},
            {}};
}

sResidueTemplate leucine() {
    return {"LEU",
            {},
            {plainBetaCarbon(),
             {"CG", "CB", "CA", "N", 1.530, 116.3, -65.0},
             {"CD1", "CG", "CB", "CA", 1.521, 110.7, 175.0},
             {"CD2", "CG", "CB", "CD1", 1.521, 110.7, branchTorsion(110.7, 110.7, 110.8)}},
            {}};
}

sResidueTemplate lysine() {
    return {"LYS",
            {},
            {plainBetaCarbon(),
             {"CG", "CB", "CA", "N", 1.520, 114.1, -67.0},
             {"CD", "CG", "CB", "CA", 1.520, 111.3, 180.0},
             {"CE", "CD", "CG", "CB", 1.520, 111.3, 180.0},
             {"NZ", "CE", "CD", "CG", 1.489, 111.9, 180.0}},
            {}};
}

sResidueTemplate methionine() {
    return {"MET",
            {},
            {plainBetaCarbon(),
             {"CG", "CB", "CA", "N", 1.520, 114.1, -65.0},
             {"SD", "CG", "CB", "CA", 1.803, 112.7, -65.0},
             {"CE", "SD", "CG", "CB", 1.791, 100.9, -70.0}},
            {}};
}

sResidueTemplate phenylalanine() {
    return {"PHE",
            {},
            {plainBetaCarbon(),
             {"CG", "CB", "CA", "N", 1.502, 113.8, -65.0},
             {"CD1", "CG", "CB", "CA", 1.384, 120.7, -85.0},
             {"CD2", "CG", "CB", "CD1", 1.384, 120.7, 180.0},
             {"CE1", "CD1", "CG", "CB", 1.382, 120.7, 180.0},
             {"CE2", "CD2", "CG", "CB", 1.382, 120.7, 180.0},
             {"CZ", "CE1", "CD1", "CG", 1.382, 120.0, 0.0}},
            {{"CE2", "CZ"}}};
}

/// The ring with its gamma carbon on the side of the carbonyl (endo). With these two torsions the
/// ring closes with the standard length of N - CD and with its angles at N and CD within half a
/// degree of the standard ones.
sResidueTemplate proline() {
    sResidueTemplate residue{"PRO",
                             {},
                             {betaCarbon(1.530, 103.0, 110.1, 111.8),
                              {"CG", "CB", "CA", "N", 1.492, 104.5, 28.0},
                              {"CD", "CG", "CB", "CA", 1.503, 106.1, -33.25}},
                             {{"CD", "N"}}};
    residue.backbone.previousCToN = 1.341;
    residue.backbone.nToCa = 1.466;
    residue.backbone.previousCaCN = 116.9;
    residue.backbone.previousCaCO = 121.1;
    residue.backbone.previousCNCa = 122.6;
    residue.backbone.nCaC = 111.8;
    residue.backbone.extendedPhi = -70.0;
    return residue;
}

sResidueTemplate serine() {
    return {"SER", {}, {plainBetaCarbon(), {"OG", "CB", "CA", "N", 1.417, 111.1, 62.0}}, {}};
}

sResidueTemplate threonine() {
    return {"THR",
            {},
            {branchedBetaCarbon(),
             {"OG1", "CB", "CA", "N", 1.433, 109.6, 62.0},
             {"CG2", "CB", "CA", "OG1", 1.521, 110.5, -branchTorsion(109.6, 110.5, 109.3)}},
            {}};
}

sResidueTemplate tryptophan() {
    return {"TRP",
            {},
            {plainBetaCarbon(),
             {"CG", "CB", "CA", "N", 1.498, 113.6, -65.0},
             {"CD1", "CG", "CB", "CA", 1.365, 126.9, 95.0},
             {"CD2", "CG", "CB", "CD1", 1.433, 126.8, 180.0},
             {"NE1", "CD1", "CG", "CB", 1.374, 110.2, 180.0},
             {"CE2", "CD2", "CG", "CB", 1.409, 107.2, 180.0},
             {"CE3", "CD2", "CG", "CB", 1.398, 133.9, 0.0},
             {"CZ2", "CE2", "CD2", "CG", 1.394, 122.4, 180.0},
             {"CZ3", "CE3", "CD2", "CG", 1.382, 118.6, 180.0},
             {"CH2", "CZ2", "CE2", "CD2", 1.368, 117.5, 0.0}},
            {{"NE1", "CE2"}, {"CZ3", "CH2"}}};
}

sResidueTemplate tyrosine() {
    return {"TYR",
            {},
            {plainBetaCarbon(),
             {"CG", "CB", "CA", "N", 1.512, 113.9, -65.0},
             {"CD1", "CG", "CB", "CA", 1.389, 120.8, -85.0},
             {"CD2", "CG", "CB", "CD1", 1.389, 120.8, 180.0},
             {"CE1", "CD1", "CG", "CB", 1.382, 121.2, 180.0},
             {"CE2", "CD2", "CG", "CB", 1.382, 121.2, 180.0},
             {"CZ", "CE1", "CD1", "CG", 1.378, 119.6, 0.0},
             {"OH", "CZ", "CE1", "CD1", 1.376, 119.9, 180.0}},
            {{"CE2", "CZ"}}};
}

sResidueTemplate valine() {
    return {"VAL",
            {},
            {branchedBetaCarbon(),
             {"CG1", "CB", "CA", "N", 1.521, 110.5, 175.0},
             {"CG2", "CB", "CA", "CG1", 1.521, 110.5, branchTorsion(110.5, 110.5, 110.8)}},
            {}};
}

} // namespace

const std::vector<sResidueTemplate>& residueTemplates() {
    static const std::vector<sResidueTemplate> templates{
        alanine(),   arginine(),     asparagine(), asparticAcid(),  cysteine(),
        glutamine(), glutamicAcid(), glycine(),    histidine(),     isoleucine(),
        leucine(),   lysine(),       methionine(), phenylalanine(), proline(),
        serine(),    threonine(),    tryptophan(), tyrosine(),      valine()};
    return templates;
}

const sResidueTemplate& residueTemplate(const std::string& name) {
    const auto found = std::find_if(residueTemplates().begin(), residueTemplates().end(),
                                    [&](const auto& residue) { return residue.name == name; });
    assert(found != residueTemplates().end());
    return *found;
}

std::vector<std::string> heavyAtomNames(const sResidueTemplate& residue) {
    std::vector<std::string> names{"N", "CA", "C", "O"};
    for (const sSideChainAtom& atom : residue.sideChain) {
        names.push_back(atom.name);
    }
    return names;
}

std::vector<std::string> bondedAtoms(const sResidueTemplate& residue, const std::string& atom) {
    std::vector<std::pair<std::string, std::string>> bonds{{"N", "CA"}, {"CA", "C"}, {"C", "O"}};
    for (const sSideChainAtom& placed : residue.sideChain) {
        bonds.emplace_back(placed.bondedTo, placed.name);
    }
    bonds.insert(bonds.end(), residue.ringClosures.begin(), residue.ringClosures.end());

    std::vector<std::string> partners;
    for (const auto& [first, second] : bonds) {
        if (first == atom) {
            partners.push_back(second);
        } else if (second == atom) {
            partners.push_back(first);
        }
    }
    return partners;
}

} // namespace kelmo
