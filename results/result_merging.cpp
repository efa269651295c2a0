#include "results/result_merging.h"

#include "base/shown_text.h"
#include "results/result_schema.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace kelmo {

namespace {

std::string named(const std::string& path) {
    return "results file " + shownText(path);
}

/// Adds databases to a new one, one after the other.
class cMerging {
  public:
    explicit cMerging(const std::string& path) : database(path, cDatabase::eMode::create) {
        database.execute("PRAGMA page_size = 16384; PRAGMA locking_mode = EXCLUSIVE; "
                         "PRAGMA cache_size = -16384; PRAGMA temp_store = MEMORY; "
                         "CREATE TEMP TABLE new_ids (old INTEGER PRIMARY KEY, new INTEGER)");
        cTransaction transaction(database, "EXCLUSIVE");
        createSchema(database);
        transaction.commit();
    }

    void add(const std::string& part) {
        {
            cDatabase reading(part, cDatabase::eMode::readOnly);
            checkSchema(reading);
            partRuns = storedRuns(reading);
        }
        const std::string file = fileName(part);
        database.prepare("ATTACH ? AS part").bind(1, file).run();
        cTransaction transaction(database);
        const bool isFirst = runs.empty();
        for (const sStoredRun& run : partRuns) {
            addRun(run, isFirst, part);
        }
        transaction.commit();
        database.execute("DETACH part");
    }

    sMergeReport finish() {
        database.execute(
            "UPDATE runs SET ended = CASE WHEN EXISTS (SELECT 1 FROM structures s WHERE s.run = "
            "runs.id AND s.status = 'pending') THEN NULL ELSE ended END");
        report.structures = count("SELECT count(*) FROM structures");
        report.pending = count("SELECT count(*) FROM structures WHERE status = 'pending'");
        cStatement select = database.prepare(
            "SELECT a.path, b.path FROM structures b JOIN structures a ON a.id = "
            "(SELECT min(c.id) FROM structures c WHERE c.sha256 = b.sha256 AND c.run = b.run) "
            "WHERE b.model = 1 AND a.path <> b.path ORDER BY b.id");
        while (select.step()) {
            report.sameContent.emplace_back(select.bytes(0), select.bytes(1));
        }
        return report;
    }

  private:
    static std::string fileName(const std::string& path) {
        return path.starts_with('/') ? path : "./" + path;
    }

    std::size_t count(const std::string& sql) {
        return static_cast<std::size_t>(database.integerOf(sql));
    }

    /// The run that results of this one belong to.
    const sStoredRun* findRun(const sStoredRun& wanted) const {
        const auto found = std::ranges::find_if(runs, [&](const sStoredRun& run) {
            return differingKeys(run.description, wanted.description).empty();
        });
        return found == runs.end() ? nullptr : &*found;
    }

    void addRun(const sStoredRun& run, bool isFirstPart, const std::string& part) {
        const sStoredRun* target = findRun(run);
        if (target == nullptr && isFirstPart) {
            sStoredRun added = run;
            added.id = static_cast<std::int64_t>(runs.size()) + 1;
            storeRun(database, added);
            target = &runs.emplace_back(std::move(added));
        }
        if (target == nullptr) {
            refuse(run, part);
        }
        mapIds(run, *target, part);
        copyRows(*target);
        cStatement update =
            database.prepare("UPDATE runs SET inputs = max(inputs, ?), started = min(started, ?), "
                             "ended = max(ended, ?) WHERE id = ?");
        update.bind(1, run.inputs).bind(2, run.description.started);
        update.bind(3, run.ended).bind(4, target->id).run();
    }

    [[noreturn]] void refuse(const sStoredRun& run, const std::string& part) const {
        std::string keys;
        for (const sStoredRun& other : runs) {
            if (other.description.module == run.description.module && keys.empty()) {
                for (const std::string& key : differingKeys(other.description, run.description)) {
                    keys += (keys.empty() ? "" : ", ") + key;
                }
            }
        }
        throw cResultError(named(part) + " has a " + run.description.module +
                           " run that the first one lacks" +
                           (keys.empty() ? "" : ", because these differ: " + keys));
    }

    /// Which structures are taken, and under which ids.
    void mapIds(const sStoredRun& run, const sStoredRun& target, const std::string& part) {
        const std::string from = " FROM part.structures p WHERE p.run = " + std::to_string(run.id);
        const std::string twin =
            " FROM main.structures m WHERE m.run = " + std::to_string(target.id) +
            " AND m.path = p.path AND m.model = p.model";
        cStatement conflict = database.prepare(
            "SELECT p.path" + from + " AND EXISTS (SELECT 1" + twin +
            " AND p.status = 'analysed' AND m.status = 'analysed' AND m.sha256 <> p.sha256)");
        if (conflict.step()) {
            throw cResultError(named(part) + " has results of another content of " +
                               shownText(conflict.bytes(0)) + " than an earlier one");
        }
        conflict.reset();
        // A file that was done in this part only is taken from here.
        replaceUndone(from, twin);
        report.leftOut += count("SELECT count(*)" + from + " AND EXISTS (SELECT 1" + twin + ")");
        const std::string isNew = " AND NOT EXISTS (SELECT 1" + twin + ")";
        const bool isTaken =
            count("SELECT count(*)" + from + isNew +
                  " AND EXISTS (SELECT 1 FROM main.structures o WHERE o.id = p.id)") > 0;
        const std::int64_t shift = isTaken ? nextStructure(database) - run.firstStructure : 0;
        database.execute("DELETE FROM new_ids; INSERT INTO new_ids SELECT p.id, p.id + " +
                         std::to_string(shift) + from + isNew);
    }

    /// Removes files that are pending or failed here where the part has them analysed.
    void replaceUndone(const std::string& from, const std::string& twin) {
        database.execute("DELETE FROM main.structures WHERE id IN (SELECT (SELECT m.id" + twin +
                         " AND m.status <> 'analysed')" + from + " AND p.status = 'analysed')");
    }

    void copyRows(const sStoredRun& target) {
        for (const sResultTable& table : resultTables()) {
            std::string columns;
            for (const sResultColumn& column : table.columns) {
                const bool isId = &column == &table.columns.front();
                columns += isId                   ? "n.new"
                           : column.name == "run" ? ", " + std::to_string(target.id)
                                                  : ", p." + column.name;
            }
            database.execute("INSERT INTO main." + table.name + " SELECT " + columns +
                             " FROM part." + table.name + " p JOIN new_ids n ON n.old = p." +
                             table.columns.front().name + " ORDER BY n.new");
        }
    }

    cDatabase database;
    std::vector<sStoredRun> runs;     ///< of the database that is made
    std::vector<sStoredRun> partRuns; ///< of the one that is added
    sMergeReport report;
};

} // namespace

sMergeReport mergeResults(const std::string& merged, const std::vector<std::string>& parts) {
    std::error_code error;
    if (std::filesystem::exists(std::filesystem::symlink_status(merged, error))) {
        throw cResultError(named(merged) + " exists already");
    }
    try {
        cMerging merging(merged);
        for (const std::string& part : parts) {
            merging.add(part);
        }
        return merging.finish();
    } catch (...) {
        std::filesystem::remove(merged, error); // half of it would pass for all
        throw;
    }
}

} // namespace kelmo
