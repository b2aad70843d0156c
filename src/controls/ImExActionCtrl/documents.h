#pragma once

#include "host/Clock.h"
#include "runtime/Collection.h"

#include <string>
#include <string_view>

namespace imex {

// Names and texts of the files that the panel makes and shows.

/// The name of an import file that is begun at `time`: month, day, year, hour and minute, "070320241405.txt".
std::string newFileName(const host::LocalTime& time);

/// The page that describes the files of a format, below the installation directory. The more-information page of the
/// truncation rules is the same but for the case of its name, `prefix`.
std::string documentationPath(std::string_view installationDirectory, std::string_view prefix,
                              std::string_view dataType, std::string_view dataOrigin);

inline constexpr std::string_view kSpecificationPrefix = "SPEC";
inline constexpr std::string_view kMoreInformationPrefix = "spec";

/// The column names in one line, with tabs between them.
std::string templateLine(const Strings& columns);

} // namespace imex
