// Contact records and their order, the contact rule table, and the rule test of two residues.
#include "contacts/residue_contact.h"

#include "base/text_line.h"
#include "model/chain_residue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <type_traits>

namespace kelmo {

using enum eInteractionCriterion;
using enum eContactType;

namespace {

cResidueContact contactOf(const std::string& chain1, const std::string& number1,
                          const std::string& chain2, const std::string& number2,
                          eInteractionCriterion criterion = maximumDistance) {
    return cResidueContact(chain1, number1, "ALA", chain2, number2, "GLY", criterion);
}

/// Contacts that differ in the number of their first residue only.
cResidueContact numbered(const std::string& number) {
    return contactOf("A", number, "B", "1");
}

// The columns of a table row:
//   0    5   9    14   19  23   28     35
const std::string header = "RES  IX  ATM  RES  IX  ATM  DIST.  TYPE\n";
const std::string saltBridge = "ARG   9  NH1  ASP   6  OD1   4.00     3";

contactMap readTable(const std::string& text) {
    std::istringstream in(text);
    contactMap map;
    createStringContactMap(in, map);
    return map;
}

/// A residue that owns its atoms. The atoms stand along x, one after the other.
class cLineResidue {
  public:
    cLineResidue(const std::string& name, const std::vector<std::string>& atomNames, double x,
                 double spacing = 1.0) {
        for (const std::string& atomName : atomNames) {
            atoms.emplace_back(atomName, "1", x, 0.0, 0.0, 1.7);
            x += spacing;
        }
        residue = cChainResidue(name, "1", atoms.data(), static_cast<unsigned>(atoms.size()),
                                eResidueType::aminoAcid);
    }
    cLineResidue(const cLineResidue&) = delete;
    cLineResidue& operator=(const cLineResidue&) = delete;

    const cChainResidue& operator*() const { return residue; }

  private:
    std::vector<cResidueAtom> atoms;
    cChainResidue residue;
};

sResidueAtomContact ruleOf(const std::string& atomName1, unsigned atomIndex1,
                           const std::string& atomName2, unsigned atomIndex2, double maxDistance,
                           eContactType type) {
    sResidueAtomContact rule;
    rule.residueName1 = "ARG";
    rule.residueName2 = "ASP";
    rule.atomName1 = atomName1;
    rule.atomIndex1 = atomIndex1;
    rule.atomName2 = atomName2;
    rule.atomIndex2 = atomIndex2;
    rule.maxDistance = maxDistance;
    rule.contactType = type;
    return rule;
}

using tTypes = std::set<eContactType>;

} // namespace

TEST(ResidueContact, DefaultContactIsEmpty) {
    const cResidueContact contact;
    EXPECT_EQ(contact.chain1 + contact.residueNumber1 + contact.residueName1, "");
    EXPECT_EQ(contact.chain2 + contact.residueNumber2 + contact.residueName2, "");
    EXPECT_TRUE(contact.contactTypes.empty());
    EXPECT_EQ(contact.criterion, none);
}

TEST(ResidueContact, ConstructorsTakeChainNumberAndNameOfEachResidue) {
    const cResidueContact untyped("A", "12", "ARG", "B", "7A", "ASP", prism);
    EXPECT_EQ(untyped.chain1, "A");
    EXPECT_EQ(untyped.residueNumber1, "12");
    EXPECT_EQ(untyped.residueName1, "ARG");
    EXPECT_EQ(untyped.chain2, "B");
    EXPECT_EQ(untyped.residueNumber2, "7A");
    EXPECT_EQ(untyped.residueName2, "ASP");
    EXPECT_TRUE(untyped.contactTypes.empty());
    EXPECT_EQ(untyped.criterion, prism);

    const cResidueContact typed("A", "12", "ARG", "B", "7A", "ASP", {vanDerWaals, ionic}, vorda);
    EXPECT_EQ(typed, cResidueContact("A", "12", "ARG", "B", "7A", "ASP", vorda));
    EXPECT_EQ(typed.contactTypes, (tTypes{ionic, vanDerWaals}));
}

TEST(ResidueContact, CopiesShareNothing) {
    const cResidueContact original("A", "1", "ARG", "B", "2", "ASP", {ionic}, vorda);
    cResidueContact copy(original);
    copy.contactTypes.insert(polar);
    copy.chain1 = "C";
    EXPECT_EQ(original.contactTypes, tTypes{ionic});
    EXPECT_EQ(original.chain1, "A");
    copy = original;
    EXPECT_EQ(copy.contactTypes, tTypes{ionic});
    EXPECT_EQ(copy, original);
}

TEST(ResidueContact, EnumerationsAreStoredAsSigned32BitNumbers) {
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<eContactType>, std::int32_t>));
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<eInteractionCriterion>, std::int32_t>));
}

