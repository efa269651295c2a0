// The atom-level calculations: accessible surface area, depth index and protrusion index.
#pragma once

#include "base/exported.h"
#include "model/asa_form.h"
#include "model/residue_atom.h"

#include <cstdint>

namespace KELMO_API kelmo {

/// Sets `asa` (Å²) of every atom: Lee & Richards, J Mol Biol 55:379 (1971), slices of `zSlice` Å,
/// spheres enlarged by `probeRadius` Å. The corners are those of the atoms' bounding box. The
/// results do not depend on the number of threads. An atom without any neighbour gets 0.
void calculateAtomASA(cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                      const sPoint& minPoint, double probeRadius, double zSlice);

/// Sets `asa` (Å²) of every atom in the complete form of the surface: slabs of equal thickness, at
/// most `zSlice` Å, over each sphere enlarged by `probeRadius` Å, and all that is free of
/// them. The corners are those of the atoms' bounding box. The results are the same bits whatever
/// the number of threads, the instruction set, the order of the atoms and who else is far away.
void calculateAtomAsaComplete(cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                              const sPoint& minPoint, double probeRadius, double zSlice);

/// Sets `asa` (Å²), in either form as the two functions above do, of those atoms alone whose mark,
/// by position, is true.
void calculateAsaOfMarked(cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                          const sPoint& minPoint, double probeRadius, double zSlice, eAsaForm form,
                          const bool* isMarked);

/// Marks the atoms whose areas, as just computed for all of them together, may be others when those
/// of other groups are taken away: one of another group touches it, or the area depends on more
/// than on those that touch (see cResidueAtom::isAsaLocal). `groups` has a number for each atom.
/// Costs a small part of the calculation of areas.
void markWhereOthersMatter(const cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                           const sPoint& minPoint, double probeRadius, const std::uint32_t* groups,
                           bool* isMarked);

/// Sets `depthIndex` (Å): 0 for an atom with surface, otherwise the distance to the nearest atom
/// with surface (Pintar, Carugo & Pongor, Bioinformatics 19:313, 2003). Reads `asa`, so the areas
/// come first. Without any surface atom nothing is written; an atom all of whose surface atoms
/// stand at its own place gets 0.
void calculateAtomDepthIndex(cResidueAtom* atoms, unsigned atomCount);

/// Sets `protrusionIndex`: free over occupied volume of a sphere of `sphereRadius` Å around the
/// atom, each other atom in it occupying `atomVolume` Å³ (Pintar, Carugo & Pongor, Bioinformatics
/// 18:980, 2002). Infinite for an atom alone in its sphere.
void calculateAtomProtrusionIndex(cResidueAtom* atoms, unsigned atomCount, const sPoint& maxPoint,
                                  const sPoint& minPoint, double sphereRadius, double atomVolume);

} // namespace kelmo
