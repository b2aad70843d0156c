#include "desk/LocalService.h"

#include "DeskTest.h"
#include "controls/common/text.h"

#include <QSignalSpy>

#include <optional>

namespace imex::desk::test {

namespace {

constexpr int kGreatestWait = 60'000; // milliseconds; only a failing test waits so long

class DeskLocalService : public testing::Test {
 protected:
  DeskLocalService() {
    QObject::connect(&service, &LocalService::started, [this](const auto& given) { addresses = given; });
    QObject::connect(&service, &LocalService::failed, [this](const QString& why) { failure = toCore(why); });
  }

  void start(const QString& program = QStringLiteral(IMPORT_SERVICE_PROGRAM),
             const QString& applicationDirectory = QStringLiteral(IMEX_SOURCE_DIR "/share")) {
    service.start({program, applicationDirectory, toQt(folder / "data of mine/store.db"), QStringLiteral("-ann")});
  }

  TemporaryFolder folder;
  std::optional<ServiceAddresses> addresses;
  std::optional<std::string> failure;
  LocalService service;
};

TEST_F(DeskLocalService, tellsItsAddressesAndKeepsAStore) {
  start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return addresses || failure; }, kGreatestWait));
  ASSERT_TRUE(addresses) << *failure;
  EXPECT_THAT(addresses->secured, testing::MatchesRegex("http://127\\.0\\.0\\.1:[0-9]+/secured"));
  EXPECT_THAT(addresses->unsecured, testing::MatchesRegex("http://127\\.0\\.0\\.1:[0-9]+/unsecured"));
  EXPECT_TRUE(std::filesystem::exists(folder / "data of mine/store.db"));
  service.stop();
  EXPECT_FALSE(failure);
}

TEST_F(DeskLocalService, startsAnew) {
  start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return addresses || failure; }, kGreatestWait));
  addresses.reset();
  start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return addresses || failure; }, kGreatestWait));
  EXPECT_TRUE(addresses) << *failure;
}

TEST_F(DeskLocalService, missingProgramIsAFailure) {
  start(toQt(folder / "no-program"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return addresses || failure; }, kGreatestWait));
  EXPECT_FALSE(addresses);
  EXPECT_THAT(failure.value_or(""), testing::StartsWith((folder / "no-program") + ": "));
}

TEST_F(DeskLocalService, programThatEndsIsAFailureInItsOwnWords) {
  start(QStringLiteral(IMPORT_SERVICE_PROGRAM), toQt(folder / "no-directory"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return addresses || failure; }, kGreatestWait));
  EXPECT_FALSE(addresses);
  EXPECT_THAT(failure.value_or(""), testing::HasSubstr(folder / "no-directory"));
}

} // namespace

} // namespace imex::desk::test
