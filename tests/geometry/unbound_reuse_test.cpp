// Values of the chains alone after those of the complex: what is taken over from the complex must
// be the same bits as what is computed anew.
#include "model/pdb_peptide.h"
#include "tests/geometry/atom_clouds.h"
#include "tests/support/random_structure.h"
#include "tests/support/shipped_inputs.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kelmo {

namespace {

using tValues = std::vector<double>;

tValues valuesOf(const cPdbPeptide& peptide) {
    tValues values;
    for (const cResidueAtom& atom : peptide.atoms) {
        values.insert(values.end(), {atom.asa, atom.depthIndex, atom.protrusionIndex});
    }
    for (const cChainResidue& residue : peptide.residues) {
        values.insert(values.end(), {residue.totalAsa, residue.polarAsa, residue.sideChainAsa,
                                     residue.averageDepthIndex, residue.maxDepthIndex,
                                     residue.depthIndexDeviation, residue.averageProtrusionIndex,
                                     residue.minProtrusionIndex});
    }
    for (const cProteinChain& chain : peptide.chains) {
        values.insert(values.end(), {chain.totalAsa, chain.backboneAsa, chain.nonPolarAsa});
    }
    return values;
}

struct sParameters {
    double probeRadius = 1.4;
    double zSlice = 0.25;
    eAsaForm form = eAsaForm::classic;
};

void setBound(cPdbPeptide& peptide, const sParameters& by) {
    peptide.setAccessibleSurfaceArea(by.probeRadius, by.zSlice, by.form);
    peptide.setDepthIndex();
    peptide.setProtrusionIndex(10.0, 20.1);
}

void setUnbound(cPdbPeptide& peptide, const sParameters& by) {
    peptide.setAccessibleSurfaceAreaUnbound(by.probeRadius, by.zSlice, by.form);
    peptide.setDepthIndexUnbound();
    peptide.setProtrusionIndexUnbound(10.0, 20.1);
}

/// Chain by chain, with nothing taken over but what a chain without any surface leaves as it was.
void setAnew(cPdbPeptide& peptide, const sParameters& by) {
    for (cProteinChain& chain : peptide.chains) {
        chain.setAccessibleSurfaceArea(by.probeRadius, by.zSlice, by.form);
        chain.setDepthIndex();
        chain.setProtrusionIndex(10.0, 20.1);
    }
}

/// Compares not-a-numbers as well, which statistics of few atoms may hold.
void expectSameBits(const tValues& actual, const tValues& expected, const std::string& what) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        ASSERT_TRUE(actual[i] == expected[i] ||
                    (actual[i] != actual[i] && expected[i] != expected[i]))
            << what << " value " << i << ": " << actual[i] << " instead of " << expected[i];
    }
}

void expectReuseIsRight(const cPdbPeptide& peptide, const std::string& what) {
    for (const eAsaForm form : {eAsaForm::classic, eAsaForm::complete}) {
        for (const double probeRadius : {1.4, 0.0, 2.0, 1e-7}) {
            for (const double zSlice : {0.25, 0.9}) {
                const sParameters by{probeRadius, zSlice, form};
                cPdbPeptide fresh(peptide);
                setBound(fresh, by);
                setAnew(fresh, by);
                cPdbPeptide reused(peptide);
                setBound(reused, by);
                setUnbound(reused, by);
                expectSameBits(valuesOf(reused), valuesOf(fresh),
                               what + ", probe " + std::to_string(probeRadius) + ", slice " +
                                   std::to_string(zSlice));
            }
        }
    }
}

/// Atoms of a cloud in residues of their own, dealt out to chains half by half.
cPdbPeptide complexOf(tAtoms atoms, unsigned chains) {
    cPdbPeptide peptide;
    const auto count = static_cast<unsigned>(atoms.size());
    peptide.atoms = std::move(atoms);
    for (unsigned i = 0; i < count; ++i) {
        peptide.residues.emplace_back("ALA", std::to_string(i), nullptr, 1U,
                                      eResidueType::aminoAcid);
    }
    for (unsigned c = 0; c < chains; ++c) {
        const unsigned first = count * c / chains;
        const unsigned size = count * (c + 1) / chains - first;
        peptide.chains.emplace_back("", std::string(1, static_cast<char>('A' + c)),
                                    &peptide.residues[first], size, &peptide.atoms[first], size);
    }
    peptide.rebuildLinks();
    setMinMaxPoints(peptide.atoms.data(), count, &peptide.maxPoint, &peptide.minPoint);
    return peptide;
}

