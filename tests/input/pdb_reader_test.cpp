// Reading PDB text: columns, records, residues, chains, radii, and where reading stops.
#include "base/stop_request.h"
#include "model/pdb_peptide.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/structure_links.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <atomic>
#include <cmath>
#include <fstream>
#include <limits>
#include <locale>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

namespace kelmo {

namespace {

using tRadii = std::map<std::string, double>;

std::vector<std::string> atomNames(const cPdbPeptide& peptide) {
    std::vector<std::string> names;
    for (const cResidueAtom& atom : peptide.atoms) {
        names.push_back(atom.atomName);
    }
    return names;
}

std::vector<std::string> residueNumbers(const cPdbPeptide& peptide) {
    std::vector<std::string> numbers;
    for (const cChainResidue& residue : peptide.residues) {
        numbers.push_back(residue.residueNumber);
    }
    return numbers;
}

std::string chainIds(const cPdbPeptide& peptide) {
    std::string ids;
    for (const cProteinChain& chain : peptide.chains) {
        ids += chain.chainId;
    }
    return ids;
}

using tTexts = std::vector<std::string>;

// Atoms

TEST(PdbReader, AtomFieldsStandInTheirColumns) {
    const sReading reading =
        readPdb("ATOM  12345 HG11AVAL B 123C  -1234.567  +2.5    .75   1.00 99.99           H\n",
                {{"VAL_HG11", 1.1}});
    ASSERT_EQ(reading.result, 0);
    ASSERT_EQ(reading.peptide.atoms.size(), 1U);
    const cResidueAtom& atom = reading.peptide.atoms[0];
    EXPECT_EQ(atom.atomName, "HG11");
    EXPECT_EQ(atom.serial, "12345");
    EXPECT_EQ(atom.radius, 1.1);
    const cChainResidue& residue = reading.peptide.residues.at(0);
    EXPECT_EQ(residue.residueName, "VAL");
    EXPECT_EQ(residue.residueNumber, "123C");
    EXPECT_EQ(reading.peptide.chains.at(0).chainId, "B");
}

TEST(PdbReader, CoordinatesMakeTheCentreAndTheSphere) {
    const sReading reading =
        readPdb(sAtomLine{.x = "-1.250", .y = "+3", .z = "-.5"}.line(), {{"ALA_CA", 1.75}});
    ASSERT_EQ(reading.peptide.atoms.size(), 1U);
    const cResidueAtom& atom = reading.peptide.atoms[0];
    EXPECT_EQ(atom.x, -1.25);
    EXPECT_EQ(atom.y, 3.0);
    EXPECT_EQ(atom.z, -0.5);
    EXPECT_EQ(atom.zMax, 1.25);
    EXPECT_EQ(atom.zMin, -2.25);
    EXPECT_EQ(atom.asa, 0.0);
}

TEST(PdbReader, CoordinateFieldsMayTouch) {
    const sReading reading =
        readPdb(sAtomLine{.x = "-123.456", .y = "1234.567", .z = "99999999"}.line());
    ASSERT_EQ(reading.peptide.atoms.size(), 1U);
    EXPECT_EQ(reading.peptide.atoms[0].x, -123.456);
    EXPECT_EQ(reading.peptide.atoms[0].y, 1234.567);
    EXPECT_EQ(reading.peptide.atoms[0].z, 99999999.0);
}

TEST(PdbReader, SerialIsTextAndNamesAreTrimmedOfBlanksAndTabs) {
    const sReading reading = readPdb(
        sAtomLine{.serial = "A0x", .name = "\tC\t ", .residue = " G ", .number = "\t7"}.line());
    ASSERT_EQ(reading.peptide.atoms.size(), 1U);
    EXPECT_EQ(reading.peptide.atoms[0].serial, "A0x");
    EXPECT_EQ(reading.peptide.atoms[0].atomName, "C");
    EXPECT_EQ(reading.peptide.residues[0].residueName, "G");
    EXPECT_EQ(reading.peptide.residues[0].residueNumber, "7");
}

TEST(PdbReader, RecordNeedsOnlyItsFirstFourLetters) {
    const sReading reading = readPdb(sAtomLine{.record = "ATOMIC"}.line());
    EXPECT_EQ(reading.peptide.atoms.size(), 1U);
    EXPECT_TRUE(readPdb(sAtomLine{.record = "atom"}.line()).peptide.atoms.empty());
    EXPECT_TRUE(readPdb(sAtomLine{.record = " ATOM"}.line()).peptide.atoms.empty());
}

TEST(PdbReader, AtomLineOf54CharactersIsReadAndOf53IsAnError) {
    const std::string line = sAtomLine{.z = "1.000"}.text();
    ASSERT_EQ(line.size(), 54U);
    EXPECT_EQ(readPdb(line + "\n").result, 0);
    EXPECT_EQ(readPdb(line).peptide.atoms.size(), 1U);
    const sReading shorter = readPdb("REMARK\n" + line.substr(0, 53) + "\n" + line + "\n");
    EXPECT_EQ(shorter.result, 2);
    EXPECT_TRUE(shorter.peptide.atoms.empty());
}

TEST(PdbReader, ShortLinesAreErrorsOnlyFromSixCharactersOn) {
    EXPECT_EQ(readPdb("ATOM\nATOM \nHEADE\nHETAT\n\nX\n").result, 0);
    EXPECT_EQ(readPdb("\nATOM  \n").result, 2);
    EXPECT_EQ(readPdb("\nATOMxx\n").result, 2);
    EXPECT_EQ(readPdb("\n\nHEADER\n").result, 3);
    EXPECT_EQ(readPdb("HETATM\n").result, 1);
}

TEST(PdbReader, CoordinatesAreCheckedAgainstPlainDecimals) {
    for (const char* good : {"-.5", "+3", "3", ".5", "-0", "00012.50", "-999.999"}) {
        EXPECT_EQ(readPdb(sAtomLine{.x = good}.line()).result, 0) << good;
        EXPECT_EQ(readPdb(sAtomLine{.y = good}.line()).result, 0) << good;
        EXPECT_EQ(readPdb(sAtomLine{.z = good}.line()).result, 0) << good;
    }
    for (const char* bad : {"1.5e3", "12.", "", "-", "+", ".", "-.", "1 2", "1,5", "--1", "+-1",
                            "nan", "inf", "0x1A", "1.2.3", "5-", "1.0\r", "********"}) {
        const std::string before = sAtomLine{}.line() + "TER\n";
        EXPECT_EQ(readPdb(before + sAtomLine{.x = bad}.line()).result, 3) << bad;
        EXPECT_EQ(readPdb(before + sAtomLine{.y = bad}.line()).result, 3) << bad;
        EXPECT_EQ(readPdb(before + sAtomLine{.z = bad}.line()).result, 3) << bad;
    }
}

TEST(PdbReader, TabsAroundACoordinateAreTrimmed) {
    const sReading reading = readPdb(sAtomLine{.x = "\t1.5\t"}.line());
    ASSERT_EQ(reading.result, 0);
    EXPECT_EQ(reading.peptide.atoms[0].x, 1.5);
}

TEST(PdbReader, NothingBeyondColumn54IsRead) {
    const sReading reading = readPdb(sAtomLine{.x = "1.000"}.text() + " junk\t\xFF 1e9 ATOM\n");
    ASSERT_EQ(reading.result, 0);
    EXPECT_EQ(reading.peptide.atoms[0].x, 1.0);
}

TEST(PdbReader, CarriageReturnsAtLineEndsDoNoHarm) {
    const sReading reading =
        readPdb(sAtomLine{.name = "N"}.text() + "\r\n" + sAtomLine{.name = "CA"}.text() + "\r\n" +
                "TER\r\nEND\r\n" + "ATOM  bad\r\n");
    EXPECT_EQ(reading.result, 0);
    EXPECT_EQ(atomNames(reading.peptide), (tTexts{"NXT", "CA"}));
}

TEST(PdbReader, BytesOutsideAsciiAreKeptInNames) {
    const sReading reading = readPdb(sAtomLine{.name = "C\xE4", .residue = "\xFF\xFE"}.line());
    ASSERT_EQ(reading.result, 0);
    EXPECT_EQ(reading.peptide.atoms[0].atomName, "C\xE4");
    EXPECT_EQ(reading.missing, (std::set<std::string>{"\xFF\xFE_C\xE4"}));
}

// Radii

TEST(PdbReader, MissingRadiusIsListedOnce) {
    const sReading reading =
        readPdb(sAtomLine{.name = "CB"}.line() + sAtomLine{.name = "CB", .number = "2"}.line() +
                    sAtomLine{.name = "CB", .residue = "SER", .number = "3"}.line() +
                    sAtomLine{.name = "CA"}.line(),
                {{"ALA_CA", 1.87}});
    ASSERT_EQ(reading.peptide.atoms.size(), 4U);
    EXPECT_EQ(reading.peptide.atoms[0].radius, 1.6);
    EXPECT_EQ(reading.peptide.atoms[1].radius, 1.6);
    EXPECT_EQ(reading.peptide.atoms[2].radius, 1.6);
    EXPECT_EQ(reading.peptide.atoms[3].radius, 1.87);
    EXPECT_EQ(reading.missing, (std::set<std::string>{"ALA_CB", "SER_CB"}));
}

TEST(PdbReader, TerminalOxygenWithoutRadiusGetsItsOwnAndIsNotListed) {
    const sReading reading = readPdb(sAtomLine{.name = "OXT"}.line());
    ASSERT_EQ(reading.peptide.atoms.size(), 1U);
    EXPECT_EQ(reading.peptide.atoms[0].radius, 1.4);
    EXPECT_TRUE(reading.missing.empty());
    EXPECT_EQ(readPdb(sAtomLine{.name = "OXT"}.line(), {{"ALA_OXT", 1.5}}).peptide.atoms[0].radius,
              1.5);
}

TEST(PdbReader, RadiiHaveNoOtherFallback) {
    const tRadii radii{{"CA", 1.0},     {"_CA", 1.1},     {"*_CA", 1.2}, {"ALA_C", 1.3},
                       {"ala_ca", 1.4}, {"ALA_CA ", 1.5}, {"ALA_*", 1.7}};
    EXPECT_EQ(readPdb(sAtomLine{}.line(), radii).peptide.atoms[0].radius, 1.6);
    const sReading nameless = readPdb(sAtomLine{.residue = ""}.line(), radii);
    EXPECT_EQ(nameless.peptide.atoms[0].radius, 1.1) << "the key of a blank residue name is _CA";
}

TEST(PdbReader, SameNameInOtherColumnsHasTheSameRadius) {
    const sReading reading =
        readPdb(sAtomLine{.name = "CA"}.line() + sAtomLine{.name = "CA  "}.line() +
                    sAtomLine{.name = "  CA"}.line(),
                {{"ALA_CA", 1.87}});
    for (const cResidueAtom& atom : reading.peptide.atoms) {
        EXPECT_EQ(atom.radius, 1.87);
    }
    EXPECT_TRUE(reading.missing.empty());
}

TEST(PdbReader, MissingRadiusOfALineInErrorIsListed) {
    const sReading reading = readPdb(sAtomLine{.name = "CB", .y = "x"}.line());
    EXPECT_EQ(reading.result, 1);
    EXPECT_EQ(reading.missing, (std::set<std::string>{"ALA_CB"}));
}

TEST(PdbReader, ReportedKeysAreAddedToThoseAlreadyThere) {
    std::istringstream in(sAtomLine{}.line());
    std::set<std::string> missing{"earlier"};
    cPdbPeptide peptide;
    EXPECT_EQ(peptide.loadFromStream(in, {}, missing), 0);
    EXPECT_EQ(missing, (std::set<std::string>{"ALA_CA", "earlier"}));
}

// The nitrogen that opens a chain

TEST(PdbReader, FirstNitrogenOfEachChainIsTerminalAndKeepsItsRadius) {
    const sReading reading =
        readPdb(sAtomLine{.name = "N"}.line() + sAtomLine{.name = "CA"}.line() +
                    sAtomLine{.name = "N", .number = "2"}.line() +
                    sAtomLine{.name = "N", .chain = 'B'}.line() +
                    sAtomLine{.name = "N", .chain = 'A', .number = "9"}.line(),
                {{"ALA_N", 1.65}, {"ALA_NXT", 9.0}, {"ALA_CA", 1.0}});
    EXPECT_EQ(atomNames(reading.peptide), (tTexts{"NXT", "CA", "N", "NXT", "NXT"}));
    EXPECT_EQ(reading.peptide.atoms[0].radius, 1.65);
    EXPECT_EQ(reading.peptide.atoms[3].radius, 1.65);
    EXPECT_TRUE(reading.missing.empty());
}

TEST(PdbReader, OnlyTheAtomThatOpensAChainCanBeTerminal) {
    const sReading reading = readPdb(
        sAtomLine{.name = "CA"}.line() + sAtomLine{.name = "N"}.line() +
        sAtomLine{.name = "NE", .chain = 'B'}.line() + sAtomLine{.name = "N", .chain = 'b'}.line() +
        sAtomLine{.name = "N", .chain = ' '}.line());
    EXPECT_EQ(atomNames(reading.peptide), (tTexts{"CA", "N", "NE", "N", "NXT"}));
    EXPECT_EQ(reading.missing.count("ALA_N"), 1U);
    EXPECT_EQ(reading.missing.count("ALA_NXT"), 0U);
}

// Residues

TEST(PdbReader, InsertionCodesMakeResiduesAndCaseDoesNot) {
    const sReading reading =
        readPdb(sAtomLine{.number = "52"}.line() + sAtomLine{.number = "52A"}.line() +
                sAtomLine{.number = "52a"}.line() + sAtomLine{.number = "53"}.line());
    EXPECT_EQ(residueNumbers(reading.peptide), (tTexts{"52", "52A", "53"}));
    EXPECT_EQ(reading.peptide.residues[1].atomCount, 2U);
    expectLinksIntoOwnLists(reading.peptide);
}

TEST(PdbReader, SameNumberIsTheSameResidueWhateverItsName) {
    const sReading reading = readPdb(sAtomLine{.residue = "SER"}.line() +
                                     sAtomLine{.alternate = 'B', .residue = "THR"}.line());
    ASSERT_EQ(reading.peptide.residues.size(), 1U);
    EXPECT_EQ(reading.peptide.residues[0].residueName, "SER");
    EXPECT_EQ(reading.peptide.residues[0].atomCount, 2U);
    EXPECT_EQ(reading.missing, (std::set<std::string>{"SER_CA", "THR_CA"}));
}

TEST(PdbReader, AlternateLocationsStayInTheirResidue) {
    const sReading reading =
        readPdb(sAtomLine{.name = "CB", .alternate = 'A'}.line() +
                sAtomLine{.name = "CB", .alternate = 'B', .x = "0.500"}.line());
    EXPECT_EQ(reading.peptide.atoms.size(), 2U);
    EXPECT_EQ(reading.peptide.residues.size(), 1U);
}

TEST(PdbReader, SameNumberInAnotherChainIsAnotherResidue) {
    const sReading reading = readPdb(sAtomLine{}.line() + sAtomLine{.chain = 'B'}.line());
    EXPECT_EQ(residueNumbers(reading.peptide), (tTexts{"1", "1"}));
    EXPECT_EQ(chainIds(reading.peptide), "AB");
}

TEST(PdbReader, NumberThatComesBackIsANewResidue) {
    const sReading reading =
        readPdb(sAtomLine{.number = "1"}.line() + sAtomLine{.number = "2"}.line() +
                sAtomLine{.number = "1"}.line());
    EXPECT_EQ(residueNumbers(reading.peptide), (tTexts{"1", "2", "1"}));
}

TEST(PdbReader, NumbersAreComparedAsTexts) {
    const sReading reading =
        readPdb(sAtomLine{.number = "1"}.line() + sAtomLine{.number = "01"}.line() +
                sAtomLine{.number = "-1"}.line() + sAtomLine{.number = "****"}.line() +
                sAtomLine{.number = ""}.line());
    EXPECT_EQ(residueNumbers(reading.peptide), (tTexts{"1", "01", "-1", "****", ""}));
}

TEST(PdbReader, ResidueTypesFollowTheNameExactly) {
    std::string text;
    int number = 1;
    const std::vector<std::pair<std::string, eResidueType>> expected{
        {"ALA", eResidueType::aminoAcid}, {"VAL", eResidueType::aminoAcid},
        {"A", eResidueType::nucleicAcid}, {"C", eResidueType::nucleicAcid},
        {"G", eResidueType::nucleicAcid}, {"T", eResidueType::nucleicAcid},
        {"U", eResidueType::nucleicAcid}, {"DA", eResidueType::other},
        {"MSE", eResidueType::other},     {"ala", eResidueType::other},
        {"a", eResidueType::other},       {"", eResidueType::other},
        {"HOH", eResidueType::other}};
    for (const auto& [name, type] : expected) {
        text += sAtomLine{.residue = name, .number = std::to_string(number++)}.line();
    }
    const sReading reading = readPdb(text);
    ASSERT_EQ(reading.peptide.residues.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(reading.peptide.residues[i].residueName, expected[i].first);
        EXPECT_EQ(reading.peptide.residues[i].residueType, expected[i].second) << expected[i].first;
        EXPECT_EQ(reading.peptide.residues[i].totalAsa, -1.0);
    }
}

// Chains

TEST(PdbReader, ChainsSplitWhereTheIdChangesAndNowhereElse) {
    const sReading reading = readPdb(sAtomLine{.chain = 'A', .number = "1"}.line() + "TER\n" +
                                     sAtomLine{.chain = 'A', .number = "2"}.line() +
                                     sAtomLine{.chain = 'B', .number = "3"}.line() +
                                     sAtomLine{.chain = 'b', .number = "4"}.line() +
                                     sAtomLine{.chain = 'A', .number = "5"}.line());
    EXPECT_EQ(chainIds(reading.peptide), "ABA") << "an id that comes back opens a second chain";
    EXPECT_EQ(reading.peptide.chains[0].residueCount, 2U);
    EXPECT_EQ(reading.peptide.chains[1].residueCount, 2U);
    EXPECT_EQ(reading.peptide.chains[2].residueCount, 1U);
    expectLinksIntoOwnLists(reading.peptide);
}

TEST(PdbReader, ChainIsNamedAsItsFirstAtomSays) {
    const sReading reading =
        readPdb(sAtomLine{.chain = 'x'}.line() + sAtomLine{.chain = 'X', .number = "2"}.line());
    EXPECT_EQ(chainIds(reading.peptide), "x");
}

TEST(PdbReader, BlankChainIsStarredInTheMiddleAndAtTheEnd) {
    const sReading reading =
        readPdb(sAtomLine{.chain = ' '}.line() + sAtomLine{.chain = 'A'}.line() +
                sAtomLine{.chain = ' '}.line());
    EXPECT_EQ(chainIds(reading.peptide), "*A*");
    EXPECT_EQ(chainIds(readPdb(sAtomLine{.chain = ' '}.line()).peptide), "*");
}

TEST(PdbReader, ChainsHaveTheirOwnBoxesAndTheStructureItsWhole) {
    const sReading reading =
        readPdb(sAtomLine{.x = "1.000", .y = "-5.000", .z = "2.000"}.line() +
                    sAtomLine{.x = "3.000", .y = "4.000", .z = "-1.000"}.line() +
                    sAtomLine{.chain = 'B', .x = "9.000", .y = "0.000", .z = "9.000"}.line() +
                    sAtomLine{.record = "HETATM", .name = "ZN", .x = "99.000"}.line(),
                {{"ALA_CA", 1.75}});
    const cProteinChain& chain = reading.peptide.chains.at(0);
    EXPECT_EQ(chain.maxPoint.x, 3.0);
    EXPECT_EQ(chain.maxPoint.y, 4.0);
    EXPECT_EQ(chain.maxPoint.z, 2.0);
    EXPECT_EQ(chain.minPoint.x, 1.0);
    EXPECT_EQ(chain.minPoint.y, -5.0);
    EXPECT_EQ(chain.minPoint.z, -1.0);
    EXPECT_EQ(reading.peptide.chains.at(1).minPoint.x, 9.0);
    EXPECT_EQ(reading.peptide.maxPoint.x, 9.0) << "metals do not count";
    EXPECT_EQ(reading.peptide.maxPoint.y, 4.0);
    EXPECT_EQ(reading.peptide.maxPoint.z, 9.0);
    EXPECT_EQ(reading.peptide.minPoint.x, 1.0);
    EXPECT_EQ(reading.peptide.minPoint.y, -5.0);
    EXPECT_EQ(reading.peptide.minPoint.z, -1.0);
}

// HEADER

TEST(PdbReader, HeaderNamesTheStructureAndItsChains) {
    const sReading reading = readPdb(headerLine("1UBQ") + sAtomLine{}.line());
    EXPECT_EQ(reading.peptide.name, "1UBQ");
    EXPECT_EQ(reading.peptide.chains.at(0).peptideName, "1UBQ");
    EXPECT_EQ(readPdb(headerLine("  x ")).peptide.name, "  x ") << "the code is not trimmed";
    EXPECT_EQ(readPdb(sAtomLine{}.line()).peptide.name, "");
}

TEST(PdbReader, HeaderOf65CharactersIsAnError) {
    const std::string header = headerLine("1UBQ");
    EXPECT_EQ(readPdb(header.substr(0, 65) + "\n").result, 1);
    EXPECT_EQ(readPdb(header.substr(0, 66)).result, 0);
    EXPECT_EQ(readPdb(sAtomLine{}.line() + "HEADER    HYDROLASE\n").result, 2);
}

TEST(PdbReader, LastHeaderCountsAndChainsKeepTheNameOfTheirEnd) {
    const sReading reading = readPdb(headerLine("1AAA") + sAtomLine{.chain = 'A'}.line() +
                                     sAtomLine{.chain = 'B'}.line() + headerLine("2BBB") +
                                     sAtomLine{.chain = 'B'}.line());
    EXPECT_EQ(reading.peptide.name, "2BBB");
    EXPECT_EQ(reading.peptide.chains.at(0).peptideName, "1AAA");
    EXPECT_EQ(reading.peptide.chains.at(1).peptideName, "2BBB");
}

// HETATM

TEST(PdbReader, FourMetalsAreKeptApartFromTheAtoms) {
    const sReading reading = readPdb(
        sAtomLine{}.line() +
            sAtomLine{.record = "HETATM", .serial = "7", .name = "CU", .chain = 'X'}.line() +
            sAtomLine{.record = "HETATM", .name = "FE  "}.line() +
            sAtomLine{.record = "HETATM", .name = "MG", .x = "1.5", .y = "2.5", .z = "3.5"}.line() +
            sAtomLine{.record = "HETATM", .name = "  ZN"}.line(),
        {{"ALA_CA", 1.8}, {"ALA_CU", 1.9}, {"ALA_ZN", 1.9}});
    EXPECT_EQ(reading.peptide.atoms.size(), 1U);
    EXPECT_EQ(chainIds(reading.peptide), "A");
    ASSERT_EQ(reading.peptide.heteroAtoms.size(), 4U);
    const tTexts names{"CU", "FE", "MG", "ZN"};
    for (std::size_t i = 0; i < 4; ++i) {
        const cResidueAtom& metal = reading.peptide.heteroAtoms[i];
        EXPECT_EQ(metal.atomName, names[i]);
        EXPECT_EQ(metal.radius, 0.0);
        EXPECT_EQ(metal.residue, nullptr);
    }
    EXPECT_EQ(reading.peptide.heteroAtoms[0].serial, "7");
    EXPECT_EQ(reading.peptide.heteroAtoms[2].x, 1.5);
    EXPECT_EQ(reading.peptide.heteroAtoms[2].y, 2.5);
    EXPECT_EQ(reading.peptide.heteroAtoms[2].zMax, 3.5);
    EXPECT_TRUE(reading.missing.empty());
}

TEST(PdbReader, OtherHeteroAtomsAreIgnored) {
    std::string text;
    for (const char* name : {"O", "C1", "CA", "NA", "MN", "zn", "ZN1", "FE2", "CU A", ""}) {
        text += sAtomLine{.record = "HETATM", .name = name, .x = "junk"}.line();
    }
    const sReading reading = readPdb(text);
    EXPECT_EQ(reading.result, 0);
    EXPECT_TRUE(reading.peptide.heteroAtoms.empty());
    EXPECT_TRUE(reading.missing.empty());
}

TEST(PdbReader, ShortHeteroAtomIsAnErrorWhateverItNames) {
    const std::string water = sAtomLine{.record = "HETATM", .name = "O", .residue = "HOH"}.text();
    EXPECT_EQ(readPdb("REMARK\n" + water.substr(0, 53)).result, 2);
    EXPECT_EQ(readPdb("REMARK\n" + water).result, 0);
}

TEST(PdbReader, MetalCoordinatesAreReadWithoutACheck) {
    const sReading reading = readPdb(
        sAtomLine{.record = "HETATM", .name = "ZN", .x = "1.5e3", .y = "12.", .z = "abc"}.line() +
        sAtomLine{.record = "HETATM", .name = "FE", .x = "0x1A", .y = "-inf", .z = ""}.line() +
        sAtomLine{.record = "HETATM", .name = "MG", .x = "1 2", .y = "1,5", .z = "nan"}.line());
    ASSERT_EQ(reading.result, 0);
    const auto& metals = reading.peptide.heteroAtoms;
    ASSERT_EQ(metals.size(), 3U);
    EXPECT_EQ(metals[0].x, 1500.0);
    EXPECT_EQ(metals[0].y, 12.0);
    EXPECT_EQ(metals[0].z, 0.0);
    EXPECT_EQ(metals[1].x, 26.0);
    EXPECT_EQ(metals[1].y, -std::numeric_limits<double>::infinity());
    EXPECT_EQ(metals[1].z, 0.0);
    EXPECT_EQ(metals[2].x, 1.0);
    EXPECT_EQ(metals[2].y, 1.0);
    EXPECT_TRUE(std::isnan(metals[2].z));
}

// The end of reading

TEST(PdbReader, FileWithoutEndIsTheSameAsOneWithIt) {
    const std::string text = headerLine("1XYZ") + sAtomLine{.name = "N"}.line() +
                             sAtomLine{.number = "2"}.line() + sAtomLine{.chain = ' '}.line();
    for (const char* end : {"", "END\n", "END", "END   \nATOM  bad\n"}) {
        const sReading reading = readPdb(text + end);
        EXPECT_EQ(reading.result, 0);
        EXPECT_EQ(atomNames(reading.peptide), (tTexts{"NXT", "CA", "CA"}));
        EXPECT_EQ(residueNumbers(reading.peptide), (tTexts{"1", "2", "1"}));
        EXPECT_EQ(chainIds(reading.peptide), "A*");
        expectLinksIntoOwnLists(reading.peptide);
    }
}

TEST(PdbReader, OnlyTheFirstModelIsRead) {
    const sReading reading =
        readPdb("MODEL        1\n" + sAtomLine{.x = "1.000"}.line() + "ENDMDL\nMODEL        2\n" +
                sAtomLine{.x = "2.000"}.line() + "ATOM  an error if it were read\nENDMDL\nEND\n");
    EXPECT_EQ(reading.result, 0);
    ASSERT_EQ(reading.peptide.atoms.size(), 1U);
    EXPECT_EQ(reading.peptide.atoms[0].x, 1.0);
}

TEST(PdbReader, WordsThatOnlyResembleEndDoNotStop) {
    const sReading reading = readPdb(" END\nend\nEN\nTHE END\n" + sAtomLine{}.line());
    EXPECT_EQ(reading.peptide.atoms.size(), 1U);
    EXPECT_TRUE(readPdb("ENDIVE\n" + sAtomLine{}.line()).peptide.atoms.empty());
}

TEST(PdbReader, EveryLineCountsTowardsTheNumberOfTheBadOne) {
    EXPECT_EQ(readPdb(headerLine("1XYZ") + "\n" + "X\n" + "REMARK 999 something\n" +
                      sAtomLine{.record = "HETATM", .name = "O"}.line() + sAtomLine{}.line() +
                      "TER\n" + sAtomLine{.x = "bad"}.line() + sAtomLine{.y = "bad"}.line())
                  .result,
              8);
    EXPECT_EQ(readPdb(sAtomLine{.x = "bad"}.text()).result, 1);
}

TEST(PdbReader, AbandonedReadingKeepsOnlyWhatWasClosed) {
    const sReading reading = readPdb(sAtomLine{.chain = 'A', .number = "1"}.line() +
                                     sAtomLine{.chain = 'B', .number = "1"}.line() +
                                     sAtomLine{.chain = 'B', .number = "2"}.line() +
                                     sAtomLine{.chain = 'B', .number = "2", .z = "bad"}.line());
    EXPECT_EQ(reading.result, 4);
    EXPECT_EQ(reading.peptide.atoms.size(), 3U);
    EXPECT_EQ(reading.peptide.residues.size(), 2U);
    EXPECT_EQ(chainIds(reading.peptide), "A");
    EXPECT_EQ(reading.peptide.atoms[1].residue, &reading.peptide.residues[1]);
    EXPECT_EQ(reading.peptide.atoms[2].residue, nullptr);
}

TEST(PdbReader, FileWithoutAtomsLeavesTheStructureEmpty) {
    for (const std::string& text :
         {std::string(), std::string("\n\n"), std::string("END\n"), std::string("REMARK nothing\n"),
          "END\n" + sAtomLine{}.line()}) {
        const sReading reading = readPdb(text);
        EXPECT_EQ(reading.result, 0);
        EXPECT_TRUE(reading.peptide.atoms.empty());
        EXPECT_TRUE(reading.peptide.residues.empty());
        EXPECT_TRUE(reading.peptide.chains.empty());
        EXPECT_EQ(reading.peptide.maxPoint.x, 0.0);
        EXPECT_EQ(reading.peptide.minPoint.x, 0.0);
    }
    const sReading metalOnly =
        readPdb(headerLine("1XYZ") + sAtomLine{.record = "HETATM", .name = "ZN"}.line());
    EXPECT_EQ(metalOnly.result, 0);
    EXPECT_EQ(metalOnly.peptide.name, "1XYZ");
    EXPECT_EQ(metalOnly.peptide.heteroAtoms.size(), 1U);
    EXPECT_TRUE(metalOnly.peptide.chains.empty());
}

TEST(PdbReader, StreamThatCannotBeReadIsAnEmptyFile) {
    std::ifstream in("/nonexistent/file.pdb");
    std::set<std::string> missing;
    cPdbPeptide peptide;
    EXPECT_EQ(peptide.loadFromStream(in, {}, missing), 0);
    EXPECT_TRUE(peptide.atoms.empty());
}

TEST(PdbReader, StreamIsReadFromItsBeginning) {
    std::istringstream in(sAtomLine{}.line() + sAtomLine{.number = "2"}.line());
    std::set<std::string> missing;
    std::string skipped;
    std::getline(in, skipped);
    cPdbPeptide first;
    EXPECT_EQ(first.loadFromStream(in, {}, missing), 0);
    EXPECT_EQ(first.atoms.size(), 2U);
    cPdbPeptide second;
    EXPECT_EQ(second.loadFromStream(in, {}, missing), 0);
    EXPECT_EQ(second.atoms.size(), 2U) << "a stream at its end is rewound too";
}

TEST(PdbReader, AreasOfTheStructureAreZeroAfterReading) {
    std::istringstream in(sAtomLine{}.line());
    std::set<std::string> missing;
    cPdbPeptide peptide;
    peptide.totalAsa = peptide.sideChainAsa = peptide.backboneAsa = 5.0;
    peptide.polarAsa = peptide.nonPolarAsa = 5.0;
    EXPECT_EQ(peptide.loadFromStream(in, {}, missing), 0);
    for (const double area : {peptide.totalAsa, peptide.sideChainAsa, peptide.backboneAsa,
                              peptide.polarAsa, peptide.nonPolarAsa}) {
        EXPECT_EQ(area, 0.0);
    }
}

// Lines of a megabyte

TEST(PdbReader, LinesOfAMegabyteAreLinesLikeOthers) {
    const std::string megabyte(1U << 20U, '1');
    const sReading reading =
        readPdb("REMARK" + megabyte + "\n" + megabyte + "\n" + headerLine("1XYZ").substr(0, 66) +
                megabyte + "\n" + sAtomLine{.x = "1.000"}.text() + megabyte + "\n" +
                sAtomLine{.record = "HETATM", .name = "ZN"}.text() + megabyte + "\n" +
                sAtomLine{.number = "2"}.text());
    EXPECT_EQ(reading.result, 0);
    EXPECT_EQ(reading.peptide.name, "1XYZ");
    EXPECT_EQ(reading.peptide.atoms.size(), 2U);
    EXPECT_EQ(reading.peptide.heteroAtoms.size(), 1U);
    EXPECT_EQ(readPdb("REMARK\n" + sAtomLine{.z = "x"}.text() + megabyte).result, 2);
    EXPECT_EQ(readPdb("ATOM  " + std::string(1U << 20U, ' ')).result, 1);
    EXPECT_EQ(readPdb(std::string(1U << 20U, '\0')).result, 0);
}

/// A stream of good lines, then zeros without a line end, far more than there is memory for them.
class cEndlessLine : public std::streambuf {
  public:
    cEndlessLine(std::string beginning, std::size_t zeroBlocks)
        : text(std::move(beginning)), blocksLeft(zeroBlocks) {
        setg(text.data(), text.data(), text.data() + text.size());
    }

