#include "Options.h"

#include "ExitStatus.h"
#include "platform/config/IniFile.h"
#include "platform/files/DiskFiles.h"
#include "platform/trace/FileTraceLog.h"
#include "request/shared.h"
#include "runtime/RuntimeError.h"
#include "runtime/address.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "startup/startup.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <limits>
#include <system_error>

namespace imex::cli {

namespace {

constexpr const char* kExitStatuses = R"(Exit status:
  0   accepted: no line failed, or records were produced
  1   the service reported a failing line
  2   refused by the client's checks
  3   the exchange with the service failed
  64  wrong use
  66  a file cannot be opened or read, or the INI file not be used
  74  standard output does not take the results)";

constexpr const char* kIniHelp = R"(INI file with the settings:
  [application] directory, title   [service] secured, unsecured, timeout, proxyPort
  [user] name, id                  [trace] file)";

/// A text option as it was given on the command line, if it was.
using Given = std::optional<std::string>;

struct CommandLine {
  Options options;
  std::string road = "send";
  Given config, applicationDirectory, secured, unsecured, timeout, proxyPort, userName, userId, trace;
};

void addFormat(CLI::App& command, Options& options) {
  command
      .add_option("--type", options.dataType,
                  "Data type: CUSTOMER, PRODUCT, INVOICE, COMMISSION, BALLASTS, "
                  "PROJECTLINEITEM, QUOTELINEITEM or ORDERLINEITEM")
      ->required()
      ->take_last()
      ->type_name("TYPE");
  command.add_option("--origin", options.dataOrigin, "Layout of the file: AGENT or HALVIK")
      ->required()
      ->take_last()
      ->type_name("ORIGIN");
}

void addFile(CLI::App& command, Options& options) {
  command.add_option("FILE", options.file, "The file, one record a line")->required()->type_name("");
  addFormat(command, options);
  command.add_option("--delimiter", options.delimiter, "What separates the fields: tab (the default) or pipe")
      ->take_last()
      ->type_name("NAME");
  command.add_flag("--central", options.central, "This is the central server: distributors are refused");
}

void addCommands(CLI::App& app, CommandLine& line) {
  Options& options = line.options;
  CLI::App* sending = app.add_subcommand("import", "Import a file and print the verdict on each line");
  addFile(*sending, options);
  sending->add_option("--road", line.road, "How to send it: send (the default) or instant")
      ->take_last()
      ->type_name("NAME");
  sending->add_flag("--allow-warnings", options.allowWarnings, "Let lines pass that carry only warnings");
  sending->add_flag("--truncate", options.truncate, "Let the service cut values that are too long");
  sending->callback([&options] { options.command = Command::importFile; });

  CLI::App* check = app.add_subcommand("check", "Print every line that fails the client's checks; send nothing");
  addFile(*check, options);
  check->callback([&options] { options.command = Command::check; });

  CLI::App* columns = app.add_subcommand("template", "Print the column names of a format, separated by tabs");
  addFormat(*columns, options);
  columns->callback([&options] { options.command = Command::columnTemplate; });

  CLI::App* formats = app.add_subcommand("formats", "List the known formats");
  formats->callback([&options] { options.command = Command::formats; });
  app.require_subcommand(1);
} // namespace

void addCommonOptions(CLI::App& app, CommandLine& line) {
  const auto add = [&](const char* name, Given& place, const char* help, const char* type) {
    app.add_option(name, place, help)->type_name(type)->take_last();
  };
  add("--config", line.config, "INI file with the settings (see below)", "FILE");
  add("--app-dir", line.applicationDirectory,
      "Application directory; its \"docs\" folder holds the formats (the installed one)", "DIR");
  add("--secured", line.secured, "Address of the import service", "URL");
  add("--unsecured", line.unsecured, "Address of the import service for ballasts", "URL");
  add("--timeout", line.timeout, "Greatest time of an exchange in milliseconds; 0 is without limit", "MS");
  add("--proxy-port", line.proxyPort, "Go through the proxy at this port of this machine", "PORT");
  add("--user", line.userName, "Name of the user", "NAME");
  add("--user-id", line.userId, "Identifier by which the service knows the user", "ID");
  add("--trace", line.trace, "Append a trace of every procedure to this file", "FILE");
  app.add_flag("--json", line.options.asJson, "Print one JSON object");
  app.add_flag("--yes", line.options.answersYes, "Answer questions with Yes instead of No");
}

[[noreturn]] void refuse(const std::string& message) {
  throw CLI::ValidationError(message);
}

/// A number of the command line, or else of the INI file: nothing where neither has one.
struct NumberSetting {
  const char* words; ///< what it is, in a message
  const char* unit;
  const char* key; ///< in [service]
  std::int32_t least;
  std::int32_t greatest;
};

constexpr NumberSetting kTimeout{"time-out", " of milliseconds", "timeout", 0,
                                 std::numeric_limits<std::int32_t>::max()};
