#include "tests/catalogue/odd_inputs.h"

#include "tests/support/pdb_lines.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <ostream>
#include <random>
#include <sstream>
#include <string_view>
#include <utility>

namespace kelmo {

using namespace std::string_literals;

namespace {

/// Nothing odd: two chains of one glycine each, 4 Å apart, in eight lines of 55 bytes.
const std::string& glycines() {
    static const std::string text = glycine('L', "1", 0.0) + glycine('H', "2", 4.0);
    return text;
}

std::string replaced(std::string text, std::string_view from, std::string_view to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

/// Two glycines and an atom, of chain A if not said otherwise, in which something is odd.
std::string withAtom(const sAtomLine& atom) {
    return glycines() + atom.line();
}

/// The same with its coordinates.
std::string at(const std::string& x, const std::string& y, const std::string& z) {
    return withAtom({.x = x, .y = y, .z = z});
}

std::string header(std::size_t columns) {
    return ("HEADER    A HEADER LINE" + std::string(39, ' ') + "1ABC    ").substr(0, columns) +
           '\n' + glycines();
}

using tOddInputs = std::vector<sOddInput>;

tOddInputs lineEnds() {
    const std::string megabyte(1U << 20U, ' ');
    return {
        {"nothing odd", glycines() + "END\n", 0, 8, 2, "LH"},
        {"no END", glycines(), 0, 8, 2, "LH"},
        {"lines that end in CR LF", replaced(glycines() + "END\n", "\n", "\r\n"), 0, 8, 2, "LH"},
        {"lines that end in CR are one line", replaced(glycines(), "\n", "\r"), 0, 1, 1, "L"},
        {"last line without line feed", glycines().substr(0, glycines().size() - 1), 0, 8, 2, "LH"},
        {"cut within the last line", glycines().substr(0, 7 * 55 + 40), 8},
        {"cut within the last coordinate", glycines().substr(0, 7 * 55 + 53), 8},
        {"cut within the record name", glycines().substr(0, 7 * 55 + 5), 0, 7, 2, "LH"},
        {"NUL bytes behind the coordinates", replaced(glycines(), "\n", "\0\0\n"s), 0, 8, 2, "LH"},
        {"NUL byte in a name", replaced(glycines(), " O  ", " O\0 "s), 0, 8, 2, "LH", "GLY_O\0 "s},
        {"NUL byte in a coordinate", replaced(glycines(), "1.000   2.500", "1.0\0"s + "0   2.500"),
         4},
        {"NUL bytes and nothing else", std::string(1000, '\0')},
        {"line of a megabyte before the atoms", "REMARK" + megabyte + '\n' + glycines(), 0, 8, 2,
         "LH"},
        {"atom line of a megabyte",
         replaced(glycines(), "2.500   4.000", "2.500   4.000" + megabyte), 0, 8, 2, "LH"},
        {"line of a megabyte and nothing else", std::string(1U << 20U, 'A')},
        {"empty file", ""},
        {"one line feed", "\n"},
        {"line feeds and nothing else", std::string(10'000, '\n')},
        {"line feeds between the lines", "\n\n" + replaced(glycines(), "\n", "\n\n\n"), 0, 8, 2,
         "LH"},
        {"blanks before the record names", replaced("\n" + glycines(), "\nATOM", "\n ATOM")},
        {"record names in lower case", replaced(glycines(), "ATOM", "atom")},
        {"tabs between the fields", "ATOM\t1\tN\tGLY\tA\t1\t0.000\t0.000\t0.000\n", 1},
        {"tabs within the fields", replaced(glycines(), "   0.000", "\t  0.000"), 0, 8, 2, "LH"},
    };
}

tOddInputs recordsOfAFile() {
    const std::string metals = sAtomLine{.record = "HETATM", .name = "ZN"}.line();
    return {
        {"no atom", "HEADER    EMPTY" + std::string(47, ' ') + "1ABC\nREMARK\nEND\n"},
        {"END before the atoms", "END\n" + glycines()},
        {"a word that begins with END", "ENDING\n" + glycines()},
        {"nothing behind END counts", glycines() + "END\nATOM  bad\n", 0, 8, 2, "LH", "", false, "",
         "black: Not analysed in odd.pdb: 1 later model. See preparation."},
        {"MODEL without ENDMDL", "MODEL        1\n" + glycines() + "MODEL        2\n" + glycines(),
         0, 16, 4, "LHLH"},
        {"ENDMDL without MODEL", glycines() + "ENDMDL\n" + glycines(), 0, 8, 2, "LH", "", false, "",
         "black: Not analysed in odd.pdb: 1 later model. See preparation."},
        {"HEADER cut to 5 columns", header(5), 0, 8, 2, "LH"},
        {"HEADER of 6 columns", header(6), 1},
        {"HEADER of 40 columns", header(40), 1},
        {"HEADER of 65 columns", header(65), 1},
        {"HEADER of 66 columns", header(66), 0, 8, 2, "LH"},
        {"HEADER behind the atoms", glycines() + header(66), 0, 16, 4, "LHLH"},
        {"hetero atom of 53 columns",
         glycines() + sAtomLine{.record = "HETATM", .name = "ZN"}.text().substr(0, 53) + '\n', 9},
        {"metal at no number", glycines() + replaced(metals, "0.000", "  nan"), 0, 8, 2, "LH", "",
         false, "", "black: Not analysed in odd.pdb: 1 ligand (ALA). See preparation."},
        {"metals and no atom", metals + metals},
        {"water and no atom", replaced(metals, "ZN ", "O  ")},
    };
}

tOddInputs chainsAndNumbers() {
    const auto number = [](const std::string& text) {
        return sAtomLine{.residue = "GLY", .number = text}.line();
    };
    return {
        {"blank chain id", replaced(glycines(), "GLY L", "GLY  "), 0, 8, 2, "*H"},
        {"no chain id at all", replaced(replaced(glycines(), "GLY L", "GLY  "), "GLY H", "GLY  "),
         0, 8, 2, "*"},
        {"chain id that returns", glycines() + glycine('L', "3", 8.0), 0, 12, 3, "LHL"},
        {"chains that take turns at every residue", glycines() + glycines() + glycines(), 0, 24, 6,
         "LHLHLH"},
        {"chain ids that differ in case alone", replaced(glycines(), "GLY H", "GLY l"), 0, 8, 2,
         "L"},
        {"insertion codes", number("52") + number("52A") + number("52a") + number("52B"), 0, 4, 3,
         "A"},
        {"negative residue numbers", number("-999") + number("-5") + number("0"), 0, 3, 3, "A"},
        {"starred residue numbers", number("**** ") + number("**** ") + number("1"), 0, 3, 2, "A"},
        {"blank residue numbers", number("") + number("") + number("1"), 0, 3, 2, "A"},
        {"residue numbers in base 36", number("9999") + number("A000") + number("ZZZZ "), 0, 3, 3,
         "A"},
        {"residue numbers that fall and return", number("3") + number("1") + number("3"), 0, 3, 3,
         "A"},
        {"residue name that changes under one number",
         glycines() + sAtomLine{.chain = 'H', .number = "2"}.line(), 0, 9, 2, "LH"},
        {"starred serials", replaced(glycines(), "    1  ", "*****  "), 0, 8, 2, "LH"},
        {"serials in base 36", replaced(glycines(), "    1  ", "A0000  "), 0, 8, 2, "LH"},
        {"serials in base 16", replaced(glycines(), "    1  ", "186a0  "), 0, 8, 2, "LH"},
        {"serials of six digits in the blank column", replaced(glycines(), "    1  ", "100000 "), 0,
         8, 2, "LH"},
        {"serials of six digits that push the rest", replaced(glycines(), "    1  ", "100000  "),
         1},
        {"alternate locations",
         withAtom({.alternate = 'A'}) + sAtomLine{.alternate = 'B', .x = "0.500"}.line(), 0, 10, 3,
         "LHA", "", false, "",
         "yellow: In odd.pdb: 1 residue with alternate locations, all counted. See preparation."},
        {"alternate locations of two residues under one number",
         withAtom({.name = "CB", .alternate = 'A', .residue = "SER"}) +
             sAtomLine{.name = "CB", .alternate = 'B', .residue = "CYS"}.line(),
         0, 10, 3, "LHA", "", false, "",
         "yellow: In odd.pdb: 1 residue with alternate locations, all counted. See preparation."},
    };
}

tOddInputs coordinates() {
    return {
        {"coordinates that touch", at("-100.123", "-200.456", "-300.789"), 0, 9, 3, "LHA"},
        {"coordinate that pushes the rest",
         replaced(withAtom({.x = "1.250"}), "   1.250", "-10000.123"), 9},
        {"coordinates of more decimals that push the rest",
         replaced(glycines(), "   2.000   1.500", "   2.000000   1.500000"), 3},
        {"coordinates shifted by one column",
         replaced(glycines(), "   2.000   1.500", "  2.000   1.500"), 3},
        {"coordinates without decimals", at("1", "-2", "+3"), 0, 9, 3, "LHA"},
        {"coordinates without integer part", at(".5", "-.5", "+.5"), 0, 9, 3, "LHA"},
        {"coordinate with a trailing point", at("1.", "0", "0"), 9},
        {"coordinate with a decimal comma", at("1,500", "0,000", "0,000"), 9},
        {"coordinate with an exponent", at("1.5e0", "0", "0"), 9},
        {"coordinate with the exponent of another language", at("1.5D0", "0", "0"), 9},
        {"coordinate in base 16", at("0x10", "0", "0"), 9},
        {"coordinate that is no number", at("nan", "0", "0"), 9},
        {"coordinate that is infinite", at("0", "-inf", "0"), 9},
        {"coordinate of asterisks", at("0", "0", "********"), 9},
        {"coordinate of blanks", at("0", "0", ""), 9},
        {"coordinate of a sign", at("-", "0", "0"), 9},
        {"coordinate with a blank inside", at("1. 500", "0", "0"), 9},
        {"coordinate of minus zero", at("-0.000", "-0", "-.0"), 0, 9, 3, "LHA"},
        {"corners at the ends of the format",
         at("9999.999", "9999.999", "9999.999") +
             sAtomLine{.chain = 'D', .x = "-9999.99", .y = "-9999.99", .z = "-9999.99"}.line(),
         0, 10, 4, "LHAD"},
        {"corners at the ends of the columns",
         at("99999999", "99999999", "99999999") +
             sAtomLine{.chain = 'D', .x = "-9999999", .y = "-9999999", .z = "-9999999"}.line(),
         0, 10, 4, "LHAD"},
        {"one atom at the end of the columns, flat", at("99999999", "0", "0"), 0, 9, 3, "LHA"},
        {"one atom at the end of the columns, high", at("0", "0", "99999999"), 0, 9, 3, "LHA"},
    };
}

tOddInputs textsAndEncodings() {
    const std::string table = "data_1ABC\n_entry.id 1ABC\nloop_\n_atom_site.group_PDB\n"
                              "_atom_site.Cartn_x\n";
    return {
        {"UTF-8 in a name", withAtom({.name = "C\xCE\xB1"}), 0, 9, 3, "LHA", "ALA_C\xCE\xB1 "},
        {"UTF-8 cut in two by the column", withAtom({.name = "CAA\xCE"}), 0, 9, 3, "LHA",
         "ALA_CAA\xCE "},
        {"Latin-1 in names", withAtom({.name = "C\xE4", .residue = "\xDC\xDF"}), 0, 9, 3, "LHA",
         "\xDC\xDF_C\xE4 ", true, "",
         "yellow: Not analysed in odd.pdb: 1 residue of no known type (\xEF\xBF\xBD\xEF\xBF\xBD). "
         "See preparation."},
        {"Latin-1 as chain id", withAtom({.chain = '\xE9'}), 0, 9, 3, "LH\xE9", "", true},
        {"UTF-16", utf16(glycines())},
        {"byte order mark before the first atom", "\xEF\xBB\xBF" + glycines(), 0, 7, 2, "LH"},
        {"byte order mark before HEADER", "\xEF\xBB\xBF" + header(66), 0, 8, 2, "LH"},
        {"markup in names",
         withAtom({.name = "<&>", .residue = "\"'<", .chain = '&', .number = "<!-- "}), 0, 9, 3,
         "LH&", "\"'<_<&> ", true, "",
         "yellow: Not analysed in odd.pdb: 1 residue of no known type (\"'<). See preparation."},
        {"end of a CDATA section in names", withAtom({.name = "]]>", .residue = "]]>"}), 0, 9, 3,
         "LHA", "]]>_]]> ", true, "",
         "yellow: Not analysed in odd.pdb: 1 residue of no known type (]]>). See preparation."},
        {"control characters in names",
         withAtom({.name = "\x1B[1", .residue = "\x01\x7F\b", .chain = '\x0B'}), 0, 9, 3, "LH\x0B",
         "\x01\x7F\b_\x1B[1 ", true, "",
         "yellow: Not analysed in odd.pdb: 1 residue of no known type (\x01\x7F\b). See "
         "preparation."},
        {"bar, the separator of tables, in names",
         withAtom({.name = "|", .residue = "|||", .chain = '|', .number = "|"}), 0, 9, 3, "LH|",
         "|||_| ", false, "",
         "yellow: Not analysed in odd.pdb: 1 residue of no known type (|||). See preparation."},
        {"blank names", withAtom({.name = "", .residue = ""}), 0, 9, 3, "LHA", "_ ", false, "",
         "yellow: Not analysed in odd.pdb: 1 residue of no known type. See preparation."},
        {"name that is itself a key", withAtom({.name = "Y_N", .residue = "GL"}), 0, 9, 3, "LHA",
         "GL_Y_N ", false, "",
         "yellow: Not analysed in odd.pdb: 1 residue of no known type (GL). See preparation."},
        {"gzip",
         "\x1F\x8B\x08\0\0\0\0\0\0\x03\x73\x0C\xF1\xF7\x55\x30\x54\xF0\x53\x70\xE4\x02\0\x9A\xE6"s,
         0, 0, 0, "", "", false, "Could not read PDB file %: The compressed data breaks off"},
        {"mmCIF", table + "ATOM 1 N N . GLY A 1 1 ? 0.000 0.000 0.000 1.00 10.00 ? 1 GLY A N 1\n",
         0, 0, 0, "", "", false,
         "Could not use PDB file %: Not mmCIF: a loop whose values do not fill its last row in "
         "line 6"},
        {"HTML",
         "<!DOCTYPE html>\n<html><head><title>404</title></head><body>Not found</body></html>\n"},
        {"bytes of every value",
         [] {
             std::string bytes;
             for (int i = 0; i < 64 * 256; ++i) {
                 bytes += static_cast<char>(i % 256);
             }
             return bytes;
         }()},
    };
}

/// `count` atoms of chains A and B, ten to a residue, each placed by a function of its number.
template <typename Place>
std::string atoms(std::size_t count, Place place) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        const auto [x, y, z] = place(i);
        text += sAtomLine{.name = i % 10 == 0   ? "CA"
                                  : i % 10 == 1 ? "N"
                                                : "O",
                          .residue = "GLY",
                          .chain = i < count / 2 ? 'A' : 'B',
                          .number = std::to_string(i / 10),
                          .x = x,
                          .y = y,
                          .z = z}
                    .line();
    }
    return text;
}

/// Every atom has a name of its own that no table knows.
sOddInput unknownNames(std::size_t count) {
    sOddInput input{"thousands of names without a radius", {}, 0, count, count / 10, "A"};
    for (std::size_t i = 0; i < count; ++i) {
        const std::string name = std::to_string(1000 + i);
        input.bytes += sAtomLine{.name = name,
                                 .residue = "UNK",
                                 .number = std::to_string(i / 10),
                                 .x = std::to_string(i)}
                           .line();
        input.unknown += "UNK_" + name + ' ';
    }
    input.told =
        "yellow: Not analysed in odd.pdb: 300 residues of no known type (UNK). See preparation.";
    return input;
}

tOddInputs shapes() {
    using tPlace = std::array<std::string, 3>;
    const auto onePoint = [](std::size_t) { return tPlace{"1.000", "2.000", "3.000"}; };
    const auto alongX = [](std::size_t i) { return tPlace{std::to_string(i), "0", "0"}; };
    const auto alongZ = [](std::size_t i) { return tPlace{"0", "0", std::to_string(i)}; };
    const auto lattice = [](std::size_t i) {
        return tPlace{std::to_string(i % 5 * 2), std::to_string(i / 5 % 5 * 2),
                      std::to_string(i / 25 * 2)};
    };
    const auto pairs = [](std::size_t i) {
        return tPlace{std::to_string(i / 2 * 3), i % 2 == 0 ? "0" : "0.001", "0"};
    };
    const auto farApart = [](std::size_t i) {
        return tPlace{std::to_string(i * 99'999), std::to_string(i * 77'777), "0"};
    };
    return {
        {"one atom", sAtomLine{}.line(), 0, 1, 1, "A"},
        {"CA atoms alone",
         sAtomLine{.number = "1"}.line() + sAtomLine{.number = "2", .x = "3.800"}.line() +
             sAtomLine{.chain = 'B', .number = "1", .y = "3.800"}.line(),
         0, 3, 3, "AB"},
        {"a chain of one atom beside a chain", withAtom({.x = "1.000"}), 0, 9, 3, "LHA"},
        {"two atoms at one point", sAtomLine{}.line() + sAtomLine{.chain = 'B'}.line(), 0, 2, 2,
         "AB"},
        {"300 atoms at one point", atoms(300, onePoint), 0, 300, 30, "AB"},
        {"100 atoms on a line along x", atoms(100, alongX), 0, 100, 10, "AB"},
        {"100 atoms on a line along z", atoms(100, alongZ), 0, 100, 10, "AB"},
        {"250 atoms on a lattice", atoms(250, lattice), 0, 250, 26, "AB"},
        {.name = "pairs a thousandth apart",
         .bytes = atoms(100, pairs),
         .atoms = 100,
         .residues = 10,
         .chains = "AB",
         .isDense = true},
        unknownNames(3000),
        {"1000 atoms so far apart that none has a neighbour", atoms(1000, farApart), 0, 1000, 100,
         "AB"},
    };
}

/// A number from 0 up to the given end, the same with every standard library.
double upTo(double end, std::mt19937& generator) {
    return end * (static_cast<double>(generator()) / 4294967296.0);
}

} // namespace

std::string utf16(const std::string& text) {
    std::string bytes = "\xFF\xFE";
    for (const char c : text) {
        bytes += c;
        bytes += '\0';
    }
    return bytes;
}

std::vector<sOddInput> oddInputs() {
    tOddInputs all;
    for (tOddInputs (*group)() : {lineEnds, recordsOfAFile, chainsAndNumbers, coordinates,
                                  textsAndEncodings, shapes, oddMmcifTexts, oddCompressedTexts}) {
        for (sOddInput& input : group()) {
            all.push_back(std::move(input));
        }
    }
    return all;
}

std::vector<std::string> chainIdsOf(const sOddInput& input) {
    std::vector<std::string> ids;
    if (input.chains.find('\t') == std::string::npos) {
        for (const char id : input.chains) {
            ids.emplace_back(1, id);
        }
        return ids;
    }
    std::istringstream in(input.chains);
    for (std::string id; std::getline(in, id, '\t');) {
        ids.push_back(id);
    }
    return ids;
}

void writeCloud(std::ostream& out, std::size_t residues, double atomVolume) {
    constexpr std::array<const char*, 10> names{"N",   "CA",  "C",   "O",   "CB",
                                                "CG1", "CG2", "OG1", "CD1", "OXT"};
    const double edge = std::cbrt(static_cast<double>(residues * names.size()) * atomVolume);
    std::mt19937 generator(1);
    for (std::size_t residue = 0; residue < residues; ++residue) {
        for (const char* name : names) {
            const double x = upTo(edge, generator);
            const double y = upTo(edge, generator);
            const double z = upTo(edge, generator);
            out << sAtomLine{.serial = "*****",
                             .name = name,
                             .residue = "THR",
                             .chain = residue < residues / 2 ? 'A' : 'B',
                             .number = std::to_string(residue % 10'000),
                             .x = coordinateText(x),
                             .y = coordinateText(y),
                             .z = coordinateText(z)}
                       .line();
        }
    }
}

} // namespace kelmo
