#include "run/run_vor_linux.h"

#include "run/file_path.h"

#include <fstream>
#include <new>
#include <set>
#include <sstream>

namespace kelmo {

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
    if (!calculateAndWrite(path, timeStamp)) {
        return eFileOutcome::stopped;
    }
    send(Qt::black, "Contacts of peptide from " + shownPath + " analyzed");
    return eFileOutcome::analysed;
}

/// Returns false when the run is to stop.
bool cRunVOR::resolve() {
    cPdbPeptide& peptide = *currentPeptide;
    if (!mayGoOn()) {
        return false;
    }
    switch (criterion) {
    case eInteractionCriterion::maximumDistance:
        peptide.resolveThresholdContacts(threshold);
        break;
    case eInteractionCriterion::prism:
        peptide.resolvePRISMContacts(threshold);
        break;
    case eInteractionCriterion::dovreth:
        peptide.setAccessibleSurfaceArea(probeRadius, zSlice);
        if (!mayGoOn()) {
            return false;
        }
        peptide.resolveDovrethContacts(threshold, probeRadius, zSlice);
        break;
    case eInteractionCriterion::vorda:
        peptide.resolveHovikKRBContacts(vordaVdwThreshold, vordaSearchDistance, contactRules);
        break;
    case eInteractionCriterion::none:
        break;
    }
    return mayGoOn();
}

const std::array<cRunVOR::sReportKind, 3> cRunVOR::reportKinds{{
    {"_contacts", &cRunVOR::writeContacts, &cRunVOR::writeContactsXml,
     &cRunVOR::writeContactsTable},
    {"_binding_residues", &cRunVOR::writeBindingResidues, &cRunVOR::writeHotSpotsXml,
     &cRunVOR::writeHotSpotsTable},
    {"_binding_status", &cRunVOR::writeBindingStatus, &cRunVOR::writeResidueBindingStatusXml,
     &cRunVOR::writeResidueBindingStatusTable},
}};

std::vector<cAnalysisRun::sReportGroup> cRunVOR::planReports(const QString& base) {
    std::vector<sPlannedReport> reports;
    for (const sReportKind& kind : reportKinds) {
        if (xmlOutput && this->*kind.isWanted) {
            reports.push_back({base + kind.suffix + ".xml", [this, &kind](cXmlWriter& writer) {
                                   (this->*kind.writeXml)(writer, *currentPeptide);
                               }});
        }
    }
    for (const sReportKind& kind : reportKinds) {
        if (tableOutput && this->*kind.isWanted) {
            reports.push_back({base + kind.suffix + ".tbl",
                               [this, &kind](QTextStream& stream) { writeWhole(stream, kind); }});
        }
    }
    return {{[this] { return resolve(); }, reports}};
}

void cRunVOR::writeWhole(QTextStream& stream, const sReportKind& kind) {
    std::ostringstream text;
    (this->*kind.writeTable)(text, *currentPeptide);
    if (!text) {
        throw std::bad_alloc(); // a stream keeps the lack of memory to itself and stops short
    }
    writeBytes(stream, text.view());
}

} // namespace kelmo
