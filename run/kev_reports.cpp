// The reports of the structure module: cRunKEV's XML documents and tables.
#include "run/crunkev_linux.h"
#include "run/report_blocks.h"
#include "run/report_namespaces.h"
#include "run/table_number.h"
#include "xml/xml_lines.h"
#include "xml/xml_text.h"

#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace kelmo {

namespace {

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

template <std::size_t count>
void appendTitles(std::string& text, const std::array<std::string_view, count>& titles) {
    for (const std::string_view title : titles) {
        appendField(text, title, numberWidth);
    }
}

template <typename Owner>
void appendAreas(std::string& text, const Owner& owner) {
    for (const double area : {owner.totalAsa, owner.backboneAsa, owner.sideChainAsa, owner.polarAsa,
                              owner.nonPolarAsa}) {
        appendTableNumber(text, area, numberWidth);
    }
}

void appendParameter(std::string& text, std::string_view label, double value) {
    text.append(label);
    appendTableNumber(text, value, 0);
    text += '\n';
}

void appendParameter(std::string& text, std::string_view label, const std::string& value) {
    text.append(label).append(value) += '\n';
}

void writeText(cXmlWriter& writer, const char* name, const std::string& text, int indent) {
    writer.writeElement(name, escapedXmlText(text), indent);
}

/// Five areas; mind that non-polar comes before polar here, unlike in the tables.
void appendAreaGroup(std::string& text, const char* name, const std::array<double, 5>& areas,
                     int indent) {
    appendXmlStart(text, name, indent);
    appendXmlElement(text, "total", areas[0], indent + 2);
    appendXmlElement(text, "backbone", areas[1], indent + 2);
    appendXmlElement(text, "side_chain", areas[2], indent + 2);
    appendXmlElement(text, "non_polar", areas[3], indent + 2);
    appendXmlElement(text, "polar", areas[4], indent + 2);
    appendXmlEnd(text, name, indent, true);
}

template <typename Owner>
void appendAreaElements(std::string& text, const Owner& owner, int indent) {
    appendAreaGroup(
        text, "asa",
        {owner.totalAsa, owner.backboneAsa, owner.sideChainAsa, owner.nonPolarAsa, owner.polarAsa},
        indent);
}

template <typename Owner>
void writeAreas(cXmlWriter& writer, const Owner& owner, int indent) {
    std::string text;
    appendAreaElements(text, owner, indent);
    writer.writeText(text);
}

void appendStatistics(std::string& text, const char* name, const std::array<double, 6>& values,
                      int indent) {
    constexpr std::array<const char*, 6> names{"average",
                                               "average_deviation",
                                               "average_side_chain",
                                               "average_side_chain_deviation",
                                               "maximum",
                                               "minimum"};
    appendXmlStart(text, name, indent);
    for (std::size_t i = 0; i < names.size(); ++i) {
        appendXmlElement(text, names[i], values[i], indent + 2);
    }
    appendXmlEnd(text, name, indent, true);
}

std::array<double, 6> depthStatistics(const cChainResidue& residue) {
    return {residue.averageDepthIndex,
            residue.depthIndexDeviation,
            residue.averageSideChainDepthIndex,
            residue.sideChainDepthIndexDeviation,
            residue.maxDepthIndex,
            residue.minDepthIndex};
}

std::array<double, 6> protrusionStatistics(const cChainResidue& residue) {
    return {residue.averageProtrusionIndex,
            residue.protrusionIndexDeviation,
            residue.averageSideChainProtrusionIndex,
            residue.sideChainProtrusionIndexDeviation,
            residue.maxProtrusionIndex,
            residue.minProtrusionIndex};
}

} // namespace

