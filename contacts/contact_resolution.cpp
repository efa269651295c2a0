#include "contacts/contact_resolution.h"

#include "base/in_parallel.h"
#include "base/stop_request.h"
#include "contacts/contact_criteria.h"
#include "contacts/residue_contact.h"
#include "contacts/residue_tree.h"
#include "geometry/atom_grid.h"
#include "model/pdb_peptide.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <mutex>
#include <set>
#include <utility>

namespace kelmo {

namespace {

/// Residues whose representative atoms are farther apart than the search value plus this are not
/// looked at: room for the side chains of both, Å.
constexpr double sideChainMargin = 15.0;

/// The second atom of a residue, as a rule its alpha carbon, stands for the residue in the search.
constexpr unsigned representativeAtom = 1;

/// Ranks by chain and, within a chain, by the order in which the atom grid of the whole structure
/// returns the representatives. Participants come in the order of the file.
void rankParticipants(const cPdbPeptide& peptide, std::vector<sParticipant>& participants) {
    std::vector<cResidueAtom> representatives;
    representatives.reserve(participants.size());
    std::vector<std::uint32_t> nextRanks(peptide.chains.size() + 1);
    for (const sParticipant& participant : participants) {
        representatives.push_back(participant.residue->atoms[representativeAtom]);
        ++nextRanks[participant.chain + 1];
    }
    for (std::size_t chain = 1; chain < nextRanks.size(); ++chain) {
        nextRanks[chain] += nextRanks[chain - 1];
    }
    const cCentreGrid grid(representatives.data(), static_cast<unsigned>(peptide.atoms.size()),
                           peptide.maxPoint, peptide.minPoint,
                           static_cast<unsigned>(representatives.size()));
    for (const cCentreGrid::sEntry& entry : grid.entriesInCellOrder()) {
        sParticipant& participant = participants[entry.index];
        participant.rank = nextRanks[participant.chain]++;
    }
}

/// The residues of known type that have a representative, in the order of the file, and numbers for
/// their names.
std::vector<sParticipant> participantsOf(const cPdbPeptide& peptide,
                                         const std::vector<std::uint32_t>& chains,
                                         tNameIndices& nameIndices) {
    std::vector<sParticipant> participants;
    for (std::uint32_t i = 0; i < peptide.residues.size(); ++i) {
        const cChainResidue& residue = peptide.residues[i];
        if (residue.atomCount <= representativeAtom || residue.residueType == eResidueType::other) {
            continue;
        }
        const auto nextIndex = static_cast<std::uint32_t>(nameIndices.size());
        const auto name = nameIndices.try_emplace(residue.residueName, nextIndex).first;
        const cResidueAtom& atom = residue.atoms[representativeAtom];
        sParticipant participant{&residue, {atom.x, atom.y, atom.z}, {}, i, chains[i], name->second,
                                 0};
        for (unsigned j = 0; j < residue.atomCount; ++j) {
            participant.bounds.include(residue.atoms[j]);
        }
        participants.push_back(participant);
    }
    rankParticipants(peptide, participants);
    return participants;
}

/// Numbers for sets of contact types, the same for equal sets; 0 for the empty one. May be asked by
/// several threads at the same time.
class cTypeSets {
  public:
    std::uint32_t numberOf(std::set<eContactType> types) {
        if (types.empty()) {
            return 0;
        }
        const std::scoped_lock lock(mutex);
        const auto nextNumber = static_cast<std::uint32_t>(numbers.size());
        return numbers.try_emplace(std::move(types), nextNumber).first->second;
    }

    /// Hands out the sets in ascending order. Returns the place of each by its number, which
    /// depends on the threads.
    std::vector<std::uint32_t> moveTo(std::vector<std::set<eContactType>>& sets) {
        std::vector<std::uint32_t> places(numbers.size());
        while (!numbers.empty()) {
            auto node = numbers.extract(numbers.begin());
            places[node.mapped()] = static_cast<std::uint32_t>(sets.size());
            sets.push_back(std::move(node.key()));
        }
        return places;
    }

