#include "tests/support/pdb_lines.h"
#include "tests/support/random_structure.h"
#include "tests/support/reference_attributes.h"
#include "tests/support/reference_contacts.h"
#include "tests/support/reference_reports.h"
#include "tests/support/reference_structure.h"
#include "tests/support/reference_surface.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <stdexcept>

namespace kelmo {

namespace {

using namespace reference;

constexpr double pi = 3.141592653589793;
constexpr double usualProbeRadius = 1.4;
constexpr double infinity = std::numeric_limits<double>::infinity();

sAtom sphere(double x, double y, double z, double radius) {
    return makeAtom("CA", "1", x, y, z, radius);
}

sStructure read(const std::string& text) {
    std::set<std::string> missing;
    int errorLine = 0;
    sStructure structure = readStructure(text, sampleRadii(), missing, errorLine);
    EXPECT_EQ(errorLine, 0);
    return structure;
}

// Exposed area of a sphere of radius r1 cut by one of radius r2 at distance d, probes included.
double exposedArea(double r1, double r2, double d) {
    const double capHeight = r1 - (d * d + r1 * r1 - r2 * r2) / (2 * d);
    return 4 * pi * r1 * r1 - 2 * pi * r1 * capHeight;
}

// A neighbour of the same height that touches nothing and so only fills the slices with a circle.
sAtom distantNeighbour(double z) {
    return sphere(0.0, -6.8, z, 1.9);
}

// Reader

TEST(ReferenceReader, FirstNitrogenOfEachChainIsTerminalAndBlankChainIsStarred) {
    const sStructure structure =
        read(atomLine("N", "ALA", ' ', "1", 0, 0, 0) + atomLine("CA", "ALA", ' ', "1", 1, 0, 0) +
             atomLine("N", "GLY", ' ', "2", 2, 0, 0) + atomLine("N", "GLY", 'B', "2", 3, 0, 0) +
             "END\n" + atomLine("N", "GLY", 'C', "2", 4, 0, 0));
    ASSERT_EQ(structure.atoms.size(), 4u);
    EXPECT_EQ(structure.atoms[0].name, "NXT");
    EXPECT_EQ(structure.atoms[2].name, "N");
    EXPECT_EQ(structure.atoms[3].name, "NXT");
    EXPECT_EQ(structure.atoms[3].radius, sampleRadii().at("GLY_N"));
    ASSERT_EQ(structure.chains.size(), 2u);
    EXPECT_EQ(structure.chains[0].chainId, "*");
    EXPECT_EQ(structure.chains[0].residueCount, 2u);
    EXPECT_EQ(structure.chains[1].chainId, "B");
    ASSERT_EQ(structure.residues.size(), 3u);
    EXPECT_EQ(structure.residues[0].atomCount, 2u);
    EXPECT_EQ(structure.residues[2].firstAtom, 3u);
}

TEST(ReferenceReader, BadCoordinateStopsAtItsLine) {
    std::string bad = atomLine("CA", "ALA", 'A', "2", 1, 0, 0);
    bad.replace(30, 8, "     12.");
    std::set<std::string> missing;
    int errorLine = 0;
    readStructure("REMARK\n\n" + bad, sampleRadii(), missing, errorLine);
    EXPECT_EQ(errorLine, 3);
}

TEST(ReferenceReader, MissingRadiusIsReportedOnceExceptForTheTerminalOxygen) {
    std::set<std::string> missing;
    int errorLine = 0;
    const sStructure structure = readStructure(atomLine("XX", "ALA", 'A', "1", 0, 0, 0) +
                                                   atomLine("OXT", "ALA", 'A', "1", 1, 0, 0) +
                                                   atomLine("XX", "ALA", 'A', "2", 2, 0, 0),
                                               sampleRadii(), missing, errorLine);
    EXPECT_EQ(missing, std::set<std::string>{"ALA_XX"});
    EXPECT_EQ(structure.atoms[0].radius, 1.6);
    EXPECT_EQ(structure.atoms[1].radius, 1.4);
}

TEST(ReferenceReader, PlainNumbersHaveNoExponentAndNoTrailingPoint) {
    for (const char* text : {"1", "-.5", "+3", "12.25", "0012"}) {
        EXPECT_TRUE(isPlainNumber(text)) << text;
    }
    for (const char* text : {"", "1.5e3", "12.", "-", ".", "1-", "1.2.3", "--1", " 1"}) {
        EXPECT_FALSE(isPlainNumber(text)) << text;
    }
}

TEST(ReferenceReader, FileWithoutAtomsIsEmpty) {
    const sStructure structure = read(headerLine("1ABC"));
    EXPECT_EQ(structure.name, "1ABC");
    EXPECT_TRUE(structure.atoms.empty() && structure.residues.empty() && structure.chains.empty());
}

// Surface

TEST(ReferenceSurface, IsolatedAtomHasNoArea) {
    EXPECT_EQ(atomAreas({sphere(0, 0, 0, 1.7)}, usualProbeRadius, 0.1), std::vector<double>{0.0});
}

TEST(ReferenceSurface, CoincidentAtomsDoNotSeeEachOther) {
    EXPECT_EQ(atomAreas({sphere(1, 2, 3, 1.7), sphere(1, 2, 3, 1.7)}, usualProbeRadius, 0.1),
              (std::vector<double>{0.0, 0.0}));
}

TEST(ReferenceSurface, EqualSpheresMatchTheCapFormula) {
    const double enlarged = 1.7 + usualProbeRadius;
    for (const double distance : {1.0, 2.5, 4.0, 6.0}) {
        for (const auto& [x, y] : {std::pair{1.0, 0.0}, {0.0, -1.0}, {-0.6, 0.8}}) {
            const auto areas =
                atomAreas({sphere(0, 0, 0, 1.7), sphere(x * distance, y * distance, 0, 1.7)},
                          usualProbeRadius, 0.01);
            const double expected = exposedArea(enlarged, enlarged, distance);
            EXPECT_NEAR(areas[0], expected, 0.005 * expected) << distance;
            EXPECT_NEAR(areas[1], expected, 0.005 * expected) << distance;
        }
    }
}

TEST(ReferenceSurface, SmallerSphereAtAnyHeightMatchesTheCapFormula) {
    for (const double tilt : {0.0, 0.3, -0.8}) {
        const double distance = 2.8;
        const double side = std::sqrt(1.0 - tilt * tilt);
        const auto areas =
            atomAreas({sphere(0, 0, 0, 1.9), sphere(distance * side, 0, distance * tilt, 1.4),
                       distantNeighbour(0.0)},
                      usualProbeRadius, 0.01);
        const double expected =
            exposedArea(1.9 + usualProbeRadius, 1.4 + usualProbeRadius, distance);
        EXPECT_NEAR(areas[0], expected, 0.005 * expected) << tilt;
    }
}

TEST(ReferenceSurface, SphereWithinAnotherHasNoArea) {
    const auto areas =
        atomAreas({sphere(0, 0, 0, 1.0), sphere(0.2, 0, 0, 1.9)}, usualProbeRadius, 0.05);
    EXPECT_EQ(areas[0], 0.0);
    EXPECT_GT(areas[1], 0.0);
}

TEST(ReferenceSurface, DistantNeighbourExposesTheWholeSphere) {
    const auto areas =
        atomAreas({sphere(0, 0, 0, 1.9), distantNeighbour(0.0)}, usualProbeRadius, 0.01);
    const double expected = 4 * pi * 3.3 * 3.3;
    EXPECT_NEAR(areas[0], expected, 0.005 * expected);
}

TEST(ReferenceSurface, ScannedBoxLosesNeighboursBeyondItsReach) {
    // Reach 2 * 1.4 + 5 = 7.8 in cells of 1 ångström; the distance test would allow 9.4. Seen from
    // the second atom, the first lies in the lowest cell that the reach touches; not so backwards.
    const double whole = 4 * pi * 3.3 * 3.3;
    const std::vector<sAtom> atoms{sphere(0, 0, 0, 1.9), sphere(8.5, 0, 0, 1.9)};
    const auto scanned = atomAreas(atoms, usualProbeRadius, 0.1);
    EXPECT_EQ(scanned[0], 0.0);
    EXPECT_NEAR(scanned[1], whole, 0.02 * whole);
    const auto every = atomAreas(atoms, usualProbeRadius, 0.1, eNeighbourSearch::everyPair);
    EXPECT_NEAR(every[0], whole, 0.02 * whole);
    EXPECT_EQ(every[1], scanned[1]);
    EXPECT_EQ(atomAreas({sphere(0, 0, 0, 1.9), sphere(9, 0, 0, 1.9)}, usualProbeRadius, 0.1),
              (std::vector<double>{0.0, 0.0}));
}

TEST(ReferenceSurface, ScannedBoxIsASubsetOfEveryPair) {
    const std::vector<sAtom> atoms = randomAtoms(7, 300, 30.0);
    std::size_t lost = 0;
    for (std::size_t i = 0; i < atoms.size(); ++i) {
        const auto scanned = surfaceNeighbours(atoms, i, usualProbeRadius);
        const auto every =
            surfaceNeighbours(atoms, i, usualProbeRadius, eNeighbourSearch::everyPair);
        EXPECT_TRUE(std::includes(every.begin(), every.end(), scanned.begin(), scanned.end()));
        lost += every.size() - scanned.size();
        for (const std::size_t n : every) {
            const bool isNear = std::fabs(atoms[i].x - atoms[n].x) <= 7.8 &&
                                std::fabs(atoms[i].y - atoms[n].y) <= 7.8 &&
                                std::fabs(atoms[i].z - atoms[n].z) <= 7.8;
            EXPECT_TRUE(!isNear || std::find(scanned.begin(), scanned.end(), n) != scanned.end());
        }
    }
    EXPECT_GT(lost, 0u);
}

TEST(ReferenceSurface, ThickSliceGivesOneSliceThroughTheCentre) {
    const auto slices =
        atomSlices(sphere(0, 0, 5, 1.6), {distantNeighbour(5.0)}, usualProbeRadius, 4.0);
    ASSERT_EQ(slices.size(), 1u);
    EXPECT_EQ(slices[0].height, 5.0);
    EXPECT_EQ(slices[0].radius, 3.0);
    EXPECT_EQ(slices[0].freeAngle, 6.283);
    // 6.283 * 3 * (3 * (2 + 2)) / 3
    EXPECT_NEAR(slices[0].area, 75.396, 0.00011);
}

TEST(ReferenceSurface, ZeroRadiusKeepsItsArea) {
    std::vector<sAtom> atoms{sphere(0, 0, 0, -usualProbeRadius), sphere(1, 0, 0, 1.6)};
    atoms[0].asa = 12.5;
    EXPECT_EQ(atomAreas(atoms, usualProbeRadius, 0.1)[0], 12.5);
}

TEST(ReferenceSurface, AreasAreFiniteAndBoundedForEveryShape) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        sStructure structure = read(randomStructureText(seed, randomStructureOptions(seed)));
        setAtomAreas(structure.atoms, usualProbeRadius, 0.5);
        for (const sAtom& atom : structure.atoms) {
            const double enlarged = atom.radius + usualProbeRadius;
            EXPECT_TRUE(std::isfinite(atom.asa));
            EXPECT_GE(atom.asa, 0.0);
            EXPECT_LE(atom.asa, 4 * pi * enlarged * enlarged * 1.2);
        }
    }
}

