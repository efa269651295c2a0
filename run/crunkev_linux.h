// The worker of the structure module: areas, depth, protrusion and hydrophobicity, file by file.
#pragma once

#include "model/addition.h"
#include "run/analysis_run.h"

#include <map>
#include <string>
#include <vector>

namespace kelmo {

/// Filled through its setters while idle, then started; see cAnalysisRun for how it runs and stops.
class cRunKEV : public cAnalysisRun {
    Q_OBJECT
  public:
    explicit cRunKEV(QObject* parent = nullptr);
    ~cRunKEV() override;

    void setFilesfForAnalysis(const QStringList& files);
    void setOutputDirectoryName(const QString& directory);
    void setOutputTypes(bool xml, bool table);
    /// `bound` is the complex as a whole, `chains` every chain taken alone.
    void setAnalysisTypes(bool bound, bool chains);
    /// Probe radius and slice thickness in Å; `write` puts the areas into the reports.
    void setASAAttributes(bool calculate, double probeRadius, double sliceThickness, bool write);
    void setDPXAttributes(bool calculate);
    /// Radius of the sphere in Å, volume of one atom in Å³.
    void setCXAttributes(bool calculate, double threshold, double atomVolume);
    void setRASAAttributes(bool calculate, const std::map<std::string, sAsa>& standards);
    void setHydrophobicityAttributes(bool calculate, const std::map<std::string, double>& scale);
    void setRadii(const std::map<std::string, double>& table);
    /// The names that the reports give for the tables.
    void setRadiiFilename(std::string name);
    void setRASAFilename(std::string name);
    void setHydroFilename(std::string name);

    /// The report writers read the settings above and the values of the structure, nothing else.
    /// `analysisType` is "bound" or "unbound".
    void writePeptideAttributeXml(cXmlWriter& writer, cPdbPeptide& peptide,
                                  std::string analysisType);
    /// A standalone chain is a document of its own.
    void writeChainAttributeXml(cXmlWriter& writer, cProteinChain& chain, bool standalone);
    void writePeptideAttributeTable(QTextStream& stream, cPdbPeptide& peptide,
                                    std::string analysisType);

  protected:
    const QStringList& pathsToAnalyse() const override { return inputFiles; }
    QString reportDirectory() const override;
    eFileOutcome analyse(const QString& path, const QString& timeStamp) override;
    std::vector<sReportGroup> planReports(const QString& base) override;

  private:
    bool analyseBound();
    bool analyseChains();
    void analyseChain(cProteinChain chain) const;
    std::vector<sPlannedReport> reportsOf(const QString& base, const std::string& analysisType);
    void writeTableHeader(std::string& text, const cPdbPeptide& peptide,
                          const std::string& analysisType) const;
    void writeColumnTitles(std::string& text) const;
    void appendTableRow(std::string& text, const cProteinChain& chain,
                        const cChainResidue& residue) const;
    void appendResidueXml(std::string& text, const cChainResidue& residue, int indent) const;

    QStringList inputFiles;
    QString outputDirectory;
    double solventRadius = 0.0; ///< Å
    double zSlice = 0.0;        ///< Å
    double cxThreshold = 0.0;   ///< Å
    double cxAtomVolume = 0.0;  ///< Å³
    bool xmlOutput = false;
    bool tableOutput = false;
    bool calculateAsa = false;
    bool calculateRelativeAsa = false;
    bool calculateDepth = false;
    bool calculateProtrusion = false;
    bool calculateHydrophobicity = false;
    bool writeAsa = false;
    bool boundAnalysis = false;
    bool chainAnalysis = false;
    std::map<std::string, double> radii;
    std::map<std::string, sAsa> standardAsa;
    std::map<std::string, double> hydrophobicity;
    std::string radiiFileName;
    std::string hydrophobicityFileName;
    std::string standardAsaFileName;
};

} // namespace kelmo
