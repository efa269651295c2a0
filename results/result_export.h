// Rows of a database of results as text.
#pragma once

#include <cstddef>
#include <string>

namespace kelmo {

/// The forms that rows can be written in.
enum class eExportFormat {
    tsv,  ///< a line of names, then a line for each row, tabs between the columns
    jsonl ///< an object for each row
};

/// What is wanted of a database.
struct sExport {
    std::string results = {}; ///< the database, which is only read
    std::string table = {};   ///< or view
    std::string where = {};   ///< SQL behind WHERE; empty for all rows
    eExportFormat format = eExportFormat::tsv;
    bool isCompressed = false;
};

/// Writes the rows to a descriptor, which stays open. Returns their number. Throws cResultError.
std::size_t exportResults(const sExport& wanted, int descriptor);

} // namespace kelmo
