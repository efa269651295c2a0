#include "batch/export_command.h"

#include "base/shown_text.h"
#include "base/usage_error.h"
#include "results/database.h"

#include <array>
#include <optional>

#include <unistd.h>

namespace kelmo {

namespace {

[[noreturn]] void refuse(const std::string& text) {
    throw cUsageError(text + "\nkelmo-batch --help lists the options.");
}

/// The options by their names, and where their values go.
struct sExportWords {
    std::optional<std::string> results;
    std::optional<std::string> table;
    std::optional<std::string> format;
    std::optional<std::string> where;

    std::optional<std::string>* placeOf(std::string_view name) {
        const std::array<std::pair<std::string_view, std::optional<std::string>*>, 3> places{
            {{"--table", &table}, {"--format", &format}, {"--where", &where}}};
        for (const auto& [known, place] : places) {
            if (known == name) {
                return place;
            }
        }
        return nullptr;
    }
};

sExportWords wordsFrom(const std::vector<std::string>& arguments) {
    sExportWords words;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const std::size_t equals = argument.find('=');
        const bool isOption = argument.starts_with("--");
        auto* const place = isOption ? words.placeOf(argument.substr(0, equals)) : &words.results;
        if (place == nullptr) {
            refuse("Unknown option " + shownText(argument) + " of export");
        }
        if (place->has_value()) {
            refuse(isOption ? "Option " + shownText(argument.substr(0, equals)) + " is given twice"
                            : "kelmo-batch export takes one results file");
        }
        if (!isOption) {
            *place = argument;
        } else if (equals != std::string::npos) {
            *place = argument.substr(equals + 1);
        } else if (i + 1 < arguments.size()) {
            *place = arguments[++i];
        } else {
            refuse("Option " + argument + " needs a value");
        }
    }
    return words;
}

} // namespace

sExport parseExport(const std::vector<std::string>& arguments) {
    const sExportWords words = wordsFrom(arguments);
    if (!words.results || !words.table) {
        refuse("kelmo-batch export needs a results file and --table");
    }
    sExport wanted{.results = *words.results,
                   .table = *words.table,
                   .where = words.where.value_or(std::string())};
    const std::string format = words.format.value_or("tsv");
    if (format != "tsv" && format != "tsv.gz" && format != "jsonl" && format != "jsonl.gz") {
        refuse("Option --format needs tsv, tsv.gz, jsonl or jsonl.gz, not \"" + shownText(format) +
               '"');
    }
    wanted.format = format.starts_with("tsv") ? eExportFormat::tsv : eExportFormat::jsonl;
    wanted.isCompressed = format.ends_with(".gz");
    return wanted;
}

eExitStatus exportRows(const sExport& wanted) {
    try {
        exportResults(wanted, STDOUT_FILENO);
    } catch (const cResultError& error) {
        throw cUsageError("Could not export: " + std::string(error.what()));
    }
    return eExitStatus::allDone;
}

} // namespace kelmo
