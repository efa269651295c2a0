// Contact search on a capsid-like assembly, against reading the assembly and computing its surface.
#include "contacts/contact_resolution.h"
#include "contacts/residue_contact.h"
#include "model/pdb_peptide.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

namespace {

constexpr double probeRadius = 1.4; // Å
constexpr double zSlice = 0.25;     // Å

// Copies of a two-chain antibody fragment, 3183 atoms each, on a shell on which neighbours
// interlock.
constexpr int standardCopyCount = 32;        // 64 chains and 101,856 atoms
constexpr double standardShellRadius = 80.0; // Å
constexpr std::string_view chainIds =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789abcdefghijklmnopqrstuvwxyz+-";

sPoint centreOf(const std::vector<std::string>& lines) {
    sPoint sum;
    for (const std::string& line : lines) {
        const auto [x, y, z] = positionIn(line);
        sum.x += x;
        sum.y += y;
        sum.z += z;
    }
    const auto count = static_cast<double>(lines.size());
    return {sum.x / count, sum.y / count, sum.z / count};
}

/// Turns a copy around the axes of the shell and moves it to its place on a spiral of equal areas.
class cPlacement {
  public:
    cPlacement(int copy, int copyCount)
        : shellRadius(standardShellRadius *
                      std::sqrt(static_cast<double>(copyCount) / standardCopyCount)) {
        const double height = 1.0 - (2.0 * copy + 1.0) / copyCount;
        const double longitude = copy * std::numbers::pi * (3.0 - std::sqrt(5.0));
        const double across = std::sqrt(1.0 - height * height);
        const double c = std::cos(longitude);
        const double s = std::sin(longitude);
        axes[0] = {c * height, s * height, -across};
        axes[1] = {-s, c, 0.0};
        axes[2] = {c * across, s * across, height};
    }

    sPoint operator()(const sPoint& p) const {
        const double outwards = p.z + shellRadius;
        return {p.x * axes[0].x + p.y * axes[1].x + outwards * axes[2].x,
                p.x * axes[0].y + p.y * axes[1].y + outwards * axes[2].y,
                p.x * axes[0].z + p.y * axes[1].z + outwards * axes[2].z};
    }

  private:
    double shellRadius;         // Å
    std::array<sPoint, 3> axes; // images of x, y and z; the last points outwards
};

std::string assemblyText(int copyCount) {
    const std::vector<std::string> lines = atomLinesOf(sampleText("1a0q"));
    const sPoint centre = centreOf(lines);
    std::string text;
    for (int copy = 0; copy < copyCount; ++copy) {
        const cPlacement place(copy, copyCount);
        for (std::string line : lines) {
            const auto [x, y, z] = positionIn(line);
            const sPoint p = place({x - centre.x, y - centre.y, z - centre.z});
            const int chain = 2 * copy + (line[21] == lines.front()[21] ? 0 : 1);
            line[21] = chainIds[static_cast<std::size_t>(chain) % chainIds.size()];
            text += withPosition(line, {p.x, p.y, p.z}) + "\n";
        }
    }
    return text;
}

const std::string& sharedAssemblyText(int copyCount) {
    static std::map<int, std::string> texts;
    std::string& text = texts[copyCount];
    if (text.empty()) {
        text = assemblyText(copyCount);
    }
    return text;
}

/// Runs `resolve` on an assembly without contacts, over and over. The argument is the number of
/// copies.
template <typename Resolve>
void measure(benchmark::State& state, Resolve resolve) {
    cPdbPeptide assembly =
        structureOf(sharedAssemblyText(static_cast<int>(state.range(0))), shippedTables().radii);
    for (auto _ : state) {
        state.PauseTiming();
        assembly.contacts = {};
        state.ResumeTiming();
        resolve(assembly);
    }
    state.counters["atoms"] = static_cast<double>(assembly.atoms.size());
    state.counters["chains"] = static_cast<double>(assembly.chains.size());
    state.counters["records"] = static_cast<double>(assembly.contacts.size());
}

void readAssembly(benchmark::State& state) {
    const std::string& text = sharedAssemblyText(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const cPdbPeptide assembly = structureOf(text, shippedTables().radii);
        benchmark::DoNotOptimize(assembly.atoms.data());
    }
}

/// Every residue is a chain of its own and touches every other: time follows the records.
void crowdedContacts(benchmark::State& state) {
    const auto residues = static_cast<int>(state.range(0));
    std::string text;
    for (int i = 0; i < residues; ++i) {
        const char chain = i % 2 == 0 ? 'A' : 'B';
        const std::string number = std::to_string(i + 1);
        text += atomLine("N", "GLY", chain, number, 0.001 * i, 0, 0);
        text += atomLine("CA", "GLY", chain, number, 0.001 * i, 1, 0);
    }
    cPdbPeptide crowd = structureOf(text, shippedTables().radii);
    std::size_t records = 0;
    for (auto _ : state) {
        const sContactList found =
            findContacts(crowd, eInteractionCriterion::maximumDistance, 12.0, 0.0, nullptr);
        records = found.contacts.size();
        benchmark::DoNotOptimize(found.contacts.data());
    }
    state.counters["records"] = static_cast<double>(records);
    state.counters["nsPerRecord"] = benchmark::Counter(
        1e-9 * static_cast<double>(records),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void maximumDistanceContacts(benchmark::State& state) {
    measure(state, [](cPdbPeptide& assembly) { assembly.resolveThresholdContacts(4.5); });
}

void prismContacts(benchmark::State& state) {
    measure(state, [](cPdbPeptide& assembly) { assembly.resolvePRISMContacts(0.5); });
}

void vordaContacts(benchmark::State& state) {
    const contactMap& rules = shippedTables().rules;
    measure(state,
            [&](cPdbPeptide& assembly) { assembly.resolveHovikKRBContacts(1.125, 6.0, rules); });
}

void boundSurface(benchmark::State& state) {
    measure(state,
            [](cPdbPeptide& assembly) { assembly.setAccessibleSurfaceArea(probeRadius, zSlice); });
}

void dovrethWithBoundSurface(benchmark::State& state) {
    measure(state, [](cPdbPeptide& assembly) {
        assembly.setAccessibleSurfaceArea(probeRadius, zSlice);
        assembly.resolveDovrethContacts(1.0, probeRadius, zSlice);
    });
}

void severalSizes(benchmark::internal::Benchmark* contactBenchmark) {
    contactBenchmark->ArgName("copies")->Arg(standardCopyCount)->Arg(4 * standardCopyCount);
    contactBenchmark->Unit(benchmark::kMillisecond)->UseRealTime();
}

void standardSize(benchmark::internal::Benchmark* surfaceBenchmark) {
    surfaceBenchmark->ArgName("copies")->Arg(standardCopyCount);
    surfaceBenchmark->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(crowdedContacts)
    ->ArgName("residues")
    ->RangeMultiplier(2)
    ->Range(250, 2000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(readAssembly)->Apply(severalSizes);
BENCHMARK(maximumDistanceContacts)->Apply(severalSizes);
BENCHMARK(prismContacts)->Apply(severalSizes);
BENCHMARK(vordaContacts)->Apply(severalSizes);
BENCHMARK(boundSurface)->Apply(standardSize);
BENCHMARK(dovrethWithBoundSurface)->Apply(standardSize);

} // namespace

} // namespace kelmo

BENCHMARK_MAIN();
