// The residues that take part in a search for contacts, in a tree of boxes around their atoms.
#pragma once

#include "model/chain_residue.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace kelmo {

// Pairs are sorted out by boxes around atom centres. Differences, squares, sums and roots round
// monotonically, so the distance of two boxes, computed by the operations that compute that of two
// atoms, is never above that of any two atoms in them: comparing it needs no allowance for
// rounding. Comparisons are written such that a value that is not a number never sorts a pair out.

/// A box around points, Å. Empty to begin with.
struct sBox {
    static constexpr double infinity = std::numeric_limits<double>::infinity();

    void include(const sBox& other) {
        max = {std::max(max.x, other.max.x), std::max(max.y, other.max.y),
               std::max(max.z, other.max.z)};
        min = {std::min(min.x, other.min.x), std::min(min.y, other.min.y),
               std::min(min.z, other.min.z)};
    }

    sPoint max{-infinity, -infinity, -infinity};
    sPoint min{infinity, infinity, infinity};
};

/// Whether all points of `a` are more than `range` Å from all points of `b`.
inline bool areApart(const sBox& a, const sBox& b, double range) {
    const double dx = std::max({0.0, a.min.x - b.max.x, b.min.x - a.max.x});
    const double dy = std::max({0.0, a.min.y - b.max.y, b.min.y - a.max.y});
    const double dz = std::max({0.0, a.min.z - b.max.z, b.min.z - a.max.z});
    return std::sqrt(dx * dx + dy * dy + dz * dz) > range;
}

/// What is known of the atoms of some residues without looking at them again.
struct sBounds {
    void include(const cResidueAtom& atom) {
        const sPoint centre{atom.x, atom.y, atom.z};
        centres.include({centre, centre});
        maxRadius = std::max(maxRadius, atom.radius);
    }
    void include(const sBounds& other) {
        centres.include(other.centres);
        maxRadius = std::max(maxRadius, other.maxRadius);
    }

    sBox centres;
    double maxRadius = -sBox::infinity; ///< Å, without probe
};

/// A residue that takes part in the search.
struct sParticipant {
    const cChainResidue* residue;
    sPoint representative;   ///< centre of the atom that stands for the residue, Å
    sBounds bounds;          ///< of all atoms of the residue
    std::uint32_t position;  ///< of the residue in the structure
    std::uint32_t chain;     ///< position of its chain in the structure
    std::uint32_t nameIndex; ///< equal for residues of equal name
    std::uint32_t rank;      ///< by chain and, within a chain, by the cells of the atom grid
};

/// Boxes within boxes over participants, each half of the participants of the next larger one: a
/// search takes about as long as what it finds however the residues are spread and whatever chains
/// they belong to. Searches may run at the same time.
class cResidueTree {
  public:
    explicit cResidueTree(std::vector<sParticipant> searched);

    /// In an order that has nothing to do with that of the file.
    const std::vector<sParticipant>& participants() const { return leaves; }

    /// Calls `visit(other)` for every participant of a later chain than that of `one` whose
    /// representative lies within `range` Å of its own, other than at the same place. Leaves out
    /// some or all of those for which `isHopeless(one.bounds, bounds)` is true with bounds that
    /// include theirs.
    template <typename IsHopeless, typename Visit>
    void forEachOfLaterChains(const sParticipant& one, double range, IsHopeless isHopeless,
                              Visit visit) const;

  private:
    struct sNode {
        sBounds bounds;
        sBox representatives;
        std::uint32_t lastChain = 0;
        std::uint32_t first =
            0; // of its participants, if it has no nodes within; else last = first
        std::uint32_t last = 0;
        std::uint32_t next = 0; // node behind all those within this one
    };
    void addNode(std::size_t first, std::size_t last);

    std::vector<sParticipant> leaves;
    std::vector<sNode> nodes; // each before those within it
};

template <typename IsHopeless, typename Visit>
void cResidueTree::forEachOfLaterChains(const sParticipant& one, double range,
                                        IsHopeless isHopeless, Visit visit) const {
    const sBox representative{one.representative, one.representative};
    for (std::size_t n = 0; n < nodes.size();) {
        const sNode& node = nodes[n];
        if (node.lastChain <= one.chain || areApart(representative, node.representatives, range) ||
            isHopeless(one.bounds, node.bounds)) {
            n = node.next;
            continue;
        }
        for (std::uint32_t i = node.first; i < node.last; ++i) {
            const sParticipant& other = leaves[i];
            if (other.chain <= one.chain) {
                continue;
            }
            const double dx = one.representative.x - other.representative.x;
            const double dy = one.representative.y - other.representative.y;
            const double dz = one.representative.z - other.representative.z;
            const double distance = std::sqrt(dx * dx + dy * dy + dz * dz);
            if (range >= distance && distance != 0.0) {
                visit(other);
            }
        }
        ++n;
    }
}

} // namespace kelmo
