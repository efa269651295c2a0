#include "tests/support/reference_reports.h"

#include "tests/support/reference_attributes.h"
#include "tests/support/reference_documents.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <limits>
#include <locale>
#include <set>
#include <sstream>
#include <utility>
#include <variant>
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

namespace {

// The places of the values of a block of areas, with the name of the element and the part of a
// title that stand for each. Documents and tables have them in different orders.
struct sAreaPart {
    double sAreas::*value;
    std::string element;
    std::string title;
};
const sAreaPart totalArea{&sAreas::total, "total", "total"};
const sAreaPart backboneArea{&sAreas::backbone, "backbone", "b-bone"};
const sAreaPart sideChainArea{&sAreas::sideChain, "side_chain", "s-chain"};
const sAreaPart polarArea{&sAreas::polar, "polar", "polar"};
const sAreaPart nonPolarArea{&sAreas::nonPolar, "non_polar", "n-polar"};

struct sStatisticsPart {
    double sStatistics::*value;
    std::string element;
    std::string title;
};

// In the order of documents and tables alike.
const std::vector<sStatisticsPart>& statisticsParts() {
    static const std::vector<sStatisticsPart> parts{
        {&sStatistics::average, "average", "average"},
        {&sStatistics::deviation, "average_deviation", "s_avg"},
        {&sStatistics::averageSideChain, "average_side_chain", "s-ch avg"},
        {&sStatistics::sideChainDeviation, "average_side_chain_deviation", "s-ch s_avg"},
        {&sStatistics::maximum, "maximum", "max"},
        {&sStatistics::minimum, "minimum", "min"}};
    return parts;
}

// One line of a report's head: its element in a document, its label in a table, and its value,
// which documents and tables write each in their own way.
struct sHeadLine {
    std::string element;
    std::string label;
    std::variant<std::string, double> value;
};

std::string textInDocument(const std::variant<std::string, double>& value) {
    return std::holds_alternative<double>(value) ? streamNumber(std::get<double>(value))
                                                 : escapedForXml(std::get<std::string>(value));
}

std::string textInTable(const std::variant<std::string, double>& value) {
    return std::holds_alternative<double>(value) ? tableNumber(std::get<double>(value))
                                                 : std::get<std::string>(value);
}

std::vector<sHeadLine> headOf(const sStructure& structure, const sKevSettings& settings,
                              const std::string& analysisType) {
    std::vector<sHeadLine> head{{"pdb_id", "pdb_id", structure.name},
                                {"analysis_type", "analysis type", analysisType},
                                {"radii_file", "radii_file", settings.radiiFileName}};
    if (settings.calculateAsa) {
        head.push_back({"ASA_zSice", "ASA_zSice", settings.zSlice});
        head.push_back({"ASA_rSolvent", "ASA_rSolvent", settings.probeRadius});
    }
    if (settings.calculateRelativeAsa) {
        head.push_back({"rasa_filename", "rasa_file", settings.standardAreasFileName});
    }
    if (settings.calculateProtrusion) {
        head.push_back({"CX_sRadius", "CX_sRadius", settings.protrusionRadius});
        head.push_back({"CX_vAtom", "CX_vAtom", settings.atomVolume});
    }
    if (settings.calculateHydrophobicity) {
        // The label of the radii, in tables, is the scale's label too.
        head.push_back({"hydrophobicity_filename", "radii_file", settings.hydrophobicityFileName});
    }
    return head;
}

sElement areasElement(const std::string& name, const sAreas& areas) {
    sElement element = branch(name, {});
    for (const sAreaPart& part :
         {totalArea, backboneArea, sideChainArea, nonPolarArea, polarArea}) {
        element.children.push_back(leaf(part.element, streamNumber(areas.*part.value)));
    }
    return element;
}

sElement statisticsElement(const std::string& name, const sStatistics& statistics) {
    sElement element = branch(name, {});
    for (const sStatisticsPart& part : statisticsParts()) {
        element.children.push_back(leaf(part.element, streamNumber(statistics.*part.value)));
    }
    return element;
}

sElement residueElement(const sResidue& residue, const sKevSettings& settings) {
    // Every group that there can be, and whether it is wanted.
    const std::vector<std::pair<bool, sElement>> groups{
        {settings.writeAsa, areasElement("asa", residue.areas)},
        {settings.calculateRelativeAsa, areasElement("relative_asa", residue.relativeAreas)},
        {settings.calculateDepth, statisticsElement("depth_index", residue.depth)},
        {settings.calculateProtrusion, statisticsElement("protrusion_index", residue.protrusion)},
        {settings.calculateHydrophobicity,
         leaf("hydrophobicity", streamNumber(residue.hydrophobicity))}};
    sElement element = branch("residue", {leaf("name", escapedForXml(residue.name)),
                                          leaf("serial_id", escapedForXml(residue.number))});
    for (const auto& [isWanted, group] : groups) {
        if (isWanted) {
            element.children.push_back(group);
        }
    }
    return element;
}

sElement chainElement(const sStructure& structure, const sChain& chain,
                      const sKevSettings& settings) {
    sElement residues = branch("residues", {});
    for (const sResidue& residue : structure.residuesOf(chain)) {
        residues.children.push_back(residueElement(residue, settings));
    }
    const sElement id = leaf("serial_id", escapedForXml(chain.chainId));
    return settings.writeAsa ? branch("chain", {id, areasElement("asa", chain.areas), residues})
                             : branch("chain", {id, residues});
}

} // namespace

