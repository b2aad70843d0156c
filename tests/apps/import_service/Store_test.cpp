#include "import_service/Store.h"

#include "apps/import_service/Sqlite.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <thread>

namespace imex::import_service::test {

using imex::test::TemporaryFolder;
using Rows = std::vector<std::vector<std::string>>;
using Counts = std::map<std::string, std::int64_t>;

const ImportOrigin kCustomers{"CUSTOMERAGENT", "agent1", "2024-11-21T04:15:00Z"};
const ImportOrigin kProducts{"PRODUCTAGENT", "agent2", "2024-11-22T10:00:00Z"};

class StoreTest : public testing::Test {
 protected:
  void open() { store.emplace(StoreUrl::parse("sqlite://" + path)); }
  void reopen() {
    store.reset();
    open();
  }

  void putCustomer(const std::string& key, const std::string& fields) {
    Store::Import import = store->begin(kCustomers);
    import.put(key, fields);
    import.commit();
  }

  Rows rows() {
    return Sqlite(path).run("SELECT format_key, row_key, fields, imported_by, imported_at FROM imported_row"
                            " ORDER BY format_key, row_key");
  }

  TemporaryFolder folder;
  std::string path = folder / "a folder/x=1; rows.db";
  std::optional<Store> store;

  StoreTest() {
    std::filesystem::create_directory(folder / "a folder");
    open();
  }
};

TEST_F(StoreTest, committedRows_areThereAfterAReopening) {
  const std::string odd = R"(["O'NEILL \"É\"","--;"])";
  {
    Store::Import import = store->begin(kCustomers);
    import.put("[\"C1\"]", odd);
    import.put("[\"C2\"]", "[]");
    import.commit();
  }
  reopen();
  EXPECT_EQ(rows(), (Rows{{"CUSTOMERAGENT", "[\"C1\"]", odd, "agent1", "2024-11-21T04:15:00Z"},
                          {"CUSTOMERAGENT", "[\"C2\"]", "[]", "agent1", "2024-11-21T04:15:00Z"}}));
  EXPECT_EQ(store->rowCounts(), (Counts{{"CUSTOMERAGENT", 2}}));
  EXPECT_TRUE(store->begin(kCustomers).contains("[\"C1\"]"));
}

TEST_F(StoreTest, anImportThatIsNotCommitted_leavesNothing) {
  putCustomer("[\"C1\"]", "[1]");
  {
    Store::Import import = store->begin(kCustomers);
    import.put("[\"C1\"]", "[2]");
    import.put("[\"C2\"]", "[2]");
    EXPECT_TRUE(import.contains("[\"C2\"]"));
  }
  EXPECT_EQ(rows(), (Rows{{"CUSTOMERAGENT", "[\"C1\"]", "[1]", "agent1", "2024-11-21T04:15:00Z"}}));
  EXPECT_FALSE(store->begin(kCustomers).contains("[\"C2\"]"));
}

TEST_F(StoreTest, aRowThatIsPutAgain_isReplaced) {
  putCustomer("[\"C1\"]", "[1]");
  {
    Store::Import import = store->begin({"CUSTOMERAGENT", "agent9", "2025-01-01T00:00:00Z"});
    import.put("[\"C1\"]", "[2]");
    import.commit();
  }
  EXPECT_EQ(rows(), (Rows{{"CUSTOMERAGENT", "[\"C1\"]", "[2]", "agent9", "2025-01-01T00:00:00Z"}}));
}

TEST_F(StoreTest, formats_areKeptApart) {
  putCustomer("[\"1\"]", "[]");
  {
    Store::Import import = store->begin(kProducts);
    EXPECT_FALSE(import.contains("[\"1\"]"));
    import.put("[\"1\"]", "[]");
    import.commit();
  }
  EXPECT_EQ(store->rowCounts(), (Counts{{"CUSTOMERAGENT", 1}, {"PRODUCTAGENT", 1}}));
}

TEST_F(StoreTest, keys_areComparedToTheLetter) {
  putCustomer("[\"C1\"]", "[]");
  Store::Import import = store->begin(kCustomers);
  EXPECT_TRUE(import.contains("[\"C1\"]"));
  EXPECT_FALSE(import.contains("[\"c1\"]"));
  EXPECT_FALSE(import.contains("[\"C1 \"]"));
}

TEST_F(StoreTest, aFailureInTheMiddle_leavesNothing) {
  Sqlite(path).run("CREATE TRIGGER full BEFORE INSERT ON imported_row WHEN NEW.row_key = '[\"C2\"]'"
                   " BEGIN SELECT RAISE(ABORT, 'no room'); END");
  {
    Store::Import import = store->begin(kCustomers);
    import.put("[\"C1\"]", "[]");
    try {
      import.put("[\"C2\"]", "[]");
      FAIL();
    } catch (const StoreError& error) {
      EXPECT_STREQ(error.what(), "no room");
    }
  }
  EXPECT_EQ(rows(), Rows{});
  putCustomer("[\"C3\"]", "[]");
  EXPECT_EQ(store->rowCounts(), (Counts{{"CUSTOMERAGENT", 1}}));
}

TEST_F(StoreTest, aTableThatIsGone_isAStoreError) {
  Sqlite(path).run("DROP TABLE imported_row");
  EXPECT_THROW(store->begin(kCustomers).contains("[\"C1\"]"), StoreError);
  EXPECT_THROW(putCustomer("[\"C1\"]", "[]"), StoreError);
  EXPECT_THROW(store->rowCounts(), StoreError);
  // What failed holds nothing back.
  Sqlite(path).run("CREATE TABLE imported_row (format_key TEXT, row_key TEXT, fields TEXT, imported_by TEXT,"
                   " imported_at TEXT, PRIMARY KEY (format_key, row_key))");
  putCustomer("[\"C1\"]", "[]");
  EXPECT_EQ(store->rowCounts(), (Counts{{"CUSTOMERAGENT", 1}}));
}

TEST_F(StoreTest, anImportOnAnotherThread_waitsForTheEndOfTheFirst) {
  std::optional<Store::Import> first = store->begin(kCustomers);
  first->put("[\"C1\"]", "[]");
  bool isSeen = false;
  std::thread second([&] { isSeen = store->begin(kCustomers).contains("[\"C1\"]"); });
  first->commit();
  first.reset();
  second.join();
  EXPECT_TRUE(isSeen);
}

TEST_F(StoreTest, twoStoresOnOneFile_seeEachOthersRows) {
  Store other(StoreUrl::parse("sqlite://" + path));
  putCustomer("[\"C1\"]", "[]");
  EXPECT_TRUE(other.begin(kCustomers).contains("[\"C1\"]"));
}

TEST_F(StoreTest, tablesOfAnotherVersion_areRefused) {
  store.reset();
  Sqlite(path).run("UPDATE import_store SET version = 2");
  try {
    open();
    FAIL();
  } catch (const StoreError& error) {
    EXPECT_STREQ(error.what(), "its tables are of another version of this program");
  }
}

TEST_F(StoreTest, aFileThatIsNoDatabase_isRefused) {
  const std::string text = folder.write("notes.txt", "These are not the rows you are looking for.\n");
  EXPECT_THROW(Store(StoreUrl::parse("sqlite://" + text)), StoreError);
  EXPECT_EQ(folder.read("notes.txt"), "These are not the rows you are looking for.\n");
}

TEST(Store, aMissingFolder_isRefused) {
  const TemporaryFolder folder;
  EXPECT_THROW(Store(StoreUrl::parse("sqlite://" + (folder / "missing/rows.db"))), StoreError);
}

TEST(Store, inMemory_keepsItsRowsAsLongAsItLives) {
  Store store(StoreUrl::parse("sqlite://:memory:"));
  Store::Import import = store.begin(kCustomers);
  import.put("[\"C1\"]", "[]");
  import.commit();
  EXPECT_TRUE(import.contains("[\"C1\"]"));
}

} // namespace imex::import_service::test