TEST(ResidueContact, NamesAndTypesAreNoPartOfIdentityOrOrder) {
    const cResidueContact a("A", "1", "ARG", "B", "2", "ASP", {ionic}, vorda);
    const cResidueContact b("A", "1", "LYS", "B", "2", "GLU", {polar, vanDerWaals}, vorda);
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_FALSE(a > b);
    EXPECT_FALSE(b > a);
}

TEST(ResidueContact, EachPartOfTheIdentityDistinguishes) {
    const cResidueContact base = contactOf("A", "1", "B", "2");
    for (const cResidueContact& other :
         {contactOf("C", "1", "B", "2"), contactOf("A", "3", "B", "2"),
          contactOf("A", "1", "C", "2"), contactOf("A", "1", "B", "3"),
          contactOf("A", "1", "B", "2", prism), contactOf("a", "1", "B", "2"),
          contactOf("A", "01", "B", "2"), contactOf("A", "1", "B", "2A")}) {
        EXPECT_FALSE(base == other);
        EXPECT_TRUE(base != other);
        EXPECT_NE(base < other, other < base);
        EXPECT_EQ(base > other, other < base);
    }
}

TEST(ResidueContact, OrderGoesByChainsThenNumbersThenCriterion) {
    const std::vector<cResidueContact> ascending = {
        contactOf("", "9", "Z", "9"),         contactOf("A", "9", "A", "9"),
        contactOf("A", "5", "B", "8"),        contactOf("A", "5", "B", "9", maximumDistance),
        contactOf("A", "5", "B", "9", vorda), contactOf("A", "6", "B", "1"),
        contactOf("A", "1", "C", "1"),        contactOf("AA", "1", "A", "1"),
        contactOf("B", "1", "A", "1"),        contactOf("a", "1", "A", "1"),
        contactOf("\xC4", "1", "A", "1")};
    for (std::size_t i = 0; i < ascending.size(); ++i) {
        for (std::size_t j = 0; j < ascending.size(); ++j) {
            EXPECT_EQ(ascending[i] < ascending[j], i < j) << i << " and " << j;
            EXPECT_EQ(ascending[i] > ascending[j], i > j) << i << " and " << j;
        }
    }
}

TEST(ResidueContact, ResidueNumbersSortAsNumbersAndThenAsTexts) {
    EXPECT_LT(numbered("9"), numbered("10"));
    EXPECT_LT(numbered("10"), numbered("10A"));
    EXPECT_LT(numbered("10A"), numbered("10B"));
    EXPECT_LT(numbered("10B"), numbered("11"));
    EXPECT_LT(numbered("-1"), numbered("0"));
    EXPECT_LT(numbered("-10"), numbered("-9"));
    EXPECT_LT(contactOf("A", "1", "B", "9"), contactOf("A", "1", "B", "10"));
    EXPECT_LT(contactOf("A", "1", "B", "10"), contactOf("A", "1", "B", "10A"));
}

TEST(ResidueContact, NumbersWithoutDigitsCountAsZero) {
    EXPECT_LT(numbered("****"), numbered("1"));
    EXPECT_LT(numbered("-1"), numbered("****"));
    EXPECT_LT(numbered("****"), numbered("0")); // equal as numbers, '*' before '0' as texts
    EXPECT_LT(numbered("--7"), numbered("1"));
    EXPECT_LT(numbered("-8"), numbered("--7"));
}

