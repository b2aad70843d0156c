#pragma once

#include "runtime/RuntimeError.h"
#include "runtime/export.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace imex {

// Text is UTF-8 in std::string. A character is one Unicode code point: lengths and positions count those, not bytes.
// A byte that belongs to no valid sequence counts as a character of its own and is kept as it is.

inline constexpr std::string_view kLineBreak = "\r\n";

/// The number of characters.
IMEX_EXPORT std::size_t length(std::string_view text);

/// `text` with every character replaced by its upper-case form, one character to one character: "é" becomes "É", and
/// "ß", whose capital form is two letters, stays.
IMEX_EXPORT std::string upperCase(std::string_view text);

/// The same, appended to `result`.
IMEX_EXPORT void appendUpperCase(std::string& result, std::string_view text);

/// Whether two texts are the same when case is left out of account.
IMEX_EXPORT bool equalsIgnoringCase(std::string_view a, std::string_view b);

/// Whether all characters are ASCII.
IMEX_EXPORT bool isAscii(std::string_view text);

/// `text` without the blanks, tabs and line ends around it.
IMEX_EXPORT std::string_view trimmed(std::string_view text);

/// `text` without any of the characters in `unwanted` (ASCII), the rest in order.
IMEX_EXPORT std::string without(std::string_view text, std::string_view unwanted);

/// The character with this code, as UTF-8. Error 5 where there is none (a negative code, a surrogate, past 0x10FFFF).
IMEX_EXPORT std::string character(long code);

/// One character of `text`, decoded.
struct CodePoint {
  char32_t value;    ///< the code point, or the byte itself where the sequence is not valid
  std::size_t bytes; ///< how many bytes it takes, 1 to 4
  bool valid;        ///< whether the bytes are a valid sequence
};

/// The character that starts at byte `position`, which lies inside `text`.
IMEX_EXPORT CodePoint codePointAt(std::string_view text, std::size_t position);

/// Appends the UTF-8 form of `value`, which is a code point outside the surrogates.
IMEX_EXPORT void appendUtf8(std::string& text, char32_t value);

} // namespace imex
