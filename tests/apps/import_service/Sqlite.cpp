#include "apps/import_service/Sqlite.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace imex::import_service::test {

namespace {

using Rows = std::vector<std::vector<std::string>>;

int addRow(void* rows, int count, char** values, char**) {
  std::vector<std::string>& row = static_cast<Rows*>(rows)->emplace_back();
  for (int i = 0; i < count; ++i)
    row.emplace_back(values[i] == nullptr ? "NULL" : values[i]);
  return 0;
}

} // namespace

Sqlite::Sqlite(const std::string& path) {
  EXPECT_EQ(sqlite3_open(path.c_str(), &m_connection), SQLITE_OK) << path;
  sqlite3_busy_timeout(m_connection, 5'000);
}

Sqlite::~Sqlite() {
  sqlite3_close(m_connection);
}

Rows Sqlite::run(const std::string& sql) {
  Rows rows;
  EXPECT_EQ(sqlite3_exec(m_connection, sql.c_str(), addRow, &rows, nullptr), SQLITE_OK) << sqlite3_errmsg(m_connection);
  return rows;
}

} // namespace imex::import_service::test
