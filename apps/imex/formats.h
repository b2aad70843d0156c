#pragma once

#include "ExitStatus.h"
#include "Options.h"

#include <optional>

namespace imex::cli {

/// Nothing where the format that the options name is loaded. Otherwise the status with which to end, after the user
/// was told why.
std::optional<ExitStatus> formatProblem(const Options& options);

} // namespace imex::cli
