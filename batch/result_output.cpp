#include "batch/result_output.h"

#include "base/usage_error.h"
#include "results/database.h"
#include "results/result_formats.h"

namespace kelmo {

std::vector<std::unique_ptr<cResultFile>>
openResults(const sOptions& options, const cSettings& settings, const sRunInputs& inputs) {
    std::vector<std::unique_ptr<cResultFile>> files;
    if (options.resultFiles.empty()) {
        return files;
    }
    const sRunDescription run = describeRun(settings, KELMO_VERSION);
    for (const std::string& file : options.resultFiles) {
        try {
            files.push_back(findResultFormat(file)->open(file, run, inputs, options.isResumed));
        } catch (const cResultError& error) {
            throw cUsageError("Could not open " + std::string(error.what()));
        }
    }
    return files;
}

} // namespace kelmo
