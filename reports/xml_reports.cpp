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

void appendParameter(std::string& text, const cSettings& settings, const std::string& key,
                     std::string_view name, bool isOnlyIfChanged) {
    if (isOnlyIfChanged && settings.isDefault(key)) {
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
                appendParameter(text, settings, parameter.key, parameter.xmlName,
                                parameter.isOnlyIfChanged);
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

void appendCriterionParameters(std::string& text, const cSettings& settings) {
    if (const sCriterion* const criterion = findCriterion(settings.criterion())) {
        for (const sCriterionParameter& parameter : criterion->parameters) {
            appendParameter(text, settings, parameter.key, parameter.reportName,
                            parameter.isOnlyIfChanged);
        }
    }
}

/// The beginning of a document and its list.
std::string interactionHead(const sInteractionReport& report, const char* root, const char* list,
                            cRawTexts& raw) {
    std::string text;
    appendXmlStart(text, root + std::string(reportNamespaces), 0);
    raw.append(text, "pdb_id", report.structure.name, 2);
    raw.append(text, "radii_filename", report.settings.text("radii_filename"), 2);
    appendCriterionParameters(text, report.settings);
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

// Interfaces. Texts are escaped.

void appendBuriedArea(std::string& text, std::string_view name, const sBuriedArea& area) {
    appendXmlStart(text, name, 6);
    appendXmlElement(text, "total", area.total, 8);
    appendXmlElement(text, "non_polar", area.nonPolar, 8);
    appendXmlElement(text, "polar", area.polar, 8);
    appendXmlEnd(text, name, 6, true);
}

void appendCount(std::string& text, std::string_view name, std::size_t count, int indent) {
    appendXmlElement(text, name, std::to_string(count), indent);
}

void appendInterfaceResidues(std::string& text, std::string_view name, const sInterfaceSide& side,
                             const cPdbPeptide& structure) {
    appendXmlStart(text, name, 6);
    for (const sInterfaceResidue& one : side.residues) {
        const cChainResidue& residue = structure.residues[one.residue];
        appendXmlStart(text, "residue", 8);
        appendText(text, "residue_id", residue.residueNumber, 10);
        appendText(text, "residue_name", residue.residueName, 10);
        appendXmlElement(text, "buried_area", one.buried, 10);
        appendXmlEnd(text, "residue", 8, true);
    }
    appendXmlEnd(text, name, 6, true);
}

void appendBond(std::string& text, const sInterfaceBond& bond, const cPdbPeptide& structure) {
    appendXmlStart(text, bondName(bond.kind), 8);
    for (const auto& [side, position] : {std::pair{"1", bond.atom1}, {"2", bond.atom2}}) {
        const cResidueAtom& atom = structure.atoms[position];
        appendText(text, std::string("residue_id_") + side, atom.residue->residueNumber, 10);
        appendText(text, std::string("residue_name_") + side, atom.residue->residueName, 10);
        appendText(text, std::string("atom_") + side, atom.atomName, 10);
    }
    appendXmlElement(text, "distance", bond.distance, 10);
    appendXmlEnd(text, bondName(bond.kind), 8, true);
}

void appendInterface(std::string& text, const sInterface& found, const sInteractionReport& report) {
    const cPdbPeptide& structure = report.structure;
    appendXmlStart(text, "interface", 4);
    appendText(text, "interaction_criterion", criterionName(report.settings.criterion()), 6);
    appendText(text, "chain_id_1", structure.chains[found.side1.chain].chainId, 6);
    appendText(text, "chain_id_2", structure.chains[found.side2.chain].chainId, 6);
    appendBuriedArea(text, "buried_area_1", found.side1.buried);
    appendBuriedArea(text, "buried_area_2", found.side2.buried);
    appendXmlElement(text, "closest_distance", found.closestDistance, 6);
    appendCount(text, "contact_pairs", found.contactPairs, 6);
    if (!found.contactPairsByType.empty()) {
        appendXmlStart(text, "contact_pairs_by_type", 6);
        for (const auto& [type, count] : found.contactPairsByType) {
            appendCount(text, contactTypeName(type), count, 8);
        }
        appendXmlEnd(text, "contact_pairs_by_type", 6, true);
    }
    appendCount(text, "hydrogen_bonds", found.count(eBond::hydrogen), 6);
    appendCount(text, "salt_bridges", found.count(eBond::salt), 6);
    appendCount(text, "disulphides", found.count(eBond::disulphide), 6);
    appendInterfaceResidues(text, "interface_residues_1", found.side1, structure);
    appendInterfaceResidues(text, "interface_residues_2", found.side2, structure);
    appendXmlStart(text, "bonds", 6);
    for (const sInterfaceBond& bond : found.bonds) {
        appendBond(text, bond, structure);
    }
    appendXmlEnd(text, "bonds", 6, true);
    appendXmlEnd(text, "interface", 4, true);
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

void writeInterfaceXml(cTextSink& out, const sInteractionReport& report) {
    std::string text;
    appendXmlStart(text, "peptideInterfaces" + std::string(reportNamespaces), 0);
    appendText(text, "pdb_id", report.structure.name, 2);
    appendText(text, "radii_filename", report.settings.text("radii_filename"), 2);
    appendCriterionParameters(text, report.settings);
    appendStatedSettings(text, report.settings);
    for (const std::string& key : interfaceParameters()) {
        appendParameter(text, report.settings, key, key, false);
    }
    appendXmlStart(text, "interfaces", 2);
    out.write(text);
    inBlocks(
        report.interfaces->size(),
        [&](std::string& block, std::size_t i) {
            appendInterface(block, (*report.interfaces)[i], report);
        },
        [&](std::string_view block) { out.write(block); });
    out.write(interactionEnd("peptideInterfaces", "interfaces"));
}

} // namespace kelmo
