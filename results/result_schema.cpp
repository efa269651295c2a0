#include "results/result_schema.h"

#include "base/shown_text.h"

#include <algorithm>
#include <set>

namespace kelmo {

namespace {

std::string tableSql(const sResultTable& table) {
    std::string sql = "CREATE TABLE " + table.name + " (\n";
    for (const sResultColumn& column : table.columns) {
        sql += "    " + column.name + ' ' + column.type;
        sql += column.name == "structure" ? " NOT NULL REFERENCES structures (id)" : "";
        sql += column.name == "run" ? " NOT NULL REFERENCES runs (id)" : "";
        sql += column.name == "id" ? " PRIMARY KEY" : "";
        sql += ",\n";
    }
    if (table.keyColumns == 1) {
        sql.resize(sql.size() - 2);
        return sql + ")";
    }
    sql += "    PRIMARY KEY (";
    for (std::size_t i = 0; i < table.keyColumns; ++i) {
        sql += (i == 0 ? "" : ", ") + table.columns[i].name;
    }
    return sql + ")) WITHOUT ROWID"; // rows stand in the order of their keys, whoever came first
}

/// What the other chains change of each residue: alone minus in the complex.
std::string differenceView() {
    std::string sql = "CREATE VIEW residue_differences AS SELECT structure, residue, chain, "
                      "chain_id, number, name";
    const std::vector<sResultColumn>& columns = resultTable("residues").columns;
    const auto isThere = [&](const std::string& name) {
        return std::ranges::find(columns, name, &sResultColumn::name) != columns.end();
    };
    constexpr std::string_view end = "_bound";
    for (const sResultColumn& column : columns) {
        const std::string stem =
            column.name.substr(0, column.name.size() - std::min(column.name.size(), end.size()));
        if (stem + std::string(end) == column.name && isThere(stem + "_unbound")) {
            sql += ", " + stem + "_unbound - " + column.name + " AS " + stem + "_difference";
        }
    }
    return sql + " FROM residues";
}

constexpr const char* fixedTables = R"(
CREATE TABLE runs (
    id INTEGER PRIMARY KEY,
    module TEXT NOT NULL,
    version TEXT NOT NULL,
    started TEXT NOT NULL,
    ended TEXT,
    first_structure INTEGER NOT NULL,
    inputs INTEGER NOT NULL);
CREATE TABLE settings (
    run INTEGER NOT NULL REFERENCES runs (id),
    key TEXT NOT NULL,
    value TEXT NOT NULL,
    is_compared INTEGER NOT NULL,
    PRIMARY KEY (run, key)) WITHOUT ROWID;
CREATE TABLE parameter_tables (
    run INTEGER NOT NULL REFERENCES runs (id),
    key TEXT NOT NULL,
    path TEXT NOT NULL,
    sha256 TEXT NOT NULL,
    PRIMARY KEY (run, key)) WITHOUT ROWID;
CREATE TABLE columns (
    "table" TEXT NOT NULL,
    place INTEGER NOT NULL,
    name TEXT NOT NULL,
    type TEXT NOT NULL,
    unit TEXT,
    meaning TEXT NOT NULL,
    PRIMARY KEY ("table", place)) WITHOUT ROWID;
)";

constexpr const char* viewsAndIndexes = R"(
CREATE INDEX structures_by_path ON structures (path);
CREATE INDEX structures_by_sha256 ON structures (sha256);
CREATE INDEX structures_by_entry ON structures (entry);
CREATE VIEW binding_residues AS
    SELECT s.path, s.entry, r.structure, r.residue, r.chain, r.chain_id, r.number, r.name
    FROM residues r JOIN structures s ON s.id = r.structure WHERE r.is_binding = 1;
CREATE VIEW contact_pairs AS
    SELECT c.structure, c.contact,
        a.chain_id AS chain_id_1, a.number AS number_1, a.name AS name_1,
        b.chain_id AS chain_id_2, b.number AS number_2, b.name AS name_2,
        (SELECT group_concat(t.type, ',') FROM contact_types t
            WHERE t.structure = c.structure AND t.contact = c.contact) AS types
    FROM contacts c
        JOIN residues a ON a.structure = c.structure AND a.residue = c.residue_1
        JOIN residues b ON b.structure = c.structure AND b.residue = c.residue_2;
)";

void describeColumns(cDatabase& database) {
    cStatement insert = database.prepare("INSERT INTO columns VALUES (?, ?, ?, ?, ?, ?)");
    for (const sResultTable& table : resultTables()) {
        std::int64_t place = 0;
        for (const sResultColumn& column : table.columns) {
            insert.bind(1, table.name).bind(2, ++place).bind(3, column.name).bind(4, column.type);
            column.unit.empty() ? insert.bindNull(5) : insert.bind(5, column.unit);
            insert.bind(6, column.meaning).run();
        }
    }
}

std::vector<std::string> columnNames(cDatabase& database, const std::string& table) {
    std::vector<std::string> names;
    cStatement select = database.prepare("SELECT name FROM pragma_table_info(?) ORDER BY cid");
    select.bind(1, table);
    while (select.step()) {
        names.emplace_back(select.bytes(0));
    }
    return names;
}

