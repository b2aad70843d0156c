#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace imex::import_service {

// How the messages of this program show values, numbers and lists.

/// The value; of one with more than 40 characters the first 40, then "...".
std::string shortened(std::string_view value);

/// The same in double quotes, the dots inside.
std::string inQuotes(std::string_view value);

/// The number and the noun: "1 line", "12 lines", "0 lines".
std::string counted(std::size_t count, std::string_view noun);

/// The items with a comma and a blank between them.
std::string listed(const std::vector<std::string>& items);

/// The text as it may stand on one line of a log or a terminal: control characters, line and paragraph separators and
/// the marks that turn the direction of writing are spelled out, "\\u{1B}", and bytes that are not UTF-8 "\\x{FF}".
std::string printable(std::string_view text);

/// A JSON array of texts on one line. Bytes that are not UTF-8 become U+FFFD.
std::string jsonArray(const std::vector<std::string_view>& texts);

} // namespace imex::import_service
