#include "controls/ImExFileEdit/savedEncoding.h"

#include "runtime/RuntimeError.h"
#include "runtime/text.h"

#include <string>

namespace imex {

namespace {

bool startsWithMark(SavedLines lines) {
  std::string_view first;
  return lines.next(first) && first.starts_with(kUtf8Mark);
}

/// Judges the bytes of a file in Windows-1252 as a reader will.
class Windows1252Judge {
 public:
  void take(std::string_view line) {
    if (!m_isLikeUtf8) // which no later line changes
      return;
    const std::string bytes = encode(line, Encoding::windows1252) + std::string(kLineBreak);
    m_hasMark = m_hasMark || (m_isFirst && bytes.starts_with(kUtf8Mark));
    m_isFirst = false;
    m_isAscii = m_isAscii && isAscii(bytes);
    m_isLikeUtf8 = m_validator.feed(bytes);
  }

  bool isMisread() const { return m_hasMark || (m_isLikeUtf8 && !m_isAscii); }

 private:
  Utf8Validator m_validator;
  bool m_isFirst = true;
  bool m_hasMark = false;
  bool m_isAscii = true;
  bool m_isLikeUtf8 = true;
};

bool isMisreadInWindows1252(SavedLines lines) {
  Windows1252Judge judge;
  std::string_view line;
  while (lines.next(line)) {
    if (!canEncode(line, Encoding::windows1252))
      throw RuntimeError(ErrorNumber::invalidProcedureCall, "ImExFileEdit");
    judge.take(line);
  }
  return judge.isMisread();
}

} // namespace

Encoding savedEncoding(const SavedLines& lines, Encoding encoding) {
  const bool isMisread = (encoding == Encoding::utf8 && startsWithMark(lines)) ||
                         (encoding == Encoding::windows1252 && isMisreadInWindows1252(lines));
  return isMisread ? Encoding::utf8WithMark : encoding;
}

} // namespace imex