TEST(ReferenceSurface, FreeAngleOfTouchingArcs) {
    const sCircle circle{0, 0, 1};
    EXPECT_EQ(freeAngle(circle, {{5, 0, 1}}), 6.283);             // apart
    EXPECT_EQ(freeAngle(circle, {{0.1, 0, 3}}), 0.0);             // enclosed
    EXPECT_EQ(freeAngle(circle, {{0.1, 0, 0.2}}), 6.283);         // inside
    EXPECT_EQ(freeAngle(circle, {{1, 0, 1}}), 4.188);             // a third covered
    EXPECT_EQ(freeAngle(circle, {{1, 0, 1}, {1, 0, 1}}), 4.188);  // the same twice
    EXPECT_EQ(freeAngle(circle, {{1, 0, 1}, {-1, 0, 1}}), 2.094); // two thirds covered
}

// Depth and protrusion

TEST(ReferenceDepth, BuriedAtomTakesTheDistanceNotTheRange) {
    std::vector<sAtom> atoms{sphere(0, 0, 0, 1.6), sphere(1.5, 2.0, 0, 1.6), sphere(9, 0, 0, 1.6)};
    atoms[0].asa = 3.0;
    EXPECT_EQ(atomDepths(atoms), (std::vector<double>{0.0, 2.5, 9.0}));
}

