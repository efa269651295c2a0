#include "run/crunkev_linux.h"

#include "analysis/attributes.h"
#include "analysis/input_settings.h"
#include "reports/report_formats.h"
#include "run/file_path.h"

#include <QIODevice>

#include <memory>
#include <sstream>
#include <utility>

namespace kelmo {

namespace {

/// Nothing that a program has not asked for.
cSettings allOff() {
    cSettings settings(eModule::kev);
    for (const sSetting& setting : settingsOf(eModule::kev)) {
        if (setting.kind == eSettingKind::flag) {
            settings.setFlag(setting.key, false);
        } else if (setting.kind == eSettingKind::number) {
            settings.setNumber(setting.key, 0.0);
        } else if (setting.kind == eSettingKind::table || setting.kind == eSettingKind::directory) {
            settings.setText(setting.key, {});
        }
    }
    return settings;
}

/// Writes bytes as they are behind what the stream has written so far.
void writeBytes(QTextStream& stream, std::string_view bytes) {
    const auto size = static_cast<qsizetype>(bytes.size());
    if (stream.device() == nullptr) {
        stream << QString::fromUtf8(bytes.data(), size);
        return;
    }
    stream.flush();
    if (stream.device()->write(bytes.data(), size) != size) {
        stream.setStatus(QTextStream::WriteFailed);
    }
}

} // namespace

cRunKEV::cRunKEV(QObject* parent) : cAnalysisRun(parent), settings(allOff()) {}

cRunKEV::~cRunKEV() = default;

void cRunKEV::setUp(const cSettings& newSettings, const sParameterTables& newTables) {
    settings = newSettings;
    tables = newTables;
}

void cRunKEV::setFilesfForAnalysis(const QStringList& files) {
    inputFiles = files;
}

void cRunKEV::setOutputDirectoryName(const QString& directory) {
    settings.setText("output_dir", pathToBytes(directory));
}

void cRunKEV::setOutputTypes(bool xml, bool table) {
    settings.setFlag("write_xml", xml);
    settings.setFlag("write_table", table);
}

void cRunKEV::setAnalysisTypes(bool bound, bool chains) {
    settings.setFlag("analyze_bound", bound);
    settings.setFlag("analyze_unbound", chains);
}

void cRunKEV::setASAAttributes(bool calculate, double probeRadius, double zSlice, bool write) {
    settings.setFlag("calc_asa", calculate);
    settings.setNumber("r_solvent", probeRadius);
    settings.setNumber("z_slice", zSlice);
    settings.setFlag("write_asa", write);
}

void cRunKEV::setDPXAttributes(bool calculate) {
    settings.setFlag("calc_dpx", calculate);
}

void cRunKEV::setCXAttributes(bool calculate, double sphereRadius, double atomVolume) {
    settings.setFlag("calc_cx", calculate);
    settings.setNumber("cx_threshold", sphereRadius);
    settings.setNumber("cx_volume", atomVolume);
}

void cRunKEV::setRASAAttributes(bool calculate, const std::map<std::string, sAsa>& standards) {
    settings.setFlag("calc_rasa", calculate);
    tables.standardAreas = standards;
}

void cRunKEV::setHydrophobicityAttributes(bool calculate,
                                          const std::map<std::string, double>& scale) {
    settings.setFlag("calc_hydro", calculate);
    tables.hydrophobicity = scale;
}

void cRunKEV::setRadii(const std::map<std::string, double>& table) {
    tables.radii = table;
}

void cRunKEV::setRadiiFilename(std::string name) {
    settings.setText("radii_filename", std::move(name));
}

void cRunKEV::setRASAFilename(std::string name) {
    settings.setText("standard_asa", std::move(name));
}

void cRunKEV::setHydroFilename(std::string name) {
    settings.setText("hydro_file", std::move(name));
}

QString cRunKEV::reportDirectory() const {
    return withTrailingSeparator(pathFromBytes(settings.text("output_dir")));
}

sAnalysisPlan cRunKEV::plan() const {
    sAnalysisPlan plan{.announcement = "Analysing structure of peptide from ",
                       .conclusion = "Structure of peptide from ",
                       .isListClosed = true,
                       .reading = readOptionsOf(settings)};
    const bool isDifferenceWanted = settings.flag("write_difference");
    std::map<eState, std::shared_ptr<sStateColumns>> columns;
    for (const eState state : {eState::bound, eState::unbound}) {
        const bool isWanted =
            settings.flag(state == eState::bound ? "analyze_bound" : "analyze_unbound");
        if (isWanted || isDifferenceWanted) {
            columns[state] = std::make_shared<sStateColumns>();
            plan.stages.push_back(stageOf(state, columns[state]));
            if (isWanted) {
                plan.stages.back().reports = reportsOf(nameOf(state), columns[state]);
            }
        }
    }
    if (isDifferenceWanted) {
        const auto difference = std::make_shared<sStateColumns>();
        plan.stages.push_back({.calculate =
                                   [columns, difference](cPdbPeptide&, const auto&) {
                                       *difference = differenceOf(*columns.at(eState::unbound),
                                                                  *columns.at(eState::bound));
                                   },
                               .reports = reportsOf("difference", difference)});
    }
    return plan;
}

sPlannedStage cRunKEV::stageOf(eState state, std::shared_ptr<sStateColumns> columns) const {
    sPlannedStage stage;
    stage.calculate = [this, state, columns](cPdbPeptide& structure,
                                             const std::function<void()>& safePoint) {
        calculateAttributes(structure, state, {settings, tables}, safePoint);
        *columns = columnsOf(structure, nameOf(state), settings);
    };
    stage.record = [this, state, columns](const cPdbPeptide&, sStructureRecord& record) {
        // The difference of the states needs the columns once more.
        takeState(state,
                  settings.flag("write_difference") ? sStateColumns(*columns) : std::move(*columns),
                  record);
    };
    return stage;
}

std::vector<sPlannedReport>
cRunKEV::reportsOf(std::string_view state,
                   const std::shared_ptr<const sStateColumns>& columns) const {
    std::vector<sPlannedReport> reports;
    for (std::size_t i = 0; i < reportFormats().size(); ++i) {
        const sReportFormat& format = reportFormats()[i];
        if (!format.isWanted(settings) || format.writeAttributes == nullptr) {
            continue;
        }
        const auto write = [this, columns, &format](cTextSink& out) {
            out.write(format.prologue);
            format.writeAttributes(out, {*columns, settings});
        };
        reports.push_back({'_' + std::string(state) + format.suffix, i, write});
    }
    return reports;
}

void cRunKEV::writePeptideAttributeXml(cXmlWriter& writer, cPdbPeptide& peptide,
                                       std::string analysisType) {
    cStreamSink out(writer);
    writeAttributeXml(out, {columnsOf(peptide, analysisType, settings), settings});
}

void cRunKEV::writeChainAttributeXml(cXmlWriter& writer, cProteinChain& chain, bool standalone) {
    cStreamSink out(writer);
    const sStateColumns columns = columnsOf(chain, settings);
    (standalone ? writeChainXml : writeChainElementXml)(out, {columns, settings});
}

void cRunKEV::writePeptideAttributeTable(QTextStream& stream, cPdbPeptide& peptide,
                                         std::string analysisType) {
    stream.setRealNumberPrecision(5);
    std::ostringstream text;
    cStreamSink out(text);
    writeAttributeTable(out, {columnsOf(peptide, analysisType, settings), settings});
    writeBytes(stream, text.view());
}

} // namespace kelmo
