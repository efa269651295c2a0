#include "tests/support/reference_contacts.h"

#include "tests/support/reference_attributes.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>
#include <tuple>
#include <utility>

namespace kelmo {

namespace reference {
namespace {

constexpr double representativeMargin = 15.0; // added to every search distance, in ångström
constexpr double vordaVdwThreshold = 1.125;
constexpr double vordaSearchValue = 6.0;

long leadingInteger(const std::string& text) {
    return std::strtol(text.c_str(), nullptr, 10);
}

// What decides between two residue numbers: the number that the text begins with, then the text.
std::pair<long, std::string> numberKey(const std::string& residueNumber) {
    return {leadingInteger(residueNumber), residueNumber};
}

auto sortingKey(const sContact& contact) {
    return std::tuple(contact.chain1, contact.chain2, numberKey(contact.residueNumber1),
                      numberKey(contact.residueNumber2), static_cast<int>(contact.criterion));
}

} // namespace

bool isLess(const sContact& a, const sContact& b) {
    return sortingKey(a) < sortingKey(b);
}

namespace {

void addRule(tContactRules& rules, const sContactRule& rule) {
    rules[rule.residueName1 + "_" + rule.residueName2].push_back(rule);
}

sContactRule mirrored(const sContactRule& rule) {
    sContactRule mirror = rule;
    std::swap(mirror.atomName1, mirror.atomName2);
    std::swap(mirror.residueName1, mirror.residueName2);
    std::swap(mirror.atomIndex1, mirror.atomIndex2);
    return mirror;
}

} // namespace

void readContactRules(const std::string& tableText, tContactRules& rules) {
    std::istringstream in(tableText);
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
        sContactRule rule;
        rule.residueName1 = line.substr(0, 3);
        rule.atomIndex1 = static_cast<std::uint32_t>(leadingInteger(line.substr(5, 2)));
        rule.atomName1 = trimmed(line.substr(9, 3));
        rule.residueName2 = line.substr(14, 3);
        rule.atomIndex2 = static_cast<std::uint32_t>(leadingInteger(line.substr(19, 2)));
        rule.atomName2 = trimmed(line.substr(23, 3));
        rule.maxDistance = std::strtod(line.substr(28, 5).c_str(), nullptr);
        rule.contactType = static_cast<int>(leadingInteger(line.substr(35, 4)));
        addRule(rules, rule);
        if (rule.residueName1 != rule.residueName2 || rule.atomName1 != rule.atomName2) {
            addRule(rules, mirrored(rule));
        }
    }
}

bool findRuleTypes(const sStructure& structure, const sResidue& a, const sResidue& b,
                   const tContactRules& rules, std::set<int>& types) {
    const auto rows = rules.find(a.name + "_" + b.name);
    if (rows == rules.end()) {
        return false;
    }
    const auto atomsA = structure.atomsOf(a);
    const auto atomsB = structure.atomsOf(b);
    bool isFound = false;
    for (const sContactRule& rule : rows->second) {
        if (rule.atomIndex1 >= atomsA.size() || rule.atomIndex2 >= atomsB.size()) {
            continue;
        }
        if (rule.atomName1 == "ALL" && rule.atomName2 == "ALL") {
            for (const sAtom& atomA : atomsA) {
                for (const sAtom& atomB : atomsB) {
                    if (centreDistance(atomA, atomB) <= rule.maxDistance) {
                        types.insert(rule.contactType);
                        isFound = true;
                    }
                }
            }
            continue;
        }
        const sAtom& atomA = atomsA[rule.atomIndex1];
        const sAtom& atomB = atomsB[rule.atomIndex2];
        if (atomA.name == rule.atomName1 && atomB.name == rule.atomName2 &&
            centreDistance(atomA, atomB) <= rule.maxDistance) {
            types.insert(rule.contactType);
            isFound = true;
        }
    }
    return isFound;
}

namespace {

bool isWithinRange(const sStructure& structure, const sResidue& a, const sResidue& b,
                   double range) {
    for (const sAtom& atomA : structure.atomsOf(a)) {
        for (const sAtom& atomB : structure.atomsOf(b)) {
            if (isInRangeByCentre(atomA, atomB, range)) {
                return true;
            }
        }
    }
    return false;
}

bool isWithinRangeFromRadius(const sStructure& structure, const sResidue& a, const sResidue& b,
                             double value) {
    for (const sAtom& atomA : structure.atomsOf(a)) {
        for (const sAtom& atomB : structure.atomsOf(b)) {
            if (doSpheresIntersect(atomA, atomB, value * 0.5)) {
                return true;
            }
        }
    }
    return false;
}

bool areInContact(const sStructure& structure, const sResidue& a, const sResidue& b,
                  eCriterion criterion, double searchValue, double vdwThreshold,
                  const tContactRules& rules, std::set<int>& types) {
    if (criterion == eCriterion::maximumDistance) {
        return isWithinRange(structure, a, b, searchValue);
    }
    if (criterion == eCriterion::prism) {
        return isWithinRangeFromRadius(structure, a, b, searchValue);
    }
    if (criterion == eCriterion::vorda) {
        findRuleTypes(structure, a, b, rules, types);
        if (isWithinRangeFromRadius(structure, a, b, vdwThreshold)) {
            types.insert(4);
        }
        return !types.empty();
    }
    return false;
}

void addContact(std::vector<sContact>& contacts, const sChain& chainA, const sResidue& a,
                const sChain& chainB, const sResidue& b, const std::set<int>& types,
                eCriterion criterion) {
    contacts.push_back(
        {chainA.chainId, a.number, a.name, chainB.chainId, b.number, b.name, types, criterion});
    contacts.push_back(
        {chainB.chainId, b.number, b.name, chainA.chainId, a.number, a.name, types, criterion});
}

bool takesPart(const sResidue& residue) {
    return residue.atomCount >= 2 && residue.type != 0;
}

} // namespace

std::vector<sContact> resolveContacts(sStructure& structure, eCriterion criterion,
                                      double searchValue, double vdwThreshold,
                                      const tContactRules& rules) {
    std::vector<sContact> contacts;
    const double range = searchValue + representativeMargin;
    for (std::size_t i = 0; i < structure.chains.size(); ++i) {
        for (sResidue& a : structure.residuesOf(structure.chains[i])) {
            for (std::size_t j = i + 1; takesPart(a) && j < structure.chains.size(); ++j) {
                for (sResidue& b : structure.residuesOf(structure.chains[j])) {
                    if (!takesPart(b) || !isInRangeByCentre(structure.atomsOf(a)[1],
                                                            structure.atomsOf(b)[1], range)) {
                        continue;
                    }
                    std::set<int> types;
                    if (areInContact(structure, a, b, criterion, searchValue, vdwThreshold, rules,
                                     types)) {
                        addContact(contacts, structure.chains[i], a, structure.chains[j], b, types,
                                   criterion);
                        a.isBinding = true;
                        b.isBinding = true;
                    }
                }
            }
        }
    }
    std::stable_sort(contacts.begin(), contacts.end(), isLess);
    return contacts;
}

void resolveAreaChanges(sStructure& structure, double deltaAsa, double probeRadius, double zSlice) {
    sStructure copy = structure;
    for (sChain& chain : copy.chains) {
        setChainAloneAreas(copy, chain, probeRadius, zSlice);
        for (std::size_t k = 0; k < chain.residueCount; ++k) {
            const double unbound = copy.residues[chain.firstResidue + k].areas.total;
            sResidue& residue = structure.residues[chain.firstResidue + k];
            if (std::fabs(unbound - residue.areas.total) > deltaAsa && residue.type != 0) {
                residue.isBinding = true;
            }
        }
    }
}

std::vector<sContact> analyseInteractions(sStructure& structure, const sVorSettings& settings) {
    switch (settings.criterion) {
    case eCriterion::maximumDistance:
    case eCriterion::prism:
        return resolveContacts(structure, settings.criterion, settings.threshold, 0.0, {});
    case eCriterion::dovreth:
        setBoundAreas(structure, settings.probeRadius, settings.zSlice);
        resolveAreaChanges(structure, settings.threshold, settings.probeRadius, settings.zSlice);
        return {};
    case eCriterion::vorda:
        return resolveContacts(structure, settings.criterion, vordaSearchValue, vordaVdwThreshold,
                               settings.rules);
    case eCriterion::none:
        break;
    }
    return {};
}

} // namespace reference

} // namespace kelmo
