#include "import_service/Dialect.h"

// The library's package announces bindings for Boost types but does not bring Boost; nothing here uses them.
#include <soci/soci-config.h>
#undef SOCI_HAVE_BOOST
#include <soci/postgresql/soci-postgresql.h>
#include <soci/soci.h>
#include <soci/sqlite3/soci-sqlite3.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace imex::import_service {

namespace {

/// PostgreSQL takes 100 connections unless it is told otherwise, and several services may share it.
constexpr std::size_t kServedSessions = 16;

/// Without the name of the library's function in front.
std::string sqliteMessage(const soci::soci_error& error) {
  const std::string text = error.get_error_message();
  const std::size_t colon = text.find(": ");
  const bool hasFunction = colon != std::string::npos && text.find("::") < colon;
  return hasFunction ? text.substr(colon + 2) : text;
}

Trouble sqliteTrouble(const soci::soci_error&) {
  return Trouble::failure;
}

/// The log ahead keeps readers and the writer apart. Each commit reaches the disk before it is reported; with one
/// commit for a file that costs nothing to speak of. The lock is taken at the start, because a transaction that began
/// by reading could not be made to write once another program has written. More than one connection would only wait
/// for that lock.
Dialect sqliteDialect(const std::string& path) {
  return {*soci::factory_sqlite3(),
          "db=\"" + path + "\"",
          {"PRAGMA busy_timeout = 5000", "PRAGMA journal_mode = WAL", "PRAGMA synchronous = FULL"},
          "BEGIN IMMEDIATE",
          "",
          1,
          false,
          sqliteTrouble,
          sqliteMessage};
}

/// Unique violations are among the conflicts: every statement that inserts says what to do about a row that is there,
/// so one is reported only where two connections create the tables at once.
constexpr std::array<std::string_view, 5> kConflicts{"40001", "40P01", "23505", "42P07", "42710"};

/// A connection that is not there has the first; a server that ends takes its leave with the others.
constexpr std::array<std::string_view, 4> kLosses{"57P01", "57P02", "57P03", "40003"};

template <std::size_t N>
bool isAmong(const std::array<std::string_view, N>& states, std::string_view state) {
  return std::find(states.begin(), states.end(), state) != states.end();
}

Trouble postgresqlTrouble(const soci::soci_error& error) {
  const auto* own = dynamic_cast<const soci::postgresql_soci_error*>(&error);
  const std::string state = own == nullptr ? "" : own->sqlstate();
  if (state.starts_with("08") || isAmong(kLosses, state))
    return Trouble::lost;
  return isAmong(kConflicts, state) ? Trouble::conflict : Trouble::failure;
}

std::string onOneLine(std::string_view text) {
  std::string line;
  for (const char c : text)
    if (std::string_view("\t\r\n ").find(c) == std::string_view::npos)
      line += c;
    else if (!line.empty() && line.back() != ' ')
      line += ' ';
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

/// The server's first line without its severity; what follows repeats values. Without the library's own words, where
/// others follow.
std::string postgresqlMessage(const soci::soci_error& error) {
  const std::string text = error.get_error_message();
  for (const std::string_view severity : {"ERROR:  ", "FATAL:  ", "PANIC:  "})
    if (const std::size_t at = text.find(severity); at != std::string::npos && !text.starts_with("Cannot establish"))
      return onOneLine(text.substr(at + severity.size(), text.find('\n', at) - at - severity.size()));
  for (const std::string_view own : {"Cannot establish connection to the database.", "Connection failed."})
    if (const std::size_t at = text.find(own); at != std::string::npos && at + own.size() < text.size())
      return onOneLine(text.substr(at + own.size()));
  return onOneLine(text);
}

/// A transaction sees the rows as they were at its start and is refused where it writes one that has changed since.
/// As an import writes every row that it has looked at, or none, this is as good as one after the other. A service
/// that stands still, its connection open, keeps the others waiting for these times at most.
Dialect postgresqlDialect(const std::string& url) {
  return {*soci::factory_postgresql(),
          url,
          {"SET client_min_messages = warning", "SET client_encoding = 'UTF8'", "SET lock_timeout = '30s'",
           "SET idle_in_transaction_session_timeout = '60s'"},
          "BEGIN ISOLATION LEVEL REPEATABLE READ",
          "LOCK TABLE imported_row IN SHARE ROW EXCLUSIVE MODE",
          kServedSessions,
          true,
          postgresqlTrouble,
          postgresqlMessage};
}

} // namespace

Dialect dialectOf(const StoreUrl& url) {
  switch (url.system) {
  case StoreUrl::System::postgresql:
    return postgresqlDialect(url.database);
  case StoreUrl::System::sqlite:
    break;
  }
  return sqliteDialect(url.database);
}

} // namespace imex::import_service
