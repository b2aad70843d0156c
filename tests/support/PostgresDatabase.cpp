#include "support/PostgresDatabase.h"

#include "support/PostgresCluster.h"

#include <gtest/gtest.h>
#include <libpq-fe.h>

#include <memory>

#include <unistd.h>

namespace imex::test {

namespace {

using Rows = std::vector<std::vector<std::string>>;

pg_conn* connectedTo(const std::string& url) {
  pg_conn* connection = PQconnectdb(url.c_str());
  EXPECT_EQ(PQstatus(connection), CONNECTION_OK) << PQerrorMessage(connection);
  return connection;
}

Rows rowsOf(const PGresult* result) {
  Rows rows(static_cast<std::size_t>(PQntuples(result)));
  for (std::size_t row = 0; row < rows.size(); ++row)
    for (int column = 0; column < PQnfields(result); ++column)
      rows[row].emplace_back(PQgetvalue(result, static_cast<int>(row), column));
  return rows;
}

Rows runOn(pg_conn* connection, const std::string& sql) {
  const std::unique_ptr<PGresult, decltype(&PQclear)> result(PQexec(connection, sql.c_str()), PQclear);
  const ExecStatusType status = PQresultStatus(result.get());
  EXPECT_TRUE(status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK) << PQerrorMessage(connection);
  return rowsOf(result.get());
}

void runOnce(const std::string& url, const std::string& sql) {
  pg_conn* connection = connectedTo(url);
  runOn(connection, sql);
  PQfinish(connection);
}

std::string newName() {
  static int number = 0;
  return "test_" + std::to_string(getpid()) + '_' + std::to_string(++number);
}

} // namespace

PostgresDatabase::PostgresDatabase(const PostgresCluster& cluster) : m_cluster(cluster), m_name(newName()) {
  runOnce(m_cluster.url(), "CREATE DATABASE " + m_name);
  m_connection = connectedTo(url());
}

PostgresDatabase::~PostgresDatabase() {
  PQfinish(m_connection);
  runOnce(m_cluster.url(), "DROP DATABASE " + m_name + " WITH (FORCE)");
}

std::string PostgresDatabase::url() const {
  return m_cluster.url(m_name);
}

Rows PostgresDatabase::run(const std::string& sql) {
  // A server that was started anew knows nothing of the old connection.
  if (PQstatus(m_connection) != CONNECTION_OK)
    PQreset(m_connection);
  return runOn(m_connection, sql);
}

} // namespace imex::test