[[noreturn]] void refuse(const cDatabase& database, const std::string& why) {
    throw cResultError("results file " + shownText(database.path()) + ' ' + why);
}

} // namespace

bool isEmpty(cDatabase& database) {
    return database.integerOf("SELECT count(*) FROM sqlite_schema") == 0;
}

void createSchema(cDatabase& database) {
    database.execute("PRAGMA application_id = " + std::to_string(resultApplicationId));
    database.execute("PRAGMA user_version = " + std::to_string(resultSchemaVersion));
    database.execute(fixedTables);
    for (const sResultTable& table : resultTables()) {
        database.execute(tableSql(table));
    }
    database.execute(viewsAndIndexes);
    database.execute(differenceView());
    describeColumns(database);
}

void checkOrigin(cDatabase& database) {
    if (database.integerOf("PRAGMA application_id") != resultApplicationId) {
        refuse(database, "is a database of another program");
    }
    const std::int64_t version = database.integerOf("PRAGMA user_version");
    if (version != resultSchemaVersion) {
        refuse(database, "has tables of version " + std::to_string(version) +
                             ", and this program works with version " +
                             std::to_string(resultSchemaVersion));
    }
}

void checkSchema(cDatabase& database) {
    checkOrigin(database);
    for (const sResultTable& table : resultTables()) {
        const std::vector<std::string> names = columnNames(database, table.name);
        if (!std::ranges::equal(names, table.columns, {}, {}, &sResultColumn::name)) {
            refuse(database, "has other columns in table " + table.name + " than this program");
        }
    }
}

std::vector<sStoredRun> storedRuns(cDatabase& database) {
    std::vector<sStoredRun> runs;
    cStatement select = database.prepare("SELECT id, first_structure, inputs, ended, module, "
                                         "version, started FROM runs ORDER BY id");
    while (select.step()) {
        sStoredRun& run = runs.emplace_back();
        run.id = select.integer(0);
        run.firstStructure = select.integer(1);
        run.inputs = select.integer(2);
        run.ended = select.bytes(3);
        run.description.module = select.bytes(4);
        run.description.version = select.bytes(5);
        run.description.started = select.bytes(6);
    }
    cStatement settings =
        database.prepare("SELECT key, value, is_compared FROM settings WHERE run = ?");
    cStatement tables =
        database.prepare("SELECT key, path, sha256 FROM parameter_tables WHERE run = ?");
    for (sStoredRun& run : runs) {
        settings.bind(1, run.id);
        while (settings.step()) {
            run.description.settings.push_back({std::string(settings.bytes(0)),
                                                std::string(settings.bytes(1)),
                                                settings.integer(2) != 0});
        }
        settings.reset();
        tables.bind(1, run.id);
        while (tables.step()) {
            run.description.tables.push_back({std::string(tables.bytes(0)),
                                              std::string(tables.bytes(1)),
                                              std::string(tables.bytes(2))});
        }
        tables.reset();
    }
    return runs;
}

void storeRun(cDatabase& database, const sStoredRun& run) {
    cStatement insert = database.prepare("INSERT INTO runs VALUES (?, ?, ?, ?, ?, ?, ?)");
    const sRunDescription& description = run.description;
    insert.bind(1, run.id).bind(2, description.module).bind(3, description.version);
    insert.bind(4, description.started);
    run.ended.empty() ? insert.bindNull(5) : insert.bind(5, run.ended);
    insert.bind(6, run.firstStructure).bind(7, run.inputs).run();
    cStatement setting = database.prepare("INSERT INTO settings VALUES (?, ?, ?, ?)");
    for (const sDescribedSetting& one : description.settings) {
        setting.bind(1, run.id).bind(2, one.key).bind(3, one.value);
        setting.bind(4, std::int64_t{one.isCompared}).run();
    }
    cStatement table = database.prepare("INSERT INTO parameter_tables VALUES (?, ?, ?, ?)");
    for (const sDescribedTable& one : description.tables) {
        table.bind(1, run.id).bind(2, one.key).bind(3, one.path).bind(4, one.sha256).run();
    }
}

std::int64_t nextStructure(cDatabase& database) {
    const std::int64_t behindLists =
        database.integerOf("SELECT max(first_structure + inputs) FROM runs");
    const std::int64_t behindRows = database.integerOf(
        "SELECT max(id) + 1 FROM structures WHERE id < " + std::to_string(modelDistance));
    return std::max({std::int64_t{1}, behindLists, behindRows});
}

std::string insertion(const sResultTable& table) {
    // Files have a row from the beginning. Where nothing can be replaced the statement changes one
    // row at most, and the library keeps no copies of pages to take it back.
    std::string sql = table.keyColumns == 1 ? "INSERT OR REPLACE INTO " : "INSERT INTO ";
    sql += table.name + " VALUES (";
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        sql += i == 0 ? "?" : ", ?";
    }
    return sql + ")";
}

} // namespace kelmo