TEST(ReferenceDepth, WithoutSurfaceNothingIsWritten) {
    std::vector<sAtom> atoms{sphere(0, 0, 0, 1.6), sphere(1, 0, 0, 1.6)};
    atoms[0].depthIndex = 7.0;
    EXPECT_EQ(atomDepths(atoms), (std::vector<double>{7.0, 0.0}));
}

TEST(ReferenceDepth, SurfaceAtTheSamePlaceOnlyGivesZero) {
    std::vector<sAtom> atoms{sphere(0, 0, 0, 1.6), sphere(0, 0, 0, 1.6)};
    atoms[0].asa = 3.0;
    atoms[1].depthIndex = 5.0;
    EXPECT_EQ(atomDepths(atoms), (std::vector<double>{0.0, 0.0}));
}

TEST(ReferenceProtrusion, FiftyNeighboursOfTwentyCubicAngstrom) {
    std::vector<sAtom> atoms{sphere(0, 0, 0, 1.6)};
    for (int i = 1; i <= 50; ++i) {
        atoms.push_back(sphere(0.2 * i, 0, 0, 1.6)); // the last exactly at 10
    }
    atoms.push_back(sphere(10.001, 0, 0, 1.6));
    EXPECT_EQ(atomProtrusions(atoms, 10.0, 20.0)[0], 3.188790204786391);
}

