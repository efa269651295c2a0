// Results as tables with tabs between the columns: one of residues, one of contacts beside it.
#include "base/shown_text.h"
#include "results/field_text.h"
#include "results/result_formats.h"
#include "results/text_output.h"

#include <array>
#include <optional>

namespace kelmo {

namespace {

/// Columns that a table of the whole run has in front, so that each row tells what it is of. A
/// number comes first: a name could begin like a comment.
constexpr std::array<const char*, 4> fileColumns{"structure", "path", "entry", "model"};

/// Whether a column of the database is one of a run's table, too.
bool isWanted(const sResultColumn& column, const sRunDescription& run) {
    return column.isOf(run.module) && column.name != fileColumns.front();
}

/// The lines before the table: what the run went by, and the units.
std::string provenance(const sRunDescription& run, const sResultTable& table) {
    std::string text = "# kelmo " + run.version + ' ' + run.module + ", " + run.started + '\n';
    for (const sDescribedSetting& setting : run.settings) {
        text += "# setting " + setting.key + " = " + shownText(setting.value) + '\n';
    }
    for (const sDescribedTable& one : run.tables) {
        text +=
            "# table " + one.key + " = " + shownText(one.path) + ", SHA-256 " + one.sha256 + '\n';
    }
    for (const sResultColumn& column : table.columns) {
        if (column.isOf(run.module) && !column.unit.empty()) {
            text += "# unit of " + column.name + ": " + column.unit + '\n';
        }
    }
    return text;
}

/// The name of the second file: "run.contacts.tsv.gz" beside "run.tsv.gz".
std::string contactsPath(const std::string& path) {
    const std::size_t end = path.rfind(".tsv");
    return path.substr(0, end) + ".contacts" + path.substr(end);
}

class cTsvResults final : public cResultFile {
  public:
    cTsvResults(const std::string& path, const sRunDescription& itsRun, const sRunInputs& itsInputs)
        : run(itsRun), inputs(itsInputs), residues(path) {
        residues.write(provenance(run, resultTable("residues")) + header(resultTable("residues")));
        if (run.module == "vor") {
            contacts.emplace(contactsPath(path));
            contacts->write(provenance(run, resultTable("contacts")) + contactHeader());
        }
    }

    bool needsOrder() const override { return true; }
    bool holds(std::size_t, std::string_view) const override { return false; }

    void write(std::size_t position, const sFileRecord& file) override {
        if (file.structures.empty()) {
            residues.write("# failed: " + shownText(file.path) + ": " + shownText(file.message) +
                           '\n');
            return;
        }
        const auto place = static_cast<std::int64_t>(inputs.place(position));
        sRowSource source{.input = place + 1, .model = 1, .file = file};
        for (const sStructureRecord& structure : file.structures) {
            source.structure = &structure;
            source.id = structureId(place + 1, source.model);
            writeResidues(source);
            if (contacts) {
                writeContacts(source);
            }
            ++source.model;
        }
    }

    void commit() override {
        residues.flush();
        if (contacts) {
            contacts->flush();
        }
    }

    void finish(bool isComplete) override {
        if (!isComplete) {
            residues.write("# interrupted\n");
        }
        residues.finish();
        if (contacts) {
            contacts->finish();
        }
    }

  private:
    std::string header(const sResultTable& table) const {
        std::string line;
        for (const char* const name : fileColumns) {
            line += std::string(name) + '\t';
        }
        for (const sResultColumn& column : table.columns) {
            line += isWanted(column, run) ? column.name + '\t' : "";
        }
        line.back() = '\n';
        return line;
    }

    std::string contactHeader() const {
        std::string line = header(resultTable("contacts"));
        line.back() = '\t';
        return line + "chain_id_1\tnumber_1\tname_1\tchain_id_2\tnumber_2\tname_2\ttypes\n";
    }

    static std::string beginning(const sRowSource& source) {
        std::string text = std::to_string(source.id) + '\t';
        appendField(text, source.file.path);
        text += '\t';
        appendField(text, source.structure->entry);
        text += '\t' + std::to_string(source.model) + '\t';
        return text;
    }

    void appendRow(std::string& text, const sRowSource& source, const sResultTable& table,
                   std::size_t row) const {
        for (const sResultColumn& column : table.columns) {
            if (isWanted(column, run)) {
                appendField(text, column.cell(source, row));
                text += '\t';
            }
        }
    }

    void writeResidues(const sRowSource& source) {
        const sResultTable& table = resultTable("residues");
        const std::string begin = beginning(source);
        std::string line;
        for (std::size_t row = 0; row < table.rowCount(source); ++row) {
            line = begin;
            appendRow(line, source, table, row);
            line.back() = '\n';
            residues.write(line);
        }
    }

    void writeContacts(const sRowSource& source) {
        const sResultTable& table = resultTable("contacts");
        const sStructureRecord& structure = *source.structure;
        const sInteractionRecord& found = *structure.interactions;
        const std::string begin = beginning(source);
        std::size_t type = 0;
        for (std::size_t row = 0; row < table.rowCount(source); ++row) {
            std::string line = begin;
            appendRow(line, source, table, row);
            const sContact& contact = found.contacts.contacts[row];
            for (const std::uint32_t residue : {contact.residue1, contact.residue2}) {
                appendField(line, structure.chains[structure.chainOf[residue]].id);
                line += '\t';
                appendField(line, structure.residues[residue].number);
                line += '\t';
                appendField(line, structure.residues[residue].name);
                line += '\t';
            }
            for (bool isFirst = true; type < found.types.size() && found.types[type].contact == row;
                 ++type, isFirst = false) {
                line += isFirst ? "" : ",";
                line += contactTypeText(found.types[type].type);
            }
            contacts->write(line + '\n');
        }
    }

    const sRunDescription run;
    const sRunInputs inputs;
    cTextOutput residues;
    std::optional<cTextOutput> contacts; ///< of the interaction module alone
};

} // namespace

std::unique_ptr<cResultFile> openTsvResults(const std::string& path, const sRunDescription& run,
                                            const sRunInputs& inputs, bool) {
    return std::make_unique<cTsvResults>(path, run, inputs);
}

} // namespace kelmo
