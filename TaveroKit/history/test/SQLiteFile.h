#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;

namespace tavero {

// A second connection to a history's file, for a test to look at it and to change it. Throws if a
// statement fails.
class SQLiteFile {
  public:
    explicit SQLiteFile(const std::filesystem::path& file);
    ~SQLiteFile();
    SQLiteFile(const SQLiteFile&) = delete;
    SQLiteFile& operator=(const SQLiteFile&) = delete;

    // The rows that one statement finds, their columns as text with "|" between them.
    std::vector<std::string> rows(std::string_view statement);
    void run(const std::string& statements);

  private:
    [[noreturn]] void fail();

    sqlite3* connection_ = nullptr;
};

} // namespace tavero
