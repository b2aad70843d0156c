#include "controls/ImExFileEdit/SavedLines.h"

#include "controls/ImExFileEdit/savedLine.h"

#include <utility>

namespace imex {

SavedLines::SavedLines(const host::Grid& grid, int fields, std::string delimiter)
    : m_grid(grid), m_rows(grid.size().rows), m_fields(fields), m_delimiter(std::move(delimiter)) {}

/// Joins the texts of a row. False where all of them are empty.
bool SavedLines::joinRow(int row) {
  m_line.clear();
  bool hasText = false;
  for (int column = 1; column <= m_fields; ++column) {
    const std::string_view text = m_grid.text({row, column});
    hasText = hasText || !text.empty();
    m_line += text;
    if (column < m_fields)
      m_line += m_delimiter;
  }
  return hasText;
}

bool SavedLines::next(std::string_view& line) {
  while (++m_row < m_rows) {
    if (!joinRow(m_row))
      continue;
    removeLineBreaks(m_line, m_delimiter);
    line = m_line;
    return true;
  }
  return false;
}

} // namespace imex