std::string kevXml(const sStructure& structure, const sKevSettings& settings,
                   const std::string& analysisType) {
    sElement root = branch("cPdbPeptide", {});
    for (const sHeadLine& line : headOf(structure, settings, analysisType)) {
        root.children.push_back(leaf(line.element, textInDocument(line.value)));
    }
    if (settings.writeAsa) {
        root.children.push_back(areasElement("asa", structure.areas));
    }
    sElement chains = branch("chains", {});
    for (const sChain& chain : structure.chains) {
        chains.children.push_back(chainElement(structure, chain, settings));
    }
    root.children.push_back(chains);
    std::string text = documentText(root);
    text.pop_back(); // the last line of these documents has no end
    return text;
}

namespace {

// What one line of a table of residues is about.
struct sPlace {
    const sChain* chain;
    const sResidue* residue;
};

std::vector<sPlace> placesOf(const sStructure& structure) {
    std::vector<sPlace> places;
    for (const sChain& chain : structure.chains) {
        for (const sResidue& residue : structure.residuesOf(chain)) {
            places.push_back({&chain, &residue});
        }
    }
    return places;
}

using tPlaceColumns = std::vector<sColumn<sPlace>>;

constexpr std::size_t nameWidth = 11;
constexpr std::size_t numberWidth = 16;

using tNumberOf = std::function<double(const sPlace&)>;

sColumn<sPlace> numberColumn(const std::string& title, const tNumberOf& number) {
    return {title + "|", numberWidth, numberWidth,
            [number](const sPlace& place) { return tableNumber(number(place)); }};
}

// A column for each value of the areas that `areasOf` finds; the quantity ends the titles.
tPlaceColumns areaColumns(const std::string& quantity,
                          const std::function<const sAreas&(const sPlace&)>& areasOf) {
    tPlaceColumns columns;
    for (const sAreaPart& part :
         {totalArea, backboneArea, sideChainArea, polarArea, nonPolarArea}) {
        columns.push_back(
            numberColumn(part.title + " " + quantity, [areasOf, part](const sPlace& place) {
                return areasOf(place).*part.value;
            }));
    }
    return columns;
}

tPlaceColumns statisticsColumns(const std::string& quantity, sStatistics sResidue::*statistics) {
    tPlaceColumns columns;
    for (const sStatisticsPart& part : statisticsParts()) {
        columns.push_back(
            numberColumn(part.title + " " + quantity, [statistics, part](const sPlace& place) {
                return (place.residue->*statistics).*part.value;
            }));
    }
    return columns;
}

void append(tPlaceColumns& columns, bool isWanted, const tPlaceColumns& more) {
    if (isWanted) {
        columns.insert(columns.end(), more.begin(), more.end());
    }
}

// The areas of a chain stand on each of its lines; one of their titles begins with a blank, which
// its width swallows.
tPlaceColumns chainAreaColumns() {
    tPlaceColumns columns =
        areaColumns("ASA", [](const sPlace& place) -> const sAreas& { return place.chain->areas; });
    for (sColumn<sPlace>& column : columns) {
        column.title = "ch " + column.title;
    }
    return columns;
}

tPlaceColumns kevColumns(const sKevSettings& settings) {
    tPlaceColumns columns{{"chain id|", nameWidth, nameWidth - 1,
                           [](const sPlace& place) { return " " + place.chain->chainId; }}};
    append(columns, settings.writeAsa, chainAreaColumns());
    append(columns, true,
           {{"res id|", nameWidth, nameWidth,
             [](const sPlace& place) { return " " + place.residue->number; }},
            {"res name|", nameWidth, nameWidth,
             [](const sPlace& place) { return " " + place.residue->name; }}});
    append(columns, settings.writeAsa, areaColumns("ASA", [](const sPlace& place) -> const sAreas& {
               return place.residue->areas;
           }));
    append(columns, settings.calculateRelativeAsa,
           areaColumns("RASA", [](const sPlace& place) -> const sAreas& {
               return place.residue->relativeAreas;
           }));
    append(columns, settings.calculateDepth, statisticsColumns("DPX", &sResidue::depth));
    append(columns, settings.calculateProtrusion, statisticsColumns("CX", &sResidue::protrusion));
    append(columns, settings.calculateHydrophobicity,
           {numberColumn("Hydrophobicity",
                         [](const sPlace& place) { return place.residue->hydrophobicity; })});
    return columns;
}

} // namespace

