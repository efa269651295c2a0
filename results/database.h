// A database of SQLite and its statements, closed in the end, with errors as exceptions.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace kelmo {

/// What keeps results from being read or written, in words for people.
class cResultError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class cStatement;

/// An open database. Not for several threads at once.
class cDatabase {
  public:
    enum class eMode { create, readWrite, readOnly }; ///< `create` opens one that exists, too

    /// Throws cResultError. The path is bytes of any encoding.
    cDatabase(const std::string& path, eMode mode);

    /// Carries out statements without values. Throws cResultError.
    void execute(const std::string& sql);
    cStatement prepare(const std::string& sql);
    /// The first value of the first row; 0 when there is none.
    std::int64_t integerOf(const std::string& sql);
    /// Rows that the last statement has changed.
    std::int64_t changedRows() const;
    const std::string& path() const { return name; }
    sqlite3* get() const { return handle.get(); }

  private:
    struct sClose {
        void operator()(sqlite3* database) const;
    };

    std::string name;
    std::unique_ptr<sqlite3, sClose> handle;
};

/// A statement that may be carried out again and again. Must not outlive its database.
class cStatement {
  public:
    cStatement(cDatabase& itsDatabase, const std::string& sql);

    ///@{
    /// Sets a parameter, counted from 1. Text must live until the next reset() or bind(); what is
    /// no UTF-8 or has a zero in it becomes a BLOB, so that every byte comes back. NaN is NULL.
    cStatement& bind(int parameter, std::int64_t value);
    cStatement& bind(int parameter, double value);
    cStatement& bind(int parameter, std::string_view text);
    cStatement& bindNull(int parameter);
    ///@}

    /// Goes to the next row; false behind the last one. Throws cResultError.
    bool step();
    /// Carries the statement out, which has no rows, and makes it ready for the next time.
    void run();
    void reset();

    ///@{
    /// A value of the row, counted from 0. Texts and BLOBs live until the next step.
    int columnCount() const;
    std::string_view columnName(int column) const;
    int columnType(int column) const; ///< SQLITE_INTEGER, SQLITE_FLOAT ...
    std::int64_t integer(int column) const;
    double real(int column) const;
    std::string_view bytes(int column) const;
    ///@}

  private:
    struct sFinalize {
        void operator()(sqlite3_stmt* statement) const;
    };

    cDatabase& database;
    std::unique_ptr<sqlite3_stmt, sFinalize> handle;
};

/// Carries a transaction out whole or not at all.
class cTransaction {
  public:
    /// `kind` is what stands behind BEGIN: "IMMEDIATE", "EXCLUSIVE".
    explicit cTransaction(cDatabase& itsDatabase, const std::string& kind = "IMMEDIATE");
    ~cTransaction();
    cTransaction(const cTransaction&) = delete;
    cTransaction& operator=(const cTransaction&) = delete;

    void commit();

  private:
    cDatabase& database;
    bool isOpen = true;
};

/// A name within SQL, in quotation marks.
std::string quotedName(std::string_view name);

} // namespace kelmo
