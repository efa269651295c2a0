#include "input/pdb_records.h"

#include "base/regular_file.h"
#include "base/stop_request.h"
#include "base/string_operation.h"
#include "input/assemblies.h"
#include "input/atom_rules.h"
#include "input/line_runs.h"
#include "input/pdb_columns.h"

#include <algorithm>
#include <cerrno>
#include <istream>
#include <limits>
#include <optional>
#include <utility>

namespace kelmo {

namespace {

constexpr sField modifiedNameField{12, 3};
constexpr sField modifiedChainField{16, 1};
constexpr sField modifiedNumberField{18, 5};
constexpr sField parentField{24, 3};

constexpr sField sequenceChainField{11, 1};
constexpr sField sequenceFields{19, 51};

std::optional<double> numberIn(std::string_view line, sField field) {
    return plainDecimal(trimmedField(line, field));
}

/// By the column of the element where it is filled in, otherwise by the name.
bool isHydrogen(std::string_view line) {
    const std::string_view element = trimmedField(line, elementField);
    const auto isLetter = [](char c) { return c >= 'A' && c <= 'Z'; };
    if (!element.empty() && std::all_of(element.begin(), element.end(), isLetter)) {
        return element == "H" || element == "D";
    }
    std::string_view name = trimmedField(line, atomNameField);
    name.remove_prefix(std::min(name.find_first_not_of("0123456789"), name.size()));
    return (name.starts_with('H') || name.starts_with('D')) &&
           name != trimmedField(line, residueNameField);
}

/// Remark 350: what the assemblies are made of.
class cAssemblyRemark {
  public:
    explicit cAssemblyRemark(const std::string& assembly) : wanted(assembly) {}

    /// `text` is what follows "REMARK 350".
    void take(std::string_view text, sStructureRecords& records) {
        text = trimmedView(text);
        if (const std::string_view ids = behind(text, "BIOMOLECULE:"); !ids.empty()) {
            const std::set<std::string> named = idsIn(ids);
            records.assemblies.insert(records.assemblies.end(), named.begin(), named.end());
            isWanted = named.contains(wanted);
        } else if (const std::string_view first = behind(text, "APPLY THE FOLLOWING TO CHAINS:");
                   !first.empty()) {
            if (isWanted) {
                records.copies.emplace_back();
            }
            addChains(first, records);
        } else if (const std::string_view more = behind(text, "AND CHAINS:"); !more.empty()) {
            addChains(more, records);
        } else if (text.starts_with("BIOMT") && text.size() > 5) {
            addRow(text, records);
        }
    }

  private:
    static std::string_view behind(std::string_view text, std::string_view title) {
        return text.starts_with(title) ? trimmedView(text.substr(title.size()))
                                       : std::string_view();
    }

    void addChains(std::string_view list, sStructureRecords& records) {
        if (isWanted && !records.copies.empty()) {
            for (const std::string& id : idsIn(list)) {
                records.copies.back().ids.insert(id == "NULL" ? " " : id);
            }
        }
    }

    /// "BIOMT2   1  0.0 1.0 0.0  12.5": a row of the rotation and a part of the shift.
    void addRow(std::string_view text, sStructureRecords& records) {
        const std::vector<std::string> words = splitString(std::string(text));
        const char row = text[5];
        if (!isWanted || records.copies.empty() || words.size() < 6 || row < '1' || row > '3') {
            return;
        }
        std::vector<sPlacement>& placements = records.copies.back().placements;
        if (row == '1') {
            placements.emplace_back();
        }
        if (placements.empty()) {
            return;
        }
        const auto i = static_cast<std::size_t>(row - '1');
        for (std::size_t column = 0; column < 3; ++column) {
            placements.back().rotation[3 * i + column] = toNumber(words[2 + column]);
        }
        placements.back().shift[i] = toNumber(words[5]);
    }

    const std::string& wanted;
    bool isWanted = false;
};

enum class eRecorded { all, oddities };

class cPdbRecorder {
  public:
    explicit cPdbRecorder(const sReadOptions& readOptions, eRecorded recorded = eRecorded::all)
        : options(readOptions), isForOddities(recorded == eRecorded::oddities),
          assemblyRemark(readOptions.assembly) {
        records.identity = eIdentity::ignoringCase;
    }

    /// Returns false when there is nothing more to read.
    bool take(std::string_view line) {
        if (line.starts_with("END")) {
            return takeEnd();
        }
        ++lineCount;
        if (line.size() < shortestRecord) {
            return true;
        }
        isBad = !(line.starts_with("ATOM")     ? takeAtom(line)
                  : line.starts_with("HETATM") ? takeHeteroAtom(line)
                  : line.starts_with("HEADER") ? takeHeader(line)
                                               : takeDescription(line));
        return !isBad;
    }

    sStructureRecords records;
    bool isBad = false; ///< the line that was taken last
    std::int64_t lineCount = 0;

  private:
    /// Only the first model ends at the first END, with or without atoms.
    bool takeEnd() {
        if (options.models == eModels::first) {
            return false;
        }
        if (!records.residues.empty() && records.residues.back().model == model) {
            ++model;
        }
        ++lineCount;
        return true;
    }

    bool takeHeader(std::string_view line) {
        if (line.size() < shortestHeader) {
            return false;
        }
        records.entryCode = fieldText(line, entryCodeField);
        return true;
    }

