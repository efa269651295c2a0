// The tables of a results file: which columns they have, what those mean and what stands in them.
#pragma once

#include "results/structure_record.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelmo {

/// One value.
struct sCell {
    enum class eKind { none, integer, real, text };

    eKind kind = eKind::none;
    std::int64_t integer = 0;
    double real = 0.0;
    std::string_view text = {}; ///< bytes of any encoding; lives as long as what it is of
};

/// What the rows of one structure, or of a file without any, are made of.
struct sRowSource {
    std::int64_t id = 0;    ///< of the structure
    std::int64_t run = 0;   ///< to which it belongs
    std::int64_t input = 0; ///< place of the file among those of the run, from 1
    std::int64_t model = 0; ///< place of the structure in its file, from 1
    const sFileRecord& file;
    const sStructureRecord* structure = nullptr; ///< null if the file failed
};

/// One column.
struct sResultColumn {
    std::string name = {};
    std::string type = {};    ///< "INTEGER", "REAL" or "TEXT"
    std::string unit = {};    ///< "Å²", "%", "Å"; empty for none
    std::string meaning = {}; ///< in a sentence or two
    std::function<sCell(const sRowSource& source, std::size_t row)> cell = {};
    /// All values of the column at once, none if they were not computed: what `cell` gives one by
    /// one. Null for columns that are no such series.
    std::function<std::span<const double>(const sRowSource& source)> series = {};
    std::string module = {}; ///< whose runs alone fill it: "kev", "vor"; empty for both

    /// Whether runs of a module fill it.
    bool isOf(std::string_view whichModule) const {
        return module.empty() || module == whichModule;
    }
};

/// One table.
struct sResultTable {
    std::string name = {};
    std::size_t keyColumns = 1; ///< so many from the first on tell its rows apart
    std::vector<sResultColumn> columns = {};
    std::size_t (*rowCount)(const sRowSource& source) = nullptr;
};

/// structures, chains, residues, contacts, contact_types. The attributes are those that there are
/// at the first call.
const std::vector<sResultTable>& resultTables();
const sResultTable& resultTable(std::string_view name);
/// The name of a type as it stands in the tables.
std::string_view contactTypeText(eContactType type);

/// Id of a structure: that of the first one of its file, and beyond 2^32 those of further models,
/// so that ids do not depend on how many models the files before it have.
std::int64_t structureId(std::int64_t firstId, std::int64_t model);
/// Ids below this are those of first models.
inline constexpr std::int64_t modelDistance = std::int64_t{1} << 32;

} // namespace kelmo
