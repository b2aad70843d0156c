#pragma once

#include "host/Application.h"
#include "host/BrowserLauncher.h"
#include "host/Clock.h"
#include "host/CurrentUser.h"
#include "host/Files.h"
#include "host/MessageBox.h"
#include "host/ServiceCall.h"
#include "host/Services.h"
#include "host/Settings.h"
#include "host/TraceLog.h"
#include "host/TransportFactory.h"
#include "platform/files/DiskFiles.h"
#include "support/TemporaryFolder.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace imex::test {

// Fakes of the host's services. They record what the component does and do what the test tells them; TestHost installs
// them all for one test.

/// A box as the user saw it.
struct Box {
  std::string prompt;
  int style;
  std::string title;

  friend bool operator==(const Box&, const Box&) = default;
};
std::ostream& operator<<(std::ostream& stream, const Box& box);

/// Keeps the trace as lines: "> source procedure" and "< source procedure" for entry and exit, "! source procedure
/// number source: description" for an error, "~ ..." for one after which the procedure went on. A trace call with
/// another message or level is kept whole, so that it cannot go unnoticed.
class RecordingTraceLog : public host::TraceLog {
 public:
  void LogError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                std::int32_t line) override;
  void Trace(std::string_view source, std::string_view procedure, std::string_view message,
             std::int32_t level) override;
  void LogResumedError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                       std::int32_t line) override;

  /// The error lines alone.
  std::vector<std::string> errors() const;

  std::vector<std::string> lines;
  std::function<void()> onTrace = [] {}; ///< runs in every Trace call, before it is kept
};

class FakeMessageBox : public host::MessageBox {
 public:
  host::Answer show(std::string_view prompt, int style, std::string_view title) override;

  std::vector<Box> boxes;
  host::Answer answer = host::Answer::no; ///< to a question; a box with one button is answered `ok`
};

class FakeApplication : public host::Application {
 public:
  std::string path() const override {
    ++asked;
    return directory;
  }
  std::string directory;
  mutable int asked = 0;
};

class FakeSettings : public host::Settings {
 public:
  std::string securedAddress() const override { return secured; }
  std::string unsecuredAddress() const override { return unsecured; }
  std::int32_t timeout() const override { return milliseconds; }
  std::string proxyPort() const override { return proxy; }
  std::string installationDirectory() const override { return installation; }

  std::string secured = "http://service.example/secured";
  std::string unsecured = "http://service.example/unsecured";
  std::int32_t milliseconds = 30000;
  std::string proxy;
  std::string installation;
};

class FakeUser : public host::CurrentUser {
 public:
  std::string name() const override {
    onName();
    return userName;
  }
  std::string id() const override { return userId; }

  std::string userName = "Ann Agent";
  std::string userId = "agent1";
  std::function<void()> onName = [] {};
};

class FakeClock : public host::Clock {
 public:
  host::LocalTime now() const override { return time; }
  host::LocalTime time{2024, 7, 3, 14, 5};
};

class FakeLauncher : public host::BrowserLauncher {
 public:
  void show(std::string_view path, int option) override;

  std::vector<std::string> shown; ///< "path option"
  std::optional<RuntimeError> error;
};

/// The real file system with switches: a hook runs before each call and may throw what the call should fail with.
class FaultyFiles : public host::Files {
 public:
  std::unique_ptr<ByteSource> openForInput(std::string_view path) override;
  std::unique_ptr<ByteSink> openForOutput(std::string_view path, host::Owner owner) override;
  bool isSameFile(std::string_view a, std::string_view b) const override;
  void changeDirectory(std::string_view path) override;
  void makeDirectory(std::string_view path) override;
  std::string workingDirectory() const override;

  /// Called with the name of the call ("openForInput", "read", "rewind", "openForOutput", "write", "close",
  /// "isSameFile", "changeDirectory", "makeDirectory", "workingDirectory") and its path: of two the first, of none the
  /// empty text.
  std::function<void(std::string_view call, std::string_view path)> before = [](auto, auto) {};
  std::string working;

 private:
  platform::DiskFiles m_disk;
};

/// Counts the files that are open through FaultyFiles.
int openStreamCount();

