#pragma once

#include <string>
#include <vector>

struct sqlite3;

namespace imex::import_service::test {

/// A connection to the store's file beside the store's own. Every failure fails the running test.
class Sqlite {
 public:
  explicit Sqlite(const std::string& path);
  ~Sqlite();
  Sqlite(const Sqlite&) = delete;
  Sqlite& operator=(const Sqlite&) = delete;

  /// Runs a statement and returns its rows, each a list of its values as text.
  std::vector<std::vector<std::string>> run(const std::string& sql);

 private:
  sqlite3* m_connection = nullptr;
};

} // namespace imex::import_service::test
