#pragma once

#include "ConsoleHost.h"
#include "ExitStatus.h"
#include "Options.h"
#include "Results.h"
#include "request/ImExRequest.h"

#include <optional>

namespace imex::cli {

// What the commands that read a file have in common.

/// Puts the options into a new request.
void fill(ImExRequest& request, const Options& options);

/// Nothing where the file can be read and is not too long. Otherwise the status with which to end; the user has been
/// told why, and the outcome is set.
std::optional<ExitStatus> fileProblem(ImExRequest& request, const Options& options, const ConsoleHost& host,
                                      Results& results);

/// Checks every line of the file as a request checks it before it is sent, and returns those that fail, each under its
/// number in the file, empty lines counted. Errors of reading pass through.
std::vector<LineResult> failingLines(ImExRequest& request);

/// Prints the results as the options ask for.
void print(const Results& results, const Options& options);

} // namespace imex::cli