TEST(ReferenceProtrusion, FullSphereIsZeroAndLonelyAtomInfinite) {
    EXPECT_EQ(atomProtrusions({sphere(0, 0, 0, 1), sphere(1, 0, 0, 1)}, 2.0, 100.0)[0], 0.0);
    EXPECT_EQ(atomProtrusions({sphere(0, 0, 0, 1)}, 2.0, 100.0)[0], infinity);
}

TEST(ReferenceStatistics, TerminalOxygenIsLeftOutAndCorrectsOnlyAsLastAtom) {
    std::vector<sAtom> atoms;
    for (const char* name : {"N", "CA", "C", "O", "CB", "CG", "OXT"}) {
        atoms.push_back(makeAtom(name, "1", 0, 0, 0, 1));
        atoms.back().depthIndex = static_cast<double>(atoms.size());
    }
    const sStatistics last = residueStatistics(atoms, 2, &sAtom::depthIndex, {});
    EXPECT_EQ(last.maximum, 7.0);
    EXPECT_EQ(last.minimum, 1.0);
    EXPECT_EQ(last.average, 4.0);
    EXPECT_EQ(last.deviation, 2.0);
    EXPECT_EQ(last.averageSideChain, 5.5);
    EXPECT_EQ(last.sideChainDeviation, 0.5);
    std::swap(atoms[5].name, atoms[6].name); // OXT before CG: left out of the sum, not the divisor
    const sStatistics inner = residueStatistics(atoms, 2, &sAtom::depthIndex, {});
    EXPECT_EQ(inner.averageSideChain, 4.0); // (5 + 7) / 3
    EXPECT_EQ(inner.sideChainDeviation, std::sqrt(10.0 / 3.0));
    const sStatistics small =
        residueStatistics(std::span<const sAtom>(atoms).first(2), 2, &sAtom::depthIndex, {});
    EXPECT_EQ(small.averageSideChain, 0.0);
    EXPECT_EQ(small.sideChainDeviation, 0.0);
}

TEST(ReferenceAreas, AtomNamesDecideTheSplit) {
    std::vector<sAtom> atoms;
    for (const char* name : {"NXT", "ND1", "OXT", "OG", "CA", "CB", "P", "SG", ""}) {
        atoms.push_back(makeAtom(name, "1", 0, 0, 0, 1));
        atoms.back().asa = std::pow(2.0, static_cast<double>(atoms.size() - 1));
    }
    const sAreas areas = areasOf(atoms);
    EXPECT_EQ(areas.total, 511.0);
    EXPECT_EQ(areas.polar, 1.0 + 2.0 + 4.0 + 8.0);
    EXPECT_EQ(areas.nonPolar, 16.0 + 32.0 + 64.0 + 128.0 + 256.0);
    EXPECT_EQ(areas.backbone, 1.0 + 4.0 + 16.0 + 64.0);
    EXPECT_EQ(areas.sideChain, 2.0 + 8.0 + 32.0 + 128.0 + 256.0);
}

TEST(ReferenceAreas, UnknownResiduesEnterBoundChainSumsAsTheyStand) {
    sStructure structure =
        read(atomLine("CA", "ALA", 'A', "1", 0, 0, 0) + atomLine("CA", "LIG", 'A', "2", 2, 0, 0));
    setBoundAreas(structure, usualProbeRadius, 0.1);
    EXPECT_EQ(structure.residues[1].areas.total, -1.0);
    EXPECT_GT(structure.areas.total, 0.0);
    EXPECT_EQ(structure.chains[0].areas.total, structure.areas.total - 1.0);
    setUnboundAreas(structure, usualProbeRadius, 0.1);
    EXPECT_GT(structure.residues[1].areas.total, 0.0);
    EXPECT_EQ(structure.areas.total, 0.0);
}