TEST(ResidueContact, OrderIsStrictAndWeakForAnyNumberText) {
    const std::vector<std::string> numbers = {"",
                                              " ",
                                              "0",
                                              "-0",
                                              "+0",
                                              "00",
                                              "7",
                                              "+7",
                                              " 7",
                                              "\t\n\v\f\r7",
                                              "7A",
                                              "-7",
                                              "- 7",
                                              "+-7",
                                              "A7",
                                              "0x10",
                                              "****",
                                              "9223372036854775806",
                                              "9223372036854775807",
                                              "9223372036854775808",
                                              "9223372036854775809B",
                                              "99999999999999999999999999",
                                              "-9223372036854775807",
                                              "-9223372036854775808",
                                              "-9223372036854775809",
                                              "-99999999999999999999999999"};
    const auto isBefore = [](const std::string& a, const std::string& b) {
        return numbered(a) < numbered(b);
    };
    for (const std::string& a : numbers) {
        for (const std::string& b : numbers) {
            const long left = std::strtol(a.c_str(), nullptr, 10);
            const long right = std::strtol(b.c_str(), nullptr, 10);
            EXPECT_EQ(isBefore(a, b), left != right ? left < right : a < b) << a << " and " << b;
            EXPECT_EQ(!isBefore(a, b) && !isBefore(b, a), numbered(a) == numbered(b));
            EXPECT_FALSE(isBefore(a, b) && isBefore(b, a)) << a << " and " << b;
            for (const std::string& c : numbers) {
                EXPECT_TRUE(!(isBefore(a, b) && isBefore(b, c)) || isBefore(a, c));
            }
        }
    }
}

TEST(ContactTable, TableWithOnlyAHeaderIsEmpty) {
    EXPECT_TRUE(readTable(header).empty());
    EXPECT_TRUE(readTable("RES").empty());
    EXPECT_TRUE(readTable("").empty());
}

TEST(ContactTable, HeaderIsIgnoredWhateverItSays) {
    EXPECT_TRUE(readTable(saltBridge + "\n").empty());
    EXPECT_EQ(readTable("\n" + saltBridge + "\n").size(), 2U);
}

TEST(ContactTable, RowIsReadFromItsColumns) {
    const contactMap map = readTable(header + saltBridge + "\n");
    ASSERT_EQ(map.at("ARG_ASP").size(), 1U);
    const sResidueAtomContact& rule = map.at("ARG_ASP").front();
    EXPECT_EQ(rule.residueName1, "ARG");
    EXPECT_EQ(rule.atomIndex1, 9U);
    EXPECT_EQ(rule.atomName1, "NH1");
    EXPECT_EQ(rule.residueName2, "ASP");
    EXPECT_EQ(rule.atomIndex2, 6U);
    EXPECT_EQ(rule.atomName2, "OD1");
    EXPECT_EQ(rule.maxDistance, 4.0);
    EXPECT_EQ(rule.contactType, ionic);
}

TEST(ContactTable, RowIsAlsoStoredMirrored) {
    const contactMap map = readTable(header + saltBridge + "\n");
    ASSERT_EQ(map.size(), 2U);
    ASSERT_EQ(map.at("ASP_ARG").size(), 1U);
    const sResidueAtomContact& rule = map.at("ASP_ARG").front();
    EXPECT_EQ(rule.residueName1, "ASP");
    EXPECT_EQ(rule.atomIndex1, 6U);
    EXPECT_EQ(rule.atomName1, "OD1");
    EXPECT_EQ(rule.residueName2, "ARG");
    EXPECT_EQ(rule.atomIndex2, 9U);
    EXPECT_EQ(rule.atomName2, "NH1");
    EXPECT_EQ(rule.maxDistance, 4.0);
    EXPECT_EQ(rule.contactType, ionic);
}

TEST(ContactTable, SeparatorColumnsAreIgnored) {
    const contactMap map = readTable(header + "ARGxx 9xxNH1xxASPxx 6xxOD1xx 4.00xx   3\n");
    ASSERT_EQ(map.size(), 2U);
    EXPECT_EQ(map.at("ARG_ASP").front().maxDistance, 4.0);
    EXPECT_EQ(map.at("ARG_ASP").front().contactType, ionic);
}

