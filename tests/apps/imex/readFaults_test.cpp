#include "ConsoleHost.h"
#include "ProgramTest.h"
#include "commands.h"
#include "host/Services.h"
#include "module/ImExModule.h"
#include "support/TestHost.h"

#include <filesystem>

namespace imex::test {
namespace {

using cli::Command;
using cli::ExitStatus;

constexpr const char* kCannotOpen = "Corvana Maintenance: Unable to open the file selected. Please try again.\n";
constexpr const char* kGoodItem = "1\tF1\tNorvane\tNV-1\t9.50\t0.05\r\n";

/// A file that goes bad while a command works on it. Every command opens it twice to see whether it can be read and is
/// not too long.
class ReadFault : public testing::Test {
 protected:
  ReadFault() : m_before(std::filesystem::current_path()) {
    m_options.dataType = "CUSTOMER";
    m_options.dataOrigin = "AGENT";
    m_options.applicationDirectory = IMEX_SOURCE_DIR "/share";
    m_options.securedAddress = "http://127.0.0.1:1/";
    m_files.working = m_folder / "work/";
  }
  ~ReadFault() override { std::filesystem::current_path(m_before); }

  /// The call fails from the `first` to the `last` opening of the file on.
  void failAt(std::string_view call, RuntimeError error, int first, int last = 1000) {
    m_files.before = [this, call, error, first, last](std::string_view made, std::string_view path) {
      if (path != m_options.file)
        return;
      if (made == "openForInput")
        ++m_openings;
      if (made == call && m_openings >= first && m_openings <= last)
        throw error;
    };
  }

  Ended run(Command command, std::string_view bytes) {
    m_options.command = command;
    m_options.file = m_folder.write("file.txt", bytes);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const cli::ConsoleHost host(m_options);
    host::Services services = host::services();
    services.files = &m_files;
    host::install(services);
    ImExModule::initialize();
    const ExitStatus status =
        command == Command::check ? cli::runCheck(m_options, host) : cli::runImport(m_options, host);
    std::cout << std::flush;
    Ended ended{static_cast<int>(status), testing::internal::GetCapturedStdout(), {}};
    ended.err = testing::internal::GetCapturedStderr();
    return ended;
  }

  std::string named(const std::string& reason) const { return "imex: " + m_options.file + ": " + reason + "\n"; }

  cli::Options m_options;

 private:
  std::filesystem::path m_before;
  TemporaryFolder m_folder;
  FaultyFiles m_files;
  int m_openings = 0;
};

const RuntimeError kGone(ErrorNumber::fileNotFound, "DiskFiles");
const RuntimeError kDeviceError(ErrorNumber::deviceIoError, "DiskFiles");

TEST_F(ReadFault, fileGoneBeforeItsLinesAreRead_isUnreadableOnBothRoads) {
  for (const Road road : {Road::send, Road::instant}) {
    m_options.road = road;
    failAt("openForInput", kGone, 3);
    const Ended ended = run(Command::importFile, customer("C1"));
    EXPECT_EQ(66, ended.status);
    EXPECT_EQ(kCannotOpen + named("File not found (error 53)"), ended.err);
    EXPECT_EQ("Outcome: unreadable\n", ended.out);
  }
}

TEST_F(ReadFault, fileThatIsBackAtOnce_wasUnreadableAllTheSame) {
  failAt("openForInput", kGone, 3, 3);
  const Ended ended = run(Command::importFile, customer("C1"));
  EXPECT_EQ(66, ended.status);
  EXPECT_EQ(kCannotOpen + named("it could not be read a moment ago"), ended.err);
}

TEST_F(ReadFault, failureWhileLinesAreRead_isNamed) {
  failAt("read", kDeviceError, 4);
  const Ended ended = run(Command::importFile, customer("C1"));
  EXPECT_EQ(66, ended.status);
  EXPECT_EQ("imex: Unable to open the file selected. Please try again.\n" + named("Device I/O error (error 57)"),
            ended.err);
  EXPECT_EQ("Outcome: unreadable\n", ended.out);
}

TEST_F(ReadFault, failureWhileLinesAreChecked_isUnreadable) {
  failAt("read", kDeviceError, 3);
  const Ended ended = run(Command::check, customer("C1"));
  EXPECT_EQ(66, ended.status);
  EXPECT_EQ(named("Device I/O error (error 57)"), ended.err);
  EXPECT_EQ("Outcome: unreadable\n", ended.out);
}

TEST_F(ReadFault, failureAfterTheRefusal_leavesItARefusal) {
  failAt("openForInput", kGone, 5);
  const Ended ended = run(Command::importFile, "too few");
  EXPECT_EQ(2, ended.status);
  EXPECT_TRUE(ended.err.ends_with(" No\n" + named("File not found (error 53)"))) << ended.err;
  EXPECT_EQ("Outcome: refused\n", ended.out);
}

TEST_F(ReadFault, lineItemsGoneBeforeTheyAreRead_areUnreadable) {
  m_options.dataType = "ORDERLINEITEM";
  failAt("openForInput", kGone, 3);
  const Ended ended = run(Command::importFile, kGoodItem);
  EXPECT_EQ(66, ended.status);
  EXPECT_EQ(kCannotOpen + named("File not found (error 53)"), ended.err);
  EXPECT_EQ("Outcome: unreadable\n", ended.out);
}

TEST_F(ReadFault, failureWhileLineItemsAreRead_isUnreadable) {
  m_options.dataType = "ORDERLINEITEM";
  failAt("read", kDeviceError, 4);
  const Ended ended = run(Command::check, kGoodItem);
  EXPECT_EQ(66, ended.status);
  EXPECT_EQ("Error Number: 57 - Device I/O error: The requested operation could not be completed.\n" +
                named("Device I/O error (error 57)"),
            ended.err);
  EXPECT_EQ("Outcome: unreadable\n", ended.out);
}

TEST_F(ProgramTest, missingFormatFile_isNoReasonAgainstTheImportFile) {
  for (const char* name : {"formatagentcustomer.dat", "formathalvikcustomer.dat"}) // and no others
    folder.write(std::string("app/docs/") + name, "One\r\nTwo\r\n");
  std::string tooMany;
  for (int i = 0; i < 32768; ++i)
    tooMany += "a\tb\r\n";
  const Ended ended = imex({"check", folder.write("file.txt", tooMany), "--type", "CUSTOMER", "--origin", "AGENT",
                            "--app-dir", folder / "app"});
  EXPECT_EQ(2, ended.status);
  EXPECT_EQ("Outcome: refused\n", ended.out);
}

/// A file that the system opens and does not let read.
TEST_F(ProgramTest, memoryOfAProcess_isUnreadableAndNamed) {
  for (const char* type : {"CUSTOMER", "ORDERLINEITEM"}) {
    for (const char* command : {"check", "import"}) {
      const Ended ended = imex({command, "/proc/self/mem", "--type", type, "--origin", "AGENT"});
      EXPECT_EQ(66, ended.status) << command << type;
      EXPECT_EQ(std::string(kCannotOpen) + "imex: /proc/self/mem: Device I/O error (error 57)\n", ended.err);
      EXPECT_EQ("Outcome: unreadable\n", ended.out);
    }
  }
}

} // namespace
} // namespace imex::test