// Structure reports

sKevSettings smallSettings() {
    sKevSettings settings;
    settings.calculateRelativeAsa = false;
    settings.calculateDepth = false;
    settings.calculateProtrusion = false;
    settings.calculateHydrophobicity = false;
    settings.writeAsa = false;
    settings.calculateAsa = false;
    settings.radiiFileName = "a&b<\xc3\xa5>.radii";
    return settings;
}

TEST(ReferenceKevReports, XmlIsLiteral) {
    sKevSettings settings = smallSettings();
    settings.calculateHydrophobicity = true;
    settings.hydrophobicity = {{"ALA", 1.8}};
    settings.hydrophobicityFileName = "scale.hpb";
    const auto reports =
        kevReports(headerLine("1ABC") + atomLine("CA", "ALA", 'A', "7", 0, 0, 0), settings);
    EXPECT_EQ(reports.size(), 4u);
    EXPECT_EQ(reports.at("_bound.xml"),
              "<?xml version=\"1.0\" encoding=\"us-ascii\"?>\n"
              "<cPdbPeptide xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
              "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
              "xmlns=\"http://kelmo.example/krb/namespaces/PDB\">\n"
              "  <pdb_id>1ABC</pdb_id>\n"
              "  <analysis_type>bound</analysis_type>\n"
              "  <radii_file>a&amp;b&lt;&#229;&gt;.radii</radii_file>\n"
              "  <hydrophobicity_filename>scale.hpb</hydrophobicity_filename>\n"
              "  <chains>\n"
              "    <chain>\n"
              "      <serial_id>A</serial_id>\n"
              "      <residues>\n"
              "        <residue>\n"
              "          <name>ALA</name>\n"
              "          <serial_id>7</serial_id>\n"
              "          <hydrophobicity>1.8</hydrophobicity>\n"
              "        </residue>\n"
              "      </residues>\n"
              "    </chain>\n"
              "  </chains>\n"
              "</cPdbPeptide>");
}

TEST(ReferenceKevReports, XmlGroupsKeepTheirOrder) {
    sKevSettings settings = smallSettings();
    settings.writeAsa = true;
    settings.calculateProtrusion = true;
    settings.protrusionRadius = 10.0;
    settings.atomVolume = 20.1;
    const std::string xml =
        kevReports(atomLine("CA", "ALA", 'A', "7", 0, 0, 0), settings).at("_unbound.xml");
    EXPECT_NE(xml.find("  <CX_sRadius>10</CX_sRadius>\n"
                       "  <CX_vAtom>20.1</CX_vAtom>\n"
                       "  <asa>\n"
                       "    <total>0</total>\n"
                       "    <backbone>0</backbone>\n"
                       "    <side_chain>0</side_chain>\n"
                       "    <non_polar>0</non_polar>\n"
                       "    <polar>0</polar>\n"
                       "  </asa>\n"
                       "  <chains>\n"),
              std::string::npos);
    EXPECT_NE(xml.find("          <protrusion_index>\n"
                       "            <average>inf</average>\n"
                       "            <average_deviation>"),
              std::string::npos);
    EXPECT_NE(
        xml.find("            <average_side_chain>0</average_side_chain>\n"
                 "            <average_side_chain_deviation>0</average_side_chain_deviation>\n"
                 "            <maximum>inf</maximum>\n"
                 "            <minimum>inf</minimum>\n"
                 "          </protrusion_index>\n"),
        std::string::npos);
}

TEST(ReferenceKevReports, TableIsLiteral) {
    sKevSettings settings = smallSettings();
    settings.radiiFileName = "a.radii";
    settings.calculateProtrusion = true;
    settings.calculateHydrophobicity = true;
    settings.hydrophobicity = {{"ALA", 1.8}};
    settings.hydrophobicityFileName = "scale.hpb";
    settings.atomVolume = 20.123456;
    const auto reports =
        kevReports(headerLine("1ABC") + atomLine("CA", "ALA", ' ', "7A", 0, 0, 0), settings);
    EXPECT_EQ(reports.at("_unbound.tbl"),
              "pdb_id: 1ABC\n"
              "analysis type: unbound\n"
              "radii_file: a.radii\n"
              "CX_sRadius: 10\n"
              "CX_vAtom: 20.123\n"
              "radii_file: scale.hpb\n"
              "\n"
              "  chain id|    res id|  res name|"
              "     average CX|       s_avg CX|    s-ch avg CX|  s-ch s_avg CX|"
              "         max CX|         min CX| Hydrophobicity|\n"
              "         *         7A        ALA"
              "             inf             nan               0               0"
              "             inf             inf             1.8\n");
}

