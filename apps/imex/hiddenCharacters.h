#pragma once

namespace imex::cli {

/// Whether a character acts on a terminal or on the text around it in place of being seen: control characters, tab and
/// line end included, the separators of lines and paragraphs U+2028 and U+2029, and the marks that turn the direction
/// of what follows, by which a text can look like another one.
constexpr bool isHidden(char32_t character) {
  const auto isWithin = [character](char32_t first, char32_t last) { return character >= first && character <= last; };
  return character < 0x20 || isWithin(0x7F, 0x9F) || character == 0x061C || isWithin(0x200E, 0x200F) ||
         isWithin(0x2028, 0x202E) || isWithin(0x2066, 0x2069);
}

} // namespace imex::cli
