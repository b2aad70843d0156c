#pragma once

#include "import_service/StoreUrl.h"

#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

namespace imex::import_service {

/// The database failed. The text is the database's own; what was not committed is not stored.
class StoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What the rows of one import have in common.
struct ImportOrigin {
  std::string formatKey;  ///< "CUSTOMERAGENT"
  std::string importedBy; ///< the user's identifier; on the unsecured address the user's name where there is none
  std::string importedAt; ///< UTC, "2024-11-21T04:15:00Z"
};

/// The rows that were imported, in a database. Its tables:
///
///   import_store   (version INTEGER)        one row: the version of this schema, 1
///   imported_row   (format_key   TEXT,      "CUSTOMERAGENT"
///                   row_key      TEXT,      the key fields in column order, as a JSON array: ["C100"]
///                   fields       TEXT,      all fields in column order, as a JSON array
///                   imported_by  TEXT,
///                   imported_at  TEXT,
///                   PRIMARY KEY (format_key, row_key))
///
/// Every column is NOT NULL. A row that is imported again replaces its fields and its last two columns.
///
/// Calls may come from any thread. One import is open at a time; whoever else needs the store waits for its end.
class Store {
 public:
  class Import;

  /// Opens the database and creates the tables that it lacks. A StoreError where that fails or where the schema is of
  /// another version.
  explicit Store(const StoreUrl& url);
  ~Store();

  /// Begins the import of one file.
  Import begin(ImportOrigin origin);

  /// The number of rows of each format that has any.
  std::map<std::string, std::int64_t> rowCounts();

 private:
  struct Database;

  std::unique_ptr<Database> m_database;
};

/// One file on its way into the store: a transaction. What is not committed when the object goes is undone. It must
/// not outlive the store. Every call may raise a StoreError; the import is then of no further use.
class Store::Import {
 public:
  Import(Import&& other) noexcept;
  ~Import();

  /// Whether there is a row with this key.
  bool contains(const std::string& rowKey);

  /// Adds a row or replaces the one with this key.
  void put(std::string rowKey, std::string fields);

  /// Keeps what was put. Nothing is called afterwards.
  void commit();

 private:
  friend class Store;
  struct Transaction;
  explicit Import(std::unique_ptr<Transaction> transaction);

  std::unique_ptr<Transaction> m_transaction;
};

} // namespace imex::import_service
