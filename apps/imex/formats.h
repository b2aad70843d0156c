#pragma once

#include "ExitStatus.h"
#include "Options.h"

#include <optional>

namespace imex::cli {

/// Nothing where the format that the options name is loaded. Otherwise how to end; the user has been told why.
std::optional<Ending> formatProblem(const Options& options);

} // namespace imex::cli
