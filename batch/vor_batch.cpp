#include "batch/vor_batch.h"

#include "batch/output_directory.h"
#include "batch/parameter_files.h"
#include "batch/shipped_data.h"
#include "batch/shown_text.h"
#include "batch/usage_error.h"
#include "run/file_path.h"
#include "run/run_vor_linux.h"

#include <filesystem>
#include <map>
#include <string>
#include <system_error>

namespace kelmo {

namespace {

constexpr const char* contactRulesName = "aa_contacts.txt";

/// The settings with the tables read; shared by all workers and never changed.
struct sVorSettings {
    eInteractionCriterion criterion = eInteractionCriterion::maximumDistance;
    double threshold = 0.0; ///< Å for the distance criteria, Å² for the change of area
    double zSlice = 0.0;    ///< Å
    double rSolvent = 0.0;  ///< Å
    bool areContactsWritten = true;
    bool areBindingResiduesWritten = true;
    bool isBindingStatusWritten = true;
    bool isXmlWritten = true;
    bool isTableWritten = true;
    QString outputDirectory;
    sSetting radiiFile;
    std::map<std::string, double> radii;
    contactMap contactRules;
};

eInteractionCriterion criterionFrom(const cConfiguration& configuration) {
    const sSetting* setting = configuration.find("contact_criterion");
    // One digit from 1 to 4, or it would not have been taken.
    return setting == nullptr ? eInteractionCriterion::maximumDistance
                              : static_cast<eInteractionCriterion>(setting->value[0] - '0');
}

double thresholdFrom(const cConfiguration& configuration, eInteractionCriterion criterion) {
    constexpr double largestPrismThreshold = 5.0;
    if (criterion == eInteractionCriterion::dovreth) {
        return configuration.number("delta_asa", 1.0);
    }
    const double threshold =
        configuration.number("threshold", criterion == eInteractionCriterion::prism ? 0.5 : 4.5);
    if (criterion == eInteractionCriterion::prism && threshold > largestPrismThreshold) {
        const sSetting& setting = *configuration.find("threshold");
        throw cUsageError(setting.origin + ": by contact_criterion 2, " +
                          rangeText("threshold", 0.0, largestPrismThreshold, setting.value));
    }
    return threshold;
}

sVorSettings settingsFrom(const cConfiguration& configuration) {
    sVorSettings settings;
    settings.criterion = criterionFrom(configuration);
    settings.threshold = thresholdFrom(configuration, settings.criterion);
    settings.zSlice = configuration.number("z_slice", 0.25);
    settings.rSolvent = configuration.number("r_solvent", 1.4);
    settings.areContactsWritten = configuration.flag("write_contacts", true);
    settings.areBindingResiduesWritten = configuration.flag("write_binding_residues", true);
    settings.isBindingStatusWritten = configuration.flag("write_binding_state", true);
    settings.isXmlWritten = configuration.flag("write_xml", true);
    settings.isTableWritten = configuration.flag("write_table", true);
    return settings;
}

void check(const sVorSettings& settings, const cInputPaths& inputs) {
    if (inputs.empty()) {
        throw cUsageError("No files loaded for analysis!");
    }
    if (!settings.isXmlWritten && !settings.isTableWritten) {
        throw cUsageError("Please choose an output file format (XML or Table)!");
    }
    if (!settings.areContactsWritten && !settings.areBindingResiduesWritten &&
        !settings.isBindingStatusWritten) {
        throw cUsageError("Please choose an output file type (Contacts, Binding Residues or "
                          "Binding State)!");
    }
}

sSetting contactRulesSetting(const sOptions& options) {
    if (options.contactRules.has_value()) {
        return {*options.contactRules, "--contact-rules"};
    }
    std::error_code error;
    if (std::filesystem::exists(contactRulesName, error)) {
        return {contactRulesName, "--contact-rules by default"};
    }
    return {pathToBytes(shippedTable(contactRulesName)), "--contact-rules by default"};
}

std::unique_ptr<cAnalysisRun> workerWith(const sVorSettings& settings) {
    auto worker = std::make_unique<cRunVOR>();
    worker->radii = settings.radii;
    worker->radiiFileName = settings.radiiFile.value;
    worker->outputDirectory = settings.outputDirectory;
    worker->xmlOutput = settings.isXmlWritten;
    worker->tableOutput = settings.isTableWritten;
    worker->writeContacts = settings.areContactsWritten;
    worker->writeBindingResidues = settings.areBindingResiduesWritten;
    worker->writeBindingStatus = settings.isBindingStatusWritten;
    worker->criterion = settings.criterion;
    worker->threshold = settings.threshold;
    worker->zSlice = settings.zSlice;
    worker->probeRadius = settings.rSolvent;
    worker->contactRules = settings.contactRules;
    return worker;
}

} // namespace

sPreparedRun prepareVor(const sOptions& options, const cConfiguration& configuration,
                        const cInputPaths& inputs) {
    const auto settings = std::make_shared<sVorSettings>(settingsFrom(configuration));
    check(*settings, inputs);
    settings->outputDirectory = outputDirectory(options, configuration);
    settings->radiiFile = tableSetting(configuration, "radii_filename", "protor.radii");
    settings->radii = loadRadii(settings->radiiFile);
    QStringList notes;
    if (settings->criterion == eInteractionCriterion::vorda) {
        const sSetting rules = contactRulesSetting(options);
        settings->contactRules = loadContactRules(rules);
        // The reports do not tell, and which table it is depends on the current directory.
        notes.append("Contact rules from " + shownPath(rules.value));
    } else if (options.contactRules.has_value()) {
        throw cUsageError("Option --contact-rules needs contact_criterion 4");
    }
    return {[settings] { return workerWith(*settings); }, settings->outputDirectory, notes};
}

} // namespace kelmo
