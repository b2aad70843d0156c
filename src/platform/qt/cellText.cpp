#include "platform/qt/cellText.h"

#include "platform/qt/text.h"

#include <algorithm>

namespace imex::platform {

namespace {

bool isLineBreak(QChar c) {
  return c == QLatin1Char('\r') || c == QLatin1Char('\n');
}

bool isBlankShown(QChar c) {
  return c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

bool isPlain(QChar c) {
  return c.unicode() >= 0x20 && c.unicode() < 0x7F;
}

/// Whether a byte goes on with the character of the bytes before it.
bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

} // namespace

QString shownText(std::string_view text) {
  QString shown = toQt(text);
  if (std::all_of(shown.cbegin(), shown.cend(), isPlain))
    return shown;
  shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  while (!shown.isEmpty() && isLineBreak(shown.back()))
    shown.chop(1);
  for (QChar& c : shown) {
    if (isLineBreak(c))
      c = QLatin1Char('\n');
    else if (isBlankShown(c))
      c = QLatin1Char(' ');
  }
  return shown;
}

std::string_view beginning(std::string_view text, int pixels) {
  constexpr std::size_t kBytesPerPixel = 4; // the longest character, one pixel wide
  std::size_t size = std::min(text.size(), static_cast<std::size_t>(std::max(pixels, 1)) * kBytesPerPixel);
  while (size < text.size() && isContinuation(text[size]))
    ++size;
  return text.substr(0, size);
}

} // namespace imex::platform
