#include "model/addition.h"

#include "base/string_operation.h"
#include "base/text_line.h"

#include <QRegularExpression>
#include <QString>

#include <istream>
#include <string_view>
#include <vector>

namespace kelmo {

namespace {

// A plain decimal number and a run of blanks, written such that a match never goes back over what
// it has read: a line of a megabyte is settled in one pass.
#define KELMO_NUMBER R"([-+]?(?:[0-9]++(?:\.[0-9]++)?+|\.[0-9]++))"
#define KELMO_BLANKS R"([ \s\t]++)"

constexpr auto radiusLine =
    R"((?:[A-Z0-9]{0,3}_[A-Z0-9*]{1,4}|[A-Z0-9*]{1,6}))" KELMO_BLANKS KELMO_NUMBER;
constexpr auto standardAreaLine = R"([A-Z]{1,3}(?:)" KELMO_BLANKS KELMO_NUMBER "){5}";
constexpr auto hydrophobicityLine = R"([A-Z]{1,3})" KELMO_BLANKS KELMO_NUMBER;

#undef KELMO_NUMBER
#undef KELMO_BLANKS

/// Reads a table line by line, handing each line that matches the grammar to `addEntry`; returns 0
/// or the number of the first line that does not match.
template <typename Map, typename AddEntry>
int readTable(std::istream& in, const char* grammar, Map& table, AddEntry addEntry) {
    const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(QString::fromLatin1(grammar)));
    table.clear();
    int lineNumber = 0;
    std::string line;
    while (getTextLine(in, line)) {
        ++lineNumber;
        if (line.size() > longestTextLine) {
            table.clear();
            return lineNumber;
        }
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (!pattern.match(QString::fromLatin1(line.data(), static_cast<qsizetype>(line.size())))
                 .hasMatch()) {
            table.clear();
            return lineNumber;
        }
        addEntry(line);
    }
    if (in.bad()) {
        table.clear();
        return lineNumber + 1;
    }
    return 0;
}

std::string_view textFrom(const std::string& line, std::size_t column) {
    return column < line.size() ? std::string_view(line).substr(column) : std::string_view();
}

template <typename Value>
std::set<std::string> missingAminoAcids(const std::map<std::string, Value>& table) {
    std::set<std::string> names;
    createAminoAcidNamesSet(names);
    std::erase_if(names, [&](const std::string& name) { return table.contains(name); });
    return names;
}

} // namespace

void createAminoAcidNamesSet(std::set<std::string>& names) {
    names.insert({"ALA", "ARG", "ASN", "ASP", "CYS", "GLN", "GLU", "GLY", "HIS", "ILE",
                  "LEU", "LYS", "MET", "PHE", "PRO", "SER", "THR", "TRP", "TYR", "VAL"});
}

void createNucleicAcidNamesSet(std::set<std::string>& names) {
    names.insert({"A", "C", "G", "T", "U"});
}

int getVdWrRadii(std::istream& in, std::map<std::string, double>& radii) {
    return readTable(in, radiusLine, radii, [&](const std::string& line) {
        radii.emplace(trimString(line.substr(0, 8)), toNumber(textFrom(line, 8)));
    });
}

int getStandardAsa(std::istream& in, std::map<std::string, sAsa>& standards) {
    return readTable(in, standardAreaLine, standards, [&](const std::string& line) {
        std::vector<std::string> columns = splitString(line);
        // A line separated by tabs is within the grammar but splits into too few columns.
        columns.resize(6);
        sAsa areas;
        areas.total = toNumber(columns[1]);
        areas.backbone = toNumber(columns[2]);
        areas.sideChain = toNumber(columns[3]);
        areas.nonPolar = toNumber(columns[4]);
        areas.polar = toNumber(columns[5]);
        standards.emplace(columns[0], areas);
    });
}

int getHydrophobicity(std::istream& in, std::map<std::string, double>& scale) {
    return readTable(in, hydrophobicityLine, scale, [&](const std::string& line) {
        scale.emplace(line.substr(0, 3), toNumber(textFrom(line, 4)));
    });
}

std::set<std::string> checkForStandardPeptides(std::map<std::string, double> scale) {
    return missingAminoAcids(scale);
}

std::set<std::string> checkForStandardPeptides(std::map<std::string, sAsa> standards) {
    return missingAminoAcids(standards);
}

} // namespace kelmo
