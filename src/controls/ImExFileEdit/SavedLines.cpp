#include "controls/ImExFileEdit/SavedLines.h"

#include "controls/ImExFileEdit/savedLine.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace imex {

SavedLines::SavedLines(const host::Grid& grid, int fields, std::string delimiter)
    : m_grid(grid), m_rows(grid.size().rows), m_fields(std::max(fields, 0)), m_delimiter(std::move(delimiter)) {}

/// Joins the texts of a row. False where all of them are empty.
bool SavedLines::joinRow(int row) {
  const host::RowTexts texts = m_grid.texts(row);
  m_line.resize(texts.bytes.size() + static_cast<std::size_t>(m_fields) * m_delimiter.size());
  const auto append = [](char* end, std::string_view text) { return std::copy(text.begin(), text.end(), end); };
  char* end = m_line.data();
  std::size_t textSize = 0;
  for (int column = 1; column <= m_fields; ++column) {
    const std::string_view text = texts[column];
    if (column > 1)
      end = append(end, m_delimiter);
    end = append(end, text);
    textSize += text.size();
  }
  m_line.resize(static_cast<std::size_t>(end - m_line.data()));
  return textSize > 0;
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
