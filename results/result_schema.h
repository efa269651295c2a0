// The form of a database of results: its tables, views and what tells it from other databases.
#pragma once

#include "results/database.h"
#include "results/result_tables.h"
#include "results/run_description.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kelmo {

/// "KLMO": what the header of the file says of who made it.
inline constexpr std::int64_t resultApplicationId = 0x4B4C4D4F;
/// Grows with every change of tables that older programs cannot read or write.
inline constexpr std::int64_t resultSchemaVersion = 1;

/// Whether nothing stands in the database.
bool isEmpty(cDatabase& database);
/// Makes all tables, views and indexes, within a transaction of the caller.
void createSchema(cDatabase& database);
/// Throws cResultError unless the database is one of results by this version and with all columns
/// of resultTables().
void checkSchema(cDatabase& database);
/// Throws cResultError unless the database is one of results that this program can read.
void checkOrigin(cDatabase& database);

/// A run in the database.
struct sStoredRun {
    std::int64_t id = 0;
    std::int64_t firstStructure = 0; ///< id of the first file in its list
    std::int64_t inputs = 0;         ///< files in its list
    std::string ended = {};          ///< empty while inputs are still to be analysed
    sRunDescription description = {};
};

/// All runs in the order of their ids.
std::vector<sStoredRun> storedRuns(cDatabase& database);
/// Adds a run with its settings and tables.
void storeRun(cDatabase& database, const sStoredRun& run);

/// Id for the first file of one more run: behind those of all lists and structures.
std::int64_t nextStructure(cDatabase& database);

/// "INSERT INTO table VALUES (?, ?, ...)" for all columns of a table; of structures, which replaces
/// the row of a file that is pending.
std::string insertion(const sResultTable& table);

} // namespace kelmo
