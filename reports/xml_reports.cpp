// Reports as XML documents.
#include "base/stop_request.h"
#include "reports/report_blocks.h"
#include "reports/report_formats.h"
#include "reports/report_namespaces.h"
#include "xml/xml_lines.h"
#include "xml/xml_text.h"

#include <atomic>
#include <string_view>

namespace kelmo {

namespace {

void appendText(std::string& text, std::string_view name, std::string_view value, int indent) {
    appendXmlElement(text, name, escapedXmlText(value), indent);
}

// Attributes of residues

/// A group's values, those that `valueOf` gives for its columns, in the order of XML.
template <typename ValueOf>
void appendGroup(std::string& text, const sAttributeValues& values, int indent, ValueOf valueOf) {
    const std::string& group = values.attribute->xmlGroup;
    const int inner = group.empty() ? indent : indent + 2;
    if (!group.empty()) {
        appendXmlStart(text, group, indent);
    }
    for (const std::size_t place : values.xmlOrder) {
        const sColumnValues& column = values.columns[place];
        appendXmlElement(text, column.column->xmlName, valueOf(column), inner);
    }
    if (!group.empty()) {
        appendXmlEnd(text, group, indent, true);
    }
}

bool hasChainValues(const sAttributeValues& values) {
    return !values.columns.empty() && values.columns.front().column->ofChain != nullptr;
}

bool hasStructureValues(const sAttributeValues& values) {
    return !values.columns.empty() && values.columns.front().column->ofStructure != nullptr;
}

/// Only if the setting is written at all.
void appendParameter(std::string& text, const cSettings& settings, const std::string& key,
                     std::string_view name) {
    if (!settings.isWritten(key)) {
        return;
    }
    if (findSetting(settings.module(), key)->kind == eSettingKind::number) {
        appendXmlElement(text, name, settings.number(key), 2);
    } else {
        appendText(text, name, settings.valueText(key), 2);
    }
}

/// The settings that differ from what readers of a report would take for granted.
void appendStatedSettings(std::string& text, const cSettings& settings) {
    for (const std::string& key : settings.statedKeys()) {
        appendText(text, key, settings.valueText(key), 2);
    }
}

/// The parameters of all attributes that were computed; in the document of a single chain, fewer.
void appendParameters(std::string& text, const cSettings& settings, bool isChainDocument) {
    for (const sAttribute& attribute : attributes()) {
        for (const sHeaderParameter& parameter : attribute.headers) {
            if (attribute.isCalculated(settings) &&
                (parameter.isInChainDocuments || !isChainDocument)) {
                appendParameter(text, settings, parameter.key, parameter.xmlName);
            }
        }
    }
    appendStatedSettings(text, settings);
}

void appendResidue(std::string& text, const sStateColumns& columns, std::size_t residue,
                   int indent) {
    appendXmlStart(text, "residue", indent);
    appendText(text, "name", columns.residues[residue].name, indent + 2);
    appendText(text, "serial_id", columns.residues[residue].number, indent + 2);
    for (const sAttributeValues& values : columns.attributes) {
        appendGroup(text, values, indent + 2,
                    [&](const sColumnValues& column) { return column.ofResidues[residue]; });
    }
    appendXmlEnd(text, "residue", indent, true);
}

/// What stands between the tags of a chain, whose own indentation is `base`.
void writeChainContent(cTextSink& out, const sStateColumns& columns, std::size_t chain, int base) {
    const sChainRow& row = columns.chains[chain];
    std::string text;
    appendText(text, "serial_id", row.id, base + 2);
    for (const sAttributeValues& values : columns.attributes) {
        if (hasChainValues(values)) {
            appendGroup(text, values, base + 2,
                        [&](const sColumnValues& column) { return column.ofChains[chain]; });
        }
    }
    appendXmlStart(text, "residues", base + 2);
    out.write(text);
    inBlocks(
        row.residueCount,
        [&](std::string& block, std::size_t i) {
            appendResidue(block, columns, row.firstResidue + i, base + 4);
        },
        [&](std::string_view block) { out.write(block); });
    text.clear();
    appendXmlEnd(text, "residues", base + 2, true);
    out.write(text);
}

void writeChainElement(cTextSink& out, const sStateColumns& columns, std::size_t chain) {
    constexpr int base = 4;
    std::string text;
    appendXmlStart(text, "chain", base);
    out.write(text);
    writeChainContent(out, columns, chain, base);
    text.clear();
    appendXmlEnd(text, "chain", base, true);
    out.write(text);
}

// Contacts

/// Writes texts as they are, which readers of these reports rely on, and remembers whether parsers
/// take them. For several threads.
class cRawTexts {
  public:
    void append(std::string& text, std::string_view name, std::string_view value, int indent = 6) {
        if (!isXmlText(value)) {
            areParsable = false;
        }
        appendXmlElement(text, name, value, indent);
    }
    void tell(cTextSink& out) const {
        if (!areParsable) {
            out.markUnparsable();
        }
    }

