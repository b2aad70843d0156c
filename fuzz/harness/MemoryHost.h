#pragma once

#include "host/Application.h"
#include "host/CurrentUser.h"
#include "host/Files.h"
#include "host/MessageBox.h"
#include "host/ServiceCall.h"
#include "host/Services.h"
#include "host/Settings.h"
#include "host/TraceLog.h"
#include "support/memoryFiles.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace imex::fuzz {

/// Files by their paths, nothing on a disk.
class MemoryFiles : public host::Files {
 public:
  std::unique_ptr<ByteSource> openForInput(std::string_view path) override;
  std::unique_ptr<ByteSink> openForOutput(std::string_view path, host::Owner owner) override;
  bool isSameFile(std::string_view a, std::string_view b) const override { return a == b; }
  void changeDirectory(std::string_view /*path*/) override {}
  void makeDirectory(std::string_view /*path*/) override {}
  std::string workingDirectory() const override { return "temp/"; }

  std::map<std::string, std::string, std::less<>> files;
  std::map<std::string, test::MemorySink::Record, std::less<>> written;
};

/// Keeps boxes as lines; a question is answered Yes.
class BoxLines : public host::MessageBox {
 public:
  host::Answer show(std::string_view prompt, int style, std::string_view title) override;

  std::vector<std::string> lines;
};

/// Keeps errors as lines, and takes traces or does not.
class ErrorLines : public host::TraceLog {
 public:
  void LogError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                std::int32_t line) override;
  void Trace(std::string_view, std::string_view, std::string_view, std::int32_t) override {}
  void LogResumedError(std::string_view, std::string_view, const RuntimeError&, std::int32_t) override {}
  bool takesTraces() const override { return isTaking; }

  std::vector<std::string> lines;
  bool isTaking = true;
};

class Directory : public host::Application {
 public:
  std::string path() const override { return "app"; }
};

class Addresses : public host::Settings {
 public:
  std::string securedAddress() const override { return "http://secured"; }
  std::string unsecuredAddress() const override { return "http://unsecured"; }
  std::int32_t timeout() const override { return 1000; }
  std::string proxyPort() const override { return {}; }
  std::string installationDirectory() const override { return "app"; }
};

class User : public host::CurrentUser {
 public:
  std::string name() const override { return "Ann Agent"; }
  std::string id() const override { return "agent1"; }
};

/// The services of a component that knows no disk and no network, installed for the life of the object.
class MemoryHost {
 public:
  MemoryHost();
  ~MemoryHost();
  MemoryHost(const MemoryHost&) = delete;
  MemoryHost& operator=(const MemoryHost&) = delete;

  /// Forgets the catalogue and reads it again. `names` are the bytes of every format file.
  void loadCatalogue(std::string_view names);

  /// Makes a catalogue of all formats, as if it was just loaded: customers 13 columns, in the manufacturer's layout 5,
  /// products 11, projects and quotes 10, orders 6, invoices 4, commissions 3, ballasts 2.
  void loadCatalogue();

  /// Installs the services anew, after `services` was changed.
  void install() const { host::install(services); }

  MemoryFiles files;
  BoxLines boxes;
  std::shared_ptr<ErrorLines> errors = std::make_shared<ErrorLines>();
  host::Services services;

 private:
  Directory m_application;
  Addresses m_settings;
  User m_user;
};

} // namespace imex::fuzz
