// Total areas of the samples against FreeSASA's, an independent implementation of the same
// definition.
#include "contacts/interfaces.h"
#include "model/pdb_peptide.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

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

/// The ATOM lines of the sample with our radius of each atom in the occupancy column, from which
/// FreeSASA takes its radii; of some chains alone, unless their ids are empty.
void writeWithRadii(const std::string& name, const cPdbPeptide& peptide, const std::string& path,
                    const std::string& chains = {}) {
    std::ofstream out(path);
    std::size_t atom = 0;
    for (const std::string& line : atomLinesOf(sampleText(name))) {
        if (!chains.empty() && chains.find(line[21]) == std::string::npos) {
            ++atom;
            continue;
        }
        std::ostringstream radius;
        radius << std::fixed << std::setprecision(2) << std::setw(6)
               << peptide.atoms.at(atom++).radius;
        out << line.substr(0, 54) << radius.str() << "  0.00\n";
    }
    out << "END\n";
    ASSERT_EQ(atom, peptide.atoms.size());
}

/// The areas that FreeSASA finds with so many slices an atom, Å². Empty if it fails.
struct sTheirAreas {
    double total = 0.0;
    std::vector<double> residues; ///< in the order of the file
};

sTheirAreas areasByFreeSasa(const std::string& path, int slices) {
    const std::string command = std::string(FREESASA_PROGRAM) +
                                " --lee-richards --resolution=" + std::to_string(slices) +
                                " --probe-radius=1.4 --radius-from-occupancy --no-warnings"
                                " --format=log --format=seq '" +
                                path + "'";
    FILE* output = popen(command.c_str(), "r");
    if (output == nullptr) {
        return {};
    }
    sTheirAreas areas;
    for (char line[256]; std::fgets(line, sizeof line, output) != nullptr;) {
        std::sscanf(line, "Total : %lf", &areas.total);
        const char* const colon = std::strchr(line, ':');
        if (std::strncmp(line, "SEQ ", 4) == 0 && colon != nullptr) {
            areas.residues.push_back(std::atof(colon + 1));
        }
    }
    return pclose(output) == 0 ? areas : sTheirAreas{};
}

/// The same of a sample with our radii.
sTheirAreas areasByFreeSasa(const std::string& name, const cPdbPeptide& peptide, int slices,
                            const std::string& chains = {}) {
    const std::string path =
        (std::filesystem::temp_directory_path() / ("kelmo-freesasa-" + name + chains + ".pdb"))
            .string();
    writeWithRadii(name, peptide, path, chains);
    const sTheirAreas areas = areasByFreeSasa(path, slices);
    std::filesystem::remove(path);
    return areas;
}

double sumOfAtoms(const cPdbPeptide& peptide) {
    double total = 0.0;
    for (const cResidueAtom& atom : peptide.atoms) {
        total += atom.asa;
    }
    return total;
}

class FreeSasa : public testing::TestWithParam<sEntry> {};

} // namespace

TEST_P(FreeSasa, TotalAreaAgreesWithinOnePercent) {
    const sEntry entry = GetParam();
    cPdbPeptide peptide = samplePeptide(entry.name);
    peptide.setAccessibleSurfaceArea(probeRadius, zSlice);
    const double total = sumOfAtoms(peptide);
    const double theirs = areasByFreeSasa(entry.name, peptide, 27).total;
    RecordProperty("kelmo", std::to_string(total));
    RecordProperty("freesasa", std::to_string(theirs));
    std::printf("%s: Kelmo %.1f, FreeSASA %.1f A^2 (%+.3f %%)\n", entry.name, total, theirs,
                100.0 * (total / theirs - 1.0));
    EXPECT_GT(theirs, entry.least);
    EXPECT_LT(theirs, entry.most);
    EXPECT_NEAR(total, theirs, 0.01 * theirs);
}

// With 1000 slices an atom FreeSASA's totals no longer move by more than 0.001 %.
TEST_P(FreeSasa, CompleteFormAgreesWithinAThousandth) {
    const sEntry entry = GetParam();
    cPdbPeptide peptide = samplePeptide(entry.name);
    const sTheirAreas theirs = areasByFreeSasa(entry.name, peptide, 1000);
    ASSERT_GT(theirs.total, entry.least);
    ASSERT_EQ(theirs.residues.size(), peptide.residues.size());
    for (const double slice : {0.25, 0.1}) {
        peptide.setAccessibleSurfaceArea(probeRadius, slice, eAsaForm::complete);
        const double total = sumOfAtoms(peptide);
        double sumOfSquares = 0.0;
        double worst = 0.0;
        for (std::size_t i = 0; i < theirs.residues.size(); ++i) {
            const double difference = peptide.residues[i].totalAsa - theirs.residues[i];
            sumOfSquares += difference * difference;
            worst = std::max(worst, std::abs(difference));
        }
        const double deviation =
            std::sqrt(sumOfSquares / static_cast<double>(theirs.residues.size()));
        std::printf("%s, slices of %.2f: Kelmo %.1f, FreeSASA %.1f A^2 (%+.3f %%); residues %.2f "
                    "A^2 rms, %.2f at most\n",
                    entry.name, slice, total, theirs.total, 100.0 * (total / theirs.total - 1.0),
                    deviation, worst);
        EXPECT_NEAR(total, theirs.total, 0.001 * theirs.total) << slice;
        EXPECT_LT(deviation, 0.4) << slice;
    }
}

// Chain pairs cut out of the entries: what both bury together is half of what the two totals lose.
TEST(FreeSasaInterfaces, BuriedAreasAgreeWithinOnePercent) {
    constexpr int slices = 1000;
    for (const char* entry : {"1a0q", "2hhb"}) {
        const cPdbPeptide peptide = samplePeptide(entry);
        const std::vector<sInterface> interfaces =
            findInterfaces(peptide, {}, {.zSlice = 0.1, .form = eAsaForm::complete});
        EXPECT_EQ(interfaces.size(), peptide.chains.size() == 2 ? 1U : 5U);
        for (const sInterface& found : interfaces) {
            const std::string first = peptide.chains[found.side1.chain].chainId;
            const std::string second = peptide.chains[found.side2.chain].chainId;
            const double theirs = areasByFreeSasa(entry, peptide, slices, first).total +
                                  areasByFreeSasa(entry, peptide, slices, second).total -
                                  areasByFreeSasa(entry, peptide, slices, first + second).total;
            const double ours = found.side1.buried.total + found.side2.buried.total;
            std::printf("%s %s %s: Kelmo %.1f, FreeSASA %.1f A^2 buried\n", entry, first.c_str(),
                        second.c_str(), ours, theirs);
            EXPECT_NEAR(ours, theirs, 0.01 * theirs);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, FreeSasa,
                         testing::Values(sEntry{"1ubq", 4500.0, 5200.0},
                                         sEntry{"1a0q", 17000.0, 20000.0},
                                         sEntry{"2hhb", 22000.0, 29000.0}),
                         [](const auto& entry) { return std::string(entry.param.name); });

} // namespace kelmo
