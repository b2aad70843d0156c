#pragma once

namespace imex::cli {

/// What the program tells its caller.
enum class ExitStatus {
  accepted = 0,        ///< no line failed, or records were produced
  rejected = 1,        ///< the service reported a failing line
  refused = 2,         ///< the client's checks refused the file
  exchangeFailed = 3,  ///< the service could not be reached or its answer not be used
  wrongUse = 64,       ///< the command line or the settings are not right
  cannotOpenFile = 66, ///< a file cannot be opened
};

} // namespace imex::cli
