// Seeded atom clouds and their areas, as the geometry tests use them.
#pragma once

#include "geometry/atom_space_calculations.h"
#include "model/addition.h"
#include "model/pdb_peptide.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace kelmo {

using tAtoms = std::vector<cResidueAtom>;

/// Random numbers that are the same with every standard library.
class cRandom {
  public:
    explicit cRandom(unsigned seed) : engine(seed) {}
    /// At least 0, below `limit`.
    unsigned below(unsigned limit) { return static_cast<unsigned>(engine() % limit); }
    /// At least `low`, below `high`.
    double between(double low, double high) {
        return low + (high - low) * (static_cast<double>(engine()) / 4294967296.0);
    }
    /// The same cut to three decimals, as in a PDB file.
    double coordinate(double low, double high) {
        return std::round(between(low, high) * 1000.0) / 1000.0;
    }

  private:
    std::mt19937 engine;
};

inline cResidueAtom atomAt(double x, double y, double z, double radius = 1.5) {
    return {"CA", "1", x, y, z, radius};
}

/// Atoms in a box at the origin; the serial is the position in the list. Every radius is one of
/// `radii`.
inline tAtoms randomCloud(unsigned seed, unsigned count, sPoint edges,
                          const std::vector<double>& radii) {
    cRandom random(seed);
    tAtoms atoms;
    for (unsigned i = 0; i < count; ++i) {
        const double x = random.coordinate(0.0, edges.x);
        const double y = random.coordinate(0.0, edges.y);
        const double z = random.coordinate(0.0, edges.z);
        const double radius = radii[random.below(static_cast<unsigned>(radii.size()))];
        atoms.emplace_back("CA", std::to_string(i), x, y, z, radius);
    }
    return atoms;
}

inline tAtoms randomCloud(unsigned seed, unsigned count, double edge,
                          const std::vector<double>& radii = {1.4, 1.6, 1.75, 1.87}) {
    return randomCloud(seed, count, sPoint{edge, edge, edge}, radii);
}

/// The corners of the bounding box of some atoms.
struct sCorners {
    explicit sCorners(const tAtoms& atoms) {
        setMinMaxPoints(atoms.data(), static_cast<unsigned>(atoms.size()), &maxPoint, &minPoint);
    }
    sPoint maxPoint;
    sPoint minPoint;
};

inline void setAreas(tAtoms& atoms, double probeRadius, double zSlice) {
    const sCorners box(atoms);
    calculateAtomASA(atoms.data(), static_cast<unsigned>(atoms.size()), box.maxPoint, box.minPoint,
                     probeRadius, zSlice);
}

} // namespace kelmo
