#include "contacts/residue_tree.h"

#include <compare>
#include <utility>

namespace kelmo {

namespace {

/// So few participants are asked one by one faster than boxes within boxes.
constexpr std::size_t largestLeaf = 8;

double sPoint::*widestSide(const sBox& box) {
    const double dx = box.max.x - box.min.x;
    const double dy = box.max.y - box.min.y;
    const double dz = box.max.z - box.min.z;
    if (dx >= dy && dx >= dz) {
        return &sPoint::x;
    }
    return dy >= dz ? &sPoint::y : &sPoint::z;
}

} // namespace

cResidueTree::cResidueTree(std::vector<sParticipant> searched) : leaves(std::move(searched)) {
    if (!leaves.empty()) {
        nodes.reserve(4 * leaves.size() / largestLeaf + 1);
        addNode(0, leaves.size());
    }
}

void cResidueTree::addNode(std::size_t first, std::size_t last) {
    sNode node;
    for (std::size_t i = first; i < last; ++i) {
        node.bounds.include(leaves[i].bounds);
        node.representatives.include({leaves[i].representative, leaves[i].representative});
        node.lastChain = std::max(node.lastChain, leaves[i].chain);
    }
    const std::size_t position = nodes.size();
    if (last - first > largestLeaf) {
        nodes.push_back(node);
        const auto begin = leaves.begin();
        const std::size_t middle = first + (last - first) / 2;
        double sPoint::*const side = widestSide(node.representatives);
        // Orders whatever is no number, too.
        std::nth_element(begin + static_cast<std::ptrdiff_t>(first),
                         begin + static_cast<std::ptrdiff_t>(middle),
                         begin + static_cast<std::ptrdiff_t>(last),
                         [side](const sParticipant& a, const sParticipant& b) {
                             return std::is_lt(
                                 std::strong_order(a.representative.*side, b.representative.*side));
                         });
        addNode(first, middle);
        addNode(middle, last);
    } else {
        node.first = static_cast<std::uint32_t>(first);
        node.last = static_cast<std::uint32_t>(last);
        nodes.push_back(node);
    }
    nodes[position].next = static_cast<std::uint32_t>(nodes.size());
}

} // namespace kelmo
