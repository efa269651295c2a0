#include "results/database.h"

#include "base/shown_text.h"

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kelmo {

namespace {

[[noreturn]] void fail(const std::string& path, sqlite3* database, int code) {
    const std::string reason = code == SQLITE_BUSY   ? "another run or program is using it"
                               : database != nullptr ? std::string(sqlite3_errmsg(database))
                                                     : std::string(sqlite3_errstr(code));
    throw cResultError("results file " + shownText(path) + ": " + reason);
}

bool isText(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t length = characterLength(bytes);
        if (length == 0 || bytes.front() == '\0') {
            return false;
        }
        bytes.remove_prefix(length);
    }
    return true;
}

/// Some names mean something else to the library than a file.
std::string fileName(const std::string& path) {
    return path.starts_with('/') ? path : "./" + path;
}

/// Whether the name is a link that somebody else has put there: it could lead what is written to
/// another file of this user. A user's own links are followed.
bool isLinkOfAnother(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode) &&
           status.st_uid != ::geteuid();
}

int flagsOf(cDatabase::eMode mode) {
    switch (mode) {
    case cDatabase::eMode::create:
        return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    case cDatabase::eMode::readWrite:
        return SQLITE_OPEN_READWRITE;
    case cDatabase::eMode::readOnly:
        break;
    }
    return SQLITE_OPEN_READONLY;
}

} // namespace

void cDatabase::sClose::operator()(sqlite3* database) const {
    sqlite3_close_v2(database);
}

cDatabase::cDatabase(const std::string& path, eMode mode) : name(path) {
    if (mode != eMode::readOnly && isLinkOfAnother(path)) {
        throw cResultError("results file " + shownText(path) + ": it is a link of another user");
    }
    sqlite3* opened = nullptr;
    const int code = sqlite3_open_v2(fileName(path).c_str(), &opened,
                                     flagsOf(mode) | SQLITE_OPEN_NOMUTEX, nullptr);
    handle.reset(opened);
    if (code != SQLITE_OK) {
        fail(name, opened, code);
    }
    sqlite3_extended_result_codes(opened, 0);
}

void cDatabase::execute(const std::string& sql) {
    const int code = sqlite3_exec(handle.get(), sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) {
        fail(name, handle.get(), code);
    }
}

cStatement cDatabase::prepare(const std::string& sql) {
    return {*this, sql};
}

std::int64_t cDatabase::integerOf(const std::string& sql) {
    cStatement statement = prepare(sql);
    return statement.step() ? statement.integer(0) : 0;
}

std::int64_t cDatabase::changedRows() const {
    return sqlite3_changes64(handle.get());
}

void cStatement::sFinalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

cStatement::cStatement(cDatabase& itsDatabase, const std::string& sql) : database(itsDatabase) {
    sqlite3_stmt* prepared = nullptr;
    const int code = sqlite3_prepare_v3(database.get(), sql.c_str(), static_cast<int>(sql.size()),
                                        0, &prepared, nullptr);
    handle.reset(prepared);
    if (code != SQLITE_OK) {
        fail(database.path(), database.get(), code);
    }
}

cStatement& cStatement::bind(int parameter, std::int64_t value) {
    sqlite3_bind_int64(handle.get(), parameter, value);
    return *this;
}

cStatement& cStatement::bind(int parameter, double value) {
    sqlite3_bind_double(handle.get(), parameter, value);
    return *this;
}

cStatement& cStatement::bind(int parameter, std::string_view text) {
    // A null pointer would be NULL, and an empty view may have one.
    const char* const begin = text.empty() ? "" : text.data();
    if (isText(text)) {
        sqlite3_bind_text64(handle.get(), parameter, begin, text.size(), SQLITE_STATIC,
                            SQLITE_UTF8);
    } else {
        sqlite3_bind_blob64(handle.get(), parameter, begin, text.size(), SQLITE_STATIC);
    }
    return *this;
}

cStatement& cStatement::bindNull(int parameter) {
    sqlite3_bind_null(handle.get(), parameter);
    return *this;
}

bool cStatement::step() {
    const int code = sqlite3_step(handle.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
        fail(database.path(), database.get(), code);
    }
    return code == SQLITE_ROW;
}

void cStatement::run() {
    step();
    reset();
}

void cStatement::reset() {
    sqlite3_reset(handle.get());
}

int cStatement::columnCount() const {
    return sqlite3_column_count(handle.get());
}

std::string_view cStatement::columnName(int column) const {
    return sqlite3_column_name(handle.get(), column);
}

int cStatement::columnType(int column) const {
    return sqlite3_column_type(handle.get(), column);
}

std::int64_t cStatement::integer(int column) const {
    return sqlite3_column_int64(handle.get(), column);
}

double cStatement::real(int column) const {
    return sqlite3_column_double(handle.get(), column);
}

std::string_view cStatement::bytes(int column) const {
    const void* const data = sqlite3_column_blob(handle.get(), column);
    const int size = sqlite3_column_bytes(handle.get(), column);
    return data == nullptr
               ? std::string_view()
               : std::string_view(static_cast<const char*>(data), static_cast<std::size_t>(size));
}

cTransaction::cTransaction(cDatabase& itsDatabase, const std::string& kind)
    : database(itsDatabase) {
    database.execute("BEGIN " + kind);
}

cTransaction::~cTransaction() {
    if (isOpen) {
        sqlite3_exec(database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

void cTransaction::commit() {
    database.execute("COMMIT");
    isOpen = false;
}

std::string quotedName(std::string_view name) {
    std::string text = "\"";
    for (const char c : name) {
        text += c;
        if (c == '"') {
            text += c;
        }
    }
    return text + '"';
}

} // namespace kelmo
