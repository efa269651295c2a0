// Reports as tables of aligned columns.
#include "base/shown_text.h"
#include "reports/report_blocks.h"
#include "reports/report_formats.h"
#include "reports/table_number.h"

#include <algorithm>
#include <string_view>

namespace kelmo {

namespace {

// Attributes of residues

constexpr std::size_t narrowWidth = 11;
constexpr std::size_t numberWidth = 16;

void appendField(std::string& text, std::string_view field, std::size_t width) {
    if (field.size() < width) {
        text.append(width - field.size(), ' ');
    }
    text.append(field);
}

/// A blank belongs to the text of these fields and is padded with it.
void appendLabel(std::string& text, const std::string& label, std::size_t width) {
    appendField(text, ' ' + label, width);
}

void appendParameter(std::string& text, std::string_view label, double value) {
    text.append(label);
    appendTableNumber(text, value, 0);
    text += '\n';
}

void appendParameter(std::string& text, std::string_view label, const std::string& value) {
    text.append(label).append(value) += '\n';
}

/// Text of a setting: a path may have line ends in it, which must not make lines of the header.
void appendSetting(std::string& text, std::string_view label, const std::string& value) {
    appendParameter(text, label, inOneLine(value, "\n\r\v\f"));
}

/// The settings that differ from what readers of a report would take for granted.
void appendStatedSettings(std::string& text, const cSettings& settings) {
    for (const std::string& key : settings.statedKeys()) {
        appendSetting(text, key + ": ", settings.valueText(key));
    }
}

void appendHeader(std::string& text, const sAttributeReport& report) {
    const cSettings& settings = report.settings;
    appendParameter(text, "pdb_id: ", report.columns.structureName);
    appendParameter(text, "analysis type: ", report.columns.state);
    appendSetting(text, "radii_file: ", settings.text("radii_filename"));
    for (const sAttribute& attribute : attributes()) {
        if (!attribute.isCalculated(settings)) {
            continue;
        }
        for (const sHeaderParameter& parameter : attribute.headers) {
            if (parameter.isOnlyIfChanged && settings.isDefault(parameter.key)) {
                continue;
            }
            if (findSetting(settings.module(), parameter.key)->kind == eSettingKind::number) {
                appendParameter(text, parameter.tableLabel, settings.number(parameter.key));
            } else {
                appendSetting(text, parameter.tableLabel, settings.valueText(parameter.key));
            }
        }
    }
    appendStatedSettings(text, settings);
    for (const sAttributeValues& values : report.columns.attributes) {
        for (const sColumnValues& column : values.columns) {
            if (column.column->ofStructure != nullptr) {
                appendParameter(text, column.column->structureLabel, column.ofStructure);
            }
        }
    }
    text += '\n';
}

/// Calls `visit` for every column whose value chains have too.
template <typename Visit>
void forEachChainColumn(const sStateColumns& columns, Visit visit) {
    for (const sAttributeValues& values : columns.attributes) {
        for (const sColumnValues& column : values.columns) {
            if (column.column->ofChain != nullptr) {
                visit(column);
            }
        }
    }
}

void appendTitles(std::string& text, const sStateColumns& columns) {
    appendField(text, "chain id|", narrowWidth);
    forEachChainColumn(columns, [&](const sColumnValues& column) {
        appendField(text, column.column->chainTitle, numberWidth);
    });
    appendField(text, "res id|", narrowWidth);
    appendField(text, "res name|", narrowWidth);
    for (const sAttributeValues& values : columns.attributes) {
        for (const sColumnValues& column : values.columns) {
            appendField(text, column.column->title, numberWidth);
        }
    }
    text += '\n';
}

void appendRow(std::string& text, const sStateColumns& columns, std::size_t chain,
               std::size_t residue) {
    // One less than its title: readers of these tables expect it so.
    appendLabel(text, columns.chains[chain].id, narrowWidth - 1);
    forEachChainColumn(columns, [&](const sColumnValues& column) {
        appendTableNumber(text, column.ofChains[chain], numberWidth);
    });
    appendLabel(text, columns.residues[residue].number, narrowWidth);
    appendLabel(text, columns.residues[residue].name, narrowWidth);
    for (const sAttributeValues& values : columns.attributes) {
        for (const sColumnValues& column : values.columns) {
            appendTableNumber(text, column.ofResidues[residue], numberWidth);
        }
    }
    text += '\n';
}

// Contacts

std::string interactionHeader(const sInteractionReport& report) {
    std::string text;
    appendParameter(text, "pdb_id: ", report.structure.name);
    appendSetting(text, "radii_filename: ", report.settings.text("radii_filename"));
    if (const sCriterion* const criterion = findCriterion(report.settings.criterion())) {
        for (const sCriterionParameter& parameter : criterion->parameters) {
            if (!parameter.isOnlyIfChanged || !report.settings.isDefault(parameter.key)) {
                appendParameter(text, parameter.reportName + ": ",
                                report.settings.valueText(parameter.key));
            }
        }
    }
    appendStatedSettings(text, report.settings);
    return text;
}

/// Widths of the columns that name a residue. Ids, numbers and names of PDB text fit into the least
/// ones; those of other formats may be longer and widen their columns.
struct sNameWidths {
    std::size_t chain = 1;
    std::size_t number = 6;
    std::size_t name = 5;

