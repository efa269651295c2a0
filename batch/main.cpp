// kelmo-batch: the analyses of Kelmo from the command line. No application object of the toolkit is
// made: nothing here has an event loop, and it would warn of every locale that is not UTF-8.

#include "base/parallel_work.h"
#include "base/usage_error.h"
#include "batch/batch_run.h"
#include "batch/export_command.h"
#include "batch/help_text.h"
#include "batch/input_paths.h"
#include "batch/merge_command.h"
#include "batch/open_files.h"
#include "batch/options.h"
#include "batch/prepared_run.h"
#include "batch/result_output.h"
#include "batch/shard.h"
#include "batch/stop_signal.h"
#include "batch/summary.h"
#include "run/process_start.h"
#include "run/report_file.h"

#include <cstdio>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

namespace {

eExitStatus print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    if (std::fflush(stdout) != 0) {
        throw cUsageError("Could not write to standard output");
    }
    return eExitStatus::allDone;
}

sReporterManner mannerFor(const sOptions& options) {
    sReporterManner manner = mannerOfStandardError();
    manner.isQuiet = options.isQuiet;
    manner.hasProgressBar = manner.hasProgressBar && options.isProgressWanted && !options.isQuiet;
    return manner;
}

std::vector<sMessage> openingMessages(const sPreparedRun& prepared, const cInputPaths& paths,
                                      const cSameBaseNames& sameNames) {
    std::vector<sMessage> messages = prepared.messages;
    for (const std::string& warning : sameBaseNameWarnings(paths, sameNames)) {
        messages.emplace_back(eSeverity::warning, warning);
    }
    return messages;
}

/// The inputs as results files know them. What is given must outlive the run.
sRunInputs inputsOf(const cInputPaths& paths, const cInputPaths& list, const sListPart& part) {
    const bool isPart = &paths == &part.paths;
    return {paths.size(), list.size(), [&paths](std::size_t position) { return paths[position]; },
            [&part, isPart](std::size_t position) {
                return isPart ? part.places[position] : position;
            }};
}

eExitStatus analyse(const sOptions& options) {
    const cSettings settings = settingsFrom(options);
    const cInputPaths list = inputPaths(options.inputs);
    const sPreparedRun prepared = prepareRun(settings, list, !options.areReportsOff());
    const sListPart part = options.shard ? filesOfShard(list, *options.shard) : sListPart();
    const cInputPaths& paths = options.shard ? part.paths : list;
    if (!options.areReportsOff()) {
        removeAbandonedReports(cReportDirectory(prepared.outputDirectory));
        checkWritable(prepared.outputDirectory);
    }
    cResultWriter results(openResults(options, *prepared.settings, inputsOf(paths, list, part)));

    cReporter reporter(mannerFor(options));
    const cSameBaseNames sameNames(options.areReportsOff() ? cInputPaths() : paths);
    reporter.show(openingMessages(prepared, paths, sameNames));

    const cStopSignal stop;
    sBatchManner manner;
    manner.timeStamp = options.timeStamp.has_value() ? QString::fromStdString(*options.timeStamp)
                                                     : cAnalysisRun::currentTimeStamp();
    const int jobs = options.jobs.value_or(usualThreads());
    manner.jobs = startableThreads(jobs);
    if (manner.jobs < jobs) {
        reporter.show({eSeverity::warning, "The system allows no more than " +
                                               std::to_string(manner.jobs) + " of " +
                                               std::to_string(jobs) + " threads"});
    }
    manner.structuresAtOnce = structuresAtOnce();
    manner.isResumed = options.isResumed;
    manner.hasReports = !options.areReportsOff();
    cBatchRun run(paths, sameNames, manner, prepared.makeWorker, results, reporter, stop.flag());
    const sBatchResult result = run.run();
    reporter.show(summaryMessages(paths, result, manner.isResumed));
    return exitStatus(result, options.mayFilesFail);
}

eExitStatus answer(const sOptions& options) {
    switch (options.request) {
    case eRequest::help:
        return print(helpText());
    case eRequest::version:
        return print(versionText());
    case eRequest::merge:
        return merge(options);
    case eRequest::exportation:
        return exportRows(options.wantedExport);
    case eRequest::analysis:
        break;
    }
    return analyse(options);
}

/// Answers the command line; whatever goes wrong is told.
eExitStatus serve(int argc, char** argv) {
    try {
        return answer(parseOptions(argc, argv));
    } catch (const cUsageError& error) {
        cReporter(mannerOfStandardError()).show({eSeverity::error, error.what()});
        return eExitStatus::notStarted;
    } catch (const std::exception& error) {
        cReporter(mannerOfStandardError())
            .show({eSeverity::error, std::string("The run broke off: ") + error.what()});
        return eExitStatus::someMissing;
    }
}

} // namespace

} // namespace kelmo

int main(int argc, char** argv) {
    kelmo::prepareProcess();
    return static_cast<int>(kelmo::serve(argc, argv));
}