/// A service call that keeps what it was given and gives a prepared result.
class FakeServiceCall : public host::ServiceCall {
 public:
  struct Call {
    std::string space;
    std::string methodName;
    std::string beanType;
    host::RequestInformation information;
    std::vector<std::string> lines;
    std::string address;
    std::int32_t timeout;
    std::string userId;
  };

  std::shared_ptr<host::SoapNode> call(const host::ServiceRequest& request) override;

  std::vector<Call> calls;
  std::shared_ptr<host::SoapNode> result; ///< given to the caller
  std::optional<RuntimeError> error;      ///< raised instead
};

/// All fakes, installed for the life of the object, over a temporary folder:
///   folder / "app"   the application and installation directory, with the nine format files in "app/docs"
///   folder / "work/" the working directory, which exists
/// The current directory of the process is put back at the end.
class TestHost {
 public:
  TestHost();
  ~TestHost();
  TestHost(const TestHost&) = delete;
  TestHost& operator=(const TestHost&) = delete;

  /// Writes a format file of these column names, each line ended by CR LF: writeFormat("formatagentcustomer.dat", ...).
  void writeFormat(std::string_view fileName, const std::vector<std::string>& columns) const;

  /// Installs the fakes anew, after `services` was changed (a service left out, for example).
  void install() const;

  TemporaryFolder folder;
  std::shared_ptr<RecordingTraceLog> trace = std::make_shared<RecordingTraceLog>();
  FakeMessageBox messageBox;
  FakeApplication application;
  FakeSettings settings;
  FakeUser user;
  FakeClock clock;
  FakeLauncher launcher;
  FaultyFiles files;
  FakeServiceCall serviceCall;
  host::Services services; ///< what is installed; transportFactory is null until a test sets it

 private:
  std::filesystem::path m_currentDirectory;
};

/// "Field 1", "Field 2" ... : `count` column names.
std::vector<std::string> columnNames(int count);

/// The numbers of columns of the formats that TestHost writes: customers AGENT 13, HALVIK 5, products AGENT 11,
/// projects and quotes 10, orders 6, invoices 4, commissions 3, ballasts 2.
inline constexpr int kCustomerColumns = 13;
inline constexpr int kHalvikCustomerColumns = 5;
inline constexpr int kProductColumns = 11;
inline constexpr int kProjectColumns = 10;
inline constexpr int kQuoteColumns = 10;
inline constexpr int kOrderColumns = 6;
inline constexpr int kInvoiceColumns = 4;
inline constexpr int kCommissionColumns = 3;
inline constexpr int kBallastColumns = 2;

/// The texts joined by `delimiter`.
std::string join(const std::vector<std::string>& texts, std::string_view delimiter);

/// The texts, each followed by CR LF.
std::string textLines(const std::vector<std::string>& lines);

/// A host::SoapNode that a test builds: FakeNode("reply", "text"), FakeNode("list", {child, child}).
class FakeNode : public host::SoapNode {
 public:
  explicit FakeNode(std::string name, std::string text = {}) : m_name(std::move(name)), m_text(std::move(text)) {}
  FakeNode(std::string name, std::vector<std::shared_ptr<FakeNode>> children)
      : m_name(std::move(name)), m_children(std::move(children)) {}

  std::string name() const override { return m_name; }
  std::string text() const override { return m_text; }
  std::size_t count() const override { return m_children.size(); }
  host::SoapNode* child(std::string_view localName) override;
  void forEachChild(const std::function<void(host::SoapNode&)>& visit) override;
  host::SoapNode& create(std::string_view name, std::string_view value, std::string_view space, std::string_view type,
                         std::string_view typeSpace) override;

  /// The element as text, "<name>text</name>", without escaping: for comparing a whole tree.
  std::string xml() const;

  std::function<void(std::string_view name)> beforeCreate = [](auto) {}; ///< may throw; handed on to new children

 private:
  std::string m_name;
  std::string m_text;
  std::vector<std::shared_ptr<FakeNode>> m_children;
};

/// One line's verdict in an answer.
struct Verdict {
  bool successful;
  std::string line;
  std::string lineNumber;
  std::vector<std::string> errors = {};
  std::vector<std::string> warnings = {};
};

/// The result element of an answer of the import service.
std::shared_ptr<FakeNode> answer(std::string reply, const std::vector<Verdict>& verdicts);

} // namespace imex::test
