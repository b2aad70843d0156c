#pragma once

#include "request/ImExRequest.h"

#include <string>
#include <string_view>

namespace imex {

// What several steps of a request share.

inline constexpr std::string_view kMaintenanceTitle = "Corvana Maintenance";
inline constexpr std::string_view kCannotOpenFile = "Unable to open the file selected. Please try again.";
inline constexpr std::string_view kResultsNotDisplayed =
    "The server responded, but the results could not be displayed.";
inline constexpr std::string_view kResultsPageName = "validationresults.html";

/// Shows a notice with the exclamation icon.
void showNotice(std::string_view prompt, std::string_view title = kMaintenanceTitle);

/// Appends a message about a row of the file.
void addErrorRow(Collection<std::shared_ptr<ImportExportErrorBean>>& rows, Integer number, std::string text);

} // namespace imex
