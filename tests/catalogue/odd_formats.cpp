// The odd files that are mmCIF or compressed.
#include "tests/catalogue/odd_inputs.h"

#include "tests/input/gzip_text.h"
#include "tests/input/mmcif_rows.h"
#include "tests/support/pdb_lines.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace kelmo {

using namespace std::string_literals;

namespace {

using tOddInputs = std::vector<sOddInput>;

/// N, CA, C and O of a glycine as four rows; whatever else they say is that of the given row.
std::string glycineRows(sMmcifRow row, const std::string& chain, const std::string& z) {
    std::string rows;
    row.residue = "GLY";
    row.chain = chain;
    row.z = z;
    for (const auto& [name, x, y] : {std::array{"N", "0", "0"}, std::array{"CA", "1.5", "0"},
                                     std::array{"C", "2", "1.5"}, std::array{"O", "1", "2.5"}}) {
        row.name = name;
        row.x = x;
        row.y = y;
        rows += row.line();
    }
    return rows;
}

std::string glycineRows(const sMmcifRow& row = {}) {
    return glycineRows(row, "L", "0") + glycineRows(row, "H", "4");
}

/// Nothing odd: two chains of one glycine each, 4 Å apart. Tags stand in lines 3 to 20 and rows in
/// lines 21 to 28.
const std::string& glycines() {
    static const std::string text = mmcifText(glycineRows());
    return text;
}

/// Two glycines and an atom, of chain A if not said otherwise, in which something is odd.
std::string withRow(const sMmcifRow& row) {
    return glycines() + row.line();
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

sOddInput asRead(const std::string& name, const std::string& bytes, const std::string& told = {}) {
    return {.name = "mmCIF: " + name,
            .bytes = bytes,
            .atoms = 8,
            .residues = 2,
            .chains = "LH",
            .told = told};
}

/// Two glycines and an atom that is read, under the key of its radius if the table lacks that.
sOddInput withRead(const std::string& name, const sMmcifRow& row, const std::string& unknown = {}) {
    return {.name = "mmCIF: " + name,
            .bytes = withRow(row),
            .atoms = 9,
            .residues = 3,
            .chains = "LHA",
            .unknown = unknown};
}

sOddInput asRefused(const std::string& name, const std::string& bytes, const std::string& reason) {
    return {
        .name = "mmCIF: " + name, .bytes = bytes, .refusal = "Could not use PDB file %: " + reason};
}

sOddInput withoutCoordinates(const std::string& name, const sMmcifRow& row) {
    return asRefused(name, withRow(row), "No coordinates of atom 1 (CA of ALA 1 in chain A)");
}

/// The loop of two glycines without one of its tags and the values under it.
std::string withoutColumn(std::size_t column) {
    std::string text;
    std::size_t tags = 0;
    for (std::size_t begin = 0; begin < glycines().size();) {
        const std::size_t end = glycines().find('\n', begin);
        const std::string line = glycines().substr(begin, end - begin);
        begin = end + 1;
        if (line.starts_with("ATOM")) {
            std::size_t at = 0;
            for (std::size_t i = 0; i < column; ++i) {
                at = line.find(' ', at) + 1;
            }
            text +=
                line.substr(0, at) + line.substr(std::min(line.find(' ', at), line.size() - 1) + 1);
            text += '\n';
        } else if (!line.starts_with("_atom_site.") || tags++ != column) {
            text += line + '\n';
        }
    }
    return text;
}

tOddInputs rowsOfMmcif() {
    const std::string lastRow = "in line 28";
    return {
        asRead("nothing odd", glycines()),
        asRefused("cut off within a row", glycines().substr(0, glycines().size() - 12),
                  "Not mmCIF: a loop whose values do not fill its last row " + lastRow),
        {.name = "mmCIF: cut off between rows",
         .bytes = mmcifText(glycineRows({}, "L", "0")),
         .atoms = 4,
         .residues = 1,
         .chains = "L"},
        {.name = "mmCIF: cut off behind the tags", .bytes = mmcifText("")},
        asRefused("a row of one value too many", glycines() + "1\n",
                  "Not mmCIF: a loop whose values do not fill its last row in line 29"),
        asRead("a row on two lines", replaced(glycines(), " CA . ", " CA\n. ")),
        asRead("all rows on one line", mmcifText(replaced(glycineRows(), "\n", " "))),
        asRead("tabs and blanks between the values", replaced(glycines(), " GLY ", "\t\tGLY   ")),
        asRead("lines that end in CR LF", replaced(glycines(), "\n", "\r\n")),
        asRead("lines that end in CR", replaced(glycines(), "\n", "\r")),
        asRead("comments and empty lines", replaced(glycines(), "\nATOM", "\n\n# ATOM 1\nATOM")),
        asRead("last line without line feed", glycines().substr(0, glycines().size() - 1)),
        asRead("words in capitals",
               replaced(replaced(replaced(glycines(), "data_", "DATA_"), "loop_", "LOOP_"),
                        "_atom_site.", "_ATOM_SITE.")),
        asRead("byte order mark", "\xEF\xBB\xBF" + glycines()),
        {.name = "mmCIF: NUL bytes behind the rows",
         .bytes = glycines() + std::string(10, '\0'),
         .refusal = "Could not use PDB file %: Not mmCIF: parse error in line 29"},
        {.name = "mmCIF: a block and nothing else", .bytes = "data_1ABC\n"},
        {.name = "mmCIF: a name of a block that breaks off", .bytes = "data"},
    };
}

tOddInputs valuesOfMmcif() {
    return {
        withoutCoordinates("coordinate that is unknown", {.x = "?"}),
        withoutCoordinates("coordinate that does not apply", {.y = "."}),
        withoutCoordinates("coordinate that is no number", {.z = "nan"}),
        withoutCoordinates("coordinate that is infinite", {.x = "-inf"}),
        withoutCoordinates("coordinate of 1e300", {.y = "1e300"}),
        withoutCoordinates("coordinate of four hundred digits", {.y = std::string(400, '9')}),
        withoutCoordinates("coordinate with a decimal comma", {.z = "1,5"}),
        withoutCoordinates("coordinate in quotes with a blank", {.z = "'1 5'"}),
        withRead("exponents and uncertainties", {.x = "-1.5e0", .y = "12.345(67)", .z = "'+.5'"}),
        withRead("occupancy that is unknown", {.occupancy = "?"}),
        withRead("serial of a thousand digits", {.id = std::string(1000, '9')}),
        withRead("number of a residue beyond all integers",
                 {.number = "-99999999999999999999999999"}),
        withRead("name in quotes", {.name = "\"C1'\""}, "ALA_C1' "),
        withRead("name in a text field", {.name = "\n;CA\n;"}),
        withRead("name that is a word of the format in quotes", {.name = "'loop_'"}, "ALA_loop_ "),
        asRefused("name that is a word of the format", withRow({.name = "loop_"}),
                  "Not mmCIF: a loop whose values do not fill its last row in line 29"),
        asRefused("name in quotes that do not close", withRow({.name = "'CA"}),
                  "Not mmCIF: unterminated 'string' in line 29"),
        asRefused("name in a text field that does not close", withRow({.name = "\n;CA"}),
                  "Not mmCIF: unterminated text field in line 31"),
        asRefused("Latin-1 in a name", withRow({.name = "C\xE4"}),
                  "Not mmCIF: a loop whose values do not fill its last row in line 29"),
        asRead("Latin-1 in a comment", replaced(glycines(), "\nloop_", "\n# \xE4\xFF\nloop_")),
        asRead("bytes of every kind in a text field",
               replaced(glycines(), "\nloop_", "\n_struct.title\n;\xC3\xA4 \xE4 \x01\n;\nloop_")),
        {.name = "mmCIF: chain ids of 300 letters",
         .bytes = mmcifText(glycineRows({}, std::string(300, 'L'), "0") +
                            glycineRows({}, std::string(299, 'L') + 'H', "4")),
         .atoms = 8,
         .residues = 2,
         .chains = std::string(300, 'L') + '\t' + std::string(299, 'L') + 'H'},
        {.name = "mmCIF: chain ids that differ in case alone",
         .bytes = mmcifText(glycineRows({}, "L", "0") + glycineRows({}, "l", "4")),
         .atoms = 8,
         .residues = 2,
         .chains = "Ll"},
        {.name = "mmCIF: chain ids with blanks and markup",
         .bytes = mmcifText(glycineRows({}, "'A B'", "0") + glycineRows({}, "<&>", "4")),
         .atoms = 8,
         .residues = 2,
         .chains = "A B\t<&>",
         .isMarkup = true},
        {.name = "mmCIF: chain that has no id",
         .bytes = mmcifText(glycineRows({.part = "?"}, ".", "0") + glycineRows({}, "H", "4")),
         .atoms = 8,
         .residues = 2,
         .chains = "*H"},
    };
}

tOddInputs tablesOfMmcif() {
    const std::string lacking = "_atom_site lacks coordinates or names";
    return {
        asRead("no groups", withoutColumn(0)),
        asRead("no elements", withoutColumn(2)),
        asRead("no insertion codes", withoutColumn(9)),
        asRead("no models", withoutColumn(16)),
        asRefused("no names of atoms", withoutColumn(3), lacking),
        asRefused("no names of residues", withoutColumn(5), lacking),
        asRefused("no z", withoutColumn(12), lacking),
        {.name = "mmCIF: labels without authors",
         .bytes = withoutColumn(15),
         .atoms = 8,
         .residues = 1,
         .chains = "A"},
        asRead("labels that authors gainsay", mmcifText(glycineRows({.part = "X"}, "L", "0") +
                                                        glycineRows({.part = "X"}, "H", "4"))),
        asRead("a tag that nobody knows", replaced(glycines(), ".occupancy", ".phase_of_the_moon")),
        asRefused("a loop without tags", glycines() + "loop_\n1 2 3\n",
                  "Not mmCIF: parse error in line 30"),
        asRefused("a tag without a value", glycines() + "_cell.length_a\n",
                  "Not mmCIF: _cell.length_a without a value in line 29"),
        asRead("a block without atoms in front",
               "data_global\n_audit.creation_date ?\n" + glycines()),
        asRead("a block twice", glycines() + glycines(),
               "black: Not analysed in odd.pdb: 1 later data block. See preparation."),
        {.name = "mmCIF: the loop of atoms twice in one block",
         .bytes = glycines() + mmcifLoop + glycineRows(),
         .atoms = 16,
         .residues = 4,
         .chains = "LHLH"},
        asRead("atoms in a frame", "data_1ABC\nsave_frame\n" + (mmcifLoop + glycineRows()) +
                                       "save_\n" + (mmcifLoop + glycineRows())),
        asRead("models that take turns",
               mmcifText(glycineRows({}, "L", "0") + glycineRows({.model = "2"}, "L", "0") +
                         glycineRows({}, "H", "4") + glycineRows({.model = "2"}, "H", "4")),
               "black: Not analysed in odd.pdb: 1 later model. See preparation."),
        asRead("modified residue of a polymer",
               withRow({.group = "HETATM", .name = "SE", .residue = "MSE", .x = "?"}),
               "yellow: Not analysed in odd.pdb: 1 residue MSE. See preparation."),
        {.name = "mmCIF: atoms of groups that are none",
         .bytes = mmcifText(glycineRows({.group = "ATOMS"})),
         .atoms = 8,
         .residues = 2,
         .chains = "LH"},
        {.name = "mmCIF: hetero atoms alone",
         .bytes = mmcifText(glycineRows({.group = "HETATM", .sequenceNumber = "."}))},
        {.name = "mmCIF: structure factors and no structure",
         .bytes = "data_r1abcsf\nloop_\n_refln.index_h\n_refln.F_meas_au\n0 1.5\n1 2.5\n"},
    };
}

sOddInput asUnreadable(const std::string& name, const std::string& bytes,
                       const std::string& reason) {
    return {.name = "gzip: " + name,
            .bytes = bytes,
            .refusal = "Could not read PDB file %: The compressed data " + reason};
}

/// The text with a byte changed that stands so far in front of its end.
std::string damagedBefore(std::string bytes, std::size_t distance) {
    bytes[bytes.size() - distance] = static_cast<char>(bytes[bytes.size() - distance] ^ 1);
    return bytes;
}

tOddInputs compressedTexts() {
    const std::string text = glycine('L', "1", 0.0) + glycine('H', "2", 4.0);
    const std::string whole = gzipped(text);
    const auto asText = [](const std::string& name, const std::string& bytes) {
        return sOddInput{
            .name = "gzip: " + name, .bytes = bytes, .atoms = 8, .residues = 2, .chains = "LH"};
    };
    std::string named = whole;
    named[3] = '\x08'; // a flag: a name follows the header
    named.insert(10, "a name that stands in the header\0"s);
    std::string reserved = whole;
    reserved[3] = '\x40';
    std::string otherMethod = whole;
    otherMethod[2] = '\x07';
    return {
        asText("nothing odd", whole),
        asText("mmCIF", gzipped(glycines())),
        asText("name in the header", named),
        asText("two members", gzipped(text.substr(0, 100)) + gzipped(text.substr(100))),
        asText("empty member in front", gzipped("") + whole),
        asText("empty member behind", whole + gzipped("")),
        asText("zero bytes behind", whole + std::string(1000, '\0')),
        {.name = "gzip: empty member", .bytes = gzipped("")},
        {.name = "gzip: of gzip", .bytes = gzipped(whole)},
        {.name = "gzip: line that is cut", .bytes = gzipped(text + "ATOM  cut\n"), .faultyLine = 9},
        {.name = "gzip: a megabyte of zeros", .bytes = gzipped(std::string(1U << 20U, '\0'))},
        {.name = "gzip: mmCIF that is cut",
         .bytes = gzipped(glycines().substr(0, glycines().size() - 12)),
         .refusal = "Could not use PDB file %: Not mmCIF: a loop whose values do not fill its last "
                    "row in line 28"},
        asUnreadable("two bytes", "\x1F\x8B", "breaks off"),
        asUnreadable("cut in two", whole.substr(0, whole.size() / 2), "breaks off"),
        asUnreadable("length missing", whole.substr(0, whole.size() - 4), "breaks off"),
        asUnreadable("last byte missing", whole.substr(0, whole.size() - 1), "breaks off"),
        asUnreadable("second member cut", whole + whole.substr(0, 20), "breaks off"),
        asUnreadable("wrong check sum", damagedBefore(whole, 8),
                     "is damaged: incorrect data check"),
        asUnreadable("wrong length", damagedBefore(whole, 4), "is damaged: incorrect length check"),
        asUnreadable("mmCIF with a wrong check sum", damagedBefore(gzipped(glycines()), 8),
                     "is damaged: incorrect data check"),
        asUnreadable("text behind", whole + "END\n", "is damaged: incorrect header check"),
        asUnreadable("method that nobody knows", otherMethod,
                     "is damaged: unknown compression method"),
        asUnreadable("flags that nobody knows", reserved, "is damaged: unknown header flags set"),
    };
}

} // namespace

std::vector<sOddInput> oddMmcifTexts() {
    tOddInputs all = rowsOfMmcif();
    for (tOddInputs (*group)() : {valuesOfMmcif, tablesOfMmcif}) {
        for (sOddInput& input : group()) {
            all.push_back(std::move(input));
        }
    }
    return all;
}

std::vector<sOddInput> oddCompressedTexts() {
    return compressedTexts();
}

} // namespace kelmo
