#include "import_service/Formats.h"
#include "import_service/ImportService.h"
#include "import_service/Server.h"
#include "import_service/Store.h"

#include "support/PostgresCluster.h"
#include "support/TemporaryFolder.h"

#include <httplib.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

namespace {

using namespace imex::import_service;
using Clock = std::chrono::steady_clock;

/// What is asked of the service. All of it is bounded, and everything stays on the loopback address.
struct Load {
  std::string store;
  std::size_t services = 1;
  std::size_t agents = 1;
  std::size_t files = 1; ///< of all agents together
  std::size_t lines = 1; ///< of each file
};

/// A service with connections of its own to the store, as another process has it.
class Service {
 public:
  explicit Service(const std::string& url) : m_store(StoreUrl::parse(url)) { m_server.start("127.0.0.1", 0); }

  const std::string& url() const { return m_server.url(); }

 private:
  Store m_store;
  ImportService m_service{{{"CUSTOMERAGENT",
                            {{"Code", 40, true, false, true},
                             {"Name", 40, true, false, false},
                             {"City", 40, false, false, false},
                             {"Credit Limit", 12, false, true, false}}}},
                          {"agent1"},
                          m_store,
                          [](const std::string&) {}};
  Server m_server{m_service};
};

/// A file whose keys no other file has.
std::string requestOf(const Load& load, std::size_t file) {
  static const std::string run =
      std::to_string(getpid()) + '-' + std::to_string(Clock::now().time_since_epoch().count());
  std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?><S:Envelope"
      " xmlns:S=\"http://schemas.xmlsoap.org/soap/envelope/\"><S:Header><userID>agent1</userID></S:Header>"
      "<S:Body><m:importData xmlns:m=\"urn:ImportExportService\"><HXImportBean><REQUESTINFORMATION>"
      "<IMPORTEXPORT>IMPORT</IMPORTEXPORT><DATATYPE>CUSTOMER</DATATYPE><SCHEDULE>INSTANT</SCHEDULE>"
      "<DATAORIGIN>AGENT</DATAORIGIN><DELIMITER>PIPE</DELIMITER><USERNAME>ANN AGENT</USERNAME>"
      "<ALLOWWARNINGS>FALSE</ALLOWWARNINGS><ALLOWTRUNCATION>FALSE</ALLOWTRUNCATION>"
      "</REQUESTINFORMATION><LINES>";
  for (std::size_t line = 0; line < load.lines; ++line)
    xml += "<LINE>" + run + '-' + std::to_string(file) + '-' + std::to_string(line) +
           "|ACME LIGHTING SUPPLY|SPRINGFIELD|12500|</LINE>";
  return xml + "</LINES></HXImportBean></m:importData></S:Body></S:Envelope>";
}

/// How long each file took, in milliseconds, and how many were not stored.
struct Outcome {
  std::vector<double> times;
  std::atomic<std::size_t> failures = 0;
  double seconds = 0;
};

/// The first failure is shown; one says as much as all.
void reportFailure(const httplib::Result& answer, Outcome& outcome) {
  if (outcome.failures++ == 0)
    std::cerr << (answer ? answer->body.substr(0, 1'000) : to_string(answer.error())) << '\n';
}

/// Sends files until there are none left, each over a connection of its own as the desktop application does.
void work(const Load& load, const std::string& url, std::atomic<std::size_t>& next, Outcome& outcome) {
  const std::string stored = "<reply>" + std::to_string(load.lines) + (load.lines == 1 ? " line" : " lines");
  for (std::size_t file = next++; file < load.files; file = next++) {
    const std::string request = requestOf(load, file);
    httplib::Client client(url);
    client.set_read_timeout(120);
    const Clock::time_point start = Clock::now();
    const httplib::Result answer = client.Post("/secured", request, "text/xml; charset=utf-8");
    outcome.times[file] = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    if (!answer || answer->body.find(stored + " imported.") == std::string::npos)
      reportFailure(answer, outcome);
  }
}

void run(const Load& load, Outcome& outcome) {
  std::vector<std::unique_ptr<Service>> services;
  for (std::size_t i = 0; i < load.services; ++i)
    services.push_back(std::make_unique<Service>(load.store));
  outcome.times.resize(load.files);
  std::atomic<std::size_t> next = 0;
  std::vector<std::thread> agents;
  const Clock::time_point start = Clock::now();
  for (std::size_t i = 0; i < load.agents; ++i)
    agents.emplace_back([&, i] { work(load, services[i % services.size()]->url(), next, outcome); });
  for (std::thread& agent : agents)
    agent.join();
  outcome.seconds = std::chrono::duration<double>(Clock::now() - start).count();
}

void print(const Load& load, Outcome& outcome) {
  std::sort(outcome.times.begin(), outcome.times.end());
  const auto at = [&](std::size_t percent) { return outcome.times[(outcome.times.size() - 1) * percent / 100]; };
  const auto files = static_cast<double>(load.files);
  std::cout << std::fixed << std::setprecision(1) << "services " << load.services << "  agents " << load.agents
            << "  files " << load.files << "  lines/file " << load.lines << "  files/s " << files / outcome.seconds
            << "  lines/s " << std::setprecision(0) << files * static_cast<double>(load.lines) / outcome.seconds
            << std::setprecision(1) << "  ms p50 " << at(50) << "  p95 " << at(95) << "  max " << at(100)
            << "  not stored " << outcome.failures << '\n';
}

} // namespace

/// service_load STORE SERVICES AGENTS FILES LINES: so many files of so many new lines each, sent by so many agents at
/// once to so many services on one store. STORE is what import-service takes; or "sqlite" or "postgresql" for a new one
/// that goes afterwards, a PostgreSQL that waits for the disk as one in use does. Exits with 1 where a file was not
/// stored.
int main(int argc, char** argv) {
  if (argc != 6) {
    std::cerr << "usage: service_load STORE SERVICES AGENTS FILES LINES\n";
    return 64;
  }
  const auto number = [&](int i) { return std::strtoul(argv[i], nullptr, 10); };
  Load load{argv[1], std::max(number(2), 1UL), std::max(number(3), 1UL), std::max(number(4), 1UL),
            std::max(number(5), 1UL)};
  try {
    const imex::test::TemporaryFolder folder;
    std::optional<imex::test::PostgresCluster> cluster;
    if (load.store == "sqlite")
      load.store = "sqlite://" + (folder / "store.sqlite");
    else if (load.store == "postgresql")
      load.store = cluster.emplace("-c fsync=on").url();
    Outcome outcome;
    run(load, outcome);
    print(load, outcome);
    return outcome.failures == 0 ? 0 : 1;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
