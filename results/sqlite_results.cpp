// Results as a database of SQLite.
#include "results/database.h"
#include "results/result_formats.h"
#include "results/result_schema.h"

#include "base/shown_text.h"

#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace kelmo {

namespace {

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

/// The rows of one table, one after the other.
class cRowInsertion {
  public:
    cRowInsertion(cDatabase& database, const sResultTable& itsTable)
        : table(itsTable), statement(database, insertion(itsTable)) {}

    void insert(const sRowSource& source) {
        std::vector<std::span<const double>> series(table.columns.size());
        for (std::size_t i = 0; i < series.size(); ++i) {
            if (table.columns[i].series != nullptr) {
                series[i] = table.columns[i].series(source);
            }
        }
        const std::size_t rows = table.rowCount(source);
        for (std::size_t row = 0; row < rows; ++row) {
            for (std::size_t i = 0; i < series.size(); ++i) {
                const int parameter = static_cast<int>(i) + 1;
                if (!series[i].empty()) {
                    statement.bind(parameter, series[i][row]);
                } else if (table.columns[i].series != nullptr) {
                    statement.bindNull(parameter);
                } else {
                    bind(parameter, table.columns[i].cell(source, row));
                }
            }
            statement.run();
        }
    }

  private:
    void bind(int parameter, const sCell& cell) {
        switch (cell.kind) {
        case sCell::eKind::integer:
            statement.bind(parameter, cell.integer);
            break;
        case sCell::eKind::real:
            statement.bind(parameter, cell.real);
            break;
        case sCell::eKind::text:
            statement.bind(parameter, cell.text);
            break;
        case sCell::eKind::none:
            statement.bindNull(parameter);
            break;
        }
    }

    const sResultTable& table;
    cStatement statement;
};

/// What stands in the database of an input.
struct sKnownInput {
    std::int64_t id = 0;
    bool isBegun = false;    ///< has rows that are to be replaced
    std::string sha256 = {}; ///< if it was analysed
};

class cSqliteResults final : public cResultFile {
  public:
    cSqliteResults(const std::string& path, const sRunDescription& run, const sRunInputs& itsInputs,
                   bool isResumed)
        : database(path, cDatabase::eMode::create), inputs(itsInputs) {
        // No second run may write as long as this one goes on. A transaction needs a journal
        // beside the file only while it lasts, and what is appended is written once.
        database.execute("PRAGMA page_size = 16384; PRAGMA locking_mode = EXCLUSIVE; "
                         "PRAGMA journal_mode = DELETE; PRAGMA synchronous = FULL; "
                         "PRAGMA cache_size = -16384; PRAGMA temp_store = MEMORY");
        transaction.emplace(database, "EXCLUSIVE");
        isEmpty(database) ? createSchema(database) : checkSchema(database);
        const std::optional<sStoredRun> earlier = isResumed ? findRun(run) : std::nullopt;
        earlier ? resume(*earlier) : begin(run);
        commit();
        for (const sResultTable& table : resultTables()) {
            insertions.emplace_back(database, table);
        }
    }

    bool needsOrder() const override { return false; }

    bool holds(std::size_t position, std::string_view sha256) const override {
        return !known.empty() && !sha256.empty() && known[position].sha256 == sha256;
    }

    void write(std::size_t position, const sFileRecord& file) override {
        beginTransaction();
        const std::int64_t id = idOf(position);
        if (!known.empty() && known[position].isBegun) {
            removeRows(id);
        }
        sRowSource source{.id = id,
                          .run = runId,
                          .input = static_cast<std::int64_t>(inputs.place(position)) + 1,
                          .model = 1,
                          .file = file};
        if (file.structures.empty()) {
            insertions.front().insert(source);
            return;
        }
        for (const sStructureRecord& structure : file.structures) {
            source.structure = &structure;
            source.id = structureId(id, source.model);
            for (cRowInsertion& table : insertions) {
                table.insert(source);
            }
            ++source.model;
        }
    }

    void commit() override {
        if (transaction) {
            transaction->commit();
            transaction.reset();
        }
    }

    void finish(bool isComplete) override {
        beginTransaction();
        if (isComplete) {
            cStatement update = database.prepare("UPDATE runs SET ended = ? WHERE id = ?");
            const std::string now = currentTime();
            update.bind(1, now).bind(2, runId).run();
        }
        commit();
    }

  private:
    void beginTransaction() {
        if (!transaction) {
            transaction.emplace(database);
        }
    }

    std::int64_t idOf(std::size_t position) const {
        return known.empty() ? firstId + static_cast<std::int64_t>(inputs.place(position))
                             : known[position].id;
    }

    /// The last run that results of this one may be added to; nothing when the module has not run
    /// yet. Throws cResultError where it ran by other settings only.
    std::optional<sStoredRun> findRun(const sRunDescription& wanted) {
        std::vector<sStoredRun> runs = storedRuns(database);
        std::vector<std::string> different;
        for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
            if (run->description.module != wanted.module) {
                continue;
            }
            const std::vector<std::string> keys = differingKeys(run->description, wanted);
            if (keys.empty()) {
                return std::move(*run);
            }
            if (different.empty()) {
                different = keys;
            }
        }
        if (!different.empty()) {
            throw cResultError("results file " + shownText(database.path()) +
                               " cannot be resumed, because these differ from its last " +
                               wanted.module + " run: " + joined(different));
        }
        return std::nullopt;
    }

