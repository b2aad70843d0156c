#include "platform/qt/TextMeasure.h"

#include "platform/qt/cellText.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace imex::platform {

namespace {

constexpr std::int32_t kUnasked = -1;
constexpr std::int32_t kNotAlone = -2; // its width depends on what stands beside it
constexpr double kParts = 64;          // of a pixel, in which fonts measure

bool isLineBreak(char c) {
  return c == '\r' || c == '\n';
}

bool isControl(std::uint32_t character) {
  return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

std::int32_t parts(double pixels) {
  return static_cast<std::int32_t>(std::lround(pixels * kParts));
}

} // namespace

QFont cellFont(QFont font) {
  font.setKerning(false);
  font.setStyleStrategy(static_cast<QFont::StyleStrategy>(font.styleStrategy() | QFont::PreferNoShaping));
  return font;
}

TextMeasure::TextMeasure(const QFont& font) : m_font(cellFont(font)), m_metrics(m_font) {
  m_advances.fill(kUnasked);
}

/// A character counts as known where it adds as much to a text as it has alone. A soft hyphen does not: it is only
/// seen at the end of a line.
std::int32_t TextMeasure::advance(std::uint32_t character) const {
  std::int32_t& known = m_advances[character];
  if (known != kUnasked)
    return known;
  const QFontMetricsF metrics(m_font);
  const QChar shown = isControl(character) ? QChar(u' ') : QChar(static_cast<char16_t>(character));
  const QString beside(QLatin1Char('n'));
  const std::int32_t alone = parts(metrics.horizontalAdvance(QString(shown)));
  const std::int32_t added =
      parts(metrics.horizontalAdvance(beside + shown + beside)) - 2 * parts(metrics.horizontalAdvance(beside));
  known = alone == added && alone >= 0 ? alone : kNotAlone;
  return known;
}

int TextMeasure::width(std::string_view text) const {
  int widest = 0;
  while (!text.empty()) {
    const auto end = std::find_if(text.begin(), text.end(), isLineBreak);
    const auto size = static_cast<std::size_t>(end - text.begin());
    widest = std::max(widest, lineWidth(text.substr(0, size)));
    text.remove_prefix(std::min(size + 1, text.size()));
  }
  return widest;
}

int TextMeasure::lineWidth(std::string_view line) const {
  std::int64_t sum = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    std::uint32_t character = static_cast<unsigned char>(line[i]);
    if (character >= 0x80) {
      const bool isLatin = character >= 0xC2 && character <= 0xC5 && i + 1 < line.size() &&
                           (static_cast<unsigned char>(line[i + 1]) & 0xC0) == 0x80;
      if (!isLatin)
        return m_metrics.horizontalAdvance(shownText(line));
      character = (character & 0x1F) << 6 | (static_cast<unsigned char>(line[++i]) & 0x3F);
    }
    std::int32_t width = m_advances[character];
    if (width < 0 && (width = advance(character)) < 0)
      return m_metrics.horizontalAdvance(shownText(line));
    sum += width;
  }
  return static_cast<int>((sum + 32) >> 6);
}

} // namespace imex::platform
