#include "batch/kev_batch.h"

#include "batch/output_directory.h"
#include "batch/parameter_files.h"
#include "batch/usage_error.h"
#include "run/crunkev_linux.h"

#include <map>
#include <string>
#include <utility>

namespace kelmo {

namespace {

/// The settings with the tables read; shared by all workers and never changed.
struct sKevSettings {
    bool isBoundAnalysed = true;
    bool areChainsAnalysed = true;
    bool isAsaCalculated = true;
    double zSlice = 0.0;   ///< Å
    double rSolvent = 0.0; ///< Å
    bool isAsaWritten = true;
    bool isRelativeAsaCalculated = true;
    bool isDepthCalculated = true;
    bool isProtrusionCalculated = true;
    double cxThreshold = 0.0; ///< Å
    double cxVolume = 0.0;    ///< Å³
    bool isHydrophobicityCalculated = true;
    bool isXmlWritten = true;
    bool isTableWritten = true;
    QString outputDirectory;
    sSetting radiiFile;
    sSetting standardAsaFile;
    sSetting hydrophobicityFile;
    std::map<std::string, double> radii;
    std::map<std::string, sAsa> standardAsa;
    std::map<std::string, double> hydrophobicity;
};

sKevSettings settingsFrom(const cConfiguration& configuration) {
    sKevSettings settings;
    settings.isBoundAnalysed = configuration.flag("analyze_bound", true);
    settings.areChainsAnalysed = configuration.flag("analyze_unbound", true);
    settings.isRelativeAsaCalculated = configuration.flag("calc_rasa", true);
    settings.isDepthCalculated = configuration.flag("calc_dpx", true);
    // Relative areas and depths are made from the areas.
    settings.isAsaCalculated = configuration.flag("calc_asa", true) ||
                               settings.isRelativeAsaCalculated || settings.isDepthCalculated;
    settings.isAsaWritten = settings.isAsaCalculated && configuration.flag("write_asa", true);
    settings.zSlice = configuration.number("z_slice", 0.25);
    settings.rSolvent = configuration.number("r_solvent", 1.4);
    settings.isProtrusionCalculated = configuration.flag("calc_cx", true);
    settings.cxThreshold = configuration.number("cx_threshold", 10.0);
    settings.cxVolume = configuration.number("cx_volume", 20.1);
    settings.isHydrophobicityCalculated = configuration.flag("calc_hydro", true);
    settings.isXmlWritten = configuration.flag("write_xml", true);
    settings.isTableWritten = configuration.flag("write_table", true);
    return settings;
}

void check(const sKevSettings& settings, const cInputPaths& inputs) {
    if (inputs.empty()) {
        throw cUsageError("No files loaded for analysis");
    }
    if (!settings.isAsaCalculated && !settings.isProtrusionCalculated &&
        !settings.isHydrophobicityCalculated) {
        throw cUsageError("No attributes selected for analysis!");
    }
    if (!settings.isBoundAnalysed && !settings.areChainsAnalysed) {
        throw cUsageError("Please choose an analysis type!");
    }
    if (!settings.isXmlWritten && !settings.isTableWritten) {
        throw cUsageError("Please choose an output file format (XML or Table)!");
    }
}

void loadTables(const cConfiguration& configuration, sKevSettings& settings) {
    settings.radiiFile = tableSetting(configuration, "radii_filename", "protor.radii");
    settings.radii = loadRadii(settings.radiiFile);
    if (settings.isRelativeAsaCalculated) {
        settings.standardAsaFile = tableSetting(configuration, "standard_asa", "ala-x-ala.asa");
        settings.standardAsa = loadStandardAsa(settings.standardAsaFile);
    }
    if (settings.isHydrophobicityCalculated) {
        settings.hydrophobicityFile =
            tableSetting(configuration, "hydro_file", "kyte-doolittle.hpb");
        settings.hydrophobicity = loadHydrophobicity(settings.hydrophobicityFile);
    }
}

std::unique_ptr<cAnalysisRun> workerWith(const sKevSettings& settings) {
    auto worker = std::make_unique<cRunKEV>();
    worker->setRadii(settings.radii);
    worker->setOutputDirectoryName(settings.outputDirectory);
    worker->setOutputTypes(settings.isXmlWritten, settings.isTableWritten);
    worker->setAnalysisTypes(settings.isBoundAnalysed, settings.areChainsAnalysed);
    worker->setASAAttributes(settings.isAsaCalculated, settings.rSolvent, settings.zSlice,
                             settings.isAsaWritten);
    worker->setRadiiFilename(settings.radiiFile.value);
    worker->setRASAAttributes(settings.isRelativeAsaCalculated, settings.standardAsa);
    worker->setRASAFilename(settings.standardAsaFile.value);
    worker->setDPXAttributes(settings.isDepthCalculated);
    worker->setCXAttributes(settings.isProtrusionCalculated, settings.cxThreshold,
                            settings.cxVolume);
    worker->setHydrophobicityAttributes(settings.isHydrophobicityCalculated,
                                        settings.hydrophobicity);
    worker->setHydroFilename(settings.hydrophobicityFile.value);
    return worker;
}

} // namespace

sPreparedRun prepareKev(const sOptions& options, const cConfiguration& configuration,
                        const cInputPaths& inputs) {
    const auto settings = std::make_shared<sKevSettings>(settingsFrom(configuration));
    check(*settings, inputs);
    settings->outputDirectory = outputDirectory(options, configuration);
    loadTables(configuration, *settings);
    return {[settings] { return workerWith(*settings); }, settings->outputDirectory, {}};
}

} // namespace kelmo
