#include "import_service/Store.h"

#include "import_service/Attempts.h"
#include "import_service/Sessions.h"

// The library's package announces bindings for Boost types but does not bring Boost; nothing here uses them.
#include <soci/soci-config.h>
#undef SOCI_HAVE_BOOST
#include <soci/soci.h>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace imex::import_service {

namespace {

constexpr int kSchemaVersion = 1;

/// Rows to a statement: enough that the way to the database and back does not count.
constexpr std::size_t kBatch = 100;

/// The version's row is unique, so that services that start at once on an empty database add it once.
void requireVersion(soci::session& session) {
  std::vector<int> versions(2);
  session << "SELECT version FROM import_store", soci::into(versions);
  if (versions.empty())
    session << "INSERT INTO import_store (version) VALUES (:version)", soci::use(kSchemaVersion);
  else if (versions.size() > 1 || versions.front() != kSchemaVersion)
    throw StoreError("its tables are of another version of this program");
}

/// A table of this name that somebody else has made would let the service start and every import fail. Writes nothing.
void requireColumns(soci::session& session) {
  session << "INSERT INTO imported_row (format_key, row_key, fields, imported_by, imported_at)"
             " SELECT format_key, row_key, fields, imported_by, imported_at FROM imported_row WHERE 1 = 0"
             " ON CONFLICT (format_key, row_key) DO NOTHING";
}

void prepareTables(soci::session& session) {
  session << "CREATE TABLE IF NOT EXISTS import_store (version INTEGER NOT NULL PRIMARY KEY)";
  session << "CREATE TABLE IF NOT EXISTS imported_row (format_key TEXT NOT NULL, row_key TEXT NOT NULL,"
             " fields TEXT NOT NULL, imported_by TEXT NOT NULL, imported_at TEXT NOT NULL,"
             " PRIMARY KEY (format_key, row_key))";
  requireVersion(session);
  requireColumns(session);
}

/// "(:a0, :b0), (:a1, :b1)" for two of "(:a#, :b#)".
std::string repeated(std::string_view group, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    text += i == 0 ? "" : ", ";
    for (const char c : group)
      text += c == '#' ? std::to_string(i) : std::string(1, c);
  }
  return text;
}

std::string findStatement(std::size_t count) {
  return "SELECT row_key FROM imported_row WHERE format_key = :format AND row_key IN (" + repeated(":row#", count) +
         ')';
}

std::string putStatement(std::size_t count) {
  return "INSERT INTO imported_row (format_key, row_key, fields, imported_by, imported_at) VALUES " +
         repeated("(:format#, :row#, :fields#, :by#, :at#)", count) +
         " ON CONFLICT (format_key, row_key) DO UPDATE SET fields = excluded.fields,"
         " imported_by = excluded.imported_by, imported_at = excluded.imported_at";
}

/// Calls `action(first, count)` for one batch after the other.
template <class Action>
void inBatches(std::size_t total, const Action& action) {
  for (std::size_t first = 0; first < total; first += kBatch)
    action(first, std::min(kBatch, total - first));
}

} // namespace

struct Store::Database {
  Database(const StoreUrl& url, std::chrono::milliseconds patience) : sessions(url, patience) {
    attempt<StoreConflict>([this](int) { prepare(); });
  }

  void prepare();

  Sessions sessions;
};

struct Store::Import::Transaction {
  Transaction(Sessions& allSessions, Sessions::Lease ownLease, ImportOrigin importOrigin)
      : sessions(allSessions), lease(std::move(ownLease)), origin(std::move(importOrigin)) {}

  ~Transaction() {
    if (!isOpen)
      return;
    try {
      lease.session().rollback();
    } catch (const std::exception&) { // the database undoes it by itself when the connection ends
      lease.spoil();
    }
  }

  /// Runs `action` and turns what the library raises into a StoreError.
  template <class Action>
  void run(const Action& action);

  void beAlone();
  void find(const std::vector<std::string>& keys, std::size_t first, std::size_t count,
            std::unordered_set<std::string>& found);
  void put(const std::vector<StoreRow>& rows, std::size_t first, std::size_t count);

  Sessions& sessions;
  Sessions::Lease lease;
  ImportOrigin origin;
  bool isOpen = true;
};

template <class Action>
void Store::Import::Transaction::run(const Action& action) {
  try {
    action();
  } catch (const soci::soci_error& error) {
    lease.noteFailure(error);
    sessions.raise(error);
  }
}

