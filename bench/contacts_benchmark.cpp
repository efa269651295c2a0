// Contact search on a capsid-like assembly, against reading the assembly and computing its surface.
#include "contacts/residue_contact.h"
#include "model/addition.h"
#include "model/pdb_peptide.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <numbers>
#include <set>
#include <sstream>
#include <stdexcept>
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

std::ifstream openFile(const std::string& pathFromRoot) {
    std::ifstream in(std::string(KELMO_SOURCE_DIR) + "/" + pathFromRoot);
    if (!in) {
        throw std::runtime_error("cannot open " + pathFromRoot);
    }
    return in;
}

std::vector<std::string> sampleAtomLines() {
    std::ifstream in = openFile("data/samples/1a0q.pdb");
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("ATOM")) {
            lines.push_back(line);
        }
    }
    return lines;
}

sPoint centreOf(const std::vector<std::string>& lines) {
    sPoint sum;
    for (const std::string& line : lines) {
        sum.x += std::stod(line.substr(30, 8));
        sum.y += std::stod(line.substr(38, 8));
        sum.z += std::stod(line.substr(46, 8));
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
    const std::vector<std::string> lines = sampleAtomLines();
    const sPoint centre = centreOf(lines);
    std::string text;
    for (int copy = 0; copy < copyCount; ++copy) {
        const cPlacement place(copy, copyCount);
        for (std::string line : lines) {
            const sPoint p = place({std::stod(line.substr(30, 8)) - centre.x,
                                    std::stod(line.substr(38, 8)) - centre.y,
                                    std::stod(line.substr(46, 8)) - centre.z});
            const int chain = 2 * copy + (line[21] == lines.front()[21] ? 0 : 1);
            line[21] = chainIds[static_cast<std::size_t>(chain) % chainIds.size()];
            char coordinates[64];
            std::snprintf(coordinates, sizeof coordinates, "%8.3f%8.3f%8.3f", p.x, p.y, p.z);
            line.replace(30, 24, coordinates);
            text += line + "\n";
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

const std::map<std::string, double>& sharedRadii() {
    static const std::map<std::string, double> radii = [] {
        std::map<std::string, double> read;
        std::ifstream in = openFile("data/protor.radii");
        getVdWrRadii(in, read);
        return read;
    }();
    return radii;
}

void readFromText(const std::string& text, cPdbPeptide& assembly) {
    std::istringstream in(text);
    std::set<std::string> missingRadii;
    if (assembly.loadFromStream(in, sharedRadii(), missingRadii) != 0) {
        throw std::runtime_error("the assembly cannot be read");
    }
}

/// Runs `resolve` on an assembly without contacts, over and over. The argument is the number of
/// copies.
template <typename Resolve>
void measure(benchmark::State& state, Resolve resolve) {
    cPdbPeptide assembly;
    readFromText(sharedAssemblyText(static_cast<int>(state.range(0))), assembly);
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
        cPdbPeptide assembly;
        readFromText(text, assembly);
        benchmark::DoNotOptimize(assembly.atoms.data());
    }
}

void maximumDistanceContacts(benchmark::State& state) {
    measure(state, [](cPdbPeptide& assembly) { assembly.resolveThresholdContacts(4.5); });
}

void prismContacts(benchmark::State& state) {
    measure(state, [](cPdbPeptide& assembly) { assembly.resolvePRISMContacts(0.5); });
}

void vordaContacts(benchmark::State& state) {
    contactMap rules;
    std::ifstream in = openFile("data/aa_contacts.txt");
    createStringContactMap(in, rules);
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

BENCHMARK(readAssembly)->Apply(severalSizes);
BENCHMARK(maximumDistanceContacts)->Apply(severalSizes);
BENCHMARK(prismContacts)->Apply(severalSizes);
BENCHMARK(vordaContacts)->Apply(severalSizes);
BENCHMARK(boundSurface)->Apply(standardSize);
BENCHMARK(dovrethWithBoundSurface)->Apply(standardSize);

} // namespace

} // namespace kelmo

BENCHMARK_MAIN();
