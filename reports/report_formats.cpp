#include "reports/report_formats.h"

#include "contacts/contact_resolution.h"

#include <utility>

namespace kelmo {

namespace {

sSetting formatSetting(const char* key, const char* title, const char* help) {
    return {.key = key,
            .group = eSettingGroup::formats,
            .byDefault = "1",
            .title = title,
            .help = help};
}

std::vector<sReportFormat> builtInFormats() {
    return {{formatSetting("write_xml", "XML",
                           "Write .xml reports: complete and structured, for programs."),
             ".xml", "<?xml version=\"1.0\" encoding=\"us-ascii\"?>\n", writeAttributeXml,
             writeContactXml, writeBindingResidueXml, writeBindingStatusXml, writeInterfaceXml},
            {formatSetting("write_table", "Text table",
                           "Write .tbl reports: one line per residue or contact, in columns, for "
                           "reading."),
             ".tbl", "", writeAttributeTable, writeContactTable, writeBindingResidueTable,
             writeBindingStatusTable, writeInterfaceTable}};
}

void addSettings(const sReportFormat& format) {
    for (const eModule module : {eModule::kev, eModule::vor}) {
        addSetting(module, format.setting);
    }
}

std::vector<sReportFormat>& table() {
    static std::vector<sReportFormat> formats = [] {
        std::vector<sReportFormat> builtIn = builtInFormats();
        for (const sReportFormat& format : builtIn) {
            addSettings(format);
        }
        return builtIn;
    }();
    return formats;
}

// The room of settings does not know this one: a program that links it has its settings from the
// start.
[[maybe_unused]] const auto& registered = table();

} // namespace

const std::vector<sReportFormat>& reportFormats() {
    return table();
}

void addReportFormat(sReportFormat format) {
    addSettings(format);
    table().push_back(std::move(format));
}

sInteractionReport interactionReportOf(const cPdbPeptide& structure, const cSettings& settings,
                                       const sContactList& contacts) {
    const auto viewOf = [&structure, &contacts, criterion = settings.criterion(),
                         chains = chainOfResidues(structure)](std::size_t i) {
        const sContact& contact = contacts.contacts[i];
        const cChainResidue& one = structure.residues[contact.residue1];
        const cChainResidue& other = structure.residues[contact.residue2];
        return sContactView{structure.chains[chains[contact.residue1]].chainId,
                            one.residueNumber,
                            one.residueName,
                            structure.chains[chains[contact.residue2]].chainId,
                            other.residueNumber,
                            other.residueName,
                            criterion,
                            &contacts.typeSets[contact.typeSet]};
    };
    return {structure, settings, contacts.contacts.size(), viewOf};
}

sInteractionReport interactionReportOf(const cPdbPeptide& structure, const cSettings& settings) {
    const auto viewOf = [&structure](std::size_t i) {
        const cResidueContact& contact = structure.contacts[i];
        return sContactView{contact.chain1,    contact.residueNumber1, contact.residueName1,
                            contact.chain2,    contact.residueNumber2, contact.residueName2,
                            contact.criterion, &contact.contactTypes};
    };
    return {structure, settings, structure.contacts.size(), viewOf};
}

const std::array<sInteractionReportKind, 4>& interactionReportKinds() {
    static const std::array<sInteractionReportKind, 4> kinds{
        {{"_contacts", "write_contacts", &sReportFormat::writeContacts},
         {"_binding_residues", "write_binding_residues", &sReportFormat::writeBindingResidues},
         {"_binding_status", "write_binding_state", &sReportFormat::writeBindingStatus},
         {"_interfaces", "write_interfaces", &sReportFormat::writeInterfaces}}};
    return kinds;
}

} // namespace kelmo
