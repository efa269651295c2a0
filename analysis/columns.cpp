#include "analysis/columns.h"

#include "base/stop_request.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace kelmo {

namespace {

std::vector<std::size_t> xmlOrderOf(const sAttribute& attribute) {
    std::vector<std::size_t> order(attribute.columns.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(
        order, {}, [&](std::size_t column) { return attribute.columns[column].xmlPlace; });
    return order;
}

void takeChain(const cProteinChain& chain, sStateColumns& columns) {
    columns.chains.push_back({chain.chainId, columns.residues.size(), chain.residueCount});
    cStopCheck check;
    for (unsigned i = 0; i < chain.residueCount; ++i) {
        check();
        columns.residues.push_back(
            {chain.residues[i].residueName, chain.residues[i].residueNumber});
    }
    for (sAttributeValues& attribute : columns.attributes) {
        for (sColumnValues& values : attribute.columns) {
            for (unsigned i = 0; i < chain.residueCount; ++i) {
                values.ofResidues.push_back(values.column->ofResidue(chain.residues[i]));
            }
            if (values.column->ofChain != nullptr) {
                values.ofChains.push_back(values.column->ofChain(chain));
            }
        }
    }
}

/// Columns without values, with room for those of so many residues.
sStateColumns emptyColumns(const cSettings& settings, std::size_t residues) {
    sStateColumns columns;
    columns.residues.reserve(residues);
    for (const sAttribute& attribute : attributes()) {
        if (!attribute.isWritten(settings)) {
            continue;
        }
        sAttributeValues values{&attribute, {}, xmlOrderOf(attribute)};
        for (const sColumn& column : attribute.columns) {
            values.columns.push_back({.column = &column});
            values.columns.back().ofResidues.reserve(residues);
        }
        columns.attributes.push_back(std::move(values));
    }
    return columns;
}

/// What marks a value that was not computed.
constexpr double notComputed = -1.0;

/// Turns the values of the complex into those of the chains alone less them.
void takeDifference(const sColumnValues& unbound, const std::vector<sChainRow>& chains,
                    sColumnValues& values) {
    for (std::size_t i = 0; i < values.ofResidues.size(); ++i) {
        const bool isComputed =
            values.ofResidues[i] != notComputed && unbound.ofResidues[i] != notComputed;
        values.ofResidues[i] = isComputed ? unbound.ofResidues[i] - values.ofResidues[i]
                                          : std::numeric_limits<double>::quiet_NaN();
    }
    if (values.ofChains.empty()) {
        return;
    }
    values.ofStructure = 0.0;
    for (std::size_t c = 0; c < chains.size(); ++c) {
        double sum = 0.0;
        for (std::size_t i = 0; i < chains[c].residueCount; ++i) {
            const double value = values.ofResidues[chains[c].firstResidue + i];
            sum += std::isnan(value) ? 0.0 : value;
        }
        values.ofChains[c] = sum;
        values.ofStructure += sum;
    }
}

} // namespace

sStateColumns columnsOf(const cPdbPeptide& structure, std::string_view state,
                        const cSettings& settings) {
    sStateColumns columns = emptyColumns(settings, structure.residues.size());
    columns.structureName = structure.name;
    columns.state = state;
    for (const cProteinChain& chain : structure.chains) {
        takeChain(chain, columns);
    }
    for (sAttributeValues& attribute : columns.attributes) {
        for (sColumnValues& values : attribute.columns) {
            if (values.column->ofStructure != nullptr) {
                values.ofStructure = values.column->ofStructure(structure);
            }
        }
    }
    return columns;
}

sStateColumns columnsOf(const cProteinChain& chain, const cSettings& settings) {
    sStateColumns columns = emptyColumns(settings, chain.residueCount);
    columns.structureName = chain.peptideName;
    takeChain(chain, columns);
    return columns;
}

sStateColumns differenceOf(const sStateColumns& unbound, const sStateColumns& bound) {
    sStateColumns difference = bound;
    difference.state = "difference";
    std::erase_if(difference.attributes, [](const sAttributeValues& attribute) {
        return !attribute.attribute->dependsOnState;
    });
    for (sAttributeValues& attribute : difference.attributes) {
        const auto alone = std::ranges::find(unbound.attributes, attribute.attribute,
                                             &sAttributeValues::attribute);
        for (std::size_t i = 0; i < attribute.columns.size(); ++i) {
            takeDifference(alone->columns[i], difference.chains, attribute.columns[i]);
        }
    }
    return difference;
}

} // namespace kelmo
