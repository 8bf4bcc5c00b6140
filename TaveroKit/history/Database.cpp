#include "history/Database.h"

#include "history/HistoryError.h"

#include <sqlite3.h>

#include <cmath>

namespace tavero {

void Database::Close::operator()(sqlite3* connection) const { sqlite3_close(connection); }
void Statement::Finalize::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Database::Database(const std::string& file) {
    sqlite3* connection = nullptr;
    const int result = sqlite3_open(file.c_str(), &connection);
    connection_.reset(connection); // there even if it couldn't be opened
    if (result != SQLITE_OK) throw HistoryError(HistoryError::Kind::cannotOpen, errorMessage());
}

bool Database::execute(const std::string& text) {
    return sqlite3_exec(connection_.get(), text.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::string Database::errorMessage() const { return sqlite3_errmsg(connection_.get()); }

// SQLite takes a null statement everywhere below: a bind or a step is an error, a column is NULL.
Statement::Statement(Database& database, const std::string& text) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database.connection_.get(), text.c_str(), -1, &statement, nullptr);
    statement_.reset(statement);
}

Statement& Statement::bind(std::int64_t value) {
    sqlite3_bind_int64(statement_.get(), ++bound_, value);
    return *this;
}

Statement& Statement::bind(double value) {
    sqlite3_bind_double(statement_.get(), ++bound_, value);
    return *this;
}

Statement& Statement::bind(const std::string& value) {
    sqlite3_bind_text(statement_.get(), ++bound_, value.c_str(), -1, SQLITE_TRANSIENT);
    return *this;
}

Statement& Statement::bindNull() {
    sqlite3_bind_null(statement_.get(), ++bound_);
    return *this;
}

bool Statement::next() { return sqlite3_step(statement_.get()) == SQLITE_ROW; }

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
}

std::optional<double> Statement::number(int column) const {
    if (sqlite3_column_type(statement_.get(), column) == SQLITE_NULL) return std::nullopt;
    const double value = sqlite3_column_double(statement_.get(), column);
    return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<std::string> Statement::text(int column) const {
    const unsigned char* text = sqlite3_column_text(statement_.get(), column);
    if (!text) return std::nullopt;
    return std::string(reinterpret_cast<const char*>(text));
}

} // namespace tavero
