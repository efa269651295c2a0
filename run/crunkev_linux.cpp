#include "run/crunkev_linux.h"

#include "base/in_parallel.h"
#include "run/file_path.h"

#include <fstream>
#include <set>
#include <utility>

namespace kelmo {

cRunKEV::cRunKEV(QObject* parent) : cAnalysisRun(parent) {}

cRunKEV::~cRunKEV() = default;

void cRunKEV::setFilesfForAnalysis(const QStringList& files) {
    inputFiles = files;
}

void cRunKEV::setOutputDirectoryName(const QString& directory) {
    outputDirectory = directory;
}

void cRunKEV::setOutputTypes(bool xml, bool table) {
    xmlOutput = xml;
    tableOutput = table;
}

void cRunKEV::setAnalysisTypes(bool bound, bool chains) {
    boundAnalysis = bound;
    chainAnalysis = chains;
}

void cRunKEV::setASAAttributes(bool calculate, double probeRadius, double sliceThickness,
                               bool write) {
    calculateAsa = calculate;
    solventRadius = probeRadius;
    zSlice = sliceThickness;
    writeAsa = write;
}

void cRunKEV::setDPXAttributes(bool calculate) {
    calculateDepth = calculate;
}

void cRunKEV::setCXAttributes(bool calculate, double threshold, double atomVolume) {
    calculateProtrusion = calculate;
    cxThreshold = threshold;
    cxAtomVolume = atomVolume;
}

void cRunKEV::setRASAAttributes(bool calculate, const std::map<std::string, sAsa>& standards) {
    calculateRelativeAsa = calculate;
    standardAsa = standards;
}

void cRunKEV::setHydrophobicityAttributes(bool calculate,
                                          const std::map<std::string, double>& scale) {
    calculateHydrophobicity = calculate;
    hydrophobicity = scale;
}

void cRunKEV::setRadii(const std::map<std::string, double>& table) {
    radii = table;
}

void cRunKEV::setRadiiFilename(std::string name) {
    radiiFileName = std::move(name);
}

void cRunKEV::setRASAFilename(std::string name) {
    standardAsaFileName = std::move(name);
}

void cRunKEV::setHydroFilename(std::string name) {
    hydrophobicityFileName = std::move(name);
}

QString cRunKEV::reportDirectory() const {
    return withTrailingSeparator(outputDirectory);
}

eFileOutcome cRunKEV::analyse(const QString& path, const QString& timeStamp) {
    const QString shownPath = displayedPath(path);
    std::ifstream in;
    if (!openRegularFile(in, path)) {
        send(Qt::red, "Could not open file " + shownPath);
        return eFileOutcome::failed;
    }
    send(Qt::black, "Analysing structure of peptide from " + shownPath + "...");
    std::set<std::string> missingRadii;
    if (loadPeptide(in, path, radii, missingRadii) == eLoad::failed) {
        return eFileOutcome::failed;
    }
    if (!missingRadii.empty()) {
        QString text = QStringLiteral("The following radii were not found in radii file: ");
        for (const std::string& name : missingRadii) {
            text += QString::fromStdString(name) + "; ";
        }
        send(Qt::yellow, text);
    }
    if (!calculateAndWrite(path, timeStamp)) {
        return eFileOutcome::stopped;
    }
    send(Qt::black, "Structure of peptide from " + shownPath + " analyzed");
    return eFileOutcome::analysed;
}

std::vector<cAnalysisRun::sReportGroup> cRunKEV::planReports(const QString& base) {
    std::vector<sReportGroup> plan;
    if (boundAnalysis) {
        plan.push_back({[this] { return analyseBound(); }, reportsOf(base, "bound")});
    }
    if (chainAnalysis) {
        plan.push_back({[this] { return analyseChains(); }, reportsOf(base, "unbound")});
    }
    return plan;
}

std::vector<cAnalysisRun::sPlannedReport> cRunKEV::reportsOf(const QString& base,
                                                             const std::string& analysisType) {
    const QString fileName = base + '_' + QString::fromStdString(analysisType);
    std::vector<sPlannedReport> reports;
    if (xmlOutput) {
        reports.push_back({fileName + ".xml", [this, analysisType](cXmlWriter& writer) {
                               writePeptideAttributeXml(writer, *currentPeptide, analysisType);
                           }});
    }
    if (tableOutput) {
        reports.push_back({fileName + ".tbl", [this, analysisType](QTextStream& stream) {
                               writePeptideAttributeTable(stream, *currentPeptide, analysisType);
                           }});
    }
    return reports;
}

/// Returns false when the run is to stop, like the one below.
bool cRunKEV::analyseBound() {
    cPdbPeptide& peptide = *currentPeptide;
    if (!mayGoOn()) {
        return false;
    }
    if (calculateAsa) {
        peptide.setAccessibleSurfaceArea(solventRadius, zSlice);
    }
    if (calculateRelativeAsa) {
        peptide.setRelativeAccessibleSurfaceArea(standardAsa);
    }
    if (!mayGoOn()) {
        return false;
    }
    if (calculateDepth) {
        peptide.setDepthIndex();
    }
    if (!mayGoOn()) {
        return false;
    }
    if (calculateProtrusion) {
        peptide.setProtrusionIndex(cxThreshold, cxAtomVolume);
    }
    if (calculateHydrophobicity) {
        peptide.setHydrophobicity(hydrophobicity);
    }
    return mayGoOn();
}

bool cRunKEV::analyseChains() {
    cPdbPeptide& peptide = *currentPeptide;
    if (!mayGoOn()) {
        return false;
    }
    if (calculateAsa) {
        peptide.setAccessibleSurfaceAreaUnbound(solventRadius, zSlice);
    }
    if (!mayGoOn()) {
        return false;
    }
    inParallel(peptide.chains.size(), 1, [&](std::size_t i) { analyseChain(peptide.chains[i]); });
    if (calculateHydrophobicity) {
        peptide.setHydrophobicity(hydrophobicity);
    }
    return mayGoOn();
}

/// Works on a copy: it shares the residues, so what is computed stays there.
void cRunKEV::analyseChain(cProteinChain chain) const {
    if (calculateRelativeAsa) {
        chain.setRelativeAccessibleSurfaceArea(standardAsa);
    }
    if (calculateDepth) {
        chain.setDepthIndex();
    }
    if (calculateProtrusion) {
        chain.setProtrusionIndex(cxThreshold, cxAtomVolume);
    }
}

} // namespace kelmo
