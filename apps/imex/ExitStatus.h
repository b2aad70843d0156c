#pragma once

#include <string_view>

namespace imex::cli {

/// What the program tells its caller.
enum class ExitStatus {
  accepted = 0,            ///< no line failed, or records were produced
  rejected = 1,            ///< the service reported a failing line
  refused = 2,             ///< the client's checks refused the file
  exchangeFailed = 3,      ///< the service could not be reached or its answer not be used
  wrongUse = 64,           ///< the command line or the settings are not right
  cannotOpenFile = 66,     ///< a file cannot be opened
  cannotWriteResults = 74, ///< standard output did not take the results
};

/// How a command ends: its status, and the word for it in the results.
struct Ending {
  ExitStatus status;
  std::string_view outcome;
};

inline constexpr Ending kAccepted{ExitStatus::accepted, "accepted"};
inline constexpr Ending kSent{ExitStatus::accepted, "sent"}; ///< the answer is not read
inline constexpr Ending kRejected{ExitStatus::rejected, "rejected"};
inline constexpr Ending kRefused{ExitStatus::refused, "refused"};
inline constexpr Ending kFailed{ExitStatus::exchangeFailed, "failed"};
inline constexpr Ending kUnreadable{ExitStatus::cannotOpenFile, "unreadable"};
inline constexpr Ending kUnknownFormat{ExitStatus::wrongUse, "unknown format"};

} // namespace imex::cli
