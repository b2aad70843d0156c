#pragma once

#include <string_view>

namespace imex {

// Texts that several steps of a request share.

inline constexpr std::string_view kMaintenanceTitle = "Corvana Maintenance";
inline constexpr std::string_view kCannotOpenFile = "Unable to open the file selected. Please try again.";
inline constexpr std::string_view kResultsNotDisplayed =
    "The server responded, but the results could not be displayed.";
inline constexpr std::string_view kResultsPageName = "validationresults.html";

} // namespace imex
