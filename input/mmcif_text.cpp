#include "input/mmcif_text.h"

#include "base/regular_file.h"
#include "base/string_operation.h"
#include "input/assemblies.h"
#include "input/atom_rules.h"
#include "input/cif_tables.h"
#include "input/structure_making.h"
#include "input/understood_names.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <istream>
#include <limits>
#include <optional>
#include <utility>

namespace kelmo {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// Columns of the table of atoms that are read.
enum class eColumn : std::size_t {
    group,
    serial,
    element,
    atomName,
    labelAtomName,
    alternate,
    residueName,
    labelResidueName,
    chain,
    labelChain,
    entity,
    number,
    labelNumber,
    insertionCode,
    x,
    y,
    z,
    occupancy,
    model,
    count
};
using enum eColumn;

constexpr auto columnCount = static_cast<std::size_t>(count);

constexpr std::array<std::string_view, columnCount> columnTags{
    "group_pdb",       "id",           "type_symbol",   "auth_atom_id",      "label_atom_id",
    "label_alt_id",    "auth_comp_id", "label_comp_id", "auth_asym_id",      "label_asym_id",
    "label_entity_id", "auth_seq_id",  "label_seq_id",  "pdbx_pdb_ins_code", "cartn_x",
    "cartn_y",         "cartn_z",      "occupancy",     "pdbx_pdb_model_num"};

/// A number as CIF writes it, with a standard uncertainty in parentheses or without; not-a-number
/// for anything else.
double cifNumber(std::string_view text) {
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    if (const std::optional<double> plain = plainDecimal(text)) {
        return *plain;
    }
    if (text.ends_with(')')) {
        const std::size_t uncertainty = std::min(text.find('('), text.size() - 1);
        const std::string_view digits = text.substr(uncertainty + 1);
        if (digits.size() < 2 || digits.find_first_not_of("0123456789") != digits.size() - 1) {
            return notANumber;
        }
        text = text.substr(0, uncertainty);
    }
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    double value = 0.0;
    const char* const end = text.data() + text.size();
    const auto [parsed, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && parsed == end ? value : notANumber;
}

/// For files that do not tell the element.
bool isHydrogenName(const std::string& name, const std::string& residue) {
    const std::size_t letter = name.find_first_not_of("0123456789");
    return letter != std::string::npos && (name[letter] == 'H' || name[letter] == 'D') &&
           name != residue;
}

/// Records the atoms of the first block that has some, and what its tables say of them.
class cMmcifRecorder : public cCifTables {
  public:
    explicit cMmcifRecorder(const sReadOptions& readOptions)
        : cCifTables("atom_site",
                     {"entry", "entity", "pdbx_struct_mod_residue", "pdbx_struct_assembly",
                      "pdbx_struct_assembly_gen", "pdbx_struct_oper_list"}),
          options(readOptions) {}

    sStructureRecords records;
    std::string refusal; ///< why the atoms cannot be taken; empty if they can

  private:
    void beginRows(const std::vector<std::string>& tags) override;
    void takeRow(const std::vector<std::string>& values) override;
    void endBlock(const std::string& name) override;

    /// The first of two columns that is given.
    const std::string& given(eColumn column, eColumn otherColumn) const {
        return value(column).empty() ? value(otherColumn) : value(column);
    }
    const std::string& value(eColumn column) const { return row[static_cast<std::size_t>(column)]; }
    std::size_t modelOf(const std::string& number);
    sResidueRecord residueOfRow() const;
    sAtomRecord atomOfRow() const;
    void settlePolymers();
    void recordModifiedResidues();
    void recordAssemblies();
    std::map<std::string, sPlacement> operations() const;

    const sReadOptions& options;
    bool isOver = false;         ///< the block with the atoms has ended
    bool isInLaterBlock = false; ///< with atoms, too
    std::vector<std::size_t> columnOfValue;
    std::array<std::string, columnCount> row;
    bool hasNumbers = false; ///< whether there is a column of positions in the sequence
    std::vector<std::string> models;
    std::vector<std::string> entities;  ///< of the residues
    std::vector<std::size_t> ungrouped; ///< residues that are neither ATOM nor HETATM
};

void cMmcifRecorder::beginRows(const std::vector<std::string>& tags) {
    columnOfValue.clear();
    row.fill({});
    for (const std::string& tag : tags) {
        const auto column = std::find(columnTags.begin(), columnTags.end(), tag);
        columnOfValue.push_back(static_cast<std::size_t>(column - columnTags.begin()));
    }
    const auto has = [&](eColumn column) {
        return std::find(columnOfValue.begin(), columnOfValue.end(),
                         static_cast<std::size_t>(column)) != columnOfValue.end();
    };
    hasNumbers = has(labelNumber);
    const bool isComplete = has(x) && has(y) && has(z) && (has(atomName) || has(labelAtomName)) &&
                            (has(residueName) || has(labelResidueName));
    if (!isComplete && !isOver) {
        refusal = "_atom_site lacks coordinates or names";
    }
}

void cMmcifRecorder::takeRow(const std::vector<std::string>& values) {
    if (isOver) {
        isInLaterBlock = true;
        return;
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (columnOfValue[i] < columnCount) {
            row[columnOfValue[i]] = values[i];
        }
    }
    sResidueRecord residue = residueOfRow();
    residue.model = modelOf(value(model));
    if (residue.model > 0 && options.models == eModels::first) {
        return;
    }
    records.add(residue, atomOfRow());
    if (entities.size() < records.residues.size()) {
        entities.push_back(value(entity));
        if (value(group) != "ATOM" && value(group) != "HETATM") {
            ungrouped.push_back(records.residues.size() - 1);
        }
    }
}

sResidueRecord cMmcifRecorder::residueOfRow() const {
    sResidueRecord residue;
    residue.chainId = given(chain, labelChain);
    residue.number = trimString(given(number, labelNumber) + value(insertionCode));
    residue.name = given(residueName, labelResidueName);
    residue.part = value(labelChain);
    residue.isHetero = value(group) == "HETATM";
    if (hasNumbers) {
        residue.polymer = value(labelNumber).empty() ? ePolymer::no : ePolymer::yes;
    }
    return residue;
}

sAtomRecord cMmcifRecorder::atomOfRow() const {
    sAtomRecord atom;
    atom.name = given(atomName, labelAtomName);
    atom.serial = value(serial);
    atom.alternate = value(alternate);
    atom.x = cifNumber(value(x));
    atom.y = cifNumber(value(y));
    atom.z = cifNumber(value(z));
    if (!value(occupancy).empty()) {
        atom.occupancy = static_cast<float>(cifNumber(value(occupancy)));
    }
    atom.isHydrogen = value(element).empty()
                          ? isHydrogenName(atom.name, given(residueName, labelResidueName))
                          : value(element) == "H" || value(element) == "D";
    return atom;
}

std::size_t cMmcifRecorder::modelOf(const std::string& number) {
    if (models.empty() || models.back() != number) {
        const auto known = std::find(models.begin(), models.end(), number);
        if (known != models.end()) {
            return static_cast<std::size_t>(known - models.begin());
        }
        models.push_back(number);
    }
    return models.size() - 1;
}

void cMmcifRecorder::endBlock(const std::string& name) {
    records.laterBlocks += std::exchange(isInLaterBlock, false) ? 1U : 0U;
    if (isOver || (models.empty() && refusal.empty())) {
        return;
    }
    isOver = true;
    records.entryCode = table("entry").at(0, "id");
    if (records.entryCode.empty()) {
        records.entryCode = name;
    }
    if (options.models == eModels::first && !models.empty()) {
        records.laterModels = models.size() - 1;
    }
    settlePolymers();
    recordModifiedResidues();
    recordAssemblies();
}

/// The table of entities, where there is one, knows better than the numbers.
void cMmcifRecorder::settlePolymers() {
    const cCifTable& table = cCifTables::table("entity");
    std::map<std::string, ePolymer> kinds;
    for (std::size_t i = 0; i < table.rows(); ++i) {
        if (!table.at(i, "type").empty()) {
            kinds[table.at(i, "id")] =
                table.at(i, "type") == "polymer" ? ePolymer::yes : ePolymer::no;
        }
    }
    const bool tellsPolymers =
        std::any_of(records.residues.begin(), records.residues.end(),
                    [](const auto& residue) { return residue.polymer == ePolymer::yes; });
    for (std::size_t i = 0; i < records.residues.size(); ++i) {
        const auto kind = kinds.find(entities[i]);
        if (kind != kinds.end()) {
            records.residues[i].polymer = kind->second;
        } else if (!tellsPolymers) { // the columns are there but empty
            records.residues[i].polymer = ePolymer::unknown;
        }
    }
    for (const std::size_t i : ungrouped) {
        sResidueRecord& residue = records.residues[i];
        residue.isHetero =
            residue.polymer == ePolymer::no ||
            residueTypeOf(understoodResidueName(residue.name)) == eResidueType::other;
    }
}

void cMmcifRecorder::recordModifiedResidues() {
    const cCifTable& table = cCifTables::table("pdbx_struct_mod_residue");
    for (std::size_t i = 0; i < table.rows(); ++i) {
        records.modifiedResidues.push_back(
            {table.at(i, "auth_asym_id", "label_asym_id"),
             table.at(i, "auth_seq_id", "label_seq_id") + table.at(i, "pdb_ins_code"),
             table.at(i, "auth_comp_id", "label_comp_id"), table.at(i, "parent_comp_id")});
    }
}

std::map<std::string, sPlacement> cMmcifRecorder::operations() const {
    const cCifTable& table = cCifTables::table("pdbx_struct_oper_list");
    std::map<std::string, sPlacement> operations;
    for (std::size_t i = 0; i < table.rows(); ++i) {
        sPlacement placement;
        for (std::size_t r = 0; r < 3; ++r) {
            const std::string line = '[' + std::to_string(r + 1) + ']';
            for (std::size_t c = 0; c < 3; ++c) {
                placement.rotation[3 * r + c] =
                    cifNumber(table.at(i, "matrix" + line + '[' + std::to_string(c + 1) + ']'));
            }
            placement.shift[r] = cifNumber(table.at(i, "vector" + line));
        }
        operations.emplace(table.at(i, "id"), placement);
    }
    return operations;
}

void cMmcifRecorder::recordAssemblies() {
    const cCifTable& assemblies = table("pdbx_struct_assembly");
    for (std::size_t i = 0; i < assemblies.rows(); ++i) {
        records.assemblies.push_back(assemblies.at(i, "id"));
    }
    if (options.assembly.empty()) {
        return;
    }
    const auto known = operations();
    const cCifTable& table = cCifTables::table("pdbx_struct_assembly_gen");
    for (std::size_t i = 0; i < table.rows(); ++i) {
        if (table.at(i, "assembly_id") != options.assembly) {
            continue;
        }
        auto placements = placementsOf(table.at(i, "oper_expression"), known);
        if (!placements) {
            refusal = "Operations \"" + table.at(i, "oper_expression") + "\" of assembly " +
                      options.assembly + " are not in the file";
            return;
        }
        records.copies.push_back({idsIn(table.at(i, "asym_id_list")), std::move(*placements)});
    }
}

} // namespace

bool isCifText(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    text.remove_prefix(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
        if (!text.starts_with('#')) {
            return equalIgnoringCase(text.substr(0, 5), "data_");
        }
        text.remove_prefix(std::min(text.find('\n'), text.size()));
    }
}

sReadResult readMmcifText(std::istream& in, const std::map<std::string, double>& radii,
                          const sReadOptions& options) {
    cMmcifRecorder recorder(options);
    errno = 0;
    if (in.peek() == std::istream::traits_type::to_int_type(byteOrderMark.front())) {
        in.ignore(byteOrderMark.size());
    }
    const std::string error = readCif(in, recorder);
    sReadResult result;
    if (in.bad()) {
        result.outcome = eReadOutcome::unreadable;
        result.reason = readFailureText(errno);
        return result;
    }
    if (error.empty()) {
        recorder.finish();
    }
    result.reason = error.empty() ? recorder.refusal : "Not mmCIF: " + error;
    if (!result.reason.empty()) {
        result.outcome = eReadOutcome::refused;
        return result;
    }
    return makeStructures(recorder.records, radii, options);
}

} // namespace kelmo
