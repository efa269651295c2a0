#include "input/pdb_lines.h"

#include "base/string_operation.h"
#include "input/atom_rules.h"
#include "input/pdb_columns.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

namespace kelmo {

namespace {

constexpr std::size_t usualAtomLine = 81; // with its line feed

/// Looks radii up by the raw name columns of a line. Structures name the same few hundred atoms
/// over and over, so the answer for each spelling is worked out once.
class cRadiusLookup {
  public:
    cRadiusLookup(const std::map<std::string, double>& radiiTable, std::set<std::string>& missing)
        : radii(radiiTable), missingRadii(missing) {}

    double radiusOf(std::string_view line) {
        const std::uint64_t spelling = packed(line);
        const auto known = answers.find(spelling);
        if (known != answers.end()) {
            return known->second;
        }
        const sRadiusKey key{trimmedField(line, residueNameField),
                             trimmedField(line, atomNameField)};
        const double radius = vdwRadius(radii, key, key, missingRadii);
        answers.emplace(spelling, radius);
        return radius;
    }

  private:
    static std::uint64_t packed(std::string_view line) {
        std::uint64_t bytes = 0;
        for (const sField field : {residueNameField, atomNameField}) {
            for (const char c : fieldText(line, field)) {
                bytes = bytes << 8U | static_cast<unsigned char>(c);
            }
        }
        return bytes;
    }

    const std::map<std::string, double>& radii;
    std::set<std::string>& missingRadii;
    std::unordered_map<std::uint64_t, double> answers;
};

/// The state of one pass over a run of lines.
class cLineParser {
  public:
    explicit cLineParser(const std::map<std::string, double>& radiiTable)
        : radii(radiiTable, lines.missingRadii) {}

    sPdbLines parse(std::string_view text) {
        lines.atoms.reserve(text.size() / usualAtomLine + 1);
        while (!text.empty() && lines.end == sPdbLines::eEnd::none) {
            const std::size_t length = std::min(text.find('\n'), text.size());
            parseLine(text.substr(0, length));
            text.remove_prefix(std::min(length + 1, text.size()));
        }
        return std::move(lines);
    }

  private:
    void parseLine(std::string_view line) {
        if (line.starts_with("END")) {
            lines.end = sPdbLines::eEnd::endRecord;
            return;
        }
        ++lines.lineCount;
        if (!parseRecord(line)) {
            lines.end = sPdbLines::eEnd::badLine;
        }
    }

    /// Returns false when the line is in error.
    bool parseRecord(std::string_view line) {
        if (line.size() < shortestRecord) {
            return true;
        }
        if (line.starts_with("ATOM")) {
            return parseAtom(line);
        }
        if (line.starts_with("HEADER")) {
            return parseHeader(line);
        }
        if (line.starts_with("HETATM")) {
            return parseHeteroAtom(line);
        }
        return true;
    }

    bool parseHeader(std::string_view line) {
        if (line.size() < shortestHeader) {
            return false;
        }
        lines.headers.push_back({lines.atoms.size(), std::string(fieldText(line, entryCodeField))});
        return true;
    }

    bool parseHeteroAtom(std::string_view line) {
        if (line.size() < shortestAtomRecord) {
            return false;
        }
        const std::string_view atomName = trimmedField(line, atomNameField);
        if (isMetal(atomName)) {
            lines.heteroAtoms.emplace_back(std::string(atomName),
                                           std::string(trimmedField(line, serialField)),
                                           toNumber(fieldText(line, coordinateFields[0])),
                                           toNumber(fieldText(line, coordinateFields[1])),
                                           toNumber(fieldText(line, coordinateFields[2])), 0.0);
        }
        return true;
    }

    bool parseAtom(std::string_view line) {
        if (line.size() < shortestAtomRecord) {
            return false;
        }
        // A missing radius is listed even when the line turns out to be in error.
        const double radius = radii.radiusOf(line);
        const auto x = plainDecimal(trimmedField(line, coordinateFields[0]));
        const auto y = plainDecimal(trimmedField(line, coordinateFields[1]));
        const auto z = plainDecimal(trimmedField(line, coordinateFields[2]));
        if (!x || !y || !z) {
            return false;
        }
        noteBreak(line);
        lines.atoms.emplace_back(std::string(trimmedField(line, atomNameField)),
                                 std::string(trimmedField(line, serialField)), *x, *y, *z, radius);
        return true;
    }

    void noteBreak(std::string_view line) {
        const std::string_view chainId = fieldText(line, chainIdField);
        const std::string_view number = fieldText(line, residueNumberField);
        // Most lines go on with the residue of the line before, spelt the same.
        if (chainId == lastChainId && number == lastNumber && !lines.breaks.empty()) {
            return;
        }
        if (lines.breaks.empty() || !equalIgnoringCase(chainId, lastChainId) ||
            !equalIgnoringCase(trimmedView(number), trimmedView(lastNumber))) {
            lines.breaks.push_back({lines.atoms.size(), chainId.front(),
                                    std::string(trimmedField(line, residueNameField)),
                                    std::string(trimmedView(number))});
        }
        lastChainId = chainId;
        lastNumber = number;
    }

    sPdbLines lines;
    cRadiusLookup radii;
    std::string_view lastChainId; // views into the text
    std::string_view lastNumber;
};

} // namespace

sPdbLines parsePdbLines(std::string_view text, const std::map<std::string, double>& radii) {
    return cLineParser(radii).parse(text);
}

} // namespace kelmo