constexpr NumberSetting kProxyPort{"proxy port", "", "proxyPort", 1, 65'535};

/// Decimal digits and nothing else.
std::optional<std::int32_t> numberOf(const std::string& text, const NumberSetting& setting) {
  std::int32_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  const bool isNumber = error == std::errc{} && stop == end && text.front() != '-';
  return isNumber && number >= setting.least && number <= setting.greatest ? std::optional(number) : std::nullopt;
}

std::optional<std::int32_t> givenNumber(const NumberSetting& setting, const Given& given, const CommandLine& line,
                                        const platform::IniFile& ini) {
  const std::string text = given ? *given : ini.value("service", setting.key).value_or("");
  if (text.empty() && !given)
    return std::nullopt;
  if (const auto number = numberOf(text, setting))
    return number;
  const std::string demand = std::string(" must be a number") + setting.unit + " from " +
                             std::to_string(setting.least) + " to " + std::to_string(setting.greatest) + ", not \"" +
                             shownAddress(text) + "\"";
  if (given)
    refuse(std::string("the ") + setting.words + demand);
  throw RuntimeError(static_cast<std::int32_t>(ErrorNumber::invalidProcedureCall), "Options",
                     *line.config + ": [service] " + setting.key + demand);
}

void applySettings(CommandLine& line, const platform::IniFile& ini) {
  const auto setting = [&](const Given& given, const char* section, const char* key) {
    return given ? *given : ini.value(section, key).value_or("");
  };
  Options& options = line.options;
  options.applicationDirectory = absolutePath(setting(line.applicationDirectory, "application", "directory"));
  if (options.applicationDirectory.empty())
    options.applicationDirectory = installedDirectory();
  options.title = ini.value("application", "title").value_or(options.title);
  options.securedAddress = setting(line.secured, "service", "secured");
  options.unsecuredAddress = setting(line.unsecured, "service", "unsecured");
  options.timeout = givenNumber(kTimeout, line.timeout, line, ini).value_or(0);
  if (line.proxyPort != "") { // an empty one takes back that of the INI file
    const auto port = givenNumber(kProxyPort, line.proxyPort, line, ini);
    options.proxyPort = port ? std::to_string(*port) : std::string();
  }
  options.userName = setting(line.userName, "user", "name");
  options.userId = setting(line.userId, "user", "id");
  options.traceFile = absolutePath(setting(line.trace, "trace", "file"));
}

void applyCodes(CommandLine& line) {
  Options& options = line.options;
  options.dataType = upperCase(options.dataType);
  options.dataOrigin = upperCase(options.dataOrigin);
  const std::string delimiter = upperCase(options.delimiter);
  if (delimiter != "TAB" && delimiter != "PIPE")
    refuse("the delimiter is tab or pipe, not \"" + options.delimiter + "\"");
  options.delimiter = delimiter;
  const std::string road = upperCase(line.road);
  if (road != "SEND" && road != "INSTANT")
    refuse("the road is send or instant, not \"" + line.road + "\"");
  options.road = road == "SEND" ? Road::send : Road::instant;
  const bool hasFile = options.command == Command::importFile || options.command == Command::check;
  if (hasFile && options.file.empty())
    refuse("FILE must be the name of a file, not \"\"");
  options.file = absolutePath(options.file);
}

void requireSettings(const Options& options) {
  if (options.applicationDirectory.empty())
    refuse("no application directory: give --app-dir, or [application] directory in the --config file");
  const bool ballasts = options.dataType == "BALLASTS";
  const bool isSent = options.command == Command::importFile && !options.dataType.ends_with("LINEITEM");
  if (isSent && (ballasts ? options.unsecuredAddress : options.securedAddress).empty())
    refuse(ballasts ? "no address for ballasts: give --unsecured, or [service] unsecured in the --config file"
                    : "no address: give --secured, or [service] secured in the --config file");
}

/// Whether two paths lead to one file, or would, once both files are there.
bool isSamePlace(const std::string& a, const std::string& b) {
  const platform::DiskFiles files;
  const std::filesystem::path first = platform::nativePath(a);
  const std::filesystem::path second = platform::nativePath(b);
  return files.isSameFile(a, b) || (files.isSameFile(first.parent_path().string(), second.parent_path().string()) &&
                                    equalsIgnoringCase(first.filename().string(), second.filename().string()));
}

/// The trace is appended to, and at its limit renamed over older ones: no other file of the user's or of the import may
/// stand there.
void requireOwnTrace(const CommandLine& line) {
  const Options& options = line.options;
  if (options.traceFile.empty())
    return;
  const auto refuseAt = [&](const char* what, const std::string& path) {
    for (const std::string& trace : platform::FileTraceLog::files(options.traceFile)) {
      if (isSamePlace(trace, path))
        refuse(std::string("the trace cannot be written to ") + what + ": " + trace);
    }
  };
  if (!options.file.empty()) {
    refuseAt("the import file", options.file);
    refuseAt("the results page", std::string(folderOf(options.file)) + std::string(kResultsPageName));
  }
  if (line.config)
    refuseAt("the INI file", absolutePath(*line.config));
}

platform::IniFile readConfig(const Given& path) {
  if (!path)
    return {};
  if (path->empty())
    refuse("--config needs the name of a file");
  platform::DiskFiles files;
  return platform::IniFile::read(files, *path);
}

int fail(const std::string& message, ExitStatus status) {
  std::cerr << "imex: " << message << '\n';
  return static_cast<int>(status);
}

} // namespace

ParsedOptions parseOptions(int argc, const char* const* argv) {
  CLI::App app("Imports delimited text files into Corvana's import service, without a window.", "imex");
  app.footer(std::string(kExitStatuses) + "\n\n" + kIniHelp);
  app.set_version_flag("--version", "imex " IMEX_VERSION);
  app.fallthrough();
  CommandLine line;
  addCommands(app, line);
  addCommonOptions(app, line);
  try {
    app.parse(argc, argv);
    applySettings(line, readConfig(line.config));
    applyCodes(line);
    requireSettings(line.options);
    requireOwnTrace(line);
    return {line.options, std::nullopt};
  } catch (const CLI::Success& request) {
    return {{}, app.exit(request)};
  } catch (const CLI::ParseError& error) {
    const std::string text = plainWords(withoutPasswords(error.what(), argc, argv));
    return {{}, fail(text + "\nTry \"imex --help\".", ExitStatus::wrongUse)};
  } catch (const RuntimeError& error) { // of the INI file, or of a relative path where no current directory is
    return {{}, fail(error.description(), ExitStatus::cannotOpenFile)};
  }
}

} // namespace imex::cli
