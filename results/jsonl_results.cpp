// Results as JSON Lines: one structure a line, its tables as lists of their columns.
#include "results/field_text.h"
#include "results/result_formats.h"
#include "results/text_output.h"

#include <algorithm>

namespace kelmo {

namespace {

void appendKey(std::string& text, std::string_view key) {
    if (!text.ends_with('{')) {
        text += ", ";
    }
    appendJson(text, key);
    text += ": ";
}

std::string describe(const sRunDescription& run) {
    std::string text = "{";
    for (const auto& [key, value] :
         {std::pair("module", &run.module), {"version", &run.version}, {"started", &run.started}}) {
        appendKey(text, key);
        appendJson(text, *value);
    }
    appendKey(text, "settings");
    text += '{';
    for (const sDescribedSetting& setting : run.settings) {
        appendKey(text, setting.key);
        appendJson(text, setting.value);
    }
    text += '}';
    appendKey(text, "parameter_tables");
    text += '{';
    for (const sDescribedTable& table : run.tables) {
        appendKey(text, table.key);
        text += '{';
        appendKey(text, "path");
        appendJson(text, table.path);
        appendKey(text, "sha256");
        appendJson(text, table.sha256);
        text += '}';
    }
    return text + "}}";
}

class cJsonLinesResults final : public cResultFile {
  public:
    cJsonLinesResults(const std::string& path, const sRunDescription& run,
                      const sRunInputs& itsInputs)
        : module(run.module), description(describe(run)), inputs(itsInputs), file(path) {}

    bool needsOrder() const override { return true; }
    bool holds(std::size_t, std::string_view) const override { return false; }

    void write(std::size_t position, const sFileRecord& record) override {
        const auto place = static_cast<std::int64_t>(inputs.place(position));
        sRowSource source{.id = place + 1, .input = place + 1, .model = 1, .file = record};
        if (record.structures.empty()) {
            writeLine(source);
        }
        for (const sStructureRecord& structure : record.structures) {
            source.structure = &structure;
            source.id = structureId(place + 1, source.model);
            writeLine(source);
            ++source.model;
        }
    }

    void commit() override { file.flush(); }
    void finish(bool) override { file.finish(); }

  private:
    void writeLine(const sRowSource& source) {
        std::string line = "{";
        for (const sResultColumn& column : resultTable("structures").columns) {
            if (column.name == "run") {
                appendKey(line, column.name);
                line += description;
            } else if (column.isOf(module)) {
                appendKey(line, countKey(column.name));
                appendJson(line, column.cell(source, 0));
            }
        }
        if (source.structure != nullptr) {
            for (const char* const name : {"chains", "residues"}) {
                appendTable(line, source, resultTable(name));
            }
            if (source.structure->interactions) {
                appendTable(line, source, resultTable("contacts"));
                appendTypes(line, *source.structure->interactions);
            }
        }
        file.write(line + "}\n");
    }

    /// Tables have the names for themselves that columns of the database have for their lengths.
    static std::string countKey(const std::string& name) {
        const bool isTable = std::ranges::any_of(
            resultTables(), [&](const sResultTable& table) { return table.name == name; });
        return isTable ? "number_of_" + name : name;
    }

    void appendTable(std::string& line, const sRowSource& source, const sResultTable& table) const {
        const std::size_t rows = table.rowCount(source);
        appendKey(line, table.name);
        line += '{';
        for (const sResultColumn& column : table.columns) {
            if (column.name == "structure" || !column.isOf(module)) {
                continue;
            }
            appendKey(line, column.name);
            line += '[';
            for (std::size_t row = 0; row < rows; ++row) {
                line += row == 0 ? "" : ",";
                appendJson(line, column.cell(source, row));
            }
            line += ']';
        }
        line += '}';
    }

    /// One more column of the contacts: a list of types for each.
    static void appendTypes(std::string& line, const sInteractionRecord& found) {
        line.pop_back();
        appendKey(line, "types");
        line += '[';
        std::size_t type = 0;
        for (std::size_t row = 0; row < found.contacts.contacts.size(); ++row) {
            line += row == 0 ? "[" : ",[";
            for (bool isFirst = true; type < found.types.size() && found.types[type].contact == row;
                 ++type, isFirst = false) {
                line += isFirst ? "" : ",";
                appendJson(line, contactTypeText(found.types[type].type));
            }
            line += ']';
        }
        line += "]}";
    }

    const std::string module;
    const std::string description;
    const sRunInputs inputs;
    cTextOutput file;
};

} // namespace

std::unique_ptr<cResultFile> openJsonLinesResults(const std::string& path,
                                                  const sRunDescription& run,
                                                  const sRunInputs& inputs, bool) {
    return std::make_unique<cJsonLinesResults>(path, run, inputs);
}

} // namespace kelmo
