// Which residues of different chains of a structure touch, by each of the four criteria.
#include "base/in_parallel.h"
#include "base/stop_request.h"
#include "contacts/residue_contact.h"
#include "geometry/atom_grid.h"
#include "model/pdb_peptide.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kelmo {

namespace {

/// Residues whose representative atoms are farther apart than the search value plus this are not
/// looked at: room for the side chains of both, Å.
constexpr double sideChainMargin = 15.0;

/// The second atom of a residue, as a rule its alpha carbon, stands for the residue in the search.
constexpr unsigned representativeAtom = 1;

constexpr double infinity = std::numeric_limits<double>::infinity();

// Pairs are sorted out by boxes around atom centres. Differences, squares, sums and roots round
// monotonically, so the distance of two boxes, computed by the operations that compute that of two
// atoms, is never above that of any two atoms in them: comparing it needs no allowance for
// rounding. Comparisons are written such that a value that is not a number never sorts a pair out.

/// What is known of all atoms of a residue or chain, without looking at them again.
struct sBounds {
    sPoint max{-infinity, -infinity, -infinity}; ///< box of the centres, Å
    sPoint min{infinity, infinity, infinity};
    double maxRadius = -infinity; ///< Å

    void include(const cResidueAtom& atom) {
        max = {std::max(max.x, atom.x), std::max(max.y, atom.y), std::max(max.z, atom.z)};
        min = {std::min(min.x, atom.x), std::min(min.y, atom.y), std::min(min.z, atom.z)};
        maxRadius = std::max(maxRadius, atom.radius);
    }
};

sBounds boundsOf(const cResidueAtom& atom) {
    sBounds bounds;
    bounds.include(atom);
    return bounds;
}

/// Whether all centres of `a` are more than `range` Å from all centres of `b`.
bool areApart(const sBounds& a, const sBounds& b, double range) {
    const double dx = std::max({0.0, a.min.x - b.max.x, b.min.x - a.max.x});
    const double dy = std::max({0.0, a.min.y - b.max.y, b.min.y - a.max.y});
    const double dz = std::max({0.0, a.min.z - b.max.z, b.min.z - a.max.z});
    return std::sqrt(dx * dx + dy * dy + dz * dz) > range;
}

/// A residue that takes part in the search.
struct sParticipant {
    cChainResidue* residue;
    const cProteinChain* chain;
    sBounds bounds;
    std::uint32_t nameIndex; ///< the same for residues of the same name

    const cResidueAtom& representative() const { return residue->atoms[representativeAtom]; }
};

/// The participants of one chain and the grid over their representative atoms, in the same order.
struct sChainSearch {
    std::vector<sParticipant> participants;
    sBounds bounds;                ///< of all their atoms
    sBounds representativesBounds; ///< of their representative atoms
    std::unique_ptr<cAtomGrid> grid;
};

/// A residue of one chain that touches a residue of a later one.
struct sTouchingPair {
    const sParticipant* first;
    const sParticipant* second;
    std::set<eContactType> types;
};

using tNameIndices = std::unordered_map<std::string, std::uint32_t>;

sChainSearch searchOf(const cPdbPeptide& peptide, const cProteinChain& chain,
                      tNameIndices& nameIndices) {
    sChainSearch search;
    std::vector<cResidueAtom> representatives;
    for (unsigned i = 0; i < chain.residueCount; ++i) {
        cChainResidue& residue = chain.residues[i];
        if (residue.atomCount <= representativeAtom || residue.residueType == eResidueType::other) {
            continue;
        }
        const auto nextIndex = static_cast<std::uint32_t>(nameIndices.size());
        const auto name = nameIndices.try_emplace(residue.residueName, nextIndex).first;
        sParticipant participant{&residue, &chain, {}, name->second};
        for (unsigned j = 0; j < residue.atomCount; ++j) {
            participant.bounds.include(residue.atoms[j]);
            search.bounds.include(residue.atoms[j]);
        }
        representatives.push_back(participant.representative());
        search.representativesBounds.include(participant.representative());
        search.participants.push_back(participant);
    }
    search.grid = std::make_unique<cAtomGrid>(
        representatives.data(), static_cast<unsigned>(peptide.atoms.size()), peptide.maxPoint,
        peptide.minPoint, static_cast<int>(representatives.size()));
    return search;
}

// The tests of the criteria. `isHopeless` tells for two residues, two chains or a residue and a
// chain whether their bounds alone exclude a contact; calling the test decides for two residues and
// adds the types of their contact.

/// Some atom pair within a distance, Å.
class cMaximumDistanceTest {
  public:
    explicit cMaximumDistanceTest(double maxDistance) : threshold(maxDistance) {}

    bool isHopeless(const sBounds& a, const sBounds& b) const { return areApart(a, b, threshold); }

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
        const double probe = threshold * 0.5;
        return areApart(a, b, a.maxRadius + probe + b.maxRadius + probe);
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
        return areApart(a, b, maxDistance) && vanDerWaalsTest.isHopeless(a, b);
    }

