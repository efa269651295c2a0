#include "tests/fuzz/report_checks.h"

#include "tests/support/test_files.h"

#include <QString>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace kelmo {

namespace {

// Widths of the tables; the numbers of columns are those of reports with everything switched on.
constexpr std::size_t narrow = 11;
constexpr std::size_t wide = 16;
constexpr std::size_t chainColumns = 5;
constexpr std::size_t residueColumns = 23;
constexpr std::size_t kevHeaderLines = 14;
constexpr std::size_t contactWidth = 1 + 6 + 5 + 3 + 6 + 5 + 20;
constexpr std::size_t typeWidth = 18;
constexpr std::size_t bindingWidth = 1 + 6 + 5 + 18;
constexpr std::size_t statusWidth = 1 + 6 + 5 + 3 + 18;
/// Where the flag of a line of the binding status stands.
constexpr std::size_t flagColumn = 14;

bool isPlain(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) {
        return c >= ' ' && c < '\x7F' && c != '&' && c != '<' && c != '>';
    });
}

/// A number, infinity or not-a-number, with blanks before it.
bool isNumber(const std::string& text) {
    char* end = nullptr;
    std::strtod(text.c_str(), &end);
    return end != text.c_str() && *end == '\0';
}

std::string faultOfXml(QXmlStreamReader& xml) {
    return xml.hasError() ? "no XML: " + xml.errorString().toStdString() : std::string();
}

/// The parser does not know the declared encoding, of which every character is a byte.
QString parsable(const std::string& report) {
    return QString::fromLatin1(report.data(), static_cast<qsizetype>(report.size()));
}

/// Reads a residue up to its end tag: two names and all values.
bool isWholeResidue(QXmlStreamReader& xml) {
    std::size_t leaves = 0;
    bool areNumbers = true;
    QString text;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            text.clear();
        } else if (xml.isCharacters()) {
            text += xml.text();
        } else if (xml.isEndElement()) {
            if (xml.name() == u"residue") {
                break;
            }
            if (!text.trimmed().isEmpty() || leaves < 2) {
                areNumbers = areNumbers && (leaves < 2 || isNumber(text.toStdString()));
                ++leaves;
            }
            text.clear();
        }
    }
    return areNumbers && leaves == 2 + residueColumns;
}

bool isWholeRow(const std::string& row) {
    constexpr std::size_t chainAreas = narrow - 1;
    constexpr std::size_t names = chainAreas + chainColumns * wide;
    constexpr std::size_t values = names + 2 * narrow;
    if (row.size() != values + residueColumns * wide) {
        return false;
    }
    const auto areNumbers = [&row](std::size_t column, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            if (!isNumber(row.substr(column + i * wide, wide))) {
                return false;
            }
        }
        return true;
    };
    return areNumbers(chainAreas, chainColumns) && areNumbers(values, residueColumns);
}

} // namespace

std::string faultOfKevXml(const std::string& report, const cPdbPeptide& peptide) {
    if (std::any_of(report.begin(), report.end(),
                    [](char c) { return static_cast<unsigned char>(c) >= 0x80; })) {
        return "a byte outside ASCII";
    }
    if (!report.ends_with("</cPdbPeptide>")) {
        return "something behind the last tag";
    }
    QXmlStreamReader xml(parsable(report));
    std::size_t residues = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == u"residue") {
            ++residues;
            if (!isWholeResidue(xml)) {
                return "a residue without all its values";
            }
        }
    }
    if (!xml.hasError() && residues != peptide.residues.size()) {
        return "not every residue";
    }
    return faultOfXml(xml);
}

std::string faultOfKevTable(const std::string& report, const cPdbPeptide& peptide) {
    const std::vector<std::string> lines = linesOf(report);
    if (lines.size() != kevHeaderLines + 2 + peptide.residues.size() || !report.ends_with('\n')) {
        return "not a line for every residue";
    }
    if (!lines[kevHeaderLines].empty()) {
        return "no empty line behind the header";
    }
    const std::string& titles = lines[kevHeaderLines + 1];
    constexpr std::size_t columns = 3 + chainColumns + residueColumns;
    if (static_cast<std::size_t>(std::count(titles.begin(), titles.end(), '|')) != columns) {
        return "not a title for every column";
    }
    const auto rows = lines.begin() + static_cast<std::ptrdiff_t>(kevHeaderLines + 2);
    return std::all_of(rows, lines.end(), isWholeRow) ? std::string() : "a row without all columns";
}

std::string faultOfVorXml(const std::string& report, const cPdbPeptide& peptide) {
    const bool arePlain =
        isPlain(peptide.name) &&
        std::all_of(peptide.chains.begin(), peptide.chains.end(),
                    [](const cProteinChain& chain) { return isPlain(chain.chainId); }) &&
        std::all_of(peptide.residues.begin(), peptide.residues.end(),
                    [](const cChainResidue& residue) {
                        return isPlain(residue.residueName) && isPlain(residue.residueNumber);
                    });
    if (!arePlain) {
        return {};
    }
    QXmlStreamReader xml(parsable(report));
    while (!xml.atEnd()) {
        xml.readNext();
    }
    return faultOfXml(xml);
}

std::string faultOfContactTable(const std::string& report, std::size_t headerLines) {
    const std::vector<std::string> lines = linesOf(report);
    if (lines.size() < headerLines || (lines.size() - headerLines) % 2 != 0) {
        return "contacts that do not stand there twice";
    }
    for (std::size_t i = headerLines; i < lines.size(); ++i) {
        if (lines[i].size() < contactWidth || (lines[i].size() - contactWidth) % typeWidth != 0) {
            return "a contact without all columns";
        }
    }
    return {};
}

std::string faultOfBindingTables(const std::string& residues, const std::string& status,
                                 std::size_t headerLines, const cPdbPeptide& peptide) {
    const std::vector<std::string> binding = linesOf(residues);
    const std::vector<std::string> all = linesOf(status);
    if (all.size() != headerLines + peptide.residues.size()) {
        return "not a binding status for every residue";
    }
    std::size_t flags = 0;
    for (std::size_t i = headerLines; i < all.size(); ++i) {
        if (all[i].size() != statusWidth) {
            return "a binding status without all columns";
        }
        flags += all[i][flagColumn] == '1' ? 1U : 0U;
    }
    if (binding.size() != headerLines + flags) {
        return "binding residues other than those of the binding status";
    }
    for (std::size_t i = headerLines; i < binding.size(); ++i) {
        if (binding[i].size() != bindingWidth) {
            return "a binding residue without all columns";
        }
    }
    return {};
}

} // namespace kelmo