TEST(ContactTable, AtomNamesAreTrimmedResidueNamesAreNot) {
    const contactMap map = readTable(header + " A    0   N   G     1  \tCA   3.50     2\n");
    ASSERT_EQ(map.size(), 2U);
    ASSERT_EQ(map.count(" A _G  "), 1U);
    EXPECT_EQ(map.at(" A _G  ").front().atomName1, "N");
    EXPECT_EQ(map.at(" A _G  ").front().atomName2, "CA");
}

TEST(ContactTable, SameResidueWithTwoAtomsIsStoredTwice) {
    const contactMap map = readTable(header + "ASP   6  OD1  ASP   7  OD2   3.50     2\n");
    ASSERT_EQ(map.size(), 1U);
    const auto& rules = map.at("ASP_ASP");
    ASSERT_EQ(rules.size(), 2U);
    EXPECT_EQ(rules[0].atomName1, "OD1");
    EXPECT_EQ(rules[0].atomIndex1, 6U);
    EXPECT_EQ(rules[1].atomName1, "OD2");
    EXPECT_EQ(rules[1].atomIndex1, 7U);
}

TEST(ContactTable, SameResidueWithOneAtomIsStoredOnceEvenAtTwoPositions) {
    EXPECT_EQ(readTable(header + "ASP   6  OD1  ASP   6  OD1   3.50     2\n").at("ASP_ASP").size(),
              1U);
    EXPECT_EQ(readTable(header + "ASP   6  OD1  ASP   7  OD1   3.50     2\n").at("ASP_ASP").size(),
              1U);
    // Trimmed names are compared.
    EXPECT_EQ(readTable(header + "ASP   6  CA   ASP   7   CA   3.50     2\n").at("ASP_ASP").size(),
              1U);
}

TEST(ContactTable, SameAtomsOfDifferentResiduesAreMirrored) {
    const contactMap map = readTable(header + "ALA   4  CB   VAL   4  CB    4.50     1\n");
    EXPECT_EQ(map.at("ALA_VAL").size(), 1U);
    EXPECT_EQ(map.at("VAL_ALA").size(), 1U);
}

TEST(ContactTable, RulesKeepTheirOrderAndAreAddedToThoseOfTheMap) {
    std::istringstream first(header + saltBridge + "\n");
    std::istringstream second(header + "ASP   7  OD2  ARG   9  NH1   3.90     3\n" + saltBridge);
    contactMap map;
    createStringContactMap(first, map);
    createStringContactMap(second, map);
    const auto& rules = map.at("ARG_ASP");
    ASSERT_EQ(rules.size(), 3U);
    EXPECT_EQ(rules[0].atomName2, "OD1");
    EXPECT_EQ(rules[1].atomName2, "OD2");
    EXPECT_EQ(rules[1].maxDistance, 3.9);
    EXPECT_EQ(rules[2].atomName2, "OD1");
}

TEST(ContactTable, LastLineNeedsNoLineEnd) {
    EXPECT_EQ(readTable(header + saltBridge).at("ARG_ASP").size(), 1U);
}

TEST(ContactTable, CarriageReturnsDoNotHarm) {
    const contactMap map = readTable("RES\r\n" + saltBridge + "\r\n");
    EXPECT_EQ(map.at("ARG_ASP").front().contactType, ionic);
}

TEST(ContactTable, LineWithoutItsTypeColumnsHasTypeZero) {
    const contactMap map = readTable(header + saltBridge.substr(0, 35) + "\n");
    ASSERT_EQ(map.at("ARG_ASP").size(), 1U);
    EXPECT_EQ(map.at("ARG_ASP").front().contactType, undefined);
    EXPECT_EQ(map.at("ARG_ASP").front().maxDistance, 4.0);
}

TEST(ContactTable, TypesOutsideTheEnumerationAreKept) {
    EXPECT_EQ(readTable(header + saltBridge.substr(0, 35) + "9999\n").at("ARG_ASP")[0].contactType,
              static_cast<eContactType>(9999));
    EXPECT_EQ(readTable(header + saltBridge.substr(0, 35) + " -12\n").at("ARG_ASP")[0].contactType,
              static_cast<eContactType>(-12));
}

