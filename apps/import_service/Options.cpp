#include "import_service/Options.h"

#include "import_service/ExitCode.h"
#include "import_service/wording.h"
#include "platform/config/IniFile.h"
#include "platform/files/DiskFiles.h"
#include "runtime/RuntimeError.h"
#include "runtime/address.h"
#include "startup/startup.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

namespace imex::import_service {

namespace {

constexpr int kGreatestPort = 65'535;

constexpr const char* kDescription =
    "Takes import files over SOAP, judges their lines and stores them. For development "
    "and tests.\n";

constexpr const char* kFooter = R"(Addresses:
  POST /secured      every data type but ballasts, from known users only
  POST /unsecured    ballasts
  GET  /health       whether the service works, and how many rows it has

The folder DIR/docs holds the format files and columns.json. The store is a file,
sqlite://PATH, or sqlite://:memory: to keep nothing after the end, or a PostgreSQL
database that several services may share, postgresql://USER@HOST:PORT/DATABASE. A
password that is not on the command line is taken from the environment variable
PGPASSWORD or the file ~/.pgpass.

The INI file may set [application] directory and [service] host, port, store and
users (a,b); an option of the command line goes over it.

The program serves until SIGINT or SIGTERM. Exit codes: 0 stopped, 64 wrong use,
66 a file below DIR/docs or the INI file cannot be used, 69 the address cannot be
listened at, 74 the store cannot be opened.)";

bool isDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// The number of a port in decimal digits, nothing else.
std::optional<int> portOf(std::string_view text) {
  int port = 0;
  const auto error = std::from_chars(text.data(), text.data() + text.size(), port).ec;
  return isDigits(text) && error == std::errc{} && port <= kGreatestPort ? std::optional(port) : std::nullopt;
}

/// What is wrong with a port of the command line; empty where nothing is.
std::string portFault(const std::string& text) {
  if (portOf(text))
    return "";
  return "Value " + text + (isDigits(text) ? " not in range 0 to 65535" : " is no number in decimal digits");
}

std::string hostFault(const std::string& text) {
  return text.empty() ? "Value is empty" : "";
}

std::vector<std::string> splitUsers(std::string_view text) {
  std::vector<std::string> users;
  while (!text.empty()) {
    const std::size_t end = text.find(',');
    const std::string user = CLI::detail::trim_copy(std::string(text.substr(0, end)));
    if (!user.empty())
      users.push_back(user);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return users;
}

platform::IniFile readIni(const std::string& path) {
  try {
    platform::DiskFiles files;
    return platform::IniFile::read(files, path);
  } catch (const RuntimeError& error) {
    throw StartError(ExitCode::noInput, error.description());
  }
}

/// Where the format files are looked for when nobody says where.
std::string standardDirectory() {
  std::error_code unreadable;
  const std::string installed = installedDirectory();
  return installed.empty() || std::filesystem::is_directory("docs", unreadable) ? "." : installed;
}

/// The command line as the library sees it.
class CommandLine {
 public:
  CommandLine();

  Options parse(int argc, const char* const* argv);

 private:
  void applyIni();

  CLI::App m_app{kDescription, "import-service"};
  Options m_options;
  std::string m_config;
  std::string m_portText = "0";
  CLI::Option* m_port;
  CLI::Option* m_host;
  CLI::Option* m_directory;
  CLI::Option* m_store;
  CLI::Option* m_users;
};

CommandLine::CommandLine() {
  m_port = m_app.add_option("--port", m_portText, "port; 0 picks a free one (default 0)")
               ->check(CLI::Validator(portFault, ""))
               ->option_text("N");
  m_host = m_app.add_option("--host", m_options.host, "address to listen at (127.0.0.1)")
               ->check(CLI::Validator(hostFault, ""))
               ->option_text("ADDR");
  m_directory =
      m_app.add_option("--app-dir", m_options.applicationDirectory, "application directory (., or the installed one)")
          ->option_text("DIR");
  m_store = m_app.add_option("--store", m_options.store, "database (sqlite://import-service.db)")->option_text("URL");
  m_users = m_app.add_option("--user", m_options.users, "known user; once for each (agent1)")
                ->allow_extra_args(false)
                ->option_text("ID");
  m_app.add_option("--config", m_config, "INI file")->option_text("FILE");
  m_app.set_help_flag("--help", "print this");
  m_app.set_version_flag("--version", "import-service " IMPORT_SERVICE_VERSION, "print the version");
  m_app.get_formatter()->column_width(20);
  m_app.footer(kFooter);
}

void CommandLine::applyIni() {
  const platform::IniFile ini = readIni(m_config);
  const auto apply = [&ini](const CLI::Option* option, std::string& target, const char* section, const char* key) {
    if (const std::optional<std::string> value = ini.value(section, key); value && option->count() == 0)
      target = *value;
  };
  apply(m_directory, m_options.applicationDirectory, "application", "directory");
  apply(m_host, m_options.host, "service", "host");
  apply(m_store, m_options.store, "service", "store");
  apply(m_port, m_portText, "service", "port");
  // An empty one would be a loopback address, of whichever protocol the machine prefers.
  if (m_options.host.empty())
    throw StartError(ExitCode::noInput, m_config + ": [service] host must not be empty.");
  if (!portOf(m_portText))
    throw StartError(ExitCode::noInput, m_config + ": [service] port must be a number from 0 to 65535, not " +
                                            inQuotes(shownAddress(m_portText)) + ".");
  if (const auto users = ini.value("service", "users"); users && m_users->count() == 0)
    m_options.users = splitUsers(*users);
}

Options CommandLine::parse(int argc, const char* const* argv) {
  try {
    m_app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    m_options.output = m_app.help();
    return m_options;
  } catch (const CLI::CallForVersion&) {
    m_options.output = m_app.version() + '\n';
    return m_options;
  } catch (const CLI::ParseError& error) {
    throw StartError(ExitCode::usage, withoutPasswords(error.what(), argc, argv), "Try \"import-service --help\".");
  }
  if (!m_config.empty())
    applyIni();
  m_options.port = portOf(m_portText).value();
  if (m_options.applicationDirectory.empty())
    m_options.applicationDirectory = standardDirectory();
  return m_options;
}

} // namespace

Options parseOptions(int argc, const char* const* argv) {
  return CommandLine().parse(argc, argv);
}

} // namespace imex::import_service
