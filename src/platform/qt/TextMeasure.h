#pragma once

#include <QFont>
#include <QFontMetrics>

#include <array>
#include <cstdint>
#include <string_view>

namespace imex::platform {

/// `font` as the cells of a grid are written in it: without kerning and ligatures, so that a text is as wide as its
/// characters are together.
QFont cellFont(QFont font);

/// Measures the texts of cells, quickly where they are Latin: QFontMetrics is asked for each character once only. The
/// result is the same in either case.
class TextMeasure {
 public:
  /// Measures in cellFont(font).
  explicit TextMeasure(const QFont& font);

  const QFont& font() const { return m_font; }

  /// The width in pixels of a UTF-8 text as a cell shows it: of its widest line, control characters as blanks. What
  /// QFontMetrics::horizontalAdvance gives for that line.
  int width(std::string_view text) const;

 private:
  static constexpr std::uint32_t kKnown = 0x180; // up to the end of Latin Extended-A

  std::int32_t advance(std::uint32_t character) const;
  int lineWidth(std::string_view line) const;

  QFont m_font;
  QFontMetrics m_metrics;
  mutable std::array<std::int32_t, kKnown> m_advances; ///< in 64ths of a pixel; kUnasked at first
};

} // namespace imex::platform