TEST(UnboundAfterBound, IsTheSameOfSamples) {
    for (const std::string& code : sampleCodes()) {
        expectReuseIsRight(samplePeptide(code), code);
    }
}

TEST(UnboundAfterBound, IsTheSameOfRandomStructures) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        const reference::sRandomStructureOptions options = reference::randomStructureOptions(seed);
        const sReading reading =
            readPdb(reference::randomStructureText(seed, options), reference::sampleRadii());
        ASSERT_EQ(reading.result, 0) << seed;
        expectReuseIsRight(reading.peptide, "seed " + std::to_string(seed));
        if (HasFatalFailure()) {
            return;
        }
    }
}

// Chains that run through each other, with radii beyond those that neighbour queries allow for.
TEST(UnboundAfterBound, IsTheSameOfClouds) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        const std::vector<double> radii{0.0, 1.4, 1.75, 2.0, 3.5, -1.4, -2.0};
        const tAtoms atoms = randomCloud(seed, 120, 6.0 + seed % 30, radii);
        for (const unsigned chains : {1U, 2U, 5U}) {
            expectReuseIsRight(complexOf(atoms, chains), "cloud " + std::to_string(seed));
            if (HasFatalFailure()) {
                return;
            }
        }
    }
}

constexpr double foreign = 12345.0;

/// How many atoms keep a foreign area, put there after the complex, when the chains alone follow.
std::size_t keptAreas(cPdbPeptide peptide, const sParameters& by, const sParameters& afterwards) {
    setBound(peptide, by);
    for (cResidueAtom& atom : peptide.atoms) {
        atom.asa = foreign;
    }
    peptide.setAccessibleSurfaceAreaUnbound(afterwards.probeRadius, afterwards.zSlice,
                                            afterwards.form);
    std::size_t kept = 0;
    for (const cResidueAtom& atom : peptide.atoms) {
        kept += atom.asa == foreign ? 1U : 0U;
    }
    return kept;
}

TEST(UnboundAfterBound, ComputesTheAreasOfFewAtoms) {
    for (const eAsaForm form : {eAsaForm::classic, eAsaForm::complete}) {
        const sParameters by{1.4, 0.25, form};
        const cPdbPeptide ubiquitin = samplePeptide("1ubq");
        EXPECT_EQ(keptAreas(ubiquitin, by, by), ubiquitin.atoms.size()) << "the only chain";
        const cPdbPeptide haemoglobin = samplePeptide("2hhb");
        const std::size_t kept = keptAreas(haemoglobin, by, by);
        EXPECT_GT(kept, haemoglobin.atoms.size() / 2);
        EXPECT_LT(kept, haemoglobin.atoms.size());
    }
}

TEST(UnboundAfterBound, ByOtherParametersIsComputedAnew) {
    const cPdbPeptide ubiquitin = samplePeptide("1ubq");
    const sParameters by;
    EXPECT_EQ(keptAreas(ubiquitin, by, {1.5, 0.25, eAsaForm::classic}), 0U);
    EXPECT_EQ(keptAreas(ubiquitin, by, {1.4, 0.3, eAsaForm::classic}), 0U);
    EXPECT_EQ(keptAreas(ubiquitin, by, {1.4, 0.25, eAsaForm::complete}), 0U);
    cPdbPeptide other(ubiquitin);
    setBound(other, by);
    other.setAccessibleSurfaceAreaUnbound(1.5, 0.25);
    other.setDepthIndexUnbound();
    other.setProtrusionIndexUnbound(8.0, 20.1);
    cPdbPeptide fresh(ubiquitin);
    fresh.setAccessibleSurfaceAreaUnbound(1.5, 0.25);
    fresh.setDepthIndexUnbound();
    fresh.setProtrusionIndexUnbound(8.0, 20.1);
    expectSameBits(valuesOf(other), valuesOf(fresh), "other parameters");
}

TEST(UnboundAfterBound, ChainThatWasComputedAloneIsNotTakenForTheComplex) {
    const sParameters by;
    cPdbPeptide peptide = samplePeptide("2hhb");
    cPdbPeptide fresh(peptide);
    setUnbound(fresh, by);
    setBound(peptide, by);
    peptide.chains[1].setAccessibleSurfaceArea(2.0, 0.5);
    setUnbound(peptide, by);
    expectSameBits(valuesOf(peptide), valuesOf(fresh), "after another calculation of one chain");
}

} // namespace

} // namespace kelmo