  private:
    std::mutex mutex;
    std::map<std::set<eContactType>, std::uint32_t> numbers{{{}, 0}};
};

/// A residue of a later chain that a residue touches.
struct sPartner {
    std::uint32_t rank; // of the participant
    std::uint32_t typeSet;
};

/// The partners of every residue by their ranks. The residues are searched side by side.
template <typename Test>
std::vector<std::vector<sPartner>> findPartners(const cResidueTree& tree, std::size_t residueCount,
                                                double range, const Test& test,
                                                cTypeSets& typeSets) {
    std::vector<std::vector<sPartner>> partners(residueCount);
    const auto isHopeless = [&](const sBounds& a, const sBounds& b) {
        return test.isHopeless(a, b);
    };
    inParallel(tree.participants().size(), residuesPerTask, [&](std::size_t i) {
        const sParticipant& one = tree.participants()[i];
        std::vector<sPartner>& found = partners[one.position];
        tree.forEachOfLaterChains(one, range, isHopeless, [&](const sParticipant& other) {
            std::set<eContactType> types;
            if (test(one, other, types)) {
                found.push_back({other.rank, typeSets.numberOf(std::move(types))});
            }
        });
        std::sort(found.begin(), found.end(),
                  [](const sPartner& a, const sPartner& b) { return a.rank < b.rank; });
    });
    return partners;
}

/// Both directions of every pair, in the order in which the pairs are found, and the flags of their
/// residues. Empties `partners`.
std::vector<sContact> recordPairs(cPdbPeptide& peptide, const cResidueTree& tree,
                                  std::vector<std::vector<sPartner>>& partners) {
    std::vector<std::uint32_t> positions(tree.participants().size()); // by rank
    for (const sParticipant& participant : tree.participants()) {
        positions[participant.rank] = participant.position;
    }
    std::size_t pairs = 0;
    for (const std::vector<sPartner>& found : partners) {
        pairs += found.size();
    }
    std::vector<sContact> contacts;
    contacts.reserve(2 * pairs);
    cStopCheck check;
    for (std::uint32_t first = 0; first < partners.size(); ++first) {
        for (const sPartner& partner : partners[first]) {
            check();
            const std::uint32_t second = positions[partner.rank];
            contacts.push_back({first, second, partner.typeSet});
            contacts.push_back({second, first, partner.typeSet});
            peptide.residues[first].isBinding = true;
            peptide.residues[second].isBinding = true;
        }
        partners[first] = {};
    }
    return contacts;
}

/// For every residue a rank, equal for those that compare equal.
struct sRanks {
    std::vector<std::uint32_t> ofResidue;
    std::uint32_t count = 0;
};

/// Ranks of the residues at some positions; the others keep 0.
template <typename Compare>
sRanks rank(std::size_t residueCount, std::vector<std::uint32_t> positions, Compare compare) {
    std::sort(positions.begin(), positions.end(),
              [&](std::uint32_t a, std::uint32_t b) { return compare(a, b) < 0; });
    sRanks ranks{std::vector<std::uint32_t>(residueCount), 0};
    for (std::size_t i = 0; i < positions.size(); ++i) {
        if (i == 0 || compare(positions[i - 1], positions[i]) != 0) {
            ++ranks.count;
        }
        ranks.ofResidue[positions[i]] = ranks.count - 1;
    }
    return ranks;
}

/// Sorts by the rank of one of the two residues; contacts of equal rank stay in their order.
void sortBy(const sRanks& ranks, std::uint32_t sContact::*side, std::vector<sContact>& contacts,
            std::vector<sContact>& sorted) {
    std::vector<std::size_t> places(ranks.count + 1);
    for (const sContact& contact : contacts) {
        ++places[ranks.ofResidue[contact.*side] + 1];
    }
    for (std::size_t i = 1; i < places.size(); ++i) {
        places[i] += places[i - 1];
    }
    cStopCheck check;
    for (const sContact& contact : contacts) {
        check();
        sorted[places[ranks.ofResidue[contact.*side]]++] = contact;
    }
    contacts.swap(sorted);
}

/// Sorts by the chains' ids, then by the residue numbers; equal contacts stay in their order.
void sortContacts(const cPdbPeptide& peptide, const std::vector<std::uint32_t>& chains,
                  std::vector<sContact>& contacts) {
    std::vector<std::uint32_t> positions;
    for (std::uint32_t i = 0; i < peptide.residues.size(); ++i) {
        if (peptide.residues[i].isBinding) {
            positions.push_back(i);
        }
    }
    const std::size_t residues = peptide.residues.size();
    const sRanks numbers = rank(residues, positions, [&](std::uint32_t a, std::uint32_t b) {
        return compareResidueNumbers(peptide.residues[a].residueNumber,
                                     peptide.residues[b].residueNumber);
    });
    const sRanks ids = rank(residues, positions, [&](std::uint32_t a, std::uint32_t b) {
        return peptide.chains[chains[a]].chainId.compare(peptide.chains[chains[b]].chainId);
    });
    // Sorted by the last key first: every later pass keeps what the former ones have done.
    std::vector<sContact> sorted(contacts.size());
    sortBy(numbers, &sContact::residue2, contacts, sorted);
    sortBy(numbers, &sContact::residue1, contacts, sorted);
    sortBy(ids, &sContact::residue2, contacts, sorted);
    sortBy(ids, &sContact::residue1, contacts, sorted);
}

} // namespace

std::vector<std::uint32_t> chainOfResidues(const cPdbPeptide& peptide) {
    std::vector<std::uint32_t> chains;
    chains.reserve(peptide.residues.size());
    for (std::uint32_t i = 0; i < peptide.chains.size(); ++i) {
        chains.insert(chains.end(), peptide.chains[i].residueCount, i);
    }
    return chains;
}

sContactList findContacts(cPdbPeptide& peptide, eInteractionCriterion criterion, double searchValue,
                          double vdwThreshold, const contactMap* rules) {
    const std::vector<std::uint32_t> chains = chainOfResidues(peptide);
    tNameIndices nameIndices;
    const cResidueTree tree(participantsOf(peptide, chains, nameIndices));
    cTypeSets typeSets;
    std::vector<std::vector<sPartner>> partners;
    const auto find = [&](const auto& test) {
        partners = findPartners(tree, peptide.residues.size(), searchValue + sideChainMargin, test,
                                typeSets);
    };
    if (criterion == eInteractionCriterion::maximumDistance) {
        find(cMaximumDistanceTest(searchValue));
    } else if (criterion == eInteractionCriterion::prism) {
        find(cPrismTest(searchValue));
    } else if (criterion == eInteractionCriterion::vorda) {
        const contactMap noRules;
        find(cVordaTest(rules != nullptr ? *rules : noRules, nameIndices, vdwThreshold));
    }
    sContactList list;
    list.contacts = recordPairs(peptide, tree, partners);
    const std::vector<std::uint32_t> places = typeSets.moveTo(list.typeSets);
    for (sContact& contact : list.contacts) {
        contact.typeSet = places[contact.typeSet];
    }
    sortContacts(peptide, chains, list.contacts);
    return list;
}

void markBindingResiduesByAreaChange(cPdbPeptide& peptide, double deltaAsa, double probeRadius,
                                     double zSlice, eAsaForm form) {
    cPdbPeptide apart(peptide);
    apart.setAccessibleSurfaceAreaUnbound(probeRadius, zSlice, form);
    for (std::size_t c = 0; c < peptide.chains.size(); ++c) {
        for (unsigned i = 0; i < peptide.chains[c].residueCount; ++i) {
            cChainResidue& residue = peptide.chains[c].residues[i];
            const double change = apart.chains[c].residues[i].totalAsa - residue.totalAsa;
            if (std::abs(change) > deltaAsa && residue.residueType != eResidueType::other) {
                residue.isBinding = true;
            }
        }
    }
}

// ---- The structure's own list of contacts ----

void cPdbPeptide::resolveContacts(eInteractionCriterion criterion, double searchValue,
                                  double vdwThreshold, const contactMap* map) {
    const sContactList found = findContacts(*this, criterion, searchValue, vdwThreshold, map);
    const std::vector<std::uint32_t> chainPositions = chainOfResidues(*this);
    const auto formerCount = static_cast<std::ptrdiff_t>(contacts.size());
    contacts.reserve(contacts.size() + found.contacts.size());
    cStopCheck check;
    for (const sContact& contact : found.contacts) {
        check();
        const cChainResidue& one = residues[contact.residue1];
        const cChainResidue& other = residues[contact.residue2];
        contacts.emplace_back(chains[chainPositions[contact.residue1]].chainId, one.residueNumber,
                              one.residueName, chains[chainPositions[contact.residue2]].chainId,
                              other.residueNumber, other.residueName,
                              found.typeSets[contact.typeSet], criterion);
    }
    const auto isLess = [&](const cResidueContact& a, const cResidueContact& b) {
        check();
        return a < b;
    };
    std::stable_sort(contacts.begin(), contacts.begin() + formerCount, isLess);
    std::inplace_merge(contacts.begin(), contacts.begin() + formerCount, contacts.end(), isLess);
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

void cPdbPeptide::resolveDovrethContacts(double deltaAsa, double probeRadius, double zSlice,
                                         eAsaForm form) {
    markBindingResiduesByAreaChange(*this, deltaAsa, probeRadius, zSlice, form);
}

} // namespace kelmo