TEST(ReferenceKevReports, TableColumnsPutBackboneBeforeSideChain) {
    sKevSettings settings = smallSettings();
    settings.writeAsa = true;
    sStructure structure = read(atomLine("CA", "ALA", 'A', "7", 0, 0, 0));
    structure.areas = {100000.5, 2, 3, 4, 5};
    structure.chains[0].areas = {1, 2, 3, 4, 5};
    structure.residues[0].areas = {6, 7, 8, 9, 1234567.0};
    const std::string table = kevTable(structure, settings, "bound");
    EXPECT_NE(table.find("total ASA: 1e+05\nback-bone ASA: 3\nside-chain ASA: 2\n"
                         "polar ASA: 4\nnon-polar ASA: 5\n\n"),
              std::string::npos);
    EXPECT_NE(table.find("\n         A               1               3               2"
                         "               4               5          7        ALA"
                         "               6               8               7"
                         "               9      1.2346e+06\n"),
              std::string::npos);
    EXPECT_NE(table.find("  chain id|   ch total ASA|  ch b-bone ASA| ch s-chain ASA|"),
              std::string::npos);
}

TEST(ReferenceKevReports, EscapesWhatAsciiXmlCannotHold) {
    EXPECT_EQ(escapedForXml("a\tb\x01\n\"'"), "a\tb??\"'");
    EXPECT_EQ(escapedForXml("\xe2\x82\xac\xf0\x9f\x98\x80"), "&#8364;&#128512;");
    EXPECT_EQ(escapedForXml("\xe5\xc3\xa5"), "&#229;&#195;&#165;"); // not valid UTF-8
    EXPECT_EQ(escapedForXml("\xc0\x80"), "&#192;&#128;");           // overlong
}

TEST(ReferenceKevReports, NumbersHaveFiveOrSixDigits) {
    EXPECT_EQ(streamNumber(1234567.0), "1.23457e+06");
    EXPECT_EQ(streamNumber(0.000123456), "0.000123456");
    EXPECT_EQ(tableNumber(1234567.0), "1.2346e+06");
    EXPECT_EQ(tableNumber(22862.5), "22863"); // a tie: printf alone would give 22862
    EXPECT_EQ(tableNumber(-1.03125), "-1.0313");
    EXPECT_EQ(tableNumber(1.03124), "1.0312");
    EXPECT_EQ(tableNumber(99999.5), "1e+05");
    EXPECT_EQ(tableNumber(-0.0), "0");
    EXPECT_EQ(tableNumber(-infinity), "-inf");
    EXPECT_EQ(tableNumber(-std::nan("")), "nan");
    EXPECT_EQ(streamNumber(-std::nan("")), "-nan");
}

TEST(ReferenceKevReports, UnreadableFileGivesNoReport) {
    EXPECT_TRUE(kevReports("HEADER too short\n", sKevSettings{}).empty());
    EXPECT_TRUE(vorReports("HEADER too short\n", sVorSettings{}).empty());
}

// Contacts

sContact contact(const std::string& chain1, const std::string& number1, const std::string& chain2,
                 const std::string& number2) {
    return {chain1, number1, "ALA", chain2, number2, "GLY", {}, eCriterion::prism};
}

TEST(ReferenceContacts, RecordsSortByChainsThenNumbersThenTexts) {
    const std::vector<sContact> ordered{
        contact("A", "-1", "B", "5"),  contact("A", "0", "B", "5"),   contact("A", "9", "B", "5"),
        contact("A", "10", "B", "5"),  contact("A", "10", "B", "12"), contact("A", "10A", "B", "1"),
        contact("A", "10A", "B", "9"), contact("A", "1", "C", "1"),   contact("B", "1", "A", "1")};
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        for (std::size_t k = 0; k < ordered.size(); ++k) {
            EXPECT_EQ(isLess(ordered[i], ordered[k]), i < k) << i << " " << k;
        }
    }
    sContact other = contact("A", "9", "B", "5");
    other.residueName1 = "VAL";
    EXPECT_FALSE(isLess(other, ordered[2]) || isLess(ordered[2], other));
    other.criterion = eCriterion::vorda;
    EXPECT_TRUE(isLess(ordered[2], other));
}

