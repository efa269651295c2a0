#include "tests/support/reference_surface.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace kelmo {

namespace reference {
namespace {

constexpr double pi = 3.141592653589793;
constexpr double twoPi = 6.283185307179586;
constexpr double largestRadius = 2.0; // assumed when the scanned box is sized, in ångström

// Cuts toward zero to the decimals that scale stands for, through a 32-bit integer.
double cut(double value, double scale) {
    return static_cast<double>(static_cast<std::int32_t>(value * scale)) / scale;
}

double reducedAngle(double angle) {
    return angle - twoPi * std::floor(angle / twoPi);
}

// One axis of the cells: which cells a query scans and in which cell each atom lies.
struct sCellAxis {
    double offset = 0.0;
    double cellSize = 1.0;
    double cellCount = 1.0;
    std::vector<double> cellOfAtom;

    bool isScanned(double coordinate, double reach, std::size_t candidate) const {
        const double position = coordinate + offset;
        const double high = std::min(cellCount, std::ceil((position + reach) / cellSize));
        const double lowQuotient = (position - reach) / cellSize;
        const double low = lowQuotient >= 0.0 ? std::trunc(lowQuotient) : 0.0;
        return low <= cellOfAtom[candidate] && cellOfAtom[candidate] < high;
    }
};

// The cells over one array of atoms, without the cells: every atom is asked for its own.
class cScannedBox {
  public:
    explicit cScannedBox(std::span<const sAtom> atoms);

    bool isScanned(const sAtom& query, double reach, std::size_t candidate) const {
        return xAxis.isScanned(query.x, reach, candidate) &&
               yAxis.isScanned(query.y, reach, candidate) &&
               zAxis.isScanned(query.z, reach, candidate);
    }

  private:
    sCellAxis xAxis;
    sCellAxis yAxis;
    sCellAxis zAxis;
};

// Extent and offset of one coordinate; returns the extent.
double prepareAxis(sCellAxis& axis, std::span<const sAtom> atoms, double sAtom::*coordinate) {
    double maximum = atoms.front().*coordinate;
    double minimum = atoms.front().*coordinate;
    for (const sAtom& atom : atoms) {
        maximum = std::max(maximum, atom.*coordinate);
        minimum = std::min(minimum, atom.*coordinate);
    }
    axis.offset = -minimum;
    return std::fabs(maximum - minimum);
}

void fillAxis(sCellAxis& axis, std::span<const sAtom> atoms, double sAtom::*coordinate,
              double extent, double cellSize) {
    axis.cellSize = cellSize;
    axis.cellCount = std::ceil(extent / cellSize) + 1.0;
    for (const sAtom& atom : atoms) {
        axis.cellOfAtom.push_back(std::floor((atom.*coordinate + axis.offset) / cellSize));
    }
}

cScannedBox::cScannedBox(std::span<const sAtom> atoms) {
    if (atoms.empty()) {
        return;
    }
    const double dx = prepareAxis(xAxis, atoms, &sAtom::x);
    const double dy = prepareAxis(yAxis, atoms, &sAtom::y);
    const double dz = prepareAxis(zAxis, atoms, &sAtom::z);
    const double volumePerAtom = dx * dy * dz / static_cast<double>(atoms.size());
    double cellSize = 1.0;
    while (volumePerAtom > std::pow(cellSize, 3.0)) {
        cellSize = cellSize * 2.0;
    }
    fillAxis(xAxis, atoms, &sAtom::x, dx, cellSize);
    fillAxis(yAxis, atoms, &sAtom::y, dy, cellSize);
    fillAxis(zAxis, atoms, &sAtom::z, dz, cellSize);
}

std::vector<std::size_t> neighboursIn(const cScannedBox& box, std::span<const sAtom> atoms,
                                      std::size_t index, double probeRadius,
                                      eNeighbourSearch search) {
    const sAtom& atom = atoms[index];
    const double enlargement = 2 * probeRadius;
    const double reach = enlargement + 2 * largestRadius + 1;
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        // A single coordinate difference above the range already decides; this only saves time.
        const double range = atom.radius + enlargement + atoms[i].radius + enlargement;
        if (std::fabs(atom.x - atoms[i].x) > range || std::fabs(atom.y - atoms[i].y) > range ||
            std::fabs(atom.z - atoms[i].z) > range) {
            continue;
        }
        if (search == eNeighbourSearch::scannedBox && !box.isScanned(atom, reach, i)) {
            continue;
        }
        if (doSpheresIntersect(atom, atoms[i], enlargement)) {
            found.push_back(i);
        }
    }
    return found;
}

// The neighbours' circles in the plane at the given height.
std::vector<sCircle> circlesAt(double height, const std::vector<sAtom>& neighbours,
                               double probeRadius) {
    std::vector<sCircle> circles;
    for (const sAtom& neighbour : neighbours) {
        if (!(height < probeRadius + neighbour.zMax && neighbour.zMin - probeRadius < height)) {
            continue;
        }
        const double enlarged = probeRadius + neighbour.radius;
        const double distance = height - neighbour.z;
        const double radiusSquared = enlarged * enlarged - distance * distance;
        if (radiusSquared > 0.0) { // rounding may still leave a plane that only touches
            circles.push_back({neighbour.x, neighbour.y, std::sqrt(radiusSquared)});
        }
    }
    return circles;
}

// Odd number of planes, symmetric about the centre; the heights are summed, not multiplied.
int sliceCountOf(const sAtom& atom, double probeRadius, double zSlice) {
    const double top = probeRadius + atom.zMax;
    int k = 0;
    if (top > atom.z) {
        double height = atom.z;
        do {
            height = height + zSlice;
            k = k + 1;
        } while (!(height >= top));
    }
    return 2 * k - 1;
}

} // namespace

