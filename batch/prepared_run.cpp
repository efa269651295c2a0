#include "batch/prepared_run.h"

#include "analysis/checks.h"
#include "analysis/configuration.h"
#include "analysis/criteria.h"
#include "analysis/shipped_tables.h"
#include "analysis/standard_areas.h"
#include "base/shown_text.h"
#include "base/usage_error.h"
#include "batch/report_choice.h"
#include "run/crunkev_linux.h"
#include "run/report_file.h"
#include "run/run_vor_linux.h"

#include <filesystem>
#include <system_error>

namespace kelmo {

namespace {

/// Where a setting was made, for messages.
std::string originOf(const cSettings& settings, const std::string& key) {
    const std::string& origin = settings.origin(key);
    if (!origin.empty()) {
        return origin;
    }
    const bool isOption = key == "contact_rules"; // users know it by its option
    return (isOption ? "--contact-rules" : key) + " by default";
}

void throwIf(const std::optional<sProblem>& problem, const cSettings& settings) {
    if (problem.has_value()) {
        throw cUsageError(problem->key.empty()
                              ? problem->text
                              : originOf(settings, problem->key) + ": " + problem->text);
    }
}

/// Settings that are not set name tables that come with the program; contact rules may also stand
/// in the current directory.
void findShippedTables(cSettings& settings) {
    for (const sSetting& setting : settingsOf(settings.module())) {
        if (setting.kind != eSettingKind::table || settings.isSet(setting.key) ||
            !isTableNeeded(settings, setting.key)) {
            continue;
        }
        std::error_code error;
        if (setting.key != "contact_rules" || !std::filesystem::exists(setting.byDefault, error)) {
            const std::string name = setting.key == "standard_asa"
                                         ? shippedStandardAreas(settings.asaForm())
                                         : setting.byDefault;
            settings.setText(setting.key, shippedTable(name).native());
        }
    }
}

std::string tableProblemText(const sTableProblem& problem, const cSettings& settings) {
    const std::string origin = originOf(settings, problem.key) + ": ";
    return problem.isUnopened
               ? origin + "Could not open file " + shownText(problem.path) + '\n' + problem.text
               : origin + shownText(problem.path) + ": " + problem.text;
}

void checkContactRules(const cSettings& settings) {
    const sCriterion* const criterion = findCriterion(settings.criterion());
    if (settings.isSet("contact_rules") && (criterion == nullptr || !criterion->usesRules)) {
        throw cUsageError("Option --contact-rules needs contact_criterion 4");
    }
}

std::string withSlash(const std::string& directory) {
    return directory.ends_with('/') ? directory : directory + '/';
}

std::unique_ptr<cAnalysisRun> newWorker(eModule module) {
    if (module == eModule::kev) {
        return std::make_unique<cRunKEV>();
    }
    return std::make_unique<cRunVOR>();
}

} // namespace

cSettings settingsFrom(const sOptions& options) {
    cSettings settings(options.module);
    if (options.configuration.has_value()) {
        readConfiguration(*options.configuration, "--config", settings);
    }
    if (options.preparation.has_value()) {
        const std::string origin = "--prepare " + shownText(*options.preparation);
        if (const std::string fault = settings.set("prepare", *options.preparation, origin);
            !fault.empty()) {
            throw cUsageError(origin + ": " + fault);
        }
    }
    for (const std::string& assignment : options.overrides) {
        assign(assignment, settings);
    }
    if (options.outputDirectory.has_value()) {
        settings.set("output_dir", *options.outputDirectory,
                     "--output-dir " + shownText(*options.outputDirectory));
    }
    if (options.reports.has_value()) {
        chooseReports(*options.reports, settings);
    }
    if (options.contactRules.has_value()) {
        settings.set("contact_rules", *options.contactRules, "--contact-rules");
    }
    return settings;
}

sPreparedRun prepareRun(const cSettings& given, const cInputPaths& inputs, bool areReportsNeeded) {
    const eModule module = given.module();
    if (module == eModule::vor) {
        throwIf(findCriterionProblem(given), given);
    }
    const auto settings = std::make_shared<cSettings>(given.resolved());
    throwIf(findProblem(*settings, inputs.size(), areReportsNeeded), *settings);
    findShippedTables(*settings);
    const auto tables = std::make_shared<sParameterTables>();
    if (const auto problem = readParameterTables(*settings, *tables)) {
        throw cUsageError(tableProblemText(*problem, *settings));
    }
    if (module == eModule::vor) {
        checkContactRules(given);
    }
    std::vector<sMessage> messages;
    if (isTableNeeded(*settings, "contact_rules")) {
        // The reports do not tell, and which table it is depends on the current directory.
        messages.emplace_back(eSeverity::progress,
                              "Contact rules from " + shownText(settings->text("contact_rules")));
    }
    if (const std::string warning = standardAreaWarning(*settings, *tables); !warning.empty()) {
        messages.emplace_back(eSeverity::warning, warning);
    }
    const std::string directory = withSlash(settings->text("output_dir"));
    settings->setText("output_dir", directory);
    return {[settings, tables, module] {
                std::unique_ptr<cAnalysisRun> worker = newWorker(module);
                worker->setUp(*settings, *tables);
                return worker;
            },
            directory, messages, settings};
}

void checkWritable(const std::string& directory) {
    const cReportDirectory place(directory);
    const cReportFile trial(place);
    if (!trial.isOpen()) {
        throw cUsageError("No file can be created in the output directory " + shownText(directory) +
                          ": " + std::generic_category().message(trial.error()));
    }
}

} // namespace kelmo