    bool operator()(const sParticipant& a, const sParticipant& b,
                    std::set<eContactType>& types) const {
        const std::vector<sRules>& rulesOfName = rulesOfNames[a.nameIndex];
        if (!rulesOfName.empty()) {
            const sRules& candidates = rulesOfName[b.nameIndex];
            if (!areApart(a.bounds, b.bounds, candidates.maxDistance)) {
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
        double maxDistance = -infinity; ///< largest of the rules, Å
    };
    static inline const std::vector<sResidueAtomContact> none;

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
    double maxDistance = -infinity;                // largest of all rules, Å
};

template <typename Test>
void findPartners(const sParticipant& participant, const sChainSearch& later, double range,
                  const Test& test, std::vector<sTouchingPair>& pairs) {
    const cResidueAtom& representative = participant.representative();
    if (areApart(boundsOf(representative), later.representativesBounds, range) ||
        test.isHopeless(participant.bounds, later.bounds)) {
        return;
    }
    later.grid->forEachInRangeByCenter(representative, range, [&](const cAtomGrid::sEntry& entry) {
        const sParticipant& other = later.participants[entry.index];
        std::set<eContactType> types;
        if (test(participant, other, types)) {
            pairs.push_back({&participant, &other, std::move(types)});
        }
    });
}

/// All touching pairs, ordered by the first residue in the file, then by the chain of the second.
/// The residues of a chain are searched side by side.
template <typename Test>
std::vector<sTouchingPair> findPairs(const std::vector<sChainSearch>& searches, double range,
                                     const Test& test) {
    std::vector<sTouchingPair> pairs;
    for (auto chain = searches.begin(); chain != searches.end(); ++chain) {
        stopIfWanted();
        std::vector<const sChainSearch*> laterChains;
        for (auto later = chain + 1; later != searches.end(); ++later) {
            if (!areApart(chain->representativesBounds, later->representativesBounds, range) &&
                !test.isHopeless(chain->bounds, later->bounds)) {
                laterChains.push_back(&*later);
            }
        }
        if (laterChains.empty()) {
            continue;
        }
        std::vector<std::vector<sTouchingPair>> found(chain->participants.size());
        inParallel(found.size(), residuesPerTask, [&](std::size_t i) {
            for (const sChainSearch* later : laterChains) {
                findPartners(chain->participants[i], *later, range, test, found[i]);
            }
        });
        for (std::vector<sTouchingPair>& part : found) {
            std::ranges::move(part, std::back_inserter(pairs));
        }
    }
    return pairs;
}

/// Two records of one contact, one from each side.
void record(const sTouchingPair& pair, eInteractionCriterion criterion,
            std::vector<cResidueContact>& contacts) {
    const auto addRecord = [&](const sParticipant& one, const sParticipant& other) {
        contacts.emplace_back(one.chain->chainId, one.residue->residueNumber,
                              one.residue->residueName, other.chain->chainId,
                              other.residue->residueNumber, other.residue->residueName, pair.types,
                              criterion);
    };
    addRecord(*pair.first, *pair.second);
    addRecord(*pair.second, *pair.first);
}

} // namespace

void cPdbPeptide::resolveContacts(eInteractionCriterion criterion, double searchValue,
                                  double vdwThreshold, const contactMap* map) {
    tNameIndices nameIndices;
    std::vector<sChainSearch> searches;
    searches.reserve(chains.size());
    for (const cProteinChain& chain : chains) {
        searches.push_back(searchOf(*this, chain, nameIndices));
    }
    const double range = searchValue + sideChainMargin;
    std::vector<sTouchingPair> pairs;
    if (criterion == eInteractionCriterion::maximumDistance) {
        pairs = findPairs(searches, range, cMaximumDistanceTest(searchValue));
    } else if (criterion == eInteractionCriterion::prism) {
        pairs = findPairs(searches, range, cPrismTest(searchValue));
    } else if (criterion == eInteractionCriterion::vorda) {
        const contactMap noRules;
        const cVordaTest test(map != nullptr ? *map : noRules, nameIndices, vdwThreshold);
        pairs = findPairs(searches, range, test);
    }
    cStopCheck check;
    contacts.reserve(contacts.size() + 2 * pairs.size());
    for (const sTouchingPair& pair : pairs) {
        check();
        record(pair, criterion, contacts);
        pair.first->residue->isBinding = true;
        pair.second->residue->isBinding = true;
    }
    // Stable, so that records that compare equal stand in the order of the file with every library.
    std::stable_sort(contacts.begin(), contacts.end(),
                     [&](const cResidueContact& a, const cResidueContact& b) {
                         check();
                         return a < b;
                     });
}

void cPdbPeptide::resolveThresholdContacts(double threshold) {
    resolveContacts(eInteractionCriterion::maximumDistance, threshold, 0.0, nullptr);
}

void cPdbPeptide::resolvePRISMContacts(double threshold) {
    resolveContacts(eInteractionCriterion::prism, threshold, 0.0, nullptr);
}

void cPdbPeptide::resolveHovikKRBContacts(double vdwThreshold, double searchValue,
                                          const contactMap& map) {
    resolveContacts(eInteractionCriterion::vorda, searchValue, vdwThreshold, &map);
}

void cPdbPeptide::resolveDovrethContacts(double deltaAsa, double probeRadius, double zSlice) {
    cPdbPeptide apart(*this);
    for (std::size_t c = 0; c < chains.size(); ++c) {
        apart.chains[c].setAccessibleSurfaceArea(probeRadius, zSlice);
        for (unsigned i = 0; i < chains[c].residueCount; ++i) {
            cChainResidue& residue = chains[c].residues[i];
            const double change = apart.chains[c].residues[i].totalAsa - residue.totalAsa;
            if (std::abs(change) > deltaAsa && residue.residueType != eResidueType::other) {
                residue.isBinding = true;
            }
        }
    }
}

} // namespace kelmo