  protected:
    int_type underflow() override {
        if (blocksLeft-- == 0) {
            blocksLeft = 0;
            return traits_type::eof();
        }
        text.assign(1U << 20U, '\0');
        setg(text.data(), text.data(), text.data() + text.size());
        return 0;
    }
    pos_type seekoff(off_type, std::ios_base::seekdir, std::ios_base::openmode) override {
        return 0;
    }
    pos_type seekpos(pos_type, std::ios_base::openmode) override { return 0; }

  private:
    std::string text;
    std::size_t blocksLeft;
};

TEST(PdbReader, LineOfGigabytesNeedsNoMemory) {
    const std::string atom = sAtomLine{}.line();
    cEndlessLine buffer(atom + atom + sAtomLine{.number = "7"}.text(), 3000);
    std::istream in(&buffer);
    std::set<std::string> missing;
    cPdbPeptide peptide;
    rusage before{};
    rusage after{};
    ::getrusage(RUSAGE_SELF, &before);
    EXPECT_EQ(peptide.loadFromStream(in, {}, missing), 0);
    ::getrusage(RUSAGE_SELF, &after);
    EXPECT_EQ(peptide.atoms.size(), 3U);
    EXPECT_EQ(residueNumbers(peptide), (tTexts{"1", "7"}));
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 100 * 1024) << "KiB";
}

/// A text behind which every attempt to read fails.
class cBrokenSource : public std::streambuf {
  public:
    explicit cBrokenSource(std::string beginning) : text(std::move(beginning)) {
        setg(text.data(), text.data(), text.data() + text.size());
    }

