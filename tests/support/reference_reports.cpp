#include "tests/support/reference_reports.h"

#include "tests/support/reference_attributes.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <locale>
#include <sstream>
#include <vector>

namespace kelmo {

namespace reference {
namespace {

// Decodes UTF-8; false when the text is not valid (overlong, surrogate, truncated, too large).
bool decodeUtf8(const std::string& text, std::vector<std::uint32_t>& codePoints) {
    std::size_t i = 0;
    while (i < text.size()) {
        const auto first = static_cast<unsigned char>(text[i]);
        std::size_t length = 1;
        std::uint32_t codePoint = first;
        std::uint32_t smallest = 0;
        if (first >= 0xf8 || (first >= 0x80 && first < 0xc0)) {
            return false;
        }
        if (first >= 0xf0) {
            length = 4;
            codePoint = first & 0x07u;
            smallest = 0x10000;
        } else if (first >= 0xe0) {
            length = 3;
            codePoint = first & 0x0fu;
            smallest = 0x800;
        } else if (first >= 0xc0) {
            length = 2;
            codePoint = first & 0x1fu;
            smallest = 0x80;
        }
        if (i + length > text.size()) {
            return false;
        }
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xc0u) != 0x80u) {
                return false;
            }
            codePoint = codePoint * 64 + (next & 0x3fu);
        }
        if (codePoint < smallest || codePoint > 0x10ffff ||
            (codePoint >= 0xd800 && codePoint <= 0xdfff)) {
            return false;
        }
        codePoints.push_back(codePoint);
        i += length;
    }
    return true;
}

std::string rightAligned(const std::string& text, std::size_t width) {
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::string blanks(int count) {
    return std::string(static_cast<std::size_t>(count), ' ');
}

std::string startLine(int indent, const std::string& name) {
    return blanks(indent) + "<" + name + ">\n";
}

std::string endLine(int indent, const std::string& name) {
    return blanks(indent) + "</" + name + ">\n";
}

std::string element(int indent, const std::string& name, const std::string& value) {
    return blanks(indent) + "<" + name + ">" + value + "</" + name + ">\n";
}

std::string textElement(int indent, const std::string& name, const std::string& text) {
    return element(indent, name, escapedForXml(text));
}

std::string numberElement(int indent, const std::string& name, double value) {
    return element(indent, name, streamNumber(value));
}

std::string areasXml(int indent, const std::string& name, const sAreas& areas) {
    return startLine(indent, name) + numberElement(indent + 2, "total", areas.total) +
           numberElement(indent + 2, "backbone", areas.backbone) +
           numberElement(indent + 2, "side_chain", areas.sideChain) +
           numberElement(indent + 2, "non_polar", areas.nonPolar) +
           numberElement(indent + 2, "polar", areas.polar) + endLine(indent, name);
}

std::string statisticsXml(int indent, const std::string& name, const sStatistics& statistics) {
    return startLine(indent, name) + numberElement(indent + 2, "average", statistics.average) +
           numberElement(indent + 2, "average_deviation", statistics.deviation) +
           numberElement(indent + 2, "average_side_chain", statistics.averageSideChain) +
           numberElement(indent + 2, "average_side_chain_deviation",
                         statistics.sideChainDeviation) +
           numberElement(indent + 2, "maximum", statistics.maximum) +
           numberElement(indent + 2, "minimum", statistics.minimum) + endLine(indent, name);
}

std::string residueXml(const sResidue& residue, const sKevSettings& settings) {
    std::string xml = startLine(8, "residue");
    xml += textElement(10, "name", residue.name);
    xml += textElement(10, "serial_id", residue.number);
    if (settings.writeAsa) {
        xml += areasXml(10, "asa", residue.areas);
    }
    if (settings.calculateRelativeAsa) {
        xml += areasXml(10, "relative_asa", residue.relativeAreas);
    }
    if (settings.calculateDepth) {
        xml += statisticsXml(10, "depth_index", residue.depth);
    }
    if (settings.calculateProtrusion) {
        xml += statisticsXml(10, "protrusion_index", residue.protrusion);
    }
    if (settings.calculateHydrophobicity) {
        xml += numberElement(10, "hydrophobicity", residue.hydrophobicity);
    }
    return xml + endLine(8, "residue");
}

std::string chainXml(const sStructure& structure, const sChain& chain,
                     const sKevSettings& settings) {
    std::string xml = startLine(4, "chain");
    xml += textElement(6, "serial_id", chain.chainId);
    if (settings.writeAsa) {
        xml += areasXml(6, "asa", chain.areas);
    }
    xml += startLine(6, "residues");
    for (const sResidue& residue : structure.residuesOf(chain)) {
        xml += residueXml(residue, settings);
    }
    xml += endLine(6, "residues");
    return xml + endLine(4, "chain");
}

std::string parametersXml(const sKevSettings& settings) {
    std::string xml;
    if (settings.calculateAsa) {
        xml += numberElement(2, "ASA_zSice", settings.zSlice);
        xml += numberElement(2, "ASA_rSolvent", settings.probeRadius);
    }
    if (settings.calculateRelativeAsa) {
        xml += textElement(2, "rasa_filename", settings.standardAreasFileName);
    }
    if (settings.calculateProtrusion) {
        xml += numberElement(2, "CX_sRadius", settings.protrusionRadius);
        xml += numberElement(2, "CX_vAtom", settings.atomVolume);
    }
    if (settings.calculateHydrophobicity) {
        xml += textElement(2, "hydrophobicity_filename", settings.hydrophobicityFileName);
    }
    return xml;
}

} // namespace

