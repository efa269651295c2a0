#include "model/addition.h"

#include "base/string_operation.h"
#include "base/text_line.h"

#include <algorithm>
#include <cstddef>
#include <istream>
#include <string_view>
#include <vector>

namespace kelmo {

namespace {

// Parts of the grammars are taken from the front of what is left of a line, and no character is
// taken twice: a line of a megabyte is settled in one pass.

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r'); // what isspace() holds for in the C locale
}

bool isCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

bool isOfKey(char c) {
    return isCapital(c) || (c >= '0' && c <= '9') || c == '*';
}

/// Takes the longest beginning of `rest` whose characters are all of a kind.
template <typename IsOfKind>
std::string_view takeRun(std::string_view& rest, IsOfKind isOfKind) {
    const auto end = std::find_if_not(rest.begin(), rest.end(), isOfKind);
    const std::string_view run = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
    rest.remove_prefix(run.size());
    return run;
}

/// Takes at least one blank and a plain decimal number that ends at the next blank; false without
/// them.
bool takeNumber(std::string_view& rest) {
    const std::string_view blanks = takeRun(rest, isBlank);
    const std::string_view number = takeRun(rest, [](char c) { return !isBlank(c); });
    return !blanks.empty() && plainDecimal(number).has_value();
}

/// Takes a residue name: one to three capital letters; false without one.
bool takeResidueName(std::string_view& rest) {
    const std::size_t length = takeRun(rest, isCapital).size();
    return length >= 1 && length <= 3;
}

/// Takes a key of the radii: a residue part of up to three characters, "_" and an atom part of one
/// to four, or up to six characters without "_". An asterisk stands in no residue part.
/// False without such a key.
bool takeRadiusKey(std::string_view& rest) {
    const std::string_view first = takeRun(rest, isOfKey);
    if (!rest.starts_with('_')) {
        return !first.empty() && first.size() <= 6;
    }
    rest.remove_prefix(1);
    const std::size_t atomLength = takeRun(rest, isOfKey).size();
    return first.size() <= 3 && first.find('*') == std::string_view::npos && atomLength >= 1 &&
           atomLength <= 4;
}

bool isRadiusLine(std::string_view line) {
    return takeRadiusKey(line) && takeNumber(line) && line.empty();
}

bool isStandardAreaLine(std::string_view line) {
    bool matches = takeResidueName(line);
    for (int area = 0; area < 5 && matches; ++area) {
        matches = takeNumber(line);
    }
    return matches && line.empty();
}

bool isHydrophobicityLine(std::string_view line) {
    return takeResidueName(line) && takeNumber(line) && line.empty();
}

/// Reads a table line by line, handing each line that matches the grammar to `addEntry`; returns 0
/// or the number of the line that could not be taken.
template <typename Map, typename AddEntry>
int readTable(std::istream& in, bool (*isOfGrammar)(std::string_view), Map& table,
              AddEntry addEntry) {
    table.clear();
    int lineNumber = 0;
    std::size_t size = 0;
    std::string line;
    while (getTextLine(in, line)) {
        ++lineNumber;
        if (line.size() > longestTextLine) {
            table.clear();
            return lineNumber;
        }
        size += line.size() + 1;
        if (size > largestTable) {
            table.clear();
            in.setstate(std::ios::failbit);
            return lineNumber;
        }
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (!isOfGrammar(line)) {
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
    return readTable(in, isRadiusLine, radii, [&](const std::string& line) {
        radii.emplace(trimString(line.substr(0, 8)), toNumber(textFrom(line, 8)));
    });
}

int getStandardAsa(std::istream& in, std::map<std::string, sAsa>& standards) {
    return readTable(in, isStandardAreaLine, standards, [&](const std::string& line) {
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
    return readTable(in, isHydrophobicityLine, scale, [&](const std::string& line) {
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
