#pragma once

#include "import_service/wording.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace imex::import_service {

/// What the program ends with.
enum class ExitCode {
  stopped = 0,      ///< ended by SIGINT or SIGTERM, or only asked for its help or version
  usage = 64,       ///< an option is unknown or has a value that it cannot have
  noInput = 66,     ///< a format file, columns.json or the INI file cannot be read or is wrong
  unavailable = 69, ///< the address cannot be listened at
  storeFailed = 74, ///< the store cannot be opened
};

/// Ends the program before it serves. The text is for the person who started it and names what is wrong, spelled out as
/// on a line of the log, as it may repeat what it was given. A hint follows on a line of its own.
class StartError : public std::runtime_error {
 public:
  StartError(ExitCode code, std::string_view text, const std::string& hint = "")
      : std::runtime_error(printable(text) + (hint.empty() ? "" : '\n' + hint)), m_code(code) {}

  ExitCode code() const { return m_code; }

 private:
  ExitCode m_code;
};

} // namespace imex::import_service