    bool takeAtom(std::string_view line) {
        if (line.size() < shortestAtomRecord) {
            return false;
        }
        if (isForOddities) {
            if (line[alternateField.offset] != ' ' || isHydrogen(line)) {
                add(line, {}, false);
            }
            return true;
        }
        const auto x = numberIn(line, coordinateFields[0]);
        const auto y = numberIn(line, coordinateFields[1]);
        const auto z = numberIn(line, coordinateFields[2]);
        if (!x || !y || !z) {
            return false;
        }
        add(line, {*x, *y, *z}, false);
        return true;
    }

    /// Of most of these the coordinates are of no interest, whatever they are.
    bool takeHeteroAtom(std::string_view line) {
        if (line.size() < shortestAtomRecord) {
            return false;
        }
        if (isForOddities) {
            add(line, {}, true);
            return true;
        }
        const auto coordinate = [&](std::size_t i) {
            if (isMetal(trimmedField(line, atomNameField))) {
                return toNumber(fieldText(line, coordinateFields[i]));
            }
            return numberIn(line, coordinateFields[i])
                .value_or(std::numeric_limits<double>::quiet_NaN());
        };
        add(line, {coordinate(0), coordinate(1), coordinate(2)}, true);
        return true;
    }

    void add(std::string_view line, const sPoint& centre, bool isHetero) {
        sResidueRecord residue;
        residue.chainId = fieldText(line, chainIdField);
        residue.number = trimmedField(line, residueNumberField);
        residue.name = trimmedField(line, residueNameField);
        residue.isHetero = isHetero;
        residue.model = model;
        sAtomRecord atom;
        atom.name = trimmedField(line, atomNameField);
        atom.serial = trimmedField(line, serialField);
        atom.alternate = trimmedField(line, alternateField);
        atom.x = centre.x;
        atom.y = centre.y;
        atom.z = centre.z;
        atom.occupancy = static_cast<float>(numberIn(line, occupancyField).value_or(1.0));
        atom.isHydrogen = isHydrogen(line);
        records.add(residue, std::move(atom));
    }

    bool takeDescription(std::string_view line) {
        if (line.starts_with("REMARK 350")) {
            assemblyRemark.take(line.substr(10), records);
        } else if (line.starts_with("SEQRES")) {
            for (const std::string& name :
                 splitString(std::string(fieldText(line, sequenceFields)))) {
                records.sequences.emplace(fieldText(line, sequenceChainField), name);
            }
        } else if (line.starts_with("MODRES")) {
            records.modifiedResidues.push_back(
                {std::string(fieldText(line, modifiedChainField)),
                 std::string(trimmedField(line, modifiedNumberField)),
                 std::string(trimmedField(line, modifiedNameField)),
                 std::string(trimmedField(line, parentField))});
        }
        return true;
    }

    const sReadOptions& options;
    const bool isForOddities;
    cAssemblyRemark assemblyRemark;
    std::size_t model = 0;
};

/// Hands lines to a recorder as long as it takes them and counts the models behind.
class cPdbLineTaker {
  public:
    explicit cPdbLineTaker(cPdbRecorder& lineRecorder) : recorder(lineRecorder) {}

    /// Whole lines.
    void take(std::string_view text) {
        while (!text.empty()) {
            const std::size_t length = std::min(text.find('\n'), text.size());
            takeLine(text.substr(0, length));
            text.remove_prefix(std::min(length + 1, text.size()));
        }
    }

    /// Whether the recorder has taken its last line.
    bool hasEnded() const { return isBehind; }

    sStructureRecords finish() {
        endModel();
        return std::move(recorder.records);
    }

  private:
    void takeLine(std::string_view line) {
        if (!isBehind) {
            isBehind = !recorder.take(line);
        } else if (line.starts_with("END")) {
            endModel();
        } else {
            hasAtoms = hasAtoms || line.starts_with("ATOM") || line.starts_with("HETATM");
        }
    }

    void endModel() { recorder.records.laterModels += std::exchange(hasAtoms, false) ? 1U : 0U; }

    cPdbRecorder& recorder;
    bool isBehind = false;
    bool hasAtoms = false; ///< the model behind that the last line belongs to
};

} // namespace

sStructureRecords readPdbRecords(std::istream& in, const sReadOptions& options,
                                 sReadResult& result) {
    cPdbRecorder recorder(options);
    cPdbLineTaker lines(recorder);
    cLineRuns runs(in, cStopRequest::current());
    errno = 0;
    for (std::string run = runs.next(); !run.empty() && !recorder.isBad; run = runs.next()) {
        lines.take(run);
    }
    if (in.bad() && !lines.hasEnded()) {
        result.outcome = eReadOutcome::unreadable;
        result.reason = readFailureText(errno);
    } else if (recorder.isBad) {
        result.outcome = eReadOutcome::badLine;
        result.badLine = static_cast<int>(
            std::min<std::int64_t>(recorder.lineCount, std::numeric_limits<int>::max()));
    }
    return lines.finish();
}

class cPdbOddities::cState {
  public:
    const sReadOptions asItStands{};
    cPdbRecorder recorder{asItStands, eRecorded::oddities};
    cPdbLineTaker lines{recorder};
};

cPdbOddities::cPdbOddities() : state(std::make_unique<cState>()) {}

cPdbOddities::~cPdbOddities() = default;

void cPdbOddities::take(std::string_view lines) {
    state->lines.take(lines);
}

sStructureRecords cPdbOddities::finish() {
    return state->lines.finish();
}

} // namespace kelmo
