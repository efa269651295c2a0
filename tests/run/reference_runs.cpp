#include "tests/run/reference_runs.h"

#include "tests/run/run_test_tools.h"
#include "tests/support/shipped_inputs.h"
#include "tests/support/test_files.h"
#include "tests/support/text_difference.h"

#include <gtest/gtest.h>

namespace kelmo {

namespace {

std::map<std::string, sAsa> engineAreas(const std::map<std::string, reference::sAreas>& table) {
    std::map<std::string, sAsa> areas;
    for (const auto& [name, standard] : table) {
        areas[name] = {standard.total, standard.sideChain, standard.backbone, standard.polar,
                       standard.nonPolar};
    }
    return areas;
}

/// The reports that the worker writes for a file, by the ends of their names.
template <typename Worker>
tReports reportsBy(Worker& run, const std::string& file, const std::filesystem::path& directory) {
    run.analyseFile(QString::fromStdString(file), fixedStamp);
    tReports reports;
    for (const auto& [name, content] : filesIn(directory)) {
        reports[name.substr(name.find('_', name.find('_') + 1))] = content;
        std::filesystem::remove(directory / name);
    }
    return reports;
}

} // namespace

std::map<std::string, reference::sAreas> referenceAreas(const std::map<std::string, sAsa>& table) {
    std::map<std::string, reference::sAreas> areas;
    for (const auto& [name, standard] : table) {
        areas[name] = {standard.total, standard.sideChain, standard.backbone, standard.polar,
                       standard.nonPolar};
    }
    return areas;
}

tReports engineReports(const std::string& file, const reference::sKevSettings& settings) {
    const cScratchDirectory output;
    cRunKEV run;
    run.setOutputDirectoryName(QString::fromStdString(output.path().string()));
    run.setOutputTypes(settings.xmlOutput, settings.tableOutput);
    run.setAnalysisTypes(settings.boundAnalysis, settings.chainAnalysis);
    run.setASAAttributes(settings.calculateAsa, settings.probeRadius, settings.zSlice,
                         settings.writeAsa);
    run.setRASAAttributes(settings.calculateRelativeAsa, engineAreas(settings.standardAreas));
    run.setDPXAttributes(settings.calculateDepth);
    run.setCXAttributes(settings.calculateProtrusion, settings.protrusionRadius,
                        settings.atomVolume);
    run.setHydrophobicityAttributes(settings.calculateHydrophobicity, settings.hydrophobicity);
    run.setRadii(settings.radii);
    run.setRadiiFilename(settings.radiiFileName);
    run.setRASAFilename(settings.standardAreasFileName);
    run.setHydroFilename(settings.hydrophobicityFileName);
    return reportsBy(run, file, output.path());
}

tReports engineReports(const std::string& file, const reference::sVorSettings& settings,
                       const contactMap& rules) {
    const cScratchDirectory output;
    cRunVOR run;
    run.criterion = static_cast<eInteractionCriterion>(settings.criterion);
    run.threshold = settings.threshold;
    run.zSlice = settings.zSlice;
    run.probeRadius = settings.probeRadius;
    run.xmlOutput = settings.xmlOutput;
    run.tableOutput = settings.tableOutput;
    run.writeContacts = settings.writeContacts;
    run.writeBindingResidues = settings.writeBindingResidues;
    run.writeBindingStatus = settings.writeBindingStatus;
    run.contactRules = rules;
    run.radii = settings.radii;
    run.radiiFileName = settings.radiiFileName;
    run.outputDirectory = QString::fromStdString(output.path().string());
    return reportsBy(run, file, output.path());
}

void expectSameReports(const tReports& actual, const tReports& expected) {
    EXPECT_EQ(actual.size(), expected.size());
    for (const auto& [name, content] : expected) {
        const auto found = actual.find(name);
        ASSERT_NE(found, actual.end()) << name;
        EXPECT_EQ(firstDifference(found->second, content), "") << name;
    }
}

reference::sKevSettings shippedKevSettings() {
    reference::sKevSettings settings;
    settings.radii = shippedTables().radii;
    settings.standardAreas = referenceAreas(shippedTables().standards);
    settings.hydrophobicity = shippedTables().scale;
    settings.radiiFileName = "protor.radii";
    settings.standardAreasFileName = "ala-x-ala.asa";
    settings.hydrophobicityFileName = "kyte-doolittle.hpb";
    return settings;
}

} // namespace kelmo