// Two residues of two atoms each in two chains; the nearest atoms are 5 ångström apart.
std::string twoChains() {
    return headerLine("2ABC") + atomLine("N", "ALA", 'A', "9", 0, 0, 0) +
           atomLine("CA", "ALA", 'A', "9", 1, 0, 0) + atomLine("N", "GLY", 'B', "10", 6, 0, 0) +
           atomLine("CA", "GLY", 'B', "10", 7, 0, 0);
}

TEST(ReferenceContacts, ThresholdIsInclusive) {
    sStructure structure = read(twoChains());
    EXPECT_TRUE(resolveContacts(structure, eCriterion::maximumDistance, 4.999, 0.0, {}).empty());
    EXPECT_FALSE(structure.residues[0].isBinding);
    EXPECT_EQ(resolveContacts(structure, eCriterion::maximumDistance, 5.0, 0.0, {}).size(), 2u);
    EXPECT_TRUE(structure.residues[0].isBinding && structure.residues[1].isBinding);
}

TEST(ReferenceContacts, DistanceReportsAreLiteral) {
    sVorSettings settings;
    settings.radii = sampleRadii();
    settings.radiiFileName = "a&b.radii";
    const auto reports = vorReports(twoChains(), settings);
    EXPECT_EQ(reports.size(), 6u);
    EXPECT_EQ(reports.at("_contacts.tbl"),
              "pdb_id: 2ABC\nradii_filename: a&b.radii\nMD_threshold: 5\n"
              "A     9  ALA  B    10  GLY     MaximumDistance\n"
              "B    10  GLY  A     9  ALA     MaximumDistance\n");
    EXPECT_EQ(reports.at("_binding_residues.tbl"),
              "pdb_id: 2ABC\nradii_filename: a&b.radii\nMD_threshold: 5\n"
              "A     9  ALA   MaximumDistance\nB    10  GLY   MaximumDistance\n");
    EXPECT_EQ(reports.at("_binding_status.tbl"),
              "pdb_id: 2ABC\nradii_filename: a&b.radii\nMD_threshold: 5\n"
              "A     9  ALA  1   MaximumDistance\nB    10  GLY  1   MaximumDistance\n");
    EXPECT_EQ(reports.at("_binding_residues.xml"),
              "<?xml version=\"1.0\" encoding=\"us-ascii\"?>\n"
              "<peptideBindingResidues xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
              "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
              "xmlns=\"http://kelmo.example/krb/namespaces/PDB\">\n"
              "  <pdb_id>2ABC</pdb_id>\n"
              "  <radii_filename>a&b.radii</radii_filename>\n"
              "  <MD_threshold>5</MD_threshold>\n"
              "  <binding_residues>\n"
              "    <binding_residue>\n"
              "      <interaction_criterion>MaximumDistance</interaction_criterion>\n"
              "      <chain_id>A</chain_id>\n"
              "      <residue_id>9</residue_id>\n"
              "      <residue_name>ALA</residue_name>\n"
              "    </binding_residue>\n"
              "    <binding_residue>\n"
              "      <interaction_criterion>MaximumDistance</interaction_criterion>\n"
              "      <chain_id>B</chain_id>\n"
              "      <residue_id>10</residue_id>\n"
              "      <residue_name>GLY</residue_name>\n"
              "    </binding_residue>\n"
              "  </binding_residues>\n"
              "</peptideBindingResidues>\n");
}

