#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace tavero {

// A connection to an SQLite file, closed with this object. It waits for no lock: what another
// process holds is a failure at once.
class Database {
  public:
    // Opens the file, or creates it; ":memory:" is one without a file. Throws HistoryError.
    explicit Database(const std::string& file);

    // Runs the statements of this text, each in a transaction of its own. False as soon as one
    // fails.
    bool execute(const std::string& text);
    // What SQLite says of the call that failed last.
    std::string errorMessage() const;

  private:
    friend class Statement;
    struct Close {
        void operator()(sqlite3* connection) const;
    };

    std::unique_ptr<sqlite3, Close> connection_;
};

// One use of a statement. Where its text can't be prepared it binds nothing and has no rows.
class Statement {
  public:
    Statement(Database& database, const std::string& text);

    // Each sets the next parameter; absent is NULL.
    Statement& bind(std::int64_t value);
    Statement& bind(double value);
    Statement& bind(const std::string& value);
    template <typename Value>
    Statement& bind(const std::optional<Value>& value) {
        return value ? bind(*value) : bindNull();
    }

    // Steps to the next row. False after the last one, and if the step fails.
    bool next();

    // Columns of the row, from 0 on. Absent if NULL; a number also if it is not finite.
    std::int64_t integer(int column) const; // 0 for NULL
    std::optional<double> number(int column) const;
    std::optional<std::string> text(int column) const;

  private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };

    Statement& bindNull();

    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
    int bound_ = 0;
};

} // namespace tavero
