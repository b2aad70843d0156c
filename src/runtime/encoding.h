#pragma once

#include "runtime/export.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace imex {

/// How a text file holds its characters. A file with the UTF-8 mark or of valid UTF-8 throughout is UTF-8; any other
/// file is Windows-1252, whose five unused bytes stand for U+0081, U+008D, U+008F, U+0090 and U+009D.
enum class Encoding { utf8, utf8WithMark, windows1252 };

inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

/// Judges bytes that arrive in pieces: whether all of them together are valid UTF-8.
class IMEX_EXPORT Utf8Validator {
 public:
  /// Takes the next piece. False as soon as the bytes cannot be UTF-8 any more.
  bool feed(std::string_view bytes);

  /// Whether the bytes so far are valid and end with a whole character.
  bool isComplete() const { return m_valid && m_pending == 0; }

 private:
  bool accept(unsigned char byte);
  bool start(unsigned char byte);

  bool m_valid = true;
  int m_pending = 0;          ///< continuation bytes still to come
  unsigned char m_low = 0x80; ///< the range of the next continuation byte
  unsigned char m_high = 0xBF;
};

/// Appends the UTF-8 form of Windows-1252 bytes to `text`.
IMEX_EXPORT void appendWindows1252(std::string& text, std::string_view bytes);

/// Whether every character of `text` exists in the encoding.
IMEX_EXPORT bool canEncode(std::string_view text, Encoding encoding);

/// `text` in the bytes of the encoding, without a mark. Error 5 for a character that the encoding lacks.
IMEX_EXPORT std::string encode(std::string_view text, Encoding encoding);

} // namespace imex