TEST(ContactTable, ColumnsBehindTheTypeAreIgnored) {
    EXPECT_EQ(readTable(header + saltBridge + "77 comment\n").at("ARG_ASP")[0].contactType, ionic);
}

TEST(ContactTable, EveryShorterLineIsAnErrorThatKeepsTheRulesBefore) {
    for (std::size_t length = 0; length < 35; ++length) {
        std::istringstream in(header + saltBridge + "\n" + saltBridge.substr(0, length) + "\n" +
                              "LYS   8  NZ   GLU   7  OE1   4.00     3\n");
        contactMap map;
        int lineNumber = -1;
        try {
            createStringContactMap(in, map, &lineNumber);
            ADD_FAILURE() << "a line of " << length << " characters was read";
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "basic_string::substr");
        }
        EXPECT_EQ(lineNumber, 3);
        EXPECT_EQ(map.size(), 2U);
        EXPECT_EQ(map.at("ARG_ASP").size(), 1U);
    }
}

TEST(ContactTable, EmptyLineAtTheEndIsAnError) {
    std::istringstream in(header + saltBridge + "\n\n");
    contactMap map;
    EXPECT_THROW(createStringContactMap(in, map), std::out_of_range);
    EXPECT_EQ(map.size(), 2U);
}

TEST(ContactTable, EndsInTheLineThatIsTooMuch) {
    std::string longRule = saltBridge;
    longRule.resize((std::size_t{1} << 20U) - 1, ' ');
    const std::size_t lines = largestTable / (longRule.size() + 1);
    std::string table;
    for (std::size_t i = 0; i < lines; ++i) {
        table += longRule + '\n';
    }
    EXPECT_EQ(readTable(table).at("ARG_ASP").size(), lines - 1) << "the first line is a header";

    std::istringstream in(table + "\n");
    contactMap map;
    int lineNumber = -1;
    EXPECT_THROW(createStringContactMap(in, map, &lineNumber), std::out_of_range);
    EXPECT_EQ(lineNumber, static_cast<int>(lines) + 1);
    EXPECT_EQ(map.at("ARG_ASP").size(), lines - 1);
    EXPECT_TRUE(in.fail());
    EXPECT_FALSE(in.bad());
}

TEST(ContactTable, LineNumberIsThatOfTheLastLineRead) {
    const auto lastLine = [](const std::string& text) {
        std::istringstream in(text);
        contactMap map;
        int lineNumber = -1;
        createStringContactMap(in, map, &lineNumber);
        return lineNumber;
    };
    EXPECT_EQ(lastLine(""), 0);
    EXPECT_EQ(lastLine(header), 1);
    EXPECT_EQ(lastLine(header + saltBridge + "\n"), 2);
    EXPECT_EQ(lastLine(header + saltBridge + "\n" + saltBridge), 3);
}

TEST(ContactTable, UnreadableNumbersAreZero) {
    const contactMap map = readTable(header + "ARG  x1  NH1  ASP  --  OD1  near    vdW\n");
    const sResidueAtomContact& rule = map.at("ARG_ASP").front();
    EXPECT_EQ(rule.atomIndex1, 0U);
    EXPECT_EQ(rule.atomIndex2, 0U);
    EXPECT_EQ(rule.maxDistance, 0.0);
    EXPECT_EQ(rule.contactType, undefined);
}

TEST(ContactTable, NumbersEndAtTheFirstForeignCharacter) {
    const contactMap map = readTable(header + "ARG  1x  NH1  ASP  2.  OD1  3.5xx  4xx\n");
    const sResidueAtomContact& rule = map.at("ARG_ASP").front();
    EXPECT_EQ(rule.atomIndex1, 1U);
    EXPECT_EQ(rule.atomIndex2, 2U);
    EXPECT_EQ(rule.maxDistance, 3.5);
    EXPECT_EQ(rule.contactType, vanDerWaals);
}

