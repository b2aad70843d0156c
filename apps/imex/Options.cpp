#include "Options.h"

#include "ExitStatus.h"
#include "platform/config/IniFile.h"
#include "platform/files/DiskFiles.h"
#include "runtime/address.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "startup/startup.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <limits>
#include <vector>

namespace imex::cli {

namespace {

constexpr const char* kExitStatuses = R"(Exit status:
  0   accepted: no line failed, or records were produced
  1   the service reported a failing line
  2   refused by the client's checks
  3   the exchange with the service failed
  64  wrong use
  66  a file cannot be opened
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

std::int32_t milliseconds(const std::string& text) {
  try {
    const std::int32_t value = toLong(text);
    if (value >= 0)
      return value;
  } catch (const RuntimeError&) { // said below
  }
  refuse("the time-out must be a number of milliseconds from 0 to 2147483647, not \"" + shownAddress(text) + "\"");
}

std::string port(const std::string& text) {
  const bool isNumber = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos && text.size() <= 5;
  if (!text.empty() && (!isNumber || std::stoi(text) < 1 || std::stoi(text) > 65535))
    refuse("the proxy port must be a number from 1 to 65535, not \"" + shownAddress(text) + "\"");
  return text;
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
  const std::string timeout = setting(line.timeout, "service", "timeout");
  options.timeout = timeout.empty() ? 0 : milliseconds(timeout);
  options.proxyPort = port(setting(line.proxyPort, "service", "proxyPort"));
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

platform::IniFile readConfig(const Given& path) {
  if (!path)
    return {};
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
    return {line.options, std::nullopt};
  } catch (const CLI::Success& request) {
    return {{}, app.exit(request)};
  } catch (const CLI::ParseError& error) {
    return {{}, fail(withoutPasswords(error.what(), argc, argv) + "\nTry \"imex --help\".", ExitStatus::wrongUse)};
  } catch (const RuntimeError& error) {
    const bool isContent = error.source() == "IniFile";
    return {{}, fail(error.description(), isContent ? ExitStatus::wrongUse : ExitStatus::cannotOpenFile)};
  }
}

} // namespace imex::cli
