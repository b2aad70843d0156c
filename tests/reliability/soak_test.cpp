#include "Held.h"
#include "apps/imex/ProgramTest.h"
#include "module/ImExModule.h"
#include "platform/soap/SoapServiceCall.h"
#include "platform/soap/SoapTransportFactory.h"

#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>

namespace imex::test {
namespace {

constexpr int kWarmUp = 50;

/// A host of the test's own with a real service on this machine behind real connections.
class Soak : public testing::Test {
 protected:
  Soak()
      : m_service(IMPORT_SERVICE_PROGRAM, {"--app-dir", IMEX_SOURCE_DIR "/share", "--store",
                                           "sqlite://" + (host.folder / "store.db"), "--user", "agent1"}) {
    std::filesystem::copy(IMEX_SOURCE_DIR "/share/docs", host.folder / "app/docs",
                          std::filesystem::copy_options::overwrite_existing | std::filesystem::copy_options::recursive);
    const std::string line = m_service.readLine();
    const std::string address = line.substr(line.find("http://"));
    host.settings.secured = address + "/secured";
    host.settings.unsecured = address + "/unsecured";
    host.services.transportFactory = &m_factory;
    host.services.serviceCall = &m_serviceCall;
    host.services.createTraceLog = {};
    host.install();
    ImExModule::initialize();
    configure();
  }

  void configure() {
    host.folder.write("customers.txt", customer("C1") + "\r\n" + customer("C2") + "\r\n");
    request.ImportExport("IMPORT");
    request.DataOrigin("AGENT");
    request.DataType("CUSTOMER");
    request.Delimiter("TAB");
    request.Schedule("INSTANT");
    request.AllowWarnings(true);
    request.Directory(host.folder.path().string() + "/");
    request.CheckedFileName(host.folder / "customers.txt");
    request.MessageReceived.connect([this](const auto& reply) { lines += reply->ImExFormats()->count(); });
    request.SerializationFailed.connect([this](const std::string& message) { failure = message; });
    request.showErrors.connect(
        [this](auto&, auto& rows, auto&, auto&, auto&, auto&, auto&) { shown += rows->count(); });
  }

  void importOften(int times) {
    for (int i = 0; i < times; ++i)
      i % 2 == 0 ? request.send() : request.Serialize();
  }

  TestHost host;
  ImExRequest request;
  std::size_t lines = 0;
  std::size_t shown = 0;
  std::string failure;

 private:
  BackgroundProcess m_service;
  platform::SoapTransportFactory m_factory;
  platform::SoapServiceCall m_serviceCall{m_factory, host.settings};
};

TEST_F(Soak, manyImportsOnBothRoads_leaveNothingBehind) {
  importOften(kWarmUp);
  const Held before;
  importOften(kImports);
  const Held after;
  EXPECT_EQ("", failure);
  EXPECT_EQ(2u * (kWarmUp + kImports), lines);
  EXPECT_EQ(lines, shown);
  EXPECT_EQ((std::vector<Box>{}), host.messageBox.boxes);
  EXPECT_EQ(before.blocks, after.blocks);
  EXPECT_LE(after.bytes - before.bytes, kBytesOfAnImport * kImports);
  EXPECT_EQ(before.descriptors, after.descriptors);
  EXPECT_LE(after.resident - before.resident, kMostGrowth);
  std::cout << "imports: " << kImports << ", blocks: " << before.blocks << " to " << after.blocks
            << ", bytes: " << before.bytes << " to " << after.bytes << ", resident: " << before.resident << " to "
            << after.resident << ", descriptors: " << after.descriptors << '\n';
}

} // namespace
} // namespace imex::test
