#pragma once

#include <string>
#include <vector>

namespace imex::import_service {

/// What the program was asked for.
struct Options {
  int port = 0; ///< 0 picks a free one
  std::string host = "127.0.0.1";
  std::string applicationDirectory; ///< holds the folder "docs"
  std::string store = "sqlite://import-service.db";
  std::vector<std::string> users = {"agent1"}; ///< whom the secured address knows
  std::string output; ///< the help or the version, where that is all that was asked for; else empty
};

/// Reads the command line, and the INI file where --config names one: [application] directory; [service] host, port,
/// store, and users with commas between them. An option of the command line goes over the file's value. A StartError
/// (usage, or noInput for the file) says what is wrong. An application directory that is set nowhere is the current
/// one, or where that has no folder "docs", the one that is installed with the program.
Options parseOptions(int argc, const char* const* argv);

} // namespace imex::import_service
