// Total areas of the samples against FreeSASA's, an independent implementation of the same
// definition.
#include "model/addition.h"
#include "model/pdb_peptide.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <set>
#include <sstream>
#include <string>

namespace kelmo {

namespace {

constexpr double probeRadius = 1.4;
constexpr double zSlice = 0.25;

struct sEntry {
    const char* name;
    // Areas published for these entries scatter by several percent with the choice of radii; the
    // bounds only make sure that both programs saw the whole entry.
    double least;
    double most;
};

std::string samplePath(const std::string& name) {
    return std::string(KELMO_SOURCE_DIR) + "/data/samples/" + name + ".pdb";
}

cPdbPeptide load(const std::string& name) {
    std::ifstream table(std::string(KELMO_SOURCE_DIR) + "/data/protor.radii");
    std::map<std::string, double> radii;
    EXPECT_EQ(getVdWrRadii(table, radii), 0);
    std::ifstream in(samplePath(name));
    std::set<std::string> missing;
    cPdbPeptide peptide;
    EXPECT_EQ(peptide.loadFromStream(in, radii, missing), 0);
    EXPECT_TRUE(missing.empty());
    return peptide;
}

/// The ATOM lines of the sample with our radius of each atom in the occupancy column, from which
/// FreeSASA takes its radii.
void writeWithRadii(const std::string& name, const cPdbPeptide& peptide, const std::string& path) {
    std::ifstream in(samplePath(name));
    std::ofstream out(path);
    std::size_t atom = 0;
    for (std::string line; std::getline(in, line) && line.compare(0, 3, "END") != 0;) {
        if (line.compare(0, 4, "ATOM") == 0) {
            std::ostringstream radius;
            radius << std::fixed << std::setprecision(2) << std::setw(6)
                   << peptide.atoms.at(atom++).radius;
            out << line.substr(0, 54) << radius.str() << "  0.00\n";
        }
    }
    out << "END\n";
    ASSERT_EQ(atom, peptide.atoms.size());
}

double totalByFreeSasa(const std::string& path) {
    const std::string command = std::string(FREESASA_PROGRAM) +
                                " --lee-richards --resolution=27 --probe-radius=1.4"
                                " --radius-from-occupancy --no-warnings --format=log '" +
                                path + "'";
    FILE* output = popen(command.c_str(), "r");
    if (output == nullptr) {
        return 0.0;
    }
    double total = 0.0;
    for (char line[256]; std::fgets(line, sizeof line, output) != nullptr;) {
        std::sscanf(line, "Total : %lf", &total);
    }
    return pclose(output) == 0 ? total : 0.0;
}

class FreeSasa : public testing::TestWithParam<sEntry> {};

} // namespace

TEST_P(FreeSasa, TotalAreaAgreesWithinOnePercent) {
    const sEntry entry = GetParam();
    cPdbPeptide peptide = load(entry.name);
    peptide.setAccessibleSurfaceArea(probeRadius, zSlice);
    double total = 0.0;
    for (const cResidueAtom& atom : peptide.atoms) {
        total += atom.asa;
    }
    const std::string path = (std::filesystem::temp_directory_path() /
                              ("kelmo-freesasa-" + std::string(entry.name) + ".pdb"))
                                 .string();
    writeWithRadii(entry.name, peptide, path);
    const double theirs = totalByFreeSasa(path);
    std::filesystem::remove(path);
    RecordProperty("kelmo", std::to_string(total));
    RecordProperty("freesasa", std::to_string(theirs));
    std::printf("%s: Kelmo %.1f, FreeSASA %.1f A^2 (%+.3f %%)\n", entry.name, total, theirs,
                100.0 * (total / theirs - 1.0));
    EXPECT_GT(theirs, entry.least);
    EXPECT_LT(theirs, entry.most);
    EXPECT_NEAR(total, theirs, 0.01 * theirs);
}

INSTANTIATE_TEST_SUITE_P(Samples, FreeSasa,
                         testing::Values(sEntry{"1ubq", 4500.0, 5200.0},
                                         sEntry{"1a0q", 17000.0, 20000.0},
                                         sEntry{"2hhb", 22000.0, 29000.0}),
                         [](const auto& entry) { return std::string(entry.param.name); });

} // namespace kelmo