std::string kevTable(const sStructure& structure, const sKevSettings& settings,
                     const std::string& analysisType) {
    std::vector<sHeadLine> head = headOf(structure, settings, analysisType);
    if (settings.writeAsa) {
        head.push_back({"", "total ASA", structure.areas.total});
        head.push_back({"", "back-bone ASA", structure.areas.backbone});
        head.push_back({"", "side-chain ASA", structure.areas.sideChain});
        head.push_back({"", "polar ASA", structure.areas.polar});
        head.push_back({"", "non-polar ASA", structure.areas.nonPolar});
    }
    std::string text;
    for (const sHeadLine& line : head) {
        text += line.label + ": " + textInTable(line.value) + "\n";
    }
    const tPlaceColumns columns = kevColumns(settings);
    return text + "\n" + titleLine(columns) + lines(columns, placesOf(structure));
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

namespace {

std::string criterionText(eCriterion criterion) {
    const std::map<eCriterion, std::string> texts{{eCriterion::maximumDistance, "MaximumDistance"},
                                                  {eCriterion::prism, "PRISM"},
                                                  {eCriterion::dovreth, "Dovreth"},
                                                  {eCriterion::vorda, "VORDA"}};
    const auto found = texts.find(criterion);
    return found == texts.end() ? "" : found->second;
}

std::string typeText(int type) {
    const std::map<int, std::string> texts{
        {1, "Hydrophobic"}, {2, "Polar"}, {3, "Ionic"}, {4, "vanDerWaals"}};
    const auto found = texts.find(type);
    return found == texts.end() ? "Undefined" : found->second;
}

// The head of an interaction report: names and values, the same in documents and tables.
std::vector<std::pair<std::string, std::string>> headOf(const sStructure& structure,
                                                        const sVorSettings& settings) {
    const std::string threshold = streamNumber(settings.threshold);
    std::vector<std::pair<std::string, std::string>> head{
        {"pdb_id", structure.name}, {"radii_filename", settings.radiiFileName}};
    switch (settings.criterion) {
    case eCriterion::maximumDistance:
        head.emplace_back("MD_threshold", threshold);
        break;
    case eCriterion::prism:
        head.emplace_back("PRISM_threshold", threshold);
        break;
    case eCriterion::dovreth:
        head.emplace_back("TH_delta_asa", threshold);
        head.emplace_back("TH_z_slice", streamNumber(settings.zSlice));
        head.emplace_back("TH_r_solvent", streamNumber(settings.probeRadius));
        break;
    case eCriterion::vorda:
    case eCriterion::none:
        break;
    }
    return head;
}

std::string documentOf(const std::string& rootName,
                       const std::vector<std::pair<std::string, std::string>>& head,
                       const sElement& body) {
    sElement root = branch(rootName, {});
    for (const auto& [name, value] : head) {
        root.children.push_back(leaf(name, value));
    }
    root.children.push_back(body);
    return documentText(root);
}

template <typename tItem>
std::string tableOf(const std::vector<std::pair<std::string, std::string>>& head,
                    const std::vector<sColumn<tItem>>& columns, const std::vector<tItem>& items) {
    std::string text;
    for (const auto& [name, value] : head) {
        text += name + ": " + value + "\n";
    }
    return text + lines(columns, items);
}

sElement contactElement(const sContact& contact) {
    sElement element =
        branch("contact",
               {leaf("interaction_criterion", criterionText(contact.criterion)),
                leaf("chain_id_1", contact.chain1), leaf("residue_id_1", contact.residueNumber1),
                leaf("residue_name_1", contact.residueName1), leaf("chain_id_2", contact.chain2),
                leaf("residue_id_2", contact.residueNumber2),
                leaf("residue_name_2", contact.residueName2)});
    sElement types = branch("contact_types", {});
    for (const int type : contact.types) {
        types.children.push_back(leaf("contact_type", typeText(type)));
    }
    if (!types.children.empty()) {
        element.children.push_back(types);
    }
    return element;
}

// The types are the last column: each in a field of its own, which widens the line.
std::string typeFields(const sContact& contact) {
    std::string fields;
    for (const int type : contact.types) {
        fields += fieldText(typeText(type), 18);
    }
    return fields;
}

// The columns of tables without titles.
const std::vector<sColumn<sContact>>& contactColumns() {
    static const std::vector<sColumn<sContact>> columns{
        {"", 0, 0, [](const sContact& contact) { return contact.chain1; }},
        {"", 0, 6, [](const sContact& contact) { return contact.residueNumber1; }},
        {"", 0, 5, [](const sContact& contact) { return contact.residueName1; }},
        {"", 0, 3, [](const sContact& contact) { return contact.chain2; }},
        {"", 0, 6, [](const sContact& contact) { return contact.residueNumber2; }},
        {"", 0, 5, [](const sContact& contact) { return contact.residueName2; }},
        {"", 0, 20, [](const sContact& contact) { return criterionText(contact.criterion); }},
        {"", 0, 0, typeFields}};
    return columns;
}

// Chain, number and name of a residue; the rest of the line differs from table to table.
tPlaceColumns residueColumns() {
    return {{"", 0, 0, [](const sPlace& place) { return place.chain->chainId; }},
            {"", 0, 6, [](const sPlace& place) { return place.residue->number; }},
            {"", 0, 5, [](const sPlace& place) { return place.residue->name; }}};
}

std::string flagText(const sPlace& place) {
    return place.residue->isBinding ? "1" : "0";
}

sElement placeElement(const std::string& name, const sPlace& place, eCriterion criterion) {
    return branch(name, {leaf("interaction_criterion", criterionText(criterion)),
                         leaf("chain_id", place.chain->chainId),
                         leaf("residue_id", place.residue->number),
                         leaf("residue_name", place.residue->name)});
}

} // namespace

std::map<std::string, std::string> vorReports(const std::string& pdbText,
                                              const sVorSettings& settings) {
    std::set<std::string> missing;
    int errorLine = 0;
    sStructure structure = readStructure(pdbText, settings.radii, missing, errorLine);
    if (errorLine != 0) {
        return {};
    }
    const std::vector<sContact> contacts = analyseInteractions(structure, settings);
    const std::vector<sPlace> places = placesOf(structure);
    std::vector<sPlace> bindingPlaces;
    sElement contactElements = branch("contacts", {});
    sElement bindingElements = branch("binding_residues", {});
    sElement statusElements = branch("residues", {});
    for (const sContact& contact : contacts) {
        contactElements.children.push_back(contactElement(contact));
    }
    for (const sPlace& place : places) {
        sElement status = placeElement("residue", place, settings.criterion);
        status.children.push_back(leaf("binding_status", flagText(place)));
        statusElements.children.push_back(status);
        if (place.residue->isBinding) {
            bindingPlaces.push_back(place);
            bindingElements.children.push_back(
                placeElement("binding_residue", place, settings.criterion));
        }
    }
    const sColumn<sPlace> criterionColumn{
        "", 0, 18, [&](const sPlace&) { return criterionText(settings.criterion); }};
    tPlaceColumns bindingColumns = residueColumns();
    bindingColumns.push_back(criterionColumn);
    tPlaceColumns statusColumns = residueColumns();
    statusColumns.push_back({"", 0, 3, flagText});
    statusColumns.push_back(criterionColumn);

    const auto head = headOf(structure, settings);
    std::map<std::string, std::string> reports{
        {"_contacts.xml", documentOf("peptideResidueContacts", head, contactElements)},
        {"_binding_residues.xml", documentOf("peptideBindingResidues", head, bindingElements)},
        {"_binding_status.xml", documentOf("peptideResidueBindingStatus", head, statusElements)},
        {"_contacts.tbl", tableOf(head, contactColumns(), contacts)},
        {"_binding_residues.tbl", tableOf(head, bindingColumns, bindingPlaces)},
        {"_binding_status.tbl", tableOf(head, statusColumns, places)}};
    std::erase_if(reports, [&](const auto& report) {
        const std::string& end = report.first;
        return (end.ends_with(".xml") && !settings.xmlOutput) ||
               (end.ends_with(".tbl") && !settings.tableOutput) ||
               (end.starts_with("_contacts.") && !settings.writeContacts) ||
               (end.starts_with("_binding_residues.") && !settings.writeBindingResidues) ||
               (end.starts_with("_binding_status.") && !settings.writeBindingStatus);
    });
    return reports;
}

} // namespace reference

} // namespace kelmo
