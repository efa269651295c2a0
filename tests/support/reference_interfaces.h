// Interfaces between chains of the slow reference implementation.
#pragma once

#include "tests/support/reference_contacts.h"
#include "tests/support/reference_structure.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace kelmo {

namespace reference {

// What lies between two chains; positions are those of the structure's lists.
struct sInterface {
    std::size_t chain1 = 0;
    std::size_t chain2 = 0;
    sAreas buried1; // total, polar and non-polar alone
    sAreas buried2;
    std::vector<std::pair<std::size_t, double>> residues1; // position and buried area, Å²
    std::vector<std::pair<std::size_t, double>> residues2;
    double closestDistance = 0.0;
    std::size_t contactPairs = 0;
    std::map<int, std::size_t> contactPairsByType;
    // "hydrogen", "salt" or "disulphide", atom of the first chain, atom of the second.
    std::set<std::tuple<std::string, std::size_t, std::size_t>> bonds;
};

// All pairs of chains of which some probe-enlarged spheres overlap. Areas are those of the chains
// alone less those of the two together, computed anew from lists of their atoms. O(n²) in the atoms
// for every pair. Chains must have different ids.
std::vector<sInterface> interfaces(const sStructure& structure,
                                   const std::vector<sContact>& contacts, double probeRadius,
                                   double zSlice, bool isComplete, double deltaAsa);

} // namespace reference

} // namespace kelmo
