#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "controls/ImExFileEdit/editorLayout.h"
#include "platform/qt/TextMeasure.h"
#include "platform/qt/twips.h"
#include "runtime/text.h"
#include "ui_ImExFileEdit.h"

#include <algorithm>
#include <string>
#include <vector>

namespace imex {

namespace {

/// The columns' widths while they grow to their texts. Most texts are seen at once not to be wider than their column.
class GrowingColumns {
 public:
  GrowingColumns(const platform::TextMeasure& measure, double twipsPerPixel)
      : m_measure(measure), m_twipsPerPixel(twipsPerPixel), m_widestAscii(widestAscii(measure)) {}

  void add(int twips) { m_columns.push_back({twips, safeSize(twips)}); }

  int width(std::size_t column) const { return m_columns[column].twips; }

  void fit(const host::RowTexts& texts) {
    const bool areAscii = isAscii(texts.bytes);
    for (std::size_t column = 0; column < m_columns.size(); ++column) {
      const std::string_view text = texts[static_cast<int>(column)];
      if (!areAscii || text.size() > m_columns[column].safeSize)
        fit(m_columns[column], text);
    }
  }

 private:
  struct Column {
    int twips;
    std::size_t safeSize; ///< so many characters of ASCII fit, whichever they are
    int widest = 0;       ///< the widest text that was measured, in pixels
  };

  void fit(Column& column, std::string_view text) {
    const int pixels = m_measure.width(text);
    if (pixels <= column.widest)
      return;
    column.widest = pixels;
    if (const int twips = cellWidthAtMost(pixels, m_twipsPerPixel); twips > column.twips) {
      column.twips = twips;
      column.safeSize = safeSize(twips);
    }
  }

  static int widestAscii(const platform::TextMeasure& measure) {
    int widest = 1;
    for (char c = ' '; c <= '~'; ++c)
      widest = std::max(widest, measure.width({&c, 1}) + 1); // a single one is rounded
    return widest;
  }

  std::size_t safeSize(int twips) const {
    const double pixels = twips / m_twipsPerPixel - kBesideText;
    return pixels > 0 ? static_cast<std::size_t>(pixels / m_widestAscii) : 0;
  }

  const platform::TextMeasure& m_measure;
  double m_twipsPerPixel;
  int m_widestAscii;
  std::vector<Column> m_columns;
};

} // namespace

void ImExFileEdit::resizeRows() {
  hostCalled("resizeRows", [&] {
    host::GridLayout& layout = grid().layout();
    layout.setAllRowHeights(layout.rowHeight(0));
  });
}

Integer ImExFileEdit::strToTwip(const QString& text) const {
  return hostCalled("strToTwip", [&] {
    const int pixels = m_ui->MSFlexGrid1->measure().width(toCore(text));
    return cellWidth(pixels, platform::twipsPerPixel(*this));
  });
}

/// What strToTwip() gives, and the widest column there is where that is too much for it. Traced as that is.
int ImExFileEdit::columnWidthFor(std::string_view text) const {
  return hostCalled("strToTwip", [&] {
    return cellWidthAtMost(m_ui->MSFlexGrid1->measure().width(text), platform::twipsPerPixel(*this));
  });
}

/// Aligns every column and makes it as wide as its widest text. A text past 32,767 twips counts as so wide, so that a
/// file with the wrong delimiter opens. The measuring of cells is not traced.
void ImExFileEdit::sizeColumns() {
  const host::Grid& cells = grid();
  host::GridLayout& layout = grid().layout();
  const host::GridSize size = cells.size();
  GrowingColumns columns(m_ui->MSFlexGrid1->measure(), platform::twipsPerPixel(*this));
  for (int column = 0; column < size.columns; ++column)
    columns.add(layout.columnWidth(column));
  for (int row = 0; row < size.rows; ++row)
    columns.fit(cells.texts(row));
  for (int column = 0; column < size.columns; ++column) {
    layout.alignLeft(column);
    layout.setColumnWidth(column, columns.width(static_cast<std::size_t>(column)));
  }
}

} // namespace imex
