// How fast the structure reports are written, in bytes a second, without the disk's share.
#include "model/pdb_peptide.h"
#include "run/crunkev_linux.h"
#include "tests/support/shipped_inputs.h"
#include "xml/xml_writer.h"

#include <QBuffer>
#include <QTextStream>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>

namespace kelmo {

namespace {

/// Haemoglobin with everything computed, and a worker that writes everything.
class cReportInput {
  public:
    cReportInput() {
        const std::map<std::string, sAsa>& standards = shippedTables().standards;
        peptide.setAccessibleSurfaceArea(1.4, 0.25);
        peptide.setRelativeAccessibleSurfaceArea(standards);
        peptide.setDepthIndex();
        peptide.setProtrusionIndex(10.0, 20.1);
        worker.setASAAttributes(true, 1.4, 0.25, true);
        worker.setRASAAttributes(true, standards);
        worker.setDPXAttributes(true);
        worker.setCXAttributes(true, 10.0, 20.1);
        worker.setHydrophobicityAttributes(true, {});
    }

    cPdbPeptide peptide = samplePeptide("2hhb");
    cRunKEV worker;
};

void report(benchmark::State& state, const cReportInput& input, std::int64_t bytes) {
    const auto iterations = static_cast<std::int64_t>(state.iterations());
    state.SetBytesProcessed(iterations * bytes);
    state.counters["per_atom"] = benchmark::Counter(static_cast<double>(input.peptide.atoms.size()),
                                                    benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}

void writeXmlReport(benchmark::State& state) {
    cReportInput input;
    std::int64_t bytes = 0;
    for (auto _ : state) {
        cXmlWriter writer("/dev/null");
        input.worker.writePeptideAttributeXml(writer, input.peptide, "bound");
        writer.flush();
        benchmark::DoNotOptimize(writer.good());
    }
    const std::string path = "kelmo-benchmark.xml";
    {
        cXmlWriter writer(path.c_str());
        input.worker.writePeptideAttributeXml(writer, input.peptide, "bound");
        bytes = writer.tellp();
    }
    std::remove(path.c_str());
    report(state, input, bytes);
}

void writeTableReport(benchmark::State& state) {
    cReportInput input;
    std::int64_t bytes = 0;
    for (auto _ : state) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QTextStream stream(&buffer);
        input.worker.writePeptideAttributeTable(stream, input.peptide, "bound");
        stream.flush();
        bytes = buffer.size();
    }
    report(state, input, bytes);
}

} // namespace

BENCHMARK(writeXmlReport)->Unit(benchmark::kMillisecond);
BENCHMARK(writeTableReport)->Unit(benchmark::kMillisecond);

} // namespace kelmo
