#include "ConsoleHost.h"

#include "host/Application.h"
#include "host/BrowserLauncher.h"
#include "host/CurrentUser.h"
#include "host/MessageBox.h"
#include "host/Services.h"
#include "host/Settings.h"
#include "host/TraceLog.h"
#include "platform/clock/SystemClock.h"
#include "platform/files/DiskFiles.h"
#include "platform/soap/SoapServiceCall.h"
#include "platform/soap/SoapTransportFactory.h"
#include "platform/trace/FileTraceLog.h"

#include <cstddef>
#include <iostream>
#include <vector>

namespace imex::cli {

std::string reasonOf(const RuntimeError& error) {
  return error.description() + " (error " + std::to_string(error.number()) + ")";
}

namespace {

constexpr std::size_t kPortion = 65'536; ///< bytes of a file that are read at once

/// Settings, application and user as the options have them.
class OptionSettings : public host::Settings, public host::Application, public host::CurrentUser {
 public:
  explicit OptionSettings(Options options) : m_options(std::move(options)) {}

  std::string securedAddress() const override { return m_options.securedAddress; }
  std::string unsecuredAddress() const override { return m_options.unsecuredAddress; }
  std::int32_t timeout() const override { return m_options.timeout; }
  std::string proxyPort() const override { return m_options.proxyPort; }
  std::string installationDirectory() const override { return m_options.applicationDirectory; }
  std::string path() const override { return m_options.applicationDirectory; }
  std::string displayName() const override { return m_options.title; }
  std::string name() const override { return m_options.userName; }
  std::string id() const override { return m_options.userId; }

 private:
  Options m_options;
};

class ErrorStreamBox : public host::MessageBox {
 public:
  explicit ErrorStreamBox(bool answersYes) : m_answersYes(answersYes) {}

  host::Answer show(std::string_view prompt, int style, std::string_view title) override {
    lastPrompt = prompt;
    std::cerr << title << ": " << prompt;
    if (style != host::kQuestionStyle) {
      std::cerr << std::endl;
      return host::Answer::ok;
    }
    hasAsked = true;
    std::cerr << (m_answersYes ? " Yes" : " No") << std::endl;
    return m_answersYes ? host::Answer::yes : host::Answer::no;
  }

  bool hasAsked = false;
  std::string lastPrompt;

 private:
  bool m_answersYes;
};

class NoBrowser : public host::BrowserLauncher {
 public:
  void show(std::string_view /*path*/, int /*option*/) override {}
};

/// Remembers the last error and hands everything on to the trace file where there is one.
class ErrorMemory : public host::TraceLog {
 public:
  explicit ErrorMemory(const std::string& file) {
    if (!file.empty())
      m_file = std::make_unique<platform::FileTraceLog>(file);
  }

  void LogError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                std::int32_t line) override {
    remember(error);
    if (m_file)
      m_file->LogError(source, procedure, error, line);
  }

  void Trace(std::string_view source, std::string_view procedure, std::string_view message,
             std::int32_t level) override {
    if (m_file)
      m_file->Trace(source, procedure, message, level);
  }

  void LogResumedError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                       std::int32_t line) override {
    remember(error);
    if (m_file)
      m_file->LogResumedError(source, procedure, error, line);
  }

  bool takesTraces() const override { return m_file != nullptr; }

  /// Ends the trace file, and says so where it is not complete.
  void finish() {
    const std::string failure = m_file ? m_file->finish() : std::string();
    if (!failure.empty())
      std::cerr << "imex: " << failure << '\n';
  }

  std::optional<RuntimeError> lastError;
  int errorCount = 0;

 private:
  void remember(const RuntimeError& error) {
    lastError = error;
    ++errorCount;
  }

  std::unique_ptr<platform::FileTraceLog> m_file;
};

} // namespace

struct ConsoleHost::Services {
  explicit Services(const Options& options)
      : settings(options), messageBox(options.answersYes), serviceCall(transports, settings),
        trace(std::make_shared<ErrorMemory>(options.traceFile)) {}

  OptionSettings settings;
  ErrorStreamBox messageBox;
  NoBrowser browser;
  platform::SystemClock clock;
  platform::DiskFiles files;
  platform::SoapTransportFactory transports;
  platform::SoapServiceCall serviceCall;
  std::shared_ptr<ErrorMemory> trace;
};

ConsoleHost::ConsoleHost(const Options& options) : m_services(std::make_unique<Services>(options)) {
  host::Services services;
  services.application = &m_services->settings;
  services.settings = &m_services->settings;
  services.currentUser = &m_services->settings;
  services.clock = &m_services->clock;
  services.messageBox = &m_services->messageBox;
  services.browserLauncher = &m_services->browser;
  services.files = &m_services->files;
  services.transportFactory = &m_services->transports;
  services.serviceCall = &m_services->serviceCall;
  services.createTraceLog = [trace = m_services->trace] { return trace; };
  host::install(std::move(services));
}

ConsoleHost::~ConsoleHost() {
  host::install({});
  m_services->trace->finish();
}

std::optional<RuntimeError> ConsoleHost::lastError() const {
  return m_services->trace->lastError;
}

bool ConsoleHost::hasAskedQuestion() const {
  return m_services->messageBox.hasAsked;
}

const std::string& ConsoleHost::lastPrompt() const {
  return m_services->messageBox.lastPrompt;
}

int ConsoleHost::errorCount() const {
  return m_services->trace->errorCount;
}

std::optional<RuntimeError> ConsoleHost::readingError(const std::string& path) {
  try {
    const auto source = host::required(host::services().files).openForInput(path);
    std::vector<char> buffer(kPortion);
    while (source->read(buffer.data(), buffer.size()) != 0) {
    }
    return std::nullopt;
  } catch (const RuntimeError& error) {
    return error;
  }
}

} // namespace imex::cli
