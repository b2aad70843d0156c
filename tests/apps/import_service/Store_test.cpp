#include "import_service/Store.h"

#include "apps/import_service/Sqlite.h"
#include "apps/import_service/TestStore.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <thread>

namespace imex::import_service::test {

using imex::test::TemporaryFolder;
using System = TestStore::System;
using Keys = std::vector<std::string>;
using KeySet = std::unordered_set<std::string>;
using Rows = std::vector<std::vector<std::string>>;
using Counts = std::map<std::string, std::int64_t>;

const ImportOrigin kCustomers{"CUSTOMERAGENT", "agent1", "2024-11-21T04:15:00Z"};
const ImportOrigin kProducts{"PRODUCTAGENT", "agent2", "2024-11-22T10:00:00Z"};

/// The same facts for every database system.
class StoreTest : public testing::TestWithParam<System> {
 protected:
  StoreTest() { open(); }

  void open() { store.emplace(StoreUrl::parse(database->url())); }
  void reopen() {
    store.reset();
    open();
  }

  void putCustomers(const std::vector<StoreRow>& rows) {
    Store::Import import = store->begin(kCustomers);
    import.put(rows);
    import.commit();
  }

  bool contains(const ImportOrigin& origin, const std::string& key) {
    return !store->begin(origin).storedAmong({key}).empty();
  }

  Rows rows() {
    return database->run("SELECT format_key, row_key, fields, imported_by, imported_at FROM imported_row"
                         " ORDER BY format_key, row_key");
  }