void Store::Import::Transaction::beAlone() {
  if (const std::string& statement = sessions.dialect().beAlone; !statement.empty())
    run([&] { lease.session() << statement; });
}

void Store::Import::Transaction::find(const std::vector<std::string>& keys, std::size_t first, std::size_t count,
                                      std::unordered_set<std::string>& found) {
  // With room for a single row the library fetches none from SQLite.
  std::vector<std::string> rowKeys(count + 1);
  soci::statement statement(lease.session());
  statement.exchange(soci::into(rowKeys));
  statement.exchange(soci::use(origin.formatKey));
  for (std::size_t i = 0; i < count; ++i)
    statement.exchange(soci::use(keys[first + i]));
  statement.alloc();
  statement.prepare(findStatement(count));
  statement.define_and_bind();
  if (statement.execute(true))
    found.insert(rowKeys.begin(), rowKeys.end());
}

void Store::Import::Transaction::put(const std::vector<StoreRow>& rows, std::size_t first, std::size_t count) {
  soci::statement statement(lease.session());
  for (std::size_t i = 0; i < count; ++i) {
    statement.exchange(soci::use(origin.formatKey));
    statement.exchange(soci::use(rows[first + i].key));
    statement.exchange(soci::use(rows[first + i].fields));
    statement.exchange(soci::use(origin.importedBy));
    statement.exchange(soci::use(origin.importedAt));
  }
  statement.alloc();
  statement.prepare(putStatement(count));
  statement.define_and_bind();
  statement.execute(true);
}

void Store::Database::prepare() {
  try {
    sessions.onLease([this](Sessions::Lease& lease) {
      soci::session& session = lease.session();
      session << sessions.dialect().begin;
      try {
        prepareTables(session);
        session.commit();
      } catch (const std::exception&) {
        lease.spoil();
        throw;
      }
    });
  } catch (const soci::soci_error& error) {
    sessions.raise(error);
  }
}

Store::Store(const StoreUrl& url, std::chrono::milliseconds patience)
    : m_database(std::make_unique<Database>(url, patience)) {}

Store::~Store() = default;

Store::Import Store::begin(ImportOrigin origin, Company company) {
  Sessions& sessions = m_database->sessions;
  try {
    Import begun = sessions.onLease([&](Sessions::Lease& lease) {
      lease.session() << sessions.dialect().begin;
      return Import(std::make_unique<Import::Transaction>(sessions, std::move(lease), std::move(origin)));
    });
    if (company == Company::alone)
      begun.m_transaction->beAlone();
    return begun;
  } catch (const soci::soci_error& error) {
    sessions.raise(error);
  }
}

std::map<std::string, std::int64_t> Store::rowCounts() {
  Sessions& sessions = m_database->sessions;
  try {
    return sessions.onLease([](Sessions::Lease& lease) {
      std::map<std::string, std::int64_t> counts;
      const soci::rowset<soci::row> rows =
          (lease.session().prepare << "SELECT format_key, CAST(count(*) AS TEXT) FROM imported_row"
                                      " GROUP BY format_key");
      for (const soci::row& row : rows)
        counts[row.get<std::string>(0)] = std::stoll(row.get<std::string>(1));
      return counts;
    });
  } catch (const soci::soci_error& error) {
    sessions.raise(error);
  }
}

Store::Import::Import(std::unique_ptr<Transaction> transaction) : m_transaction(std::move(transaction)) {}

Store::Import::Import(Import&& other) noexcept = default;

Store::Import::~Import() = default;

std::unordered_set<std::string> Store::Import::storedAmong(const std::vector<std::string>& keys) {
  std::unordered_set<std::string> found;
  m_transaction->run([&] {
    inBatches(keys.size(),
              [&](std::size_t first, std::size_t count) { m_transaction->find(keys, first, count, found); });
  });
  return found;
}

void Store::Import::put(const std::vector<StoreRow>& rows) {
  m_transaction->run([&] {
    inBatches(rows.size(), [&](std::size_t first, std::size_t count) { m_transaction->put(rows, first, count); });
  });
}

void Store::Import::commit() {
  try {
    m_transaction->run([this] {
      m_transaction->lease.session().commit();
      m_transaction->isOpen = false;
    });
  } catch (const StoreUnreachable& error) {
    throw StoreUncertain(error.what());
  }
}

} // namespace imex::import_service
