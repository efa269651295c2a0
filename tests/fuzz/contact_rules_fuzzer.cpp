// Fuzzes the contact rules: any bytes give the rules, or the faulty line, that the slow reference
// reader finds, and the same contacts between the residues of a small complex.
#include "analysis/parameter_tables.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/sample_cuts.h"
#include "tests/support/reference_contacts.h"
#include "tests/support/shipped_inputs.h"

#include <set>
#include <sstream>
#include <stdexcept>

namespace kelmo {

namespace {

/// A few residues around a place where the chains of a sample touch.
struct sComplex {
    cPdbPeptide peptide;
    reference::sStructure expected;

    sComplex() {
        const std::string text = interfaceCut("1a0q", 5.0);
        std::istringstream in(text);
        std::set<std::string> missing;
        int faultyLine = peptide.loadFromStream(in, shippedTables().radii, missing);
        expected = reference::readStructure(text, shippedTables().radii, missing, faultyLine);
        require(peptide.chains.size() >= 2, "a sample with an interface");
    }
};

bool isSameRule(const sResidueAtomContact& rule, const reference::sContactRule& expected) {
    return rule.atomName1 == expected.atomName1 && rule.atomName2 == expected.atomName2 &&
           rule.residueName1 == expected.residueName1 &&
           rule.residueName2 == expected.residueName2 &&
           static_cast<int>(rule.contactType) == expected.contactType &&
           rule.atomIndex1 == expected.atomIndex1 && rule.atomIndex2 == expected.atomIndex2 &&
           (rule.maxDistance == expected.maxDistance ||
            (rule.maxDistance != rule.maxDistance && expected.maxDistance != expected.maxDistance));
}

void requireSameRules(const contactMap& rules, const reference::tContactRules& expected) {
    require(rules.size() == expected.size(), "rules for as many pairs of residues");
    auto other = expected.begin();
    for (const auto& [key, list] : rules) {
        require(key == other->first && list.size() == other->second.size(),
                "as many rules for each pair of residues");
        for (std::size_t i = 0; i < list.size(); ++i) {
            require(isSameRule(list[i], other->second[i]), "the rules of the reference");
        }
        ++other;
    }
}

void requireSameContacts(const contactMap& rules, const reference::tContactRules& expectedRules) {
    static const sComplex complex;
    const auto& residues = complex.peptide.residues;
    for (std::size_t i = 0; i < residues.size(); ++i) {
        for (std::size_t j = 0; j < residues.size(); ++j) {
            std::set<eContactType> types;
            std::set<int> expected;
            const bool isFound = doTheyFormContact(residues[i], residues[j], rules, types);
            const bool isExpected =
                reference::findRuleTypes(complex.expected, complex.expected.residues[i],
                                         complex.expected.residues[j], expectedRules, expected);
            std::set<int> found;
            for (const eContactType type : types) {
                found.insert(static_cast<int>(type));
            }
            require(isFound == isExpected && found == expected, "the contacts of the reference");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text = textOf(bytes, size);
    std::istringstream in(text);
    contactMap rules;
    int line = 0;
    bool isFaulty = false;
    try {
        createStringContactMap(in, rules, &line);
    } catch (const std::out_of_range&) {
        isFaulty = true;
    }
    reference::tContactRules expected;
    bool isFaultyToReference = false;
    try {
        reference::readContactRules(text, expected);
    } catch (const std::out_of_range&) {
        isFaultyToReference = true;
    }
    require(isFaulty == isFaultyToReference, "a fault where the reference finds one");
    requireSameRules(rules, expected);
    requireSameContacts(rules, expected);

    std::istringstream again(text);
    contactMap ignored;
    const std::string message = readContactRules(again, ignored);
    require(message.empty() != isFaulty &&
                (!isFaulty || message.ends_with(": " + std::to_string(line))),
            "a message that names the line");
    return 0;
}

} // namespace kelmo
