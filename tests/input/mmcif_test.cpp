// mmCIF: which columns mean what, and the traps in which a reader may be caught.
#include "base/stop_request.h"
#include "input/structure_reader.h"
#include "tests/input/mmcif_rows.h"
#include "tests/input/same_structure.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/structure_links.h"

#include <gtest/gtest.h>

#include <atomic>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace kelmo {

namespace {

using tTexts = std::vector<std::string>;

sReadResult readMmcif(const std::string& text, const std::map<std::string, double>& radii = {},
                      const sReadOptions& options = {}) {
    std::istringstream in(text);
    return readStructure(in, radii, options);
}

/// The structure of a text that must be readable.
cPdbPeptide structureOf(const std::string& text, const std::map<std::string, double>& radii = {}) {
    sReadResult result = readMmcif(text, radii);
    EXPECT_EQ(result.outcome, eReadOutcome::read) << result.reason;
    EXPECT_EQ(result.structures.size(), 1U);
    if (result.structures.empty()) {
        return {};
    }
    expectLinksIntoOwnLists(result.structures.front());
    return std::move(result.structures.front());
}

tTexts chainIds(const cPdbPeptide& structure) {
    tTexts ids;
    for (const cProteinChain& chain : structure.chains) {
        ids.push_back(chain.chainId);
    }
    return ids;
}

tTexts residueNumbers(const cPdbPeptide& structure) {
    tTexts numbers;
    for (const cChainResidue& residue : structure.residues) {
        numbers.push_back(residue.residueNumber);
    }
    return numbers;
}

std::string refusalOf(const std::string& text) {
    const sReadResult result = readMmcif(text);
    EXPECT_EQ(result.outcome, eReadOutcome::refused);
    EXPECT_TRUE(result.structures.empty());
    return result.reason;
}

// Recognised by content

TEST(Mmcif, IsRecognisedBehindCommentsAndBlanksAndInCapitals) {
    const std::string text = mmcifText(sMmcifRow{}.line());
    for (const std::string before : {"", "\n  \t\r\n", "# a comment\n#another, data_\n\n",
                                     "\xEF\xBB\xBF", "\xEF\xBB\xBF# with a mark of its order\n"}) {
        EXPECT_EQ(structureOf(before + text).atoms.size(), 1U) << before;
    }
    EXPECT_EQ(structureOf("DATA_1abc\n" + std::string(mmcifLoop) + sMmcifRow{}.line()).atoms.size(),
              1U);
}

TEST(Mmcif, OtherTextIsNone) {
    for (const std::string before : {"x ", "REMARK\n", "dat"}) {
        EXPECT_EQ(readMmcif(before + mmcifText({})).outcome, eReadOutcome::noAtoms) << before;
    }
}

// What the columns mean

TEST(Mmcif, IdsAndNumbersAreThoseOfTheAuthors) {
    const cPdbPeptide structure = structureOf(mmcifText(
        sMmcifRow{.part = "B", .sequenceNumber = "7", .number = "52", .chain = "H"}.line() +
        sMmcifRow{
            .part = "B", .sequenceNumber = "8", .insertionCode = "A", .number = "52", .chain = "H"}
            .line() +
        sMmcifRow{.part = "C", .sequenceNumber = "1", .number = "-3", .chain = "L"}.line()));
    EXPECT_EQ(chainIds(structure), (tTexts{"H", "L"}));
    EXPECT_EQ(residueNumbers(structure), (tTexts{"52", "52A", "-3"}));
    EXPECT_EQ(structure.name, "1ABC");
}

TEST(Mmcif, LabelsStandInWhereTheAuthorsGiveNothing) {
    const std::string text = "data_x\nloop_\n_atom_site.label_atom_id\n_atom_site.label_comp_id\n"
                             "_atom_site.label_asym_id\n_atom_site.label_seq_id\n"
                             "_atom_site.Cartn_x\n_atom_site.Cartn_y\n_atom_site.Cartn_z\n"
                             "CA ALA Q 5 1 2 3\n";
    const cPdbPeptide structure = structureOf(text);
    EXPECT_EQ(chainIds(structure), (tTexts{"Q"}));
    EXPECT_EQ(residueNumbers(structure), (tTexts{"5"}));
    EXPECT_EQ(structure.name, "x") << "the data block's, where the entry has no id";
}

TEST(Mmcif, NamesOfTheAuthorsPrecedeTheLabels) {
    const std::string text =
        "data_x\nloop_\n_atom_site.auth_atom_id\n_atom_site.auth_comp_id\n"
        "_atom_site.label_atom_id\n_atom_site.label_comp_id\n_atom_site.auth_asym_id\n"
        "_atom_site.auth_seq_id\n_atom_site.Cartn_x\n_atom_site.Cartn_y\n_atom_site.Cartn_z\n"
        "CB GLY CA ALA A 5 1 2 3\n";
    const sReadResult result = readMmcif(text);
    EXPECT_EQ(result.missingRadii, (std::set<std::string>{"GLY_CB"}));
}

TEST(Mmcif, ChainIdsOfAnyLengthAreComparedExactly) {
    std::string rows;
    for (const char* chain : {"A", "a", "AAA", "AAa", "\"B'\"", "chain-with-a-long-name"}) {
        rows += sMmcifRow{.name = "N", .chain = chain}.line();
    }
    const cPdbPeptide structure = structureOf(mmcifText(rows));
    EXPECT_EQ(chainIds(structure),
              (tTexts{"A", "a", "AAA", "AAa", "B'", "chain-with-a-long-name"}));
    for (const cResidueAtom& atom : structure.atoms) {
        EXPECT_EQ(atom.atomName, "NXT") << "each opens a chain";
    }
}

TEST(Mmcif, ChainWithoutAnIdIsAStar) {
    EXPECT_EQ(chainIds(structureOf(mmcifText(sMmcifRow{.part = "?", .chain = "."}.line()))),
              (tTexts{"*"}));
    EXPECT_EQ(chainIds(structureOf(mmcifText(sMmcifRow{.chain = "' '"}.line()))), (tTexts{"*"}));
}

TEST(Mmcif, QuotedNamesLoseTheirQuotes) {
    const cPdbPeptide structure =
        structureOf(mmcifText(sMmcifRow{.name = "\"C1'\"", .residue = "DA"}.line() +
                              sMmcifRow{.name = "'C\"x'", .residue = "DA"}.line() +
                              sMmcifRow{.name = "\n;odd\n;", .residue = "DA"}.line()));
    ASSERT_EQ(structure.atoms.size(), 3U);
    EXPECT_EQ(structure.atoms[0].atomName, "C1'");
    EXPECT_EQ(structure.atoms[1].atomName, "C\"x");
    EXPECT_EQ(structure.atoms[2].atomName, "odd");
}

TEST(Mmcif, OneAtomMayStandOutsideOfALoop) {
    const std::string text =
        "data_1abc\n_atom_site.group_PDB ATOM\n_atom_site.id 7\n_ATOM_SITE.LABEL_ATOM_ID N\n"
        "_atom_site.label_comp_id GLY\n_atom_site.auth_asym_id A\n_atom_site.auth_seq_id 3\n"
        "_atom_site.Cartn_x 1.5\n_atom_site.Cartn_y 2.5\n_atom_site.Cartn_z -3.5\n"
        "_entry.id 1ABC\n";
    const cPdbPeptide structure = structureOf(text, {{"GLY_N", 1.65}});
    ASSERT_EQ(structure.atoms.size(), 1U);
    EXPECT_EQ(structure.atoms[0].atomName, "NXT");
    EXPECT_EQ(structure.atoms[0].serial, "7");
    EXPECT_EQ(structure.atoms[0].z, -3.5);
    EXPECT_EQ(structure.atoms[0].radius, 1.65);
}

TEST(Mmcif, ColumnsMayStandInAnyOrderAndUnknownOnesAmongThem) {
    const std::string text =
        "data_x\nloop_\n_atom_site.Cartn_z\n_atom_site.phase_of_the_moon\n_atom_site.Cartn_x\n"
        "_atom_site.auth_seq_id\n_atom_site.label_comp_id\n_atom_site.Cartn_y\n"
        "_atom_site.auth_asym_id\n_atom_site.label_atom_id\n3 full 1 9 ALA 2 A CB\n";
    const cPdbPeptide structure = structureOf(text);
    ASSERT_EQ(structure.atoms.size(), 1U);
    EXPECT_EQ(structure.atoms[0].x, 1.0);
    EXPECT_EQ(structure.atoms[0].y, 2.0);
    EXPECT_EQ(structure.atoms[0].z, 3.0);
}

// The rules of ATOM and HETATM records

TEST(Mmcif, OfHeteroAtomsOnlyMetalsAreKept) {
    const cPdbPeptide structure = structureOf(mmcifText(
        sMmcifRow{}.line() +
        sMmcifRow{.group = "HETATM", .element = "ZN", .name = "ZN", .residue = "ZN", .x = "5.5"}
            .line() +
        sMmcifRow{.group = "HETATM", .name = "C1", .residue = "GOL"}.line() +
        sMmcifRow{.group = "HETATM", .element = "O", .name = "O", .residue = "HOH"}.line()));
    EXPECT_EQ(structure.atoms.size(), 1U);
    ASSERT_EQ(structure.heteroAtoms.size(), 1U);
    EXPECT_EQ(structure.heteroAtoms[0].atomName, "ZN");
    EXPECT_EQ(structure.heteroAtoms[0].x, 5.5);
    EXPECT_EQ(structure.heteroAtoms[0].radius, 0.0);
}

TEST(Mmcif, RowsMakeTheStructureThatPdbLinesMake) {
    const std::map<std::string, double> radii{{"ALA_N", 1.65}, {"ALA_CA", 1.87}};
    const cPdbPeptide structure = structureOf(
        mmcifText(sMmcifRow{.name = "N", .x = "1.000"}.line() +
                  sMmcifRow{.id = "2", .x = "2.250"}.line() +
                  sMmcifRow{.group = "HETATM", .id = "3", .residue = "GOL", .number = "9"}.line() +
                  sMmcifRow{.id = "4", .name = "OXT", .x = "-.5"}.line() +
                  sMmcifRow{.id = "5", .alternate = "B", .residue = "GLY", .number = "2"}.line() +
                  sMmcifRow{.id = "6", .name = "N", .residue = "DA", .chain = "B"}.line() +
                  sMmcifRow{.id = "7", .name = "N", .residue = "U", .chain = "A"}.line()),
        radii);
    const sReading reading = readPdb(
        headerLine("1ABC") + sAtomLine{.name = "N", .x = "1.000"}.line() +
            sAtomLine{.serial = "2", .x = "2.250"}.line() +
            sAtomLine{.record = "HETATM", .serial = "3", .residue = "GOL", .number = "9"}.line() +
            sAtomLine{.serial = "4", .name = "OXT", .x = "-.5"}.line() +
            sAtomLine{.serial = "5", .alternate = 'B', .residue = "GLY", .number = "2"}.line() +
            sAtomLine{.serial = "6", .name = "N", .residue = "DA", .chain = 'B'}.line() +
            sAtomLine{.serial = "7", .name = "N", .residue = "U", .chain = 'A'}.line(),
        radii);
    expectSameStructure(structure, reading.peptide);
}

TEST(Mmcif, ResiduesWithoutAGroupAreJudgedByTheirEntity) {
    const std::string entities = "loop_\n_entity.id\n_entity.type\n1 polymer\n2 non-polymer\n";
    const auto row = [](const char* residue, const char* entity) {
        return sMmcifRow{.group = "?",
                         .residue = residue,
                         .entity = entity,
                         .sequenceNumber = ".",
                         .number = entity}
            .line();
    };
    const std::string rows = row("ALA", "1") + row("GLY", "2");
    const cPdbPeptide judged = structureOf(mmcifText(rows, entities));
    ASSERT_EQ(judged.residues.size(), 1U);
    EXPECT_EQ(judged.residues[0].residueName, "ALA");
    // Nothing is known of them but their names.
    const std::string bare = "data_x\nloop_\n_atom_site.label_atom_id\n_atom_site.label_comp_id\n"
                             "_atom_site.auth_asym_id\n_atom_site.auth_seq_id\n"
                             "_atom_site.Cartn_x\n_atom_site.Cartn_y\n_atom_site.Cartn_z\n"
                             "CA ALA A 1 1 2 3\nP DA A 2 1 2 3\nO HOH A 3 1 2 3\nZN ZN A 4 1 2 3\n";
    const cPdbPeptide named = structureOf(bare);
    EXPECT_EQ(residueNumbers(named), (tTexts{"1", "2"}));
    EXPECT_EQ(named.heteroAtoms.size(), 1U);
}

TEST(Mmcif, OnlyTheFirstModelIsReadEvenIfModelsAreMixed) {
    const cPdbPeptide structure = structureOf(mmcifText(
        sMmcifRow{.x = "1", .model = "3"}.line() + sMmcifRow{.x = "2", .model = "1"}.line() +
        sMmcifRow{.x = "bad", .model = "1"}.line() + sMmcifRow{.x = "4", .model = "3"}.line()));
    ASSERT_EQ(structure.atoms.size(), 2U);
    EXPECT_EQ(structure.atoms[0].x, 1.0);
    EXPECT_EQ(structure.atoms[1].x, 4.0);
}

TEST(Mmcif, OnlyTheFirstBlockWithAtomsIsRead) {
    const std::string other = "data_other\n_entry.id XXXX\n_cell.length_a 5\n";
    const cPdbPeptide structure = structureOf(other + mmcifText(sMmcifRow{}.line()) + other +
                                              mmcifText(sMmcifRow{.x = "bad"}.line()));
    EXPECT_EQ(structure.atoms.size(), 1U);
    EXPECT_EQ(structure.name, "1ABC");
}

TEST(Mmcif, DefinitionsInFramesAreNoAtoms) {
    const cPdbPeptide structure =
        structureOf("data_x\nsave_frame\n" + std::string(mmcifLoop) + sMmcifRow{.x = "bad"}.line() +
                    "_atom_site.id 5\nsave_\n" + mmcifLoop + sMmcifRow{}.line());
    EXPECT_EQ(structure.atoms.size(), 1U);
}

// Numbers

TEST(Mmcif, CoordinatesAreNumbersAsTheFormatWritesThem) {
    struct sNumber {
        const char* text;
        double value;
    };
    for (const sNumber& number :
         {sNumber{"1.5", 1.5}, sNumber{"-.5", -0.5}, sNumber{"+3", 3.0}, sNumber{"12.", 12.0},
          sNumber{"1e-05", 1e-05}, sNumber{"-1.5E2", -150.0}, sNumber{"1.234(5)", 1.234},
          sNumber{"1.234(15)", 1.234}, sNumber{"'2.5'", 2.5}, sNumber{"0.1", 0.1}}) {
        const cPdbPeptide structure = structureOf(mmcifText(sMmcifRow{.y = number.text}.line()));
        ASSERT_EQ(structure.atoms.size(), 1U);
        EXPECT_EQ(structure.atoms[0].y, number.value) << number.text;
    }
}

TEST(Mmcif, AtomWithoutReadableCoordinatesIsNamed) {
    for (const char* text : {"?",       ".",    "abc",   "1,5",  "nan",   "inf", "-inf",
                             "1e999",   "1e8",  "-1e8",  "1.2(", "1.2()", "(5)", "1.2(5",
                             "1.2(5)6", "0x10", "1.5.2", "--1",  "+-1",   "''",  "'1 2'"}) {
        const std::string rows = sMmcifRow{}.line() + sMmcifRow{.id = "17",
                                                                .name = "CB",
                                                                .residue = "SER",
                                                                .insertionCode = "B",
                                                                .z = text,
                                                                .number = "5",
                                                                .chain = "XYZ"}
                                                          .line();
        EXPECT_EQ(refusalOf(mmcifText(rows)),
                  "No coordinates of atom 17 (CB of SER 5B in chain XYZ)")
            << text;
    }
}

TEST(Mmcif, CoordinatesOfWhatIsLeftOutDoNotCount) {
    EXPECT_EQ(
        structureOf(mmcifText(sMmcifRow{}.line() +
                              sMmcifRow{.group = "HETATM", .residue = "GOL", .x = "?"}.line()))
            .atoms.size(),
        1U);
}

TEST(Mmcif, AtomsWithoutColumnsThatMatterAreRefused) {
    const std::string refusal = "_atom_site lacks coordinates or names";
    EXPECT_EQ(refusalOf("data_x\nloop_\n_atom_site.label_atom_id\n_atom_site.label_comp_id\n"
                        "_atom_site.fract_x\nCA ALA 0.5\n"),
              refusal);
    EXPECT_EQ(refusalOf("data_x\nloop_\n_atom_site.Cartn_x\n_atom_site.Cartn_y\n"
                        "_atom_site.Cartn_z\n1 2 3\n"),
              refusal);
}

// Broken text

TEST(Mmcif, TextThatBreaksTheGrammarIsRefusedWithItsLine) {
    const std::string rows = sMmcifRow{}.line();
    EXPECT_EQ(refusalOf(mmcifText(rows + "ATOM 2 C\n")),
              "Not mmCIF: a loop whose values do not fill its last row in line 22");
    EXPECT_EQ(refusalOf(mmcifText(rows + "_cell.length_a\n_cell.length_b 5\n")),
              "Not mmCIF: _cell.length_a without a value in line 22");
    EXPECT_EQ(refusalOf(mmcifText(rows + "_a.b 'never closed\n")).substr(0, 11), "Not mmCIF: ");
    EXPECT_EQ(refusalOf(mmcifText(rows + "_a.b\n;never closed\n")).substr(0, 11), "Not mmCIF: ");
    EXPECT_EQ(refusalOf(mmcifText(rows) + std::string(1, '\0')).substr(0, 11), "Not mmCIF: ");
}

TEST(Mmcif, TextWithoutAtomsHasNone) {
    for (const char* text :
         {"data_", "data_x\n", "data_x\n_entry.id 1ABC\n", "data_x\nloop_\n_entity.id\n1\n2\n",
          "data_x\nloop_\n_atom_site.id\n"}) {
        EXPECT_EQ(readMmcif(text).outcome, eReadOutcome::noAtoms) << text;
    }
}

TEST(Mmcif, LinesMayEndInCarriageReturns) {
    std::string text = mmcifText(sMmcifRow{}.line() + sMmcifRow{.number = "2"}.line());
    std::string::size_type end = 0;
    while ((end = text.find('\n', end)) != std::string::npos) {
        text.insert(end, "\r");
        end += 2;
    }
    EXPECT_EQ(residueNumbers(structureOf(text)), (tTexts{"1", "2"}));
}

TEST(Mmcif, AtomsMeanTheSameWhereverTheyStandInALongFile) {
    std::string rows;
    for (int i = 0; i < 3000; ++i) {
        rows += sMmcifRow{.id = std::to_string(i),
                          .name = i % 3 == 0 ? "\"C1'\"" : "CA",
                          .x = std::to_string(i) + ".125",
                          .number = std::to_string(i / 4)}
                    .line();
    }
    for (const std::size_t shift : {0U, 1U, 7U, 63U, 32000U, 40000U}) {
        const cPdbPeptide structure =
            structureOf(mmcifText(rows, "#" + std::string(shift, ' ') + '\n'));
        ASSERT_EQ(structure.atoms.size(), 3000U) << shift;
        for (std::size_t i = 0; i < 3000; ++i) {
            ASSERT_EQ(structure.atoms[i].x, static_cast<double>(i) + 0.125) << shift;
            ASSERT_EQ(structure.atoms[i].atomName, i % 3 == 0 ? "C1'" : "CA") << shift;
        }
    }
}

// Size

/// A text followed by blanks without end, as far as a reader is concerned.
class cEndlessBlanks : public std::streambuf {
  public:
    explicit cEndlessBlanks(std::string beginning) : text(std::move(beginning)) {
        setg(text.data(), text.data(), text.data() + text.size());
    }

