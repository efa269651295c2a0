// An input format of one file: atoms with coordinates, one a line, with the names of their
// residues.
#pragma once

#include "input/structure_formats.h"
#include "input/structure_making.h"

#include <istream>
#include <sstream>
#include <string>
#include <string_view>

namespace kelmo {

/// "xyz" in the first line, then lines such as "CA ALA 12 A  1.0 2.0 3.0".
inline sReadResult readXyz(std::istream& in, const std::map<std::string, double>& radii,
                           const sReadOptions& options) {
    sStructureRecords records;
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
        sAtomRecord atom;
        sResidueRecord residue;
        std::istringstream words(line);
        words >> atom.name >> residue.name >> residue.number >> residue.chainId >> atom.x >>
            atom.y >> atom.z;
        if (!words) {
            sReadResult refused;
            refused.outcome = eReadOutcome::refused;
            refused.reason = "Not an atom: " + line;
            return refused;
        }
        records.add(residue, atom);
    }
    return makeStructures(records, radii, options);
}

inline bool isXyz(std::string_view firstBytes) {
    return firstBytes.starts_with("xyz\n");
}

} // namespace kelmo
