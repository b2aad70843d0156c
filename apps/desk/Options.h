#pragma once

#include <optional>
#include <string>

namespace imex::desk {

enum class ExitStatus {
  closed = 0,
  wrongUse = 64,
  cannotUseFile = 66, ///< the INI file of --config, or a relative path
};

/// What the command line asks for.
struct Options {
  std::string config;               ///< absolute; empty: the user's own INI file
  std::string applicationDirectory; ///< absolute, without a separator at its end; empty: not given
};

/// Either the options, or the status with which the program ends after help, a version or a message was printed.
struct ParsedOptions {
  Options options;
  std::optional<ExitStatus> exitStatus;
};

/// Reads the command line.
ParsedOptions parseOptions(int argc, const char* const* argv);

} // namespace imex::desk