std::string escapedForXml(const std::string& text) {
    std::vector<std::uint32_t> characters;
    if (!decodeUtf8(text, characters)) {
        characters.clear();
        for (const char c : text) {
            characters.push_back(static_cast<unsigned char>(c));
        }
    }
    std::string escaped;
    for (const std::uint32_t character : characters) {
        if (character == '&') {
            escaped += "&amp;";
        } else if (character == '<') {
            escaped += "&lt;";
        } else if (character == '>') {
            escaped += "&gt;";
        } else if (character > 0x7f) {
            escaped += "&#" + std::to_string(character) + ";";
        } else if (character < 0x20 && character != '\t') {
            escaped += '?';
        } else {
            escaped += static_cast<char>(character);
        }
    }
    return escaped;
}

std::string streamNumber(double value) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << value;
    return out.str();
}

namespace {

// True when the exact decimal digits of the value after the first five are a 5 and then zeros. The
// tables' text stream rounds such a value away from zero, printf to the even digit.
bool isTieOfFiveDigits(double value) {
    if (!std::isfinite(value)) {
        return false;
    }
    char digits[900];
    std::snprintf(digits, sizeof digits, "%.800e", std::fabs(value)); // no double has more digits
    const std::string text = digits;                                  // "d.ddddddd...e+dd"
    const std::string rest = text.substr(6, text.find('e') - 6);
    return rest[0] == '5' && rest.find_first_not_of('0', 1) == std::string::npos;
}

} // namespace

std::string tableNumber(double value) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (value == 0.0) {
        return "0";
    }
    if (isTieOfFiveDigits(value)) {
        value =
            std::nextafter(value, std::copysign(std::numeric_limits<double>::infinity(), value));
    }
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.5g", value);
    return buffer;
}

std::string kevXml(const sStructure& structure, const sKevSettings& settings,
                   const std::string& analysisType) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"us-ascii\"?>\n";
    xml += "<cPdbPeptide xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\" "
           "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
           "xmlns=\"http://kelmo.example/krb/namespaces/PDB\">\n";
    xml += textElement(2, "pdb_id", structure.name);
    xml += textElement(2, "analysis_type", analysisType);
    xml += textElement(2, "radii_file", settings.radiiFileName);
    xml += parametersXml(settings);
    if (settings.writeAsa) {
        xml += areasXml(2, "asa", structure.areas);
    }
    xml += startLine(2, "chains");
    for (const sChain& chain : structure.chains) {
        xml += chainXml(structure, chain, settings);
    }
    xml += endLine(2, "chains");
    return xml + "</cPdbPeptide>";
}

