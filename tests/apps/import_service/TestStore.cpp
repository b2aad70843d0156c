#include "apps/import_service/TestStore.h"

#include "apps/import_service/Sqlite.h"
#include "support/PostgresCluster.h"
#include "support/PostgresDatabase.h"
#include "support/TemporaryFolder.h"

#include <filesystem>

namespace imex::import_service::test {

namespace {

using Rows = std::vector<std::vector<std::string>>;

class SqliteStore : public TestStore {
 public:
  SqliteStore() { std::filesystem::create_directory(m_folder / "a folder"); }

  std::string url() const override { return "sqlite://" + m_path; }
  Rows run(const std::string& sql) override { return Sqlite(m_path).run(sql); }
  void refuseKey(const std::string& key) override {
    run("CREATE TRIGGER full BEFORE INSERT ON imported_row WHEN NEW.row_key = '" + key +
        "' BEGIN SELECT RAISE(ABORT, 'no room'); END");
  }

 private:
  imex::test::TemporaryFolder m_folder;
  std::string m_path = m_folder / "a folder/x=1; rows.db";
};

class PostgresqlStore : public TestStore {
 public:
  std::string url() const override { return m_database.url(); }
  Rows run(const std::string& sql) override { return m_database.run(sql); }
  void refuseKey(const std::string& key) override {
    run("CREATE FUNCTION refuse() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN RAISE 'no room'; END $$");
    run("CREATE TRIGGER full_ BEFORE INSERT ON imported_row FOR EACH ROW WHEN (NEW.row_key = '" + key +
        "') EXECUTE FUNCTION refuse()");
  }

 private:
  imex::test::PostgresDatabase m_database{imex::test::sharedPostgres()};
};

} // namespace

std::unique_ptr<TestStore> TestStore::make(System system) {
  if (system == System::sqlite)
    return std::make_unique<SqliteStore>();
  return std::make_unique<PostgresqlStore>();
}

std::string nameOf(TestStore::System system) {
  return system == TestStore::System::sqlite ? "sqlite" : "postgresql";
}

} // namespace imex::import_service::test
