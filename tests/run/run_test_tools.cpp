#include "tests/run/run_test_tools.h"

#include "tests/support/shipped_inputs.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <iterator>

#include <sys/resource.h>

namespace kelmo {

using enum eInteractionCriterion;

void switchEverythingOn(cRunKEV& run) {
    const sShippedTables& tables = shippedTables();
    run.setOutputTypes(true, true);
    run.setAnalysisTypes(true, true);
    run.setASAAttributes(true, 1.4, 0.25, true);
    run.setRASAAttributes(true, tables.standards);
    run.setDPXAttributes(true);
    run.setCXAttributes(true, 10.0, 20.1);
    run.setHydrophobicityAttributes(true, tables.scale);
    run.setRadii(tables.radii);
    run.setRadiiFilename("protor.radii");
    run.setRASAFilename("ala-x-ala.asa");
    run.setHydroFilename("kyte-doolittle.hpb");
}

void switchEverythingOn(cRunVOR& run, eInteractionCriterion criterion) {
    run.criterion = criterion;
    run.threshold = criterion == maximumDistance ? 5.0 : criterion == prism ? 0.5 : 1.0;
    run.zSlice = 0.25;
    run.probeRadius = 1.4;
    run.xmlOutput = true;
    run.tableOutput = true;
    run.writeContacts = true;
    run.writeBindingResidues = true;
    run.writeBindingStatus = true;
    run.contactRules = shippedTables().rules;
    run.radii = shippedTables().radii;
    run.radiiFileName = "protor.radii";
}

bool awaitEnd(cAnalysisRun& run) {
    constexpr qint64 patience = 600'000; // ms
    return run.awaitEnd(QDeadlineTimer(patience));
}

bool runToEnd(cAnalysisRun& run) {
    run.start();
    return awaitEnd(run);
}

QStringList pathList(const std::vector<std::string>& paths) {
    QStringList list;
    for (const std::string& path : paths) {
        list.append(QString::fromStdString(path));
    }
    return list;
}

int openDescriptorCount() {
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return static_cast<int>(std::distance(begin(descriptors), end(descriptors)));
}

bool areWellFormed(const std::vector<std::string>& files) {
    std::string command = std::string(XMLLINT_PROGRAM) + " --noout";
    for (const std::string& file : files) {
        command += " '" + file + "'";
    }
    return std::system(command.c_str()) == 0;
}

cFullDisk::cFullDisk(unsigned long maxFileSize) {
    std::signal(SIGXFSZ, SIG_IGN); // the write fails then instead of ending the process
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    previousLimit = limit.rlim_cur;
    limit.rlim_cur = maxFileSize;
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
}

cFullDisk::~cFullDisk() {
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = previousLimit;
    ::setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_DFL);
}

} // namespace kelmo