    explicit sNameWidths(const cPdbPeptide& structure) {
        for (const cProteinChain& one : structure.chains) {
            chain = std::max(chain, one.chainId.size());
        }
        for (const cChainResidue& residue : structure.residues) {
            number = std::max(number, residue.residueNumber.size() + 1);
            name = std::max(name, residue.residueName.size() + 1);
        }
    }
};

/// A line for every residue that is wanted.
template <typename IsWanted, typename AppendMore>
void writeResidueLines(cTextSink& out, const sInteractionReport& report, IsWanted isWanted,
                       AppendMore appendMore) {
    out.write(interactionHeader(report));
    const std::string criterion = criterionName(report.settings.criterion());
    const sNameWidths widths(report.structure);
    writeResidueBlocks(
        out, report.structure,
        [&](std::string& text, const cProteinChain& chain, const cChainResidue& residue) {
            if (!isWanted(residue)) {
                return;
            }
            appendField(text, chain.chainId, widths.chain);
            appendField(text, residue.residueNumber, widths.number);
            appendField(text, residue.residueName, widths.name);
            appendMore(text, residue);
            appendField(text, criterion, 18);
            text += '\n';
        });
}

// Interfaces

constexpr std::size_t countWidth = 13;

void appendInterfaceTitles(std::string& text) {
    for (const char* title : {"chain 1|", "chain 2|"}) {
        appendField(text, title, narrowWidth);
    }
    for (const char* title :
         {"buried 1|", "polar 1|", "n-polar 1|", "residues 1|", "buried 2|", "polar 2|",
          "n-polar 2|", "residues 2|", "closest|", "contacts|", "hydrophobic|", "polar|", "ionic|",
          "vanDerWaals|", "H-bonds|", "salt bridges|", "disulphides|"}) {
        appendField(text, title, countWidth);
    }
    text += '\n';
}

void appendCount(std::string& text, std::size_t count) {
    appendField(text, std::to_string(count), countWidth);
}

void appendSide(std::string& text, const sInterfaceSide& side) {
    for (const double area : {side.buried.total, side.buried.polar, side.buried.nonPolar}) {
        appendTableNumber(text, area, countWidth);
    }
    appendCount(text, side.residues.size());
}

void appendInterfaceRow(std::string& text, const sInterface& found, const cPdbPeptide& structure) {
    appendLabel(text, structure.chains[found.side1.chain].chainId, narrowWidth - 1);
    appendLabel(text, structure.chains[found.side2.chain].chainId, narrowWidth);
    appendSide(text, found.side1);
    appendSide(text, found.side2);
    appendTableNumber(text, found.closestDistance, countWidth);
    appendCount(text, found.contactPairs);
    for (const eContactType type : {eContactType::hydrophobic, eContactType::polar,
                                    eContactType::ionic, eContactType::vanDerWaals}) {
        const auto count = found.contactPairsByType.find(type);
        appendCount(text, count == found.contactPairsByType.end() ? 0 : count->second);
    }
    for (const eBond kind : {eBond::hydrogen, eBond::salt, eBond::disulphide}) {
        appendCount(text, found.count(kind));
    }
    text += '\n';
}

} // namespace

void writeAttributeTable(cTextSink& out, const sAttributeReport& report) {
    std::string text;
    appendHeader(text, report);
    appendTitles(text, report.columns);
    out.write(text);
    std::vector<std::size_t> chainOfRow;
    chainOfRow.reserve(report.columns.residues.size());
    for (std::size_t chain = 0; chain < report.columns.chains.size(); ++chain) {
        chainOfRow.insert(chainOfRow.end(), report.columns.chains[chain].residueCount, chain);
    }
    inBlocks(
        chainOfRow.size(),
        [&](std::string& block, std::size_t row) {
            appendRow(block, report.columns, chainOfRow[row], row);
        },
        [&](std::string_view block) { out.write(block); });
}

void writeContactTable(cTextSink& out, const sInteractionReport& report) {
    out.write(interactionHeader(report));
    const sNameWidths widths(report.structure);
    inBlocks(
        report.contactCount,
        [&](std::string& text, std::size_t i) {
            const sContactView contact = report.contactAt(i);
            appendField(text, contact.chain1, widths.chain);
            appendField(text, contact.residueNumber1, widths.number);
            appendField(text, contact.residueName1, widths.name);
            appendField(text, contact.chain2, widths.chain + 2);
            appendField(text, contact.residueNumber2, widths.number);
            appendField(text, contact.residueName2, widths.name);
            appendField(text, criterionName(contact.criterion), 20);
            for (const eContactType type : *contact.types) {
                appendField(text, contactTypeName(type), 18);
            }
            text += '\n';
        },
        [&](std::string_view text) { out.write(text); });
}

void writeBindingResidueTable(cTextSink& out, const sInteractionReport& report) {
    writeResidueLines(
        out, report, [](const cChainResidue& residue) { return residue.isBinding; },
        [](std::string&, const cChainResidue&) {});
}

void writeBindingStatusTable(cTextSink& out, const sInteractionReport& report) {
    writeResidueLines(
        out, report, [](const cChainResidue&) { return true; },
        [](std::string& text, const cChainResidue& residue) {
            appendField(text, residue.isBinding ? "1" : "0", 3);
        });
}

void writeInterfaceTable(cTextSink& out, const sInteractionReport& report) {
    std::string text = interactionHeader(report);
    for (const std::string& key : interfaceParameters()) {
        appendParameter(text, key + ": ", report.settings.valueText(key));
    }
    text += '\n';
    appendInterfaceTitles(text);
    out.write(text);
    inBlocks(
        report.interfaces->size(),
        [&](std::string& block, std::size_t i) {
            appendInterfaceRow(block, (*report.interfaces)[i], report.structure);
        },
        [&](std::string_view block) { out.write(block); });
}

} // namespace kelmo