TEST(ReferenceContacts, RuleTableGivesTypes) {
    sVorSettings settings;
    settings.criterion = eCriterion::vorda;
    settings.radii = sampleRadii();
    readContactRules("header\n"
                     "GLY   1  CA   ALA   1  CA    6.00  3   \n"
                     "GLY   0  N    ALA   1  CA    5.00  2   \n" // stored as NXT
                     "ALA   0  ALL  GLY   1  ALL   5.00  1   \n"
                     "ALA   2  ALL  GLY   0  ALL   9.00  2   \n",
                     settings.rules);
    EXPECT_EQ(settings.rules.at("ALA_GLY").size(), 4u);
    const auto reports = vorReports(twoChains(), settings);
    EXPECT_EQ(
        reports.at("_contacts.tbl"),
        "pdb_id: 2ABC\nradii_filename: \n"
        "A     9  ALA  B    10  GLY               VORDA       Hydrophobic             Ionic\n"
        "B    10  GLY  A     9  ALA               VORDA       Hydrophobic             Ionic\n");
    EXPECT_NE(reports.at("_contacts.xml")
                  .find("      <residue_name_2>GLY</residue_name_2>\n"
                        "      <contact_types>\n"
                        "        <contact_type>Hydrophobic</contact_type>\n"
                        "        <contact_type>Ionic</contact_type>\n"
                        "      </contact_types>\n"
                        "    </contact>\n"),
              std::string::npos);
}

TEST(ReferenceContacts, RuleTableMirrorsAllButEqualAtomsAndRefusesShortLines) {
    tContactRules rules;
    const std::string same = "ASP   6  OD1  ASP   7  OD1   4.00  2   \n";
    const std::string mixed = "ASP   6  OD1  ASP   7  OD2   4.00  2   \n";
    readContactRules("header\n" + same + mixed, rules);
    EXPECT_EQ(rules.at("ASP_ASP").size(), 3u);
    EXPECT_THROW(readContactRules("header\n" + same + "\n" + mixed, rules), std::out_of_range);
    EXPECT_EQ(rules.at("ASP_ASP").size(), 4u);
    readContactRules("header\n" + same.substr(0, 35), rules);
    EXPECT_EQ(rules.at("ASP_ASP").back().contactType, 0);
}

TEST(ReferenceContacts, AreaChangeFlagsTheInterfaceAndListsNoContacts) {
    sVorSettings settings;
    settings.criterion = eCriterion::dovreth;
    settings.threshold = 1.0;
    settings.radii = sampleRadii();
    const auto reports = vorReports(twoChains() + atomLine("N", "VAL", 'B', "11", 8, 30, 0) +
                                        atomLine("CA", "VAL", 'B', "11", 8, 31, 0),
                                    settings);
    EXPECT_EQ(reports.at("_contacts.tbl"), "pdb_id: 2ABC\nradii_filename: \nTH_delta_asa: 1\n"
                                           "TH_z_slice: 0.25\nTH_r_solvent: 1.4\n");
    EXPECT_NE(reports.at("_binding_status.tbl")
                  .find("A     9  ALA  1           Dovreth\nB    10  GLY  1           Dovreth\n"
                        "B    11  VAL  0           Dovreth\n"),
              std::string::npos);
}

// Generator

TEST(RandomStructure, SameSeedGivesSameTextAndOthersDiffer) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        const auto options = randomStructureOptions(seed);
        EXPECT_EQ(randomStructureText(seed, options), randomStructureText(seed, options));
        EXPECT_NE(randomStructureText(seed, options), randomStructureText(seed + 1, options));
    }
}

TEST(RandomStructure, EveryTextIsReadable) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        const auto options = randomStructureOptions(seed);
        const sStructure structure = read(randomStructureText(seed, options));
        EXPECT_EQ(structure.chains.size(), options.chainCount) << seed;
        EXPECT_LE(structure.residues.size(), options.chainCount * options.residuesPerChain) << seed;
        EXPECT_FALSE(structure.atoms.empty());
    }
}

TEST(RandomStructure, ChainsTouchAndMostSeedsGiveContacts) {
    unsigned withContacts = 0;
    for (unsigned seed = 0; seed < 20; ++seed) {
        sStructure structure = read(randomStructureText(seed));
        withContacts +=
            resolveContacts(structure, eCriterion::maximumDistance, 5.0, 0.0, {}).empty() ? 0u : 1u;
    }
    EXPECT_GE(withContacts, 18u);
}

TEST(RandomStructure, RuleTextIsReadableAndMatchesSomething) {
    tContactRules rules;
    readContactRules(randomContactRuleText(3, 2000), rules);
    sVorSettings settings;
    settings.criterion = eCriterion::vorda;
    settings.rules = rules;
    settings.radii = sampleRadii();
    const std::string table = vorReports(randomStructureText(5), settings).at("_contacts.tbl");
    EXPECT_NE(table.find("Hydrophobic"), std::string::npos);
    EXPECT_NE(table.find("vanDerWaals"), std::string::npos);
}

} // namespace

} // namespace kelmo
