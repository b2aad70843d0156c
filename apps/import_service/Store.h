#pragma once

#include "import_service/StoreError.h"
#include "import_service/StoreUrl.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace imex::import_service {

/// What the rows of one import have in common.
struct ImportOrigin {
  std::string formatKey;  ///< "CUSTOMERAGENT"
  std::string importedBy; ///< the user's identifier; on the unsecured address the user's name where there is none
  std::string importedAt; ///< UTC, "2024-11-21T04:15:00Z"
};

/// One row on its way into the store.
struct StoreRow {
  std::string key;    ///< the key fields in column order, as a JSON array
  std::string fields; ///< all fields in column order, as a JSON array
};

/// The rows that were imported, in a database. Its tables:
///
///   import_store   (version INTEGER         one row: the version of this schema, 1
///                   PRIMARY KEY (version))
///   imported_row   (format_key   TEXT,      "CUSTOMERAGENT"
///                   row_key      TEXT,      the key fields in column order, as a JSON array: ["C100"]
///                   fields       TEXT,      all fields in column order, as a JSON array
///                   imported_by  TEXT,
///                   imported_at  TEXT,
///                   PRIMARY KEY (format_key, row_key))
///
/// Every column is NOT NULL. A row that is imported again replaces its fields and its last two columns.
///
/// Calls may come from any thread, and other programs may have the same database open. On SQLite one import is open at
/// a time and the next waits for its end; on PostgreSQL 16 are.
class Store {
 public:
  class Import;

  /// How long an import waits for its turn to begin.
  static constexpr std::chrono::milliseconds kPatience{60'000};

  /// Opens the database and creates the tables that it lacks. A StoreError where that fails or where the schema is of
  /// another version.
  explicit Store(const StoreUrl& url, std::chrono::milliseconds patience = kPatience);
  ~Store();

  /// How an import goes together with others on the same database.
  enum class Company {
    shared, ///< others write at the same time; one of two that meet in a row ends with a StoreConflict
    alone,  ///< waits until the others are done, and keeps new ones waiting; meets nobody
  };

  /// Begins the import of one file. A connection that was lost since the last one is replaced.
  Import begin(ImportOrigin origin, Company company = Company::shared);

  /// The number of rows of each format that has any.
  std::map<std::string, std::int64_t> rowCounts();

 private:
  struct Database;

  std::unique_ptr<Database> m_database;
};

/// One file on its way into the store: a transaction. It sees the rows as they were at its beginning; nobody else sees
/// anything of it before it is committed. What is not committed when the object goes is undone. It must not outlive
/// the store. Every call may raise a StoreError; the import is then of no further use. A StoreConflict says that it may
/// be begun again with better luck.
class Store::Import {
 public:
  Import(Import&& other) noexcept;
  ~Import();

  /// Those of these keys that have a row.
  std::unordered_set<std::string> storedAmong(const std::vector<std::string>& keys);

  /// Adds these rows, or replaces those with their keys. Every key comes once. Imports that put their rows in the order
  /// of their keys do not wait for one another in a circle.
  void put(const std::vector<StoreRow>& rows);

  /// Keeps what was put. Nothing is called afterwards. A StoreUncertain where the connection is lost meanwhile.
  void commit();

 private:
  friend class Store;
  struct Transaction;
  explicit Import(std::unique_ptr<Transaction> transaction);

  std::unique_ptr<Transaction> m_transaction;
};

} // namespace imex::import_service
