#include "import_service/ExitCode.h"
#include "import_service/Formats.h"
#include "import_service/ImportService.h"
#include "import_service/Options.h"
#include "import_service/Server.h"
#include "import_service/Store.h"
#include "import_service/StoreUrl.h"
#include "import_service/wording.h"
#include "startup/startup.h"

#include <csignal>
#include <iostream>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

using namespace imex::import_service;

namespace {

constexpr std::string_view kName = "import-service: ";

/// The signals that end the program. They are blocked from its start on, in every thread, so that one that comes early
/// waits until it is asked for.
class StopSignals {
 public:
  StopSignals() {
    sigemptyset(&m_signals);
    sigaddset(&m_signals, SIGINT);
    sigaddset(&m_signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
  }

  void wait() const {
    int signal = 0;
    sigwait(&m_signals, &signal);
  }

 private:
  sigset_t m_signals{};
};

void report(std::string_view text) {
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  std::cerr << kName << text << '\n' << std::flush;
}

void openStore(std::optional<Store>& store, const StoreUrl& url) {
  try {
    store.emplace(url);
  } catch (const StoreUnreachable& error) {
    throw StartError(ExitCode::storeFailed, "The store " + std::string(error.what()) + '.');
  } catch (const StoreError& error) {
    throw StartError(ExitCode::storeFailed, "The store " + url.shown + " cannot be opened: " + error.what() + '.');
  }
}

void announce(const Server& server, const Options& options) {
  const std::string users = options.users.empty() ? "none" : listed(options.users);
  std::cout << kName << "listening on " << server.url() << '\n'
            << kName << "secured address " << server.url() << kSecured.path << " (users: " << printable(users) << ")\n"
            << kName << "unsecured address " << server.url() << kUnsecured.path << '\n'
            << kName << "store " << printable(StoreUrl::parse(options.store).shown) << '\n'
            << std::flush;
}

void serve(const Options& options) {
  const StopSignals signals;
  Formats formats = loadFormats(options.applicationDirectory);
  std::optional<Store> store;
  openStore(store, StoreUrl::parse(options.store));
  ImportService service(std::move(formats), Users(options.users.begin(), options.users.end()), *store, report);
  Server server(service);
  server.start(options.host, options.port);
  announce(server, options);
  signals.wait();
}

} // namespace

int main(int argc, char** argv) {
  imex::keepStandardStreams();
  ExitCode code = ExitCode::stopped;
  try {
    const Options options = parseOptions(argc, argv);
    if (options.output.empty())
      serve(options);
    else
      std::cout << options.output;
  } catch (const StartError& error) {
    report(error.what());
    code = error.code();
  }
  return static_cast<int>(code);
}
