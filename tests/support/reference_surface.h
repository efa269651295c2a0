// Slice-by-slice accessible surface areas of the slow reference implementation.
#pragma once

#include "tests/support/reference_structure.h"

#include <cstddef>
#include <span>
#include <vector>

namespace kelmo {

namespace reference {

// Covered interval of a circle, in radians, 0 <= start <= end <= 2 pi.
struct sArc {
    double start = 0.0;
    double end = 0.0;
};

// Cut of one probe-enlarged sphere with a slice plane, in ångström.
struct sCircle {
    double x = 0.0;
    double y = 0.0;
    double radius = 0.0;
};

// What one slice of an atom gave; slices that are skipped at the pole are not listed.
struct sSlice {
    double height = 0.0;         // z of the plane
    double radius = 0.0;         // circle of the atom, cut to three decimals
    std::size_t circleCount = 0; // neighbour circles in the plane
    double freeAngle = 0.0;      // uncovered angle in radians, cut to three decimals
    double area = 0.0;           // contribution in Å², cut to four decimals
};

// Which atoms may count as neighbours of an atom before the distance test.
// scannedBox: only atoms in the cells that a search of reach 2 * probe + 2 * 2.0 + 1 ångström
// scans, on cells whose edge is the smallest power of two with a volume of at least the average
// volume per atom. The distance test allows rA + rB + 4 * probe, which is farther than the reach
// for probes above about 1 ångström, so the cells decide over some distant atoms. Such atoms cover
// nothing, but they turn a slice without circles into a fully exposed one.
// everyPair: every atom that passes the distance test.
enum class eNeighbourSearch { scannedBox, everyPair };

// Position of other relative to circle: 1 other strictly inside circle, 0 apart, 3 circle inside
// other, 2 crossing; tested in this order.
int locationTowards(const sCircle& circle, const sCircle& other);

// Half-angle in radians of the arc of circle that other covers, by the law of cosines.
double crossSectionAngle(const sCircle& circle, const sCircle& other);

// Covered arcs sorted by start, with the closing arc at 2 pi; isEnclosed tells whether another
// circle holds the whole circle.
std::vector<sArc> coveredArcs(const sCircle& circle, const std::vector<sCircle>& others,
                              bool& isEnclosed);

// Uncovered angle in radians, uncut; 0 when enclosed. Rounding may leave it a little below 0.
double uncutFreeAngle(const sCircle& circle, const std::vector<sCircle>& others);

// Uncovered angle in radians, cut to three decimals and never negative; 0 when enclosed.
double freeAngle(const sCircle& circle, const std::vector<sCircle>& others);

// Uncovered length of the circle in ångström.
double freeArcLength(const sCircle& circle, const std::vector<sCircle>& others);

// Indices, ascending, of the neighbours of atoms[index] within rA + rB + 4 * probeRadius.
std::vector<std::size_t> surfaceNeighbours(std::span<const sAtom> atoms, std::size_t index,
                                           double probeRadius,
                                           eNeighbourSearch search = eNeighbourSearch::scannedBox);

// The slices of one atom from top to bottom; zSlice in ångström, above 0. Their areas, added in
// this order, are the area of the atom.
std::vector<sSlice> atomSlices(const sAtom& atom, const std::vector<sAtom>& neighbours,
                               double probeRadius, double zSlice);

// Sets asa (Å²) of every atom with the atoms of the span alone as neighbours. An atom whose
// enlarged radius is 0 keeps its asa; one without any neighbour gets 0. O(n²).
void setAtomAreas(std::span<sAtom> atoms, double probeRadius, double zSlice,
                  eNeighbourSearch search = eNeighbourSearch::scannedBox);

// The areas that setAtomAreas gives, in atom order.
std::vector<double> atomAreas(std::vector<sAtom> atoms, double probeRadius, double zSlice,
                              eNeighbourSearch search = eNeighbourSearch::scannedBox);

// The areas (Å²) of the atoms in the complete form of the surface: every enlarged sphere is cut
// into ceil(2 R / zSlice) slabs of equal thickness, and each slab adds R times its thickness times
// the angle that is uncovered in its middle. Equal spheres at one place share their area equally;
// without a positive enlarged radius there is none. O(n²).
std::vector<double> completeAtomAreas(std::span<const sAtom> atoms, double probeRadius,
                                      double zSlice);

} // namespace reference

} // namespace kelmo
