#include "run/run_vor_linux.h"

#include "run/file_path.h"

#include <fstream>
#include <set>
#include <sstream>

namespace {

// The table-driven criterion has fixed distances (Å); the user's threshold plays no part in it.
constexpr double vordaVdwThreshold = 1.125;
constexpr double vordaSearchDistance = 6.0;

} // namespace

cRunVOR::cRunVOR(QObject* parent) : cAnalysisRun(parent) {}

cRunVOR::~cRunVOR() = default;

QString cRunVOR::reportDirectory() const {
    return outputDirectory.endsWith(u'/') ? outputDirectory : outputDirectory + u'/';
}

eFileOutcome cRunVOR::analyse(const QString& path, const QString& timeStamp) {
    const QString shownPath = displayedPath(path);
    std::ifstream in;
    const bool isOpen = openRegularFile(in, path);
    send(Qt::black, "Analysing contacts of peptide from " + shownPath + "...");
    if (!isOpen) {
        send(Qt::red, "Could not open file " + shownPath);
        return eFileOutcome::failed;
    }
    std::set<std::string> missingRadii;
    if (loadPeptide(in, path, radii, missingRadii) == eLoad::failed) {
        return eFileOutcome::failed;
    }
    if (!missingRadii.empty()) {
        QStringList names;
        for (const std::string& name : missingRadii) {
            names.append(QString::fromStdString(name));
        }
        send(Qt::yellow, "The following radii were not found in radii file: " + names.join("; "));
    }
    if (!resolve() || !writeReports(reportDirectory() + baseNameOf(path) + '_' + timeStamp)) {
        return eFileOutcome::stopped;
    }
    send(Qt::black, "Contacts of peptide from " + shownPath + " analyzed");
    return eFileOutcome::analysed;
}

/// Returns false when the run is to stop, like the writers below.
bool cRunVOR::resolve() {
    cPdbPeptide& peptide = *currentPeptide;
    if (!mayGoOn()) {
        return false;
    }
    switch (criterion) {
    case maximumDistance:
        peptide.resolveThresholdContacts(threshold);
        break;
    case prism:
        peptide.resolvePRISMContacts(threshold);
        break;
    case dovreth:
        peptide.setAccessibleSurfaceArea(probeRadius, zSlice);
        if (!mayGoOn()) {
            return false;
        }
        peptide.resolveDovrethContacts(threshold, probeRadius, zSlice);
        break;
    case vorda:
        peptide.resolveHovikKRBContacts(vordaVdwThreshold, vordaSearchDistance, contactRules);
        break;
    case noCriterion:
        break;
    }
    return mayGoOn();
}

bool cRunVOR::writeReports(const QString& reportBase) {
    return (!xmlOutput || writeXmlReports(reportBase)) &&
           (!tableOutput || writeTableReports(reportBase));
}

bool cRunVOR::writeXmlReports(const QString& reportBase) {
    const auto write = [&](const char* suffix, auto writer) {
        writeXmlReport(reportBase + suffix,
                       [&](cXmlWriter& out) { (this->*writer)(out, *currentPeptide); });
        return mayGoOn();
    };
    return (!writeContacts || write("_contacts.xml", &cRunVOR::writeContactsXml)) &&
           (!writeBindingResidues || write("_binding_residues.xml", &cRunVOR::writeHotSpotsXml)) &&
           (!writeBindingStatus ||
            write("_binding_status.xml", &cRunVOR::writeResidueBindingStatusXml));
}

bool cRunVOR::writeTableReports(const QString& reportBase) {
    const auto write = [&](const char* suffix, auto writer) {
        writeTableReport(reportBase + suffix, [&](QTextStream& stream) {
            std::ostringstream text;
            (this->*writer)(text, *currentPeptide);
            writeBytes(stream, text.view());
        });
        return mayGoOn();
    };
    return (!writeContacts || write("_contacts.tbl", &cRunVOR::writeContactsTable)) &&
           (!writeBindingResidues ||
            write("_binding_residues.tbl", &cRunVOR::writeHotSpotsTable)) &&
           (!writeBindingStatus ||
            write("_binding_status.tbl", &cRunVOR::writeResidueBindingStatusTable));
}
