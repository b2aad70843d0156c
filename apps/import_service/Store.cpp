#include "import_service/Store.h"

// The library's package announces bindings for Boost types but does not bring Boost; nothing here uses them.
#include <soci/soci-config.h>
#undef SOCI_HAVE_BOOST
#include <soci/soci.h>
#include <soci/sqlite3/soci-sqlite3.h>

#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

namespace imex::import_service {

namespace {

constexpr int kSchemaVersion = 1;

/// What differs from one database system to the next. All other statements are common to them.
struct Dialect {
  const soci::backend_factory& factory;
  std::string connection;
  std::vector<std::string> settings; ///< run once after connecting
  std::string begin;                 ///< starts a transaction that writes
};

/// The log ahead keeps readers and the writer apart. Each commit reaches the disk before it is reported; with one
/// commit for a file that costs nothing to speak of. The lock is taken at the start, because a transaction that began
/// by reading could not be made to write once another program has written.
Dialect sqliteDialect(const std::string& path) {
  return {*soci::factory_sqlite3(),
          "db=\"" + path + "\"",
          {"PRAGMA busy_timeout = 5000", "PRAGMA journal_mode = WAL", "PRAGMA synchronous = FULL"},
          "BEGIN IMMEDIATE"};
}

Dialect dialectOf(const StoreUrl& url) {
  switch (url.system) {
  case StoreUrl::System::sqlite:
    break;
  }
  return sqliteDialect(url.database);
}

/// The database's own words, without the name of the library's function in front of them.
std::string messageOf(const soci::soci_error& error) {
  const std::string text = error.get_error_message();
  const std::size_t colon = text.find(": ");
  const bool hasFunction = colon != std::string::npos && text.find("::") < colon;
  return hasFunction ? text.substr(colon + 2) : text;
}

/// Runs `action` and turns what the library raises into a StoreError.
template <class Action>
auto guarded(const Action& action) {
  try {
    return action();
  } catch (const soci::soci_error& error) {
    throw StoreError(messageOf(error));
  }
}

void requireVersion(soci::session& session) {
  std::vector<int> versions(2);
  session << "SELECT version FROM import_store", soci::into(versions);
  if (versions.empty())
    session << "INSERT INTO import_store (version) VALUES (:version)", soci::use(kSchemaVersion);
  else if (versions.size() > 1 || versions.front() != kSchemaVersion)
    throw StoreError("its tables are of another version of this program");
}

void prepareTables(soci::session& session) {
  session << "CREATE TABLE IF NOT EXISTS import_store (version INTEGER NOT NULL)";
  session << "CREATE TABLE IF NOT EXISTS imported_row (format_key TEXT NOT NULL, row_key TEXT NOT NULL,"
             " fields TEXT NOT NULL, imported_by TEXT NOT NULL, imported_at TEXT NOT NULL,"
             " PRIMARY KEY (format_key, row_key))";
  requireVersion(session);
}

constexpr std::string_view kFind = "SELECT 1 FROM imported_row WHERE format_key = :format AND row_key = :row";

constexpr std::string_view kPut =
    "INSERT INTO imported_row (format_key, row_key, fields, imported_by, imported_at)"
    " VALUES (:format, :row, :fields, :by, :at)"
    " ON CONFLICT (format_key, row_key) DO UPDATE SET"
    " fields = excluded.fields, imported_by = excluded.imported_by, imported_at = excluded.imported_at";

} // namespace

struct Store::Database {
  explicit Database(const StoreUrl& url) : dialect(dialectOf(url)), session(dialect.factory, dialect.connection) {
    for (const std::string& setting : dialect.settings)
      session << setting;
    session << dialect.begin;
    prepareTables(session);
    session.commit();
  }

  Dialect dialect;
  soci::session session;
  std::mutex mutex;
};

/// The statements are prepared once and run for every line, with the variables that they are bound to.
struct Store::Import::Transaction {
  Transaction(Database& database, ImportOrigin importOrigin)
      : lock(database.mutex), session(database.session), origin(std::move(importOrigin)) {
    session << database.dialect.begin;
    isOpen = true;
  }

  ~Transaction() {
    if (!isOpen)
      return;
    try {
      session.rollback();
    } catch (const std::exception&) { // the database undoes it by itself when the connection ends
    }
  }

  std::unique_lock<std::mutex> lock;
  soci::session& session;
  ImportOrigin origin;
  bool isOpen = false;
  std::string rowKey;
  std::string fields;
  int found = 0;
  soci::statement find = (session.prepare << kFind, soci::use(origin.formatKey), soci::use(rowKey), soci::into(found));
  soci::statement insert = (session.prepare << kPut, soci::use(origin.formatKey), soci::use(rowKey), soci::use(fields),
                            soci::use(origin.importedBy), soci::use(origin.importedAt));
};

Store::Store(const StoreUrl& url) : m_database(guarded([&] { return std::make_unique<Database>(url); })) {}

Store::~Store() = default;

Store::Import Store::begin(ImportOrigin origin) {
  return guarded([&] { return Import(std::make_unique<Import::Transaction>(*m_database, std::move(origin))); });
}

std::map<std::string, std::int64_t> Store::rowCounts() {
  return guarded([this] {
    const std::lock_guard lock(m_database->mutex);
    std::map<std::string, std::int64_t> counts;
    const soci::rowset<soci::row> rows =
        (m_database->session.prepare << "SELECT format_key, CAST(count(*) AS TEXT) FROM imported_row"
                                        " GROUP BY format_key");
    for (const soci::row& row : rows)
      counts[row.get<std::string>(0)] = std::stoll(row.get<std::string>(1));
    return counts;
  });
}

Store::Import::Import(std::unique_ptr<Transaction> transaction) : m_transaction(std::move(transaction)) {}

Store::Import::Import(Import&& other) noexcept = default;

Store::Import::~Import() = default;

bool Store::Import::contains(const std::string& rowKey) {
  return guarded([&] {
    m_transaction->rowKey = rowKey;
    return m_transaction->find.execute(true);
  });
}

void Store::Import::put(std::string rowKey, std::string fields) {
  guarded([&] {
    m_transaction->rowKey = std::move(rowKey);
    m_transaction->fields = std::move(fields);
    m_transaction->insert.execute(true);
  });
}

void Store::Import::commit() {
  guarded([this] {
    m_transaction->session.commit();
    m_transaction->isOpen = false;
  });
}

} // namespace imex::import_service
