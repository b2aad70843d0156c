#include "apps/import_service/TestStore.h"
#include "apps/import_service/requests.h"
#include "import_service/ImportService.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <random>
#include <thread>

namespace imex::import_service::test {

using System = TestStore::System;
using Rows = std::vector<std::vector<std::string>>;

constexpr int kAgents = 6;
constexpr int kLines = 150;

/// A service on the database, with connections of its own, as another process would have it.
class Service {
 public:
  explicit Service(const TestStore& database) : m_store(StoreUrl::parse(database.url())) {}

  std::string reply(const RequestParts& parts) {
    const Answer answer = m_service.answer(kSecured, requestXml(parts));
    EXPECT_EQ(answer.status, 200) << answer.body;
    return element(answer.body, "reply");
  }

 private:
  Store m_store;
  ImportService m_service{smallFormats(), {"agent1"}, m_store, [](const std::string&) {}};
};

/// Several agents import at once, each through a service of its own.
class ConcurrencyTest : public testing::TestWithParam<System> {
 protected:
  /// A file of the same keys for every agent, each in another order, with the agent's own name on every line.
  static RequestParts fileOf(int agent, int round = 0) {
    RequestParts parts;
    for (int i = 0; i < kLines; ++i)
      parts.lines.push_back(std::to_string(i) + "|A" + std::to_string(agent) + "|" + std::to_string(round));
    std::shuffle(parts.lines.begin(), parts.lines.end(), std::minstd_rand(static_cast<unsigned>(agent + 1)));
    return parts;
  }

  template <class Work>
  static void atOnce(const Work& work) {
    std::vector<std::thread> agents;
    for (int agent = 0; agent < kAgents; ++agent)
      agents.emplace_back([&work, agent] { work(agent); });
    for (std::thread& agent : agents)
      agent.join();
  }

  std::unique_ptr<TestStore> database = TestStore::make(GetParam());
};

INSTANTIATE_TEST_SUITE_P(Concurrency, ConcurrencyTest, testing::Values(System::sqlite, System::postgresql),
                         [](const auto& instance) { return nameOf(instance.param); });

TEST_P(ConcurrencyTest, ofTheSameNewKeys_oneFileIsStoredAndTheOthersAreToldSo) {
  std::atomic<int> stored = 0;
  std::atomic<int> warned = 0;
  const std::string lines = std::to_string(kLines);
  atOnce([&](int agent) {
    const std::string reply = Service(*database).reply(fileOf(agent));
    stored += reply == lines + " lines imported.";
    warned += reply == "Nothing was imported: " + lines + " of " + lines +
                           " lines have warnings, which this import does not allow.";
  });
  EXPECT_EQ(stored, 1);
  EXPECT_EQ(warned, kAgents - 1);
}

TEST_P(ConcurrencyTest, updatesOfTheSameKeys_areEachStoredWhole) {
  Service(*database).reply(fileOf(0));
  std::atomic<bool> isDone = false;
  // Sees one file at any time, never parts of two.
  std::thread reader([&] {
    while (!isDone)
      EXPECT_EQ(database->run("SELECT count(DISTINCT substr(fields, length(row_key))) FROM imported_row"),
                (Rows{{"1"}}));
  });
  atOnce([&](int agent) {
    Service service(*database);
    for (int round = 0; round < 5; ++round) {
      RequestParts parts = fileOf(agent, round);
      parts.allowWarnings = "TRUE";
      EXPECT_EQ(service.reply(parts),
                std::to_string(kLines) + " lines imported, " + std::to_string(kLines) + " of them with warnings.");
    }
  });
  isDone = true;
  reader.join();
}

TEST_P(ConcurrencyTest, filesOfDifferentKeys_areAllStored) {
  Service shared(*database);
  atOnce([&](int agent) {
    for (int file = 0; file < 5; ++file) {
      RequestParts parts;
      for (int i = 0; i < 50; ++i)
        parts.lines.push_back(std::string(1, static_cast<char>('A' + agent)) + std::to_string(file * 50 + i) + "|N|");
      EXPECT_EQ(shared.reply(parts), "50 lines imported.");
    }
  });
  EXPECT_EQ(database->run("SELECT count(*) FROM imported_row"), (Rows{{std::to_string(kAgents * 250)}}));
}

} // namespace imex::import_service::test