TEST(ContactTable, DistancesMayHaveExponents) {
    EXPECT_EQ(
        readTable(header + "ARG   9  NH1  ASP   6  OD1  45e-1     3").at("ARG_ASP")[0].maxDistance,
        4.5);
}

TEST(ContactTable, NegativePositionsLieOutsideEveryResidue) {
    const contactMap map = readTable(header + "ARG  -1  ALL  ASP   0  ALL  99.00     3\n");
    EXPECT_EQ(map.at("ARG_ASP").front().atomIndex1, 4294967295U);
    const cLineResidue arg("ARG", {"N", "CA"}, 0.0);
    const cLineResidue asp("ASP", {"N", "CA"}, 5.0);
    tTypes types;
    EXPECT_FALSE(doTheyFormContact(*arg, *asp, map, types));
}

class ContactRules : public testing::Test {
  protected:
    // N and CA of ARG at x = 0 and 1, N and CA of ASP at x = 4 and 5.
    const cLineResidue arg{"ARG", {"N", "CA"}, 0.0};
    const cLineResidue asp{"ASP", {"N", "CA"}, 4.0};
    tTypes types;

    bool formContact(const std::vector<sResidueAtomContact>& rules) {
        return doTheyFormContact(*arg, *asp, contactMap{{"ARG_ASP", rules}}, types);
    }
};

TEST_F(ContactRules, EmptyMapGivesNoContact) {
    types = {polar};
    EXPECT_FALSE(doTheyFormContact(*arg, *asp, contactMap(), types));
    EXPECT_FALSE(formContact({}));
    EXPECT_EQ(types, tTypes{polar});
}

TEST_F(ContactRules, RuleIsFulfilledUpToItsDistanceInclusive) {
    EXPECT_TRUE(formContact({ruleOf("CA", 1, "N", 0, 3.0, ionic)}));
    EXPECT_EQ(types, tTypes{ionic});
    types.clear();
    EXPECT_FALSE(formContact({ruleOf("CA", 1, "N", 0, std::nextafter(3.0, 0.0), ionic)}));
    EXPECT_TRUE(types.empty());
}

TEST_F(ContactRules, DistanceIsTheRootOfTheSummedSquares) {
    cResidueAtom here("CA", "1", 0.1, 0.2, 0.3, 1.7);
    cResidueAtom there("CA", "2", 1.4, 2.7, 3.9, 1.7);
    const cChainResidue first("ARG", "1", &here, 1, eResidueType::aminoAcid);
    const cChainResidue second("ASP", "2", &there, 1, eResidueType::aminoAcid);
    const double root = std::sqrt((0.1 - 1.4) * (0.1 - 1.4) + (0.2 - 2.7) * (0.2 - 2.7) +
                                  (0.3 - 3.9) * (0.3 - 3.9));
    EXPECT_TRUE(doTheyFormContact(
        first, second, contactMap{{"ARG_ASP", {ruleOf("CA", 0, "CA", 0, root, polar)}}}, types));
    EXPECT_FALSE(doTheyFormContact(
        first, second,
        contactMap{{"ARG_ASP", {ruleOf("CA", 0, "CA", 0, std::nextafter(root, 0.0), polar)}}},
        types));
}

TEST_F(ContactRules, KeyHasTheOrderOfTheResidues) {
    const contactMap map{{"ARG_ASP", {ruleOf("CA", 1, "N", 0, 3.0, ionic)}}};
    EXPECT_TRUE(doTheyFormContact(*arg, *asp, map, types));
    EXPECT_FALSE(doTheyFormContact(*asp, *arg, map, types));
}

TEST_F(ContactRules, AtomNamesMustFitTheirPositionsExactly) {
    EXPECT_FALSE(formContact({ruleOf("N", 1, "N", 0, 9.0, ionic)}));
    EXPECT_FALSE(formContact({ruleOf("CA", 1, "CA", 0, 9.0, ionic)}));
    EXPECT_FALSE(formContact({ruleOf("ca", 1, "N", 0, 9.0, ionic)}));
    EXPECT_FALSE(formContact({ruleOf("CA ", 1, "N", 0, 9.0, ionic)}));
    EXPECT_TRUE(formContact({ruleOf("CA", 1, "CA", 1, 9.0, ionic)}));
}

