#pragma once

#include "ConsoleHost.h"
#include "ExitStatus.h"
#include "Options.h"
#include "Results.h"
#include "request/ImExRequest.h"

#include <optional>
#include <string_view>
#include <vector>

namespace imex::cli {

// What the commands that read a file have in common.

/// Puts the options into a new request.
void fill(ImExRequest& request, const Options& options);

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

/// Nothing where the file can be read and is not too long. Otherwise how to end; the user has been told why.
std::optional<Ending> fileProblem(ImExRequest& request, const Options& options, const ConsoleHost& host);

/// Checks every line of the file as a request checks it before it is sent, and returns those that fail, each under its
/// number in the file, empty lines counted. Errors of reading pass through.
std::vector<LineResult> failingLines(ImExRequest& request);

/// Prints the results as the options ask for.
void print(const Results& results, const Options& options);

} // namespace imex::cli