int locationTowards(const sCircle& circle, const sCircle& other) {
    const double dx = other.x - circle.x;
    const double dy = other.y - circle.y;
    const double distance = std::sqrt(dx * dx + dy * dy);
    if (circle.radius > distance + other.radius) {
        return 1;
    }
    if (distance - other.radius >= circle.radius) {
        return 0;
    }
    if (other.radius >= distance + circle.radius) {
        return 3;
    }
    return 2;
}

double crossSectionAngle(const sCircle& circle, const sCircle& other) {
    const int location = locationTowards(circle, other);
    if (location == 0 || location == 1) {
        return 0.0;
    }
    if (location == 3) {
        return pi;
    }
    const double dx = other.x - circle.x;
    const double dy = other.y - circle.y;
    const double d = std::sqrt(dx * dx + dy * dy);
    const double r = circle.radius;
    const double ro = other.radius;
    const double cosine = (r * r + d * d - ro * ro) / (2 * r * d);
    return std::acos(std::clamp(cosine, -1.0, 1.0));
}

std::vector<sArc> coveredArcs(const sCircle& circle, const std::vector<sCircle>& others,
                              bool& isEnclosed) {
    std::vector<sArc> arcs;
    isEnclosed = false;
    for (const sCircle& other : others) {
        double direction = std::atan2(other.y - circle.y, other.x - circle.x);
        const double halfAngle = crossSectionAngle(circle, other);
        if (locationTowards(circle, other) == 3) {
            isEnclosed = true;
        }
        if (direction < 0.0) {
            direction = direction + twoPi;
        }
        const double start = reducedAngle(direction - halfAngle);
        const double end = reducedAngle(direction + halfAngle);
        if (start > end) {
            arcs.push_back({0.0, end});
            arcs.push_back({start, twoPi});
        } else {
            arcs.push_back({start, end});
        }
    }
    arcs.push_back({twoPi, twoPi});
    std::sort(arcs.begin(), arcs.end(),
              [](const sArc& a, const sArc& b) { return a.start < b.start; });
    return arcs;
}

double uncutFreeAngle(const sCircle& circle, const std::vector<sCircle>& others) {
    bool isEnclosed = false;
    const std::vector<sArc> arcs = coveredArcs(circle, others, isEnclosed);
    if (isEnclosed) {
        return 0.0;
    }
    double free = 0.0;
    double covered = 0.0;
    std::size_t i = 0;
    while (i < arcs.size()) {
        free = free + arcs[i].start - covered;
        if (arcs[i].end > covered) {
            covered = arcs[i].end;
        }
        ++i;
        while (i < arcs.size() && covered > arcs[i].start) {
            if (arcs[i].end > covered) {
                covered = arcs[i].end;
            }
            ++i;
        }
    }
    return free + twoPi - covered;
}

double freeAngle(const sCircle& circle, const std::vector<sCircle>& others) {
    const double free = cut(uncutFreeAngle(circle, others), 1000.0);
    return free < 0.0 ? 0.0 : free;
}

double freeArcLength(const sCircle& circle, const std::vector<sCircle>& others) {
    return freeAngle(circle, others) * circle.radius;
}

std::vector<std::size_t> surfaceNeighbours(std::span<const sAtom> atoms, std::size_t index,
                                           double probeRadius, eNeighbourSearch search) {
    return neighboursIn(cScannedBox(atoms), atoms, index, probeRadius, search);
}