  std::unique_ptr<TestStore> database = TestStore::make(GetParam());
  std::optional<Store> store;
};

INSTANTIATE_TEST_SUITE_P(Store, StoreTest, testing::Values(System::sqlite, System::postgresql),
                         [](const auto& instance) { return nameOf(instance.param); });

TEST_P(StoreTest, committedRows_areThereAfterAReopening) {
  const std::string odd = R"(["O'NEILL \"É\"","--;$1 :a '')";
  putCustomers({{"[\"C1\"]", odd}, {"[\"C2\"]", "[]"}});
  reopen();
  EXPECT_EQ(rows(), (Rows{{"CUSTOMERAGENT", "[\"C1\"]", odd, "agent1", "2024-11-21T04:15:00Z"},
                          {"CUSTOMERAGENT", "[\"C2\"]", "[]", "agent1", "2024-11-21T04:15:00Z"}}));
  EXPECT_EQ(store->rowCounts(), (Counts{{"CUSTOMERAGENT", 2}}));
  EXPECT_TRUE(contains(kCustomers, "[\"C1\"]"));
}

TEST_P(StoreTest, anImportThatIsNotCommitted_leavesNothing) {
  putCustomers({{"[\"C1\"]", "[1]"}});
  {
    Store::Import import = store->begin(kCustomers);
    import.put({{"[\"C1\"]", "[2]"}, { "[\"C2\"]", "[2]" }});
    EXPECT_EQ(import.storedAmong({"[\"C2\"]"}), KeySet{"[\"C2\"]"});
  }
  EXPECT_EQ(rows(), (Rows{{"CUSTOMERAGENT", "[\"C1\"]", "[1]", "agent1", "2024-11-21T04:15:00Z"}}));
  EXPECT_FALSE(contains(kCustomers, "[\"C2\"]"));
}

TEST_P(StoreTest, aRowThatIsPutAgain_isReplaced) {
  putCustomers({{"[\"C1\"]", "[1]"}});
  {
    Store::Import import = store->begin({"CUSTOMERAGENT", "agent9", "2025-01-01T00:00:00Z"});
    import.put({{ "[\"C1\"]", "[2]" }});
    import.commit();
  }
  EXPECT_EQ(rows(), (Rows{{"CUSTOMERAGENT", "[\"C1\"]", "[2]", "agent9", "2025-01-01T00:00:00Z"}}));
}

TEST_P(StoreTest, formats_areKeptApart) {
  putCustomers({{"[\"1\"]", "[]"}});
  {
    Store::Import import = store->begin(kProducts);
    EXPECT_EQ(import.storedAmong({"[\"1\"]"}), KeySet{});
    import.put({{ "[\"1\"]", "[]" }});
    import.commit();
  }
  EXPECT_EQ(store->rowCounts(), (Counts{{"CUSTOMERAGENT", 1}, {"PRODUCTAGENT", 1}}));
}

TEST_P(StoreTest, keys_areComparedToTheLetter) {
  putCustomers({{"[\"C1\"]", "[]"}, {"[\"É\"]", "[]"}});
  EXPECT_EQ(store->begin(kCustomers).storedAmong({"[\"C1\"]", "[\"c1\"]", "[\"C1 \"]", "[\"É\"]", "[\"E\"]"}),
            (KeySet{"[\"C1\"]", "[\"É\"]"}));
}

std::string keyOf(std::size_t number) {
  return "[\"" + std::to_string(number) + "\"]";
}

/// Statements take a hundred rows.
TEST_P(StoreTest, anyNumberOfRows_isFoundAndPut) {
  std::size_t first = 0;
  for (const std::size_t count : {0, 1, 99, 100, 101, 200, 1'001}) {
    std::vector<StoreRow> some;
    Keys keys;
    for (std::size_t i = first; i < first + count; ++i) {
      some.push_back({keyOf(i), "[" + std::to_string(i) + "]"});
      keys.push_back(keyOf(i));
    }
    first += count;
    EXPECT_EQ(store->begin(kCustomers).storedAmong(keys), KeySet{}) << count;
    putCustomers(some);
    keys.push_back("[\"missing\"]");
    EXPECT_EQ(store->begin(kCustomers).storedAmong(keys), KeySet(keys.begin(), keys.end() - 1)) << count;
  }
  EXPECT_EQ(store->rowCounts(), (Counts{{"CUSTOMERAGENT", first}}));
  EXPECT_EQ(database->run("SELECT count(*) FROM imported_row WHERE fields <> '[' || substr(row_key, 3,"
                          " length(row_key) - 4) || ']'"),
            (Rows{{"0"}}));
}

TEST_P(StoreTest, aFailureInTheMiddle_leavesNothing) {
  database->refuseKey("[\"C2\"]");
  {
    Store::Import import = store->begin(kCustomers);
    import.put({{ "[\"C1\"]", "[]" }});
    try {
      import.put({{ "[\"C2\"]", "[]" }});
      FAIL();
    } catch (const StoreError& error) {
      EXPECT_STREQ(error.what(), "no room");
    }
  }
  EXPECT_EQ(rows(), Rows{});
  putCustomers({{"[\"C3\"]", "[]"}});
  EXPECT_EQ(store->rowCounts(), (Counts{{"CUSTOMERAGENT", 1}}));
}

TEST_P(StoreTest, aTableThatIsGone_isAStoreError) {
  database->run("ALTER TABLE imported_row RENAME TO away");
  EXPECT_THROW(contains(kCustomers, "[\"C1\"]"), StoreError);
  EXPECT_THROW(putCustomers({{"[\"C1\"]", "[]"}}), StoreError);
  EXPECT_THROW(store->rowCounts(), StoreError);
  // What failed holds nothing back.
  database->run("ALTER TABLE away RENAME TO imported_row");
  putCustomers({{"[\"C1\"]", "[]"}});
  EXPECT_EQ(store->rowCounts(), (Counts{{"CUSTOMERAGENT", 1}}));
}

TEST_P(StoreTest, twoStoresOnOneDatabase_seeEachOthersRows) {
  Store other(StoreUrl::parse(database->url()));
  putCustomers({{"[\"C1\"]", "[]"}});
  EXPECT_EQ(other.begin(kCustomers).storedAmong({"[\"C1\"]"}), KeySet{"[\"C1\"]"});
}

TEST_P(StoreTest, storesThatStartTogetherOnAnEmptyDatabase_allStart) {
  store.reset();
  database->run("DROP TABLE imported_row");
  database->run("DROP TABLE import_store");
  std::vector<std::thread> starts;
  for (int i = 0; i < 6; ++i)
    starts.emplace_back([this] { EXPECT_NO_THROW(Store(StoreUrl::parse(database->url()))); });
  for (std::thread& start : starts)
    start.join();
  EXPECT_EQ(database->run("SELECT version FROM import_store"), (Rows{{"1"}}));
}

TEST_P(StoreTest, tablesOfAnotherVersion_areRefused) {
  store.reset();
  database->run("UPDATE import_store SET version = 2");
  try {
    open();
    FAIL();
  } catch (const StoreError& error) {
    EXPECT_STREQ(error.what(), "its tables are of another version of this program");
  }
}

TEST_P(StoreTest, tablesOfSomebodyElse_areRefusedAndStayAsTheyAre) {
  store.reset();
  for (const char* columns :
       {"name TEXT", "format_key TEXT, row_key TEXT, fields TEXT, imported_by TEXT, imported_at TEXT"}) {
    database->run("DROP TABLE imported_row");
    database->run("CREATE TABLE imported_row (" + std::string(columns) + ")");
    EXPECT_THROW(open(), StoreError) << columns;
    EXPECT_EQ(database->run("SELECT count(*) FROM imported_row"), (Rows{{"0"}}));
  }
}

TEST_P(StoreTest, aReader_neverSeesHalfAFile) {
  constexpr std::size_t kRows = 250;
  std::thread writer([this] {
    Store own(StoreUrl::parse(database->url()));
    for (std::size_t file = 0; file < 20; ++file) {
      std::vector<StoreRow> some;
      for (std::size_t i = 0; i < kRows; ++i)
        some.push_back({keyOf(file * kRows + i), "[]"});
      Store::Import import = own.begin(kCustomers);
      import.put(some);
      import.commit();
    }
  });
  for (std::int64_t seen = 0; seen < static_cast<std::int64_t>(20 * kRows);) {
    const Counts counts = store->rowCounts();
    seen = counts.empty() ? 0 : counts.at("CUSTOMERAGENT");
    EXPECT_EQ(seen % static_cast<std::int64_t>(kRows), 0);
    if (HasFailure())
      break;
  }
  writer.join();
}

TEST(StoreOnSqlite, anImportOnAnotherThread_waitsForTheEndOfTheFirst) {
  const std::unique_ptr<TestStore> database = TestStore::make(System::sqlite);
  Store store(StoreUrl::parse(database->url()));
  std::optional<Store::Import> first = store.begin(kCustomers);
  first->put({{"[\"C1\"]", "[]"}});
  bool isSeen = false;
  std::thread second([&] { isSeen = !store.begin(kCustomers).storedAmong({"[\"C1\"]"}).empty(); });
  first->commit();
  first.reset();
  second.join();
  EXPECT_TRUE(isSeen);
}

TEST(StoreOnSqlite, anImportThatWaitsTooLong_isAStoreError) {
  Store store(StoreUrl::parse("sqlite://:memory:"), std::chrono::milliseconds(1));
  const Store::Import first = store.begin(kCustomers);
  try {
    store.begin(kCustomers);
    FAIL();
  } catch (const StoreError& error) {
    EXPECT_STREQ(error.what(), "every connection to the database is in use");
  }
}

TEST(StoreOnSqlite, aFileThatIsNoDatabase_isRefused) {
  const TemporaryFolder folder;
  const std::string text = folder.write("notes.txt", "These are not the rows you are looking for.\n");
  EXPECT_THROW(Store(StoreUrl::parse("sqlite://" + text)), StoreError);
  EXPECT_EQ(folder.read("notes.txt"), "These are not the rows you are looking for.\n");
}

TEST(StoreOnSqlite, aMissingFolder_isRefused) {
  const TemporaryFolder folder;
  EXPECT_THROW(Store(StoreUrl::parse("sqlite://" + (folder / "missing/rows.db"))), StoreError);
}

TEST(StoreOnSqlite, inMemory_keepsItsRowsAsLongAsItLives) {
  Store store(StoreUrl::parse("sqlite://:memory:"));
  {
    Store::Import import = store.begin(kCustomers);
    import.put({{ "[\"C1\"]", "[]" }});
    import.commit();
  }
  EXPECT_EQ(store.begin(kCustomers).storedAmong({"[\"C1\"]"}), KeySet{"[\"C1\"]"});
}

} // namespace imex::import_service::test
