#include "contacts/residue_contact.h"

#include "base/string_operation.h"
#include "base/text_line.h"
#include "model/atom_pairs.h"

#include <algorithm>
#include <cstddef>
#include <istream>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace kelmo {

namespace {

constexpr const char* everyAtom = "ALL";

/// What strtol reads in base 10 in the C locale: blanks, a sign, digits; 0 without digits, the
/// nearest representable value for too many of them.
long leadingInteger(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    // Summed below zero, where there is room for one value more.
    constexpr long lowest = std::numeric_limits<long>::min();
    long negated = 0;
    for (std::size_t i = 0; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        const long digit = text[i] - '0';
        if (negated < (lowest + digit) / 10) {
            negated = lowest;
            break;
        }
        negated = negated * 10 - digit;
    }
    if (isNegative) {
        return negated;
    }
    return negated == lowest ? std::numeric_limits<long>::max() : -negated;
}

/// The field at a zero-based column, cut off where the line ends.
std::string field(const std::string& line, std::size_t column, std::size_t length) {
    if (column > line.size()) {
        throw std::out_of_range("basic_string::substr");
    }
    return line.substr(column, length);
}

sResidueAtomContact ruleOfLine(const std::string& line) {
    sResidueAtomContact rule;
    rule.residueName1 = field(line, 0, 3);
    rule.atomIndex1 = static_cast<std::uint32_t>(leadingInteger(field(line, 5, 2)));
    rule.atomName1 = trimString(field(line, 9, 3));
    rule.residueName2 = field(line, 14, 3);
    rule.atomIndex2 = static_cast<std::uint32_t>(leadingInteger(field(line, 19, 2)));
    rule.atomName2 = trimString(field(line, 23, 3));
    rule.maxDistance = toNumber(field(line, 28, 5));
    rule.contactType = static_cast<eContactType>(leadingInteger(field(line, 35, 4)));
    return rule;
}

sResidueAtomContact mirrored(sResidueAtomContact rule) {
    std::swap(rule.residueName1, rule.residueName2);
    std::swap(rule.atomName1, rule.atomName2);
    std::swap(rule.atomIndex1, rule.atomIndex2);
    return rule;
}

std::string keyOf(const std::string& residueName1, const std::string& residueName2) {
    return residueName1 + "_" + residueName2;
}

void addRule(sResidueAtomContact rule, contactMap& map) {
    map[keyOf(rule.residueName1, rule.residueName2)].push_back(std::move(rule));
}

bool isFulfilled(const sResidueAtomContact& rule, const cChainResidue& r1,
                 const cChainResidue& r2) {
    if (rule.atomIndex1 >= r1.atomCount || rule.atomIndex2 >= r2.atomCount) {
        return false;
    }
    if (rule.atomName1 == everyAtom && rule.atomName2 == everyAtom) {
        return isAnyAtomPair(r1, r2, [&](const cResidueAtom& a, const cResidueAtom& b) {
            return centreDistance(a, b) <= rule.maxDistance;
        });
    }
    const cResidueAtom& atom1 = r1.atoms[rule.atomIndex1];
    const cResidueAtom& atom2 = r2.atoms[rule.atomIndex2];
    return centreDistance(atom1, atom2) <= rule.maxDistance && atom1.atomName == rule.atomName1 &&
           atom2.atomName == rule.atomName2;
}

} // namespace

int compareResidueNumbers(const std::string& a, const std::string& b) {
    const long left = leadingInteger(a);
    const long right = leadingInteger(b);
    if (left != right) {
        return left < right ? -1 : 1;
    }
    return a.compare(b);
}

bool operator==(const cResidueContact& a, const cResidueContact& b) {
    return a.chain1 == b.chain1 && a.residueNumber1 == b.residueNumber1 && a.chain2 == b.chain2 &&
           a.residueNumber2 == b.residueNumber2 && a.criterion == b.criterion;
}

bool operator!=(const cResidueContact& a, const cResidueContact& b) {
    return !(a == b);
}

bool operator<(const cResidueContact& a, const cResidueContact& b) {
    if (const int order = a.chain1.compare(b.chain1); order != 0) {
        return order < 0;
    }
    if (const int order = a.chain2.compare(b.chain2); order != 0) {
        return order < 0;
    }
    if (const int order = compareResidueNumbers(a.residueNumber1, b.residueNumber1); order != 0) {
        return order < 0;
    }
    if (const int order = compareResidueNumbers(a.residueNumber2, b.residueNumber2); order != 0) {
        return order < 0;
    }
    return a.criterion < b.criterion;
}

bool operator>(const cResidueContact& a, const cResidueContact& b) {
    return !(a < b) && a != b;
}

void createStringContactMap(std::istream& in, contactMap& map) {
    int lineNumber = 0;
    createStringContactMap(in, map, &lineNumber);
}

void createStringContactMap(std::istream& in, contactMap& map, int* lineNumber) {
    *lineNumber = 0;
    std::size_t size = 0;
    std::string line;
    while (getTextLine(in, line)) {
        const bool isHeader = ++*lineNumber == 1;
        if (line.size() > longestTextLine) {
            throw std::out_of_range("a line without end");
        }
        size += line.size() + 1;
        if (size > largestTable) {
            in.setstate(std::ios::failbit);
            throw std::out_of_range("a table without end");
        }
        if (isHeader) {
            continue;
        }
        const sResidueAtomContact rule = ruleOfLine(line);
        addRule(rule, map);
        // Positions are not compared: an atom name that stands twice in one residue type is one
        // rule.
        if (rule.residueName1 != rule.residueName2 || rule.atomName1 != rule.atomName2) {
            addRule(mirrored(rule), map);
        }
    }
}

bool doTheyFormContact(const cChainResidue& r1, const cChainResidue& r2, const contactMap& map,
                       std::set<eContactType>& types) {
    const auto entry = map.find(keyOf(r1.residueName, r2.residueName));
    return entry != map.end() && doTheyFormContact(r1, r2, entry->second, types);
}

bool doTheyFormContact(const cChainResidue& r1, const cChainResidue& r2,
                       const std::vector<sResidueAtomContact>& rules,
                       std::set<eContactType>& types) {
    bool found = false;
    for (const sResidueAtomContact& rule : rules) {
        if (isFulfilled(rule, r1, r2)) {
            types.insert(rule.contactType);
            found = true;
        }
    }
    return found;
}

} // namespace kelmo
