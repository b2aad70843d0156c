#pragma once

#include <string>
#include <string_view>

namespace imex {

/// Takes the line breaks out of a line that is to be saved. Every CR LF becomes the delimiter; where there was at least
/// one, the line loses its last character. Nothing is quoted, so a field that holds the delimiter or a line break is
/// more than one field when the file is next read.
void removeLineBreaks(std::string& line, std::string_view delimiter);

/// Whether a text has nothing but spaces.
bool isBlank(std::string_view text);

} // namespace imex
