#include "input/structure_reader.h"

#include "input/structure_formats.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/structure_links.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <sstream>
#include <streambuf>
#include <string>
#include <system_error>

namespace kelmo {

namespace {

sReadResult readText(const std::string& text, const std::map<std::string, double>& radii = {}) {
    std::istringstream in(text);
    return readStructure(in, radii);
}

TEST(StructureReader, PdbTextIsTheOneStructureThatTheReaderOfPdbTextMakes) {
    const std::string text = headerLine("1ABC") + sAtomLine{.name = "N"}.line() +
                             sAtomLine{.record = "HETATM", .name = "ZN"}.line() +
                             sAtomLine{.name = "CB", .number = "2"}.line() + "END\n";
    const sReadResult result = readText(text, {{"ALA_N", 1.65}});
    const sReading reading = readPdb(text, {{"ALA_N", 1.65}});
    ASSERT_EQ(result.outcome, eReadOutcome::read);
    ASSERT_EQ(result.structures.size(), 1U);
    const cPdbPeptide& structure = result.structures.front();
    EXPECT_EQ(structure.name, "1ABC");
    ASSERT_EQ(structure.atoms.size(), reading.peptide.atoms.size());
    EXPECT_EQ(structure.atoms[0].atomName, "NXT");
    EXPECT_EQ(structure.atoms[0].radius, 1.65);
    EXPECT_EQ(structure.heteroAtoms.size(), 1U);
    EXPECT_EQ(result.missingRadii, reading.missing);
    expectLinksIntoOwnLists(structure);
}

TEST(StructureReader, LineInErrorIsCounted) {
    const sReadResult result = readText(sAtomLine{}.line() + "ATOM  short\n");
    EXPECT_EQ(result.outcome, eReadOutcome::badLine);
    EXPECT_EQ(result.badLine, 2);
    EXPECT_TRUE(result.structures.empty());
}

TEST(StructureReader, TextWithoutAtomsHasNone) {
    for (const char* text : {"", "REMARK\n", "no structure at all", "\xff\xfe"}) {
        const sReadResult result = readText(text);
        EXPECT_EQ(result.outcome, eReadOutcome::noAtoms) << text;
        EXPECT_TRUE(result.structures.empty());
    }
}

TEST(StructureReader, ReasonOfAStreamThatFailsIsTold) {
    struct cFailing : std::streambuf {
        int_type underflow() override {
            errno = EIO;
            throw std::system_error(EIO, std::generic_category());
        }
        pos_type seekoff(off_type, std::ios_base::seekdir, std::ios_base::openmode) override {
            return 0;
        }
        pos_type seekpos(pos_type, std::ios_base::openmode) override { return 0; }
    } source;
    std::istream in(&source);
    const sReadResult result = readStructure(in, {});
    EXPECT_EQ(result.outcome, eReadOutcome::unreadable);
    EXPECT_EQ(result.reason, std::generic_category().message(EIO));
}

TEST(StructureFormats, NamesAreKnownByTheirSuffixesInCapitalsOrNot) {
    for (const char* name :
         {"1abc.pdb", "1ABC.PDB", "pdb1abc.ent", "a.b.Ent", "/x/y.pdb", "1abc.cif", "1abc.mmCIF",
          "1abc.cif.gz", "1abc.pdb.GZ", "pdb1abc.ent.gz", "a.b.mmcif.gz"}) {
        EXPECT_TRUE(hasStructureSuffix(name)) << name;
    }
    for (const char* name : {"", ".pdb", "pdb", "1abcpdb", "1abc.pdb ", "1abc.fls", "1abc.gz",
                             ".gz", ".cif.gz", "1abc.pdb.gz.gz"}) {
        EXPECT_FALSE(hasStructureSuffix(name)) << name;
    }
}

} // namespace

} // namespace kelmo
