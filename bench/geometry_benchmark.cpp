// The geometric calculations on the sample entries, from the grid up to whole structures; time per
// atom.
#include "geometry/atom_grid.h"
#include "geometry/atom_space_calculations.h"
#include "geometry/nearest_distance.h"
#include "model/pdb_peptide.h"
#include "tests/geometry/atom_clouds.h"
#include "tests/support/shipped_inputs.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

namespace kelmo {

namespace {

constexpr double probeRadius = 1.4;       // Å
constexpr double zSlice = 0.25;           // Å
constexpr double protrusionRadius = 10.0; // Å
constexpr double atomVolume = 20.1;       // Å³

/// The sample that a benchmark's argument stands for, from the smallest to the largest.
cPdbPeptide sampleOf(const benchmark::State& state) {
    return samplePeptide(sampleCodes()[static_cast<std::size_t>(state.range(0))]);
}

void countAtoms(benchmark::State& state, std::size_t atoms) {
    using cCounter = benchmark::Counter;
    state.counters["perAtom"] = cCounter(static_cast<double>(atoms),
                                         cCounter::kIsIterationInvariantRate | cCounter::kInvert);
    state.SetLabel(sampleCodes()[static_cast<std::size_t>(state.range(0))]);
}

cAtomGrid gridOf(const cPdbPeptide& peptide) {
    return {peptide.atoms.data(), static_cast<unsigned>(peptide.atoms.size()), peptide.maxPoint,
            peptide.minPoint, -1};
}

void buildGrid(benchmark::State& state) {
    const cPdbPeptide peptide = sampleOf(state);
    for (auto _ : state) {
        const cAtomGrid grid = gridOf(peptide);
        benchmark::DoNotOptimize(grid.entriesInCellOrder().data());
    }
    countAtoms(state, peptide.atoms.size());
}

void buildCentreGrid(benchmark::State& state) {
    const cPdbPeptide peptide = sampleOf(state);
    for (auto _ : state) {
        const auto count = static_cast<unsigned>(peptide.atoms.size());
        const cCentreGrid grid(peptide.atoms.data(), count, peptide.maxPoint, peptide.minPoint,
                               count);
        benchmark::DoNotOptimize(grid.entriesInCellOrder().data());
    }
    countAtoms(state, peptide.atoms.size());
}

void copyNeighboursByRadius(benchmark::State& state) {
    const cPdbPeptide peptide = sampleOf(state);
    const cAtomGrid grid = gridOf(peptide);
    tAtoms neighbours(peptide.atoms.size());
    for (auto _ : state) {
        for (const cResidueAtom& atom : peptide.atoms) {
            benchmark::DoNotOptimize(
                grid.getNeighboursInRangeByRadius(atom, 2.0 * probeRadius, 2.0, neighbours.data()));
        }
    }
    countAtoms(state, peptide.atoms.size());
}

void visitNeighboursByCenter(benchmark::State& state) {
    const cPdbPeptide peptide = sampleOf(state);
    const cAtomGrid grid = gridOf(peptide);
    for (auto _ : state) {
        std::size_t neighbours = 0;
        for (const cResidueAtom& atom : peptide.atoms) {
            grid.forEachInRangeByCenter(atom, 5.0, [&](const cAtomGrid::sEntry&) { ++neighbours; });
        }
        benchmark::DoNotOptimize(neighbours);
    }
    countAtoms(state, peptide.atoms.size());
}

void findNearest(benchmark::State& state) {
    const cPdbPeptide peptide = sampleOf(state);
    const cAtomGrid grid = gridOf(peptide);
    for (auto _ : state) {
        double distance = 0.0;
        for (const cResidueAtom& atom : peptide.atoms) {
            benchmark::DoNotOptimize(grid.nearest(atom, &distance));
        }
    }
    countAtoms(state, peptide.atoms.size());
}

/// The plain form that the fast one is held against.
void plainSurface(benchmark::State& state) {
    cPdbPeptide peptide = sampleOf(state);
    const cAtomGrid grid = gridOf(peptide);
    tAtoms neighbours(peptide.atoms.size());
    for (auto _ : state) {
        for (cResidueAtom& atom : peptide.atoms) {
            const unsigned count =
                grid.getNeighboursInRangeByRadius(atom, 2.0 * probeRadius, 2.0, neighbours.data());
            atom.setFreeSurface(neighbours.data(), count, zSlice, probeRadius);
        }
    }
    countAtoms(state, peptide.atoms.size());
}

/// The second argument is the thickness of the slices in hundredths of an ångström.
void fastSurface(benchmark::State& state) {
    cPdbPeptide peptide = sampleOf(state);
    const double thickness = static_cast<double>(state.range(1)) / 100.0;
    for (auto _ : state) {
        calculateAtomASA(peptide.atoms.data(), static_cast<unsigned>(peptide.atoms.size()),
                         peptide.maxPoint, peptide.minPoint, probeRadius, thickness);
    }
    countAtoms(state, peptide.atoms.size());
}

/// A crowd: coordinates in nanometres that are taken for ångström.
void fastSurfaceOfNanometres(benchmark::State& state) {
    tAtoms atoms;
    for (const cResidueAtom& atom : sampleOf(state).atoms) {
        atoms.push_back(atomAt(0.1 * atom.x, 0.1 * atom.y, 0.1 * atom.z, atom.radius));
    }
    for (auto _ : state) {
        setAreas(atoms, probeRadius, zSlice);
    }
    countAtoms(state, atoms.size());
}

void meanOfNearestDistances(benchmark::State& state) {
    const cPdbPeptide peptide = sampleOf(state);
    for (auto _ : state) {
        benchmark::DoNotOptimize(meanNearestDistance(peptide));
    }
    countAtoms(state, peptide.atoms.size());
}

void depthIndex(benchmark::State& state) {
    cPdbPeptide peptide = sampleOf(state);
    setAreas(peptide.atoms, probeRadius, zSlice);
    for (auto _ : state) {
        calculateAtomDepthIndex(peptide.atoms.data(), static_cast<unsigned>(peptide.atoms.size()));
    }
    countAtoms(state, peptide.atoms.size());
}

void protrusionIndex(benchmark::State& state) {
    cPdbPeptide peptide = sampleOf(state);
    for (auto _ : state) {
        calculateAtomProtrusionIndex(peptide.atoms.data(),
                                     static_cast<unsigned>(peptide.atoms.size()), peptide.maxPoint,
                                     peptide.minPoint, protrusionRadius, atomVolume);
    }
    countAtoms(state, peptide.atoms.size());
}

void boundAreas(benchmark::State& state) {
    cPdbPeptide peptide = sampleOf(state);
    for (auto _ : state) {
        peptide.setAccessibleSurfaceArea(probeRadius, zSlice);
    }
    countAtoms(state, peptide.atoms.size());
}

/// Chain by chain, so that areas which are still current are not what is measured.
void unboundAreas(benchmark::State& state) {
    cPdbPeptide peptide = sampleOf(state);
    for (auto _ : state) {
        for (cProteinChain& chain : peptide.chains) {
            chain.setAccessibleSurfaceArea(probeRadius, zSlice);
        }
    }
    countAtoms(state, peptide.atoms.size());
}

void currentUnboundAreas(benchmark::State& state) {
    cPdbPeptide peptide = sampleOf(state);
    for (auto _ : state) {
        peptide.setAccessibleSurfaceAreaUnbound(probeRadius, zSlice);
    }
    countAtoms(state, peptide.atoms.size());
}

void residueStatistics(benchmark::State& state) {
    cPdbPeptide peptide = sampleOf(state);
    for (auto _ : state) {
        for (cChainResidue& residue : peptide.residues) {
            residue.setAsa();
            residue.setDepthIndex();
            residue.setProtrusionIndex();
        }
    }
    countAtoms(state, peptide.atoms.size());
}

void everySample(benchmark::internal::Benchmark* registered) {
    registered->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(buildGrid)->Apply(everySample);
BENCHMARK(buildCentreGrid)->Apply(everySample);
BENCHMARK(copyNeighboursByRadius)->Apply(everySample);
BENCHMARK(visitNeighboursByCenter)->Apply(everySample);
BENCHMARK(findNearest)->Apply(everySample);
BENCHMARK(plainSurface)->Apply(everySample);
BENCHMARK(fastSurface)
    ->ArgsProduct({{0, 1, 2}, {5, 10, 25, 100}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(fastSurfaceOfNanometres)->Apply(everySample);
BENCHMARK(meanOfNearestDistances)->Apply(everySample);
BENCHMARK(depthIndex)->Apply(everySample);
BENCHMARK(protrusionIndex)->Apply(everySample);
BENCHMARK(boundAreas)->Apply(everySample);
BENCHMARK(unboundAreas)->Apply(everySample);
BENCHMARK(currentUnboundAreas)->Apply(everySample);
BENCHMARK(residueStatistics)->Apply(everySample);

} // namespace

} // namespace kelmo
