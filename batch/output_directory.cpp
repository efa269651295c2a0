#include "batch/output_directory.h"

#include "batch/shown_text.h"
#include "batch/usage_error.h"
#include "run/file_path.h"
#include "run/report_file.h"

#include <filesystem>
#include <system_error>

namespace kelmo {

namespace {

sSetting directorySetting(const sOptions& options, const cConfiguration& configuration) {
    if (options.outputDirectory.has_value()) {
        return {*options.outputDirectory, "--output-dir " + shownPath(*options.outputDirectory)};
    }
    const sSetting* setting = configuration.find("output_dir");
    return setting != nullptr ? *setting : sSetting{".", "output_dir by default"};
}

/// The two modules word it differently, as their tabs in the window do.
QString invalidDirectoryText(eModule module) {
    return QLatin1String(
        module == eModule::kev
            ? "The output directory path is invalid! Please specify a valid directory\n"
            : "The output directory path is invalid! Please specify a valid directory!");
}

} // namespace

QString outputDirectory(const sOptions& options, const cConfiguration& configuration) {
    const sSetting setting = directorySetting(options, configuration);
    if (setting.value.empty()) {
        throw cUsageError(setting.origin + ": Please choose an output directory!");
    }
    std::error_code error;
    if (!std::filesystem::is_directory(setting.value, error)) {
        throw cUsageError(setting.origin + ": " + invalidDirectoryText(options.module));
    }
    const QString directory = setting.path();
    return directory.endsWith(u'/') ? directory : directory + u'/';
}

void checkWritable(const QString& directory) {
    const cReportFile trial(directory);
    if (!trial.isOpen()) {
        throw cUsageError("No file can be created in the output directory " + shownPath(directory) +
                          ": " +
                          QString::fromStdString(std::generic_category().message(trial.error())));
    }
}

} // namespace kelmo
