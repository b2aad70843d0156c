// A host that supplies its own trace log, settings and service call, and uses the core without a window:
//
//   own_services APPLICATION-DIRECTORY FILE
//
// The file holds agent customers, separated by tabs. The "service" of this host is a function that turns away every
// line without a contact.

#include "host/Application.h"
#include "host/CurrentUser.h"
#include "host/MessageBox.h"
#include "host/ServiceCall.h"
#include "host/Services.h"
#include "host/Settings.h"
#include "host/TraceLog.h"
#include "module/ImExModule.h"
#include "platform/files/DiskFiles.h"
#include "request/ImExRequest.h"

#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace imex;

constexpr std::size_t kContact = 10; // its column, from 1

// --- Trace log and boxes --------------------------------------------------------------------------------------------

/// Tells of errors alone.
class ErrorsToTerminal : public host::TraceLog {
 public:
  void LogError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                std::int32_t /*line*/) override {
    std::cerr << source << '.' << procedure << ": error " << error.number() << ", " << error.description() << '\n';
  }
  void Trace(std::string_view, std::string_view, std::string_view, std::int32_t) override {}
  bool takesTraces() const override { return false; }
  void LogResumedError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                       std::int32_t line) override {
    LogError(source, procedure, error, line);
  }
};

/// Answers every question with No.
class TerminalBox : public host::MessageBox {
 public:
  host::Answer show(std::string_view prompt, int style, std::string_view title) override {
    std::cerr << title << ": " << prompt << '\n';
    return style == host::kQuestionStyle ? host::Answer::no : host::Answer::ok;
  }
};

// --- Settings -------------------------------------------------------------------------------------------------------

class FixedSettings : public host::Application, public host::Settings, public host::CurrentUser {
 public:
  explicit FixedSettings(std::string directory) : m_directory(std::move(directory)) {}

  std::string path() const override { return m_directory; }
  std::string installationDirectory() const override { return m_directory; }
  std::string securedAddress() const override { return "in this program"; }
  std::string unsecuredAddress() const override { return "in this program"; }
  std::int32_t timeout() const override { return 0; }
  std::string proxyPort() const override { return {}; }
  std::string name() const override { return "Ann Agent"; }
  std::string id() const override { return "agent1"; }

 private:
  std::string m_directory;
};

// --- Service call ---------------------------------------------------------------------------------------------------

/// An element of the answer.
class Element : public host::SoapNode {
 public:
  explicit Element(std::string name, std::string text = {}) : m_name(std::move(name)), m_text(std::move(text)) {}

  Element& add(std::string_view name, std::string_view text = {}) {
    m_children.push_back(std::make_unique<Element>(std::string(name), std::string(text)));
    return *m_children.back();
  }

  std::string name() const override { return m_name; }
  std::string text() const override { return m_text; }
  std::size_t count() const override { return m_children.size(); }
  host::SoapNode* child(std::string_view localName) override {
    for (const auto& element : m_children) {
      if (element->m_name == localName)
        return element.get();
    }
    return nullptr;
  }
  void forEachChild(const std::function<void(host::SoapNode&)>& visit) override {
    for (const auto& element : m_children)
      visit(*element);
  }
  host::SoapNode& create(std::string_view name, std::string_view value, std::string_view, std::string_view,
                         std::string_view) override {
    return add(name, value);
  }

 private:
  std::string m_name;
  std::string m_text;
  std::vector<std::unique_ptr<Element>> m_children;
};

/// Judges the lines itself, in the shape of a service's answer.
class OwnServiceCall : public host::ServiceCall {
 public:
  std::shared_ptr<host::SoapNode> call(const host::ServiceRequest& request) override {
    auto answer = std::make_shared<Element>("importDataReturn");
    bool hasErrors = false;
    Element& list = answer->add("importExportResultBean");
    int number = 0;
    for (const host::LineObject& line : request.bean.dataContainer->lines) {
      const bool isGood = !ImExModule::Parse(line.value, 9)->item(kContact).empty();
      hasErrors = hasErrors || !isGood;
      addVerdict(list, ++number, line.value, isGood);
    }
    answer->add("reply", std::to_string(number) + " lines judged.");
    answer->add("hasErrors", hasErrors ? "true" : "false");
    answer->add("hasWarnings", "false");
    return answer;
  }

 private:
  static void addVerdict(Element& list, int number, std::string_view line, bool isGood) {
    Element& item = list.add("item");
    item.add("isIuccessful", isGood ? "true" : "false"); // spelled so
    item.add("line", line);
    item.add("lineNumber", std::to_string(number));
    Element& errors = item.add("errors");
    if (!isGood)
      errors.add("item", "The contact is missing.");
  }
};

int importFile(const std::filesystem::path& file) {
  ImExRequest request;
  request.ImportExport("IMPORT");
  request.DataOrigin("AGENT"); // before DataType, which looks the format up
  request.DataType("CUSTOMER");
  request.Delimiter("TAB");
  request.Schedule("INSTANT");
  request.CheckedFileName(file.string());
  request.Directory(file.parent_path().string() + '/');
  bool isAccepted = false;
  request.MessageReceived.connect([&](const std::shared_ptr<ImExReply>& reply) {
    isAccepted = !reply->hasErrors();
    std::cout << reply->reply() << '\n';
    for (const auto& verdict : *reply->ImExFormats()) {
      for (const std::string& error : *verdict->errors())
        std::cout << "Line " << toText(verdict->LineNumber()) << ": " << error << '\n';
    }
  });
  request.send();
  return isAccepted ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: own_services APPLICATION-DIRECTORY FILE\n";
    return 64;
  }
  // Full paths, because the component changes the current directory.
  FixedSettings settings(std::filesystem::absolute(argv[1]).string());
  const std::filesystem::path file = std::filesystem::absolute(argv[2]);
  platform::DiskFiles files;
  TerminalBox messageBox;
  OwnServiceCall serviceCall;
  host::Services services;
  services.application = &settings;
  services.settings = &settings;
  services.currentUser = &settings;
  services.files = &files;
  services.messageBox = &messageBox;
  services.serviceCall = &serviceCall;
  services.createTraceLog = [] { return std::make_shared<ErrorsToTerminal>(); };
  host::install(services);
  try {
    ImExModule::initialize();
    return importFile(file);
  } catch (const RuntimeError& error) {
    std::cerr << error.description() << '\n';
    return 3;
  }
}
