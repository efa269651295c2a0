// The worker of the interaction module: contacts between chains and binding residues, file by file.
#pragma once

#include "run/analysis_run.h"
#include "xml/xml_writer.h"

#include <iosfwd>
#include <map>
#include <string>

namespace kelmo {

class cTextSink;
struct sInteractionReport;

/// Its settings are plain members, filled while it is idle by hand or by setUp(); see cAnalysisRun
/// for how it runs and stops.
class cRunVOR : public cAnalysisRun {
    Q_OBJECT
  public:
    explicit cRunVOR(QObject* parent = nullptr);
    ~cRunVOR() override;

    void setUp(const cSettings& newSettings, const sParameterTables& tables) override;
    void setInputFiles(const QStringList& files) override { inputFiles = files; }

    eInteractionCriterion criterion = eInteractionCriterion::none;
    double threshold = 0.0;   ///< Å for the distance criteria, Å² for the change of area
    double zSlice = 0.0;      ///< slice thickness of the area criterion, Å
    double probeRadius = 0.0; ///< probe of the area criterion, Å
    bool xmlOutput = false;
    bool tableOutput = false;
    bool writeContacts = false;
    bool writeBindingResidues = false;
    bool writeBindingStatus = false;
    contactMap contactRules; ///< for the table-driven criterion
    std::map<std::string, double> radii;
    std::string radiiFileName;
    QString outputDirectory;
    QStringList inputFiles;

    /// The names by which the reports call types and criteria.
    static std::string getContactTypeString(eContactType type);
    static std::string getInteractionCriterionString(eInteractionCriterion criterion);

    /// The report writers read the members and settings of this object and the structure, nothing
    /// else.
    void writeContactsXml(cXmlWriter& writer, cPdbPeptide& peptide);
    void writeHotSpotsXml(cXmlWriter& writer, cPdbPeptide& peptide);
    void writeResidueBindingStatusXml(cXmlWriter& writer, cPdbPeptide& peptide);
    void writeContactsTable(std::ostream& out, cPdbPeptide& peptide);
    void writeHotSpotsTable(std::ostream& out, cPdbPeptide& peptide);
    void writeResidueBindingStatusTable(std::ostream& out, cPdbPeptide& peptide);

  protected:
    const QStringList& pathsToAnalyse() const override { return inputFiles; }
    QString reportDirectory() const override;
    sAnalysisPlan plan() const override;
    const std::map<std::string, double>& radiiTable() const override { return radii; }

  private:
    /// Writes one report of the interaction module.
    using tReportWriter = void (*)(cTextSink& out, const sInteractionReport& report);

    /// Those of setUp() with what the members say.
    cSettings currentSettings() const;
    void writeReport(std::ostream& out, const cPdbPeptide& peptide, tReportWriter write) const;

    cSettings settings;
};

} // namespace kelmo
