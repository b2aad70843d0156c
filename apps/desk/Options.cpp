#include "desk/Options.h"

#include "runtime/RuntimeError.h"
#include "startup/startup.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace imex::desk {

namespace {

constexpr const char* kFooter = R"(INI file:
  [application] directory, title   [service] secured, unsecured, timeout, proxyPort
  [user] name, id                  [server] central
  [trace] file

Without --config the settings are those of corvana/desk.ini in the user's config
directory, and an application directory that is set nowhere is the sample one.

Exit status:
  0   the window was closed
  64  wrong use
  66  the file of --config, or a relative path, cannot be used)";

} // namespace

ParsedOptions parseOptions(int argc, const char* const* argv) {
  CLI::App app("Imports files into Corvana: a window with the import/export panel and documents.", "corvana-desk");
  Options options;
  app.add_option("--config", options.config, "INI file with the settings (see below)")->option_text("FILE");
  app.add_option("--app-dir", options.applicationDirectory,
                 "application directory; its \"docs\" folder holds the formats")
      ->option_text("DIR");
  app.set_help_flag("--help", "print this");
  app.set_version_flag("--version", "corvana-desk " CORVANA_DESK_VERSION, "print the version");
  app.get_formatter()->column_width(20);
  app.footer(kFooter);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& request) {
    app.exit(request);
    return {{}, ExitStatus::closed};
  } catch (const CLI::ParseError& error) {
    std::cerr << "corvana-desk: " << plainWords(withoutPasswords(error.what(), argc, argv))
              << "\nTry \"corvana-desk --help\".\n";
    return {{}, ExitStatus::wrongUse};
  }
  try {
    return {{absolutePath(options.config), absolutePath(options.applicationDirectory)}, std::nullopt};
  } catch (const RuntimeError& error) {
    std::cerr << "corvana-desk: " << error.description() << '\n';
    return {{}, ExitStatus::cannotUseFile};
  }
}

} // namespace imex::desk