  protected:
    int_type underflow() override {
        text.assign(1U << 16U, ' ');
        setg(text.data(), text.data(), text.data() + text.size());
        return ' ';
    }
    pos_type seekpos(pos_type, std::ios_base::openmode) override {
        setg(text.data(), text.data(), text.data() + text.size());
        return 0;
    }

  private:
    std::string text;
};

TEST(Mmcif, EndlessBlanksEndInAMessage) {
    cEndlessBlanks buffer(mmcifText(sMmcifRow{}.line()));
    std::istream in(&buffer);
    rusage before{};
    rusage after{};
    ::getrusage(RUSAGE_SELF, &before);
    const sReadResult result = readStructure(in, {});
    ::getrusage(RUSAGE_SELF, &after);
    EXPECT_EQ(result.outcome, eReadOutcome::refused);
    EXPECT_EQ(result.reason.find("Not mmCIF: more than 16 MiB"), 0U) << result.reason;
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 40 * 1024) << "KiB";
}

TEST(Mmcif, ReadingIsGivenUpWhenAStopIsWanted) {
    cEndlessBlanks buffer(mmcifText(sMmcifRow{}.line()));
    std::istream in(&buffer);
    std::atomic<int> questions = 0;
    const cStopRequest request([&] { return ++questions == 100; });
    EXPECT_THROW(readStructure(in, {}), sStopped);
    EXPECT_EQ(questions, 100);
}

} // namespace

} // namespace kelmo