  private:
    std::atomic<bool> areParsable = true;
};

/// The beginning of a document and its list.
std::string interactionHead(const sInteractionReport& report, const char* root, const char* list,
                            cRawTexts& raw) {
    std::string text;
    appendXmlStart(text, root + std::string(reportNamespaces), 0);
    raw.append(text, "pdb_id", report.structure.name, 2);
    raw.append(text, "radii_filename", report.settings.text("radii_filename"), 2);
    if (const sCriterion* const criterion = findCriterion(report.settings.criterion())) {
        for (const sCriterionParameter& parameter : criterion->parameters) {
            appendParameter(text, report.settings, parameter.key, parameter.reportName);
        }
    }
    appendStatedSettings(text, report.settings);
    appendXmlStart(text, list, 2);
    return text;
}

std::string interactionEnd(const char* root, const char* list) {
    std::string text;
    appendXmlEnd(text, list, 2, true);
    appendXmlEnd(text, root, 0, true);
    return text;
}

void appendContactTypes(std::string& text, const std::set<eContactType>& types) {
    if (types.empty()) {
        return;
    }
    appendXmlStart(text, "contact_types", 6);
    for (const eContactType type : types) {
        appendXmlElement(text, "contact_type", contactTypeName(type), 8);
    }
    appendXmlEnd(text, "contact_types", 6, true);
}

/// A document with an element for every residue that is wanted.
template <typename IsWanted, typename AppendMore>
void writeResidueDocument(cTextSink& out, const sInteractionReport& report, const char* root,
                          const char* list, const char* element, IsWanted isWanted,
                          AppendMore appendMore) {
    cRawTexts raw;
    out.write(interactionHead(report, root, list, raw));
    const std::string criterion = criterionName(report.settings.criterion());
    writeResidueBlocks(
        out, report.structure,
        [&](std::string& text, const cProteinChain& chain, const cChainResidue& residue) {
            if (!isWanted(residue)) {
                return;
            }
            appendXmlStart(text, element, 4);
            appendXmlElement(text, "interaction_criterion", criterion, 6);
            raw.append(text, "chain_id", chain.chainId);
            raw.append(text, "residue_id", residue.residueNumber);
            raw.append(text, "residue_name", residue.residueName);
            appendMore(text, residue);
            appendXmlEnd(text, element, 4, true);
        });
    out.write(interactionEnd(root, list));
    raw.tell(out);
}

} // namespace

void writeAttributeXml(cTextSink& out, const sAttributeReport& report) {
    const sStateColumns& columns = report.columns;
    std::string text;
    appendXmlStart(text, "cPdbPeptide" + std::string(reportNamespaces), 0);
    appendText(text, "pdb_id", columns.structureName, 2);
    appendText(text, "analysis_type", columns.state, 2);
    appendText(text, "radii_file", report.settings.text("radii_filename"), 2);
    appendParameters(text, report.settings, false);
    for (const sAttributeValues& values : columns.attributes) {
        if (hasStructureValues(values)) {
            appendGroup(text, values, 2,
                        [](const sColumnValues& column) { return column.ofStructure; });
        }
    }
    appendXmlStart(text, "chains", 2);
    out.write(text);
    for (std::size_t chain = 0; chain < columns.chains.size(); ++chain) {
        writeChainElement(out, columns, chain);
    }
    text.clear();
    appendXmlEnd(text, "chains", 2, true);
    appendXmlEnd(text, "cPdbPeptide", 0, false);
    out.write(text);
}

void writeChainXml(cTextSink& out, const sAttributeReport& report) {
    constexpr int base = 2;
    std::string text;
    appendXmlStart(text, "cProteinChain" + std::string(reportNamespaces), 0);
    appendText(text, "peptide_id", report.columns.structureName, 2);
    appendParameters(text, report.settings, true);
    out.write(text);
    writeChainContent(out, report.columns, 0, base);
    text.clear();
    appendXmlEnd(text, "cProteinChain", 0, true);
    out.write(text);
}

void writeChainElementXml(cTextSink& out, const sAttributeReport& report) {
    writeChainElement(out, report.columns, 0);
}

void writeContactXml(cTextSink& out, const sInteractionReport& report) {
    cRawTexts raw;
    out.write(interactionHead(report, "peptideResidueContacts", "contacts", raw));
    inBlocks(
        report.contactCount,
        [&](std::string& text, std::size_t i) {
            const sContactView contact = report.contactAt(i);
            appendXmlStart(text, "contact", 4);
            appendXmlElement(text, "interaction_criterion", criterionName(contact.criterion), 6);
            raw.append(text, "chain_id_1", contact.chain1);
            raw.append(text, "residue_id_1", contact.residueNumber1);
            raw.append(text, "residue_name_1", contact.residueName1);
            raw.append(text, "chain_id_2", contact.chain2);
            raw.append(text, "residue_id_2", contact.residueNumber2);
            raw.append(text, "residue_name_2", contact.residueName2);
            appendContactTypes(text, *contact.types);
            appendXmlEnd(text, "contact", 4, true);
        },
        [&](std::string_view text) { out.write(text); });
    out.write(interactionEnd("peptideResidueContacts", "contacts"));
    raw.tell(out);
}

void writeBindingResidueXml(cTextSink& out, const sInteractionReport& report) {
    writeResidueDocument(
        out, report, "peptideBindingResidues", "binding_residues", "binding_residue",
        [](const cChainResidue& residue) { return residue.isBinding; },
        [](std::string&, const cChainResidue&) {});
}

void writeBindingStatusXml(cTextSink& out, const sInteractionReport& report) {
    writeResidueDocument(
        out, report, "peptideResidueBindingStatus", "residues", "residue",
        [](const cChainResidue&) { return true; },
        [](std::string& text, const cChainResidue& residue) {
            appendXmlElement(text, "binding_status", residue.isBinding ? "1" : "0", 6);
        });
}

} // namespace kelmo
