#include "tests/fuzz/seeds.h"

#include "base/string_operation.h"
#include "tests/catalogue/odd_inputs.h"
#include "tests/fuzz/sample_cuts.h"
#include "tests/input/gzip_text.h"
#include "tests/input/mmcif_rows.h"
#include "tests/support/test_files.h"

#include <cstddef>
#include <map>

namespace kelmo {

using namespace std::string_literals;

namespace {

/// Long seeds cost time in every mutation.
constexpr std::size_t longestSeed = 32'768;

using tSeeds = std::vector<std::string>;

std::string shipped(const std::string& name) {
    return sourceText("data/" + name);
}

/// The first lines of a text.
std::string head(const std::string& text, std::size_t lines) {
    std::size_t end = 0;
    for (; lines > 0 && end < text.size(); --lines) {
        const std::size_t feed = text.find('\n', end);
        end = feed == std::string::npos ? text.size() : feed + 1;
    }
    return text.substr(0, end);
}

tSeeds structures() {
    tSeeds seeds = sampleCuts(24, 120);
    for (const sOddInput& odd : oddInputs()) {
        if (odd.bytes.size() <= longestSeed) {
            seeds.push_back(odd.bytes);
        }
    }
    return seeds;
}

/// The coordinate lines of PDB text as mmCIF.
std::string asMmcif(const std::string& pdb) {
    std::string rows;
    for (const std::string& line : linesOf(pdb)) {
        if (line.starts_with("ATOM") || line.starts_with("HETATM")) {
            const auto field = [&](std::size_t begin, std::size_t length) {
                return trimString(line.substr(begin, length));
            };
            rows += sMmcifRow{.group = field(0, 6),
                              .id = field(6, 5),
                              .element = field(12, 2),
                              .name = field(12, 4),
                              .residue = field(17, 3),
                              .part = field(21, 1),
                              .x = field(30, 8),
                              .y = field(38, 8),
                              .z = field(46, 8),
                              .number = field(22, 4),
                              .chain = field(21, 1)}
                        .line();
        }
    }
    return mmcifText(rows);
}

/// Every table that the reader knows beside that of the atoms.
constexpr const char* mmcifTables =
    "_entity.id 1\n_entity.type polymer\n"
    "loop_\n_pdbx_struct_mod_residue.auth_asym_id\n_pdbx_struct_mod_residue.auth_seq_id\n"
    "_pdbx_struct_mod_residue.auth_comp_id\n_pdbx_struct_mod_residue.parent_comp_id\n"
    "A 1 MSE MET\nA 2 5CM DC\n"
    "_pdbx_struct_assembly.id 1\n_pdbx_struct_assembly_gen.assembly_id 1\n"
    "_pdbx_struct_assembly_gen.oper_expression '(1,2)(P-Q)'\n"
    "_pdbx_struct_assembly_gen.asym_id_list A,B\n"
    "loop_\n_pdbx_struct_oper_list.id\n"
    "_pdbx_struct_oper_list.matrix[1][1]\n_pdbx_struct_oper_list.matrix[1][2]\n"
    "_pdbx_struct_oper_list.matrix[1][3]\n_pdbx_struct_oper_list.vector[1]\n"
    "_pdbx_struct_oper_list.matrix[2][1]\n_pdbx_struct_oper_list.matrix[2][2]\n"
    "_pdbx_struct_oper_list.matrix[2][3]\n_pdbx_struct_oper_list.vector[2]\n"
    "_pdbx_struct_oper_list.matrix[3][1]\n_pdbx_struct_oper_list.matrix[3][2]\n"
    "_pdbx_struct_oper_list.matrix[3][3]\n_pdbx_struct_oper_list.vector[3]\n"
    "1 1 0 0 0 0 1 0 0 0 0 1 0\n2 -1 0 0 9.5 0 -1 0 0 0 0 1 -3\n";

tSeeds mmcifTexts() {
    tSeeds seeds;
    for (const std::string& cut : sampleCuts(12, 60)) {
        seeds.push_back(asMmcif(cut));
    }
    const std::string modified =
        sMmcifRow{.group = "HETATM", .name = "SE", .residue = "MSE"}.line();
    const std::string assembly = mmcifText(modified, mmcifTables);
    seeds.push_back(assembly);
    std::string other = assembly;
    other.replace(other.find("(1,2)(P-Q)"), 10, "(1-2)(2,1)");
    seeds.push_back(other);
    for (const sOddInput& odd : oddMmcifTexts()) {
        seeds.push_back(odd.bytes);
    }
    return seeds;
}

/// What each choice means is told by the target.
tSeeds compressedTexts() {
    tSeeds seeds;
    for (const sOddInput& odd : oddCompressedTexts()) {
        seeds.push_back('r' + odd.bytes);
    }
    for (const std::string& cut : sampleCuts(4, 60)) {
        seeds.push_back('r' + gzipped(cut));
        seeds.push_back("c\x20\x10" + cut);
        seeds.push_back("d\x30\x01" + asMmcif(cut));
    }
    return seeds;
}

tSeeds parameterTables() {
    tSeeds seeds{"r", "a", "h"};
    for (const char* name : {"protor.radii", "bondi.radii"}) {
        seeds.push_back('r' + head(shipped(name), 60));
    }
    seeds.push_back('a' + shipped("ala-x-ala.asa"));
    for (const char* name : {"kyte-doolittle.hpb", "hopp-woods.hpb", "eisenberg.hpb"}) {
        seeds.push_back('h' + shipped(name));
    }
    for (const char* line :
         {"rALA_CA  1.87\n", "r\n#\nALA_CA\t1.87\nC*      1\n", "rALA_CA  1e0\n", "r_CA1234 1.\n",
          "rABCDEF  +.5\nABCDEF  -3\n",
          "rALA_CA  "
          "99999999999999999999.9\n",
          "rCA 1\r\n", "aGLY 80.1 40.2 39.9 20 60.1\n", "aGLY\t80.1\t40.2\t39.9\t20\t60.1\n",
          "aG 1 2 3 4\n", "aGLY 1 2 3 4 5 6\n", "hGLY -0.4\n", "hCA 1.0\n", "hG 1\n", "hGLY\t.5",
          "h\xC2\xA0\n"}) {
        seeds.emplace_back(line);
    }
    return seeds;
}

tSeeds contactRules() {
    const std::string table = shipped("aa_contacts.txt");
    const std::string header = "RES  IX  ATM  RES  IX  ATM  DIST.  TYPE\n";
    return {
        "",
        "header alone",
        head(table, 40),
        header + "ALA   4  CB   ARG   4  CB    4.50     1\n",
        header + "ASP   6  OD1  ASP   6  OD2   9.99     3\n",
        header + "GLY   0  ALL  GLY   0  ALL   9.99     4\n",
        header + "ALA   4  CB   ARG   4  CB    4.50  \n",
        header + "ALA   4  CB   ARG   4  CB    4.50\n",
        header + "ALA  -1  CB   ARG  99  CB   1e400  9999\n",
        header + "ALA   4  CB   ARG   4  CB     nan   -1\n\n",
        header + "\xFF\0\t  +4  CB   ARG   4  CB   0x1p3     5\n"s,
    };
}

tSeeds configurations() {
    return {
        "kanalyze_bound:\t1\nanalyze_unbound:\t1\ncalc_asa:\t1\nz_slice:\t0.25\nr_solvent:\t1.4\n"
        "write_asa:\t1\ncalc_rasa:\t1\nstandard_asa:\ttables/ala-x-ala.asa\ncalc_dpx:\t1\n"
        "calc_cx:\t1\ncx_threshold:\t10\ncx_volume:\t20.1\ncalc_hydro:\t1\n"
        "hydro_file:\ttables/kyte-doolittle.hpb\nradii_filename:\ttables/protor.radii\n"
        "write_xml:\t1\nwrite_table:\t1\noutput_dir:\treports\n",
        "vcontact_criterion:\t1\nthreshold:\t4.5\nradii_filename:\ttables/protor.radii\n"
        "write_contacts:\t1\nwrite_binding_residues:\t1\nwrite_binding_state:\t1\n"
        "write_xml:\t1\nwrite_table:\t1\noutput_dir:\treports\n",
        "vcontact_criterion:\t3\ndelta_asa:\t1\nz_slice:\t0.25\nr_solvent:\t1.4\n",
        "k# a comment\n \t\n\nz_slice: \t0.1\r\n",
        "kz_slice:\tnan\n",
        "kz_slice:\t-0\n",
        "kz_slice:\t1e-2\nz_slice:\t1\n",
        "kno_such_key:\t1\n",
        "kwrite_xml\n",
        "koutput_dir:\t\xFF\xFE\n",
        "koutput_dir:\t\0\n"s,
        "vcontact_criterion:\t0\n",
        "Kz_slice=0.05\ncalc_cx=0\nz_slice=0.06\n",
        "Vcontact_criterion=4\nthreshold=10\n=\n==\nthreshold\n",
        "okev\n--output-dir\nreports\na.pdb\n",
        "ovor\n--set\ncontact_criterion=2\n--jobs=2\n--stamp\n202001010000\n--list\nset1.fls\n",
        "okev\n--quiet\n--no-progress\n--\n-odd-name.pdb\n",
        "o--help\n",
        "okev\n--jobs\n0\n--config\n\x1B[31m\n",
        "lstructures/1ubq.pdb\nstructures/a name with blanks.pdb\r\n\n\xFF.pdb",
        "la/1ubq.pdb\nb/1ubq.pdb\nb/../b/1ubq.x.pdb\n",
    };
}

tSeeds windowFiles() {
    return {
        "k1\n1\n1\n1\n0\n0\n1\n0\n0.25\n1.4\n1\n10\n20.1\ntables/ala-x-ala.asa\n\n"
        "tables/protor.radii\n1\n1\nreports\n/home/me/tables\n/home/me/structures\n\n\n"
        "structures/1ubq.pdb\nstructures/1a0q.pdb\n",
        "k0\n1\n0\n0\n2\n-1\n1x\nx\n1e400\nnan\n\n-5\n99\n",
        "k",
        "v0\n1\n0\n0\n0.75\n4.5\n0.75\n1\n0.25\n1.4\ntables/protor.radii\n1\n1\n0\n1\n1\nreports\n"
        "/home/me/tables\n/home/me/structures\n\n\nstructures/1a0q.pdb\nstructures/2hhb.pdb\n",
        "v0\n0\n0\n0\n1e9\n-3\ninf\n0\n0\n0\n",
        "v1\n1\n1\n1\n",
        "v0\n1\n0\n0\n99999999999999999999\n0x10\n1.23456789\n,\n.\n-\n\xFF\xFE\n1\n",
        "lstructures/1ubq.pdb\nstructures/a name with blanks.pdb\n\n\xFF.pdb\n",
        "l\r\n\0\n\xED\xB2\x80\n\xF0\x9F\x98\x80"s,
        "l",
    };
}

tSeeds analyses() {
    tSeeds seeds = structures();
    const std::string complex = interfaceCut("1a0q", 5.0);
    const std::string nucleotides = [] {
        std::string text = interfaceCut("2hhb", 6.0);
        for (const char* name : {"VAL", "LEU", "HIS"}) {
            for (auto at = text.find(name); at != std::string::npos; at = text.find(name, at)) {
                text.replace(at, 3, "  G");
            }
        }
        return text;
    }();
    seeds.push_back(nucleotides);
    seeds.push_back(complex + "#radii\n" + head(shipped("bondi.radii"), 40));
    seeds.push_back(complex + "#radii\nALA_CA  0\nTYR_CB  -1.4\nTYR_CG  10\nSER_N   0.001\n");
    seeds.push_back(complex + "#areas\n" + shipped("ala-x-ala.asa"));
    seeds.push_back(complex + "#scale\n" + shipped("kyte-doolittle.hpb"));
    seeds.push_back(complex + "#rules\n" + head(shipped("aa_contacts.txt"), 60));
    return seeds;
}

} // namespace

std::vector<std::string> seedsOf(std::string_view target) {
    static const std::map<std::string_view, tSeeds (*)()> makers{
        {"pdb_reader", structures},      {"parameter_tables", parameterTables},
        {"contact_rules", contactRules}, {"configuration", configurations},
        {"window_files", windowFiles},   {"analysis", analyses},
        {"mmcif_reader", mmcifTexts},    {"gzip", compressedTexts}};
    const auto maker = makers.find(target);
    return maker == makers.end() ? tSeeds() : maker->second();
}

} // namespace kelmo
