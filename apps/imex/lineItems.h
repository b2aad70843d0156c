#pragma once

#include "ConsoleHost.h"
#include "ExitStatus.h"
#include "Options.h"

namespace imex::cli {

/// Whether the options name one of the three line item types.
bool areLineItems(const Options& options);

/// Reads a line item file into records, or into the errors of its fields, and prints them: as a table, or as
/// {"outcome", "records": [{the eleven properties}], "errors": [{"line", "error"}]}. A check prints no records. Lines
/// are numbered as the serialisers count them, skipped ones left out.
ExitStatus runLineItems(const Options& options, const ConsoleHost& host);

} // namespace imex::cli
