#pragma once

#include "request/importLines.h"

#include <cstdint>
#include <optional>
#include <string>

namespace imex::cli {

enum class Command { importFile, check, columnTemplate, formats };

/// What the command line and the INI file ask for, in one place.
struct Options {
  Command command = Command::formats;

  // The import
  std::string file;              ///< absolute
  std::string dataType;          ///< in capitals
  std::string dataOrigin;        ///< in capitals
  std::string delimiter = "TAB"; ///< "TAB" or "PIPE"
  Road road = Road::send;
  bool allowWarnings = false;
  bool truncate = false;
  bool central = false;

  // The host's settings
  std::string applicationDirectory; ///< absolute, without a separator at its end
  std::string title = "imex";
  std::string securedAddress;
  std::string unsecuredAddress;
  std::int32_t timeout = 0; ///< milliseconds; 0 is without limit
  std::string proxyPort;
  std::string userName;
  std::string userId;
  std::string traceFile; ///< empty: nothing is traced

  bool asJson = false;
  bool answersYes = false;
};

/// Either the options, or the status with which the program ends after help, a version or a message was printed.
struct ParsedOptions {
  Options options;
  std::optional<int> exitStatus;
};

/// Reads the command line and the INI file that it names. An option wins over the file's value.
ParsedOptions parseOptions(int argc, const char* const* argv);

} // namespace imex::cli
