#include "geometry/nearest_distance.h"

#include "base/stop_request.h"
#include "model/pdb_peptide.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace kelmo {

namespace {

/// So many atoms speak for all.
constexpr std::size_t mostSamples = 64;

struct sSample {
    sPoint centre;
    double squaredDistance; ///< to the nearest atom so far, Å²
};

/// Atoms spread evenly over the file, ordered by x.
std::vector<sSample> samplesOf(const std::vector<cResidueAtom>& atoms) {
    const std::size_t count = std::min(mostSamples, atoms.size());
    std::vector<sSample> samples;
    for (std::size_t i = 0; i < count; ++i) {
        const cResidueAtom& atom = atoms[i * atoms.size() / count];
        samples.push_back(
            {{atom.x, atom.y, atom.z}, farthestNearestDistance * farthestNearestDistance});
    }
    std::sort(samples.begin(), samples.end(),
              [](const sSample& a, const sSample& b) { return a.centre.x < b.centre.x; });
    return samples;
}

} // namespace

double meanNearestDistance(const cPdbPeptide& peptide) {
    std::vector<sSample> samples = samplesOf(peptide.atoms);
    if (samples.empty()) {
        return farthestNearestDistance;
    }
    cStopCheck check;
    for (const cResidueAtom& atom : peptide.atoms) {
        check();
        auto sample =
            std::lower_bound(samples.begin(), samples.end(), atom.x - farthestNearestDistance,
                             [](const sSample& one, double x) { return one.centre.x < x; });
        for (; sample != samples.end() && sample->centre.x <= atom.x + farthestNearestDistance;
             ++sample) {
            const double dx = sample->centre.x - atom.x;
            const double dy = sample->centre.y - atom.y;
            const double dz = sample->centre.z - atom.z;
            const double squared = dx * dx + dy * dy + dz * dz;
            if (squared > 0.0 && squared < sample->squaredDistance) {
                sample->squaredDistance = squared;
            }
        }
    }
    double sum = 0.0;
    for (const sSample& sample : samples) {
        sum += std::sqrt(sample.squaredDistance);
    }
    return sum / static_cast<double>(samples.size());
}

} // namespace kelmo