  protected:
    int_type underflow() override { throw std::runtime_error("broken"); }
    pos_type seekoff(off_type, std::ios_base::seekdir, std::ios_base::openmode) override {
        return 0;
    }
    pos_type seekpos(pos_type, std::ios_base::openmode) override { return 0; }

  private:
    std::string text;
};

struct sBrokenReading {
    int result;
    std::size_t atoms;
    bool isBad; ///< whether the stream is bad afterwards
};

sBrokenReading readBroken(const std::string& beginning) {
    cBrokenSource buffer(beginning);
    std::istream in(&buffer);
    std::set<std::string> missing;
    cPdbPeptide peptide;
    const int result = peptide.loadFromStream(in, {}, missing);
    return {result, peptide.atoms.size(), in.bad()};
}

std::string manyAtoms() {
    std::string text;
    for (int i = 0; i < 3000; ++i) {
        text += sAtomLine{}.line();
    }
    return text;
}

TEST(PdbReader, ReadErrorEndsTheFileAndLeavesTheStreamBad) {
    // Also in the middle of a line, which then is none.
    for (const char* lastLine : {"", "ATOM", "ATOM  short"}) {
        const sBrokenReading reading = readBroken(manyAtoms() + lastLine);
        EXPECT_EQ(reading.result, 0) << lastLine;
        EXPECT_GT(reading.atoms, 2000U) << lastLine;
        EXPECT_TRUE(reading.isBad) << lastLine;
    }
    EXPECT_TRUE(readBroken("ATOM").isBad);
}

// How far is read beyond the end depends on the moment, and so does whether an error is met there.
TEST(PdbReader, ReadErrorBehindTheEndOrABadLineIsNone) {
    const std::string atoms = manyAtoms();
    for (int i = 0; i < 50; ++i) {
        const sBrokenReading ended = readBroken(atoms + "ENDMDL\n" + atoms);
        ASSERT_EQ(ended.result, 0);
        ASSERT_EQ(ended.atoms, 3000U);
        ASSERT_FALSE(ended.isBad) << i;
        const sBrokenReading faulty = readBroken(atoms + "ATOM  short\n" + atoms);
        ASSERT_EQ(faulty.result, 3001);
        ASSERT_FALSE(faulty.isBad) << i;
    }
}

TEST(PdbReader, LineOfGigabytesIsGivenUpWhenAStopIsWanted) {
    cEndlessLine buffer(sAtomLine{}.line(), 3000);
    std::istream in(&buffer);
    std::set<std::string> missing;
    cPdbPeptide peptide;
    std::atomic<int> questions = 0;
    const cStopRequest request([&] { return ++questions == 100; });
    EXPECT_THROW(peptide.loadFromStream(in, {}, missing), sStopped);
    EXPECT_EQ(questions, 100);
}

TEST(PdbReader, ReadingIsGivenUpWhenAStopIsWanted) {
    std::istringstream in(manyAtoms() + manyAtoms());
    std::set<std::string> missing;
    cPdbPeptide peptide;
    std::atomic<int> questions = 0;
    const cStopRequest request([&] { return ++questions == 3; });
    EXPECT_THROW(peptide.loadFromStream(in, {}, missing), sStopped);
    EXPECT_EQ(questions, 3);
}

TEST(PdbReader, ZeroBytesEndNothing) {
    std::string line = sAtomLine{.name = "CX"}.line();
    line[line.find('X')] = '\0';
    const sReading reading = readPdb(line + sAtomLine{.number = "2"}.line());
    ASSERT_EQ(reading.peptide.atoms.size(), 2U);
    EXPECT_EQ(reading.peptide.atoms[0].atomName, std::string("C\0", 2));
    std::string badNumber = sAtomLine{.x = "1.0X"}.line();
    badNumber[badNumber.find('X')] = '\0';
    EXPECT_EQ(readPdb(badNumber).result, 1);
}

TEST(PdbReader, DecimalPointIsAPointInEveryLocale) {
    struct sCommaPoint : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale(), new sCommaPoint));
    const sReading reading =
        readPdb(sAtomLine{.x = "1.500"}.line() +
                sAtomLine{.record = "HETATM", .name = "ZN", .x = "2.5e0"}.line());
    std::locale::global(before);
    ASSERT_EQ(reading.result, 0);
    EXPECT_EQ(reading.peptide.atoms[0].x, 1.5);
    EXPECT_EQ(reading.peptide.heteroAtoms.at(0).x, 2.5);
}