void cRunKEV::writePeptideAttributeXml(cXmlWriter& writer, cPdbPeptide& peptide,
                                       std::string analysisType) {
    writer.writeStart("cPdbPeptide" + std::string(reportNamespaces), 0);
    writeText(writer, "pdb_id", peptide.name, 2);
    writeText(writer, "analysis_type", analysisType, 2);
    writeText(writer, "radii_file", radiiFileName, 2);
    if (calculateAsa) {
        writer.writeElement("ASA_zSice", zSlice, 2);
        writer.writeElement("ASA_rSolvent", solventRadius, 2);
    }
    if (calculateRelativeAsa) {
        writeText(writer, "rasa_filename", standardAsaFileName, 2);
    }
    if (calculateProtrusion) {
        writer.writeElement("CX_sRadius", cxThreshold, 2);
        writer.writeElement("CX_vAtom", cxAtomVolume, 2);
    }
    if (calculateHydrophobicity) {
        writeText(writer, "hydrophobicity_filename", hydrophobicityFileName, 2);
    }
    if (writeAsa) {
        writeAreas(writer, peptide, 2);
    }
    writer.writeStart("chains", 2);
    for (cProteinChain& chain : peptide.chains) {
        writeChainAttributeXml(writer, chain, false);
    }
    writer.writeEnd("chains", 2, true);
    writer.writeEnd("cPdbPeptide", 0, false);
}

void cRunKEV::writeChainAttributeXml(cXmlWriter& writer, cProteinChain& chain, bool standalone) {
    const int base = standalone ? 2 : 4;
    if (standalone) {
        writer.writeStart("cProteinChain" + std::string(reportNamespaces), 0);
        writeText(writer, "peptide_id", chain.peptideName, 2);
        if (calculateAsa) {
            writer.writeElement("ASA_zSice", zSlice, 2);
            writer.writeElement("ASA_rSolvent", solventRadius, 2);
        }
        if (calculateProtrusion) {
            writer.writeElement("CX_sRadius", cxThreshold, 2);
            writer.writeElement("CX_vAtom", cxAtomVolume, 2);
        }
    } else {
        writer.writeStart("chain", base);
    }
    writeText(writer, "serial_id", chain.chainId, base + 2);
    if (writeAsa) {
        writeAreas(writer, chain, base + 2);
    }
    writer.writeStart("residues", base + 2);
    inBlocks(
        chain.residueCount,
        [&](std::string& text, std::size_t i) {
            appendResidueXml(text, chain.residues[i], base + 4);
        },
        [&](std::string_view text) { writer.writeText(text); });
    writer.writeEnd("residues", base + 2, true);
    if (standalone) {
        writer.writeEnd("cProteinChain", 0, true);
    } else {
        writer.writeEnd("chain", base, true);
    }
}

void cRunKEV::appendResidueXml(std::string& text, const cChainResidue& residue, int indent) const {
    appendXmlStart(text, "residue", indent);
    appendXmlElement(text, "name", escapedXmlText(residue.residueName), indent + 2);
    appendXmlElement(text, "serial_id", escapedXmlText(residue.residueNumber), indent + 2);
    if (writeAsa) {
        appendAreaElements(text, residue, indent + 2);
    }
    if (calculateRelativeAsa) {
        appendAreaGroup(text, "relative_asa",
                        {residue.relativeTotalAsa, residue.relativeBackboneAsa,
                         residue.relativeSideChainAsa, residue.relativeNonPolarAsa,
                         residue.relativePolarAsa},
                        indent + 2);
    }
    if (calculateDepth) {
        appendStatistics(text, "depth_index", depthStatistics(residue), indent + 2);
    }
    if (calculateProtrusion) {
        appendStatistics(text, "protrusion_index", protrusionStatistics(residue), indent + 2);
    }
    if (calculateHydrophobicity) {
        appendXmlElement(text, "hydrophobicity", residue.hydrophobicity, indent + 2);
    }
    appendXmlEnd(text, "residue", indent, true);
}

void cRunKEV::writePeptideAttributeTable(QTextStream& stream, cPdbPeptide& peptide,
                                         std::string analysisType) {
    stream.setRealNumberPrecision(5);
    std::string text;
    writeTableHeader(text, peptide, analysisType);
    writeColumnTitles(text);
    writeBytes(stream, text);
    std::vector<std::pair<const cProteinChain*, const cChainResidue*>> rows;
    rows.reserve(peptide.residues.size());
    for (const cProteinChain& chain : peptide.chains) {
        for (unsigned i = 0; i < chain.residueCount; ++i) {
            rows.emplace_back(&chain, &chain.residues[i]);
        }
    }
    // Rows are put together and handed on in blocks: padding field by field in the stream would
    // take several times as long for the same bytes.
    inBlocks(
        rows.size(),
        [&](std::string& block, std::size_t i) {
            appendTableRow(block, *rows[i].first, *rows[i].second);
        },
        [&](std::string_view block) { writeBytes(stream, block); });
}

