// The rules by which the atoms and residues of every format become those of a structure.
#pragma once

#include "model/chain_residue.h"

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace kelmo {

/// Whether a hetero atom is one of the metals that a structure keeps.
bool isMetal(std::string_view atomName);

/// Whether a residue is water, by its name in the archive or in a force field.
bool isWater(std::string_view residueName);

/// What a residue is, by the name that tables know it by.
eResidueType residueTypeOf(const std::string& residueName);

/// By which an atom is looked up in the table of radii.
struct sRadiusKey {
    std::string_view residueName;
    std::string_view atomName;

    std::string text() const;
    bool operator==(const sRadiusKey&) const = default;
};

/// The van der Waals radius (Å) of an atom by its key or, if the table lacks that, by another.
/// Without either OXT gets 1.4 Å; every other atom gets 1.6 Å and its key is added to `missing`.
double vdwRadius(const std::map<std::string, double>& radii, const sRadiusKey& key,
                 const sRadiusKey& otherKey, std::set<std::string>& missing);

} // namespace kelmo