    void begin(const sRunDescription& run) {
        runId = database.integerOf("SELECT max(id) FROM runs") + 1;
        firstId = nextStructure(database);
        storeRun(database, {runId, firstId, static_cast<std::int64_t>(inputs.listed), {}, run});
        cPending pending(*this);
        for (std::size_t position = 0; position < inputs.count; ++position) {
            pending.insert(position);
        }
    }

    void resume(const sStoredRun& run) {
        runId = run.id;
        firstId = run.firstStructure;
        const std::int64_t next = nextStructure(database);
        known.resize(inputs.count);
        const std::unordered_set<std::int64_t> used = readKnown();
        placeNew(run, next, used);
        cPending pending(*this);
        for (std::size_t position = 0; position < inputs.count; ++position) {
            if (used.count(known[position].id) == 0) {
                pending.insert(position);
            }
        }
        cStatement update =
            database.prepare("UPDATE runs SET ended = NULL, inputs = max(inputs, ?) WHERE id = ?");
        update.bind(1, static_cast<std::int64_t>(inputs.listed)).bind(2, runId).run();
    }

    /// Finds the rows of the inputs; of inputs with one name, the first has the first row. Returns
    /// the ids of all rows.
    std::unordered_set<std::int64_t> readKnown() {
        std::unordered_multimap<std::string_view, std::size_t> positions;
        for (std::size_t position = inputs.count; position-- > 0;) {
            positions.emplace(inputs.path(position), position);
        }
        std::unordered_set<std::int64_t> used;
        cStatement select = database.prepare("SELECT id, status, sha256, path FROM structures "
                                             "WHERE run = ? AND model = 1 ORDER BY id");
        select.bind(1, runId);
        while (select.step()) {
            used.insert(select.integer(0));
            const auto [begin, end] = positions.equal_range(select.bytes(3));
            if (begin == end) {
                continue;
            }
            auto first = begin;
            for (auto other = begin; other != end; ++other) {
                first = other->second < first->second ? other : first;
            }
            const bool isAnalysed = select.bytes(1) == "analysed";
            known[first->second] = {select.integer(0), select.bytes(1) != "pending",
                                    std::string(isAnalysed ? select.bytes(2) : "")};
            positions.erase(first);
        }
        return used;
    }

    /// Ids for inputs that have no row: those that a run over the whole list would have given them,
    /// where nothing else has them, and otherwise ones behind all others.
    void placeNew(const sStoredRun& run, std::int64_t next,
                  const std::unordered_set<std::int64_t>& used) {
        const bool isLast = next == run.firstStructure + run.inputs;
        std::int64_t behind = std::max(next, firstId + static_cast<std::int64_t>(inputs.listed));
        for (std::size_t position = 0; position < inputs.count; ++position) {
            if (known[position].id != 0) {
                continue;
            }
            const auto place = static_cast<std::int64_t>(inputs.place(position));
            const bool isFree = used.count(firstId + place) == 0 && (place < run.inputs || isLast);
            known[position].id = isFree ? firstId + place : behind++;
        }
    }

    void removeRows(std::int64_t id) {
        for (std::int64_t model = 1;; ++model) {
            for (const sResultTable& table : resultTables()) {
                cStatement remove = database.prepare("DELETE FROM " + table.name + " WHERE " +
                                                     table.columns.front().name + " = ?");
                remove.bind(1, structureId(id, model)).run();
                if (&table == &resultTables().front() && database.changedRows() == 0) {
                    return;
                }
            }
        }
    }

    /// Rows of files that are still to be analysed.
    class cPending {
      public:
        explicit cPending(cSqliteResults& itsOwner)
            : owner(itsOwner),
              statement(owner.database, "INSERT INTO structures (id, run, input, model, path, "
                                        "status) VALUES (?, ?, ?, 1, ?, 'pending')") {}

        void insert(std::size_t position) {
            const auto input = static_cast<std::int64_t>(owner.inputs.place(position)) + 1;
            statement.bind(1, owner.idOf(position)).bind(2, owner.runId).bind(3, input);
            statement.bind(4, owner.inputs.path(position)).run();
        }

      private:
        cSqliteResults& owner;
        cStatement statement;
    };

    cDatabase database;
    const sRunInputs inputs;
    std::optional<cTransaction> transaction;
    std::vector<cRowInsertion> insertions; ///< of all tables, structures first
    std::int64_t runId = 0;
    std::int64_t firstId = 0;
    std::vector<sKnownInput> known; ///< by position; empty unless the run is resumed
};

} // namespace

std::unique_ptr<cResultFile> openSqliteResults(const std::string& path, const sRunDescription& run,
                                               const sRunInputs& inputs, bool isResumed) {
    return std::make_unique<cSqliteResults>(path, run, inputs, isResumed);
}

} // namespace kelmo
