#pragma once

#include <string>
#include <vector>

struct pg_conn;

namespace imex::test {

class PostgresCluster;

/// A new, empty database, which goes away with the object, and a connection to it. Every failure fails the running
/// test.
class PostgresDatabase {
 public:
  /// The cluster must outlive the database.
  explicit PostgresDatabase(const PostgresCluster& cluster);
  ~PostgresDatabase();
  PostgresDatabase(const PostgresDatabase&) = delete;
  PostgresDatabase& operator=(const PostgresDatabase&) = delete;

  /// Its address, with the password.
  std::string url() const;

  /// Runs a statement and returns its rows, each a list of its values as text.
  std::vector<std::vector<std::string>> run(const std::string& sql);

 private:
  const PostgresCluster& m_cluster;
  std::string m_name;
  pg_conn* m_connection = nullptr;
};

} // namespace imex::test
