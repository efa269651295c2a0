// What makes two residues a contact, for each of the criteria that look at pairs of residues.
#pragma once

#include "contacts/residue_contact.h"
#include "contacts/residue_tree.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace kelmo {

/// Numbers of residue names, from 0.
using tNameIndices = std::unordered_map<std::string, std::uint32_t>;

// `isHopeless` tells for residues within some bounds and residues within others whether the bounds
// alone exclude a contact; calling the test decides for two residues and adds the types of their
// contact.

/// Some atom pair within a distance, Å.
class cMaximumDistanceTest {
  public:
    explicit cMaximumDistanceTest(double maxDistance) : threshold(maxDistance) {}

    bool isHopeless(const sBounds& a, const sBounds& b) const {
        return areApart(a.centres, b.centres, threshold);
    }

    bool operator()(const sParticipant& a, const sParticipant& b, std::set<eContactType>&) const {
        return !isHopeless(a.bounds, b.bounds) && a.residue->isWithinRange(*b.residue, threshold);
    }

  private:
    double threshold;
};

/// Some atom pair within its radii plus a distance, Å.
class cPrismTest {
  public:
    explicit cPrismTest(double maxGap) : threshold(maxGap) {}

    bool isHopeless(const sBounds& a, const sBounds& b) const {
        // Summed like the reach of two atoms, so that it is not below that of any of them.
        const double enlargement = threshold * 0.5;
        return areApart(a.centres, b.centres,
                        a.maxRadius + enlargement + b.maxRadius + enlargement);
    }

    bool operator()(const sParticipant& a, const sParticipant& b, std::set<eContactType>&) const {
        return !isHopeless(a.bounds, b.bounds) &&
               a.residue->isWithinRangeFromRadius(*b.residue, threshold);
    }

  private:
    double threshold;
};

/// Some rule of the table, or some atom pair within its radii plus a distance, Å.
class cVordaTest {
  public:
    cVordaTest(const contactMap& map, const tNameIndices& nameIndices, double vdwThreshold)
        : vanDerWaalsTest(vdwThreshold), rulesOfNames(nameIndices.size()) {
        for (const auto& [name, index] : nameIndices) {
            findRulesOf(name, map, nameIndices, rulesOfNames[index]);
            for (const sRules& rules : rulesOfNames[index]) {
                maxDistance = std::max(maxDistance, rules.maxDistance);
            }
        }
    }

    bool isHopeless(const sBounds& a, const sBounds& b) const {
        return areApart(a.centres, b.centres, maxDistance) && vanDerWaalsTest.isHopeless(a, b);
    }

    bool operator()(const sParticipant& a, const sParticipant& b,
                    std::set<eContactType>& types) const {
        const std::vector<sRules>& rulesOfName = rulesOfNames[a.nameIndex];
        if (!rulesOfName.empty()) {
            const sRules& candidates = rulesOfName[b.nameIndex];
            if (!areApart(a.bounds.centres, b.bounds.centres, candidates.maxDistance)) {
                doTheyFormContact(*a.residue, *b.residue, *candidates.rules, types);
            }
        }
        if (vanDerWaalsTest(a, b, types)) {
            types.insert(eContactType::vanDerWaals);
        }
        return !types.empty();
    }

  private:
    struct sRules {
        const std::vector<sResidueAtomContact>* rules = &none;
        double maxDistance = -sBox::infinity; ///< largest of the rules, Å
    };
    static inline const std::vector<sResidueAtomContact> none{};

    /// Fills `rulesOfName` with the rules of one name and each other name; leaves it empty when the
    /// table has none. Keys of one first name stand together in the map.
    static void findRulesOf(const std::string& name, const contactMap& map,
                            const tNameIndices& nameIndices, std::vector<sRules>& rulesOfName) {
        const std::string prefix = name + "_";
        for (auto entry = map.lower_bound(prefix);
             entry != map.end() && entry->first.starts_with(prefix); ++entry) {
            const auto secondName = nameIndices.find(entry->first.substr(prefix.size()));
            if (secondName == nameIndices.end()) {
                continue;
            }
            rulesOfName.resize(nameIndices.size());
            sRules& found = rulesOfName[secondName->second];
            found.rules = &entry->second;
            for (const sResidueAtomContact& rule : entry->second) {
                found.maxDistance = std::max(found.maxDistance, rule.maxDistance);
            }
        }
    }

    cPrismTest vanDerWaalsTest;
    std::vector<std::vector<sRules>> rulesOfNames; // by the first and the second name index
    double maxDistance = -sBox::infinity;          // largest of all rules, Å
};

} // namespace kelmo
