#pragma once

#include "ConsoleHost.h"
#include "ExitStatus.h"
#include "Options.h"

namespace imex::cli {

// One function a command. Results go to standard output, as text or as one JSON object; what went wrong goes to
// standard error.

/// imex import: one import, by the service or into line item records.
ExitStatus runImport(const Options& options, const ConsoleHost& host);

/// imex check: every failing line; nothing is sent.
ExitStatus runCheck(const Options& options, const ConsoleHost& host);

/// imex template: the column names of a format on one line, separated by tabs.
ExitStatus runTemplate(const Options& options);

/// imex formats: the catalogue.
ExitStatus runFormats(const Options& options);

} // namespace imex::cli
