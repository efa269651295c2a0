// The worker of the structure module: areas, depth, protrusion and hydrophobicity, file by file.
#pragma once

#include "analysis/attributes.h"
#include "analysis/columns.h"
#include "model/addition.h"
#include "run/analysis_run.h"
#include "xml/xml_writer.h"

#include <QTextStream>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

/// Filled while idle, by setUp() or by its setters, then started; see cAnalysisRun for how it runs
/// and stops.
class cRunKEV : public cAnalysisRun {
    Q_OBJECT
  public:
    explicit cRunKEV(QObject* parent = nullptr);
    ~cRunKEV() override;

    void setUp(const cSettings& newSettings, const sParameterTables& newTables) override;
    void setInputFiles(const QStringList& files) override { setFilesfForAnalysis(files); }

    void setFilesfForAnalysis(const QStringList& files);
    void setOutputDirectoryName(const QString& directory);
    void setOutputTypes(bool xml, bool table);
    /// `bound` is the complex as a whole, `chains` every chain taken alone.
    void setAnalysisTypes(bool bound, bool chains);
    /// Probe radius and slice thickness in Å; `write` puts the areas into the reports.
    void setASAAttributes(bool calculate, double probeRadius, double zSlice, bool write);
    void setDPXAttributes(bool calculate);
    /// Radius of the sphere in Å, volume of one atom in Å³.
    void setCXAttributes(bool calculate, double sphereRadius, double atomVolume);
    void setRASAAttributes(bool calculate, const std::map<std::string, sAsa>& standards);
    void setHydrophobicityAttributes(bool calculate, const std::map<std::string, double>& scale);
    void setRadii(const std::map<std::string, double>& table);
    /// The names that the reports give for the tables.
    void setRadiiFilename(std::string name);
    void setRASAFilename(std::string name);
    void setHydroFilename(std::string name);

    /// The report writers read the settings of this object and the values of the structure, nothing
    /// else.
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
    sAnalysisPlan plan() const override;
    const std::map<std::string, double>& radiiTable() const override { return tables.radii; }

  private:
    sPlannedStage stageOf(eState state, std::shared_ptr<sStateColumns> columns) const;
    std::vector<sPlannedReport>
    reportsOf(std::string_view state, const std::shared_ptr<const sStateColumns>& columns) const;

    QStringList inputFiles;
    cSettings settings;
    sParameterTables tables;
};

} // namespace kelmo
