#include "model/residue_atom.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelmo {

cResidueAtom::cResidueAtom(std::string name, std::string serialText, double xCentre, double yCentre,
                           double zCentre, double vdwRadius)
    : atomName(std::move(name)), serial(std::move(serialText)), x(xCentre), y(yCentre), z(zCentre),
      radius(vdwRadius), zMax(zCentre + vdwRadius), zMin(zCentre - vdwRadius) {}

double centreDistance(const cResidueAtom& a, const cResidueAtom& b) {
    const double dx = a.x - b.x;
    const double dy = a.y - b.y;
    const double dz = a.z - b.z;
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

bool cResidueAtom::isInRangeByCenter(const cResidueAtom& other, double range) const {
    const double distance = centreDistance(*this, other);
    return range >= distance && distance != 0.0;
}

bool cResidueAtom::doesIntersect(const cResidueAtom& other, double enlargement) const {
    const double distance = centreDistance(*this, other);
    return radius + enlargement + other.radius + enlargement >= distance && distance != 0.0;
}

void setMinMaxPoints(const cResidueAtom* atoms, unsigned n, sPoint* maxPoint, sPoint* minPoint) {
    *maxPoint = {atoms[0].x, atoms[0].y, atoms[0].z};
    *minPoint = *maxPoint;
    for (unsigned i = 1; i < n; ++i) {
        maxPoint->x = std::max(maxPoint->x, atoms[i].x);
        maxPoint->y = std::max(maxPoint->y, atoms[i].y);
        maxPoint->z = std::max(maxPoint->z, atoms[i].z);
        minPoint->x = std::min(minPoint->x, atoms[i].x);
        minPoint->y = std::min(minPoint->y, atoms[i].y);
        minPoint->z = std::min(minPoint->z, atoms[i].z);
    }
}

} // namespace kelmo
