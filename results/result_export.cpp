#include "results/result_export.h"

#include "base/shown_text.h"
#include "results/field_text.h"
#include "results/result_schema.h"
#include "results/text_output.h"

#include <algorithm>

#include <sqlite3.h>

namespace kelmo {

namespace {

/// The names of all tables and views of the database, for a message.
std::vector<std::string> tableNames(cDatabase& database) {
    std::vector<std::string> names;
    cStatement select = database.prepare("SELECT name FROM sqlite_schema WHERE type IN ('table', "
                                         "'view') AND name NOT LIKE 'sqlite_%' ORDER BY rowid");
    while (select.step()) {
        names.emplace_back(select.bytes(0));
    }
    return names;
}

void checkTable(cDatabase& database, const std::string& table) {
    const std::vector<std::string> names = tableNames(database);
    if (std::ranges::find(names, table) != names.end()) {
        return;
    }
    std::string all;
    for (const std::string& name : names) {
        all += (all.empty() ? "" : ", ") + name;
    }
    throw cResultError("results file " + shownText(database.path()) + " has no table " +
                       shownText(table) + ", but " + all);
}

sCell cellOf(const cStatement& row, int column) {
    switch (row.columnType(column)) {
    case SQLITE_INTEGER:
        return {.kind = sCell::eKind::integer, .integer = row.integer(column)};
    case SQLITE_FLOAT:
        return {.kind = sCell::eKind::real, .real = row.real(column)};
    case SQLITE_NULL:
        return {};
    default:
        return {.kind = sCell::eKind::text, .text = row.bytes(column)};
    }
}

std::string namesLine(const cStatement& select) {
    std::string line;
    for (int i = 0; i < select.columnCount(); ++i) {
        line += i == 0 ? "" : "\t";
        appendField(line, select.columnName(i));
    }
    return line + '\n';
}

void appendTsvRow(std::string& text, const cStatement& row) {
    for (int i = 0; i < row.columnCount(); ++i) {
        text += i == 0 ? "" : "\t";
        appendField(text, cellOf(row, i));
    }
    text += '\n';
}

void appendJsonRow(std::string& text, const cStatement& row) {
    for (int i = 0; i < row.columnCount(); ++i) {
        text += i == 0 ? "{" : ", ";
        appendJson(text, row.columnName(i));
        text += ": ";
        appendJson(text, cellOf(row, i));
    }
    text += "}\n";
}

} // namespace

std::size_t exportResults(const sExport& wanted, int descriptor) {
    cDatabase database(wanted.results, cDatabase::eMode::readOnly);
    checkOrigin(database);
    checkTable(database, wanted.table);
    // In brackets, so that what follows belongs to the condition or is no SQL.
    cStatement select =
        database.prepare("SELECT * FROM " + quotedName(wanted.table) +
                         (wanted.where.empty() ? "" : " WHERE (\n" + wanted.where + "\n)"));
    cTextOutput out(descriptor, wanted.isCompressed);
    const bool isTsv = wanted.format == eExportFormat::tsv;
    if (isTsv) {
        out.write(namesLine(select));
    }
    std::size_t rows = 0;
    for (std::string line; select.step(); ++rows) {
        line.clear();
        isTsv ? appendTsvRow(line, select) : appendJsonRow(line, select);
        out.write(line);
    }
    out.finish();
    return rows;
}

} // namespace kelmo
