#include "data/generate/tripeptide.h"

#include "data/generate/residue_template.h"
#include "model/residue_atom.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <map>
#include <numbers>
#include <vector>

namespace kelmo {

namespace {

/// Psi of the antiparallel pleated sheet and omega of a trans peptide bond, degrees.
constexpr double extendedPsi = 135.0;
constexpr double transOmega = 180.0;

/// Carbonyl C - O, and C - O and CA - C - O of a carboxylate. Å and degrees.
constexpr double carbonylLength = 1.231;
constexpr double carboxylateLength = 1.249;
constexpr double carboxylateAngle = 118.4;

using atomPlaces = std::map<std::string, sPoint>;

sPoint difference(const sPoint& a, const sPoint& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

double dotProduct(const sPoint& a, const sPoint& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

sPoint crossProduct(const sPoint& a, const sPoint& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

sPoint unitVector(const sPoint& a) {
    const double length = std::sqrt(dotProduct(a, a));
    return {a.x / length, a.y / length, a.z / length};
}

/// The point at `length` Å from c, with the angle b - c - point and the torsion a - b - c - point
/// in degrees. The three points must not lie on a line.
sPoint place(const sPoint& a, const sPoint& b, const sPoint& c, double length, double angle,
             double torsion) {
    const double bend = angle * std::numbers::pi / 180.0;
    const double turn = torsion * std::numbers::pi / 180.0;
    const sPoint along = unitVector(difference(c, b));
    const sPoint normal = unitVector(crossProduct(difference(b, a), along));
    const sPoint inPlane = crossProduct(normal, along);
    const double forward = -length * std::cos(bend);
    const double sideways = length * std::sin(bend) * std::cos(turn);
    const double upwards = length * std::sin(bend) * std::sin(turn);
    return {c.x + forward * along.x + sideways * inPlane.x + upwards * normal.x,
            c.y + forward * along.y + sideways * inPlane.y + upwards * normal.y,
            c.z + forward * along.z + sideways * inPlane.z + upwards * normal.z};
}

/// N, CA and C of the first residue: somewhere, for the molecule is turned at the end.
atomPlaces firstBackbone(const sBackboneGeometry& geometry) {
    const double angle = geometry.nCaC * std::numbers::pi / 180.0;
    const sPoint n{-geometry.nToCa, 0.0, 0.0};
    const sPoint c{-geometry.caToC * std::cos(angle), geometry.caToC * std::sin(angle), 0.0};
    return {{"N", n}, {"CA", {}}, {"C", c}};
}

/// N, CA and C of the residue after `previous`.
atomPlaces nextBackbone(const atomPlaces& previous, const sBackboneGeometry& geometry) {
    const sPoint& previousCa = previous.at("CA");
    const sPoint& previousC = previous.at("C");
    const sPoint n = place(previous.at("N"), previousCa, previousC, geometry.previousCToN,
                           geometry.previousCaCN, extendedPsi);
    const sPoint ca =
        place(previousCa, previousC, n, geometry.nToCa, geometry.previousCNCa, transOmega);
    const sPoint c = place(previousC, n, ca, geometry.caToC, geometry.nCaC, geometry.extendedPhi);
    return {{"N", n}, {"CA", ca}, {"C", c}};
}

/// Oxygen in the plane of the peptide group, opposite to the nitrogen of the next residue.
void addCarbonyl(atomPlaces& places, const sBackboneGeometry& next) {
    places["O"] = place(places.at("N"), places.at("CA"), places.at("C"), carbonylLength,
                        next.previousCaCO, extendedPsi + 180.0);
}

/// Both oxygens of the chain's end.
void addCarboxylate(atomPlaces& places) {
    places["O"] = place(places.at("N"), places.at("CA"), places.at("C"), carboxylateLength,
                        carboxylateAngle, extendedPsi + 180.0);
    places["OXT"] = place(places.at("N"), places.at("CA"), places.at("C"), carboxylateLength,
                          carboxylateAngle, extendedPsi);
}

void addSideChain(atomPlaces& places, const sResidueTemplate& residue) {
    for (const sSideChainAtom& atom : residue.sideChain) {
        places[atom.name] =
            place(places.at(atom.torsionFrom), places.at(atom.angleFrom), places.at(atom.bondedTo),
                  atom.bondLength, atom.bondAngle, atom.torsion);
    }
}

/// Turns and shifts the chain so that its CA atoms 1 and 3 lie on a line along z and CA 2, the
/// origin, has that line on its positive x side.
void alignWithZ(std::vector<atomPlaces>& chain) {
    const sPoint origin = chain[1].at("CA");
    const sPoint toFirst = difference(chain[0].at("CA"), origin);
    const sPoint zAxis = unitVector(difference(chain[2].at("CA"), chain[0].at("CA")));
    const double height = dotProduct(toFirst, zAxis);
    const sPoint xAxis = unitVector(
        {toFirst.x - height * zAxis.x, toFirst.y - height * zAxis.y, toFirst.z - height * zAxis.z});
    const sPoint yAxis = crossProduct(zAxis, xAxis);
    for (atomPlaces& residue : chain) {
        for (auto& [name, point] : residue) {
            const sPoint shifted = difference(point, origin);
            point = {dotProduct(shifted, xAxis), dotProduct(shifted, yAxis),
                     dotProduct(shifted, zAxis)};
        }
    }
}

/// A coordinate as PDB files have it; what rounds to zero carries no sign.
std::string coordinateField(double value) {
    const double rounded = std::round(value * 1000.0) / 1000.0;
    char field[16];
    std::snprintf(field, sizeof field, "%8.3f", rounded == 0.0 ? 0.0 : rounded);
    return field;
}

/// The identification code stands at offset 62.
std::string headerRecord(const std::string& code) {
    std::string record = "HEADER    MODEL TRIPEPTIDE";
    record.resize(62, ' ');
    return record + code + "\n";
}

std::string atomRecord(int serial, const std::string& atomName, const std::string& residueName,
                       std::size_t residueNumber, const sPoint& point) {
    char start[40];
    std::snprintf(start, sizeof start, "ATOM  %5d  %-3s %3s A%4zu    ", serial, atomName.c_str(),
                  residueName.c_str(), residueNumber);
    return start + coordinateField(point.x) + coordinateField(point.y) + coordinateField(point.z) +
           "  1.00  0.00           " + atomName.substr(0, 1) + "\n";
}

} // namespace

std::string tripeptidePdb(const std::string& middle) {
    const std::array<const sResidueTemplate*, 3> residues{
        &residueTemplate("ALA"), &residueTemplate(middle), &residueTemplate("ALA")};

    std::vector<atomPlaces> chain{firstBackbone(residues[0]->backbone)};
    chain.push_back(nextBackbone(chain[0], residues[1]->backbone));
    chain.push_back(nextBackbone(chain[1], residues[2]->backbone));
    addCarbonyl(chain[0], residues[1]->backbone);
    addCarbonyl(chain[1], residues[2]->backbone);
    addCarboxylate(chain[2]);
    for (std::size_t i = 0; i < chain.size(); ++i) {
        addSideChain(chain[i], *residues[i]);
    }
    alignWithZ(chain);

    std::string text = headerRecord("A" + middle);
    int serial = 0;
    for (std::size_t i = 0; i < chain.size(); ++i) {
        std::vector<std::string> names = heavyAtomNames(*residues[i]);
        if (i + 1 == chain.size()) {
            names.push_back("OXT");
        }
        for (const std::string& name : names) {
            text += atomRecord(++serial, name, residues[i]->name, i + 1, chain[i].at(name));
        }
    }
    return text + "END\n";
}

} // namespace kelmo