std::vector<sSlice> atomSlices(const sAtom& atom, const std::vector<sAtom>& neighbours,
                               double probeRadius, double zSlice) {
    const double enlarged = probeRadius + atom.radius;
    int remaining = sliceCountOf(atom, probeRadius, zSlice);
    double height = atom.z + zSlice * ((remaining - 1) / 2);
    const double half = zSlice * 0.5;
    std::vector<sSlice> slices;
    while (remaining > 0) {
        const double distance = std::fabs(height - atom.z);
        const double radius = std::sqrt(enlarged * enlarged - distance * distance);
        if (enlarged != distance && radius >= 0.001) {
            sSlice slice;
            slice.height = height;
            slice.radius = cut(radius, 1000.0);
            const sCircle circle{atom.x, atom.y, slice.radius};
            const std::vector<sCircle> circles = circlesAt(height, neighbours, probeRadius);
            slice.circleCount = circles.size();
            const double toPole = std::fabs(enlarged - distance);
            const double above = half <= toPole ? half : toPole;
            if (!circles.empty()) { // a plane without any circle adds no area
                slice.freeAngle = freeAngle(circle, circles);
                const double length = slice.freeAngle * circle.radius;
                slice.area = cut(length * (enlarged * (above + half)) / slice.radius, 10000.0);
            }
            slices.push_back(slice);
        }
        height = height - zSlice;
        remaining = remaining - 1;
    }
    return slices;
}

void setAtomAreas(std::span<sAtom> atoms, double probeRadius, double zSlice,
                  eNeighbourSearch search) {
    const cScannedBox box(atoms);
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        if (probeRadius + atoms[i].radius == 0.0) {
            continue;
        }
        std::vector<sAtom> neighbours;
        for (const std::size_t n : neighboursIn(box, atoms, i, probeRadius, search)) {
            neighbours.push_back(atoms[n]);
        }
        double area = 0.0;
        for (const sSlice& slice : atomSlices(atoms[i], neighbours, probeRadius, zSlice)) {
            area = area + slice.area;
        }
        atoms[i].asa = area;
    }
}

std::vector<double> atomAreas(std::vector<sAtom> atoms, double probeRadius, double zSlice,
                              eNeighbourSearch search) {
    setAtomAreas(atoms, probeRadius, zSlice, search);
    std::vector<double> areas;
    for (const sAtom& atom : atoms) {
        areas.push_back(atom.asa);
    }
    return areas;
}

namespace {

bool isSameSphere(const sAtom& a, const sAtom& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z && a.radius == b.radius;
}

double completeArea(const sAtom& atom, const std::vector<sAtom>& others, double probeRadius,
                    double zSlice) {
    const double enlarged = probeRadius + atom.radius;
    const int slabs = static_cast<int>(std::ceil(2.0 * enlarged / zSlice));
    const double thickness = 2.0 * enlarged / slabs;
    double area = 0.0;
    for (int i = 0; i < slabs; ++i) {
        const double above = (i + 0.5) * thickness - enlarged;
        const sCircle circle{atom.x, atom.y, std::sqrt(enlarged * enlarged - above * above)};
        std::vector<sCircle> circles;
        for (const sAtom& other : others) {
            const double distance = above - (other.z - atom.z);
            const double sphere = probeRadius + other.radius;
            if (sphere > 0.0 && sphere * sphere > distance * distance) {
                circles.push_back(
                    {other.x, other.y, std::sqrt(sphere * sphere - distance * distance)});
            }
        }
        area += enlarged * thickness * std::max(0.0, uncutFreeAngle(circle, circles));
    }
    return area;
}

} // namespace

std::vector<double> completeAtomAreas(std::span<const sAtom> atoms, double probeRadius,
                                      double zSlice) {
    std::vector<double> areas;
    for (const sAtom& atom : atoms) {
        if (!(probeRadius + atom.radius > 0.0)) {
            areas.push_back(0.0);
            continue;
        }
        std::vector<sAtom> others;
        int same = 0;
        for (const sAtom& other : atoms) {
            if (isSameSphere(atom, other)) {
                same = same + 1; // the atom itself among them
            } else if (centreDistance(atom, other) <
                       atom.radius + other.radius + 2.0 * probeRadius) {
                others.push_back(other);
            }
        }
        areas.push_back(completeArea(atom, others, probeRadius, zSlice) / same);
    }
    return areas;
}

} // namespace reference

} // namespace kelmo
