#include "history/test/SQLiteFile.h"

#include <sqlite3.h>

#include <stdexcept>

namespace tavero {

SQLiteFile::SQLiteFile(const std::filesystem::path& file) {
    if (sqlite3_open(file.c_str(), &connection_) != SQLITE_OK) fail();
}

SQLiteFile::~SQLiteFile() { sqlite3_close(connection_); }

void SQLiteFile::fail() { throw std::runtime_error(sqlite3_errmsg(connection_)); }

std::vector<std::string> SQLiteFile::rows(std::string_view text) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(connection_, text.data(), static_cast<int>(text.size()), &statement,
                           nullptr) != SQLITE_OK)
        fail();
    std::vector<std::string> rows;
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(statement)) == SQLITE_ROW) {
        std::string& row = rows.emplace_back();
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            if (column > 0) row += '|';
            const unsigned char* value = sqlite3_column_text(statement, column);
            row += value ? reinterpret_cast<const char*>(value) : "NULL";
        }
    }
    sqlite3_finalize(statement);
    if (result != SQLITE_DONE) fail();
    return rows;
}

void SQLiteFile::run(const std::string& statements) {
    if (sqlite3_exec(connection_, statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        fail();
}

} // namespace tavero