namespace {

std::string tableHeader(const sStructure& structure, const sKevSettings& settings,
                        const std::string& analysisType) {
    std::string text = "pdb_id: " + structure.name + "\n";
    text += "analysis type: " + analysisType + "\n";
    text += "radii_file: " + settings.radiiFileName + "\n";
    if (settings.calculateAsa) {
        text += "ASA_zSice: " + tableNumber(settings.zSlice) + "\n";
        text += "ASA_rSolvent: " + tableNumber(settings.probeRadius) + "\n";
    }
    if (settings.calculateRelativeAsa) {
        text += "rasa_file: " + settings.standardAreasFileName + "\n";
    }
    if (settings.calculateProtrusion) {
        text += "CX_sRadius: " + tableNumber(settings.protrusionRadius) + "\n";
        text += "CX_vAtom: " + tableNumber(settings.atomVolume) + "\n";
    }
    if (settings.calculateHydrophobicity) {
        text += "radii_file: " + settings.hydrophobicityFileName + "\n";
    }
    if (settings.writeAsa) {
        text += "total ASA: " + tableNumber(structure.areas.total) + "\n";
        text += "back-bone ASA: " + tableNumber(structure.areas.backbone) + "\n";
        text += "side-chain ASA: " + tableNumber(structure.areas.sideChain) + "\n";
        text += "polar ASA: " + tableNumber(structure.areas.polar) + "\n";
        text += "non-polar ASA: " + tableNumber(structure.areas.nonPolar) + "\n";
    }
    return text + "\n";
}

std::string columnTitles(const sKevSettings& settings) {
    std::string text = rightAligned("chain id|", 11);
    const auto add = [&text](bool isWanted, std::initializer_list<const char*> titles) {
        for (const char* title : titles) {
            text += isWanted ? rightAligned(title, 16) : "";
        }
    };
    add(settings.writeAsa, {"ch total ASA|", " ch b-bone ASA|", "ch s-chain ASA|", "ch polar ASA|",
                            "ch n-polar ASA|"});
    text += rightAligned("res id|", 11) + rightAligned("res name|", 11);
    add(settings.writeAsa,
        {"total ASA|", "b-bone ASA|", "s-chain ASA|", "polar ASA|", "n-polar ASA|"});
    add(settings.calculateRelativeAsa,
        {"total RASA|", "b-bone RASA|", "s-chain RASA|", "polar RASA|", "n-polar RASA|"});
    add(settings.calculateDepth,
        {"average DPX|", "s_avg DPX|", "s-ch avg DPX|", "s-ch s_avg DPX|", "max DPX|", "min DPX|"});
    add(settings.calculateProtrusion,
        {"average CX|", "s_avg CX|", "s-ch avg CX|", "s-ch s_avg CX|", "max CX|", "min CX|"});
    add(settings.calculateHydrophobicity, {"Hydrophobicity|"});
    return text + "\n";
}

std::string numberField(double value) {
    return rightAligned(tableNumber(value), 16);
}

std::string areasFields(const sAreas& areas) {
    return numberField(areas.total) + numberField(areas.backbone) + numberField(areas.sideChain) +
           numberField(areas.polar) + numberField(areas.nonPolar);
}

std::string statisticsFields(const sStatistics& statistics) {
    return numberField(statistics.average) + numberField(statistics.deviation) +
           numberField(statistics.averageSideChain) + numberField(statistics.sideChainDeviation) +
           numberField(statistics.maximum) + numberField(statistics.minimum);
}

std::string tableRow(const sChain& chain, const sResidue& residue, const sKevSettings& settings) {
    std::string row = rightAligned(" " + chain.chainId, 10);
    if (settings.writeAsa) {
        row += areasFields(chain.areas);
    }
    row += rightAligned(" " + residue.number, 11);
    row += rightAligned(" " + residue.name, 11);
    if (settings.writeAsa) {
        row += areasFields(residue.areas);
    }
    if (settings.calculateRelativeAsa) {
        row += areasFields(residue.relativeAreas);
    }
    if (settings.calculateDepth) {
        row += statisticsFields(residue.depth);
    }
    if (settings.calculateProtrusion) {
        row += statisticsFields(residue.protrusion);
    }
    if (settings.calculateHydrophobicity) {
        row += numberField(residue.hydrophobicity);
    }
    return row + "\n";
}

} // namespace

std::string kevTable(const sStructure& structure, const sKevSettings& settings,
                     const std::string& analysisType) {
    std::string text = tableHeader(structure, settings, analysisType) + columnTitles(settings);
    for (const sChain& chain : structure.chains) {
        for (const sResidue& residue : structure.residuesOf(chain)) {
            text += tableRow(chain, residue, settings);
        }
    }
    return text;
}

void analyseBound(sStructure& structure, const sKevSettings& settings) {
    if (settings.calculateAsa) {
        setBoundAreas(structure, settings.probeRadius, settings.zSlice);
    }
    if (settings.calculateRelativeAsa) {
        setRelativeAreas(structure, settings.standardAreas);
    }
    if (settings.calculateDepth) {
        setDepths(structure);
    }
    if (settings.calculateProtrusion) {
        setProtrusions(structure, settings.protrusionRadius, settings.atomVolume);
    }
    if (settings.calculateHydrophobicity) {
        setHydrophobicity(structure, settings.hydrophobicity);
    }
}

void analyseChains(sStructure& structure, const sKevSettings& settings) {
    // Once for the whole structure: repeated for every chain, it would give the same areas again.
    if (settings.calculateAsa && !structure.chains.empty()) {
        setUnboundAreas(structure, settings.probeRadius, settings.zSlice);
    }
    for (const sChain& chain : structure.chains) {
        if (settings.calculateRelativeAsa) {
            setRelativeAreas(structure, chain, settings.standardAreas);
        }
        if (settings.calculateDepth) {
            setDepths(structure, chain);
        }
        if (settings.calculateProtrusion) {
            setProtrusions(structure, chain, settings.protrusionRadius, settings.atomVolume);
        }
    }
    if (settings.calculateHydrophobicity) {
        setHydrophobicity(structure, settings.hydrophobicity);
    }
}

std::map<std::string, std::string> kevReports(const std::string& pdbText,
                                              const sKevSettings& settings) {
    std::map<std::string, std::string> reports;
    std::set<std::string> missing;
    int errorLine = 0;
    sStructure structure = readStructure(pdbText, settings.radii, missing, errorLine);
    if (errorLine != 0) {
        return reports;
    }
    const auto write = [&](const std::string& analysisType) {
        if (settings.xmlOutput) {
            reports["_" + analysisType + ".xml"] = kevXml(structure, settings, analysisType);
        }
        if (settings.tableOutput) {
            reports["_" + analysisType + ".tbl"] = kevTable(structure, settings, analysisType);
        }
    };
    if (settings.boundAnalysis) {
        analyseBound(structure, settings);
        write("bound");
    }
    if (settings.chainAnalysis) {
        analyseChains(structure, settings);
        write("unbound");
    }
    return reports;
}

} // namespace reference

} // namespace kelmo
