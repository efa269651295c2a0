// A new criterion of contacts: residues of different chains with close numbers. One row with its
// search and the setting that it goes by.
#pragma once

#include "analysis/criteria.h"

#include <cmath>
#include <cstdlib>

namespace kelmo {

inline sContactList findByNumber(cPdbPeptide& structure, const sCriterionInput& input) {
    sContactList found;
    found.typeSets.emplace_back();
    const auto numberOf = [](const cChainResidue& residue) {
        return std::atoi(residue.residueNumber.c_str());
    };
    std::uint32_t first = 0;
    for (cProteinChain& chain : structure.chains) {
        for (std::uint32_t i = first; i < first + chain.residueCount; ++i) {
            for (std::uint32_t j = 0; j < structure.residues.size(); ++j) {
                const bool isOther = j < first || j >= first + chain.residueCount;
                const int gap = numberOf(structure.residues[i]) - numberOf(structure.residues[j]);
                if (isOther && std::abs(gap) <= input.settings.number("number_gap")) {
                    found.contacts.push_back({i, j, 0});
                    structure.residues[i].isBinding = true;
                }
            }
        }
        first += chain.residueCount;
    }
    return found;
}

inline sCriterion numberCriterion() {
    return {.number = static_cast<eInteractionCriterion>(5),
            .name = "CloseNumbers",
            .title = "close numbers",
            .help = "Residues of different chains touch when their numbers are close.",
            .parameters = {{"number_gap", "CN_gap", 1.0, 10.0}},
            .find = findByNumber};
}

inline sSetting numberGap() {
    return {.key = "number_gap",
            .kind = eSettingKind::number,
            .byDefault = "1",
            .minimum = 0.0,
            .maximum = 10.0,
            .title = "Gap of the numbers",
            .help = "How far apart the numbers may be.",
            .step = 1.0,
            .decimals = 0,
            .isWrittenOnlyIfChanged = true};
}

} // namespace kelmo