TEST_F(ContactRules, PositionBehindTheLastAtomSkipsTheRule) {
    EXPECT_FALSE(formContact({ruleOf("CA", 2, "N", 0, 9.0, ionic)}));
    EXPECT_FALSE(formContact({ruleOf("CA", 1, "N", 2, 9.0, ionic)}));
}

TEST_F(ContactRules, PositionBehindTheLastAtomSkipsARuleForAllAtomsToo) {
    EXPECT_FALSE(formContact({ruleOf("ALL", 2, "ALL", 0, 99.0, ionic)}));
    EXPECT_FALSE(formContact({ruleOf("ALL", 0, "ALL", 2, 99.0, ionic)}));
    EXPECT_TRUE(formContact({ruleOf("ALL", 1, "ALL", 1, 99.0, ionic)}));
}

TEST_F(ContactRules, RuleForAllAtomsTakesTheNearestPair) {
    EXPECT_TRUE(formContact({ruleOf("ALL", 0, "ALL", 0, 3.0, hydrophobic)}));
    EXPECT_FALSE(formContact({ruleOf("ALL", 0, "ALL", 0, std::nextafter(3.0, 0.0), hydrophobic)}));
}

TEST_F(ContactRules, AllOnOneSideOnlyIsAnAtomName) {
    EXPECT_FALSE(formContact({ruleOf("ALL", 0, "N", 0, 99.0, ionic)}));
    EXPECT_FALSE(formContact({ruleOf("CA", 1, "ALL", 0, 99.0, ionic)}));
    EXPECT_FALSE(formContact({ruleOf("all", 0, "all", 0, 99.0, ionic)}));
    const cLineResidue odd("ARG", {"ALL", "CA"}, 0.0);
    EXPECT_TRUE(doTheyFormContact(
        *odd, *asp, contactMap{{"ARG_ASP", {ruleOf("ALL", 0, "N", 0, 4.0, ionic)}}}, types));
}

TEST_F(ContactRules, AllFulfilledRulesAddTheirTypes) {
    types = {polar};
    EXPECT_TRUE(formContact(
        {ruleOf("CA", 1, "N", 0, 3.0, ionic), ruleOf("CA", 1, "N", 0, 1.0, vanDerWaals),
         ruleOf("ALL", 0, "ALL", 0, 9.0, hydrophobic), ruleOf("CA", 1, "N", 0, 3.0, ionic)}));
    EXPECT_EQ(types, (tTypes{hydrophobic, polar, ionic}));
}

TEST_F(ContactRules, FulfilledRuleCountsEvenWhenItsTypeIsAlreadyThere) {
    types = {ionic};
    EXPECT_TRUE(formContact({ruleOf("CA", 1, "N", 0, 3.0, ionic)}));
    EXPECT_EQ(types, tTypes{ionic});
}

TEST_F(ContactRules, DistanceZeroFitsAtomsAtTheSamePlace) {
    const cLineResidue same("ASP", {"N", "CA"}, 1.0);
    EXPECT_TRUE(doTheyFormContact(
        *arg, *same, contactMap{{"ARG_ASP", {ruleOf("CA", 1, "N", 0, 0.0, polar)}}}, types));
    EXPECT_FALSE(formContact({ruleOf("CA", 1, "N", 0, 0.0, polar)}));
}

TEST_F(ContactRules, DistanceThatIsNoNumberIsNeverKept) {
    EXPECT_FALSE(
        formContact({ruleOf("CA", 1, "N", 0, std::numeric_limits<double>::quiet_NaN(), polar),
                     ruleOf("ALL", 0, "ALL", 0, std::numeric_limits<double>::quiet_NaN(), polar)}));
}

TEST_F(ContactRules, ResidueWithoutAtomsFormsNoContact) {
    const cLineResidue bare("ASP", {}, 0.0);
    EXPECT_FALSE(doTheyFormContact(
        *arg, *bare, contactMap{{"ARG_ASP", {ruleOf("ALL", 0, "ALL", 0, 99.0, polar)}}}, types));
}

} // namespace kelmo
