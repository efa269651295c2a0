// Reading: a sample entry, a large file made of it, and the parameter tables; time per atom and
// entry.
#include "base/string_operation.h"
#include "model/addition.h"
#include "model/pdb_peptide.h"
#include "tests/support/pdb_lines.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace kelmo {

namespace {

void countEach(benchmark::State& state, const char* name, std::size_t count) {
    using cCounter = benchmark::Counter;
    state.counters[name] = cCounter(static_cast<double>(count),
                                    cCounter::kIsIterationInvariantRate | cCounter::kInvert);
}

void readText(benchmark::State& state, const std::string& text) {
    const std::map<std::string, double>& radii = shippedTables().radii;
    std::size_t atoms = 0;
    for (auto _ : state) {
        std::istringstream in(text);
        std::set<std::string> missing;
        cPdbPeptide peptide;
        if (peptide.loadFromStream(in, radii, missing) != 0) {
            state.SkipWithError("the text cannot be read");
            break;
        }
        atoms = peptide.atoms.size();
        benchmark::DoNotOptimize(peptide.atoms.data());
    }
    countEach(state, "perAtom", atoms);
    state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) *
                            static_cast<std::int64_t>(state.iterations()));
}

void readSample(benchmark::State& state) {
    readText(state, sampleText("2hhb"));
}

/// 64 copies of the sample's atoms, about 280,000, one after the other.
void readLargeFile(benchmark::State& state) {
    std::string atoms;
    for (const std::string& line : atomLinesOf(sampleText("2hhb"))) {
        atoms += line + "\n";
    }
    std::string text;
    for (int copy = 0; copy < 64; ++copy) {
        text += atoms;
    }
    readText(state, text);
}

void copyStructure(benchmark::State& state) {
    const cPdbPeptide peptide = samplePeptide("2hhb");
    for (auto _ : state) {
        cPdbPeptide copy(peptide);
        benchmark::DoNotOptimize(copy.atoms.data());
    }
    countEach(state, "perAtom", peptide.atoms.size());
}

void readRadii(benchmark::State& state) {
    const std::string text = sourceText("data/protor.radii");
    std::size_t entries = 0;
    for (auto _ : state) {
        std::istringstream in(text);
        std::map<std::string, double> radii;
        benchmark::DoNotOptimize(getVdWrRadii(in, radii));
        entries = radii.size();
    }
    countEach(state, "perEntry", entries);
}

void convertCoordinates(benchmark::State& state) {
    const std::vector<std::string> fields{"  11.123", "-103.500", "   0.001", "  +7.250"};
    for (auto _ : state) {
        double sum = 0.0;
        for (const std::string& field : fields) {
            sum += toNumber(field);
        }
        benchmark::DoNotOptimize(sum);
    }
    countEach(state, "perNumber", fields.size());
}

BENCHMARK(readSample)->Unit(benchmark::kMillisecond);
BENCHMARK(readLargeFile)->Unit(benchmark::kMillisecond);
BENCHMARK(copyStructure)->Unit(benchmark::kMillisecond);
BENCHMARK(readRadii)->Unit(benchmark::kMillisecond);
BENCHMARK(convertCoordinates);

} // namespace

} // namespace kelmo