void cRunKEV::writeTableHeader(std::string& text, const cPdbPeptide& peptide,
                               const std::string& analysisType) const {
    appendParameter(text, "pdb_id: ", peptide.name);
    appendParameter(text, "analysis type: ", analysisType);
    appendParameter(text, "radii_file: ", radiiFileName);
    if (calculateAsa) {
        appendParameter(text, "ASA_zSice: ", zSlice);
        appendParameter(text, "ASA_rSolvent: ", solventRadius);
    }
    if (calculateRelativeAsa) {
        appendParameter(text, "rasa_file: ", standardAsaFileName);
    }
    if (calculateProtrusion) {
        appendParameter(text, "CX_sRadius: ", cxThreshold);
        appendParameter(text, "CX_vAtom: ", cxAtomVolume);
    }
    if (calculateHydrophobicity) {
        // The label is shared with the radii; readers of these tables tell them apart by position.
        appendParameter(text, "radii_file: ", hydrophobicityFileName);
    }
    if (writeAsa) {
        appendParameter(text, "total ASA: ", peptide.totalAsa);
        appendParameter(text, "back-bone ASA: ", peptide.backboneAsa);
        appendParameter(text, "side-chain ASA: ", peptide.sideChainAsa);
        appendParameter(text, "polar ASA: ", peptide.polarAsa);
        appendParameter(text, "non-polar ASA: ", peptide.nonPolarAsa);
    }
    text += '\n';
}

void cRunKEV::writeColumnTitles(std::string& text) const {
    appendField(text, "chain id|", narrowWidth);
    if (writeAsa) {
        appendTitles<5>(text, {"ch total ASA|", " ch b-bone ASA|", "ch s-chain ASA|",
                               "ch polar ASA|", "ch n-polar ASA|"});
    }
    appendField(text, "res id|", narrowWidth);
    appendField(text, "res name|", narrowWidth);
    if (writeAsa) {
        appendTitles<5>(
            text, {"total ASA|", "b-bone ASA|", "s-chain ASA|", "polar ASA|", "n-polar ASA|"});
    }
    if (calculateRelativeAsa) {
        appendTitles<5>(
            text, {"total RASA|", "b-bone RASA|", "s-chain RASA|", "polar RASA|", "n-polar RASA|"});
    }
    if (calculateDepth) {
        appendTitles<6>(text, {"average DPX|", "s_avg DPX|", "s-ch avg DPX|", "s-ch s_avg DPX|",
                               "max DPX|", "min DPX|"});
    }
    if (calculateProtrusion) {
        appendTitles<6>(text, {"average CX|", "s_avg CX|", "s-ch avg CX|", "s-ch s_avg CX|",
                               "max CX|", "min CX|"});
    }
    if (calculateHydrophobicity) {
        appendField(text, "Hydrophobicity|", numberWidth);
    }
    text += '\n';
}

void cRunKEV::appendTableRow(std::string& text, const cProteinChain& chain,
                             const cChainResidue& residue) const {
    // One less than its title: readers of these tables expect it so.
    appendLabel(text, chain.chainId, narrowWidth - 1);
    if (writeAsa) {
        appendAreas(text, chain);
    }
    appendLabel(text, residue.residueNumber, narrowWidth);
    appendLabel(text, residue.residueName, narrowWidth);
    if (writeAsa) {
        appendAreas(text, residue);
    }
    if (calculateRelativeAsa) {
        for (const double value :
             {residue.relativeTotalAsa, residue.relativeBackboneAsa, residue.relativeSideChainAsa,
              residue.relativePolarAsa, residue.relativeNonPolarAsa}) {
            appendTableNumber(text, value, numberWidth);
        }
    }
    if (calculateDepth) {
        for (const double value : depthStatistics(residue)) {
            appendTableNumber(text, value, numberWidth);
        }
    }
    if (calculateProtrusion) {
        for (const double value : protrusionStatistics(residue)) {
            appendTableNumber(text, value, numberWidth);
        }
    }
    if (calculateHydrophobicity) {
        appendTableNumber(text, residue.hydrophobicity, numberWidth);
    }
    text += '\n';
}

} // namespace kelmo