// Long files, which are read in pieces

struct sLongFile {
    std::string text;
    tTexts atomNames;
    tTexts residueNumbers;
    std::string chainIds;
    tTexts chainNames; ///< entry codes in force when the chains were closed
};

/// Chains of 97 atoms, residues of 7; a header now and then, a metal and a short line between.
sLongFile longFile(std::size_t atoms) {
    sLongFile file;
    std::string code = "0XYZ";
    for (std::size_t i = 0; i < atoms; ++i) {
        const char chain = static_cast<char>('A' + i / 97 % 26);
        const bool opensChain = i % 97 == 0;
        const std::string number = std::to_string(i % 97 / 7 + 1);
        if (opensChain && i > 0) {
            file.chainNames.push_back(code);
        }
        if (i % 500 == 3) {
            code = std::to_string(i / 500 % 10) + "ABC";
            file.text +=
                headerLine(code) + sAtomLine{.record = "HETATM", .name = "ZN"}.line() + "X\n";
        }
        const std::string name = i % 7 == 0 ? "N" : "C" + std::to_string(i % 7);
        file.text += sAtomLine{.name = name, .chain = chain, .number = number}.line();
        file.atomNames.push_back(opensChain && name == "N" ? "NXT" : name);
        if (opensChain) {
            file.chainIds += chain;
        }
        if (i % 97 % 7 == 0) {
            file.residueNumbers.push_back(number);
        }
    }
    file.chainNames.push_back(code);
    return file;
}

