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

/// Nothing where the format is loaded and the file can be read and is not too long. Otherwise how to end; the user has
/// been told why.
std::optional<Ending> problemWith(ImExRequest& request, const Options& options, const ConsoleHost& host);

/// Whether the error is about a file, and not about what is in it.
bool isOfFile(const RuntimeError& error);

/// Tells the user that the file cannot be read, and why: as the error says, or where there is none, as another attempt
/// to read it does.
Ending tellUnreadable(const Options& options, const std::optional<RuntimeError>& error);

/// Checks every line of the file as a request checks it before it is sent, and appends those that fail, each under its
/// number in the file, empty lines counted. A line that cannot be judged fails here, although an import leaves it to
/// the service. Otherwise how to end, where the file cannot be read to its end; the user has been told why.
std::optional<Ending> listFailingLines(std::vector<LineResult>& lines, ImExRequest& request, const Options& options,
                                       const ConsoleHost& host);

/// Prints the results as the options ask for.
void print(const Results& results, const Options& options);

} // namespace imex::cli
