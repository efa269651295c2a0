#include "run/run_vor_linux.h"

#include "analysis/criteria.h"
#include "analysis/input_settings.h"
#include "base/shown_text.h"
#include "contacts/interfaces.h"
#include "reports/report_formats.h"
#include "run/file_path.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace kelmo {

namespace {

/// What the search of a file has found, for its reports.
struct sSearchResult {
    const cPdbPeptide* structure = nullptr;
    sContactList contacts;
    std::vector<sInterface> interfaces;
};

sFindings findingsOf(const sSearchResult& search, const sCriterion* criterion) {
    sFindings findings;
    if (criterion != nullptr && criterion->makesContacts) {
        findings.contacts = search.contacts.contacts.size() / 2; // each is held in both directions
    }
    findings.bindingResidues = static_cast<std::size_t>(
        std::ranges::count(search.structure->residues, true, &cChainResidue::isBinding));
    return findings;
}

std::string oneChainText(const cPdbPeptide& structure) {
    return "There is one chain, " + displayedText(structure.chains.front().chainId) +
           ": no contacts between chains are possible";
}

void tellOf(const sSearchResult& search, const sCriterion* criterion, cPlanFollower& follower) {
    if (search.structure->chains.size() == 1) {
        follower.tell({eSeverity::progress, oneChainText(*search.structure)});
    }
    follower.found(findingsOf(search, criterion));
}

sInterfaceOptions interfaceOptionsOf(const cSettings& settings) {
    return {.probeRadius = settings.number("r_solvent"),
            .zSlice = settings.number("z_slice"),
            .form = settings.asaForm(),
            .deltaAsa = settings.number("delta_asa")};
}

} // namespace

cRunVOR::cRunVOR(QObject* parent) : cAnalysisRun(parent), settings(eModule::vor) {
    for (const sSetting& setting : settingsOf(eModule::vor)) {
        if (setting.kind == eSettingKind::flag) {
            settings.setFlag(setting.key, false);
        }
    }
}

cRunVOR::~cRunVOR() = default;

void cRunVOR::setUp(const cSettings& newSettings, const sParameterTables& tables) {
    settings = newSettings;
    criterion = settings.criterion();
    zSlice = settings.number("z_slice");
    probeRadius = settings.number("r_solvent");
    threshold =
        settings.number(criterion == eInteractionCriterion::dovreth ? "delta_asa" : "threshold");
    xmlOutput = settings.flag("write_xml");
    tableOutput = settings.flag("write_table");
    writeContacts = settings.flag("write_contacts");
    writeBindingResidues = settings.flag("write_binding_residues");
    writeBindingStatus = settings.flag("write_binding_state");
    radiiFileName = settings.text("radii_filename");
    outputDirectory = pathFromBytes(settings.text("output_dir"));
    radii = tables.radii;
    contactRules = tables.contactRules;
}

cSettings cRunVOR::currentSettings() const {
    cSettings current = settings;
    current.setNumber("contact_criterion", static_cast<double>(criterion));
    current.setNumber(criterion == eInteractionCriterion::dovreth ? "delta_asa" : "threshold",
                      threshold);
    current.setNumber("z_slice", zSlice);
    current.setNumber("r_solvent", probeRadius);
    current.setFlag("write_xml", xmlOutput);
    current.setFlag("write_table", tableOutput);
    current.setFlag("write_contacts", writeContacts);
    current.setFlag("write_binding_residues", writeBindingResidues);
    current.setFlag("write_binding_state", writeBindingStatus);
    current.setText("radii_filename", radiiFileName);
    return current;
}

QString cRunVOR::reportDirectory() const {
    return outputDirectory.endsWith(u'/') ? outputDirectory : outputDirectory + u'/';
}

sAnalysisPlan cRunVOR::plan() const {
    const auto current = std::make_shared<const cSettings>(currentSettings());
    const auto search = std::make_shared<sSearchResult>();
    sPlannedStage stage;
    stage.calculate = [this, current, search](cPdbPeptide& structure,
                                              const std::function<void()>& safePoint) {
        search->structure = &structure;
        search->contacts = {};
        if (const sCriterion* const chosen = findCriterion(criterion)) {
            search->contacts = chosen->find(structure, {*current, contactRules});
        }
        if (current->flag("write_interfaces")) {
            safePoint();
            search->interfaces =
                findInterfaces(structure, search->contacts, interfaceOptionsOf(*current));
        }
    };
    stage.tell = [search, chosen = findCriterion(criterion)](auto& follower) {
        tellOf(*search, chosen, follower);
    };
    stage.record = [search](const cPdbPeptide& structure, sStructureRecord& record) {
        takeInteractions(structure, std::move(search->contacts), record);
    };
    for (std::size_t i = 0; i < reportFormats().size(); ++i) {
        const sReportFormat& format = reportFormats()[i];
        for (const sInteractionReportKind& kind : interactionReportKinds()) {
            const auto writeReport = format.*kind.write;
            if (!format.isWanted(*current) || !current->flag(kind.switchKey) ||
                writeReport == nullptr) {
                continue;
            }
            const auto write = [current, search, &format, writeReport](cTextSink& out) {
                out.write(format.prologue);
                sInteractionReport report =
                    interactionReportOf(*search->structure, *current, search->contacts);
                report.interfaces = &search->interfaces;
                writeReport(out, report);
            };
            stage.reports.push_back({kind.fileNameEnd + format.suffix, i, write});
        }
    }
    return {.announcement = "Analysing contacts of peptide from ",
            .conclusion = "Contacts of peptide from ",
            .isAnnouncedUnopened = true,
            .reading = readOptionsOf(*current),
            .stages = {std::move(stage)}};
}

std::string cRunVOR::getContactTypeString(eContactType type) {
    return contactTypeName(type);
}

std::string cRunVOR::getInteractionCriterionString(eInteractionCriterion criterion) {
    return criterionName(criterion);
}

void cRunVOR::writeReport(std::ostream& out, const cPdbPeptide& peptide,
                          tReportWriter write) const {
    const cSettings current = currentSettings();
    cStreamSink sink(out);
    write(sink, interactionReportOf(peptide, current));
}

void cRunVOR::writeContactsXml(cXmlWriter& writer, cPdbPeptide& peptide) {
    writeReport(writer, peptide, kelmo::writeContactXml);
}

void cRunVOR::writeHotSpotsXml(cXmlWriter& writer, cPdbPeptide& peptide) {
    writeReport(writer, peptide, kelmo::writeBindingResidueXml);
}

void cRunVOR::writeResidueBindingStatusXml(cXmlWriter& writer, cPdbPeptide& peptide) {
    writeReport(writer, peptide, kelmo::writeBindingStatusXml);
}

void cRunVOR::writeContactsTable(std::ostream& out, cPdbPeptide& peptide) {
    writeReport(out, peptide, kelmo::writeContactTable);
}

void cRunVOR::writeHotSpotsTable(std::ostream& out, cPdbPeptide& peptide) {
    writeReport(out, peptide, kelmo::writeBindingResidueTable);
}

void cRunVOR::writeResidueBindingStatusTable(std::ostream& out, cPdbPeptide& peptide) {
    writeReport(out, peptide, kelmo::writeBindingStatusTable);
}

} // namespace kelmo