TEST(PdbReader, LinesMeanTheSameWhereverTheyStandInALongFile) {
    const sLongFile file = longFile(3000);
    ASSERT_GT(file.text.size(), 150'000U);
    for (std::size_t shift = 0; shift < 240; shift += 3) {
        const sReading reading = readPdb("REMARK" + std::string(shift, ' ') + "\n" + file.text);
        ASSERT_EQ(reading.result, 0) << shift;
        ASSERT_EQ(atomNames(reading.peptide), file.atomNames) << shift;
        ASSERT_EQ(residueNumbers(reading.peptide), file.residueNumbers) << shift;
        ASSERT_EQ(chainIds(reading.peptide), file.chainIds) << shift;
        ASSERT_EQ(reading.peptide.heteroAtoms.size(), 6U) << shift;
        for (std::size_t i = 0; i < reading.peptide.chains.size(); ++i) {
            ASSERT_EQ(reading.peptide.chains[i].peptideName, file.chainNames[i]) << shift;
        }
    }
}

TEST(PdbReader, NothingBehindTheEndOfALongFileCounts) {
    const std::string atom = sAtomLine{.name = "CA"}.line();
    const std::string unknown = sAtomLine{.name = "XX"}.line();
    for (const std::size_t before : {1U, 400U, 600U, 1000U, 5000U}) {
        std::string text;
        for (std::size_t i = 0; i < before; ++i) {
            text += atom;
        }
        std::string behind;
        for (std::size_t i = 0; i < 3000; ++i) {
            behind += unknown;
        }
        const sReading ended = readPdb(text + "ENDMDL\n" + behind, {{"ALA_CA", 1.87}});
        EXPECT_EQ(ended.result, 0);
        EXPECT_EQ(ended.peptide.atoms.size(), before);
        EXPECT_TRUE(ended.missing.empty());
        const sReading broken =
            readPdb(text + sAtomLine{.name = "CA", .x = "bad"}.line() + behind, {{"ALA_CA", 1.87}});
        EXPECT_EQ(broken.result, static_cast<int>(before) + 1);
        EXPECT_EQ(broken.peptide.atoms.size(), before);
        EXPECT_TRUE(broken.missing.empty());
    }
}

// Real entries

TEST(PdbReader, SampleEntriesAreReadWhole) {
    struct sSample {
        const char* name;
        const char* chains;
        std::size_t atoms;
        std::size_t metals;
    };
    for (const sSample& sample : {sSample{"1ubq", "A", 602, 0}, sSample{"1a0q", "LH", 3183, 3},
                                  sSample{"2hhb", "ABCD", 4384, 4}}) {
        const cPdbPeptide peptide = structureOf(sampleText(sample.name));
        EXPECT_EQ(peptide.atoms.size(), sample.atoms) << sample.name;
        EXPECT_EQ(peptide.heteroAtoms.size(), sample.metals) << sample.name;
        EXPECT_EQ(chainIds(peptide), sample.chains) << sample.name;
        expectLinksIntoOwnLists(peptide);
        for (const cProteinChain& chain : peptide.chains) {
            EXPECT_EQ(chain.atoms[0].atomName, "NXT") << sample.name << chain.chainId;
        }
    }
}

} // namespace

} // namespace kelmo
