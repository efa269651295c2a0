// The order of chains and their number: what may depend on them and what may not.
#include "model/pdb_peptide.h"
#include "run/crunkev_linux.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace kelmo {

namespace {

constexpr double probeRadius = 1.4;
constexpr double zSlice = 0.25;

/// All values of a residue that the reports show, by chain and number.
using cResidueValues = std::map<std::string, std::vector<double>>;

cResidueValues residueValues(const cPdbPeptide& peptide) {
    cResidueValues values;
    for (const cProteinChain& chain : peptide.chains) {
        for (unsigned i = 0; i < chain.residueCount; ++i) {
            const cChainResidue& residue = chain.residues[i];
            values[chain.chainId + residue.residueNumber] = {residue.totalAsa,
                                                             residue.sideChainAsa,
                                                             residue.backboneAsa,
                                                             residue.polarAsa,
                                                             residue.nonPolarAsa,
                                                             residue.averageDepthIndex,
                                                             residue.depthIndexDeviation,
                                                             residue.maxDepthIndex,
                                                             residue.averageProtrusionIndex,
                                                             residue.protrusionIndexDeviation,
                                                             residue.maxProtrusionIndex};
        }
    }
    return values;
}

void computeBound(cPdbPeptide& peptide) {
    peptide.setAccessibleSurfaceArea(probeRadius, zSlice);
    peptide.setDepthIndex();
    peptide.setProtrusionIndex(10.0, 20.1);
}

void computeUnbound(cPdbPeptide& peptide) {
    peptide.setAccessibleSurfaceAreaUnbound(probeRadius, zSlice);
    for (cProteinChain& chain : peptide.chains) {
        chain.setDepthIndex();
        chain.setProtrusionIndex(10.0, 20.1);
    }
}

/// The first residues of ubiquitin, `copies` times 40 Å apart, every copy under the next letter, so
/// that ids come back.
std::string farApartCopies(int copies, std::size_t atomsPerCopy) {
    constexpr std::string_view ids = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const std::vector<std::string> lines = atomLinesOf(sampleText("1ubq"));
    std::ostringstream text;
    for (int copy = 0; copy < copies; ++copy) {
        for (std::size_t i = 0; i < atomsPerCopy; ++i) {
            std::string line = lines.at(i).substr(0, 54);
            line[21] = ids[static_cast<std::size_t>(copy) % ids.size()];
            const tPosition at = positionIn(line);
            line = withPosition(line, {at[0] + 40.0 * (copy % 8), at[1] + 40.0 * (copy / 8 % 8),
                                       at[2] + 40.0 * (copy / 64)});
            text << line << '\n';
        }
    }
    return text.str();
}

} // namespace

TEST(ManyChains, AnotherOrderOfChainsLeavesEveryResidueUnchanged) {
    std::map<char, std::string> chainText;
    std::string inOrder;
    for (const std::string& line : atomLinesOf(sampleText("2hhb"))) {
        chainText[line[21]] += line + '\n';
        inOrder += line + '\n';
    }
    ASSERT_EQ(chainText.size(), 4U);
    std::string reversed;
    for (auto chain = chainText.rbegin(); chain != chainText.rend(); ++chain) {
        reversed += chain->second;
    }
    cPdbPeptide one = structureOf(inOrder, shippedTables().radii);
    cPdbPeptide other = structureOf(reversed, shippedTables().radii);
    ASSERT_EQ(one.chains.front().chainId, "A");
    ASSERT_EQ(other.chains.front().chainId, "D");

    computeBound(one);
    computeBound(other);
    EXPECT_EQ(residueValues(one), residueValues(other));
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(one.chains[i].totalAsa, other.chains[3 - i].totalAsa);
    }
    // Only the sum over all residues is taken in another order.
    EXPECT_NEAR(one.totalAsa, other.totalAsa, 1e-8);

    computeUnbound(one);
    computeUnbound(other);
    EXPECT_EQ(residueValues(one), residueValues(other));
}

TEST(ManyChains, FourHundredChainsAreFourHundredTimesOneChain) {
    constexpr int copies = 400;
    constexpr std::size_t atomsPerCopy = 40;
    cPdbPeptide single = structureOf(farApartCopies(1, atomsPerCopy), shippedTables().radii);
    cPdbPeptide many = structureOf(farApartCopies(copies, atomsPerCopy), shippedTables().radii);
    ASSERT_EQ(single.chains.size(), 1U);
    // Ids come back after Z; each return opens a chain of its own.
    ASSERT_EQ(many.chains.size(), static_cast<std::size_t>(copies));
    EXPECT_EQ(many.chains[26].chainId, "A");

    computeBound(many);
    computeUnbound(single);
    const double one = single.chains[0].totalAsa;
    ASSERT_GT(one, 100.0);
    EXPECT_NEAR(many.totalAsa, copies * one, 0.002 * copies * one);
    for (const cProteinChain& chain : many.chains) {
        ASSERT_NEAR(chain.totalAsa, one, 0.002 * one);
    }

    const double bound = many.chains[399].totalAsa;
    computeUnbound(many);
    EXPECT_EQ(many.totalAsa, 0.0);
    EXPECT_NEAR(many.chains[399].totalAsa, bound, 0.002 * bound);
}

} // namespace kelmo
